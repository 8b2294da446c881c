extends Story
## Questions about machines, the time they take, what has changed, and chance.


func test_chance_comes_true_as_often_as_it_says() -> void:
	var made := asker(stage)
	var dice := SCChanceCondition.new()
	for row: Array in [[0.0, 0, 0], [100.0, 1000, 1000], [25.0, 200, 300], [50.0, 440, 560]]:
		dice.chance = row[0]
		var lucky := 0
		for i in 1000:
			lucky += int(ask(made, dice))
		expect(lucky >= row[1] and lucky <= row[2], "%s%% came true %d times in 1000" % [row[0], lucky])


func test_one_roll_holds_for_the_whole_visit() -> void:
	var dice := SCChanceCondition.new()
	dice.once_per_visit = true
	var made := start(machine([
		state("Rolling", [watch(dice, {"only_when_it_changes": false, "true_event": &"", "false_event": &"", "store_in": &"lucky"})], {"again": "Rolling"}),
	], {"variables": {&"lucky": false}}))
	var rolls := [0, 0]
	for visit in 60:
		await frames(2)
		var first: bool = made.get_value(&"lucky")
		rolls[int(first)] += 1
		for i in 4:
			await frames(1)
			expect_equal(made.get_value(&"lucky"), first, "visit %d" % visit)
		made.restart_state(made.current_state)
	expect(rolls[0] > 10 and rolls[1] > 10, "every visit rolled the same: %s" % [rolls])


func test_a_guard_looks_whether_the_door_is_open() -> void:
	var door := body("Door")
	var door_machine := start(machine([
		state("Closed", [], {"open": "Open"}),
		state("Open", [], {}, {"sub_states": [state("Wide"), state("A Crack")], "parallel": {&"Light": [state("Lit")], &"Sound": [state("Creaking")]}}),
	], {"under": door, "name": "Machine"}))
	var guard := asker(body("Guard"))
	var open := kind(SCInStateCondition, {"state_name": &"Open", "machine_path": ^"../../Door"}) as SCInStateCondition
	expect(not ask(guard, open))
	door_machine.send_event(&"open")
	expect(ask(guard, open))
	for part: StringName in door_machine.active_states().map(func(at: SCMachineState) -> StringName: return at.state_name):
		open.state_name = part
		expect(ask(guard, open), "the door is in %s" % part)
	open.machine_path = ^"../../Door/Machine"
	expect(ask(guard, open))
	open.state_name = &"Closed"
	expect(not ask(guard, open))
	open.invert = true
	expect(ask(guard, open))
	open.invert = false
	door_machine.stop()
	expect(not ask(guard, open))


func test_a_machine_asks_about_itself() -> void:
	var made := start(machine([state("Here", [act("here")], {"go": "There"}), state("There", [act("there")])]))
	var here := kind(SCInStateCondition, {"state_name": &"Here"})
	expect(ask(made, here))
	made.send_event(&"go")
	expect(not ask(made, here))


func test_asking_for_a_state_that_cannot_be_is_told_once() -> void:
	var guard := asker(body("Guard"), {"name": "Guard's Machine"})
	body("Stone")
	var wrong := SCInStateCondition.new()
	for i in 3:
		expect(not ask(guard, wrong))
	expect_warning("no state is picked, so the answer is no. Type the state's name under State Name.")
	wrong.state_name = &"Flying"
	expect(not ask(guard, wrong))
	expect(not ask(guard, wrong))
	expect_warning("has no state called Flying, so the answer is no. Check the name under State Name.")
	wrong.machine_path = ^"../../Nobody"
	expect(not ask(guard, wrong))
	expect_warning("there is no node at Nobody")
	wrong.machine_path = ^"../../Stone"
	expect(not ask(guard, wrong))
	expect_warning("Stone has no Machine, so the answer is no.")


func test_the_work_inside_is_done() -> void:
	var made := start(machine([
		state("Cooking", [watch(SCSubStateFinishedCondition.new())], {"yes": "Served"}, {"sub_states": [
			state("Boil", [wait(0.2)], {"FINISHED": "Salt"}),
			state("Salt", [wait(0.2)], {}, {"end": true}),
		]}),
		state("Served"),
	]))
	await advance(0.3)
	expect_states(made, ["Cooking", "Salt"])
	await advance(0.2)
	expect_state(made, "Served")


func test_the_own_work_may_have_to_be_done_too() -> void:
	var done := SCSubStateFinishedCondition.new()
	done.require_own_actions = true
	var made := start(machine([
		state("Cooking", [wait(0.5), watch(done)], {"yes": "Served"}, {"sub_states": [state("Boil", [wait(0.1)], {}, {"end": true})]}),
		state("Served"),
	]))
	await advance(0.4)
	expect_states(made, ["Cooking", "Boil"])
	await advance(0.2)
	expect_state(made, "Served")


func test_a_state_without_sub_states_has_no_work_inside() -> void:
	var made := asker(stage)
	expect(not ask(made, SCSubStateFinishedCondition.new()))
	expect_warning("Asking has no sub-states, so there is no work inside it to finish and the answer is no.")


func test_time_passes_in_a_state() -> void:
	var late := kind(SCTimeoutCondition, {"seconds": 0.5})
	var made := start(machine([
		state("Waiting", [watch(late)], {"yes": "Late", "again": "Waiting"}),
		state("Late"),
	]))
	await advance(0.4)
	expect_state(made, "Waiting")
	made.restart_state(made.current_state)
	await advance(0.4)
	expect_state(made, "Waiting")
	await advance(0.15)
	expect_state(made, "Late")


func test_half_a_second_is_thirty_frames() -> void:
	var made := asker(stage)
	var late := kind(SCTimeoutCondition, {"seconds": 0.5})
	await frames(29)
	expect(not ask(made, late))
	await frames(2)
	expect(ask(made, late))
	expect(ask(made, kind(SCTimeoutCondition, {"seconds": 0.0})))


func test_the_extra_time_is_picked_once_a_visit() -> void:
	var late := kind(SCTimeoutCondition, {"seconds": 0.1, "random_extra": 0.4})
	var lengths: Array[int] = []
	var made := start(machine([state("Waiting", [watch(late)], {"yes": "Late"}), state("Late", [], {"back": "Waiting"})]))
	for visit in 12:
		var count := 0
		while current(made) == &"Waiting" and count < 60:
			await frames(1)
			count += 1
		expect(count >= 5 and count <= 32, "took %d frames" % count)
		lengths.append(count)
		made.send_event(&"back")
	expect(lengths.max() - lengths.min() > 6, "always as long: %s" % [lengths])


func test_the_time_comes_from_a_variable() -> void:
	var late := SCTimeoutCondition.new()
	late.set("seconds_variable", &"patience")
	var made := start(machine([state("Waiting", [watch(late)], {"yes": "Late"}), state("Late")], {"variables": {&"patience": 0.2}}))
	await advance(0.3)
	expect_state(made, "Late")
	expect_equal(late.shown_summary(), "[patience] s have passed")


func test_a_change_is_seen_once() -> void:
	var made := asker(stage, {"variables": {&"score": 0, &"bag": [], &"target": null, &"name": "Ann"}})
	for row: Array in [[&"score", 1], [&"score", 1000000], [&"score", 1000001], [&"name", "Bob"], [&"bag", ["key"]]]:
		var changed := kind(SCVariableChangedCondition, {"variable_name": row[0]})
		var memory := {}
		expect(not ask(made, changed, memory), "%s, first asked" % [row])
		expect(not ask(made, changed, memory), "%s, untouched" % [row])
		made.set_value(row[0], row[1])
		expect(ask(made, changed, memory), "%s, written" % [row])
		expect(not ask(made, changed, memory), "%s, asked again" % [row])
		made.set_value(row[0], row[1])
		expect(not ask(made, changed, memory), "%s, written the same" % [row])


func test_a_list_that_grows_has_changed() -> void:
	var made := asker(stage, {"variables": {&"bag": []}})
	var changed := kind(SCVariableChangedCondition, {"variable_name": &"bag"})
	var memory := {}
	expect(not ask(made, changed, memory))
	(made.get_value(&"bag") as Array).append("key")
	expect(ask(made, changed, memory))
	expect(not ask(made, changed, memory))


func test_a_target_that_is_replaced_or_freed_has_changed() -> void:
	var first := body("First")
	var made := asker(stage, {"variables": {&"target": null}})
	var changed := kind(SCVariableChangedCondition, {"variable_name": &"target"})
	var memory := {}
	expect(not ask(made, changed, memory))
	made.set_value(&"target", first)
	expect(ask(made, changed, memory))
	made.set_value(&"target", body("Second"))
	expect(ask(made, changed, memory))
	expect(not ask(made, changed, memory))
	(made.get_value(&"target") as Node).free()
	expect(ask(made, changed, memory))
	expect(not ask(made, changed, memory))


func test_only_changes_during_the_visit_count() -> void:
	var changed := kind(SCVariableChangedCondition, {"variable_name": &"score"})
	var made := start(machine([
		state("Elsewhere", [], {"watch": "Watching"}),
		state("Watching", [watch(changed)], {"yes": "Seen", "leave": "Elsewhere"}),
		state("Seen"),
	], {"variables": {&"score": 0}}))
	made.send_event(&"watch")
	await frames(2)
	made.send_event(&"leave")
	made.set_value(&"score", 5)
	made.send_event(&"watch")
	await frames(3)
	expect_state(made, "Watching")
	made.set_value(&"score", 6)
	await frames(2)
	expect_state(made, "Seen")


func test_watching_no_variable_is_told() -> void:
	var made := asker(stage)
	var changed := SCVariableChangedCondition.new()
	expect(not ask(made, changed))
	expect_warning("no variable is picked, so the answer is no. Pick one under Variable Name.")
	changed.variable_name = &"lives"
	expect(not ask(made, changed))
	expect(not ask(made, changed))
	expect_warning("Variable Changed on Machine: there is no variable called lives, so the answer is no.")


func test_the_lines_read_like_sentences() -> void:
	expect_line(kind(SCChanceCondition), "50% of the time")
	expect_line(kind(SCChanceCondition, {"chance": 12.5, "once_per_visit": true}), "12.5% of the time, one roll a visit")
	expect_line(kind(SCInStateCondition, {"state_name": &"Open"}), "this machine is in Open")
	expect_line(kind(SCInStateCondition, {"machine_path": ^"../../Door"}), "Door is in (pick one)")
	expect_line(kind(SCSubStateFinishedCondition), "the sub-states are done")
	expect_line(kind(SCSubStateFinishedCondition, {"require_own_actions": true}), "the sub-states and the state's own actions are done")
	expect_line(kind(SCTimeoutCondition, {"seconds": 2.0}), "2 s have passed")
	expect_line(kind(SCTimeoutCondition, {"seconds": 2.0, "random_extra": 1.5}), "2 to 3.5 s have passed")
	expect_line(kind(SCVariableChangedCondition, {"variable_name": &"score", "invert": true}), "Not: score has changed")
	expect_line(kind(SCVariableChangedCondition), "(pick one) has changed")
