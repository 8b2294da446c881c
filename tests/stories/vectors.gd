extends Story
## Directions and places: taken apart, put together, worked out and drawn by lot, in 2D and in 3D alike.


func test_every_operation() -> void:
	# Operation, first, second, amount, answer.
	for row: Array in [
		[SCVectorAction.ADD, Vector2(1, 2), Vector2(3, 4), 1.0, Vector2(4, 6)],
		[SCVectorAction.ADD, Vector3(1, 2, 3), Vector3(1, 1, 1), 1.0, Vector3(2, 3, 4)],
		[SCVectorAction.ADD, Vector2(1, 2), 3, 1.0, Vector2(4, 5)],
		[SCVectorAction.SUBTRACT, Vector3(1, 2, 3), Vector3(3, 2, 1), 1.0, Vector3(-2, 0, 2)],
		[SCVectorAction.MULTIPLY, Vector2(2, 3), Vector2(-1, 2), 1.0, Vector2(-2, 6)],
		[SCVectorAction.MULTIPLY, Vector3(1, 2, 3), 2.0, 1.0, Vector3(2, 4, 6)],
		[SCVectorAction.DIVIDE, Vector2(8, 9), Vector2(2, -3), 1.0, Vector2(4, -3)],
		[SCVectorAction.SCALE, Vector2(1, -2), Vector2.ZERO, 2.5, Vector2(2.5, -5)],
		[SCVectorAction.LENGTH, Vector2(3, 4), Vector2.ZERO, 1.0, 5.0],
		[SCVectorAction.LENGTH, Vector3(2, 3, 6), Vector3.ZERO, 1.0, 7.0],
		[SCVectorAction.DISTANCE, Vector2(1, 1), Vector2(4, 5), 1.0, 5.0],
		[SCVectorAction.DIRECTION_TO, Vector2(1, 1), Vector2(1, 9), 1.0, Vector2(0, 1)],
		[SCVectorAction.DIRECTION_TO, Vector2(1, 1), Vector2(1, 1), 1.0, Vector2(0, 0)],
		[SCVectorAction.NORMALIZE, Vector3(0, 0, -9), Vector3.ZERO, 1.0, Vector3(0, 0, -1)],
		[SCVectorAction.NORMALIZE, Vector3.ZERO, Vector3.ZERO, 1.0, Vector3.ZERO],
		[SCVectorAction.SET_LENGTH, Vector2(3, 4), Vector2.ZERO, 10.0, Vector2(6, 8)],
		[SCVectorAction.LIMIT_LENGTH, Vector2(6, 8), Vector2.ZERO, 5.0, Vector2(3, 4)],
		[SCVectorAction.LIMIT_LENGTH, Vector2(3, 4), Vector2.ZERO, 9.0, Vector2(3, 4)],
		[SCVectorAction.LERP, Vector2(0, 0), Vector2(10, 20), 0.25, Vector2(2.5, 5)],
		[SCVectorAction.MOVE_TOWARD, Vector2(0, 0), Vector2(10, 0), 4.0, Vector2(4, 0)],
		[SCVectorAction.MOVE_TOWARD, Vector2(0, 0), Vector2(3, 0), 4.0, Vector2(3, 0)],
		[SCVectorAction.TURN, Vector2(1, 0), Vector2.ZERO, 90.0, Vector2(0, 1)],
		[SCVectorAction.TURN, Vector3(1, 5, 0), Vector3.ZERO, 90.0, Vector3(0, 5, -1)],
		[SCVectorAction.ANGLE_BETWEEN, Vector2(1, 0), Vector2(0, -3), 1.0, 90.0],
		[SCVectorAction.ANGLE_BETWEEN, Vector3(1, 0, 0), Vector3(-2, 0, 0), 1.0, 180.0],
		[SCVectorAction.DOT, Vector3(1, 2, 3), Vector3(4, 5, 6), 1.0, 32.0],
		[SCVectorAction.CROSS, Vector2(1, 0), Vector2(0, 2), 1.0, 2.0],
		[SCVectorAction.CROSS, Vector3(1, 0, 0), Vector3(0, 1, 0), 1.0, Vector3(0, 0, 1)],
		[SCVectorAction.BOUNCE, Vector2(2, 3), Vector2(0, -5), 1.0, Vector2(2, -3)],
		[SCVectorAction.SLIDE, Vector3(2, -3, 1), Vector3(0, 4, 0), 1.0, Vector3(2, 0, 1)],
		[SCVectorAction.SNAP, Vector2(33, 50), Vector2(32, 32), 1.0, Vector2(32, 64)],
		[SCVectorAction.SNAP, Vector2(33, 50), Vector2(0, 32), 1.0, Vector2(33, 64)],
	]:
		var made := await _run(_vector({"operation": row[0], "first": row[1], "second": row[2], "amount": row[3], "store_in": &"answer"}))
		_expect_about(made.get_value("answer"), row[4], str(row))


func test_a_node_stands_for_where_it_is() -> void:
	var door := body("Door")
	door.position = Vector2(30, 40)
	var sum := _vector({"operation": SCVectorAction.DISTANCE, "first": Vector2.ZERO, "second_variable": &"door", "store_in": &"answer"})
	var made := await _run(sum, {"door": door})
	expect_near(made.get_value("answer"), 50.0)
	var parts := SCGetVectorComponentsAction.new()
	parts.vector = null
	parts.vector_variable = &"door"
	parts.store_y_in = &"answer"
	made = await _run(parts, {"door": door})
	expect_near(made.get_value("answer"), 40.0)


func test_an_answer_is_as_its_variable_has_it() -> void:
	var made := await _run(_vector({"first": Vector3(1, 2, 3), "second": Vector3.ONE, "store_in": &"answer"}), {"answer": Vector2.ZERO})
	expect_equal(made.get_value("answer"), Vector2(2, 3))
	made = await _run(_vector({"first": Vector2(1.4, 2.6), "second": Vector2.ZERO, "store_in": &"answer"}), {"answer": Vector2i.ZERO})
	expect_equal(made.get_value("answer"), Vector2i(1, 3))


func test_sums_each_second() -> void:
	# Operation, amount, what it comes to after half a second.
	for row: Array in [
		[SCVectorAction.ADD, 0.0, Vector2(12, 5)],
		[SCVectorAction.SUBTRACT, 0.0, Vector2(8, -5)],
		[SCVectorAction.MOVE_TOWARD, 4.0, Vector2(10, 0).move_toward(Vector2(4, 10), 2.0)],
		[SCVectorAction.TURN, 180.0, Vector2(0, 10)],
		[SCVectorAction.LERP, 0.75, Vector2(10, 0).lerp(Vector2(4, 10), 0.5)],
	]:
		var second := Vector2(4, 10)
		var sum := _vector({"operation": row[0], "first": Vector2(10, 0), "second": second, "amount": row[1], "first_variable": &"answer", "store_in": &"answer", "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})
		var made := start(machine([state("A", [sum])], {"variables": {"answer": Vector2(10, 0)}}))
		expect_equal(made.get_value("answer"), Vector2(10, 0))
		await advance(0.5)
		_expect_about(made.get_value("answer"), row[2], str(row), 0.01)


func test_vectors_are_taken_apart() -> void:
	var parts := SCGetVectorComponentsAction.new()
	parts.vector = Vector3(2, 3, 6)
	parts.store_x_in = &"x"
	parts.store_y_in = &"y"
	parts.store_z_in = &"z"
	parts.store_length_in = &"length"
	var made := await _run(parts, {"x": 0.0, "y": 0, "z": 0.0, "length": 0.0})
	expect_equal([made.get_value("x"), made.get_value("y"), made.get_value("z"), made.get_value("length")], [2.0, 3, 6.0, 7.0])
	var flat := SCGetVectorComponentsAction.new()
	flat.vector_variable = &"place"
	flat.store_x_in = &"x"
	flat.store_z_in = &"z"
	made = await _run(flat, {"place": Vector2(5, 6), "x": 0.0, "z": 9.0})
	expect_equal([made.get_value("x"), made.get_value("z")], [5.0, 0.0])


func test_one_part_is_changed_and_the_rest_stays() -> void:
	# Part, operation, value, before, after.
	for row: Array in [
		[SCSetVectorComponentsAction.X, SCSetVectorComponentsAction.SET, 9.0, Vector2(1, 2), Vector2(9, 2)],
		[SCSetVectorComponentsAction.Y, SCSetVectorComponentsAction.ADD, -5.0, Vector3(1, 2, 3), Vector3(1, -3, 3)],
		[SCSetVectorComponentsAction.Z, SCSetVectorComponentsAction.MULTIPLY, -1.0, Vector3(1, 2, 3), Vector3(1, 2, -3)],
		[SCSetVectorComponentsAction.Y, SCSetVectorComponentsAction.SET, 7.6, Vector2i(1, 2), Vector2i(1, 8)],
	]:
		var made := await _run(_part({"part": row[0], "operation": row[1], "value": row[2]}), {"place": row[3]})
		expect_equal(made.get_value("place"), row[4], str(row))
	var falls := _part({"part": SCSetVectorComponentsAction.Y, "operation": SCSetVectorComponentsAction.ADD, "value": 10.0, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})
	var made := start(machine([state("A", [falls])], {"variables": {"place": Vector2(3, 0)}}))
	await advance(0.5)
	_expect_about(made.get_value("place"), Vector2(3, 5), "falling", 0.01)


func test_a_part_of_a_variable_that_is_not_there_yet() -> void:
	var made := await _run(_part({"part": SCSetVectorComponentsAction.Y, "value": 4.0}), {}, body())
	expect_equal(made.get_value("place"), Vector2(0, 4))
	var deep := Node3D.new()
	add(deep)
	made = await _run(_part({"part": SCSetVectorComponentsAction.Z, "value": 4.0}), {}, deep)
	expect_equal(made.get_value("place"), Vector3(0, 0, 4))


func test_random_directions_are_one_long() -> void:
	for flat: bool in [true, false]:
		for level: bool in [true, false]:
			var seen := {}
			for i in 30:
				var got: Variant = await _random({"what": SCRandomVectorAction.DIRECTION, "keep_level": level}, {"answer": Vector2.ZERO if flat else Vector3.ZERO})
				expect_near(got.length(), 1.0)
				if not flat:
					expect(is_zero_approx(got.y) == level, "%s, level %s" % [got, level])
				seen[got] = true
			expect(seen.size() > 20, "directions repeat")


func test_random_places_keep_inside() -> void:
	for i in 40:
		var got: Variant = await _random({"what": SCRandomVectorAction.IN_A_CIRCLE, "center": Vector2(100, 50), "radius": 20.0})
		expect(got is Vector2 and got.distance_to(Vector2(100, 50)) <= 20.001, "%s" % got)
		got = await _random({"what": SCRandomVectorAction.ON_A_CIRCLE, "center": Vector3(1, 7, 1), "radius": 3.0})
		expect_near(got.distance_to(Vector3(1, 7, 1)), 3.0, 0.001)
		expect_near(got.y, 7.0)
		got = await _random({"what": SCRandomVectorAction.IN_A_BOX, "center": Vector3(0, 5, 0), "size": Vector3(4, 0, 2)})
		expect(absf(got.x) <= 2.0 and got.y == 5.0 and absf(got.z) <= 1.0, "%s" % got)


func test_random_places_are_spread_evenly() -> void:
	var inner := 0
	for i in 400:
		var got: Vector2 = await _random({"what": SCRandomVectorAction.IN_A_CIRCLE, "center": Vector2.ZERO, "radius": 1.0}, {"answer": Vector2.ZERO}, false)
		inner += 1 if got.length() < sqrt(0.5) else 0
	# Half of the area lies within.
	expect(absi(inner - 200) < 50, "%d of 400" % inner)


func test_the_side_of_a_random_direction() -> void:
	expect(await _random({"what": SCRandomVectorAction.DIRECTION}, {}, true, body()) is Vector2)
	var deep := Node3D.new()
	add(deep)
	expect(await _random({"what": SCRandomVectorAction.DIRECTION}, {}, true, deep) is Vector3)


func test_vectors_set_up_wrong_are_told_of() -> void:
	await _run(_vector({"first": Vector2.ONE, "second": Vector2.ONE}))
	expect_warning("Vector on Machine: there is nowhere to put the answer, so it was lost. Pick a variable under Store In.")
	await _run(_vector({"first": "north", "store_in": &"answer"}))
	expect_warning("Vector on Machine: First holds a String, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside First.")
	var made := await _run(_vector({"operation": SCVectorAction.DIVIDE, "first": Vector2(4, 4), "second": Vector2(2, 0), "store_in": &"answer"}))
	expect_equal(made.get_value("answer"), Vector2(2, 0))
	expect_warning("Vector on Machine: it divided (4, 4) by (2, 0), which has a zero in it, so that part became 0. Give Second no part that is 0.")
	made = await _run(_vector({"operation": SCVectorAction.BOUNCE, "first": Vector2(4, 4), "second": Vector2.ZERO, "store_in": &"answer"}))
	expect_equal(made.get_value("answer"), Vector2(4, 4))
	expect_warning("Vector on Machine: Second is zero, so there is no wall to meet and First was kept as it is.")
	made = await _run(_vector({"operation": SCVectorAction.BOUNCE, "first": Vector2(4, 4), "second": Vector2(-INF, 0), "store_in": &"answer"}))
	expect_equal(made.get_value("answer"), Vector2(4, 4))
	expect_warning("Vector on Machine: Second holds a number that is none or too large to work with, so there is no wall to meet and First was kept as it is.")
	await _run(_vector({"first": Vector2.ONE, "second": null, "second_variable": &"thing", "store_in": &"answer"}), {"thing": add(Node.new())})
	expect_warning("which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Second.")
	await _run(SCGetVectorComponentsAction.new())
	expect_warning("Get Vector Components on Machine: there is nowhere to put any part, so they were lost.")
	await _run(_part({"variable_name": &""}))
	expect_warning("Set Vector Components on Machine: no variable is picked, so it changed nothing. Pick one under Variable Name.")
	await _run(_part({}), {"place": 4.0})
	expect_warning("Set Vector Components on Machine: place holds a float, which has no parts, so it was left alone.")
	await _run(_part({"part": SCSetVectorComponentsAction.Z}), {"place": Vector2.ONE})
	expect_warning("Set Vector Components on Machine: place is a Vector2, which has no z, so it changed nothing.")
	made = await _run(_part({"part": 99, "value": 7.0}), {"place": Vector2(1, 2)})
	expect_equal(made.get_value("place"), Vector2(7, 2))
	expect_warning("Set Vector Components on Machine: its Part is 99, which is none of the choices there are, so it was taken as X. Pick one beside Part.")
	await _run(SCRandomVectorAction.new())
	expect_warning("Random Vector on Machine: there is nowhere to put it, so it was lost. Pick a variable under Store In.")


func test_what_vectors_say() -> void:
	for row: Array in [
		[_vector({"first": Vector2(1, 2), "second": Vector2(3, 4), "store_in": &"v"}), "Set v to (1, 2) + (3, 4)"],
		[_vector({"operation": SCVectorAction.DISTANCE, "first_variable": &"me", "second_variable": &"door", "store_in": &"far"}), "Set far to the distance from [me] to [door]"],
		[_vector({"operation": SCVectorAction.TURN, "first_variable": &"aim", "amount": 5.0}), "Set (pick one) to [aim] turned by 5 degrees"],
		[_part({"part": SCSetVectorComponentsAction.Y, "value": 3.0}), "Set y of place to 3"],
		[_part({"variable_name": &""}), "Set x of (pick one) to 0"],
		[SCGetVectorComponentsAction.new(), "Take (0, 0, 0) apart: nothing kept"],
		[SCRandomVectorAction.new(), "Keep a random direction in (pick one)"],
	]:
		var kind: SCMachineAction = row[0]
		expect_equal(kind.shown_summary(), row[1])


func _vector(options: Dictionary) -> SCVectorAction:
	var made := SCVectorAction.new()
	_put(made, options)
	return made


func _part(options: Dictionary) -> SCSetVectorComponentsAction:
	var made := SCSetVectorComponentsAction.new()
	made.variable_name = &"place"
	_put(made, options)
	return made


func _random(options: Dictionary, variables: Dictionary = {}, in_a_frame: bool = true, under: Node = stage) -> Variant:
	var action := SCRandomVectorAction.new()
	action.store_in = &"answer"
	_put(action, options)
	var made := await _run(action, variables, under, in_a_frame)
	var got: Variant = made.get_value("answer")
	made.queue_free()
	return got


func _run(action: SCMachineAction, variables: Dictionary = {}, under: Node = stage, in_a_frame: bool = true) -> SCMachine:
	var made := machine([state("A", [action], {"FINISHED": "B"}), state("B")], {"variables": variables})
	under.add_child(made)
	if not made.is_running():
		made.start()
	if in_a_frame:
		await frames(1)
	expect_state(made, "B")
	made.name = "Done"
	return made


func _expect_about(got: Variant, wanted: Variant, what: String, within: float = 0.0001) -> void:
	if typeof(got) != typeof(wanted):
		_fail("%s: got %s, wanted %s" % [what, got, wanted])
	elif got is float:
		expect_near(got, wanted, within, what)
	else:
		expect(got.distance_to(wanted) <= within, "%s: got %s, wanted %s" % [what, got, wanted])
