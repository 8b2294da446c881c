extends Story
## Text: changed, searched, put together from variables, and read for numbers.


func test_every_operation() -> void:
	# Operation, settings, text, answer.
	for row: Array in [
		[SCStringAction.UPPER_CASE, {}, "Señor 1", "SEÑOR 1"],
		[SCStringAction.LOWER_CASE, {}, "ÄBC", "äbc"],
		[SCStringAction.TITLE_CASE, {}, "old mcDonald-smith had", "Old McDonald-Smith Had"],
		[SCStringAction.TRIM, {}, "  a b \n", "a b"],
		[SCStringAction.LENGTH, {}, "añb", 3],
		[SCStringAction.LENGTH, {}, "", 0],
		[SCStringAction.PART, {"position": 1, "length": 2}, "abcde", "bc"],
		[SCStringAction.PART, {"position": -2}, "abcde", "de"],
		[SCStringAction.PART, {"position": 3, "length": 99}, "abcde", "de"],
		[SCStringAction.PART, {"position": 99}, "abcde", ""],
		[SCStringAction.PART, {"position": -99, "length": 1}, "abcde", "a"],
		[SCStringAction.FIND, {"look_for": "na"}, "banana", 2],
		[SCStringAction.FIND, {"look_for": "x"}, "banana", -1],
		[SCStringAction.FIND, {"look_for": "NA", "ignore_case": true}, "banana", 2],
		[SCStringAction.COUNT, {"look_for": "an"}, "banana", 2],
		[SCStringAction.CONTAINS, {"look_for": "nan"}, "banana", true],
		[SCStringAction.CONTAINS, {"look_for": "NAN"}, "banana", false],
		[SCStringAction.CONTAINS, {"look_for": "NAN", "ignore_case": true}, "banana", true],
		[SCStringAction.BEGINS_WITH, {"look_for": "ban"}, "banana", true],
		[SCStringAction.BEGINS_WITH, {"look_for": "nan"}, "banana", false],
		[SCStringAction.ENDS_WITH, {"look_for": "NA", "ignore_case": true}, "banana", true],
		[SCStringAction.REPLACE, {"look_for": "a", "new_text": "o"}, "banana", "bonono"],
		[SCStringAction.REPLACE, {"look_for": "A", "new_text": "o", "ignore_case": true}, "bAnana", "bonono"],
		[SCStringAction.REPLACE, {"look_for": "an"}, "banana", "ba"],
		[SCStringAction.INSERT, {"new_text": "X", "position": 2}, "abcd", "abXcd"],
		[SCStringAction.INSERT, {"new_text": "X", "position": -1}, "abcd", "abcdX"],
		[SCStringAction.REPEAT, {"times": 3}, "ab", "ababab"],
		[SCStringAction.REPEAT, {"times": 0}, "ab", ""],
		[SCStringAction.REPEAT, {"times": -1}, "ab", ""],
		[SCStringAction.REVERSE, {}, "abc", "cba"],
		[SCStringAction.PAD_START, {"length": 5, "fill_with": "0"}, "42", "00042"],
		[SCStringAction.PAD_END, {"length": 4}, "ab", "ab  "],
		[SCStringAction.PAD_END, {"length": 1}, "abc", "abc"],
		[SCStringAction.SPLIT, {}, "a, b, c", ["a", "b", "c"]],
		[SCStringAction.SPLIT, {"separator": ""}, "abc", ["a", "b", "c"]],
		[SCStringAction.SPLIT, {}, "", []],
		[SCStringAction.JOIN, {}, "", "1, two, 3.5"],
		[SCStringAction.JOIN, {"separator": ""}, "", "1two3.5"],
	]:
		var options: Dictionary = row[1]
		options["text"] = row[2]
		options["store_in"] = &"answer"
		var made := await _run(_string(row[0], options), {"list": [1, "two", 3.5]})
		expect_equal(made.get_value("answer"), row[3], str(row))


func test_a_huge_repeat_has_an_end() -> void:
	var made := await _run(_string(SCStringAction.REPEAT, {"text": "abc", "times": 1 << 40, "store_in": &"answer"}))
	expect(String(made.get_value("answer")).length() <= 1000000)
	made = await _run(_string(SCStringAction.PAD_START, {"text": "abc", "length": 1 << 40, "store_in": &"answer"}))
	expect_equal(String(made.get_value("answer")).length(), 1000000)


func test_a_password_opens_the_door() -> void:
	for row: Array in [["  Open SESAME!", &"Open"], ["please", &"Shut"]]:
		var door := start(machine([
			state("Ask", [_string(SCStringAction.CONTAINS, {"text_variable": &"typed", "look_for": "sesame", "ignore_case": true, "true_event": &"right", "false_event": &"wrong"})], {"right": "Open", "wrong": "Shut"}),
			state("Open"),
			state("Shut"),
		], {"variables": {"typed": row[0]}}))
		await frames(1)
		expect_state(door, row[1])


func test_a_score_line_is_put_together() -> void:
	# Text, what it becomes.
	for row: Array in [
		["Score: {score}", "Score: 7"],
		["{score:000} of {most:,}", "007 of 12,500"],
		["{speed:0.0} {speed}", "1.3 1.26"],
		["{left:time} {health:%} {score:+}", "1:05 50% +7"],
		["{who:upper}, {who:title}", "ANNA BO, Anna Bo"],
		["no names", "no names"],
	]:
		var made := await _run(_format(row[0]), {"score": 7, "most": 12500, "speed": 1.26, "left": 65.4, "health": 0.5, "who": "anna bo"})
		expect_equal(made.get_value("answer"), row[1], row[0])
	var on_a_body := await _run(_format("on {target}"), {}, body())
	expect_equal(on_a_body.get_value("answer"), "on Body")


func test_a_repeating_text_follows_its_variables_and_costs_nothing_between() -> void:
	var line := _format("Score: {score}")
	line.run_mode = SCMachineAction.EVERY_FRAME
	var made := start(machine([state("A", [line])], {"variables": {"score": 1, "answer": ""}}))
	expect_equal(made.get_value("answer"), "Score: 1")
	await frames(1)
	expect(not made.is_processing(), "the machine ticks for a text that does not change")
	made.set_value("score", 2)
	expect_equal(made.get_value("answer"), "Score: 2")
	var bound := _format("")
	bound.run_mode = SCMachineAction.EVERY_FRAME
	bound.text_variable = &"line"
	made = start(machine([state("A", [bound])], {"name": "Bound", "variables": {"line": "{score}", "score": 1, "answer": ""}}))
	made.set_value("line", "now {score}")
	await frames(2)
	expect_equal(made.get_value("answer"), "now 1")


func test_numbers_are_read_out_of_text() -> void:
	# Text, the number.
	for row: Array in [
		["12", 12],
		["Level 12", 12],
		["-3.5 degrees", -3.5],
		["room-7", 7],
		["at -7", -7],
		["(−4)", -4],
		["3-5", 3],
		["12,500 gold", 12500],
		["1,234,567.25", 1234567.25],
		["1,2", 1],
		[".5", 0.5],
		["v1.5.2", 1.5],
		["end.5", 5],
		["2.", 2],
		["1e3", 1000.0],
		["2e-2x", 0.02],
		["3 eggs", 3],
		["4e", 4],
		["007", 7],
		["123456789012345678901234567890", 1.2345678901234568e29],
	]:
		var made := await _run(_to_number(row[0]))
		expect_equal(made.get_value("answer"), row[1], row[0])


func test_a_number_goes_in_as_its_variable_has_it() -> void:
	var made := await _run(_to_number("5"), {"answer": 0.5})
	expect_equal(made.get_value("answer"), 5.0)
	made = await _run(_to_number("2.6"), {"answer": 1})
	expect_equal(made.get_value("answer"), 3)
	expect_warning("answer on Machine is an int, so 2.6 was rounded to 3.")


func test_text_without_a_number() -> void:
	var asked := _to_number("none at all", {"if_there_is_none": -1.0, "found_event": &"got", "not_found_event": &"again"})
	var made := start(machine([
		state("A", [asked], {"got": "B", "again": "C"}),
		state("B"),
		state("C"),
	], {"variables": {"answer": 3.0}}))
	await frames(1)
	expect_state(made, "C")
	expect_equal(made.get_value("answer"), -1.0)
	made.name = "Done"
	await _run(_to_number("none"))
	expect_warning("String To Number on Machine: there is no number in \"none\", so it kept 0. Name an event under Not Found Event to do something about it.")


func test_text_set_up_wrong_is_told_of() -> void:
	await _run(_string(SCStringAction.UPPER_CASE, {"text": "a"}))
	expect_warning("String on Machine: there is nowhere to put the answer, so it was lost. Pick a variable under Store In.")
	await _run(_string(SCStringAction.CONTAINS, {"text": "a", "store_in": &"answer"}))
	expect_warning("String on Machine: there is nothing to look for, so it did nothing. Type the words in beside Look For.")
	await _run(_string(SCStringAction.JOIN, {"store_in": &"answer", "list_variable": &""}))
	expect_warning("String on Machine: no list is picked, so there was nothing to join. Pick the variable holding it beside List Variable.")
	await _run(_string(SCStringAction.JOIN, {"store_in": &"answer"}), {"list": 4})
	expect_warning("String on Machine: list holds an int, which is not a list, so there was nothing to join. Pick the variable holding the list beside List Variable.")
	var made := await _run(_format("{scor} points"))
	expect_equal(made.get_value("answer"), "{scor} points")
	expect_warning("Format String on Machine: this machine has no variable called scor, so {scor} was left as it stands. Add it in the Variables tab, or write the name of one that it has.")
	var nowhere := _format("a")
	nowhere.store_in = &""
	await _run(nowhere)
	expect_warning("Format String on Machine: there is nowhere to put the text, so it was lost. Pick a variable under Store In.")
	var not_a_text := _to_number("5")
	not_a_text.store_in = &"place"
	await _run(not_a_text, {"place": Vector2.ONE})
	expect_warning("String To Number on Machine: place holds a Vector2, which cannot become an int")


func test_what_texts_say() -> void:
	for row: Array in [
		[_string(SCStringAction.UPPER_CASE, {"text": "a", "store_in": &"b"}), "Keep \"a\" in upper case in b"],
		[_string(SCStringAction.UPPER_CASE, {"text_variable": &"typed", "store_in": &"b"}), "Keep \"[typed]\" in upper case in b"],
		[_string(SCStringAction.LENGTH, {"text": "a"}), "Keep how long \"a\" is in (pick one)"],
		[_string(SCStringAction.CONTAINS, {"text": "a", "look_for": "b"}), "Does \"a\" contain \"b\"?"],
		[_string(SCStringAction.JOIN, {"store_in": &"b"}), "Join list with \", \" into b"],
		[_format("Score: {score}"), "Write \"Score: {score}\" into answer"],
		[_to_number("12"), "Read the number in \"12\" into answer"],
	]:
		var kind: SCMachineAction = row[0]
		expect_equal(kind.shown_summary(), row[1])
	expect_equal(_format("{score} {name:upper}").variables_read(), PackedStringArray(["score", "name"]))


func _string(operation: SCStringAction.Operation, options: Dictionary = {}) -> SCStringAction:
	var made := SCStringAction.new()
	made.operation = operation
	_put(made, options)
	return made


func _format(text: String) -> SCFormatStringAction:
	var made := SCFormatStringAction.new()
	made.text = text
	made.store_in = &"answer"
	return made


func _to_number(text: String, options: Dictionary = {}) -> SCStringToNumberAction:
	var made := SCStringToNumberAction.new()
	made.text = text
	made.store_in = &"answer"
	_put(made, options)
	return made


func _run(action: SCMachineAction, variables: Dictionary = {}, under: Node = stage) -> SCMachine:
	var declared := variables.duplicate()
	declared.get_or_add("answer", null)
	var made := machine([state("A", [action], {"FINISHED": "B"}), state("B")], {"variables": declared})
	under.add_child(made)
	if not made.is_running():
		made.start()
	await frames(1)
	expect_state(made, "B")
	made.name = "Done"
	return made
