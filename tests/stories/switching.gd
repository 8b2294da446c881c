extends Story
## Branching on what a variable holds, and sums of true and false.


## Ends the game as soon as something is wrong with it.
class Strict:
	extends SCSwitchAction

	var told := 0

	@warning_ignore("native_method_override")
	func _warn_switch(m: SCMachineBase, _index: int, _which: int, _what: String) -> void:
		told += 1
		m.free()


func switch(variable: StringName, cases: Array, events: Array[StringName], options: Dictionary = {}) -> SCSwitchAction:
	var made := SCSwitchAction.new()
	made.variable_name = variable
	made.cases = cases
	made.events = events
	_put(made, options)
	return made


## The event that the switch sends for this value, empty for none.
func sent_for(value: Variant, of: SCSwitchAction) -> String:
	var sent: Array[String] = []
	var made := machine([state("Ask", [of])], {"variables": {"held": value}})
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(String(event)))
	start(made)
	made.stop()
	return "" if sent.is_empty() else sent[0]


func test_equal_by_number_and_by_text() -> void:
	var cases := [1, " 2.5 ", "key", &"door", true]
	var events: Array[StringName] = [&"One", &"Half", &"Key", &"Door", &"Yes"]
	var rows := [
		[1, "One"], [1.0, "One"], [1.000001, "One"], [1.01, "Else"],
		[2.5, "Half"], ["2.5", "Half"], ["2.50", "Else"],
		["key", "Key"], [&"key", "Key"], ["Key", "Else"],
		["door", "Door"], [false, "Else"], [3, "Else"], ["", "Else"],
	]
	for row: Array in rows:
		expect_equal(sent_for(row[0], switch(&"held", cases, events, {"otherwise_event": &"Else"})), row[1], var_to_str(row[0]))
	# As a number true is 1, so that the first case has it.
	expect_equal(sent_for(true, switch(&"held", cases, events)), "One")
	expect_equal(sent_for(true, switch(&"held", ["true"], [&"Yes"] as Array[StringName])), "Yes")
	expect_equal(sent_for(9, switch(&"held", cases, events)), "")


func test_large_numbers_are_near_by_their_size() -> void:
	expect_equal(sent_for(1000000.0, switch(&"held", ["1000005"], [&"Near"] as Array[StringName])), "Near")
	expect_equal(sent_for(1000000.0, switch(&"held", ["1000015"], [&"Near"] as Array[StringName])), "")


func test_below_takes_the_first_case_above_the_value() -> void:
	var cases := [25, "50", 100]
	var events: Array[StringName] = [&"Low", &"Half", &"High"]
	for row: Array in [[0, "Low"], [24.9, "Low"], [25, "Half"], [50, "High"], [100, "Full"], [-3, "Low"]]:
		expect_equal(sent_for(row[0], switch(&"held", cases, events, {"test": SCSwitchAction.IS_BELOW, "otherwise_event": &"Full"})), row[1], var_to_str(row[0]))


func test_below_compares_numbers_only() -> void:
	var owner := start(machine([
		state("Ask", [switch(&"held", [1], [&"A"] as Array[StringName], {"test": SCSwitchAction.IS_BELOW, "otherwise_event": &"Else"})], {"Else": "Out"}),
		state("Out"),
	], {"name": "Gauge", "variables": {"held": "much"}}))
	expect_warning("Switch on Gauge: held is not a number, and Is Below compares numbers")
	expect_state(owner, "Out")
	start(machine([
		state("Ask", [switch(&"held", ["few", 5], [&"A", &"B"] as Array[StringName], {"test": SCSwitchAction.IS_BELOW})], {"B": "Out"}),
		state("Out"),
	], {"name": "Scale", "variables": {"held": 3}}))
	expect_warning("Switch on Scale: its case few is not a number")


func test_what_is_set_up_wrong_is_told_of() -> void:
	start(machine([state("Ask", [switch(&"", [], [])])], {"name": "Gauge"}))
	expect_warning("Switch on Gauge has no variable picked to look at, so it sends nothing. Pick one beside Variable Name.")
	start(machine([state("Ask", [switch(&"held", ["a", "b"], [&"A"] as Array[StringName])])], {"name": "Dial", "variables": {"held": "b"}}))
	expect_warning("Switch on Dial: held holds b, which matches case b, but that case has no event beside it, so nothing was sent. Give each case its event.")
	start(machine([state("Ask", [switch(&"gone", ["a"], [&"A"] as Array[StringName])])], {"name": "Knob"}))
	expect_warning("Switch on Knob: this machine has no variable called gone")


func test_a_game_may_end_the_machine_as_it_is_told() -> void:
	var strict := Strict.new()
	strict.variable_name = &"held"
	strict.test = SCSwitchAction.IS_BELOW
	strict.cases = ["few", "many", "more", 5]
	var made := start(machine([state("Wait", [], {"Go": "Ask"}), state("Ask", [strict])], {"variables": {"held": 3}}))
	made.send_event(&"Go")
	expect_equal(strict.told, 1)
	expect_equal(is_instance_valid(made), false)


func test_every_frame_it_sends_first_and_then_on_change() -> void:
	var sent: Array[String] = []
	var owner := machine([
		state("Ask", [switch(&"held", [1, 2], [&"One", &"Two"] as Array[StringName], {"run_mode": SCMachineAction.EVERY_FRAME})]),
	], {"variables": {"held": 1}})
	owner.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(String(event)))
	start(owner)
	await frames(3)
	owner.set_value(&"held", 2)
	await frames(3)
	owner.set_value(&"held", 3)
	await frames(2)
	owner.set_value(&"held", 2)
	await frames(2)
	expect_equal(sent, ["One", "Two", "Two"] as Array[String])


func test_every_frame_it_may_send_each_time() -> void:
	var sent: Array[String] = []
	var owner := machine([
		state("Ask", [switch(&"held", [1], [&"One"] as Array[StringName], {"run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": false})]),
	], {"variables": {"held": 1}})
	owner.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(String(event)))
	start(owner)
	await frames(3)
	expect_equal(sent.size(), 4)


func test_sums_of_true_and_false() -> void:
	var rows := [
		[SCBoolOperatorAction.BOTH, [false, false, false, true]],
		[SCBoolOperatorAction.EITHER, [false, true, true, true]],
		[SCBoolOperatorAction.NOT_THIS, [true, true, false, false]],
		[SCBoolOperatorAction.ONE_BUT_NOT_BOTH, [false, true, true, false]],
	]
	for row: Array in rows:
		for i in 4:
			var made := SCBoolOperatorAction.new()
			made.operation = row[0]
			made.first = i >= 2
			made.second = i % 2 == 1
			made.store_in = &"answer"
			var owner := start(machine([state("Sum", [made])], {"variables": {"answer": false}}))
			expect_equal(owner.get_value(&"answer"), row[1][i], "%s %d" % [row[0], i])


func test_a_door_that_needs_the_key_and_the_lever() -> void:
	var both := SCBoolOperatorAction.new()
	both.set(&"first_variable", &"has key")
	both.set(&"second_variable", &"lever pulled")
	both.store_in = &"open"
	both.run_mode = SCMachineAction.EVERY_FRAME
	var owner := start(machine([state("Watch", [both])], {"variables": {"has key": true, "lever pulled": false, "open": false}}))
	await frames(1)
	expect_equal(owner.get_value(&"open"), false)
	owner.set_value(&"lever pulled", true)
	await frames(1)
	expect_equal(owner.get_value(&"open"), true)
	expect_equal(both.shown_summary(), "Set open to [has key] and [lever pulled]")


func test_an_answer_without_a_variable_is_told_of() -> void:
	var made := SCBoolOperatorAction.new()
	start(machine([state("Sum", [made])], {"name": "Gate"}))
	expect_warning("Bool Operator on Gate: there is nowhere to put the answer")


func test_summaries() -> void:
	var by_value := switch(&"lamp", ["on", "off"], [&"Shine"] as Array[StringName], {"otherwise_event": &"Flicker"})
	expect_equal(by_value.shown_summary(), "Switch on lamp, on sends Shine, off sends nothing, anything else Flicker")
	by_value.variable_name = &""
	expect_equal(by_value.shown_summary(), "Switch on (pick one), on sends Shine, off sends nothing, anything else Flicker")
	var by_size := switch(&"heat", [50, 25], [&"Warm", &"Cold"] as Array[StringName], {"test": SCSwitchAction.IS_BELOW})
	expect_equal(by_size.summary(), "Switch on heat, below 50 sends Warm, below 25 sends Cold (its cases are not from lowest to highest, so 25 is never reached)")
