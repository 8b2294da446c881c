extends Story
## What a machine's variables start as, and how they are read and written.


func test_every_machine_starts_with_values_of_its_own() -> void:
	var bag := [1, {"gold": 2}]
	var design := template([state("A")], {"variables": {"score": 3, "bag": bag, "stats": {"hp": [1, 2]}, "name": "Ann"}})
	var made := start(running(design))
	expect_equal(made.values, {&"score": 3, &"bag": [1, {"gold": 2}], &"stats": {"hp": [1, 2]}, &"name": "Ann"})
	made.get_value("bag")[1]["gold"] = 9
	made.get_value("stats")["hp"].append(3)
	made.set_value("score", 4)
	expect_equal(bag, [1, {"gold": 2}])
	made.start()
	expect_values(made, {"score": 3, "bag": [1, {"gold": 2}], "stats": {"hp": [1, 2]}})


func test_reading_and_writing() -> void:
	var made := start(machine([state("A")], {"variables": {"score": 3, "share": 1.0}}))
	expect_values(made, {"score": 3, "nothing": null})
	expect_equal(made.get_value("nothing", 7), 7)
	expect(made.has_value("score") and not made.has_value("nothing"))
	expect(made.holds_whole("score") and not made.holds_whole("share") and not made.holds_whole("nothing"))
	made.set_value("fresh", Color.RED)
	made.set_value("score", "now a text")
	expect_equal(made.values, {&"score": "now a text", &"share": 1.0, &"fresh": Color.RED})
	made.values = {&"other": 1}
	expect(not made.has_value("score"))
	expect_equal(made.get_value("other"), 1)
	made.stop()
	made.set_value("other", 2)
	expect_equal(made.get_value("other"), 2)
	expect_debug_warning("set_value gave score words, and it held a number.")


func test_nodes_are_found_from_the_machine() -> void:
	var door := body("Door")
	var design := template([state("A")], {"variables": [
		variable("door", null, {"starting_node": NodePath("../../Door")}),
		variable("nobody", null),
		variable("doors", [NodePath("../../Door"), 5, NodePath("..")], {"items_are": SCMachineVariable.NODES}),
	]})
	for side: Node in [body("Left"), body("Right")]:
		var made := start(running(design, {"under": side}))
		expect_values(made, {"door": door, "nobody": null, "doors": [door, 5, side]})
		expect(made.has_value("nobody"))


func test_a_node_that_is_not_there_is_told_of_once() -> void:
	var made := start(machine([state("A")], {"name": "Guard", "variables": [
		variable("door", null, {"starting_node": NodePath("../NoDoor")}),
		variable("doors", [NodePath(".."), NodePath("../NoDoor"), NodePath("")], {"items_are": SCMachineVariable.NODES}),
	]}))
	expect_values(made, {"door": null, "doors": [stage, null, null]})
	expect_warning("Variable door on Guard starts with no node, as nothing is at ../NoDoor from the machine.")
	expect_warning("Item 2 of list doors on Guard holds no node, as nothing is at ../NoDoor from the machine.")
	expect_warning("Item 3 of list doors on Guard holds no node, as nothing is at")
	made.start()


func test_values_handed_over_must_be_of_the_variable_s_kind() -> void:
	var door := body("Door")
	var list := [1, [2]]
	var made := start(machine([state("A")], {
		"variables": [
			variable("count", 1), variable("share", 0.5), variable("name", "Ann"), variable("bag", []), variable("door", null),
			variable("held", null), global_variable("shared", 1),
		],
		"handed_values": {
			&"count": 2.5, &"share": 3, &"name": 4, &"bag": list, &"door": NodePath("../Door"), &"held": door, &"shared": 5, &"unknown": 6,
		},
	}))
	expect_values(made, {"count": 2.5, "share": 3, "name": "Ann", "bag": [1, [2]], "door": door, "held": door, "shared": 1})
	expect(not made.has_value("unknown"))
	made.get_value("bag")[1].append(3)
	expect_equal(list, [1, [2]])
	# Starting values are taken as they are.
	made = start(machine([state("A")], {"variables": {"count": 1}, "handed_values": {&"count": 2}, "starting_values": {&"count": "three", &"extra": 4}}))
	expect_values(made, {"count": "three", "extra": 4})


func test_a_value_is_fitted_to_the_kind_it_replaces() -> void:
	for row: Array in [
		[1, 2.9, 2], [1, -2.9, -2], [1.0, 2, 2.0], [1.0, true, 1.0], ["a", &"b", "b"], [&"a", "b", &"b"], [null, [1], [1]], [stage, tree.root, tree.root],
		[1, "2", null], [1, true, null], [Vector2(), Vector3(), null], [stage, 1, null],
	]:
		expect_equal(SCMachine._fit_to(row[0], row[1]), row[2], "%s for %s" % [row[1], row[0]])


func test_a_line_is_printed_with_what_the_variables_hold() -> void:
	play([
		print_line("{name} has {score}, {nothing}"),
		print_line("careful", {"loudness": SCPrintAction.AS_WARNING}),
		print_line("broken", {"loudness": SCPrintAction.AS_ERROR}),
	], {}, {"variables": {"name": "Ann", "score": 3}})
	expect_printed("Ann has 3, ")
	expect_warning("careful")
	expect_error("broken")
	expect_line(print_line("ding", {"text_variable": &"sound"}), "Print \"[sound]\"")
