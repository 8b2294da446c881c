extends Story
## Conditions about machines, the time they take, what has changed, and chance.


func test_chance_comes_true_as_often_as_it_says() -> void:
	var made := asker()
	for row: Array in [[0.0, 0, 0], [100.0, 1000, 1000], [25.0, 200, 300], [50.0, 440, 560]]:
		var dice := kind(SCChanceCondition, {"chance": row[0]})
		var lucky := range(1000).filter(func(_i: int) -> bool: return ask(made, dice)).size()
		expect(lucky >= row[1] and lucky <= row[2], "%s%% came true %d times in 1000" % [row[0], lucky])


func test_one_roll_holds_for_the_whole_visit() -> void:
	var dice := kind(SCChanceCondition, {"once_per_visit": true})
	var made := play(watch(dice, {"only_when_it_changes": false, "true_event": &"", "false_event": &"", "store_in": &"lucky"}), {}, {"variables": {&"lucky": false}})
	var rolls := {true: 0, false: 0}
	for visit in 60:
		await frames(2)
		var first: bool = made.get_value(&"lucky")
		rolls[first] += 1
		for i in 4:
			await frames(1)
			expect_values(made, {&"lucky": first})
		made.restart_state(made.current_state)
	expect(rolls[true] > 10 and rolls[false] > 10, "every visit rolled the same: %s" % rolls)


func test_a_guard_looks_whether_the_door_is_open() -> void:
	var door_machine := start(machine([
		state("Closed", [], {"open": "Open"}),
		state("Open", [], {}, {"sub_states": [state("Wide"), state("A Crack")], "parallel": {&"Light": [state("Lit")], &"Sound": [state("Creaking")]}}),
	], {"under": body("Door")}))
	var guard := start(machine([state("Here", [act("here")])], {"under": body("Guard")}))
	var rows := {}
	for name: StringName in [&"Closed", &"Open", &"Lit", &"Creaking", &"Wide"]:
		for path: NodePath in [^"../../Door", ^"../../Door/Machine"]:
			rows[kind(SCInStateCondition, {"state_name": name, "machine_path": path})] = name in [&"Open", &"Lit", &"Creaking"]
			rows[kind(SCInStateCondition, {"state_name": name, "machine_path": path, "invert": true})] = name in [&"Closed", &"Wide"]
	rows[kind(SCInStateCondition, {"state_name": &"Here"})] = true
	door_machine.send_event(&"open")
	for asked: SCMachineCondition in rows:
		expect_answers(guard, [[asked, rows[asked]]])
	door_machine.stop()
	expect_answers(guard, [[rows.keys()[4], false]], "stopped")


func test_what_is_wrong_is_told_once() -> void:
	body("Stone")
	var guard := body("Guard")
	for row: Array in [
		[SCInStateCondition, {}, "no state is picked, so the answer is no. Type the state's name under State Name."],
		[SCInStateCondition, {"state_name": &"Flying"}, "Asker has no state called Flying, so the answer is no. Check the name under State Name."],
		[SCInStateCondition, {"state_name": &"Flying", "machine_path": ^"../../Nobody"}, "there is no node at ../../Nobody"],
		[SCInStateCondition, {"state_name": &"Flying", "machine_path": ^"../../Stone"}, "Stone has no Machine, so the answer is no."],
		[SCSubStateFinishedCondition, {}, "Asking has no sub-states, so there is no work inside it to finish and the answer is no."],
		[SCVariableChangedCondition, {}, "no variable is picked, so the answer is no. Pick one under Variable Name."],
		[SCVariableChangedCondition, {"variable_name": &"lives"}, "Variable Changed on Asker: there is no variable called lives, so the answer is no."],
	]:
		expect_warns(kind(row[0], row[1]), row[2], {"name": "Asker", "under": guard})


func test_the_work_inside_is_done() -> void:
	for own_work: bool in [false, true]:
		var made := start(machine([
			state("Cooking", [wait(0.7), watch(kind(SCSubStateFinishedCondition, {"require_own_actions": own_work}))], {"yes": "Served"}, {"sub_states": [
				state("Boil", [wait(0.2)], {"FINISHED": "Salt"}),
				state("Salt", [wait(0.2)], {}, {"end": true}),
			]}),
			state("Served"),
		]))
		await advance(0.3)
		expect_states(made, ["Cooking", "Salt"])
		await advance(0.2)
		expect_states(made, ["Cooking", "Salt"] if own_work else ["Served"])
		await expect_later(made, 0.3, "Served")
		made.free()


func test_time_passes_in_a_state() -> void:
	for options: Dictionary in [{"seconds": 0.5}, {"seconds_variable": &"patience"}]:
		var late := kind(SCTimeoutCondition, options)
		var made := play(watch(late), {"yes": "Late"}, {"variables": {&"patience": 0.5}})
		await expect_later(made, 0.4, "Work")
		made.restart_state(made.current_state)
		await expect_later(made, 0.4, "Work")
		await expect_later(made, 0.15, "Late")
		made.free()
	# Half a second is thirty frames, and no time has passed at once.
	var made := asker()
	expect_answers(made, [[kind(SCTimeoutCondition, {"seconds": 0.0}), true]])
	await frames(29)
	expect_answers(made, [[kind(SCTimeoutCondition, {"seconds": 0.5}), false]])
	await frames(2)
	expect_answers(made, [[kind(SCTimeoutCondition, {"seconds": 0.5}), true]])


func test_the_extra_time_is_picked_once_a_visit() -> void:
	var made := start(machine([
		state("Waiting", [watch(kind(SCTimeoutCondition, {"seconds": 0.1, "random_extra": 0.4}))], {"yes": "Late"}),
		state("Late", [], {"back": "Waiting"}),
	]))
	var lengths: Array[int] = []
	for visit in 12:
		var count := 0
		while current(made) == &"Waiting" and count < 60:
			await frames(1)
			count += 1
		expect(count >= 5 and count <= 32, "took %d frames" % count)
		lengths.append(count)
		made.send_event(&"back")
	expect(lengths.max() - lengths.min() > 6, "always as long: %s" % [lengths])


func test_a_change_is_seen_once() -> void:
	var made := asker(stage, {"variables": {&"score": 0, &"bag": [], &"target": null, &"name": "Ann"}})
	for row: Array in [
		[&"score", 1], [&"score", 1000000], [&"score", 1000001], [&"name", "Bob"], [&"bag", ["key"]], [&"target", body("First")], [&"target", body("Second")], [&"target", null],
	]:
		var changed := kind(SCVariableChangedCondition, {"variable_name": row[0]})
		var memory := {}
		for seen: bool in [false, true]:
			if seen:
				made.set_value(row[0], row[1])
			expect_equal(ask(made, changed, memory), seen, "%s" % [row])
			made.set_value(row[0], made.get_value(row[0]))
			expect(not ask(made, changed, memory), "%s, written the same" % [row])
	# A list that grows where it is, and a node that is freed.
	var target := body("Third")
	made.set_value(&"target", target)
	for row: Array in [[&"bag", (made.get_value(&"bag") as Array).append.bind("lamp")], [&"target", target.free]]:
		var changed := kind(SCVariableChangedCondition, {"variable_name": row[0]})
		var memory := {}
		expect(not ask(made, changed, memory))
		(row[1] as Callable).call()
		expect(ask(made, changed, memory))
		expect(not ask(made, changed, memory))


func test_only_changes_during_the_visit_count() -> void:
	var made := start(machine([
		state("Elsewhere", [], {"watch": "Watching"}),
		state("Watching", [watch(kind(SCVariableChangedCondition, {"variable_name": &"score"}))], {"yes": "Seen", "leave": "Elsewhere"}),
		state("Seen"),
	], {"variables": {&"score": 0}}))
	made.send_event(&"watch")
	await frames(2)
	made.send_event(&"leave")
	made.set_value(&"score", 5)
	made.send_event(&"watch")
	await expect_later(made, 0.05, "Watching")
	made.set_value(&"score", 6)
	await expect_later(made, 0.04, "Seen")


func test_the_lines_read_like_sentences() -> void:
	expect_lines(SCChanceCondition, {"50% of the time": {}, "12.5% of the time, one roll a visit": {"chance": 12.5, "once_per_visit": true}})
	expect_lines(SCInStateCondition, {"this machine is in Open": {"state_name": &"Open"}, "Door is in (pick one)": {"machine_path": ^"../../Door"}})
	expect_lines(SCSubStateFinishedCondition, {"the sub-states are done": {}, "the sub-states and the state's own actions are done": {"require_own_actions": true}})
	expect_lines(SCTimeoutCondition, {
		"2 s have passed": {"seconds": 2.0},
		"2 to 3.5 s have passed": {"seconds": 2.0, "random_extra": 1.5},
		"[patience] s have passed": {"seconds_variable": &"patience"},
	})
	expect_lines(SCVariableChangedCondition, {"Not: score has changed": {"variable_name": &"score", "invert": true}, "(pick one) has changed": {}})
