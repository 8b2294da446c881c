extends Story
## A state that begins anew, and what survives it.


func test_a_restart_leaves_and_enters_again() -> void:
	var seen: Array[Dictionary] = []
	var remember := func(m: SCMachine, index: int) -> void:
		var slot := m.slot(index)
		seen.append(slot.duplicate())
		slot["check_last"] = true
		slot["steps"] = 3
	var made := start(machine([state("Work", [act("work").entering(remember)])], {"variables": {"score": 0}}))
	made.set_value("score", 7)
	noted.clear()
	made.restart_state(made.current_state)
	expect_log(["work exit", "work enter"])
	expect_equal(seen, [{}, {"check_last": true}])
	expect_equal(made.get_value("score"), 7)


func test_a_restart_begins_its_time_anew() -> void:
	var made := start(machine([state("Wait", [wait(0.5)], {"FINISHED": "Over"}), state("Over")]))
	await advance(0.3)
	made.restart_state(made.current_state)
	expect_near(made.state_time(), 0.0)
	await advance(0.3)
	expect_state(made, "Wait")
	await advance(0.3)
	expect_state(made, "Over")


func test_a_parent_restarts_with_all_that_is_in_it() -> void:
	var made := start(machine([
		state("Outer", [act("outer")], {}, {"parallel": {
			"A": [state("A1", [act("a1")]), state("A2", [act("a2")])],
			"B": [state("B1", [act("b1")])],
		}}),
	]))
	made.go_to("A2")
	noted.clear()
	made.restart_state(made.find_state("Outer"))
	expect_log(["a2 exit", "b1 exit", "outer exit", "outer enter", "a1 enter", "b1 enter"])
	made.restart_state(made.find_state("B1"))
	expect_log(["b1 exit", "b1 enter"])
	expect_states(made, ["Outer", "A1", "B1"])


func test_restarting_a_state_it_is_not_in_goes_there() -> void:
	var made := start(machine([state("A", [act("a")]), state("B", [act("b")])]))
	noted.clear()
	made.restart_state(made.find_state("B"))
	expect_log(["a exit", "b enter"])
	made.restart_state(null)
	made.stop()
	noted.clear()
	made.restart_state(made.find_state("A"))
	expect_log([])


func test_a_transition_to_its_own_state_restarts_it_and_keeps_the_event() -> void:
	var events: Array[StringName] = []
	var made := start(machine([
		state("Hurt", [act("hurt").entering(func(m: SCMachine) -> void: events.append(m.last_event()))], {"hit": "Hurt"}),
	]))
	noted.clear()
	made.send_event("hit", 12)
	expect_log(["hurt exit", "hurt enter"])
	expect_equal(events, [&"", &"hit"])
	expect_equal(made.event_data("hit"), 12)
	expect_equal(made.last_event(), &"hit")


func test_what_check_last_is_not_kept_by_leaving() -> void:
	var seen: Array[bool] = []
	var remember := func(m: SCMachine, index: int) -> void:
		seen.append(m.slot(index).has("check_last"))
		m.slot(index)["check_last"] = true
	var made := start(machine([state("A", [act("a").entering(remember)]), state("B")]))
	made.go_to("B")
	made.go_to("A")
	expect_equal(seen, [false, false])


func test_starting_again_begins_from_the_beginning() -> void:
	var made := start(machine([state("A", [act("a")], {"go": "B"}), state("B", [act("b")])], {"variables": {"score": 1}}))
	made.send_event("go")
	made.set_value("score", 9)
	noted.clear()
	made.start()
	expect_log(["b exit", "a enter"])
	expect_equal(made.get_value("score"), 1)
