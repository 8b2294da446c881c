extends Story
## Set Variable changes numbers, places, colours, texts and truths, and keeps to what the variable holds.

const EACH_SECOND: Dictionary = {"per_second": true, "run_mode": SCMachineAction.EVERY_FRAME}


func test_every_operation_on_every_kind_of_value() -> void:
	# Operation, then what the variable holds, value, what it holds then.
	var rows: Dictionary[int, Array] = {
		SCSetVariableAction.SET: [
			[1.5, 4, 4.0], [1, 4.0, 4], [true, 0, false], ["a", 5, "5"], [&"a", "b", &"b"], [null, Color.RED, Color.RED], [[1], [2, 3], [2, 3]],
			[Vector2(1, 2), Vector3(3, 4, 5), Vector2(3, 4)], [Vector3(1, 2, 3), Vector2(3, 4), Vector3(3, 4, 0)],
		],
		SCSetVariableAction.ADD: [
			[1.5, 2, 3.5], [1, 2, 3], [1, 2.0, 3], [null, 3, 3], ["a", "b", "ab"], [0.5, 0.25, 0.75],
			[Vector2(1, 2), Vector2(10, 20), Vector2(11, 22)], [Vector2i(1, 2), Vector2(0.6, 1.0), Vector2i(2, 3)],
			[Vector3(1, 2, 3), Vector2(1, 1), Vector3(2, 3, 3)], [Vector3i(1, 2, 3), Vector3(0.6, 1.0, 1.0), Vector3i(2, 3, 4)],
			[Color(0.25, 0.5, 0.0, 0.5), Color(0.5, 0.0, 0.25, 0.5), Color(0.75, 0.5, 0.25, 1.0)],
		],
		SCSetVariableAction.SUBTRACT: [[5, 2, 3], [2.5, 2, 0.5], [null, 2.5, -2.5], [Vector2(1, 2), Vector2(1, 1), Vector2(0, 1)]],
		SCSetVariableAction.MULTIPLY: [
			[5, 2, 10], [2.5, 2, 5.0], [5, 0.5, 3], [Vector2(1, 2), 3, Vector2(3, 6)], [Vector2(1, 2), Vector2(3, 4), Vector2(3, 8)],
			[Color(0.5, 0.25, 1.0, 1.0), 0.5, Color(0.25, 0.125, 0.5, 0.5)],
		],
		SCSetVariableAction.TOGGLE: [[true, null, false], [false, null, true], [0, null, 1], [2.5, null, 0.0], [null, null, true]],
	}
	for operation in rows:
		for row: Array in rows[operation]:
			# A second means nothing to what is done once.
			for per_second: bool in [false, true]:
				expect_equal(_outcome(row[0], row[1], {"operation": operation, "per_second": per_second}), row[2], "%s %d %s" % [row[0], operation, row[1]])
	expect_warning(" is an int, so 2.5 was rounded to 3.")
	expect_warning(" is an int, so 2.5 was rounded to 3.")


func test_what_does_not_fit_changes_nothing_and_is_told() -> void:
	for row: Array in [
		[5, SCSetVariableAction.SET, "five", "Set Variable on Keeper: it holds an int and cannot be set to a String, so it changed nothing."],
		[Vector2.ONE, SCSetVariableAction.SET, 2.0, "it holds a Vector2 and cannot be set to a float"],
		[Vector2.ONE, SCSetVariableAction.ADD, 2.0, "a float cannot be added to it, which holds a Vector2"],
		[true, SCSetVariableAction.SUBTRACT, 2.0, "a float cannot be taken from it, which holds a bool"],
		["a", SCSetVariableAction.MULTIPLY, Vector2.ONE, "it holds a String, which cannot be multiplied by a Vector2"],
		["a", SCSetVariableAction.TOGGLE, null, "it holds a String, which is neither true nor false"],
	]:
		expect_equal(_outcome(row[0], row[2], {"operation": row[1]}), row[0])
		expect_warning(row[3])


func test_without_a_variable_it_says_so_once() -> void:
	var made := start(machine([state("A", [_set_it(5, {"variable_name": ""})], {"FINISHED": "B"}), state("B", [], {"again": "A"})], {"name": "Guard"}))
	expect_after(made, "again", "B")
	expect_warning("Set Variable on Guard has no variable picked, so it changed nothing. Pick one in its Variable Name.")


func test_a_variable_can_be_emptied_of_a_node() -> void:
	var made := start(machine([state("A", [], {"go": "B"}), state("B", [_set_it(null)])], {"variables": {"it": null}}))
	made.set_value("it", body())
	expect(made.get_value("it") is Node2D)
	made.send_event("go")
	expect_equal(made.get_value("it"), null)


func test_each_second_on_every_frame() -> void:
	# Operation, value, what it holds as it is entered and two seconds later.
	for row: Array in [
		[SCSetVariableAction.ADD, 2.0, 1.0, 5.0],
		[SCSetVariableAction.SUBTRACT, 2.0, 1.0, -3.0],
		[SCSetVariableAction.SUBTRACT, Vector2(3, 0), Vector2(10, 5), Vector2(4, 5)],
	]:
		var made := play(_set_it(row[1], EACH_SECOND.merged({"operation": row[0]})), {}, {"variables": {"it": row[2]}})
		expect_equal(made.get_value("it"), row[2], "nothing on entering")
		await advance(2.0)
		expect_near(made.get_value("it"), row[3], 0.1)


func test_every_frame_where_a_second_means_nothing() -> void:
	var steps := play(_set_it(1, {"operation": SCSetVariableAction.ADD, "run_mode": SCMachineAction.EVERY_FRAME}), {"FINISHED": "Wrong"}, {"variables": {"it": 0}})
	var set_it := play(_set_it(7.0, EACH_SECOND), {}, {"variables": {"it": 1.0}})
	var doubled := play(_set_it(2.0, EACH_SECOND.merged({"operation": SCSetVariableAction.MULTIPLY})), {}, {"variables": {"it": 1.0}})
	expect_equal([steps.get_value("it"), set_it.get_value("it"), doubled.get_value("it")], [1, 7.0, 2.0])
	set_it.set_value("it", 0.0)
	await frames(3)
	expect_equal([steps.get_value("it"), set_it.get_value("it"), doubled.get_value("it")], [4, 7.0, 16.0])
	expect_state(steps, "Work")


func test_half_a_point_a_second_never_moves_an_int_and_is_told_once() -> void:
	var made := play(_set_it(0.5, EACH_SECOND.merged({"operation": SCSetVariableAction.ADD})), {}, {"name": "Keeper", "variables": {"it": 3}})
	await advance(1.0)
	expect_equal(made.get_value("it"), 3)
	expect_warning("it on Keeper is an int, so 3.0083 was rounded to 3.")


func test_the_value_may_come_from_another_variable() -> void:
	expect_equal(_outcome(5, 0.0, {"operation": SCSetVariableAction.ADD, "value_variable": &"prize"}), 25)


func test_lines_on_the_graph_and_what_it_reads_and_writes() -> void:
	expect_lines(SCSetVariableAction, {
		"Set it to 3": {"variable_name": "it", "value": 3},
		"Set it to true": {"variable_name": "it", "value": true},
		"Add 2.5 to it": {"variable_name": "it", "value": 2.5, "operation": SCSetVariableAction.ADD},
		"Add [prize] to it": {"variable_name": "it", "value_variable": &"prize", "operation": SCSetVariableAction.ADD},
		"Take 1 from it each second": EACH_SECOND.merged({"variable_name": "it", "value": 1, "operation": SCSetVariableAction.SUBTRACT}),
		"Multiply it by 2": {"variable_name": "it", "value": 2, "operation": SCSetVariableAction.MULTIPLY},
		"Toggle it": {"variable_name": "it", "operation": SCSetVariableAction.TOGGLE},
		"Set (pick one) to 3": {"value": 3},
	})
	expect_equal(_set_it(3).variables_read(), PackedStringArray())
	expect_equal(_set_it(3).variables_written(), PackedStringArray(["it"]))
	expect_equal(_set_it(3, {"operation": SCSetVariableAction.ADD}).variables_read(), PackedStringArray(["it"]))


func _set_it(value: Variant, options: Dictionary = {}) -> SCSetVariableAction:
	return set_var("it", value, options)


func _outcome(holds: Variant, value: Variant, options: Dictionary) -> Variant:
	return results_of(_set_it(value, options), {"it": holds, "prize": 20}, {"name": "Keeper"})[&"it"]
