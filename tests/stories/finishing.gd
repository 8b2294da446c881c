extends Story
## When a state is done, who hears of it, and how an action is finished from elsewhere.


func test_an_empty_state_passes_straight_through() -> void:
	var made := start(machine([state("A", [], {"FINISHED": "B"}), state("B", [], {"FINISHED": "C"}), state("C", [act("c")], {"FINISHED": "A"})]))
	await expect_later(made, 0.05, "C")
	expect_log(["c enter"])


func test_a_guard_gives_up_after_a_while() -> void:
	var guard := play(wait(0.5), {"FINISHED": "Leave"})
	await expect_later(guard, 0.4, "Work")
	await expect_later(guard, 0.2, "Leave")


func test_when_a_state_with_states_inside_is_done() -> void:
	var end := {"end": true}
	var rows: Array[Array] = [
		# what is inside, the state's own actions, its states after 0.15 s and 0.3 s, who has said by then that it is done
		[{"sub_states": [state("Fetch", [wait(0.1)], {"FINISHED": "Carry"}), state("Carry", [wait(0.1)], {}, end)]}, [act("own").done()],
			["Chore", "Carry"], ["Rest"], ["Fetch", "Carry", "Chore"]],
		[{"sub_states": [state("Fetch", [wait(0.1)])]}, [], ["Chore", "Fetch"], ["Chore", "Fetch"], ["Fetch"]],
		[{"sub_states": [state("Only", [wait(0.1)], {}, end)]}, [wait(0.2)], ["Chore", "Only"], ["Rest"], ["Only", "Chore"]],
		[{"parallel": {"Quick": [state("Q", [wait(0.1)], {}, end)], "Slow": [state("S1", [wait(0.2)], {"FINISHED": "S2"}), state("S2", [], {}, end)]}}, [],
			["Chore", "Q", "S1"], ["Rest"], ["Q", "S1", "S2", "Chore"]],
		# A region without a start is never done.
		[{"parallel": {"Quick": [state("Q", [], {}, end)], "Empty": []}}, [], ["Chore", "Q"], ["Chore", "Q"], ["Q"]],
	]
	for row in rows:
		var done: Array[String] = []
		var made := machine([state("Chore", row[1], {"FINISHED": "Rest"}, row[0]), state("Rest", [act("rest")])])
		made.state_finished.connect(func(of: SCMachineState) -> void: done.append(of.state_name))
		start(made)
		await advance(0.15)
		expect_states(made, row[2])
		expect(not made.sub_state_finished(), "asked from outside it is the innermost state that counts")
		await advance(0.15)
		expect_states(made, row[3])
		expect_equal(done, row[4])
		made.free()
	noted.clear()


func test_a_state_says_once_that_it_is_done() -> void:
	var done := [0]
	var made := doing([act("a").done(), wait(0.1)], {"again": "Work"})
	made.state_finished.connect(func(_of: SCMachineState) -> void: done[0] += 1)
	start(made)
	for times: int in [1, 2]:
		await advance(0.5)
		expect_equal(done[0], times)
		made.send_event("again")


func test_finished_from_outside_reaches_the_innermost_states_only() -> void:
	var made := start(machine([
		state("Outer", [act("outer")], {"FINISHED": "Wrong"}, {"parallel": {
			"A": [state("A1", [act("a")], {"FINISHED": "A2"}), state("A2", [act("a2")])],
			"B": [state("B1", [act("b")], {"FINISHED": "B2"}), state("B2", [act("b2")])],
		}}),
		state("Wrong"),
	]))
	expect_after(made, "FINISHED", ["Outer", "A2", "B2"])


func test_a_signal_can_finish_an_action() -> void:
	var door := body("Door")
	var opened: Array[Callable] = []
	var made := play([act("open").entering(func(m: SCMachine, index: int) -> void: opened.append(m.finisher(index))), act("next").then()], {}, {"under": door})
	door.renamed.connect(opened[0])
	expect_log(["open enter"])
	door.name = "OpenDoor"
	expect_log(["next enter"])
	expect(made.is_finished(0))
	door.name = "Door"
	expect_log([])


func test_a_late_finish_never_touches_what_came_after() -> void:
	var finishers: Array[Callable] = []
	var keep := func(m: SCMachine, index: int) -> void: finishers.append(m.finisher(index))
	var made := start(machine([
		state("A", [act("a").entering(keep)], {"FINISHED": "Wrong", "away": "B"}),
		state("B", [act("b").entering(keep)], {"FINISHED": "Wrong", "back": "A"}),
		state("Wrong"),
	]))
	made.send_event("away")
	finishers[0].call()
	expect_state(made, "B")
	made.send_event("back")
	finishers[0].call()
	finishers[1].call()
	expect_state(made, "A")
	made.stop()
	finishers[2].call()
	start(made)
	finishers[2].call()
	expect_state(made, "A")
	finishers[3].call()
	expect_state(made, "Wrong")
	made.free()
	finishers[0].call()


func test_finish_from_outside_takes_the_outermost_action_of_that_place() -> void:
	var made := start(machine([
		state("Outer", [act("outer"), act("after outer").then()], {}, {"sub_states": [state("Inner", [act("inner"), act("after inner").then()])]}),
	]))
	noted.clear()
	for row: Array in [[0, ["after outer enter"]], [0, ["after inner enter"]], [0, []], [2, []], [-1, []]]:
		made.finish(row[0])
		expect_log(row[1])


func test_what_is_done_can_be_asked() -> void:
	var answers: Array[bool] = []
	var made := start(machine([
		state("Work", [
			act("a").done(),
			act("ask").done().entering(func(m: SCMachine, index: int) -> void:
				answers.assign([m.actions_done(), m.actions_done_except(index), m.is_finished(0), m.is_finished(index), m.is_finished(2), m.is_finished(-1)])),
		], {"next": "Empty"}),
		state("Empty"),
	]))
	expect_equal(answers, [false, true, true, false, false, false])
	made.send_event("next")
	expect(made.actions_done())
	expect(not made.is_finished(0))
