extends Story
## When a state is done, who hears of it, and how an action is finished from elsewhere.


func test_an_empty_state_passes_straight_through() -> void:
	var made := start(machine([
		state("A", [], {"FINISHED": "B"}),
		state("B", [], {"FINISHED": "C"}),
		state("C", [act("c")], {"FINISHED": "A"}),
	]))
	expect_state(made, "C")
	await frames(3)
	expect_log(["c enter"])


func test_a_guard_gives_up_after_a_while() -> void:
	var guard := start(machine([
		state("Look", [wait(0.5)], {"FINISHED": "Leave"}),
		state("Leave"),
	]))
	await advance(0.4)
	expect_state(guard, "Look")
	await advance(0.2)
	expect_state(guard, "Leave")


func test_a_chore_is_done_when_its_last_step_is() -> void:
	var done: Array[String] = []
	var made := machine([
		state("Chore", [act("chore").done()], {"FINISHED": "Rest"}, {"sub_states": [
			state("Fetch", [wait(0.1)], {"FINISHED": "Carry"}),
			state("Carry", [wait(0.1)], {}, {"end": true}),
		]}),
		state("Rest", [act("rest")]),
	])
	made.state_finished.connect(func(of: SCMachineState) -> void: done.append(of.state_name))
	start(made)
	await advance(0.15)
	expect_states(made, ["Chore", "Carry"])
	expect_equal(done, ["Fetch"])
	await advance(0.1)
	expect_states(made, ["Rest"])
	expect_equal(done, ["Fetch", "Carry", "Chore"])


func test_a_step_that_is_no_end_does_not_end_its_parent() -> void:
	var made := start(machine([
		state("Chore", [], {"FINISHED": "Rest"}, {"sub_states": [state("Fetch", [wait(0.1)])]}),
		state("Rest"),
	]))
	await advance(0.3)
	expect_states(made, ["Chore", "Fetch"])
	expect(not made.sub_state_finished())


func test_the_parent_s_own_work_counts_too() -> void:
	var made := start(machine([
		state("Chore", [wait(0.3)], {"FINISHED": "Rest"}, {"sub_states": [state("Only", [wait(0.1)], {}, {"end": true})]}),
		state("Rest"),
	]))
	await advance(0.2)
	expect_states(made, ["Chore", "Only"])
	await advance(0.2)
	expect_states(made, ["Rest"])


func test_a_parallel_state_is_done_when_every_region_is() -> void:
	var made := start(machine([
		state("Both", [], {"FINISHED": "Rest"}, {"parallel": {
			"Quick": [state("Q", [wait(0.1)], {}, {"end": true})],
			"Slow": [state("S1", [wait(0.2)], {"FINISHED": "S2"}), state("S2", [], {}, {"end": true})],
		}}),
		state("Rest"),
	]))
	await advance(0.15)
	expect_states(made, ["Both", "Q", "S1"])
	await advance(0.1)
	expect_states(made, ["Rest"])


func test_a_region_without_a_start_is_never_done() -> void:
	var made := start(machine([
		state("Both", [], {"FINISHED": "Rest"}, {"parallel": {
			"Quick": [state("Q", [], {}, {"end": true})],
			"Empty": [],
		}}),
		state("Rest"),
	]))
	await frames(2)
	expect_states(made, ["Both", "Q"])


func test_a_state_says_once_that_it_is_done() -> void:
	var done: Array[String] = []
	var made := machine([state("Work", [act("a").done(), wait(0.1)], {"again": "Work"})])
	made.state_finished.connect(func(of: SCMachineState) -> void: done.append(of.state_name))
	start(made)
	await advance(0.5)
	expect_equal(done.size(), 1)
	made.send_event("again")
	await advance(0.5)
	expect_equal(done.size(), 2)


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
	var made := machine([
		state("Open", [
			act("open").entering(func(m: SCMachine, index: int) -> void: opened.append(m.finisher(index))),
			act("next").then(),
		]),
	], {"under": door})
	start(made)
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
	var late := finishers[0]
	made.free()
	late.call()


func test_finish_from_outside_takes_the_outermost_action_of_that_place() -> void:
	var made := start(machine([
		state("Outer", [act("outer"), act("after outer").then()], {}, {"sub_states": [
			state("Inner", [act("inner"), act("after inner").then()]),
		]}),
	]))
	noted.clear()
	made.finish(0)
	expect_log(["after outer enter"])
	made.finish(0)
	expect_log(["after inner enter"])
	made.finish(0)
	made.finish(7)
	made.finish(-1)
	expect_log([])


func test_what_is_done_can_be_asked() -> void:
	var answers: Array[bool] = []
	var made := start(machine([
		state("Work", [
			act("a").done(),
			act("ask").done().entering(func(m: SCMachine, index: int) -> void:
				answers.append(m.actions_done())
				answers.append(m.actions_done_except(index))
				answers.append(m.is_finished(0))
				answers.append(m.is_finished(index))),
		], {"next": "Empty"}),
		state("Empty"),
	]))
	expect_equal(answers, [false, true, true, false])
	made.send_event("next")
	expect(made.actions_done())
	expect(not made.is_finished(3))
