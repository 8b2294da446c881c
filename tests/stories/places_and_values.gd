extends Story
## What kinds make of values, of places and of words.


func test_what_counts_as_a_number_and_as_true() -> void:
	for row: Array in [[3, 3.0], [2.5, 2.5], [true, 1.0], ["7", 0.0], [null, 0.0], [Vector2(1, 1), 0.0]]:
		expect_equal(SCMachineAction.as_number(row[0]), row[1], str(row[0]))
	for row: Array in [[1, true], [0, false], [0.5, true], ["", false], ["no", true], [null, false], [[], false], [Vector2(), false], [self, true]]:
		expect_equal(SCMachineAction.as_truth(row[0]), row[1], str(row[0]))


func test_what_is_the_same() -> void:
	for row: Array in [[1, 1.0], [true, 1], ["a", &"a"], [null, null], [Vector2(1, 2), Vector2i(1, 2)], [0.1 + 0.2, 0.3], [[1], [1]]]:
		expect(SCMachineAction.same_value(row[0], row[1]), "%s and %s" % row)
	for row: Array in [[1, 2], ["1", 1], [null, 0], [Vector2(1, 2), Vector2(2, 1)], [[1], [2]], ["", null]]:
		expect(not SCMachineAction.same_value(row[0], row[1]), "%s and %s" % row)


func test_what_a_variable_gives() -> void:
	var guard := asker(stage, {"name": "Guard", "variables": {"health": 12, "label": "x", "coins": 3, "weight": 1.5, "held": null}})
	for row: Array in [[5.0, "", 5.0], [5.0, "health", 12.0], [5.0, "label", 0.0], [2.0, "mana", 2.0]]:
		expect_equal(SCMachineAction.number_of(guard, row[0], row[1]), row[2])
	expect_equal(SCMachineAction.value_of(guard, 5.0, "label"), "x")
	expect_equal(SCMachineAction.value_of(guard, "typed", "mana"), "typed")
	expect_warning("Guard reads the variable mana, which it does not have, so the value typed in beside that setting is used instead. Add mana in its Variables tab, or pick a variable it has.")
	expect_equal(SCMachineCondition.number_of(null, 2.0, "mana"), 2.0)
	expect_error("Parameter \"p_machine\" is null.")
	# An int stays whole.
	for row: Array in [["coins", 4.0, 4], ["weight", 4.25, 4.25], ["coins", 4.5, 5]]:
		expect_equal(SCMachineAction.keep_whole(guard, row[0], row[1]), row[2])
	expect_warning("coins on Guard is an int, so 4.5 was rounded to 5. Make it a float in the Variables tab to keep fractions.")
	expect_equal(SCMachineAction.item_in(guard, "held"), null)
	expect_equal(SCMachineAction.item_in(guard, "coins"), null)
	expect_warning("coins on Guard holds an int, not an item, so the item actions reading it have no item to work with. Put an item in it, with Pick Item or Set Variable.")


func test_a_value_in_words() -> void:
	for row: Array in [
		[null, "nothing"], [true, "a bool"], [1, "an int"], [1.0, "a float"], ["", "a String"], [Vector2i(), "a Vector2"], [Vector3(), "a Vector3"],
		[Color(), "a Color"], [stage, "a Node"], [Resource.new(), "a Resource"], [{}, "a Dictionary"], [[], "an Array"], [Rect2(), "a Rect2"], [&"", "a StringName"],
	]:
		expect_equal(SCMachineAction.kind_in_words(row[0]), row[1])
	expect(SCMachineAction.is_list([]) and SCMachineAction.is_list(PackedVector4Array()) and not SCMachineAction.is_list({}))
	# A number without needless digits.
	for row: Array in [[2.0, "2"], [-3.0, "-3"], [0.5, "0.5"], [3.14159265, "3.1416"], [1e9, "1000000000"], [0.0, "0"]]:
		expect_equal(SCMachineAction.number(row[0]), row[1])
	var named := Resource.new()
	named.resource_name = "Sword"
	for row: Array in [[null, ""], [2.0, "2"], [true, "true"], ["a", "a"], [Vector3(1, 2.5, 3), "(1, 2.5, 3)"], [Color.RED, "#ff0000"], [stage, "Stage"], [named, "Sword"], [[1, 2], "[1, 2]"]]:
		expect_equal(SCMachineAction.text_of(row[0]), row[1])


func test_forms_of_a_value() -> void:
	for row: Array in [
		[7, "000", "007"], [-7, "000", "-007"], [3.14159, "0.00", "3.14"], [2, "0.0", "2.0"], [1234567.5, ",", "1,234,567.5"], [-1000, ",", "-1,000"],
		[999, ",", "999"], [5, "+", "+5"], [-5, "+", "-5"], [0.256, "%", "26%"], [65, "time", "1:05"], [3725, "time", "1:02:05"], [-65, "time", "-1:05"],
		[60, "time", "1:00"], [3600, "time", "1:00:00"], ["ann", "upper", "ANN"], ["the_sword", "title", "The Sword"], [5, "nonsense", "5"], ["word", "000", "word"], [5, "", "5"],
	]:
		expect_equal(SCMachineAction.shown_as(row[0], row[1]), row[2], "%s as %s" % [row[0], row[1]])


func test_filling_in_a_line() -> void:
	var guard := asker(body("Owner"), {"variables": {"score": 7, "name": "Ann"}})
	for row: Array in [
		["{name} has {score}", "Ann has 7"], ["{score:000}", "007"], ["{nobody} {}", "{nobody} {}"], ["{target}", "Owner"], ["a } b { c", "a } b { c"],
		["{{name}}", "{Ann}"], ["{unfinished", "{unfinished"], ["", ""],
	]:
		expect_equal(SCMachineAction.fill_in(row[0], guard), row[1])
	expect_equal(SCMachineAction.fill_in("{target} {extra}", guard, stage, {"extra": 3}), "Stage 3")
	expect_equal(SCMachineAction.fill_in("{name}", null), "{name}")
	expect_equal(Array(SCMachineAction.names_in("{name} {score:00} {name} {target} {}")), ["name", "score"])


func test_a_path_in_a_line() -> void:
	for row: Array in [[^"", "nobody"], [^"Door", "Door"], [^"../Hall/Door", "Door"], [^"..", "Self"], [^"../..", "Parent"], [^"../../..", "Parent's parent"], [^"../../../..", "the node 3 up"], [^"__no_node__", "an empty node variable"]]:
		expect_equal(SCMachineAction.name_in_line(row[0], "Self", "nobody"), row[1])
	expect_equal(SCMachineAction.property_in_line("body_path"), "body path")
	expect_equal(SCMachineAction.property_in_line("__Deep__value"), "Deep value")


func test_where_things_are() -> void:
	var plain := add(Node.new(), "Plain")
	# Node, where it is, where it is put, where it is then, and whether it counts as 2D.
	for row: Array in [
		[body("Flat", Vector2(3, 4)), Vector2(3, 4), Vector3(7, 8, 9), Vector2(7, 8), true],
		[body_3d("Deep", Vector3(1, 2, 3)), Vector3(1, 2, 3), Vector2(7, 8), Vector3(7, 8, 0), false],
		[add(Control.new(), "", {"position": Vector2(10, 20)}), Vector2(10, 20), Vector2(7, 8), Vector2(7, 8), true],
		[plain, null, Vector2(), null, false],
		[null, null, Vector2(), null, false],
	]:
		expect_equal(SCMachineAction.position_of(row[0]), row[1])
		expect_equal(SCMachineAction.has_a_place(row[0]), row[1] != null)
		expect_equal(SCMachineAction.is_2d(row[0]), row[4])
		SCMachineAction.set_position_of(row[0], row[2])
		expect_equal(SCMachineAction.position_of(row[0]), row[3])
	for above: Node in [body(), body_3d(), CanvasLayer.new()]:
		var under := Node.new()
		above.add_child(under)
		expect_equal(SCMachineAction.is_2d(under), not above is Node3D)
		above.free()
	# Outside the tree there is no world to be in.
	for lost: Node in [Node2D.new(), Node3D.new(), Control.new()]:
		var at: Variant = Vector3(1, 2, 3) if lost is Node3D else Vector2(1, 2)
		SCMachineAction.set_position_of(lost, at)
		expect_equal(SCMachineAction.position_of(lost), at)
		lost.free()
	expect_equal(SCMachineAction.no_place_words(plain, "Node"), "Plain is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Node")
	expect_equal(SCMachineAction.no_place_words(null, "Node"), "")
	expect_error("Parameter \"p_node\" is null.")


func test_vectors_and_distances() -> void:
	var flat := body("Flat", Vector2(3, 4))
	for row: Array in [[Vector3(1, 2, 3), Vector2(1, 2)], [flat, Vector2(3, 4)], [2, Vector2(2, 2)], ["text", Vector2()]]:
		expect_equal(SCMachineAction.as_vector2(row[0]), row[1])
	expect_equal(SCMachineAction.as_vector3(Vector2i(1, 2)), Vector3(1, 2, 0))
	for row: Array in [[flat, Vector2(), 5.0], [Vector3(0, 0, 9), flat, 5.0], [Vector3(), Vector3(0, 3, 4), 5.0], [stage, flat, INF], [flat, "there", INF]]:
		expect_equal(SCMachineAction.distance_between(row[0], row[1]), row[2])
		expect_equal(SCMachineCondition.distance_between(row[0], row[1]), row[2])
	expect_equal(SCMachineAction.not_picked(), "(pick one)")


func test_the_way_to_a_node() -> void:
	var friend := body("Friend")
	var guard := asker(body("Owner"))
	expect_equal(SCMachineAction.path_to(guard, friend), guard.get_path_to(friend))
	for row: Array in [[guard, null], [guard, 5], [null, friend]]:
		expect_equal(SCMachineAction.path_to(row[0], row[1]), ^"__no_node__")
	expect_equal(SCMachineAction.node_of(guard, ^"../../Friend"), friend)
	expect_equal(SCMachineAction.node_of(guard, ^"../Nobody"), null)
	expect_equal(SCMachineAction.node_of(null, ^"x"), null)
	expect_error("Parameter \"p_machine\" is null.")
