extends Story
## When an action is updated, and when nothing of a machine is.


func test_an_action_is_updated_once_a_frame_or_once_a_physics_tick() -> void:
	var in_frame := act("frame").ticking()
	var in_physics := act("physics").ticking().on_the_physics_tick()
	var made := play([in_frame, in_physics])
	expect(made.is_processing() and made.is_physics_processing())
	await frames(5)
	expect_equal(in_frame.in_physics, [false, false, false, false, false] as Array[bool])
	expect(in_physics.deltas.size() >= 4 and in_physics.deltas.size() <= 6, "%d physics updates in 5 frames" % in_physics.deltas.size())
	expect(not in_physics.in_physics.has(false), "the physics action was updated in the frame")
	expect_near(in_frame.deltas[0], 1.0 / 60.0)


func test_a_machine_on_the_physics_tick_runs_everything_there() -> void:
	var work := act("work").ticking()
	var made := play(work, {}, {"physics_tick": true})
	for physics: bool in [true, false]:
		# Changing the setting moves the action at once.
		made.physics_tick = physics
		expect(made.is_processing() != physics and made.is_physics_processing() == physics)
		work.in_physics.clear()
		await frames(3)
		expect(not work.in_physics.is_empty() and not work.in_physics.has(not physics), "updated in %s" % [work.in_physics])


func test_a_machine_with_nothing_to_do_is_not_called() -> void:
	var work := act("work").ticking().updating(func(m: SCMachine, index: int) -> void: m.finish(index))
	var made := start(machine([state("Idle", [act("idle")], {"work": "Work"}), state("Wait", [wait(60.0)]), state("Work", [work], {"wait": "Wait"})]))
	expect(not made.is_processing() and not made.is_physics_processing(), "an action that asks for no updates keeps it awake")
	made.send_event("work")
	expect(made.is_processing(), "an action that ticks does not wake it")
	await frames(2)
	expect_equal(work.deltas.size(), 1)
	expect(not made.is_processing(), "an action that has finished keeps it awake")
	made.send_event("wait")
	expect(not made.is_processing() and not made.is_physics_processing(), "a wait keeps it awake")
	made.go_to("Work")
	made.stop()
	expect(not made.is_processing() and not made.is_physics_processing())


func test_some_actions_go_on_after_they_have_finished() -> void:
	var short := act("short").ticking().done()
	var on_and_on := act("on").ticking().done().working_on()
	var made := play([short, on_and_on], {})
	await frames(3)
	expect_equal(short.deltas.size(), 0)
	expect_equal(on_and_on.deltas.size(), 3)
	expect(made.is_finished(1))


func test_an_interval_hands_over_the_time_gathered() -> void:
	var slow := act("slow").every(0.04)
	var made := play(slow)
	await frames(12)
	expect_equal(slow.deltas.size(), 4)
	for delta in slow.deltas:
		expect_near(delta, 0.05)
	slow.update_interval = 0.0
	await frames(2)
	expect_equal(slow.deltas.size(), 6, "the interval is read as it runs")
	made.stop()


func test_a_long_list_of_actions_is_updated_in_order() -> void:
	play(range(40).map(func(i: int) -> Recorder: return act("%d" % i).ticking()))
	noted.clear()
	await frames(1)
	expect_log(range(40).map(func(i: int) -> String: return "%d update" % i))


func test_an_action_that_ends_the_machine_ends_the_pass_with_it() -> void:
	var made := play([act("first").ticking().updating(func(m: SCMachine) -> void: m.stop()), act("second").ticking()])
	noted.clear()
	await frames(2)
	expect_log(["first update", "first exit", "second exit"])
	expect(not made.is_running())


func test_actions_that_finish_in_an_update_let_the_next_begin_and_the_state_end() -> void:
	var finish := func(m: SCMachine, index: int) -> void: m.finish(index)
	var made := start(machine([
		state("Work", [
			act("first").ticking().updating(finish),
			act("second").ticking().then().updating(finish),
			act("third").ticking().then().done(),
		], {"FINISHED": "Rest"}),
		state("Rest", [act("rest").ticking()]),
	]))
	noted.clear()
	await frames(1)
	expect_log(["first update", "second enter"])
	await frames(1)
	expect_log(["second update", "third enter", "first exit", "second exit", "third exit", "rest enter"])
	expect_state(made, "Rest")


func test_a_paused_game_holds_what_may_be_paused() -> void:
	var held := act("held").ticking()
	var always := act("always").ticking()
	play(held)
	play(always, {}, {"name": "Other", "process_mode": Node.PROCESS_MODE_ALWAYS})
	tree.paused = true
	await frames(3)
	tree.paused = false
	expect_equal(held.deltas.size(), 0)
	expect_equal(always.deltas.size(), 3)
	await frames(2)
	expect_equal(held.deltas.size(), 2)
