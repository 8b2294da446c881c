extends "res://tests/stories/files/sense_story.gd"


## A guard with a machine that writes down what it is told.
func listener(x: float, name: String, settings: Dictionary = {}) -> SCMachine:
	var body := guard(settings, x, name)
	body.add_to_group(&"guards")
	var made := machine([state("Idle", [act("idle")])], {"under": body, "name": "Ears"})
	made.event_sent.connect(func(_event: StringName, data: Variant) -> void:
		made.set_meta(&"data", data)
		made.set_meta(&"sender", made.last_event_sender()))
	return start(made)


## What came with the last event it got.
func data_of(of: SCMachine) -> Variant:
	return of.get_meta(&"data", null)


func noise(metres: float, settings: Dictionary = {}) -> Resource:
	return kind(SCMakeNoiseAction, {"max_distance": far(metres), "store_count_in": &"answer"}.merged(settings, true))


func test_who_hears_a_noise() -> void:
	await on_both_sides(func() -> void:
		var near := listener(3.0, "Near")
		var off := listener(9.0, "Far")
		var dull := listener(4.0, "Dull", {"hearing_range": far(2.0)})
		block(1.5, 2.0, 0.2, 6.0, "Wall")
		var gun := spot(0.0, 0.8, "Gun")
		var here: Variant = gun.get(&"position")
		expect_equal(result_of(noise(5.0), {}, {"under": gun}), 1)
		expect_events(near, ["HEARD"])
		expect_equal([data_of(near), senses_of(near.get_parent()).last_heard_position], [here, here])
		expect(near.has_meta(&"sender") and senses_of(near.get_parent()).target == null, "a noise is not somebody")
		expect_events(off, [])
		expect_events(dull, [])
		expect_equal(senses_of(off.get_parent()).last_heard_position, null)
		expect_equal(result_of(noise(50.0), {}, {"under": gun}), 2, "far off")
		expect_equal(result_of(noise(50.0, {"only_group": &"dogs"}), {}, {"under": gun}), 0)
		expect_equal(result_of(noise(5.0, {"heard_event": &""}), {"answer": 0.0}, {"under": gun}), 1.0)
		var place: Variant = at(9.5, 0.8)
		expect_equal(result_of(noise(2.0, {"at": SCMakeNoiseAction.A_PLACE, "place": place, "heard_event": &"BANG"}), {}, {"under": gun}), 1)
		expect_equal(data_of(off), place))


func test_hearers_may_do_anything() -> void:
	await on_both_sides(func() -> void:
		var first := listener(1.0, "First")
		var second := listener(2.0, "Second")
		var owner := start(machine([state("Idle", [act("idle")], {"go": "Bang"}), state("Bang", [noise(9.0)])], {"under": spot(0.0, 0.8, "Gun")}))
		senses_of(first.get_parent()).heard.connect(func(_place: Variant) -> void:
			first.free()
			owner.free())
		owner.send_event(&"go")
		expect(not is_instance_valid(first) and not is_instance_valid(owner))
		expect_events(second, ["HEARD"]))


func test_a_noise_that_nobody_can_hear_is_told() -> void:
	var gun := spot(0.0, 0.0, "Gun")
	for name: String in ["Ann", "Ben", "Cas", "Dan"]:
		guard({"hearing_range": 0.0}, 1.0, name)
	expect_equal(result_of(noise(5.0), {}, {"under": gun}), 0)
	expect_warning("Ann, Ben, Cas and others would hear it, but their Perception has Hearing Range 0, which is deaf. Give it a Hearing Range.")
	expect_equal(result_of(noise(0.0), {}, {"under": gun}), 0)
	expect_warning("Make Noise on Machine: Max Distance is 0, so nobody can hear it. Give it how far the noise carries.")
	expect_equal(result_of(noise(5.0)), -1)
	expect_warning("Make Noise on Machine: there is no node in the world to make the noise at. Pick one under At Node, such as the gun, or choose A Place.")


func alarm(settings: Dictionary = {}) -> Resource:
	return kind(SCAlertAlliesAction, {"within": far(5.0), "store_count_in": &"answer", "nobody_event": &"alone"}.merged(settings, true))


func test_the_alarm() -> void:
	await on_both_sides(func() -> void:
		var near := listener(3.0, "Near")
		var off := listener(9.0, "Far")
		var mute := _sharpen(character(2.0, 0.0, "Mute"), {})
		mute.add_to_group(&"guards")
		var caller := guard({}, 0.0, "Caller")
		caller.add_to_group(&"guards")
		var thief := character(-6.0, 0.0, "Thief")
		senses_of(caller).notice(thief)
		expect_equal(result_of(alarm(), {}, {"under": caller}), 2)
		expect_events(near, ["Alerted"])
		expect_events(off, [])
		expect_equal([data_of(near), senses_of(near.get_parent()).target, senses_of(mute).target, senses_of(off.get_parent()).target], [thief, thief, thief, null])
		expect_equal(result_of(alarm({"within": 0.0, "give_them_the_target": false}), {}, {"under": caller}), 3, "everywhere")
		expect(senses_of(off.get_parent()).target == null)
		expect_equal(data_of(off), thief)
		expect_equal(result_of(alarm({"within_variable": &"carries"}), {"carries": far(10.0)}, {"under": caller}), 3)
		var alone := play(alarm({"ally_group": &"dogs"}), {"alone": "Alone"}, {"under": caller, "variables": {"answer": 7}})
		expect_state(alone, "Alone")
		expect_equal(alone.get_value(&"answer"), 0)
		alone.free()
		# With nothing to tell it still tells, and hands nothing over.
		expect_equal(result_of(alarm(), {}, {"under": thief}), 0)
		thief.set(&"position", at(0.5, 0.8))
		expect_equal(result_of(alarm(), {}, {"under": thief}), 3)
		expect(senses_of(near.get_parent()).target == thief))


func test_an_alarm_that_nobody_can_take_is_told() -> void:
	var caller := character()
	for name: String in ["Ann", "Ben"]:
		add(Node2D.new(), name).add_to_group(&"guards")
	expect_equal(result_of(alarm(), {}, {"under": caller}), 0)
	expect_warning("Alert Allies on Machine: Ann, Ben in reach, but with no Machine to take Alerted (and no Perception to hand the target to), so nobody heard.")
	expect_equal(result_of(alarm({"ally_group": &""}), {}, {"under": caller}), 0)
	expect_warning("no group is picked, so nobody is told")


func test_lines() -> void:
	expect_lines(SCMakeNoiseAction, {
		"Make a noise at Self that anybody within 15 hears, sending HEARD": {},
		"Make a noise at Gun that the guards within 15 hears, sending nothing": {"at_node_path": ^"../Gun", "only_group": &"guards", "heard_event": &""},
		"Make a noise at a place that anybody within 3 hears, sending HEARD": {"at": SCMakeNoiseAction.A_PLACE, "max_distance": 3.0},
	})
	expect_line(kind(SCAlertAlliesAction), "Tell the guards")
