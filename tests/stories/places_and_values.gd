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


func test_a_number_of_a_variable() -> void:
	var guard := start(machine([state("Idle")], {"name": "Guard", "variables": {"health": 12, "label": "x"}}))
	expect_equal(SCMachineAction.number_of(guard, 5.0, ""), 5.0)
	expect_equal(SCMachineAction.number_of(guard, 5.0, "health"), 12.0)
	expect_equal(SCMachineAction.number_of(guard, 5.0, "label"), 0.0)
	expect_equal(SCMachineAction.value_of(guard, 5.0, "label"), "x")
	expect_equal(SCMachineAction.value_of(guard, "typed", "mana"), "typed")
	expect_warning("Guard reads the variable mana, which it does not have, so the value typed in beside that setting is used instead. Add mana in its Variables tab, or pick a variable it has.")
	expect_equal(SCMachineAction.number_of(guard, 2.0, "mana"), 2.0)
	expect_equal(SCMachineCondition.number_of(null, 2.0, "mana"), 2.0)
	expect_error("Parameter \"p_machine\" is null.")


func test_an_int_variable_stays_whole() -> void:
	var guard := start(machine([state("Idle")], {"name": "Guard", "variables": {"coins": 3, "weight": 1.5}}))
	expect_equal(SCMachineAction.keep_whole(guard, "coins", 4.0), 4)
	expect_equal(SCMachineAction.keep_whole(guard, "weight", 4.25), 4.25)
	expect_equal(SCMachineAction.keep_whole(guard, "coins", 4.5), 5)
	expect_warning("coins on Guard is an int, so 4.5 was rounded to 5. Make it a float in the Variables tab to keep fractions.")


func test_no_item_is_told_of() -> void:
	var guard := start(machine([state("Idle")], {"name": "Guard", "variables": [variable(&"held", null), variable(&"count", 3)]}))
	expect_equal(SCMachineAction.item_in(guard, "held"), null)
	expect_equal(SCMachineAction.item_in(guard, "count"), null)
	expect_warning("count on Guard holds an int, not an item, so the item actions reading it have no item to work with. Put an item in it, with Pick Item or Set Variable.")


func test_a_value_in_words() -> void:
	for row: Array in [[null, "nothing"], [true, "a bool"], [1, "an int"], [1.0, "a float"], ["", "a String"], [Vector2i(), "a Vector2"], [Vector3(), "a Vector3"], [Color(), "a Color"], [stage, "a Node"], [Resource.new(), "a Resource"], [{}, "a Dictionary"], [[], "an Array"], [Rect2(), "a Rect2"], [&"", "a StringName"]]:
		expect_equal(SCMachineAction.kind_in_words(row[0]), row[1])
	expect(SCMachineAction.is_list([]) and SCMachineAction.is_list(PackedVector4Array()) and not SCMachineAction.is_list({}))


func test_a_number_without_needless_digits() -> void:
	for row: Array in [[2.0, "2"], [-3.0, "-3"], [0.5, "0.5"], [3.14159265, "3.1416"], [1e9, "1000000000"], [0.0, "0"]]:
		expect_equal(SCMachineAction.number(row[0]), row[1])


func test_text_of_anything() -> void:
	var named := Resource.new()
	named.resource_name = "Sword"
	for row: Array in [[null, ""], [2.0, "2"], [true, "true"], ["a", "a"], [Vector3(1, 2.5, 3), "(1, 2.5, 3)"], [Color.RED, "#ff0000"], [stage, "Stage"], [named, "Sword"], [[1, 2], "[1, 2]"]]:
		expect_equal(SCMachineAction.text_of(row[0]), row[1])


func test_forms_of_a_value() -> void:
	for row: Array in [[7, "000", "007"], [-7, "000", "-007"], [3.14159, "0.00", "3.14"], [2, "0.0", "2.0"], [1234567.5, ",", "1,234,567.5"], [-1000, ",", "-1,000"], [999, ",", "999"], [5, "+", "+5"], [-5, "+", "-5"], [0.256, "%", "26%"], [65, "time", "1:05"], [3725, "time", "1:02:05"], [-65, "time", "-1:05"], ["ann", "upper", "ANN"], ["the_sword", "title", "The Sword"], [5, "nonsense", "5"], ["word", "000", "word"], [5, "", "5"]]:
		expect_equal(SCMachineAction.shown_as(row[0], row[1]), row[2], "%s as %s" % [row[0], row[1]])


func test_filling_in_a_line() -> void:
	var owner := body("Owner")
	var guard := start(machine([state("Idle")], {"under": owner, "variables": {"score": 7, "name": "Ann"}}))
	for row: Array in [["{name} has {score}", "Ann has 7"], ["{score:000}", "007"], ["{nobody} {}", "{nobody} {}"], ["{target}", "Owner"], ["a } b { c", "a } b { c"], ["{{name}}", "{Ann}"], ["{unfinished", "{unfinished"], ["", ""]]:
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
	var flat := body("Flat")
	flat.position = Vector2(3, 4)
	var deep := Node3D.new()
	add(deep)
	deep.position = Vector3(1, 2, 3)
	var panel := Control.new()
	add(panel)
	panel.position = Vector2(10, 20)
	var plain := add(Node.new())
	expect_equal(SCMachineAction.position_of(flat), Vector2(3, 4))
	expect_equal(SCMachineAction.position_of(deep), Vector3(1, 2, 3))
	expect_equal(SCMachineAction.position_of(panel), Vector2(10, 20))
	expect_equal(SCMachineAction.position_of(plain), null)
	expect_equal(SCMachineAction.position_of(null), null)
	SCMachineAction.set_position_of(flat, Vector3(7, 8, 9))
	expect_equal(flat.position, Vector2(7, 8))
	SCMachineAction.set_position_of(deep, Vector2(7, 8))
	expect_equal(deep.position, Vector3(7, 8, 0))
	SCMachineAction.set_position_of(null, Vector2())
	SCMachineAction.set_position_of(plain, Vector2())
	expect(SCMachineAction.has_a_place(panel) and not SCMachineAction.has_a_place(plain) and not SCMachineAction.has_a_place(null))
	plain.name = "Plain"
	expect_equal(SCMachineAction.no_place_words(plain, "Node"), "Plain is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Node")
	expect_equal(SCMachineAction.no_place_words(null, "Node"), "")
	expect_error("Parameter \"p_node\" is null.")


func test_which_side_a_node_is_on() -> void:
	var flat := body()
	var under := Node.new()
	flat.add_child(under)
	var deep := add(Node3D.new())
	expect(SCMachineAction.is_2d(flat))
	expect(SCMachineAction.is_2d(under))
	expect(not SCMachineAction.is_2d(deep))
	expect(not SCMachineAction.is_2d(stage))
	expect(not SCMachineAction.is_2d(null))


func test_vectors_and_distances() -> void:
	var flat := body()
	flat.position = Vector2(3, 4)
	expect_equal(SCMachineAction.as_vector2(Vector3(1, 2, 3)), Vector2(1, 2))
	expect_equal(SCMachineAction.as_vector2(flat), Vector2(3, 4))
	expect_equal(SCMachineAction.as_vector2(2), Vector2(2, 2))
	expect_equal(SCMachineAction.as_vector2("text"), Vector2())
	expect_equal(SCMachineAction.as_vector3(Vector2i(1, 2)), Vector3(1, 2, 0))
	expect_equal(SCMachineAction.distance_between(flat, Vector2()), 5.0)
	expect_equal(SCMachineCondition.distance_between(Vector3(), Vector3(0, 3, 4)), 5.0)
	expect_equal(SCMachineAction.distance_between(stage, flat), INF)
	expect_equal(SCMachineAction.not_picked(), "(pick one)")


func test_the_way_to_a_node() -> void:
	var owner := body("Owner")
	var friend := body("Friend")
	var guard := start(machine([state("Idle")], {"under": owner}))
	expect_equal(SCMachineAction.path_to(guard, friend), guard.get_path_to(friend))
	expect_equal(SCMachineAction.path_to(guard, null), ^"__no_node__")
	expect_equal(SCMachineAction.path_to(guard, 5), ^"__no_node__")
	expect_equal(SCMachineAction.path_to(null, friend), ^"__no_node__")
	expect_equal(SCMachineAction.node_of(guard, ^"../../Friend"), friend)
	expect_equal(SCMachineAction.node_of(guard, ^"../Nobody"), null)
	expect_equal(SCMachineAction.node_of(null, ^"x"), null)
	expect_error("Parameter \"p_machine\" is null.")
