extends Story
## How long a machine has been in a state, by its own clock.


func test_time_goes_on_while_a_machine_sleeps() -> void:
	var made := start(machine([state("A", [wait(10.0)], {"again": "A"})]))
	expect_near(made.state_time(), 0.0)
	await advance(0.5)
	expect(not made.is_processing())
	expect_near(made.state_time(), 0.5, 0.02)
	made.send_event("again")
	expect_near(made.state_time(), 0.0)
	await advance(0.25)
	expect_near(made.state_time(), 0.25, 0.02)


func test_time_goes_on_the_same_whether_it_ticks_or_sleeps() -> void:
	var work := act("work").ticking()
	var made := start(machine([
		state("Outer", [], {}, {"sub_states": [
			state("Tick", [work], {"sleep": "Sleep"}),
			state("Sleep", [wait(100.0)], {"tick": "Tick"}),
		]}),
	]))
	for i in 4:
		await advance(0.25)
		made.send_event("sleep")
		await advance(0.25)
		made.send_event("tick")
	made.go_to("Sleep")
	await advance(0.5)
	expect_near(made.state_time(), 0.5, 0.02)


func test_time_stands_still_while_the_game_is_paused() -> void:
	var pausable := start(machine([state("A", [wait(10.0)])], {"name": "Pausable"}))
	var always := start(machine([state("A", [wait(10.0)])], {"name": "Always", "process_mode": Node.PROCESS_MODE_ALWAYS}))
	var parent := body("Parent")
	parent.process_mode = Node.PROCESS_MODE_ALWAYS
	var inside := start(machine([state("A", [wait(10.0)])], {"name": "Inside", "under": parent}))
	await advance(0.2)
	tree.paused = true
	await advance(1.0)
	tree.paused = false
	await advance(0.3)
	expect_near(pausable.state_time(), 0.5, 0.05)
	expect_near(always.state_time(), 1.5, 0.05)
	expect_near(inside.state_time(), 1.5, 0.05)


func test_time_follows_the_speed_of_the_game() -> void:
	var made := start(machine([state("A", [wait(10.0)])]))
	Engine.time_scale = 2.0
	await advance(0.5)
	Engine.time_scale = 1.0
	expect_near(made.state_time(), 1.0, 0.05)


func test_a_machine_that_is_switched_off_gathers_no_time() -> void:
	var parent := body("Parent")
	var made := start(machine([state("A", [wait(10.0)])], {"under": parent}))
	await advance(0.2)
	parent.process_mode = Node.PROCESS_MODE_DISABLED
	await advance(1.0)
	expect_near(made.state_time(), 0.2, 0.05)
	parent.process_mode = Node.PROCESS_MODE_INHERIT
	await advance(0.3)
	expect_near(made.state_time(), 0.5, 0.05)


func test_a_paused_machine_gathers_no_time() -> void:
	var made := start(machine([state("A", [wait(10.0)])]))
	await advance(0.2)
	made.set_paused(true)
	await advance(1.0)
	expect_near(made.state_time(), 0.2, 0.05)
	made.set_paused(false)
	await advance(0.3)
	expect_near(made.state_time(), 0.5, 0.05)


func test_time_on_the_physics_tick() -> void:
	var work := act("work").ticking()
	var made := start(machine([state("A", [work], {"sleep": "B"}), state("B", [wait(10.0)])], {"physics_tick": true}))
	await advance(0.5)
	expect_near(made.state_time(), 0.5, 0.05)
	made.send_event("sleep")
	await advance(0.5)
	expect(not made.is_physics_processing())
	expect_near(made.state_time(), 0.5, 0.05)


func test_a_machine_that_does_not_run_has_no_time() -> void:
	var made := machine([state("A")], {"autostart": false})
	stage.add_child(made)
	await advance(0.1)
	expect_equal(made.state_time(), 0.0)
	made.start()
	await advance(0.1)
	made.stop()
	expect_equal(made.state_time(), 0.0)
