extends Story
## Call Method, Call Static Method and Emit Signal: with values that fit, and a sentence where they do not.

const NodeNames := preload("res://addons/quillstead/editor/node_names.gd")


class Chest:
	extends Node2D

	signal opened
	signal filled(with: String, how_many: int)
	signal moved_to(where: Vector2)
	signal three(a: int, b: int, c: int)

	var log: Array = []

	func open() -> void:
		log.append("open")

	func fill(with: String, how_many: int = 1) -> int:
		log.append([with, how_many])
		return log.size()

	func anything(value: Variant) -> Variant:
		log.append(value)
		return value

	func two(first: int, second: int) -> int:
		return first * 10 + second

	func too_many(a: int, b: int, c: int) -> int:
		return a + b + c

	func numbers(list: Array[int]) -> int:
		return list.size()

	func carry(node: Node2D) -> String:
		return String(node.name)

	func carry_sprite(sprite: Sprite2D) -> String:
		return String(sprite.name)

	func carry_machine(quest: SCQuest) -> String:
		return str(quest)

	func later() -> int:
		await get_tree().process_frame
		return 7

	func go() -> void:
		(get_child(0) as SCMachine).send_event("go")

	func remove() -> void:
		get_parent().remove_child(self)
		queue_free()

	static func sum(a: int, b: int) -> int:
		return a + b


func test_a_method_gets_what_it_takes_and_what_it_gives_is_kept() -> void:
	body("Other")
	for row: Array in [
		["open", [], ["open"], null], ["fill", ["gold"], [["gold", 1]], 1], ["fill", ["gold", 2.6], [["gold", 3]], 1], ["fill", [5, true], [["5", 1]], 1],
		["anything", [Vector2(1, 2)], [Vector2(1, 2)], Vector2(1, 2)], ["anything", [], [null], null], ["two", [1, 2], [], 12],
		["numbers", [[] as Array[int]], [], 0], ["carry", [^"../../Other"], [], "Other"],
		["is_in_group", ["none"], [], false], ["get_child_count", [], [], 1], ["get_child_count", [true], [], 1],
	]:
		# Typed in, and out of variables.
		for out_of_variables: bool in [false, true]:
			var chest := _chest()
			var settings := {"method_name": row[0], "store_in": &"answer" if row[3] != null or row[0] == "anything" else &""}
			var variables := {"answer": null}
			for i in (row[1] as Array).size():
				if out_of_variables:
					settings["argument_%d_variable" % (i + 1)] = &"from %d" % i
					variables["from %d" % i] = row[1][i]
				else:
					settings["argument_%d" % (i + 1)] = row[1][i]
			var said := results_of(kind(SCCallMethodAction, settings), variables, {"under": chest})
			expect_equal(chest.log, row[2], str(row))
			expect_equal(said[&"answer"], row[3], str(row))
			chest.free()


func test_wrong_calls_are_told_and_nothing_is_called() -> void:
	body("Other")
	for row: Array in [
		["", [], "Call Method on Machine (state Work, in /root/Stage/Chest): it names no method of Chest, so nothing was called. Pick one under Method Name."],
		["opne", [], "Chest is a Node2D, which has no method called opne, so nothing was called."],
		["_process", [], "which has no method called _process"],
		["open", [1], "open of Chest was not called, because it takes no value and was given 1."],
		["fill", [], "because it needs 1 value and was given 0."],
		["fill", ["gold", "many"], "because its value 2, how_many, has to be an int and is a String."],
		["two", [1], "because it needs 2 values and was given 1."],
		["too_many", [1, 2], "because it needs 3 values and only 2 can be handed over."],
		["numbers", [["one"]], "was not called, because"],
		["carry", [5], "because its value 1, node, has to be a Node2D and is an int."],
		["carry_sprite", [^"../../Other"], "because its value 1, sprite, has to be a Sprite2D and is a NodePath."],
		["carry_machine", [Gradient.new()], "because its value 1, quest, has to be a SCQuest and is a Resource."],
		["set_position", ["here"], "because its value 1, position, has to be a Vector2 and is a String."],
		["set_process_mode", [], "because it needs 1 value and was given 0."],
	]:
		var chest := _chest()
		var settings := {"method_name": row[0]}
		for i in (row[1] as Array).size():
			settings["argument_%d" % (i + 1)] = row[1][i]
		expect_warns(kind(SCCallMethodAction, settings), row[2], {"under": chest})
		expect_equal(chest.log, [], row[2])
		chest.free()
	expect_warns(kind(SCCallMethodAction, {"method_name": &"open", "node_path": ^"../Nowhere"}), "there is no node at ../Nowhere. Pick one under Node Path.")
	expect_warns(kind(SCCallMethodAction, {"method_name": &"open", "store_in": &"x"}), "open gives nothing back, so there was nothing to keep in x.",
		{"under": _chest(), "variables": {"x": 1}})


func test_a_method_that_waits_is_kept_when_it_is_done() -> void:
	var made := play(kind(SCCallMethodAction, {"method_name": &"later", "store_in": &"x"}), {}, {"under": _chest(), "variables": {"x": 0}})
	expect_values(made, {"x": 0})
	await frames(2)
	expect_values(made, {"x": 7})


func test_what_a_method_does_to_the_machine_is_borne() -> void:
	for method: StringName in [&"free", &"queue_free", &"go", &"remove"]:
		var chest := _chest()
		var made := machine([
			state("Work", [kind(SCCallMethodAction, {"method_name": method, "run_mode": SCMachineAction.EVERY_FRAME})], {"go": "Gone"}),
			state("Gone"),
		], {"under": chest})
		start(made)
		if method == &"go":
			expect_state(made, "Gone")
		await frames(2)
		expect_equal(is_instance_valid(chest) and chest.is_inside_tree(), method == &"go", method)
		if is_instance_valid(chest):
			chest.free()


func test_static_methods() -> void:
	for row: Array in [
		["FileAccess", "file_exists", ["res://project.godot"], true],
		["FileAccess", "file_exists", ["res://nothing.here"], false],
		["OS", "get_name", [], OS.get_name()],
		["Engine", "has_singleton", ["OS"], true],
		["JSON", "stringify", [[1, 2]], "[1,2]"],
		["SCMachineAction", "number", [2.5], "2.5"],
	]:
		var settings := {"of_class": row[0], "method_name": row[1], "store_in": &"answer"}
		for i in (row[2] as Array).size():
			settings["argument_%d" % (i + 1)] = row[2][i]
		expect_equal(result_of(kind(SCCallStaticMethodAction, settings)), row[3], "%s.%s" % [row[0], row[1]])


func test_wrong_static_calls_are_told() -> void:
	for row: Array in [
		["", "file_exists", "it names no class, so nothing was called. Pick one under Of Class."],
		["OS", "", "it names no method, so nothing was called. Pick one under Method Name."],
		["Nothing", "file_exists", "there is no class called Nothing, so nothing was called."],
		["FileAccess", "nothing", "FileAccess has no method called nothing that belongs to the class, so nothing was called."],
		["Node", "queue_free", "queue_free is not static: it belongs to each Node, and Call Method calls it on a node, so nothing was called."],
		["OS", "free", "OS has no method called free that belongs to the class"],
		["FileAccess", "file_exists", "file_exists of FileAccess was not called, because it needs 1 value and was given 0."],
	]:
		expect_warns(kind(SCCallStaticMethodAction, {"of_class": row[0], "method_name": row[1]}), row[2])


func test_a_signal_is_sent_as_though_by_the_node() -> void:
	var chest := _chest()
	var heard: Array = []
	chest.opened.connect(func() -> void: heard.append("opened"))
	chest.filled.connect(func(with: String, how_many: int) -> void: heard.append([with, how_many]))
	chest.moved_to.connect(func(where: Vector2) -> void: heard.append(where))
	for settings: Dictionary in [
		{"signal_name": &"opened"}, {"signal_name": &"filled", "argument_1": "gold", "argument_2": 2.6},
		{"signal_name": &"moved_to", "argument_1_variable": &"where"},
	]:
		play(kind(SCEmitSignalAction, settings), {}, {"under": chest, "variables": {"where": chest}})
	expect_equal(heard, ["opened", ["gold", 3], chest.position])
	for row: Array in [
		[{}, "it names no signal of Chest, so none was sent. Pick one under Signal Name."],
		[{"signal_name": &"closed"}, "Chest is a Node2D, which has no signal called closed, so none was sent."],
		[{"signal_name": &"opened", "argument_1": 1}, "opened of Chest was not sent, because it takes no value and was given 1."],
		[{"signal_name": &"filled", "argument_1": "gold"}, "because it needs 2 values and was given 1."],
		[{"signal_name": &"filled", "argument_1": "gold", "argument_2": "x"}, "because its value 2, how_many, has to be an int and is a String."],
		[{"signal_name": &"three"}, "because it needs 3 values and only 2 can be handed over."],
	]:
		expect_warns(kind(SCEmitSignalAction, row[0]), row[1], {"under": chest})
	expect_equal(heard.size(), 3)


func test_a_signal_that_ends_the_state_or_the_node_is_borne() -> void:
	for ends: Callable in [
		func(made: SCMachine, _chest_there: Node) -> void: made.send_event("go"),
		func(_made: SCMachine, chest: Node) -> void: chest.get_parent().remove_child(chest); chest.queue_free(),
	]:
		var chest := _chest()
		var made := machine([
			state("Work", [kind(SCEmitSignalAction, {"signal_name": &"opened"}), act("after").done()], {"go": "Gone", "FINISHED": "Done"}), state("Gone"),
			state("Done"),
		], {"under": chest})
		chest.opened.connect(func() -> void: ends.call(made, chest))
		start(made)
		await frames(1)
		expect(not is_instance_valid(made) or current(made) == &"Gone")


func test_names_are_offered_from_the_node() -> void:
	var chest := _chest()
	var made := start(machine([state("Idle")], {"under": chest}))
	body("Other")
	var calls: SCCallMethodAction = kind(SCCallMethodAction, {})
	var offered := NodeNames.offered(calls, &"method_name", made)
	expect(offered.has("fill") and offered.has("queue_free") and offered.find("fill") < offered.find("queue_free"), "its own first")
	expect(not offered.has("too_many") and not offered.has("_process"))
	calls.node_path = ^"../../Other"
	expect(not NodeNames.offered(calls, &"method_name", made).has("fill"), "of another node")
	calls.set("node_path_variable", &"x")
	expect(NodeNames.offered(calls, &"method_name", made).is_empty(), "nobody knows which node")
	expect(NodeNames.offered(calls, &"argument_1", made).is_empty())
	var emits := kind(SCEmitSignalAction, {})
	offered = NodeNames.offered(emits, &"signal_name", made)
	expect(offered.has("filled") and offered.has("tree_exited") and not offered.has("three"))
	var hears := kind(SCEventOnSignalAction, {})
	expect(NodeNames.offered(hears, &"signal_name", made).has("three"))
	offered = NodeNames.offered(kind(SCTweenPropertyAction, {}), &"property", made)
	expect(offered.has("position") and offered.has("global_position") and not offered.has("visible"))
	expect(NodeNames.offered(kind(SCSetPropertyAction, {}), &"property", made).has("visible"))
	var static_calls: SCCallStaticMethodAction = kind(SCCallStaticMethodAction, {"of_class": &"FileAccess"})
	offered = NodeNames.offered(static_calls, &"of_class", made)
	expect(offered.has("FileAccess") and offered.has("OS") and not offered.has("Sprite2D"))
	offered = NodeNames.offered(static_calls, &"method_name", made)
	expect(offered.has("file_exists") and not offered.has("get_line"))


func test_lines_on_the_graph() -> void:
	expect_lines(SCCallMethodAction, {
		"Call (pick one) of Self": {},
		"Call fill of Chest with gold and 2, keep the answer in x": {
			"method_name": &"fill", "node_path": ^"../Chest", "argument_1": "gold", "argument_2": 2, "store_in": &"x",
		},
		"Call fill of Self with [what]": {"method_name": &"fill", "argument_1": 1, "argument_1_variable": &"what"},
	})
	expect_line(kind(SCCallStaticMethodAction, {"of_class": &"OS", "method_name": &"get_name", "store_in": &"x"}), "Call get_name of OS, keep the answer in x")
	expect_line(kind(SCEmitSignalAction, {"signal_name": &"opened"}), "Make Self signal opened")
	expect_line(kind(SCEmitSignalAction, {"signal_name": &"moved_to", "argument_1": 5}), "Make Self signal moved_to with 5")


func _chest() -> Chest:
	return add(Chest.new(), "Chest")
