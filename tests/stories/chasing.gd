extends PhysicsStory
## Going after somebody and running away: where it stops, what it tells, and what becomes of it when the other is gone.


func chase(settings: Dictionary = {}) -> Resource:
	return kind(SCChaseAction, {"target_variable": &"prey", "speed": far(4.0), "stop_within": far(1.5)}.merged(settings, true))


func flee(settings: Dictionary = {}) -> Resource:
	return kind(SCFleeAction, {"target_variable": &"prey", "speed": far(5.0), "safe_distance": far(4.0), "look_ahead": far(6.0)}.merged(settings, true))


## A machine on [param body] that knows [param prey].
func after(body: Node, prey: Node, actions: Array) -> SCMachine:
	return walk(body, actions, {"variables": {"prey": prey}})


func test_it_stops_short_and_tells_of_every_catch() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var prey := spot(5.0, 0.0, "Prey")
		var owner := after(hero, prey, [chase()])
		var carried: Array = []
		owner.event_sent.connect(func(_name: StringName, data: Variant) -> void: carried.append(data))
		await physics_frames(30)
		expect_near(speed_of(hero).x, 4.0, 0.001)
		expect_events(owner, [])
		await physics_frames(60)
		expect_near(where(hero).x, 3.5, 4.0 / 60.0 + 0.02)
		expect(where(hero).x >= 3.5 - 0.02 and is_zero_approx(speed_of(hero).x), "it stands at %s" % where(hero))
		expect_events(owner, ["Reached"])
		expect_equal(carried, [prey])
		await physics_frames(10)
		expect_events(owner, [])
		prey.set(&"position", at(-2.0, 0.0))
		await physics_frames(80)
		expect_near(where(hero).x, -0.5, 0.1, "it does not go back after it")
		expect_events(owner, ["Reached"])
		expect_state(owner, "Walk"))


func test_the_last_step_lands_on_the_place() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var prey := spot(1.03, 0.0, "Prey")
		after(hero, prey, [chase({"stop_within": 0.0, "speed": far(6.0)})])
		var farthest := 0.0
		for i in 40:
			await physics_frames(1)
			farthest = maxf(farthest, where(hero).x)
		expect_near(farthest, 1.03, 0.002, "it goes beyond it")
		expect_near(where(hero).x, 1.03, 0.002))


func test_arriving_can_end_the_state() -> void:
	await on_both_sides(func() -> void:
		ground()
		var owner := start(machine([
			state("Chase", [chase({"finish_on_arrival": true, "speed_variable": &"pace"})], {"FINISHED": "Bite"}),
			state("Bite"),
		], {"under": character(), "variables": {"prey": spot(3.0, 0.0, "Prey"), "pace": far(1.0)}}))
		await physics_frames(60)
		expect_state(owner, "Chase")
		await physics_frames(45)
		expect_state(owner, "Bite"))


func test_what_is_gone_is_not_chased_and_ends_nothing() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var prey := spot(5.0, 0.0, "Prey")
		var owner := after(hero, prey, [chase({"finish_on_arrival": true})])
		await physics_frames(10)
		prey.free()
		await physics_frames(2)
		expect_near(speed_of(hero).x, 0.0, 0.001)
		expect_state(owner, "Walk")
		owner.set_value(&"prey", spot(0.5, 0.0, "Next"))
		await physics_frames(2)
		expect_events(owner, ["Reached"]))


func test_it_faces_where_it_goes() -> void:
	in_3d = true
	var above: CharacterBody3D = character(0.0, 20.0)
	after(above, spot(5.0, 20.0, "Prey"), [chase({"falls": false})])
	await physics_frames(60)
	expect_near(above.global_rotation.y, -PI / 2.0, 0.02)
	in_3d = false
	ground()
	var seen: CharacterBody2D = character()
	var picture := Sprite2D.new()
	seen.add_child(picture)
	after(seen, spot(-5.0, 0.0, "Behind"), [chase()])
	await physics_frames(5)
	expect_equal([picture.flip_h, seen.rotation], [true, 0.0])


func test_plain_nodes_are_moved_by_the_lane_and_by_themselves_alike() -> void:
	for side: bool in [false, true]:
		in_3d = side
		var prey := spot(2.0, 1.0, "Prey")
		var height := 1.0 if in_3d else 0.0
		var goal := Vector3(2.0, 0.0 if in_3d else 1.0, 0.0)
		for in_lane: bool in [true, false]:
			var ghost := spot(0.0, 0.0, "Ghost")
			var owner := after(ghost, prey, [chase({"turn_to_face": not in_lane, "stop_within": far(0.5)})])
			expect_equal(owner.is_resting(0), in_lane, "in the lane")
			await physics_frames(60)
			expect(ghost.has_meta(&"quillstead_moved_by_position"), "it is not noted")
			expect_near(where(ghost).distance_to(goal), 0.5, 4.0 / 60.0 + 0.001, "in the lane: %s, above %s" % [in_lane, height])
			expect_events(owner, ["Reached"])
			owner.stop()
			ghost.free()
		prey.free()


func test_what_the_lane_cannot_do_stays_with_the_machine() -> void:
	var prey := spot(2.0, 1.0, "Prey")
	var own: Array[Dictionary] = [{"turn_to_face": true}, {"speed_variable": &"pace"}, {"stop_within_variable": &"pace"}, {"finish_on_arrival": true}]
	for row: Dictionary in own + [{"update_interval": 0.5}]:
		var ghost := spot(0.0, 0.0, "Ghost")
		var owner := walk(ghost, [chase({"turn_to_face": false}.merged(row, true))], {"variables": {"prey": prey, "pace": 50.0}})
		expect(not owner.is_resting(0), str(row))
		owner.free()
		ghost.free()
	var body := after(character(), prey, [chase({"turn_to_face": false})])
	expect(not body.is_resting(0), "a physics body")


func test_it_runs_until_it_is_safe() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character(1.0)
		var wolf := spot(0.0, 0.0, "Wolf")
		var owner := start(machine([state("Run", [flee()], {"FINISHED": "Calm"}), state("Calm")], {"under": hero, "variables": {"prey": wolf}}))
		await physics_frames(20)
		expect_near(speed_of(hero).x, 5.0, 0.01)
		expect_state(owner, "Run")
		await physics_frames(40)
		expect_state(owner, "Calm")
		expect_events(owner, ["Safe"])
		expect_near(where(hero).x, 4.05, 0.06))


func test_it_stays_wary_when_told_to() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character(1.0)
		var wolf := spot(0.0, 0.0, "Wolf")
		var owner := after(hero, wolf, [flee({"finish_when_safe": false})])
		await physics_frames(60)
		expect_events(owner, ["Safe"])
		wolf.set(&"position", at(3.0, 0.0))
		await physics_frames(60)
		expect_near(where(hero).x, 7.05, 0.1)
		expect_events(owner, ["Safe"])
		wolf.free()
		await physics_frames(2)
		expect_events(owner, [])
		expect_near(speed_of(hero).x, 0.0, 0.001))


func test_on_top_of_it_there_is_a_way_out() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		after(hero, spot(0.0, 3.0, "Wolf"), [flee({"turn_to_face": false})])
		await physics_frames(2)
		var velocity := speed_of(hero)
		velocity.y = 0.0
		expect_near((velocity - (Vector3(0, 0, 5) if in_3d else Vector3(5, 0, 0))).length(), 0.0, 0.01))


func test_what_is_set_up_wrong_is_told() -> void:
	for wrong: Array in [
		[{"target_variable": &""}, "Hero has no Perception node to find anything with, and no Target Variable is named"],
		[{"target_variable": &"nobody"}, "there is no variable called nobody, so there is nothing to deal with."],
		[{"target_variable": &"number"}, "number holds 5, which is not a node, so there is nothing to deal with."],
		[{"body_path": ^"../Nobody"}, "there is no node at ../Nobody"],
	]:
		for made: Resource in [chase(wrong[0]), flee(wrong[0])]:
			var hero := character(0.0, 20.0)
			await expect_warns_in_physics(made, wrong[1], {"under": hero, "variables": {"number": 5, "prey": null}})
			hero.free()


func test_what_has_no_place_is_told() -> void:
	for made: Resource in [chase(), flee(), kind(SCKeepApartAction, {"crowd_group": &"crowd"})]:
		var thing := add(Node.new(), "Thing")
		await expect_warns_in_physics(made, "a 2D or 3D node", {"under": thing, "variables": {"prey": null}})
		thing.free()
	var owner := after(character(0.0, 20.0), add(Node.new(), "Thing"), [chase()])
	await physics_frames(3)
	expect_warning("Thing is a Node, which has no place in the world, so it cannot stand for one.")
	expect_state(owner, "Walk")


func test_odd_targets_and_bodies_harm_nobody() -> void:
	await on_both_sides(func() -> void:
		ground()
		var other_side: Node = body() if in_3d else body_3d()
		var far_off := spot(0.0, 0.0, "Nowhere")
		far_off.set(&"position", Vector3(NAN, 0, INF) if in_3d else Vector2(NAN, INF))
		for prey: Node in [other_side, far_off]:
			for action: Resource in [chase(), flee()]:
				var hero := character()
				var owner := walk(hero, [action], {"variables": {"prey": prey, "pace": NAN}})
				await physics_frames(3)
				expect((hero.get(&"velocity") as Variant).is_finite())
				owner.set_value(&"prey", hero)
				await physics_frames(2)
				hero.free()
		var hero := character()
		var fleeing := flee({"body_path": ^"../../Hero"})
		var ends := start(machine([state("Run", [fleeing], {"FINISHED": "Done"}), state("Done")], {"variables": {"prey": hero}, "under": add(Node.new())}))
		hero.free()
		await physics_frames(3)
		expect_state(ends, "Done"))


func test_lines() -> void:
	expect_lines(SCChaseAction, {
		"Chase what it senses, stopping 1.5 short": {},
		"Chase [prey], stopping 2 short": {"target_variable": &"prey", "stop_within": 2.0},
	})
	expect_lines(SCFleeAction, {"Run away until 15 clear": {}})
	expect_equal(kind(SCChaseAction).holds_its_state(), "Tick Finish On Arrival, move on with an event sent after a Delay")
	expect_equal(kind(SCChaseAction, {"finish_on_arrival": true}).holds_its_state(), "")
	expect_equal(kind(SCFleeAction, {"finish_when_safe": false}).holds_its_state(), "Tick Finish When Safe, move on with an event sent after a Delay")
