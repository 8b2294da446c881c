extends Story
## A state that begins anew, and what survives it.


func test_a_restart_keeps_only_what_an_action_checked_last() -> void:
	var seen: Array[Dictionary] = []
	var remember := func(m: SCMachine, index: int) -> void:
		seen.append(m.slot(index).duplicate())
		m.slot(index).merge({"check_last": true, "steps": 3})
	var made := start(machine([state("Work", [act("work").entering(remember)]), state("Rest")], {"variables": {"score": 0}}))
	made.set_value("score", 7)
	made.restart_state(made.current_state)
	expect_log(["work enter", "work exit", "work enter"])
	expect_equal(made.get_value("score"), 7)
	made.go_to("Rest")
	made.go_to("Work")
	expect_equal(seen, [{}, {"check_last": true}, {}])


func test_a_restart_begins_its_time_anew() -> void:
	var made := start(machine([state("Wait", [wait(0.5)], {"FINISHED": "Over"}), state("Over")]))
	await advance(0.3)
	made.restart_state(made.current_state)
	expect_near(made.state_time(), 0.0)
	await expect_later(made, 0.3, "Wait")
	await expect_later(made, 0.3, "Over")


func test_a_parent_restarts_with_all_that_is_in_it() -> void:
	var made := start(machine([
		state("Outer", [act("outer")], {}, {"parallel": {
			"A": [state("A1", [act("a1")]), state("A2", [act("a2")])],
			"B": [state("B1", [act("b1")])],
		}}),
		state("Beside", [act("beside")]),
	]))
	made.go_to("A2")
	noted.clear()
	made.restart_state(made.find_state("Outer"))
	expect_log(["a2 exit", "b1 exit", "outer exit", "outer enter", "a1 enter", "b1 enter"])
	made.restart_state(made.find_state("B1"))
	expect_log(["b1 exit", "b1 enter"])
	expect_states(made, ["Outer", "A1", "B1"])
	# One that it is not in is gone to.
	made.restart_state(made.find_state("Beside"))
	expect_log(["a1 exit", "b1 exit", "outer exit", "beside enter"])
	made.restart_state(null)
	expect_state(made, "Beside")
	made.stop()
	noted.clear()
	made.restart_state(made.find_state("Beside"))
	expect_log([])


func test_a_transition_to_its_own_state_restarts_it_and_keeps_the_event() -> void:
	var events: Array[StringName] = []
	var made := start(machine([
		state("Hurt", [act("hurt").entering(func(m: SCMachine) -> void: events.append(m.last_event()))], {"hit": "Hurt"}),
	]))
	made.send_event("hit", 12)
	expect_log(["hurt enter", "hurt exit", "hurt enter"])
	expect_equal(events, [&"", &"hit"])
	expect_equal(made.event_data("hit"), 12)
	expect_equal(made.last_event(), &"hit")


func test_what_a_check_last_answered_outlives_the_restart_whatever_it_is() -> void:
	for answer: Variant in [null, true, "text"]:
		var found: Array = []
		var keep := act("keep")
		keep.entering(func(m: SCMachine) -> void: found.append(m.slot(0).duplicate()))
		keep.exiting(func(m: SCMachine) -> void: m.slot(0).clear())
		var made := start(machine([state("A", [keep])]))
		made.slot(0).merge({&"check_last": answer, &"other": 1})
		made.restart_state(made.current_state)
		expect_equal(found, [{}, {&"check_last": answer}])
		made.free()
