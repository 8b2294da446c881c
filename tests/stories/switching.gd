extends Story
## Branching on what a variable holds, and sums of true and false.


func test_equal_by_number_and_by_text() -> void:
	var asked := _switch([1, " 2.5 ", "key", &"door", true], ["One", "Half", "Key", "Door", "Yes"], {"otherwise_event": &"Else"})
	# As a number true is 1, so that the first case has it.
	for row: Array in [
		[1, "One"], [1.0, "One"], [1.000001, "One"], [1.01, "Else"], [true, "One"], [2.5, "Half"], ["2.5", "Half"], ["2.50", "Else"],
		["key", "Key"], [&"key", "Key"], ["Key", "Else"], ["door", "Door"], [false, "Else"], [3, "Else"], ["", "Else"],
	]:
		expect_events(_asked(row[0], asked), [row[1]])
	expect_events(_asked(true, _switch(["true"], ["Yes"])), ["Yes"])
	expect_events(_asked(9, _switch([1], ["One"])), [])
	# Large numbers are near by their size.
	expect_events(_asked(1000000.0, _switch(["1000005"], ["Near"])), ["Near"])
	expect_events(_asked(1000000.0, _switch(["1000015"], ["Near"])), [])


func test_below_takes_the_first_case_above_the_value() -> void:
	var asked := _switch([25, "50", 100], ["Low", "Half", "High"], {"test": SCSwitchAction.IS_BELOW, "otherwise_event": &"Full"})
	for row: Array in [[0, "Low"], [24.9, "Low"], [25, "Half"], [50, "High"], [100, "Full"], [-3, "Low"], [true, "Low"]]:
		expect_events(_asked(row[0], asked), [row[1]])


func test_what_is_set_up_wrong_is_told_of() -> void:
	expect_warns(SCSwitchAction.new(), "Switch on Machine has no variable picked to look at, so it sends nothing. Pick one beside Variable Name.")
	expect_warns(SCBoolOperatorAction.new(), "Bool Operator on Machine: there is nowhere to put the answer")
	var below := {"test": SCSwitchAction.IS_BELOW, "otherwise_event": &"Else"}
	# Switch, what the variable holds, what is sent all the same, what is said.
	for row: Array in [
		[_switch([1], ["A"], below), "much", ["Else"], "held is not a number, and Is Below compares numbers"],
		[_switch(["few", 5], ["A", "B"], below), 3, ["B"], "its case few is not a number"],
		[_switch(["a", "b"], ["A"]), "b", [], "held holds b, which matches case b, but that case has no event beside it, so nothing was sent. Give each case its event."],
		[_switch(["a"], ["A"], {"variable_name": &"gone", "otherwise_event": &"Else"}), 1, ["Else"], "this machine has no variable called gone"],
	]:
		expect_events(_asked(row[1], row[0]), row[2])
		expect_warning("Switch on Machine: %s" % row[3])


func test_every_frame_it_sends_first_and_then_on_change_or_each_time() -> void:
	var every_frame := {"run_mode": SCMachineAction.EVERY_FRAME}
	var made := _asked(1, _switch([1, 2], ["One", "Two"], every_frame))
	for held: int in [1, 2, 3, 2]:
		made.set_value(&"held", held)
		await frames(3)
	expect_events(made, ["One", "Two", "Two"])
	made = _asked(1, _switch([1], ["One"], every_frame.merged({"only_when_it_changes": false})))
	await frames(2)
	expect_events(made, ["One", "One", "One"])


func test_sums_of_true_and_false() -> void:
	var answers: Dictionary[int, Array] = {
		SCBoolOperatorAction.BOTH: [false, false, false, true],
		SCBoolOperatorAction.EITHER: [false, true, true, true],
		SCBoolOperatorAction.NOT_THIS: [true, true, false, false],
		SCBoolOperatorAction.ONE_BUT_NOT_BOTH: [false, true, true, false],
	}
	for operation in answers:
		for i in 4:
			var sum := kind(SCBoolOperatorAction, {"operation": operation, "first": i >= 2, "second": i % 2 == 1, "store_in": &"answer"})
			expect_equal(result_of(sum), answers[operation][i], "%s %d" % [operation, i])
	var both := kind(SCBoolOperatorAction, {"first_variable": &"key", "second_variable": &"lever", "store_in": &"open", "run_mode": SCMachineAction.EVERY_FRAME})
	expect_line(both, "Set open to [key] and [lever]")
	var made := play(both, {}, {"variables": {"key": true, "lever": false, "open": true}})
	expect_equal(made.get_value(&"open"), false)
	made.set_value(&"lever", true)
	await frames(1)
	expect_equal(made.get_value(&"open"), true)


func test_summaries() -> void:
	var said := ", on sends Shine, off sends nothing, anything else Flicker"
	expect_line(_switch(["on", "off"], ["Shine"], {"variable_name": &"lamp", "otherwise_event": &"Flicker"}), "Switch on lamp" + said)
	expect_line(_switch(["on", "off"], ["Shine"], {"variable_name": &"", "otherwise_event": &"Flicker"}), "Switch on (pick one)" + said)
	var by_size := _switch([50, 25], ["Warm", "Cold"], {"test": SCSwitchAction.IS_BELOW})
	expect_equal(by_size.summary(), "Switch on held, below 50 sends Warm, below 25 sends Cold (its cases are not from lowest to highest, so 25 is never reached)")


func _switch(cases: Array, events: Array, options: Dictionary = {}) -> SCSwitchAction:
	return kind(SCSwitchAction, {"variable_name": &"held", "cases": cases, "events": Array(events, TYPE_STRING_NAME, &"", null)}.merged(options, true))


func _asked(value: Variant, of: SCSwitchAction) -> SCMachine:
	for made in stage.get_children():
		made.free()
	return play(of, {}, {"variables": {"held": value}})


## Ends the game as soon as something is wrong with it.
class Strict:
	extends SCSwitchAction

	var told: int = 0

	@warning_ignore("native_method_override")
	func _warn_switch(m: SCMachineBase, _index: int, _which: int, _what: String) -> void:
		told += 1
		m.free()


func test_a_game_may_end_the_machine_as_it_is_told() -> void:
	var strict: Strict = kind(Strict, {"variable_name": &"held", "test": SCSwitchAction.IS_BELOW, "cases": ["few", "many", "more", 5]})
	var made := start(machine([state("Wait", [], {"Go": "Ask"}), state("Ask", [strict])], {"variables": {"held": 3}}))
	made.send_event(&"Go")
	expect_equal(strict.told, 1)
	expect_equal(is_instance_valid(made), false)
