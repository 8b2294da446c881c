extends Story
## Find Child, Get Children and Get Parent.


func test_a_child_is_found_by_name_kind_and_group() -> void:
	var tree := _forest()
	for row: Array in [
		[{"child_name": "Oak"}, "Oak"], [{"child_name": "Nest"}, "Oak/Nest"], [{"child_name": "Nest", "recursive": false}, ""],
		[{"child_name": "*e*"}, "Oak/Nest"], [{"child_name": "?irch"}, "Birch"], [{"child_name": "{which}"}, "Birch"],
		[{"type": "Timer"}, "Birch/Clock"], [{"type": "CanvasItem"}, "Oak"], [{"child_name": "*", "only_group": &"homes"}, "Oak/Nest"],
		[{"child_name": "Oak", "type": "Timer"}, ""], [{"child_name": "Dying"}, ""], [{"child_name": "oak"}, ""], [{"type": "SCMachine"}, "Machine"],
	]:
		var made := play(
			kind(SCFindChildAction, {"store_in": &"answer", "found_event": &"found", "nothing_event": &"none"}.merged(row[0])),
			{"found": "Found", "none": "None"}, {"under": tree, "variables": {"answer": tree, "which": "Birch"}, "name": "Machine"})
		expect_state(made, "None" if row[1] == "" else "Found")
		expect_equal(made.get_value("answer"), tree.get_node(row[1]) if row[1] != "" else null, str(row))
		made.free()


func test_what_cannot_be_found_is_told() -> void:
	var tree := _forest()
	for row: Array in [
		[{}, "there is nothing to look for, so nothing was found."],
		[{"child_name": "Elm"}, "there is no node called Elm under Forest, so nothing was found."],
		[{"type": "Timer", "child_name": "Elm"}, "there is no Timer called Elm under Forest"],
		[{"type": "Tree3000"}, "there is no kind of node called Tree3000, so nothing was found. Pick one under Type."],
		[{"child_name": "Oak", "node_path": ^"../Nowhere"}, "there is no node at ../Nowhere"],
	]:
		expect_warns(kind(SCFindChildAction, {"store_in": &"answer"}.merged(row[0])), row[1], {"under": tree, "variables": {"answer": null}})
	expect_warns(kind(SCFindChildAction, {"child_name": "Oak"}), "there is nowhere to put the node", {"under": tree})


func test_children_are_listed_counted_and_picked() -> void:
	var tree := _forest()
	for row: Array in [
		[{}, ["Oak", "Birch", "Machine"], "Oak"], [{"which": SCGetChildrenAction.LAST}, ["Oak", "Birch", "Machine"], "Machine"],
		[{"which": SCGetChildrenAction.BY_NUMBER, "number": 2}, ["Oak", "Birch", "Machine"], "Birch"],
		[{"which": SCGetChildrenAction.BY_NUMBER, "number": -2}, ["Oak", "Birch", "Machine"], "Birch"],
		[{"type": "Node2D"}, ["Oak", "Birch"], "Oak"], [{"only_group": &"white"}, ["Birch"], "Birch"], [{"type": "Timer"}, [], null],
		[{"which": SCGetChildrenAction.AT_RANDOM, "only_group": &"white"}, ["Birch"], "Birch"],
	]:
		var made := play(
			kind(SCGetChildrenAction, {"store_list_in": &"list", "store_count_in": &"count", "store_node_in": &"one", "nothing_event": &"none"}.merged(row[0])),
			{"none": "None", "FINISHED": "Some"}, {"under": tree, "name": "Machine", "variables": {"list": [], "count": -1, "one": tree}})
		expect_equal((made.get_value("list") as Array).map(func(node: Node) -> String: return node.name), row[1], str(row))
		expect_equal(made.get_value("count"), (row[1] as Array).size())
		expect_equal(made.get_value("one"), tree.get_node(row[2] as String) if row[2] != null else null, str(row))
		expect_state(made, "None" if row[2] == null else "Some")
		made.free()
	for number: int in [0, 4, -4]:
		expect_warns(kind(SCGetChildrenAction, {"which": SCGetChildrenAction.BY_NUMBER, "number": number, "store_node_in": &"one"}),
			"there is no child number %d among 3, so none was kept. Change Number." % number, {"under": tree, "name": "Machine", "variables": {"one": null}})
	expect_warns(kind(SCGetChildrenAction, {}), "there is nowhere to keep what it sees.", {"under": tree})


func test_every_frame_sees_who_came_and_went() -> void:
	var tree := body("Forest")
	var counts := kind(SCGetChildrenAction, {"store_count_in": &"count", "run_mode": SCMachineAction.EVERY_FRAME})
	var made := play(counts, {}, {"under": tree, "variables": {"count": 0}})
	expect_values(made, {"count": 1})
	var oak := body("Oak", Vector2.ZERO, tree)
	await frames(2)
	expect_values(made, {"count": 2})
	oak.queue_free()
	await frames(2)
	expect_values(made, {"count": 1})


func test_the_parent_and_those_above_it() -> void:
	var tree := _forest()
	var nest := tree.get_node("Oak/Nest")
	for row: Array in [
		[{}, "Oak"], [{"levels_up": 2}, "Forest"], [{"type": "Timer"}, null], [{"type": "Node2D", "node_path": ^".."}, "Oak"], [{"levels_up": 99}, null],
		[{"node_path": ^"../../.."}, "Stage"], [{"levels_up": -3}, "Oak"],
	]:
		var made := play(kind(SCGetParentAction, {"store_in": &"answer", "nothing_event": &"none"}.merged(row[0])),
			{"none": "None", "FINISHED": "Some"}, {"under": nest, "variables": {"answer": nest}})
		var found: Node = made.get_value("answer")
		expect_equal(String(found.name) if found != null else null, row[1], str(row))
		expect_state(made, "None" if row[1] == null else "Some")
		made.free()
	expect_warns(kind(SCGetParentAction, {"type": "Timer", "store_in": &"x"}), "Nest has no Timer above it, so nothing was found.",
		{"under": nest, "variables": {"x": null}})
	expect_warns(kind(SCGetParentAction, {"type": "Tree3000", "store_in": &"x"}), "there is no kind of node called Tree3000",
		{"under": nest, "variables": {"x": null}})


func test_lines_on_the_graph() -> void:
	expect_lines(SCFindChildAction, {
		"Find (pick one) under Self, keep it in (pick one)": {},
		"Find Oak under Forest, keep it in tree": {"child_name": "Oak", "node_path": ^"../Forest", "store_in": &"tree"},
		"Find a Timer under Self": {"type": "Timer", "found_event": &"found"},
	})
	expect_lines(SCGetChildrenAction, {
		"Look at the children of Self": {},
		"Look at the children of Self in white that are a Node2D, keep them in list, how many in count, number 2 in one": {
			"type": "Node2D", "only_group": &"white", "store_list_in": &"list", "store_count_in": &"count", "store_node_in": &"one",
			"which": SCGetChildrenAction.BY_NUMBER, "number": 2,
		},
	})
	expect_lines(SCGetParentAction, {
		"Keep the parent of Self in above": {"store_in": &"above"}, "Keep the node 3 up from Self in above": {"levels_up": 3, "store_in": &"above"},
		"Keep the Enemy that HitBox is under in above": {"type": "Enemy", "node_path": ^"../HitBox", "store_in": &"above"},
	})
	expect_hidden(kind(SCGetParentAction, {"type": "Timer"}), ["levels_up"])
	expect_hidden(kind(SCGetChildrenAction, {}), ["which", "number"])


# Oak with a Nest, Birch with a Clock, and one on its way out.
func _forest() -> Node2D:
	var forest := body("Forest")
	add(Node2D.new(), "Dying", {"under": forest}).queue_free()
	body("Nest", Vector2.ZERO, body("Oak", Vector2.ZERO, forest)).add_to_group(&"homes")
	var birch := body("Birch", Vector2.ZERO, forest)
	birch.add_to_group(&"white")
	add(Timer.new(), "Clock", {"under": birch})
	return forest
