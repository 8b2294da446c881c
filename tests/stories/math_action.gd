extends Story
## Math works numbers out the way a game maker expects, down to the last digit.


func test_every_operation() -> void:
	# Operation, then first, second and answer.
	var rows: Dictionary[int, Array] = {
		SCMathAction.ADD: [[2.5, 4, 6.5]],
		SCMathAction.SUBTRACT: [[2.5, 4, -1.5]],
		SCMathAction.MULTIPLY: [[2.5, -4, -10]],
		SCMathAction.DIVIDE: [[9, 4, 2.25]],
		SCMathAction.MIN: [[3, -2, -2], [-2, 3, -2]],
		SCMathAction.MAX: [[3, -2, 3], [-2, 3, 3]],
		SCMathAction.POW: [[2, 10, 1024], [2, -1, 0.5]],
		SCMathAction.ABS: [[-2.25, 0, 2.25]],
		SCMathAction.ROUND: [[2.5, 0, 3], [-2.5, 0, -3]],
		SCMathAction.FLOOR: [[-2.5, 0, -3]],
		SCMathAction.CEIL: [[-2.5, 0, -2]],
		SCMathAction.MODULO: [[7.5, 2, 1.5], [-7.5, 2, 0.5], [7.5, -2, -0.5], [-7.5, -2, -1.5], [-4, 2, 0]],
		SCMathAction.WRAP: [[370, 360, 10], [-10, 360, 350]],
		SCMathAction.SQRT: [[9, 0, 3], [-9, 0, 0]],
		SCMathAction.SIGN: [[-9, 0, -1], [9, 0, 1], [0, 0, 0]],
		SCMathAction.LERP: [[10, 20, 15]],
		SCMathAction.MOVE_TOWARD: [[10, 20, 10.5], [10, 9.75, 9.75], [10, 0, 9.5]],
		SCMathAction.ANGLE_DIFFERENCE: [[350, 10, 20], [10, 350, -20], [0, 180, -180], [0, -180, -180], [0, 179.999999, -180], [0, 725, 5]],
		SCMathAction.SINE: [[90, 0, 1], [30, 0, 0.5]],
		SCMathAction.COSINE: [[60, 0, 0.5]],
		SCMathAction.TANGENT: [[45, 0, 1]],
		SCMathAction.ANGLE_OF_DIRECTION: [[0, 1, 90], [-1, 0, 180], [3, -3, -45]],
	}
	for operation in rows:
		for row: Array in rows[operation]:
			expect_near(_answer(operation, row[0], row[1]), float(row[2]), 0.0000000001, "%d of %s and %s" % [operation, row[0], row[1]])
	expect_equal(str(_answer(SCMathAction.MODULO, -4.0, 2.0)), "0.0", "without a sign")
	expect_near(_answer(SCMathAction.LERP, 0.0, 10.0, {"amount": 1.5}), 15.0)
	expect_near(_answer(SCMathAction.LERP, 0.0, 10.0, {"amount": -0.5}), -5.0)
	expect_near(_answer(SCMathAction.ADD, 1.0, 3.0, {"per_second": true}), 4.0, 0.0, "done once")


func test_dividing_by_zero_gives_zero_and_says_so() -> void:
	var said := "Math on Sums divided %s by %s, which is zero, so answer was set to 0. %s"
	expect_equal(_answer(SCMathAction.DIVIDE, 3.0, 0.0), 0.0)
	expect_warning(said % ["3", "0", "Type a number other than 0 beside Second."])
	for operation: int in [SCMathAction.MODULO, SCMathAction.WRAP]:
		expect_equal(_answer(operation, 3.0, -0.000009), 0.0)
		expect_warning("so answer was set to 0")
	expect_near(_answer(SCMathAction.DIVIDE, 3.0, 0.00002), 150000.0, 0.001)
	expect_equal(_answer(SCMathAction.DIVIDE, 8.0, 1.0, {"second_variable": "lives"}, {"lives": 0}), 0.0)
	expect_warning(said % ["8", "lives", "Check what lives holds before dividing."])


func test_what_is_missing_is_told() -> void:
	expect_equal(_answer(SCMathAction.ADD, 4.0, 1.0, {"first_variable": "nowhere"}), 5.0)
	expect_warning("Sums reads the variable nowhere, which it does not have, so the value typed in beside that setting is used instead.")
	_answer(SCMathAction.ADD, 1.0, 1.0, {"store_in": ""})
	expect_warning("Math on Sums: it has no variable for its answer")


func test_whole_numbers_give_a_whole_number_in_a_new_variable() -> void:
	# What a and b hold, and the answer.
	for row: Array in [
		[SCMathAction.ADD, 7, 2, 9],
		[SCMathAction.ADD, 1, 2.0, 3.0],
		[SCMathAction.ADD, 1.0, 2, 3.0],
		[SCMathAction.ADD, 1.5, true, 2.5],
		[SCMathAction.MULTIPLY, 7, 2, 14],
		[SCMathAction.MIN, 7, 2, 2],
		[SCMathAction.MODULO, 7, 2, 1],
		[SCMathAction.POW, 7, 2, 49],
		[SCMathAction.POW, 2, -1, 0.5],
		[SCMathAction.DIVIDE, 8, 2, 4.0],
		[SCMathAction.SQRT, 9, 2, 3.0],
		[SCMathAction.LERP, 2, 4, 3.0],
		[SCMathAction.SINE, 0, 2, 0.0],
	]:
		var sum := _math(row[0], 100.0, 100.0, {"first_variable": "a", "second_variable": "b", "store_in": "new"})
		expect_equal(results_of(sum, {"a": row[1], "b": row[2]})[&"new"], row[3], "%d of %s and %s" % row.slice(0, 3))


func test_an_int_variable_rounds_and_says_so_once() -> void:
	var made := play([_math(SCMathAction.ADD, 1.0, 1.5), _math(SCMathAction.ADD, 1.0, 2.25)], {}, {"name": "Sums", "variables": {"answer": 0}})
	expect_equal(made.get_value("answer"), 3)
	expect_warning("answer on Sums is an int, so 2.5 was rounded to 3. Make it a float in the Variables tab to keep fractions.")


func test_so_much_a_second() -> void:
	# Operation, second, what it holds from 10 on after two seconds, and within how much.
	for row: Array in [
		[SCMathAction.ADD, 3.0, 16.0, 0.11],
		[SCMathAction.SUBTRACT, 3.0, 4.0, 0.11],
		[SCMathAction.MOVE_TOWARD, 20.0, 14.0, 0.11],
		[SCMathAction.MOVE_TOWARD, 11.0, 11.0, 0.0],
	]:
		var made := play(_each_second(row[0], row[1], {"amount": -2.0}), {}, {"variables": {"answer": 10.0}})
		expect_equal(made.get_value("answer"), 10.0, "nothing on entering")
		await advance(2.0)
		expect_near(made.get_value("answer"), row[2], row[3], str(row))
	var doubled := play(_each_second(SCMathAction.MULTIPLY, 2.0), {}, {"variables": {"answer": 1.0}})
	expect_equal(doubled.get_value("answer"), 2.0, "a second means nothing to it: once on entering")
	await frames(3)
	expect(doubled.get_value("answer") >= 8.0, "and plainly on every frame")


func test_lerp_closes_the_same_share_however_long_the_steps_are() -> void:
	var smooth := play(_each_second(SCMathAction.LERP, 100.0, {"amount": 0.75}), {}, {"variables": {"answer": 0.0}})
	var rough := play(_each_second(SCMathAction.LERP, 100.0, {"amount": 0.75, "update_interval": 0.25}), {}, {"variables": {"answer": 0.0}})
	await advance(2.1)
	expect_near(smooth.get_value("answer"), 94.5, 0.2)
	expect_near(rough.get_value("answer"), 100.0 - 100.0 * pow(0.25, 7.0 * 16.0 / FPS), 0.01, "seven steps of sixteen frames")


func test_lines_on_the_graph() -> void:
	var plus := {"first": 1.0, "second": 2.0}
	expect_lines(SCMathAction, {
		"Set answer to 2 plus 3.5": {"first": 2.0, "second": 3.5, "store_in": "answer"},
		"Set a to [gold] divided by [heirs]": {"operation": SCMathAction.DIVIDE, "first_variable": "gold", "second_variable": "heirs", "store_in": "a"},
		"Set a to the square root of 9": {"operation": SCMathAction.SQRT, "first": 9.0, "store_in": "a"},
		"Set a to 0 and 0.25 of the way to 10": {"operation": SCMathAction.LERP, "second": 10.0, "amount": 0.25, "store_in": "a"},
		"Set a to 1 plus 2 each second": plus.merged({"per_second": true, "run_mode": SCMachineAction.EVERY_FRAME, "store_in": "a"}),
		"Set (pick one) to 1 plus 2": plus,
	})


func _answer(operation: int, first: float, second: float, options: Dictionary = {}, variables: Dictionary = {}) -> Variant:
	return result_of(_math(operation, first, second, options), variables, {"name": "Sums"})


func _each_second(operation: int, second: float, options: Dictionary = {}) -> SCMathAction:
	return _math(operation, 0.0, second, {"first_variable": "answer", "per_second": true, "run_mode": SCMachineAction.EVERY_FRAME}.merged(options))


func _math(operation: int, first: float, second: float, options: Dictionary = {}) -> SCMathAction:
	return kind(SCMathAction, {"operation": operation, "first": first, "second": second, "store_in": "answer"}.merged(options, true))
