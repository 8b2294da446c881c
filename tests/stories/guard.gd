extends Story
## A machine whose states lead straight back to one another stops and says so.


func test_two_empty_states_that_lead_to_each_other_stop_the_machine() -> void:
	var made := start(machine([state("A", [act("a").done()], {"FINISHED": "B"}), state("B", [act("b").done()], {"FINISHED": "A"})], {"name": "Ring"}))
	expect_error("Machine on Ring entered 50 states in one frame, which means its states lead straight back to one another, so it has stopped. The last was A.")
	expect(not made.is_running())
	for what: String in ["enter", "exit"]:
		expect_equal(noted.count("a " + what) + noted.count("b " + what), 50)
	noted.clear()
	await frames(1)
	made.states[1].transitions.clear()
	made.start()
	expect_state(made, "B")


func test_every_event_starts_a_fresh_count() -> void:
	var states := _chain(45)
	(states[45] as SCMachineState).transitions.append(transition("again", "0"))
	var made := start(machine(states))
	expect_state(made, "45")
	for i in 5:
		expect_after(made, "again", "45")


func test_a_template_may_allow_more_or_less() -> void:
	for row: Array in [[150, 200, true], [20, 10, false], [9, 10, true], [10, 10, false]]:
		var made := start(running(template(_chain(row[0]), {"loop_increment_limit": row[1]}), {"name": "Strict"}))
		expect_equal(made.is_running(), row[2], str(row))
		if not row[2]:
			expect_error("Machine on Strict entered 10 states in one frame")
		made.free()


func test_a_frame_as_a_whole_has_a_limit_too() -> void:
	var made := start(running(template([state("A", [], {"flip": "B"}), state("B", [], {"flip": "A"})], {"loop_increment_limit": 1}), {"name": "Flip"}))
	await frames(1)
	for i in 100:
		made.send_event("flip")
	expect(made.is_running())
	expect_state(made, "A")
	made.send_event("flip")
	expect_error("Machine on Flip entered 100 states in one frame")
	expect(not made.is_running())


func test_a_wait_breaks_the_circle() -> void:
	var made := start(machine([state("A", [wait(0.02)], {"FINISHED": "B"}), state("B", [], {"FINISHED": "A"})]))
	await advance(5.0)
	expect(made.is_running())


func test_a_ring_that_gets_somewhere_is_let_through_so_far() -> void:
	for row: Array in [[400, 300, 300], [100, 101, 140]]:
		var steps := [0]
		var walk := func(m: SCMachine) -> void:
			steps[0] += 1
			m.progress_made(m, row[0])
			if steps[0] == 300:
				m.go_to("Done")
		var made := start(machine([
			state("Step", [act("step").done().entering(walk)], {"FINISHED": "Next"}),
			state("Next", [], {"FINISHED": "Step"}),
			state("Done"),
		]))
		expect(steps[0] >= row[1] and steps[0] <= row[2], "went round %d times" % steps[0])
		if row[0] == 400:
			expect_state(made, "Done")
		else:
			expect_error("which means its states lead straight back to one another")
			expect(not made.is_running())
		made.free()


func test_a_ring_through_sub_states_is_one_too() -> void:
	var made := start(machine([
		state("Start", [act("start")], {"go": "Round"}),
		state("Round", [], {"FINISHED": "And"}, {"sub_states": [state("Round Inside", [], {}, {"end": true})]}),
		state("And", [], {"FINISHED": "Round"}),
	]))
	made.send_event("go")
	expect_error("entered 50 states in one frame")
	expect(not made.is_running())
	await frames(1)
	made.start()
	expect_state(made, "Start")


## States "0" to [param last], each leading straight to the next.
func _chain(last: int) -> Array:
	var states := []
	for i in last:
		states.append(state(str(i), [], {"FINISHED": str(i + 1)}))
	states.append(state(str(last)))
	return states
