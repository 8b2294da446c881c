extends Story
## Set Variable changes numbers, places, colours, texts and truths, and keeps to what the variable holds.


func test_every_operation_on_every_kind_of_value() -> void:
	# What the variable holds, operation, value, what it holds then.
	for row: Array in [
		[1.5, SCSetVariableAction.SET, 4, 4.0],
		[1, SCSetVariableAction.SET, 4.0, 4],
		[true, SCSetVariableAction.SET, 0, false],
		["a", SCSetVariableAction.SET, 5, "5"],
		[&"a", SCSetVariableAction.SET, "b", &"b"],
		[Vector2(1, 2), SCSetVariableAction.SET, Vector3(3, 4, 5), Vector2(3, 4)],
		[Vector3(1, 2, 3), SCSetVariableAction.SET, Vector2(3, 4), Vector3(3, 4, 0)],
		[null, SCSetVariableAction.SET, Color.RED, Color.RED],
		[[1], SCSetVariableAction.SET, [2, 3], [2, 3]],
		[1.5, SCSetVariableAction.ADD, 2, 3.5],
		[1, SCSetVariableAction.ADD, 2, 3],
		[Vector2(1, 2), SCSetVariableAction.ADD, Vector2(10, 20), Vector2(11, 22)],
		[Vector2i(1, 2), SCSetVariableAction.ADD, Vector2(0.6, 1.0), Vector2i(2, 3)],
		[Vector3(1, 2, 3), SCSetVariableAction.ADD, Vector2(1, 1), Vector3(2, 3, 3)],
		[Color(0.25, 0.5, 0.0, 0.5), SCSetVariableAction.ADD, Color(0.5, 0.0, 0.25, 0.5), Color(0.75, 0.5, 0.25, 1.0)],
		[null, SCSetVariableAction.ADD, 3, 3],
		["a", SCSetVariableAction.ADD, "b", "ab"],
		[5, SCSetVariableAction.SUBTRACT, 2, 3],
		[null, SCSetVariableAction.SUBTRACT, 2.5, -2.5],
		[Vector2(1, 2), SCSetVariableAction.SUBTRACT, Vector2(1, 1), Vector2(0, 1)],
		[5, SCSetVariableAction.MULTIPLY, 2, 10],
		[5, SCSetVariableAction.MULTIPLY, 0.5, 3],
		[Vector2(1, 2), SCSetVariableAction.MULTIPLY, 3, Vector2(3, 6)],
		[Vector2(1, 2), SCSetVariableAction.MULTIPLY, Vector2(3, 4), Vector2(3, 8)],
		[Color(0.5, 0.25, 1.0, 1.0), SCSetVariableAction.MULTIPLY, 0.5, Color(0.25, 0.125, 0.5, 0.5)],
		[true, SCSetVariableAction.TOGGLE, null, false],
		[0, SCSetVariableAction.TOGGLE, null, 1],
		[2.5, SCSetVariableAction.TOGGLE, null, 0.0],
		[null, SCSetVariableAction.TOGGLE, null, true],
	]:
		var made := start(_machine([_set_var(row[2], {"operation": row[1]})], row[0]))
		expect_equal(made.get_value("it"), row[3], "%s %d %s" % row.slice(0, 3))
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
		var made := start(_machine([_set_var(row[2], {"operation": row[1]})], row[0]))
		expect_equal(made.get_value("it"), row[0])
		expect_warning(row[3])


func test_a_variable_can_be_emptied_of_a_node() -> void:
	var holds := body()
	var made := start(_machine([act("wait")], null))
	made.set_value("it", holds)
	made.states[0].actions.assign([_set_var(null)])
	made.restart_state(made.states[0])
	expect_equal(made.get_value("it"), null)


func test_the_limits_of_the_variable_hold() -> void:
	var made := start(machine([state("A", [set_var("health", 50, {"operation": SCSetVariableAction.ADD})])], {"variables": [variable("health", 80, {"never_above": "100"})]}))
	expect_equal(made.get_value("health"), 100)


func test_each_second_on_every_frame() -> void:
	var made := start(_machine([_set_var(2.0, {"operation": SCSetVariableAction.ADD, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], 1.0))
	expect_equal(made.get_value("it"), 1.0, "nothing on entering")
	await advance(3.0)
	expect_near(made.get_value("it"), 7.0, 0.1)


func test_each_second_takes_away_from_places() -> void:
	var made := start(_machine([_set_var(Vector2(3, 0), {"operation": SCSetVariableAction.SUBTRACT, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], Vector2(10, 5)))
	await advance(2.0)
	var place: Vector2 = made.get_value("it")
	expect_near(place.x, 4.0, 0.1)
	expect_equal(place.y, 5.0)


func test_each_second_means_nothing_to_set_and_multiply() -> void:
	var set_it := start(_machine([_set_var(7.0, {"per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], 1.0))
	expect_equal(set_it.get_value("it"), 7.0)
	set_it.set_value("it", 0.0)
	await frames(2)
	expect_equal(set_it.get_value("it"), 7.0, "set again on the next frame")
	var doubled := start(_machine([_set_var(2.0, {"operation": SCSetVariableAction.MULTIPLY, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], 1.0))
	expect_equal(doubled.get_value("it"), 2.0)
	await frames(3)
	expect(doubled.get_value("it") >= 8.0)


func test_each_second_means_nothing_when_done_once() -> void:
	var made := start(_machine([_set_var(2.0, {"operation": SCSetVariableAction.ADD, "per_second": true})], 1.0))
	expect_equal(made.get_value("it"), 3.0)


func test_half_a_point_a_second_never_moves_an_int_and_is_told_once() -> void:
	var made := start(_machine([_set_var(0.5, {"operation": SCSetVariableAction.ADD, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], 3))
	await advance(1.0)
	expect_equal(made.get_value("it"), 3)
	expect_warning("it on Keeper is an int, so 3.0083 was rounded to 3.")


func test_the_value_may_come_from_another_variable() -> void:
	var action := _set_var(0.0, {"operation": SCSetVariableAction.ADD})
	action.set(&"value_variable", &"prize")
	var made := start(machine([state("A", [action])], {"variables": {"it": 5, "prize": 20}}))
	expect_equal(made.get_value("it"), 25)
	expect_equal(action.shown_summary(), "Add [prize] to it")


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[_set_var(3), "Set it to 3"],
		[_set_var(true), "Set it to true"],
		[_set_var(2.5, {"operation": SCSetVariableAction.ADD}), "Add 2.5 to it"],
		[_set_var(1, {"operation": SCSetVariableAction.SUBTRACT, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME}), "Take 1 from it each second"],
		[_set_var(2, {"operation": SCSetVariableAction.MULTIPLY}), "Multiply it by 2"],
		[_set_var(null, {"operation": SCSetVariableAction.TOGGLE}), "Toggle it"],
		[_set_var(3, {"variable_name": ""}), "Set (pick one) to 3"],
	]:
		expect_equal((row[0] as SCSetVariableAction).shown_summary(), row[1])


func test_what_it_reads_and_writes() -> void:
	expect_equal(_set_var(3).variables_read(), PackedStringArray())
	expect_equal(_set_var(3).variables_written(), PackedStringArray(["it"]))
	expect_equal(_set_var(3, {"operation": SCSetVariableAction.ADD}).variables_read(), PackedStringArray(["it"]))


func _machine(actions: Array, holds: Variant) -> SCMachine:
	return machine([state("A", actions)], {"name": "Keeper", "variables": {"it": holds}})


func _set_var(value: Variant, options: Dictionary = {}) -> SCSetVariableAction:
	return set_var("it", value, options)
