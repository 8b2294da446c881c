extends Story
## Actions that wait: for a time, for a tween, for a signal. Nothing that comes back late touches a state that was left.


func test_a_door_closes_after_a_while() -> void:
	var door := start(machine([state("Open", [wait(0.5)], {"FINISHED": "Shut"}), state("Shut", [], {"open": "Open"})]))
	await frames(31)
	expect_state(door, "Shut")
	door.send_event("open")
	await frames(29)
	expect_state(door, "Open")
	await frames(2)
	expect_state(door, "Shut")


func test_what_is_to_happen_then_happens_before_the_state_ends() -> void:
	# No time at all is over at once.
	for seconds: float in [-1.0, 0.0, 0.1]:
		var later := act("a").entering(func(m: SCMachine, index: int) -> void:
			m.finish_after(index, seconds, func() -> void: noted.append("then in %s, %s" % [m.running_state(), m.is_finished(index)])))
		var made := start(machine([state("A", [later, wait(0.0)], {"FINISHED": "B"}), state("B", [act("b")])]))
		expect_state(made, "A" if seconds > 0.0 else "B")
		await expect_later(made, 0.15, "B")
		expect_log(["a enter", "then in A, false", "a exit", "b enter"])


func test_a_wait_that_was_left_is_over() -> void:
	var made := start(machine([
		state("A", [wait(0.2)], {"FINISHED": "Wrong", "go": "B"}),
		state("B", [act("b")], {"FINISHED": "Wrong", "back": "A"}),
		state("Wrong"),
	]))
	await frames(11)
	# The wait would be over in this very frame.
	made.send_event("go")
	await frames(10)
	expect_state(made, "B")
	made.send_event("back")
	await frames(11)
	made.send_event("go")
	made.send_event("back")
	await frames(10)
	expect_state(made, "A")
	await frames(3)
	expect_state(made, "Wrong")


func test_what_a_wait_counts() -> void:
	var slow := play(wait(0.2), {"FINISHED": "Done"}, {"name": "Slow"})
	var real := play(wait(0.2, {"real_time": true}), {"FINISHED": "Done"}, {"name": "Real"})
	Engine.time_scale = 0.5
	await frames(15)
	expect_state(real, "Done")
	expect_state(slow, "Work")
	await frames(15)
	Engine.time_scale = 1.0
	expect_state(slow, "Done")
	# From the tree on.
	var outside := doing(wait(0.2))
	outside.start()
	expect_state(outside, "Work")
	await frames(20)
	expect_state(outside, "Work")
	stage.add_child(outside)
	await frames(10)
	expect_state(outside, "Work")
	await frames(5)
	expect_state(outside, "Done")


func test_a_pause_holds_the_time() -> void:
	var made := start(machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")]))
	# Of the machine, and of the game.
	for hold: Callable in [made.set_paused, tree.set_pause]:
		made.go_to("A")
		await frames(6)
		hold.call(true)
		await frames(30)
		expect_state(made, "A")
		hold.call(false)
		await frames(4)
		expect_state(made, "A")
		await frames(4)
		expect_state(made, "B")
	made.go_to("A")
	made.set_paused(true)
	made.restart_state(made.current_state)
	await frames(30)
	expect_state(made, "A")
	made.set_paused(false)
	await frames(14)
	expect_state(made, "B")


func test_a_random_extra_is_between_its_bounds() -> void:
	var lengths: Array[int] = []
	var made := start(machine([state("A", [wait(0.1, {"random_extra": 0.2})], {"FINISHED": "B"}), state("B", [], {"again": "A"})]))
	for i in 10:
		var count := 0
		while current(made) == &"A" and count < 60:
			await frames(1)
			count += 1
		lengths.append(count)
		made.send_event("again")
	expect(lengths.min() >= 5 and lengths.max() <= 20, "%s" % [lengths])
	expect(lengths.min() != lengths.max(), "always the same: %s" % [lengths])


func test_timeouts_can_be_called_off() -> void:
	var keep := act("keep").entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1))
	var drop := act("drop").entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1, func() -> void: noted.append("came back")))
	var made := start(machine([state("A", [keep, drop], {"FINISHED": "Wrong"}, {"sub_states": [state("A1", [drop])]}), state("Wrong")]))
	expect_equal(made.cancel_timeouts(func(action: Object) -> bool: return action == drop), 2)
	expect_equal(made.cancel_timeouts(func(action: Object) -> bool: return action == drop), 0)
	await expect_later(made, 0.3, "A1")
	expect_log(["keep enter", "drop enter", "drop enter"])
	made.finish(1)
	expect(made.is_running())


func test_a_tween_finishes_its_action_and_stops_with_its_state() -> void:
	var lift := body("Lift")
	var rise := func(m: SCMachine, index: int) -> void:
		var tween := lift.create_tween()
		tween.tween_property(lift, "position:x", 100.0, 0.2)
		m.finish_with_tween(index, tween)
	var made := start(machine([
		state("Up", [act("up").entering(rise)], {"FINISHED": "Top"}),
		state("Top", [act("again").entering(rise)], {"stop": "Held"}),
		state("Held"),
	]))
	await frames(6)
	expect_near(lift.position.x, 50.0, 10.0)
	await frames(8)
	expect_equal(lift.position.x, 100.0)
	expect_state(made, "Top")
	lift.position.x = 0.0
	await frames(3)
	made.send_event("stop")
	var held := lift.position.x
	await frames(10)
	expect_equal(lift.position.x, held, "a tween moved on after its state was left")


func test_a_kept_tween_dies_with_its_state_and_finishes_nothing() -> void:
	var lamp := body("Lamp")
	var tweens: Array[Tween] = []
	var blink := act("blink").entering(func(m: SCMachine, index: int) -> void:
		tweens.append(_turning(lamp))
		m.keep_tween(index, tweens[-1]))
	var made := play(blink, {"FINISHED": "Wrong", "off": "Off"})
	await frames(12)
	expect_equal(lamp.rotation, 1.0)
	expect_state(made, "Work")
	made.restart_state(made.current_state)
	made.send_event("off")
	expect(not tweens[1].is_valid(), "the tween goes on")


func test_a_tween_that_belongs_nowhere_is_stopped() -> void:
	var lamp := body("Lamp")
	var made := play(act("a"))
	var unused := machine([state("A")])
	for place: Array in [[made, 5], [made, 1], [made, -1], [unused, 0]]:
		var tween := _turning(lamp)
		(place[0] as SCMachine).finish_with_tween(place[1], tween)
		expect(not tween.is_valid(), "a tween acts alone")
	await frames(6)
	expect_equal(lamp.rotation, 0.0)
	made.finish_after(9, 0.05)
	made.finish_after(-1, 0.0)
	made.finish_with_tween(0, null)
	unused.finish_after(0, 0.1)
	await frames(6)


func test_waiting_on_the_physics_tick() -> void:
	var where: Array[bool] = []
	var made := start(machine([
		state("A", [wait(0.1)], {"FINISHED": "B"}),
		state("B", [act("b").entering(func() -> void: where.append(Engine.is_in_physics_frame()))]),
	], {"physics_tick": true}))
	await expect_later(made, 0.2, "B")
	expect_equal(where, [true])


func test_a_resting_action_costs_nothing_until_it_is_woken() -> void:
	var bell := body("Bell")
	var work := act("work").ticking().updating(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [[bell, &"renamed"], [bell, &"visibility_changed"]]))
	var made := play(work, {"away": "B"})
	await frames(3)
	expect_equal(work.deltas.size(), 1)
	expect(made.is_resting(0) and not made.is_processing())
	bell.name = "Rung"
	expect(not made.is_resting(0) and made.is_processing())
	expect_equal(bell.visibility_changed.get_connections().size(), 0)
	await frames(3)
	expect_equal(work.deltas.size(), 2)
	bell.hide()
	bell.show()
	await frames(3)
	expect_equal(work.deltas.size(), 3)
	made.send_event("away")
	expect_equal(bell.renamed.get_connections().size(), 0)
	expect(not made.is_resting(0))
	bell.name = "Again"
	expect_state(made, "B")


func test_resting_in_vain() -> void:
	var bell := body("Bell")
	var made := play(act("work").ticking().updating(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [])
		m.rest_until(index + 5, [[bell, &"renamed"]])
		m.rest_in_lane(index, bell, -1)
		m.rest_until(index, [[null, &"renamed"]])))
	made.rest_until(0, [[bell, &"renamed"]])
	expect(not made.is_resting(0), "it rests though no action asked for it")
	await frames(2)
	expect(made.is_running())
	made.stop()
	var other := play(act("rest").ticking().entering(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [[bell, &"renamed"]])
		m.rest_until(index, [[bell, &"visibility_changed"]])))
	expect_equal(bell.visibility_changed.get_connections().size(), 0, "it rests twice")
	bell.free()
	await frames(2)
	expect(other.is_resting(0))
	other.go_to("Work")
	other.stop()
	other.free()


func test_the_machine_may_go_before_what_it_waits_for() -> void:
	var bell := body("Bell")
	var rest := act("rest").ticking().entering(func(m: SCMachine, index: int) -> void: m.rest_until(index, [[bell, &"renamed"]]))
	play([wait(0.1), rest]).free()
	bell.name = "Rung"
	await advance(0.2)
	expect_log(["rest enter", "rest exit"])


func _turning(lamp: Node2D) -> Tween:
	var tween := lamp.create_tween()
	tween.tween_property(lamp, "rotation", 1.0, 0.05)
	return tween
