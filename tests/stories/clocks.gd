extends Story
## How long a machine has been in a state, by its own clock.


func test_time_goes_on_the_same_whether_it_ticks_or_sleeps() -> void:
	for physics: bool in [false, true]:
		var made := start(machine([
			state("Tick", [act("work").ticking()], {"sleep": "Sleep"}),
			state("Sleep", [wait(100.0)], {"again": "Sleep"}),
		], {"physics_tick": physics}))
		await advance(0.25)
		expect_near(made.state_time(), 0.25, 0.02)
		for event: String in ["sleep", "again", "again"]:
			made.send_event(event)
			expect_near(made.state_time(), 0.0)
			await advance(0.5)
			expect(not made.is_processing() and not made.is_physics_processing())
			expect_near(made.state_time(), 0.5, 0.02, event)
		made.free()


func test_whose_time_stands_still_in_a_game_that_is_paused() -> void:
	var parent := body("Parent")
	parent.process_mode = Node.PROCESS_MODE_ALWAYS
	var rows: Dictionary[SCMachine, float] = {
		play(wait(10.0), {}, {"name": "Pausable"}): 0.5,
		play(act("work").ticking(), {}, {"name": "Ticking"}): 0.5,
		play(wait(10.0), {}, {"name": "Always", "process_mode": Node.PROCESS_MODE_ALWAYS}): 1.5,
		play(wait(10.0), {}, {"name": "Inside", "under": parent}): 1.5,
		play(wait(10.0), {}, {"name": "Physics", "physics_tick": true}): 0.5,
		play(wait(10.0), {}, {"name": "Always in Physics", "physics_tick": true, "process_mode": Node.PROCESS_MODE_ALWAYS}): 1.5,
	}
	await advance(0.2)
	tree.paused = true
	await advance(1.0)
	tree.paused = false
	await advance(0.3)
	for made in rows:
		expect_near(made.state_time(), rows[made], 0.05, made.name)


func test_time_follows_the_speed_of_the_game() -> void:
	var made := play(wait(10.0))
	Engine.time_scale = 2.0
	await advance(0.5)
	Engine.time_scale = 1.0
	expect_near(made.state_time(), 1.0, 0.05)


func test_a_machine_that_is_switched_off_or_paused_gathers_no_time() -> void:
	var parent := body("Parent")
	var made := play(wait(10.0), {}, {"under": parent})
	await advance(0.2)
	parent.process_mode = Node.PROCESS_MODE_DISABLED
	await advance(1.0)
	expect_near(made.state_time(), 0.2, 0.05)
	parent.process_mode = Node.PROCESS_MODE_INHERIT
	await advance(0.3)
	expect_near(made.state_time(), 0.5, 0.05)
	made.set_paused(true)
	await advance(1.0)
	expect_near(made.state_time(), 0.5, 0.05)
	made.set_paused(false)
	await advance(0.3)
	expect_near(made.state_time(), 0.8, 0.05)


func test_a_machine_that_does_not_run_has_no_time() -> void:
	var made := play(act("work"), {}, {"autostart": false})
	await advance(0.1)
	expect(made.state_time() > 0.0)
	made.stop()
	await advance(0.1)
	expect_equal(made.state_time(), 0.0)
