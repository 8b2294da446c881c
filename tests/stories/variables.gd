extends Story
## What a machine's variables start as, and how they are read and written.


func test_every_machine_starts_with_values_of_its_own() -> void:
	var bag := [1, {"gold": 2}]
	var design := template([state("A")], {"variables": [
		variable("score", 3),
		variable("bag", bag),
		variable("stats", {"hp": [1, 2]}),
		variable("name", "Ann"),
	]})
	var made := start(running(design))
	expect_equal(made.values, {&"score": 3, &"bag": [1, {"gold": 2}], &"stats": {"hp": [1, 2]}, &"name": "Ann"})
	made.get_value("bag")[1]["gold"] = 9
	made.get_value("stats")["hp"].append(3)
	expect_equal(bag, [1, {"gold": 2}])
	made.start()
	expect_equal(made.get_value("bag"), [1, {"gold": 2}])
	expect_equal(made.get_value("stats"), {"hp": [1, 2]})


func test_reading_and_writing() -> void:
	var made := start(machine([state("A")], {"variables": {"score": 3}}))
	expect_equal(made.get_value("score"), 3)
	expect_equal(made.get_value("nothing"), null)
	expect_equal(made.get_value("nothing", 7), 7)
	expect(made.has_value("score") and not made.has_value("nothing"))
	made.set_value("fresh", Color.RED)
	expect_equal(made.get_value("fresh"), Color.RED)
	made.set_value("score", "now a text")
	expect_equal(made.values, {&"score": "now a text", &"fresh": Color.RED})
	made.values = {&"other": 1}
	expect(not made.has_value("score"))
	expect_equal(made.get_value("other"), 1)
	made.stop()
	made.set_value("other", 2)
	expect_equal(made.get_value("other"), 2)


func test_nodes_are_found_from_the_machine() -> void:
	var door := body("Door")
	var design := template([state("A")], {"variables": [
		variable("door", null, {"starting_node": NodePath("../../Door")}),
		variable("nobody", null),
		variable("doors", [NodePath("../../Door"), 5, NodePath("..")], {"items_are": SCMachineVariable.NODES}),
	]})
	var left := body("Left")
	var right := body("Right")
	var one := start(running(design, {"under": left}))
	var two := start(running(design, {"under": right}))
	expect_equal(one.get_value("door"), door)
	expect_equal(two.get_value("door"), door)
	expect_equal(one.get_value("nobody"), null)
	expect(one.has_value("nobody"))
	expect_equal(one.get_value("doors"), [door, 5, left])
	expect_equal(two.get_value("doors"), [door, 5, right])


func test_a_node_that_is_not_there_is_told_of_once() -> void:
	var design := template([state("A")], {"variables": [
		variable("door", null, {"starting_node": NodePath("../NoDoor")}),
		variable("doors", [NodePath(".."), NodePath("../NoDoor"), NodePath("")], {"items_are": SCMachineVariable.NODES}),
	]})
	var made := start(running(design, {"name": "Guard"}))
	expect_equal(made.get_value("door"), null)
	var doors: Array = made.get_value("doors")
	expect_equal(doors.size(), 3)
	expect_equal(doors[0], stage)
	expect_equal(doors[1], null)
	expect_equal(doors[2], null)
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
	expect_equal(made.get_value("count"), 2.5)
	expect_equal(made.get_value("share"), 3)
	expect_equal(made.get_value("name"), "Ann")
	expect_equal(made.get_value("bag"), [1, [2]])
	expect_equal(made.get_value("door"), door)
	expect_equal(made.get_value("held"), door)
	expect_equal(made.get_value("shared"), 1)
	expect(not made.has_value("unknown"))
	made.get_value("bag")[1].append(3)
	expect_equal(list, [1, [2]])


func test_starting_values_are_taken_as_they_are() -> void:
	var made := start(machine([state("A")], {
		"variables": {"count": 1},
		"handed_values": {&"count": 2},
		"starting_values": {&"count": "three", &"extra": 4},
	}))
	expect_equal(made.get_value("count"), "three")
	expect_equal(made.get_value("extra"), 4)


func test_a_value_is_fitted_to_the_kind_it_replaces() -> void:
	expect_equal(SCMachine._fit_to(1, 2.9), 2)
	expect_equal(SCMachine._fit_to(1, -2.9), -2)
	expect_equal(SCMachine._fit_to(1.0, 2), 2.0)
	expect_equal(SCMachine._fit_to(1.0, true), 1.0)
	expect_equal(SCMachine._fit_to("a", &"b"), "b")
	expect_equal(SCMachine._fit_to(&"a", "b"), &"b")
	expect_equal(SCMachine._fit_to(null, [1]), [1])
	expect_equal(SCMachine._fit_to(stage, tree.root), tree.root)
	expect_equal(SCMachine._fit_to(1, "2"), null)
	expect_equal(SCMachine._fit_to(1, true), null)
	expect_equal(SCMachine._fit_to(Vector2(), Vector3()), null)
	expect_equal(SCMachine._fit_to(stage, 1), null)


func test_the_set_variable_action() -> void:
	var rows: Array[Array] = [
		# starts as, operation, value, becomes
		[3, SCSetVariableAction.SET, 5, 5],
		[3, SCSetVariableAction.ADD, 5, 8],
		[3, SCSetVariableAction.SUBTRACT, 5, -2],
		[3, SCSetVariableAction.MULTIPLY, 5, 15],
		[0.5, SCSetVariableAction.ADD, 0.25, 0.75],
		[2.0, SCSetVariableAction.MULTIPLY, 2.0, 4.0],
		[false, SCSetVariableAction.TOGGLE, null, true],
		[true, SCSetVariableAction.TOGGLE, null, false],
		[Vector2(1, 2), SCSetVariableAction.ADD, Vector2(1, 1), Vector2(2, 3)],
		["a", SCSetVariableAction.ADD, "b", "ab"],
	]
	for row in rows:
		var made := start(machine([state("A", [set_var("held", row[2], {"operation": row[1]})], {"FINISHED": "B"}), state("B")], {
			"variables": [variable("held", row[0])],
		}))
		expect_state(made, "B")
		expect_equal(made.get_value("held"), row[3], "%s, operation %d with %s" % [row[0], row[1], row[2]])
		made.queue_free()


func test_set_variable_may_go_on_every_frame() -> void:
	var made := start(machine([
		state("A", [
			set_var("steps", 1, {"operation": SCSetVariableAction.ADD, "run_mode": SCMachineAction.EVERY_FRAME}),
			set_var("air", 60.0, {"operation": SCSetVariableAction.SUBTRACT, "run_mode": SCMachineAction.EVERY_FRAME, "per_second": true}),
		], {"FINISHED": "Wrong"}),
		state("Wrong"),
	], {"variables": {"steps": 0, "air": 100.0}}))
	var after_entering: int = made.get_value("steps")
	await frames(10)
	expect_equal(made.get_value("steps"), after_entering + 10)
	expect_near(made.get_value("air"), 90.0, 0.001)
	expect_state(made, "A")


func test_set_variable_without_a_variable_says_so_once() -> void:
	var made := start(machine([state("A", [set_var("", 5)], {"FINISHED": "B"}), state("B", [], {"again": "A"})], {"name": "Guard"}))
	made.send_event("again")
	expect_state(made, "B")
	expect_warning("Set Variable on Guard has no variable picked, so it changed nothing. Pick one in its Variable Name.")


func test_a_line_is_printed_with_what_the_variables_hold() -> void:
	start(machine([state("A", [print_line("{name} has {score}, {nothing}")])], {"variables": {"name": "Ann", "score": 3}}))
	expect_printed("Ann has 3, ")
	start(machine([state("A", [
		print_line("careful", {"loudness": SCPrintAction.AS_WARNING}),
		print_line("broken", {"loudness": SCPrintAction.AS_ERROR}),
	])]))
	expect_warning("careful")
	expect_error("broken")


func test_whether_a_variable_holds_whole_numbers() -> void:
	var made := start(machine([state("A")], {"variables": {"count": 1, "share": 1.0}}))
	expect(made.holds_whole("count"))
	expect(not made.holds_whole("share"))
	expect(not made.holds_whole("nothing"))
