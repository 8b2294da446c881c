extends Story
## Check asks a condition in a state, sends an event and keeps the answer, and stops asking where it need not.

## Settings that the rows below share.
const CHANGES: Dictionary = {"run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": true}


## A condition a game maker wrote.
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


class Bell:
	extends Node

	signal rung


func test_once_it_sends_the_event_of_the_answer_and_finishes() -> void:
	for row: Array in [[true, {}, "Yes"], [false, {}, "No"], [true, {"true_event": ""}, "Done"], [false, {"false_event": ""}, "Done"]]:
		var made := play(_check(kind(Asked, {"answer": row[0]}), row[1]), {"yes": "Yes", "no": "No", "FINISHED": "Done"})
		expect_state(made, row[2])
		made.free()
	# It sends each time, whatever is said of changes.
	var again := play(_check(kind(Asked, {"answer": true}), {"only_when_it_changes": true}), {})
	again.restart_state(again.states[0])
	expect_events(again, ["yes", "yes"])


func test_the_answer_is_kept_turned_when_the_condition_is() -> void:
	for invert: bool in [false, true]:
		expect_equal(result_of(_check(kind(Asked, {"answer": true, "invert": invert}), {"store_in": "answer"})), not invert)


func test_every_frame_it_sends_every_answer_or_every_change() -> void:
	for only_changes: bool in [false, true]:
		var asked: Asked = kind(Asked)
		var made := play(_check(asked, {"run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": only_changes}), {})
		for answer: bool in [true, false]:
			await frames(2)
			asked.answer = answer
		await frames(2)
		expect_events(made, ["no", "yes", "no"] if only_changes else ["no", "no", "no", "yes", "yes", "no", "no"])
		made.free()


func test_a_condition_that_waits_for_the_other_actions() -> void:
	for options: Dictionary in [{}, CHANGES]:
		var asked: Asked = kind(Asked, {"answer": true, "wait_for_actions": true, "can_rest": true})
		var made := play([_check(asked, options), wait(0.3)], {"yes": "Yes", "FINISHED": "Wrong"})
		await expect_later(made, 0.2, "Work")
		expect_equal(asked.times, 0)
		await expect_later(made, 0.2, "Yes")
		made.free()


func test_no_condition_is_told() -> void:
	expect_warns(_check(null), "Check on Asker: it has no question to ask, so it did nothing. Pick one under Condition.", {"name": "Asker"})


func test_a_machine_that_is_stopped_by_the_condition() -> void:
	var asked: Asked = kind(Asked, {"answer": true})
	for options: Dictionary in [{}, CHANGES]:
		var made := doing(_check(asked, {"store_in": "answer"}.merged(options)), {})
		asked.on_check = made.stop
		start(made)
		expect(not made.is_running())
		expect_events(made, [])
		expect_values(made, {"answer": null})
		made.free()
	asked.on_check = Callable()


func test_a_no_is_rested_on_until_a_signal_fires_and_a_yes_is_not() -> void:
	var bell: Bell = add(Bell.new())
	var asked: Asked = kind(Asked, {"can_rest": true, "wakers": [[bell, &"rung"]]})
	var made := play(_check(asked, CHANGES), {})
	for times: int in [1, 2]:
		expect_equal(asked.times, times)
		expect(made.is_resting(0))
		await frames(3)
		expect_equal(asked.times, times, "asked while it rests")
		bell.rung.emit()
		await frames(2)
	asked.answer = true
	bell.rung.emit()
	await frames(2)
	expect_events(made, ["no", "yes"])
	expect(not made.is_resting(0))
	var before := asked.times
	await frames(3)
	expect_equal(asked.times, before + 3)
	# Told of every answer it has nothing to wait for.
	asked.answer = false
	expect(not play(_check(asked, {"run_mode": SCMachineAction.EVERY_FRAME}), {}, {"name": "Restless"}).is_resting(0))


func test_a_condition_about_variables_is_asked_only_when_one_changes() -> void:
	var score := kind(SCVariableCondition, {"variable_name": "score", "test": SCVariableCondition.GREATER_OR_EQUAL, "value": 10})
	var price := kind(SCCompareCondition, {"test": SCCompareCondition.GREATER, "first_variable": &"coins", "second_variable": &"price"})
	for row: Array in [
		[score, ["score"], {"score": 0}, [["score", 9], ["score", 10]]],
		[price, ["coins", "price"], {"coins": 5, "price": 8}, [["price", 5], ["price", 4]]],
	]:
		var action := _check(row[0], CHANGES)
		expect_equal(action.variables_to_watch(), PackedStringArray(row[1]))
		var made := play(action, {"yes": "Yes"}, {"variables": row[2]})
		await frames(2)
		expect(not made.is_processing(), "costs frames")
		for i in 2:
			expect_state(made, "Work")
			made.set_value(row[3][i][0], row[3][i][1])
		expect_state(made, "Yes")
		made.free()
		for awake: Dictionary in [{"only_when_it_changes": false}, {"update_interval": 0.5}, {"run_mode": SCMachineAction.ONCE}]:
			expect_equal(_check(row[0], CHANGES.merged(awake, true)).variables_to_watch(), PackedStringArray(), str(awake))


func test_a_distance_is_handed_to_the_fast_lane() -> void:
	var guard := body("Guard")
	var player := body("Player")
	for invert: bool in [false, true]:
		player.position = Vector2(500, 0)
		var made := play(_check(_distance_to_player({"invert": invert}), CHANGES), {}, {"under": guard})
		expect(made.is_resting(0))
		for x: float in [500, 50, 300]:
			player.position.x = x
			await frames(3)
		expect(not made.is_processing())
		expect_events(made, ["yes", "no", "yes"] if invert else ["no", "yes", "no"])
		made.free()


func test_a_distance_that_the_lane_cannot_ask_is_asked_the_plain_way() -> void:
	var player := body("Player", Vector2(50, 0))
	var guard := body("Guard")
	var plain := _distance_to_player()
	for check: SCCheckAction in [
		_check(plain, CHANGES.merged({"store_in": "answer"})),
		_check(plain, CHANGES.merged({"update_interval": 0.01})),
		_check(plain, {"run_mode": SCMachineAction.EVERY_FRAME}),
		_check(_distance_to_player({"store_in": &"distance"}), CHANGES),
		_check(_distance_to_player({"distance_variable": &"far"}), CHANGES),
		_check(_distance_to_player({"wait_for_actions": true}), CHANGES),
		_check(_distance_to_player({"to_node_path": ^"../.."}), CHANGES),
	]:
		var made := play(check, {}, {"under": guard, "variables": {"answer": null, "far": 100.0, "distance": 0.0}})
		expect(not made.is_resting(0), check.shown_summary())
		if check.update_interval > 0.0:
			player.position.x = 500.0
			await frames(3)
			expect_events(made, ["yes", "no"])
			player.position.x = 50.0
		if check.store_in == &"answer":
			expect_values(made, {"answer": true})
		made.free()
	expect_warning("Stage")


func test_variables_are_compared() -> void:
	var t := SCVariableCondition
	for row: Array in [
		[5, t.EQUALS, 5.0, true], [5, t.EQUALS, 6, false], [5, t.NOT_EQUALS, 6, true], [5, t.NOT_EQUALS, 5.0, false], ["a", t.EQUALS, &"a", true],
		["a", t.EQUALS, 5, false], [null, t.EQUALS, null, true], [0.1 + 0.2, t.EQUALS, 0.3, true], [0.1 + 0.2, t.GREATER, 0.3, false],
		[0.3, t.LESS, 0.1 + 0.2, false], [5, t.GREATER, 4.5, true], [5, t.GREATER, 5.0, false], [5, t.GREATER_OR_EQUAL, 5.0, true],
		[5, t.GREATER_OR_EQUAL, 5.5, false], [5, t.LESS, 5.5, true], [5, t.LESS, 5, false], [0.1 + 0.2, t.LESS_OR_EQUAL, 0.3, true],
		[5, t.LESS_OR_EQUAL, 4, false], ["b", t.GREATER, "a", true], ["b", t.LESS, "b", false], ["b", t.LESS, 5, false],
		[Vector2.ONE, t.GREATER, 0, false], [1, t.IS_TRUE, null, true], [0.0, t.IS_TRUE, null, false], ["", t.IS_FALSE, null, true],
		[true, t.EQUALS, true, true],
	]:
		var made := asker(stage, {"variables": {"it": row[0]}})
		var asked := kind(SCVariableCondition, {"variable_name": "it", "test": row[1], "value": row[2]})
		expect_equal(ask(made, asked), row[3], "%s: %s" % [row[0], asked.shown_summary()])
		if row[0] is float and row[2] is float:
			expect_answers(made, [[kind(SCCompareCondition, {"first": row[0], "test": row[1], "second": row[2]}), row[3]]])
		if row[0] is String and row[2] is int:
			expect_warning("it holds a String and is compared with an int, which is never the same.")
		made.free()


func test_what_is_said_and_shown() -> void:
	var score := kind(SCVariableCondition, {"variable_name": "score", "test": SCVariableCondition.GREATER_OR_EQUAL, "value": 10})
	expect_lines(SCCheckAction, {
		"Check: score is at least 10, yes sends win": {"condition": score, "true_event": "win"},
		"Check: score is at least 10, answer kept in won": {"condition": score, "store_in": "won"},
		"Check: (pick one) is true, no sends no": {"condition": kind(SCVariableCondition, {"test": SCVariableCondition.IS_TRUE}), "false_event": "no"},
		"Check: (pick one)": {},
	})
	expect_shown(score, ["value"])
	expect_hidden(kind(SCVariableCondition, {"test": SCVariableCondition.IS_FALSE}), ["value"])
	var distance := kind(SCCheckAction, {"condition": kind(SCDistanceCondition, {"distance": 2.0, "store_in": "far"}), "store_in": "near"})
	expect_equal(distance.variables_written(), PackedStringArray(["near", "far"]))
	distance.suit_2d()
	expect_equal(distance.condition.distance, 64.0)


func _check(asked: SCMachineCondition, options: Dictionary = {}) -> SCCheckAction:
	return kind(SCCheckAction, {"condition": asked, "true_event": "yes", "false_event": "no"}.merged(options, true))


func _distance_to_player(options: Dictionary = {}) -> SCDistanceCondition:
	return kind(SCDistanceCondition, {"to_node_path": ^"../../Player", "distance": 100.0}.merged(options, true))
