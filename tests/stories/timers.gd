extends Story
## Actions that wait: for a time, for a tween, for a signal. Nothing that comes back late touches a state that was left.


func test_a_door_closes_after_a_while() -> void:
	var door := start(machine([
		state("Open", [wait(0.5)], {"FINISHED": "Shut"}),
		state("Shut", [], {"open": "Open"}),
	]))
	await frames(31)
	expect_state(door, "Shut")
	door.send_event("open")
	await frames(29)
	expect_state(door, "Open")
	await frames(2)
	expect_state(door, "Shut")


func test_no_time_at_all_is_over_at_once() -> void:
	var calls: Array[String] = []
	var made := start(machine([
		state("A", [wait(0.0)], {"FINISHED": "B"}),
		state("B", [act("b").entering(func(m: SCMachine, index: int) -> void:
			m.finish_after(index, -1.0, func() -> void: calls.append("then %s" % m.is_finished(index))))], {"FINISHED": "C"}),
		state("C"),
	]))
	expect_state(made, "C")
	expect_equal(calls, ["then false"])


func test_what_is_to_happen_then_happens_before_the_state_ends() -> void:
	var made := start(machine([
		state("A", [act("a").entering(func(m: SCMachine, index: int) -> void:
			m.finish_after(index, 0.1, func() -> void: noted.append("then in %s" % m.running_state())))], {"FINISHED": "B"}),
		state("B", [act("b")]),
	]))
	await advance(0.15)
	expect_log(["a enter", "then in A", "a exit", "b enter"])
	expect_state(made, "B")


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


func test_real_time_does_not_mind_the_speed_of_the_game() -> void:
	var slow := start(machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")], {"name": "Slow"}))
	var real := start(machine([state("A", [wait(0.2, {"real_time": true})], {"FINISHED": "B"}), state("B")], {"name": "Real"}))
	Engine.time_scale = 0.5
	await frames(15)
	expect_state(real, "B")
	expect_state(slow, "A")
	await frames(15)
	Engine.time_scale = 1.0
	expect_state(slow, "B")


func test_a_wait_that_begins_outside_the_tree_counts_from_the_tree_on() -> void:
	var made := machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")])
	made.start()
	expect_state(made, "A")
	await frames(20)
	expect_state(made, "A")
	stage.add_child(made)
	await frames(10)
	expect_state(made, "A")
	await frames(5)
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
	var called := [false]
	var keep := act("keep").entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1))
	var drop := act("drop").entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1, func() -> void: called[0] = true))
	var made := start(machine([state("A", [keep, drop], {"FINISHED": "Wrong"}, {"sub_states": [state("A1", [drop])]}), state("Wrong")]))
	expect_equal(made.cancel_timeouts(func(action: Object) -> bool: return action == drop), 2)
	expect_equal(made.cancel_timeouts(func(action: Object) -> bool: return action == drop), 0)
	await advance(0.3)
	expect_state(made, "A1")
	expect(not called[0], "a timeout that was called off came back")
	expect_log(["keep enter", "drop enter", "drop enter"])
	made.finish(1)
	expect(made.is_running())


func test_a_tween_finishes_its_action() -> void:
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
	expect(lift.position.x > 40.0 and lift.position.x < 60.0)
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
	var made := start(machine([
		state("Blink", [act("blink").entering(func(m: SCMachine, index: int) -> void:
			var tween := lamp.create_tween()
			tween.tween_property(lamp, "rotation", 1.0, 0.1)
			tweens.append(tween)
			m.keep_tween(index, tween))], {"FINISHED": "Wrong", "off": "Off"}),
		state("Off"),
		state("Wrong"),
	]))
	await frames(12)
	expect_equal(lamp.rotation, 1.0)
	expect_state(made, "Blink")
	made.restart_state(made.current_state)
	made.send_event("off")
	expect(not tweens[1].is_valid(), "the tween goes on")


func test_a_tween_that_belongs_nowhere_is_stopped() -> void:
	var lamp := body("Lamp")
	var made := start(machine([state("A", [act("a")])]))
	var unused := machine([state("A")])
	for place: Array in [[made, 5], [made, -1], [unused, 0]]:
		var tween := lamp.create_tween()
		tween.tween_property(lamp, "rotation", 1.0, 0.05)
		var at: SCMachine = place[0]
		at.finish_with_tween(place[1], tween)
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
	await advance(0.2)
	expect_state(made, "B")
	expect_equal(where, [true])


func test_a_paused_machine_s_time_stands_still() -> void:
	var made := start(machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")]))
	await frames(6)
	made.set_paused(true)
	await frames(30)
	made.set_paused(false)
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


func test_a_paused_game_s_time_stands_still() -> void:
	var made := start(machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")]))
	await frames(6)
	tree.paused = true
	await frames(30)
	expect_state(made, "A")
	tree.paused = false
	await frames(4)
	expect_state(made, "A")
	await frames(4)
	expect_state(made, "B")


func test_a_resting_action_costs_nothing_until_it_is_woken() -> void:
	var bell := body("Bell")
	var work := act("work").ticking().updating(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [[bell, &"renamed"], [bell, &"visibility_changed"]]))
	var made := start(machine([state("A", [work], {"away": "B"}), state("B")]))
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
	var work := act("work").ticking().updating(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [])
		m.rest_until(index + 5, [[bell, &"renamed"]])
		m.rest_in_lane(index, bell, -1)
		m.rest_until(index, [[null, &"renamed"]]))
	var made := start(machine([state("A", [work])]))
	made.rest_until(0, [[bell, &"renamed"]])
	expect(not made.is_resting(0), "it rests though no action asked for it")
	await frames(2)
	expect(made.is_running())
	made.stop()
	var other := start(machine([state("A", [act("rest").ticking().entering(func(m: SCMachine, index: int) -> void:
		m.rest_until(index, [[bell, &"renamed"]])
		m.rest_until(index, [[bell, &"visibility_changed"]]))])], {"name": "Other"}))
	expect_equal(bell.visibility_changed.get_connections().size(), 0, "it rests twice")
	bell.free()
	await frames(2)
	expect(other.is_resting(0))
	other.go_to("A")
	other.stop()
	other.free()


func test_the_machine_may_go_before_what_it_waits_for() -> void:
	var bell := body("Bell")
	var made := start(machine([state("A", [
		wait(0.1),
		act("rest").ticking().entering(func(m: SCMachine, index: int) -> void: m.rest_until(index, [[bell, &"renamed"]])),
	])]))
	made.free()
	bell.name = "Rung"
	await advance(0.2)
	expect_log(["rest enter", "rest exit"])


func test_an_event_sent_later_carries_what_holds_then() -> void:
	var door := start(machine([
		state("A", [send("open", {"delay": 0.2})], {"open": "B", "away": "C"}),
		state("B"),
		state("C", [], {"open": "Wrong", "back": "A"}),
		state("Wrong"),
	]))
	await advance(0.1)
	door.send_event("away")
	await advance(0.2)
	expect_state(door, "C")
	door.send_event("back")
	await advance(0.25)
	expect_state(door, "B")
