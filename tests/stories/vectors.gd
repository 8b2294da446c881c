extends Story
## Directions and places: taken apart, put together, worked out and drawn by lot, in 2D and in 3D alike.


func test_every_operation() -> void:
	# Operation, then first, second, answer, and amount where it is not 1.
	var rows: Dictionary[int, Array] = {
		SCVectorAction.ADD: [
			[Vector2(1, 2), Vector2(3, 4), Vector2(4, 6)], [Vector3(1, 2, 3), Vector3.ONE, Vector3(2, 3, 4)], [Vector2(1, 2), 3, Vector2(4, 5)],
		],
		SCVectorAction.SUBTRACT: [[Vector3(1, 2, 3), Vector3(3, 2, 1), Vector3(-2, 0, 2)]],
		SCVectorAction.MULTIPLY: [[Vector2(2, 3), Vector2(-1, 2), Vector2(-2, 6)], [Vector3(1, 2, 3), 2.0, Vector3(2, 4, 6)]],
		SCVectorAction.DIVIDE: [[Vector2(8, 9), Vector2(2, -3), Vector2(4, -3)], [Vector3(8, 9, 6), Vector3(2, -3, 4), Vector3(4, -3, 1.5)]],
		SCVectorAction.SCALE: [[Vector2(1, -2), null, Vector2(2.5, -5), 2.5]],
		SCVectorAction.LENGTH: [[Vector2(3, 4), null, 5.0], [Vector3(2, 3, 6), null, 7.0]],
		SCVectorAction.DISTANCE: [[Vector2(1, 1), Vector2(4, 5), 5.0]],
		SCVectorAction.DIRECTION_TO: [[Vector2(1, 1), Vector2(1, 9), Vector2(0, 1)], [Vector2(1, 1), Vector2(1, 1), Vector2.ZERO]],
		SCVectorAction.NORMALIZE: [[Vector3(0, 0, -9), null, Vector3(0, 0, -1)], [Vector3.ZERO, null, Vector3.ZERO]],
		SCVectorAction.SET_LENGTH: [[Vector2(3, 4), null, Vector2(6, 8), 10.0]],
		SCVectorAction.LIMIT_LENGTH: [
			[Vector2(6, 8), null, Vector2(3, 4), 5.0], [Vector2(3, 4), null, Vector2(3, 4), 9.0], [Vector2(3, 4), null, Vector2.ZERO, -5.0],
		],
		SCVectorAction.LERP: [[Vector2.ZERO, Vector2(10, 20), Vector2(2.5, 5), 0.25], [Vector2.ZERO, Vector2(10, 20), Vector2(15, 30), 1.5]],
		SCVectorAction.MOVE_TOWARD: [[Vector2.ZERO, Vector2(10, 0), Vector2(4, 0), -4.0], [Vector2.ZERO, Vector2(3, 0), Vector2(3, 0), 4.0]],
		SCVectorAction.TURN: [[Vector2(1, 0), null, Vector2(0, 1), 90.0], [Vector3(1, 5, 0), null, Vector3(0, 5, -1), 90.0]],
		SCVectorAction.ANGLE_BETWEEN: [[Vector2(1, 0), Vector2(0, -3), 90.0], [Vector3(1, 0, 0), Vector3(-2, 0, 0), 180.0]],
		SCVectorAction.DOT: [[Vector3(1, 2, 3), Vector3(4, 5, 6), 32.0]],
		SCVectorAction.CROSS: [[Vector2(1, 0), Vector2(0, 2), 2.0], [Vector3(1, 0, 0), Vector3(0, 1, 0), Vector3(0, 0, 1)]],
		SCVectorAction.BOUNCE: [[Vector2(2, 3), Vector2(0, -5), Vector2(2, -3)]],
		SCVectorAction.SLIDE: [[Vector3(2, -3, 1), Vector3(0, 4, 0), Vector3(2, 0, 1)]],
		SCVectorAction.SNAP: [[Vector2(33, 50), Vector2(32, 32), Vector2(32, 64)], [Vector2(33, 50), Vector2(0, 32), Vector2(33, 64)]],
	}
	for operation in rows:
		for row: Array in rows[operation]:
			var sum := _vector({"operation": operation, "first": row[0], "second": row[1], "amount": row[3] if row.size() > 3 else 1.0})
			expect_near(result_of(sum), row[2], 0.0001, "%d of %s" % [operation, row])


func test_a_node_stands_for_where_it_is() -> void:
	var door := body("Door", Vector2(30, 40))
	expect_near(result_of(_vector({"operation": SCVectorAction.DISTANCE, "first": Vector2.ZERO, "second_variable": &"door"}), {"door": door}), 50.0)
	expect_near(result_of(kind(SCGetVectorComponentsAction, {"vector_variable": &"door", "store_y_in": &"answer"}), {"door": door}), 40.0)


func test_an_answer_is_as_its_variable_has_it() -> void:
	expect_equal(result_of(_vector({"first": Vector3(1, 2, 3), "second": Vector3.ONE}), {"answer": Vector2.ZERO}), Vector2(2, 3))
	expect_equal(result_of(_vector({"first": Vector2(1.4, 2.6), "second": Vector2.ZERO}), {"answer": Vector2i.ZERO}), Vector2i(1, 3))
	# Numbers alone: what is kept decides, then the node the machine works on.
	expect_equal(result_of(_vector({"first": 1, "second": 2}), {"answer": Vector3.ZERO}), Vector3(3, 3, 3))
	expect_equal(result_of(_vector({"first": 1, "second": 2}), {}, {"under": body()}), Vector2(3, 3))


func test_sums_each_second() -> void:
	# Operation, amount, what it comes to after half a second.
	for row: Array in [
		[SCVectorAction.ADD, 0.0, Vector2(12, 5)],
		[SCVectorAction.SUBTRACT, 0.0, Vector2(8, -5)],
		[SCVectorAction.MOVE_TOWARD, 4.0, Vector2(10, 0).move_toward(Vector2(4, 10), 2.0)],
		[SCVectorAction.TURN, 180.0, Vector2(0, 10)],
		[SCVectorAction.LERP, 0.75, Vector2(10, 0).lerp(Vector2(4, 10), 0.5)],
	]:
		var sum := _vector({"operation": row[0], "first": Vector2.ZERO, "second": Vector2(4, 10), "amount": row[1], "first_variable": &"answer", "per_second": true})
		sum.run_mode = SCMachineAction.EVERY_FRAME
		var made := play(sum, {}, {"variables": {"answer": Vector2(10, 0)}})
		expect_equal(made.get_value("answer"), Vector2(10, 0))
		await advance(0.5)
		expect_near(made.get_value("answer"), row[2], 0.01, str(row))


func test_vectors_are_taken_apart() -> void:
	var parts := {"store_x_in": &"x", "store_y_in": &"y", "store_z_in": &"z", "store_length_in": &"length"}
	var found := results_of(kind(SCGetVectorComponentsAction, parts.merged({"vector": Vector3(2, 3, 6)})), {"x": 0.0, "y": 0, "z": 0.0, "length": 0.0})
	expect_equal([found[&"x"], found[&"y"], found[&"z"], found[&"length"]], [2.0, 3, 6.0, 7.0])
	found = results_of(kind(SCGetVectorComponentsAction, {"vector": Vector2(5, 6), "store_z_in": &"z"}), {"z": 9.0})
	expect_equal(found[&"z"], 0.0)


func test_one_part_is_changed_and_the_rest_stays() -> void:
	# Part, operation, value, before, after.
	for row: Array in [
		[SCSetVectorComponentsAction.X, SCSetVectorComponentsAction.SET, 9.0, Vector2(1, 2), Vector2(9, 2)],
		[SCSetVectorComponentsAction.Y, SCSetVectorComponentsAction.ADD, -5.0, Vector3(1, 2, 3), Vector3(1, -3, 3)],
		[SCSetVectorComponentsAction.Z, SCSetVectorComponentsAction.MULTIPLY, -1.0, Vector3(1, 2, 3), Vector3(1, 2, -3)],
		[SCSetVectorComponentsAction.Y, SCSetVectorComponentsAction.SET, 7.6, Vector2i(1, 2), Vector2i(1, 8)],
		[SCSetVectorComponentsAction.Z, SCSetVectorComponentsAction.SET, 4.0, null, Vector3(0, 0, 4)],
	]:
		var part := _part({"part": row[0], "operation": row[1], "value": row[2], "per_second": true})
		expect_equal(results_of(part, {"place": row[3]}, {"under": body_3d()})[&"place"], row[4], str(row))
	expect_equal(results_of(_part({"value": 4.0}), {}, {"under": body()})[&"place"], Vector2(4, 0))
	var falls := _part({"part": SCSetVectorComponentsAction.Y, "operation": SCSetVectorComponentsAction.ADD, "value": 10.0, "per_second": true})
	falls.run_mode = SCMachineAction.EVERY_FRAME
	var made := play(falls, {}, {"variables": {"place": Vector2(3, 0)}})
	await advance(0.5)
	expect_near(made.get_value("place"), Vector2(3, 5), 0.01, "falling")


func test_random_directions_are_one_long() -> void:
	for side: Variant in [Vector2.ZERO, Vector3.ZERO]:
		for level: bool in [true, false]:
			var seen := {}
			for i in 30:
				# What it is kept in decides the side, then the node the machine works on.
				var got: Variant = _random({"keep_level": level}, {"answer": side}) if i % 2 else _random({"keep_level": level}, {}, body_at(side))
				expect_equal(typeof(got), typeof(side))
				expect_near(got.length(), 1.0)
				expect(got is Vector2 or is_zero_approx(got.y) == level, "%s, level %s" % [got, level])
				seen[got] = true
			expect(seen.size() > 20, "directions repeat")


func test_random_places_keep_inside_and_are_spread_evenly() -> void:
	var circle := {"what": SCRandomVectorAction.IN_A_CIRCLE, "center": Vector2(100, 50), "radius": 20.0}
	var inner := [0, 0]
	for i in 400:
		var got: Variant = _random(circle)
		expect(got is Vector2 and got.distance_to(Vector2(100, 50)) <= 20.001, "%s" % got)
		# Half of the area lies within, and half of the ball.
		inner[0] += int(got.distance_to(Vector2(100, 50)) < 20.0 * sqrt(0.5))
		got = _random(circle.merged({"center": Vector3(1, 2, 3), "keep_level": false}, true))
		inner[1] += int(got.distance_to(Vector3(1, 2, 3)) < 20.0 * pow(0.5, 1.0 / 3.0))
		got = _random({"what": SCRandomVectorAction.ON_A_CIRCLE, "center": Vector3(1, 7, 1), "radius": 3.0})
		expect_near(got.distance_to(Vector3(1, 7, 1)), 3.0, 0.001)
		expect_near(got.y, 7.0)
		got = _random({"what": SCRandomVectorAction.IN_A_BOX, "center": Vector3(0, 5, 0), "size": Vector3(4, 0, 2)})
		expect(absf(got.x) <= 2.0 and got.y == 5.0 and absf(got.z) <= 1.0, "%s" % got)
	expect(absi(inner[0] - 200) < 50 and absi(inner[1] - 200) < 50, "%s of 400" % [inner])


func test_vectors_set_up_wrong_are_told_of() -> void:
	var no_wall := "so there is no wall to meet and First was kept as it is."
	var rows: Array[Array] = [
		[_vector({"first": Vector2.ONE, "second": Vector2.ONE, "store_in": &""}), "there is nowhere to put the answer, so it was lost. Pick a variable under Store In."],
		[_vector({"first": "north"}), "First holds a String, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside First."],
		[_vector({"first": Vector2.ONE, "second": null, "second_variable": &"thing"}), "which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Second."],
		[kind(SCGetVectorComponentsAction), "there is nowhere to put any part, so they were lost."],
		[_part({"variable_name": &""}), "no variable is picked, so it changed nothing. Pick one under Variable Name."],
		[_part({"variable_name": &"number"}), "number holds a float, which has no parts, so it was left alone."],
		[_part({"part": SCSetVectorComponentsAction.Z}), "place is a Vector2, which has no z, so it changed nothing."],
		[_part({"part": 99}), "its Part is 99, which is none of the choices there are, so it was taken as X. Pick one beside Part."],
		[_random_vector({"store_in": &""}), "there is nowhere to put it, so it was lost. Pick a variable under Store In."],
		[_random_vector({"what": SCRandomVectorAction.IN_A_BOX, "center": "here"}), "Center holds a String, which is no place"],
		[_random_vector({"what": SCRandomVectorAction.IN_A_BOX, "size": "big"}), "Size holds a String, which is no place"],
	]
	for row in rows:
		expect_warns(row[0], row[1], {"variables": {"place": Vector2(1, 2), "number": 4.0, "thing": add(Node.new())}})
	for row: Array in [
		[SCVectorAction.DIVIDE, Vector2(2, 0), Vector2(2, 0), "it divided (4, 4) by (2, 0), which has a zero in it, so that part became 0. Give Second no part that is 0."],
		[SCVectorAction.BOUNCE, Vector2.ZERO, Vector2(4, 4), "Second is zero, %s" % no_wall],
		[SCVectorAction.SLIDE, Vector2(-INF, 0), Vector2(4, 4), "Second holds a number that is none or too large to work with, %s" % no_wall],
	]:
		expect_equal(result_of(_vector({"operation": row[0], "first": Vector2(4, 4), "second": row[1]})), row[2])
		expect_warning("Vector on Machine: %s" % row[3])


func test_what_vectors_say() -> void:
	expect_lines(SCVectorAction, {
		"Set v to (1, 2) + (3, 4)": {"first": Vector2(1, 2), "second": Vector2(3, 4), "store_in": &"v"},
		"Set far to the distance from [me] to [door]": {"operation": SCVectorAction.DISTANCE, "first_variable": &"me", "second_variable": &"door", "store_in": &"far"},
		"Set (pick one) to [aim] turned by 5 degrees": {"operation": SCVectorAction.TURN, "first_variable": &"aim", "amount": 5.0},
	})
	expect_line(_part({"part": SCSetVectorComponentsAction.Y, "value": 3.0}), "Set y of place to 3")
	expect_line(_part({"variable_name": &""}), "Set x of (pick one) to 0")
	expect_line(SCGetVectorComponentsAction.new(), "Take (0, 0, 0) apart: nothing kept")
	expect_line(SCRandomVectorAction.new(), "Keep a random direction in (pick one)")


func _vector(options: Dictionary) -> SCVectorAction:
	return kind(SCVectorAction, {"store_in": &"answer"}.merged(options, true))


func _part(options: Dictionary) -> SCSetVectorComponentsAction:
	return kind(SCSetVectorComponentsAction, {"variable_name": &"place"}.merged(options, true))


func _random_vector(options: Dictionary) -> SCRandomVectorAction:
	return kind(SCRandomVectorAction, {"store_in": &"answer"}.merged(options, true))


func _random(options: Dictionary, variables: Dictionary = {}, under: Node = stage) -> Variant:
	return result_of(_random_vector(options), variables, {"under": under})
