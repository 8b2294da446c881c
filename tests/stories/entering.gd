extends Story
## Which states a machine goes through, and in what order their actions hear of it.


func test_a_lift_is_entered_from_the_outside_in_and_left_from_the_inside_out() -> void:
	var lift := start(machine([
		state("Lift", [act("lift")], {}, {"sub_states": [
			state("Going", [act("going")], {"arrived": "Stopped"}, {"sub_states": [
				state("Up", [act("up")], {"turn": "Down"}),
				state("Down", [act("down")]),
			]}),
			state("Stopped", [act("stopped")]),
		]}),
	]))
	expect_log(["lift enter", "going enter", "up enter"])
	expect_states(lift, ["Lift", "Going", "Up"])
	lift.send_event("turn")
	expect_log(["up exit", "down enter"])
	lift.send_event("arrived")
	expect_log(["down exit", "going exit", "stopped enter"])
	expect_states(lift, ["Lift", "Stopped"])
	lift.stop()
	expect_log(["stopped exit", "lift exit"])
	expect_states(lift, [])
	expect(not lift.is_running())


func test_every_region_of_a_parallel_state_runs_in_turn() -> void:
	var lamp := start(machine([
		state("Lamp", [act("lamp").ticking()], {"break": "Broken"}, {"parallel": {
			"Light": [state("Bright", [act("bright").ticking()], {"dim": "Dim"}), state("Dim", [act("dim").ticking()])],
			"Swing": [state("Left", [act("left").ticking()])],
		}}),
		state("Broken", [act("broken")]),
	]))
	expect_log(["lamp enter", "bright enter", "left enter"])
	expect_states(lamp, ["Lamp", "Bright", "Left"])
	await frames(1)
	expect_log(["lamp update", "bright update", "left update"])
	lamp.send_event("dim")
	expect_log(["bright exit", "dim enter"])
	await frames(1)
	expect_log(["lamp update", "dim update", "left update"])
	lamp.send_event("break")
	expect_log(["dim exit", "left exit", "lamp exit", "broken enter"])
	await frames(2)
	expect_log([])


func test_going_straight_to_a_deep_state_starts_the_other_regions_where_they_start() -> void:
	var robot := start(machine([
		state("Idle", [act("idle")]),
		state("Work", [act("work")], {}, {"parallel": {
			"Arm": [state("Rest", [act("rest")]), state("Swing", [act("swing")])],
			"Eyes": [
				state("Shut", [act("shut")]),
				state("Open", [act("open")], {}, {"sub_states": [state("Left", [act("left")]), state("Right", [act("right")])]}),
			],
		}}),
	]))
	noted.clear()
	expect(robot.go_to("Right"))
	expect_log(["idle exit", "work enter", "rest enter", "open enter", "right enter"])
	expect_states(robot, ["Work", "Rest", "Open", "Right"])
	expect(robot.go_to("Swing"))
	expect_log(["rest exit", "swing enter"])
	expect(robot.go_to("Shut"))
	expect_log(["right exit", "open exit", "shut enter"])
	expect_states(robot, ["Work", "Swing", "Shut"])
	expect_equal(robot.active_chain().map(func(at: SCMachineState) -> StringName: return at.state_name), [&"Work", &"Swing"])


func test_going_where_it_already_is_or_nowhere_changes_nothing() -> void:
	var lift := start(machine([state("Lift", [act("lift")], {}, {"sub_states": [state("Up", [act("up")]), state("Down", [act("down")])]})]))
	noted.clear()
	expect(not lift.go_to("Sideways"), "an unknown name is answered")
	expect(lift.go_to("Lift"))
	expect(lift.go_to("Up"))
	lift.go_to_state(null)
	expect_log([])
	expect_states(lift, ["Lift", "Up"])
	lift.stop()
	noted.clear()
	lift.go_to_state(lift.find_state("Up"))
	expect_log([])
	expect_states(lift, [])


func test_a_start_that_is_named_is_taken_and_one_that_is_elsewhere_is_not() -> void:
	var elsewhere := state("Elsewhere")
	var lost := state("Lost", [], {}, {"sub_states": [state("North"), state("South")]})
	lost.start_sub_state = elsewhere
	var both := state("Both")
	both.parallel_states = [parallel("A", [state("A1"), state("A2")], "A2"), parallel("B", [state("B1"), state("B2")])]
	both.parallel_states[1].start_state = elsewhere
	var made := start(machine([state("Lift", [], {}, {"sub_states": [state("Up"), state("Down")], "start": "Down"}), lost, both]))
	for wanted: Array in [["Lift", "Down"], ["Lost", "North"], ["Both", "A2", "B1"]]:
		made.go_to(wanted[0])
		expect_states(made, wanted)


func test_actions_wait_for_the_one_above_when_told_to() -> void:
	play([act("first").then().done(), wait(0.1), act("after the wait").then().done(), act("at once"), act("after at once").then()])
	expect_log(["first enter", "at once enter"])
	await advance(0.2)
	expect_log(["after the wait enter"])


func test_a_chain_of_short_actions_runs_through_in_one_go() -> void:
	start(machine([
		state("Work", [wait(0.1), act("a").then().done(), act("b").then().done(), act("c").then().done()], {"FINISHED": "Rest"}),
		state("Rest", [act("d").done(), act("e").then().done(), act("f").then()]),
	]))
	await advance(0.2)
	expect_log(["a enter", "b enter", "c enter", "a exit", "b exit", "c exit", "d enter", "e enter", "f enter"])


func test_an_action_that_is_off_is_passed_over() -> void:
	var made := start(machine([
		state("Work", [wait(0.1), act("off").off(), act("after the wait").then().done()], {"FINISHED": "Off"}),
		state("Off", [act("off").off(), act("also off").then().off()], {"FINISHED": "Free"}),
		state("Free", [act("off").off(), act("free").then()]),
	]))
	expect_log([])
	await expect_later(made, 0.2, "Free")
	expect_log(["after the wait enter", "after the wait exit", "free enter"])


func test_an_action_that_waited_is_entered_on_its_own_tick() -> void:
	var where: Array[bool] = []
	play([wait(0.1), act("physics").then().on_the_physics_tick().entering(func() -> void: where.append(Engine.is_in_physics_frame()))])
	await advance(0.2)
	expect_log(["physics enter"])
	expect_equal(where, [true])


func test_an_action_that_never_began_gets_no_exit_and_one_that_is_done_does() -> void:
	var made := play([act("done").done(), act("busy"), act("waiting").then()])
	noted.clear()
	made.stop()
	expect_log(["done exit", "busy exit"])


func test_a_change_in_the_middle_of_a_frame_spares_what_is_gone_and_what_is_new() -> void:
	start(machine([
		state("Old", [act("old").ticking().updating(func(m: SCMachine) -> void: m.go_to("New")), act("late").ticking()], {}, {
			"sub_states": [state("Inner", [act("inner").ticking()])],
		}),
		state("New", [act("new").ticking()]),
	]))
	noted.clear()
	await frames(1)
	expect_log(["old update", "inner exit", "old exit", "late exit", "new enter"])
	await frames(1)
	expect_log(["new update"])


func test_what_a_state_remembers_of_how_it_was_reached() -> void:
	var remembered: Array[String] = []
	var remember := func(m: SCMachine) -> void: remembered.append("%s from %s by %s" % [m.running_state(), m.previous_state(), m.last_event()])
	var made := start(machine([
		state("A", [act("a").entering(remember)], {"go": "B"}),
		state("B", [act("b").entering(remember)], {"FINISHED": "C", "back": "A"}),
		state("C", [act("c").entering(remember)]),
	]))
	made.send_event("go")
	made.send_event("back")
	made.go_to("C")
	expect_equal(remembered, ["A from <Object#null> by ", "B from A by go", "A from B by back", "C from A by "])


func test_a_change_is_told_with_where_it_came_from_first() -> void:
	var changes: Array[String] = []
	var made := machine([
		state("Idle", [], {"work": "Work"}),
		state("Work", [], {}, {"parallel": {
			"Arm": [state("Rest", [], {"swing": "Swing"}), state("Swing")],
			"Eyes": [state("Shut", [], {"look": "Open"}), state("Open")],
		}}),
	])
	made.state_changed.connect(func(from: SCMachineState, to: SCMachineState) -> void: changes.append("%s > %s" % [from, to]))
	start(made)
	for event: String in ["work", "look", "swing"]:
		made.send_event(event)
	expect_equal(changes, ["<Object#null> > Idle", "Idle > Rest", "Shut > Open", "Rest > Swing"])


func test_a_state_that_gets_its_first_sub_states_while_the_game_runs() -> void:
	for of_template: bool in [false, true]:
		var house := state("House", [], {"out": "Street"})
		var all := [state("Street", [], {"in": "House"}), house]
		var made := start(running(template(all)) if of_template else machine(all))
		expect_after(made, "in", ["House"])
		made.send_event("out")
		house.sub_states = [state("Hall", [], {"up": "Attic"}), state("Attic")]
		expect_after(made, "in", ["House", "Hall"])
		made.start()
		expect_after(made, "in", ["House", "Hall"])
		expect_after(made, "up", ["House", "Attic"])
		house.sub_states = []
		made.send_event("out")
		expect_after(made, "in", ["House"])
		made.free()
