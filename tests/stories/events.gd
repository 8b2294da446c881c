extends Story
## Who hears an event, what it carries, and which transition it takes.


func test_an_inner_state_hears_an_event_before_the_one_around_it() -> void:
	var made := start(machine([
		state("Outer", [act("outer")], {"hit": "Down", "call": "Away"}, {"sub_states": [
			state("Inner", [act("inner")], {"hit": "Hurt"}),
			state("Hurt", [act("hurt")]),
		]}),
		state("Down"),
		state("Away"),
	]))
	expect_after(made, "hit", ["Outer", "Hurt"])
	expect_after(made, "hit", ["Down"])
	made.go_to("Inner")
	expect_after(made, "call", ["Away"])
	made.send_event("nobody knows this")
	expect_after(made, "", ["Away"])


func test_the_first_transition_that_leads_anywhere_is_taken() -> void:
	var made := start(machine([state("A", [], [transition("go", "Nowhere"), transition("go", ""), transition("go", "B"), transition("go", "C")]), state("B"), state("C")]))
	expect_after(made, "go", "B")


func test_every_event_is_told_even_to_a_machine_that_stands_still() -> void:
	var told: Array[String] = []
	var made := machine([state("A", [], {"go": "B"}), state("B")], {"autostart": false})
	made.event_sent.connect(func(event: StringName, data: Variant) -> void: told.append("%s %s" % [event, data]))
	stage.add_child(made)
	made.send_event("go", 3)
	made.send_event("")
	expect_equal(told, ["go 3"])
	expect_states(made, [])
	made.start()
	made.send_event("nothing listens")
	made.send_event("go", [1, 2])
	expect_equal(told, ["go 3", "nothing listens <null>", "go [1, 2]"])
	expect_state(made, "B")


func test_an_event_leaves_what_it_carried() -> void:
	var made := start(machine([state("A", [], {"pay": "B"}), state("B", [], {"back": "A"})]))
	made.send_event("pay", 12)
	expect_equal(made.last_event(), &"pay")
	expect_equal(made.event_data("pay"), 12)
	expect_equal(made.event_data("other"), null)
	expect_equal(made.last_event_data(), 12)
	made.send_event("nobody knows this", 99)
	expect_equal(made.last_event_data(), 12)
	made.go_to("A")
	expect_equal(made.last_event_data(), null)
	expect_equal(made._core_last_event_name(), &"")


func test_what_is_carried_is_stored_as_the_variable_s_kind() -> void:
	for row: Array in [
		# starts as, carried, held then
		[5, 3.9, 3], [5, -3.9, -3], [5, "text", 5], [5, true, 5], [5, null, 5],
		[1.5, 2, 2.0], [1.5, true, 1.0], [1.5, "text", 1.5],
		["text", &"name", "name"], [&"name", "text", &"text"], ["text", 4, "text"],
		[Vector2(1, 1), Vector2(2, 3), Vector2(2, 3)], [Vector2(1, 1), 4, Vector2(1, 1)],
		[[1], [2, 3], [2, 3]], [true, false, false], [true, 1, true], [null, stage, stage],
	]:
		var made := start(machine([state("A", [], [transition("give", "B", "held"), transition("limited", "B", "hp"), transition("fresh", "B", "fresh")]), state("B", [], {"back": "A"})], {
			"variables": [variable("held", row[0]), variable("hp", 5, {"never_below": "0", "never_above": "8"})],
		}))
		expect_after(made, "give", "B", row[1])
		expect_equal(made.get_value("held"), row[2], "%s given %s" % [row[0], row[1]])
		made.send_event("back")
		expect_after(made, "fresh", "B", row[1])
		expect_values(made, {"fresh": row[1], "hp": 5})
		made.send_event("back")
		expect_after(made, "limited", "B", 100.0)
		expect_values(made, {"hp": 8})
		made.free()


func test_who_sent_an_event_can_be_asked() -> void:
	var door := body("Door")
	var guard := start(machine([state("A", [], {"knock": "B"}), state("B", [], {"unknown": "A"})], {"under": door, "name": "Guard"}))
	var visitor := start(machine([
		state("Wait", [], {"come": "Knock"}),
		state("Knock", [send("knock", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Door")})]),
	], {"name": "Visitor"}))
	visitor.send_event("come")
	expect_state(guard, "B")
	expect_equal(guard.last_event_sender(), visitor)
	expect_equal(SCMachine.sender_of("knock"), visitor)
	guard.send_event("unknown")
	expect_equal(guard.last_event_sender(), null)
	SCMachine.note_sender("", visitor)
	SCMachine.note_sender("knock", null)
	visitor.free()
	expect_equal(SCMachine.sender_of("knock"), null)


func test_the_machines_that_listen_hear_a_broadcast() -> void:
	var listener := play([], {"alarm": "B"}, {"name": "Listener"})
	var other := play([], {"quiet": "B"}, {"name": "Other"})
	var deep := start(machine([state("A", [], {}, {"sub_states": [state("A1", [], {"alarm": "B"})]}), state("B")], {"name": "Deep"}))
	for event: String in ["alarm", "nobody knows this", ""]:
		SCMachine.broadcast_everywhere(event, 1)
	for row: Array in [[listener, "B"], [deep, "B"], [other, "Work"]]:
		expect_state(row[0], row[1])
	expect_events(other, [])
	listener.start()
	for wanted: String in ["Work", "B"]:
		if wanted == "Work":
			stage.remove_child(listener)
		SCMachine.broadcast_everywhere("alarm")
		if wanted == "Work":
			stage.add_child(listener)
		expect_state(listener, wanted)


func test_a_global_event_is_heard_everywhere_while_its_machine_is_there() -> void:
	var bell := start(running(template([state("Quiet", [], {"ring": "Loud"}), state("Loud")], {
		"events": [declared_event("alarm", {"is_global": true}), declared_event("ring")],
	}), {"name": "Bell"}))
	var guard := play([], {"alarm": "Wake"}, {"name": "Guard"})
	expect(bell.is_global_event("alarm") and not bell.is_global_event("ring"))
	for row: Array in [[bell.send_event.bind("alarm"), "Wake"], [bell.send_event.bind("ring"), "Work"], [bell.broadcast_event.bind("no such group", "alarm"), "Wake"]]:
		guard.start()
		(row[0] as Callable).call()
		expect_state(guard, row[1])
	bell.free()
	expect(not guard.is_global_event("alarm"))
	guard.start()
	events_of(guard).clear()
	expect_after(guard, "alarm", "Wake")
	expect_events(guard, ["alarm"])


func test_a_group_hears_through_its_nodes() -> void:
	var named := body("Named")
	var plain := body("Plain")
	plain.add_child(Node.new())
	var itself := play([], {"wake": "B"}, {"name": "Itself"})
	for one: Node in [itself, named, plain, body("No Machine")]:
		one.add_to_group("guards")
	var rows: Dictionary[SCMachine, String] = {
		itself: "B",
		play([], {"wake": "B"}, {"name": "First", "under": named}): "Work",
		play([], {"wake": "B"}, {"name": "Machine", "under": named}): "B",
		play([], {"wake": "B"}, {"name": "Only", "under": plain}): "B",
		play([], {"wake": "B"}, {"name": "Outside"}): "Work",
	}
	itself.broadcast_event("guards", "wake", 1)
	itself.broadcast_event("guards", "")
	for made in rows:
		expect_state(made, rows[made])
		expect_events(made, ["wake"] if rows[made] == "B" else [])


func test_a_forwarder_may_keep_an_event_for_itself() -> void:
	var passed: Array[String] = []
	var deaf := func(event: StringName, data: Variant) -> bool:
		passed.append("deaf %s %s" % [event, data])
		return false
	var greedy := func(event: StringName, _data: Variant) -> bool:
		passed.append("greedy %s" % event)
		return event == &"keep"
	var made := start(machine([state("A", [act("a").done()], {"keep": "B", "pass": "B"}), state("B", [], {"FINISHED": "C"}), state("C")]))
	made.add_forwarder(greedy)
	made.add_forwarder(deaf)
	expect_after(made, "keep", "A", 1)
	expect_equal(passed, ["greedy keep", "deaf keep 1"])
	expect_after(made, "pass", "C")
	made.go_to("A")
	made.remove_forwarder(greedy)
	made.remove_forwarder(greedy)
	expect_after(made, "keep", "C")
	made.remove_forwarder(deaf)


func test_a_forwarder_that_takes_itself_away_or_is_gone() -> void:
	var made := play([], {"go": "B"})
	var calls := [0]
	var once: Array[Callable] = []
	once.append(func(_event: StringName, _data: Variant) -> bool:
		calls[0] += 1
		made.remove_forwarder(once[0])
		return true)
	made.add_forwarder(once[0])
	expect_after(made, "go", "Work")
	expect_after(made, "go", "B")
	expect_equal(calls[0], 1)
	once.clear()


func test_an_event_in_the_physics_step_waits_for_its_end() -> void:
	var made := start(machine([state("A", [], {"go": "B"}), state("B", [], {"go": "A"})]))
	await physics_frames(1)
	made.send_event_from_signal("go")
	expect_state(made, "A")
	await frames(1)
	expect_state(made, "B")
	made.send_event_from_signal("go")
	expect_state(made, "A")


func test_events_are_held_while_paused_and_told_in_order() -> void:
	var made := start(machine([state("A", [], {"one": "B"}), state("B", [], {"two": "C"}), state("C", [], {"three": "D"}), state("D")]))
	made.set_paused(true)
	made.send_event("one")
	made.send_event("two")
	expect_events(made, ["one", "two"])
	await expect_later(made, 0.05, "A")
	made.set_paused(false)
	expect_state(made, "C")
	expect_events(made, [])
	made.set_paused(true)
	made.send_event("three")
	made.stop()
	made.start()
	made.set_paused(false)
	expect_state(made, "A")


func test_a_paused_machine_runs_nothing_until_it_is_stepped() -> void:
	var work := act("work").ticking()
	var made := start(machine([state("Work", [work, wait(0.1)], {"go": "Next"}), state("Next", [act("next").ticking()])]))
	made.set_paused(true)
	expect(made.is_paused() and not made.is_processing())
	await frames(30)
	expect_equal(work.deltas.size(), 0)
	made.step_once()
	expect_equal(work.deltas.size(), 1)
	expect_near(work.deltas[0], 1.0 / Engine.physics_ticks_per_second)
	expect_near(made.state_time(), 1.0 / Engine.physics_ticks_per_second)
	expect(made.is_paused())
	for i in 7:
		made.step_once()
	expect(made.is_finished(1), "a step does not move the wait on")
	made.send_event("go")
	noted.clear()
	made.step_once()
	expect_log(["work exit", "next enter", "next update"])
	made.set_paused(false)
	await frames(2)
	expect_log(["next update", "next update"])


func test_one_press_is_used_once() -> void:
	var used: Array[bool] = []
	var press := func(m: SCMachine) -> void:
		used.append(m.press_already_used("jump"))
		m.use_press("jump")
	var made := play(act("press").entering(press), {"go": "Work"})
	made.restart_state(made.current_state)
	expect_equal(used, [false, true])
	await frames(1)
	made.restart_state(made.current_state)
	expect_equal(used, [false, true, false])


func test_an_action_s_own_finished_goes_to_its_own_state() -> void:
	var made := start(machine([
		state("Outer", [], {"FINISHED": "Wrong"}, {"parallel": {
			"A": [state("A1", [act("a").ticking().updating(func(m: SCMachine) -> void: m.send_event("FINISHED"))], {"FINISHED": "A2"}), state("A2", [act("a2")])],
			"B": [state("B1", [act("b")], {"FINISHED": "B2"}), state("B2", [act("b2")])],
		}}),
		state("Wrong"),
	]))
	await frames(2)
	expect_states(made, ["Outer", "A2", "B1"])


func test_quest_events_go_on_as_any_other() -> void:
	SCMachine.set_quest_events([&"found_key"])
	expect_after(play([], {"found_key": "B"}), "found_key", "B")


func test_events_and_moves_are_printed_when_asked_for() -> void:
	var made := play([], {"open": "Open"}, {"under": body("Door"), "debug_log": true})
	made.send_event("open")
	for line: String in ["starts in Work", "event open", "Work -> Open"]:
		expect_printed("[Machine] Door: " + line)
	made.debug_log = false
	made.go_to("Work")
	expect_not_printed("[Machine] Door: Open -> Work")
