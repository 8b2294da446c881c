extends Story
## Check asks a question in a state, sends an event and keeps the answer, and stops asking where it need not.

const EVERY_FRAME := SCMachineAction.EVERY_FRAME


## A question a game maker wrote.
class Asked:
	extends SCMachineCondition

	var answer: bool = false
	var times: int = 0
	var wakers: Array = []
	var on_check: Callable

	func _check(_m: SCMachine, _slot: Dictionary) -> bool:
		times += 1
		if on_check.is_valid():
			on_check.call()
		return answer

	func _rest_signals(_m: SCMachine, _slot: Dictionary) -> Array:
		return wakers

	func _summary() -> String:
		return "it is so"


class Bell:
	extends Node

	signal rung


func test_once_sends_the_event_of_the_answer_and_finishes() -> void:
	for row: Array in [[true, "Yes"], [false, "No"]]:
		var made := start(machine([
			state("Ask", [_check(_asked(row[0]))], {"yes": "Yes", "no": "No"}),
			state("Yes"),
			state("No"),
		]))
		expect_state(made, row[1])
	var quiet := start(machine([state("Ask", [_check(_asked(true), {"true_event": ""})], {"FINISHED": "B"}), state("B")]))
	expect_state(quiet, "B")


func test_the_answer_is_kept_turned_when_the_question_is() -> void:
	var question := _asked(true)
	var plain := start(_asking([_check(question, {"store_in": "answer"})]))
	expect_equal(plain.get_value("answer"), true)
	question.invert = true
	var turned := start(_asking([_check(question, {"store_in": "answer"})]))
	expect_equal(turned.get_value("answer"), false)


func test_every_frame_sends_every_frame() -> void:
	var made := _asking([_check(_asked(true), {"run_mode": EVERY_FRAME})])
	var sent := _events_of(made)
	start(made)
	await frames(4)
	expect(sent.size() >= 4, "sent %d" % sent.size())
	expect_state(made, "Ask")


func test_only_changes_are_sent_and_the_first_answer() -> void:
	var question := _asked(false)
	var made := _asking([_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})])
	var sent := _events_of(made)
	start(made)
	await frames(3)
	expect_equal(sent, [&"no"])
	question.answer = true
	await frames(3)
	question.answer = false
	await frames(3)
	expect_equal(sent, [&"no", &"yes", &"no"])


func test_once_sends_each_time_whatever_the_setting_says() -> void:
	var made := _asking([_check(_asked(true), {"only_when_it_changes": true})])
	var sent := _events_of(made)
	start(made)
	made.restart_state(made.states[0])
	expect_equal(sent, [&"yes", &"yes"])


func test_a_question_that_waits_for_the_other_actions() -> void:
	var question := _asked(true)
	question.wait_for_actions = true
	var made := start(machine([
		state("Ask", [_check(question), wait(0.3)], {"yes": "Yes", "FINISHED": "Wrong"}),
		state("Yes"),
		state("Wrong"),
	]))
	await advance(0.2)
	expect_state(made, "Ask")
	expect_equal(question.times, 0)
	await advance(0.2)
	expect_state(made, "Yes")


func test_no_question_is_told() -> void:
	var made := start(machine([state("A", [_check(null)], {"FINISHED": "B"}), state("B")], {"name": "Asker"}))
	expect_state(made, "B")
	expect_warning("Check on Asker: it has no question to ask, so it did nothing. Pick one under Condition.")


func test_a_machine_that_is_stopped_by_the_question() -> void:
	var question := _asked(true)
	var made := _asking([_check(question, {"store_in": "answer"})])
	question.on_check = made.stop
	var sent := _events_of(made)
	start(made)
	question.on_check = Callable()
	expect(not made.is_running())
	expect_equal(sent, [])
	expect_equal(made.get_value("answer"), null)


func test_a_no_is_rested_on_until_a_signal_fires() -> void:
	var bell := Bell.new()
	add(bell)
	var question := _asked(false)
	question.can_rest = true
	question.wakers = [[bell, &"rung"]]
	var made := start(machine([
		state("Ask", [_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})], {"yes": "Yes"}),
		state("Yes"),
	]))
	expect_equal(question.times, 1)
	expect(made.is_resting(0))
	await frames(5)
	expect_equal(question.times, 1, "not asked while it rests")
	bell.rung.emit()
	await frames(2)
	expect_equal(question.times, 2)
	expect(made.is_resting(0), "still no: it rests again")
	question.answer = true
	bell.rung.emit()
	await frames(2)
	expect_state(made, "Yes")


func test_a_yes_is_not_rested_on() -> void:
	var bell := Bell.new()
	add(bell)
	var question := _asked(true)
	question.can_rest = true
	question.wakers = [[bell, &"rung"]]
	var made := start(_asking([_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})]))
	expect(not made.is_resting(0))
	await frames(3)
	expect(question.times > 2)


func test_a_question_about_variables_is_asked_only_when_one_changes() -> void:
	var question := _variable("score", SCVariableCondition.GREATER_OR_EQUAL, 10)
	var action := _check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})
	expect_equal(action.variables_to_watch(), PackedStringArray(["score"]))
	var made := start(machine([state("Ask", [action], {"yes": "Won"}), state("Won")], {"variables": {"score": 0}}))
	await frames(2)
	expect(not made.is_processing(), "costs no frame")
	made.set_value("score", 9)
	expect_state(made, "Ask")
	made.set_value("score", 10)
	expect_state(made, "Won")


func test_the_variable_behind_a_setting_counts_too() -> void:
	var question := SCCompareCondition.new()
	question.test = SCCompareCondition.GREATER
	question.set(&"first_variable", &"coins")
	question.set(&"second_variable", &"price")
	var made := start(machine([state("Ask", [_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})], {"yes": "Rich"}), state("Rich")], {"variables": {"coins": 5, "price": 8}}))
	expect_state(made, "Ask")
	made.set_value("price", 4)
	expect_state(made, "Rich")


func test_a_distance_is_handed_to_the_fast_lane() -> void:
	var guard := body("Guard")
	var player := body("Player")
	player.position = Vector2(500, 0)
	var question := SCDistanceCondition.new()
	question.to_node_path = NodePath("../../Player")
	question.distance = 100.0
	var made := start(machine([
		state("Idle", [_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})], {"yes": "Near"}),
		state("Near", [_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})], {"no": "Idle"}),
	], {"under": guard}))
	expect(made.is_resting(0))
	await frames(3)
	expect(not made.is_processing())
	expect_state(made, "Idle")
	player.position.x = 50
	await frames(3)
	expect_state(made, "Near")
	player.position.x = 300
	await frames(3)
	expect_state(made, "Idle")


func test_a_turned_distance_in_the_fast_lane() -> void:
	var guard := body("Guard")
	var player := body("Player")
	var question := SCDistanceCondition.new()
	question.to_node_path = NodePath("../../Player")
	question.distance = 100.0
	question.invert = true
	var made := _asking([_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true})], {"under": guard})
	var sent := _events_of(made)
	start(made)
	expect(made.is_resting(0))
	await frames(3)
	player.position.x = 300
	await frames(3)
	player.position.x = 0
	await frames(3)
	expect_equal(sent, [&"no", &"yes", &"no"])


func test_a_distance_that_is_kept_is_asked_the_plain_way() -> void:
	var guard := body("Guard")
	body("Player").position.x = 50
	var question := SCDistanceCondition.new()
	question.to_node_path = NodePath("../../Player")
	question.distance = 100.0
	var made := start(_asking([_check(question, {"run_mode": EVERY_FRAME, "only_when_it_changes": true, "store_in": "answer"})], {"under": guard}))
	expect(not made.is_resting(0))
	expect_equal(made.get_value("answer"), true)


func test_variables_are_compared() -> void:
	var t := SCVariableCondition
	for row: Array in [
		[5, t.EQUALS, 5.0, true],
		[5, t.NOT_EQUALS, 6, true],
		["a", t.EQUALS, &"a", true],
		["a", t.EQUALS, 5, false],
		[null, t.EQUALS, null, true],
		[0.1 + 0.2, t.EQUALS, 0.3, true],
		[5, t.GREATER, 4.5, true],
		[5, t.GREATER, 5.0, false],
		[5, t.GREATER_OR_EQUAL, 5.0, true],
		[5, t.LESS, 5.5, true],
		[0.1 + 0.2, t.LESS_OR_EQUAL, 0.3, true],
		["b", t.GREATER, "a", true],
		["b", t.LESS, 5, false],
		[Vector2.ONE, t.GREATER, 0, false],
		[1, t.IS_TRUE, null, true],
		["", t.IS_FALSE, null, true],
		[true, t.EQUALS, true, true],
	]:
		var made := start(_asking([_check(_variable("it", row[1], row[2]), {"store_in": "answer"})], {"variables": {"it": row[0]}}))
		expect_equal(made.get_value("answer"), row[3], "%s %d %s" % row.slice(0, 3))


func test_two_numbers_are_compared() -> void:
	for row: Array in [
		[1.0, SCCompareCondition.EQUALS, 1.0, true],
		[1.0, SCCompareCondition.LESS, 2.0, true],
		[3.0, SCCompareCondition.LESS_OR_EQUAL, 2.0, false],
	]:
		var question := SCCompareCondition.new()
		question.first = row[0]
		question.test = row[1]
		question.second = row[2]
		var made := start(_asking([_check(question, {"store_in": "answer"})]))
		expect_equal(made.get_value("answer"), row[3])


func test_lines_on_the_graph() -> void:
	var score := _variable("score", SCVariableCondition.GREATER_OR_EQUAL, 10)
	for row: Array in [
		[_check(score, {"true_event": "win", "false_event": ""}), "Check: score is at least 10, yes sends win"],
		[_check(score, {"true_event": "", "false_event": "", "store_in": "won"}), "Check: score is at least 10, answer kept in won"],
		[_check(_variable("", SCVariableCondition.IS_TRUE, null)), "Check: (pick one) is true, yes sends yes, no sends no"],
		[_check(null), "Check: (pick one), yes sends yes, no sends no"],
	]:
		expect_equal((row[0] as SCCheckAction).shown_summary(), row[1])


func _asking(actions: Array, options: Dictionary = {}) -> SCMachine:
	return machine([state("Ask", actions)], options)


func _check(question: SCMachineCondition, options: Dictionary = {}) -> SCCheckAction:
	var made := SCCheckAction.new()
	made.condition = question
	made.true_event = "yes"
	made.false_event = "no"
	_put(made, options)
	return made


func _asked(answer: bool) -> Asked:
	var made := Asked.new()
	made.answer = answer
	return made


func _variable(name: StringName, test: int, value: Variant) -> SCVariableCondition:
	var made := SCVariableCondition.new()
	made.variable_name = name
	made.test = test
	made.value = value
	return made


func _events_of(made: SCMachine) -> Array:
	var sent := []
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(event))
	return sent
