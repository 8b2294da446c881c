extends Story
## Text: changed, searched, put together from variables, and read for numbers.


func test_every_operation() -> void:
	var banana := {"text": "banana", "ignore_case": true}
	# Operation, then settings and answer.
	var rows: Dictionary[int, Array] = {
		SCStringAction.UPPER_CASE: [[{"text": "Señor 1"}, "SEÑOR 1"]],
		SCStringAction.LOWER_CASE: [[{"text": "ÄBC"}, "äbc"]],
		SCStringAction.TITLE_CASE: [[{"text": "old mcDonald-smith had"}, "Old McDonald-Smith Had"]],
		SCStringAction.TRIM: [[{"text": "  a b \n"}, "a b"]],
		SCStringAction.LENGTH: [[{"text": "añb"}, 3], [{"text": ""}, 0]],
		SCStringAction.PART: [
			[{"text": "abcde", "position": 1, "length": 2}, "bc"], [{"text": "abcde", "position": -2}, "de"], [{"text": "abcde", "position": 99}, ""],
			[{"text": "abcde", "position": 3, "length": 99}, "de"], [{"text": "abcde", "position": -99, "length": 1}, "a"],
		],
		SCStringAction.FIND: [[{"text": "banana", "look_for": "na"}, 2], [{"text": "banana", "look_for": "NA"}, -1], [banana.merged({"look_for": "NA"}), 2]],
		SCStringAction.COUNT: [[{"text": "banana", "look_for": "an"}, 2]],
		SCStringAction.CONTAINS: [
			[{"text": "banana", "look_for": "nan"}, true], [{"text": "banana", "look_for": "NAN"}, false], [banana.merged({"look_for": "NAN"}), true],
		],
		SCStringAction.BEGINS_WITH: [[{"text": "banana", "look_for": "ban"}, true], [{"text": "banana", "look_for": "nan"}, false]],
		SCStringAction.ENDS_WITH: [[banana.merged({"look_for": "NA"}), true], [banana.merged({"look_for": "ban"}), false]],
		SCStringAction.REPLACE: [
			[{"text": "banana", "look_for": "a", "new_text": "o"}, "bonono"], [{"text": "banana", "look_for": "an"}, "ba"],
			[{"text": "bAnana", "look_for": "A", "new_text": "o"}, "bonana"], [{"text": "bAnana", "look_for": "A", "new_text": "o", "ignore_case": true}, "bonono"],
		],
		SCStringAction.INSERT: [[{"text": "abcd", "new_text": "X", "position": 2}, "abXcd"], [{"text": "abcd", "new_text": "X", "position": -1}, "abcdX"]],
		SCStringAction.REPEAT: [[{"text": "ab", "times": 3}, "ababab"], [{"text": "ab", "times": 0}, ""], [{"text": "ab", "times": -1}, ""]],
		SCStringAction.REVERSE: [[{"text": "abc"}, "cba"]],
		SCStringAction.PAD_START: [[{"text": "42", "length": 5, "fill_with": "0"}, "00042"]],
		SCStringAction.PAD_END: [[{"text": "ab", "length": 4}, "ab  "], [{"text": "abc", "length": 1}, "abc"]],
		SCStringAction.SPLIT: [[{"text": "a, b, c"}, ["a", "b", "c"]], [{"text": "abc", "separator": ""}, ["a", "b", "c"]], [{"text": ""}, []]],
		SCStringAction.JOIN: [[{}, "1, two, 3.5"], [{"separator": ""}, "1two3.5"]],
	}
	for operation in rows:
		for row: Array in rows[operation]:
			expect_equal(result_of(_string(operation, row[0]), {"list": [1, "two", 3.5]}), row[1], "%d with %s" % [operation, row[0]])
	var most := 1000000
	expect_equal(String(result_of(_string(SCStringAction.REPEAT, {"text": "abc", "times": 1 << 40}))).length(), most - most % 3)
	expect_equal(String(result_of(_string(SCStringAction.PAD_START, {"text": "abc", "length": 1 << 40}))).length(), most)


func test_a_password_opens_the_door() -> void:
	var asked := _string(SCStringAction.CONTAINS, {
		"text_variable": &"typed", "look_for": "sesame", "ignore_case": true, "true_event": &"right", "false_event": &"wrong", "store_in": &"",
	})
	for row: Array in [["  Open SESAME!", &"Open"], ["please", &"Shut"]]:
		expect_state(play(asked, {"right": "Open", "wrong": "Shut"}, {"variables": {"typed": row[0]}}), row[1])


func test_a_score_line_is_put_together() -> void:
	# Text, what it becomes.
	for row: Array in [
		["Score: {score}", "Score: 7"],
		["{score:000} of {most:,}", "007 of 12,500"],
		["{speed:0.0} {speed}", "1.3 1.26"],
		["{left:time} {health:%} {score:+}", "1:05 50% +7"],
		["{who:upper}, {who:title}", "ANNA BO, Anna Bo"],
		["no names", "no names"],
		["on {target}", "on Stage"],
	]:
		expect_equal(result_of(_format(row[0]), {"score": 7, "most": 12500, "speed": 1.26, "left": 65.4, "health": 0.5, "who": "anna bo"}), row[1], row[0])


func test_a_repeating_text_follows_its_variables_and_costs_nothing_between() -> void:
	var made := play(_format("Score: {score}", {"run_mode": SCMachineAction.EVERY_FRAME}), {}, {"variables": {"score": 1, "answer": ""}})
	expect_equal(made.get_value("answer"), "Score: 1")
	await frames(1)
	expect(not made.is_processing(), "the machine ticks for a text that does not change")
	made.set_value("score", 2)
	expect_equal(made.get_value("answer"), "Score: 2")
	var bound := _format("", {"run_mode": SCMachineAction.EVERY_FRAME, "text_variable": &"line"})
	made = play(bound, {}, {"variables": {"line": "{score}", "score": 1, "answer": ""}})
	made.set_value("line", "now {score}")
	await frames(2)
	expect_equal(made.get_value("answer"), "now 1")


func test_numbers_are_read_out_of_text() -> void:
	# Text, the number.
	for row: Array in [
		["12", 12], ["Level 12", 12], ["007", 7], ["3 eggs", 3],
		["-3.5 degrees", -3.5], ["room-7", 7], ["at -7", -7], ["(−4)", -4], ["3-5", 3],
		["12,500 gold", 12500], ["1,234,567.25", 1234567.25], ["1,2", 1], ["1,23", 1], ["1,2345", 1],
		[".5", 0.5], ["-.5", -0.5], ["v1.5.2", 1.5], ["end.5", 5], ["2.", 2],
		["1e3", 1000.0], ["1E+3", 1000.0], ["2e-2x", 0.02], ["4e", 4], ["4e-", 4],
		["123456789012345678", 123456789012345678], ["1234567890123456789", 1.2345678901234568e18],
	]:
		expect_equal(result_of(_to_number(row[0])), row[1], row[0])
	expect_equal(result_of(_to_number("5"), {"answer": 0.5}), 5.0)
	expect_equal(result_of(_to_number("2.6"), {"answer": 1}), 3)
	expect_warning("answer on Machine is an int, so 2.6 was rounded to 3.")


func test_text_with_and_without_a_number() -> void:
	# Text, where it leads, what is kept and what the event carries.
	for row: Array in [["none at all", "C", -1.0, null], ["12 of them", "B", 12.0, 12]]:
		var asked := _to_number(row[0], {"if_there_is_none": -1.0, "found_event": &"got", "not_found_event": &"again"})
		var made := play(asked, {"got": "B", "again": "C"}, {"variables": {"answer": 3.0}})
		expect_state(made, row[1])
		expect_equal(made.get_value("answer"), row[2])
		expect_equal(made.last_event_data(), row[3])
		made.free()
	expect_warns(_to_number("none"), "String To Number on Machine: there is no number in \"none\", so it kept 0. Name an event under Not Found Event to do something about it.")
	expect_warns(_to_number("5", {"store_in": &"place"}), "String To Number on Machine: place holds a Vector2, which cannot become an int", {"variables": {"place": Vector2.ONE}})


func test_text_set_up_wrong_is_told_of() -> void:
	# Operation, settings, what is said; list holds a number.
	for row: Array in [
		[SCStringAction.UPPER_CASE, {"store_in": &""}, "there is nowhere to put the answer, so it was lost. Pick a variable under Store In."],
		[SCStringAction.CONTAINS, {"look_for": "a", "store_in": &""}, "there is nowhere to put the answer, so it was lost."],
		[SCStringAction.CONTAINS, {}, "there is nothing to look for, so it did nothing. Type the words in beside Look For."],
		[SCStringAction.JOIN, {"list_variable": &""}, "no list is picked, so there was nothing to join. Pick the variable holding it beside List Variable."],
		[SCStringAction.JOIN, {}, "list holds an int, which is not a list, so there was nothing to join. Pick the variable holding the list beside List Variable."],
	]:
		expect_warns(_string(row[0], row[1]), "String on Machine: %s" % row[2], {"variables": {"list": 4}})
	expect_equal(result_of(_format("{scor} points")), "{scor} points")
	expect_warning("Format String on Machine: this machine has no variable called scor, so {scor} was left as it stands. Add it under Variables, or write the name of one that it has.")
	expect_warns(_format("a", {"store_in": &""}), "Format String on Machine: there is nowhere to put the text, so it was lost. Pick a variable under Store In.")


func test_what_texts_say() -> void:
	expect_lines(SCStringAction, {
		"Keep \"a\" in upper case in b": {"text": "a", "store_in": &"b"},
		"Keep \"[typed]\" in upper case in b": {"text_variable": &"typed", "store_in": &"b"},
		"Keep how long \"a\" is in (pick one)": {"operation": SCStringAction.LENGTH, "text": "a"},
		"Does \"a\" contain \"b\"?": {"operation": SCStringAction.CONTAINS, "text": "a", "look_for": "b"},
		"Join list with \", \" into b": {"operation": SCStringAction.JOIN, "store_in": &"b"},
	})
	expect_line(_format("Score: {score}"), "Write \"Score: {score}\" into answer")
	expect_line(_to_number("12"), "Read the number in \"12\" into answer")
	expect_equal(_format("{score} {name:upper}").variables_read(), PackedStringArray(["score", "name"]))


func _string(operation: SCStringAction.Operation, options: Dictionary = {}) -> SCStringAction:
	return kind(SCStringAction, {"operation": operation, "store_in": &"answer"}.merged(options, true))


func _format(text: String, options: Dictionary = {}) -> SCFormatStringAction:
	return kind(SCFormatStringAction, {"text": text, "store_in": &"answer"}.merged(options, true))


func _to_number(text: String, options: Dictionary = {}) -> SCStringToNumberAction:
	return kind(SCStringToNumberAction, {"text": text, "store_in": &"answer"}.merged(options, true))
