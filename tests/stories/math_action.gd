extends Story
## Math works numbers out the way a game maker expects, down to the last digit.


func test_every_operation() -> void:
	# Operation, first, second, answer.
	for row: Array in [
		[SCMathAction.ADD, 2.5, 4.0, 6.5],
		[SCMathAction.SUBTRACT, 2.5, 4.0, -1.5],
		[SCMathAction.MULTIPLY, 2.5, -4.0, -10.0],
		[SCMathAction.DIVIDE, 9.0, 4.0, 2.25],
		[SCMathAction.MIN, 3.0, -2.0, -2.0],
		[SCMathAction.MAX, 3.0, -2.0, 3.0],
		[SCMathAction.POW, 2.0, 10.0, 1024.0],
		[SCMathAction.POW, 2.0, -1.0, 0.5],
		[SCMathAction.ABS, -2.25, 0.0, 2.25],
		[SCMathAction.ROUND, 2.5, 0.0, 3.0],
		[SCMathAction.ROUND, -2.5, 0.0, -3.0],
		[SCMathAction.FLOOR, -2.5, 0.0, -3.0],
		[SCMathAction.CEIL, -2.5, 0.0, -2.0],
		[SCMathAction.MODULO, 7.5, 2.0, 1.5],
		[SCMathAction.MODULO, -7.5, 2.0, 0.5],
		[SCMathAction.MODULO, 7.5, -2.0, -0.5],
		[SCMathAction.MODULO, -7.5, -2.0, -1.5],
		[SCMathAction.MODULO, -4.0, 2.0, 0.0],
		[SCMathAction.WRAP, 370.0, 360.0, 10.0],
		[SCMathAction.WRAP, -10.0, 360.0, 350.0],
		[SCMathAction.SQRT, 9.0, 0.0, 3.0],
		[SCMathAction.SQRT, -9.0, 0.0, 0.0],
		[SCMathAction.SIGN, -9.0, 0.0, -1.0],
		[SCMathAction.SIGN, 9.0, 0.0, 1.0],
		[SCMathAction.SIGN, 0.0, 0.0, 0.0],
		[SCMathAction.LERP, 10.0, 20.0, 15.0],
		[SCMathAction.MOVE_TOWARD, 10.0, 20.0, 10.5],
		[SCMathAction.MOVE_TOWARD, 10.0, 9.75, 9.75],
		[SCMathAction.MOVE_TOWARD, 10.0, 0.0, 9.5],
		[SCMathAction.ANGLE_DIFFERENCE, 350.0, 10.0, 20.0],
		[SCMathAction.ANGLE_DIFFERENCE, 10.0, 350.0, -20.0],
		[SCMathAction.ANGLE_DIFFERENCE, 0.0, 180.0, -180.0],
		[SCMathAction.ANGLE_DIFFERENCE, 0.0, -180.0, -180.0],
		[SCMathAction.ANGLE_DIFFERENCE, 0.0, 179.999999, -180.0],
		[SCMathAction.ANGLE_DIFFERENCE, 0.0, 725.0, 5.0],
		[SCMathAction.SINE, 90.0, 0.0, 1.0],
		[SCMathAction.SINE, 30.0, 0.0, 0.5],
		[SCMathAction.COSINE, 60.0, 0.0, 0.5],
		[SCMathAction.TANGENT, 45.0, 0.0, 1.0],
		[SCMathAction.ANGLE_OF_DIRECTION, 0.0, 1.0, 90.0],
		[SCMathAction.ANGLE_OF_DIRECTION, -1.0, 0.0, 180.0],
		[SCMathAction.ANGLE_OF_DIRECTION, 3.0, -3.0, -45.0],
	]:
		var got: float = _answer(row[0], row[1], row[2])
		expect_near(got, row[3], 0.0000000001, "%d of %s and %s" % row.slice(0, 3))


func test_a_remainder_of_nothing_has_no_sign() -> void:
	expect_equal(str(_answer(SCMathAction.MODULO, -4.0, 2.0)), "0.0")


func test_lerp_takes_amount_as_it_is_typed_when_done_once() -> void:
	expect_near(_answer(SCMathAction.LERP, 0.0, 10.0, {"amount": 1.5}), 15.0)
	expect_near(_answer(SCMathAction.LERP, 0.0, 10.0, {"amount": -0.5}), -5.0)


func test_dividing_by_zero_gives_zero_and_says_so() -> void:
	expect_equal(_answer(SCMathAction.DIVIDE, 3.0, 0.0), 0.0)
	expect_warning("Math on Sums divided 3 by 0, which is zero, so answer was set to 0. Type a number other than 0 beside Second.")
	expect_equal(_answer(SCMathAction.MODULO, 3.0, 0.000009), 0.0)
	expect_warning("so answer was set to 0")
	expect_equal(_answer(SCMathAction.WRAP, 3.0, -0.000009), 0.0)
	expect_warning("so answer was set to 0")
	expect_near(_answer(SCMathAction.DIVIDE, 3.0, 0.00002), 150000.0, 0.001)


func test_dividing_by_a_variable_that_holds_zero_names_it() -> void:
	var made := start(_sums([_math(SCMathAction.DIVIDE, 8.0, 1.0, {"second_variable": "lives"})], {"lives": 0}))
	expect_equal(made.get_value("answer"), 0.0)
	expect_warning("Math on Sums divided 8 by lives, which is zero, so answer was set to 0. Check what lives holds before dividing.")


func test_sides_come_from_variables() -> void:
	var made := start(_sums([_math(SCMathAction.ADD, 100.0, 100.0, {"first_variable": "a", "second_variable": "b"})], {"a": 1.5, "b": true}))
	expect_equal(made.get_value("answer"), 2.5)


func test_a_variable_that_is_not_there_is_told_and_the_typed_number_used() -> void:
	var made := start(_sums([_math(SCMathAction.ADD, 4.0, 1.0, {"first_variable": "nowhere"})]))
	expect_equal(made.get_value("answer"), 5.0)
	expect_warning("Sums reads the variable nowhere, which it does not have, so the value typed in beside that setting is used instead.")


func test_whole_numbers_give_a_whole_number_in_a_new_variable() -> void:
	for row: Array in [
		[SCMathAction.ADD, 7, 2, 9],
		[SCMathAction.MULTIPLY, 7, 2, 14],
		[SCMathAction.MIN, 7, 2, 2],
		[SCMathAction.MODULO, 7, 2, 1],
		[SCMathAction.POW, 7, 2, 49],
		[SCMathAction.DIVIDE, 8, 2, 4.0],
		[SCMathAction.SQRT, 9, 2, 3.0],
		[SCMathAction.LERP, 2, 4, 3.0],
		[SCMathAction.SINE, 0, 2, 0.0],
	]:
		var made := start(_sums([_math(row[0], 0.0, 0.0, {"first_variable": "a", "second_variable": "b"})], {"a": row[1], "b": row[2]}))
		expect_equal(made.get_value("answer"), row[3], "%d of %d and %d" % row.slice(0, 3))


func test_one_whole_number_is_not_enough() -> void:
	var made := start(_sums([_math(SCMathAction.ADD, 0.0, 2.0, {"first_variable": "a"})], {"a": 1}))
	expect_equal(made.get_value("answer"), 3.0)


func test_a_fraction_of_whole_numbers_stays_one() -> void:
	var made := start(_sums([_math(SCMathAction.POW, 0.0, 0.0, {"first_variable": "a", "second_variable": "b"})], {"a": 2, "b": -1}))
	expect_equal(made.get_value("answer"), 0.5)


func test_an_int_variable_rounds_and_says_so_once() -> void:
	var made := start(_sums([_math(SCMathAction.ADD, 1.0, 1.5), _math(SCMathAction.ADD, 1.0, 2.25)], {"answer": 0}))
	expect_equal(made.get_value("answer"), 3)
	expect_warning("answer on Sums is an int, so 2.5 was rounded to 3. Make it a float in the Variables tab to keep fractions.")


func test_every_frame_adds_so_much_a_second() -> void:
	var made := start(_sums([_math(SCMathAction.ADD, 0.0, 3.0, {"first_variable": "answer", "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], {"answer": 10.0}))
	expect_equal(made.get_value("answer"), 10.0, "nothing on entering")
	await advance(2.0)
	expect_near(made.get_value("answer"), 16.0, 0.11)


func test_lerp_closes_the_same_share_however_long_the_steps_are() -> void:
	var smooth := start(_sums([_lerp_each_second({})], {"answer": 0.0}))
	var rough := start(_sums([_lerp_each_second({"update_interval": 0.25})], {"answer": 0.0}))
	await advance(2.1)
	expect_near(smooth.get_value("answer"), 94.5, 0.2)
	expect_near(rough.get_value("answer"), 100.0 - 100.0 * pow(0.25, 7.0 * 16.0 / FPS), 0.01, "seven steps of sixteen frames")


func test_move_toward_steps_its_amount_each_second_and_stops() -> void:
	var made := start(_sums([_math(SCMathAction.MOVE_TOWARD, 0.0, 4.0, {"first_variable": "answer", "amount": -2.0, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], {"answer": 0.0}))
	await advance(1.0)
	expect_near(made.get_value("answer"), 2.0, 0.1)
	await advance(2.0)
	expect_equal(made.get_value("answer"), 4.0)


func test_per_second_means_nothing_to_a_multiplication() -> void:
	var made := start(_sums([_math(SCMathAction.MULTIPLY, 0.0, 2.0, {"first_variable": "answer", "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})], {"answer": 1.0}))
	expect_equal(made.get_value("answer"), 2.0, "once on entering")
	await frames(3)
	expect(made.get_value("answer") >= 8.0, "and plainly on every frame")


func test_nowhere_to_store_is_told_and_finishes() -> void:
	var made := start(machine([
		state("A", [_math(SCMathAction.ADD, 1.0, 1.0, {"store_in": ""})], {"FINISHED": "B"}),
		state("B"),
	], {"name": "Sums"}))
	expect_state(made, "B")
	expect_warning("Math on Sums: it has no variable for its answer")


func test_it_finishes_as_it_starts() -> void:
	var made := start(machine([
		state("A", [_math(SCMathAction.ADD, 1.0, 1.0)], {"FINISHED": "B"}),
		state("B"),
	]))
	expect_state(made, "B")


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[_math(SCMathAction.ADD, 2.0, 3.5), "Set answer to 2 plus 3.5"],
		[_math(SCMathAction.DIVIDE, 0.0, 0.0, {"first_variable": "gold", "second_variable": "heirs"}), "Set answer to [gold] divided by [heirs]"],
		[_math(SCMathAction.SQRT, 9.0, 3.5), "Set answer to the square root of 9"],
		[_math(SCMathAction.LERP, 0.0, 10.0, {"amount": 0.25}), "Set answer to 0 and 0.25 of the way to 10"],
		[_math(SCMathAction.ADD, 1.0, 2.0, {"per_second": true, "run_mode": SCMachineAction.EVERY_FRAME}), "Set answer to 1 plus 2 each second"],
		[_math(SCMathAction.ADD, 1.0, 2.0, {"store_in": ""}), "Set (pick one) to 1 plus 2"],
	]:
		expect_equal((row[0] as SCMathAction).shown_summary(), row[1])


func _answer(operation: int, first: float, second: float, options: Dictionary = {}) -> Variant:
	return start(_sums([_math(operation, first, second, options)])).get_value("answer")


func _sums(actions: Array, variables: Dictionary = {}) -> SCMachine:
	return machine([state("Work", actions)], {"name": "Sums", "variables": variables})


func _math(operation: int, first: float, second: float, options: Dictionary = {}) -> SCMathAction:
	var made := SCMathAction.new()
	made.operation = operation
	made.first = first
	made.second = second
	made.store_in = "answer"
	_put(made, options)
	return made


func _lerp_each_second(options: Dictionary) -> SCMathAction:
	var made := _math(SCMathAction.LERP, 0.0, 100.0, {"first_variable": "answer", "amount": 0.75, "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME})
	_put(made, options)
	return made
