extends PhysicsStory
## Holding a distance and circling: each wants a part of one velocity.


func keep(settings: Dictionary = {}) -> Resource:
	var sized := {"target_variable": &"prey", "no_closer_than": far(2.0), "no_further_than": far(3.5), "spread": 0.0, "speed": far(3.0)}
	return kind(SCKeepDistanceAction, sized.merged(settings, true))


func strafe(settings: Dictionary = {}) -> Resource:
	var sized := {"target_variable": &"prey", "speed": far(2.5), "change_direction_every": 0.0, "way": SCStrafeAroundAction.CLOCKWISE, "falls": false}
	return kind(SCStrafeAroundAction, sized.merged(settings, true))


func after(body: Node, prey: Node, actions: Array) -> SCMachine:
	return walk(body, actions, {"variables": {"prey": prey}})


## Its velocity toward something to the right, and across it, clockwise.
func parts_of(body: Node) -> Vector2:
	var velocity := speed_of(body)
	return Vector2(velocity.x, -velocity.z if in_3d else velocity.y)


func test_it_comes_nearer_backs_off_and_settles() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var prey := spot(6.0, 0.0, "Prey")
		var owner := after(hero, prey, [keep()])
		await physics_frames(10)
		expect_near(speed_of(hero).x, 3.0, 0.001)
		expect_events(owner, [])
		await physics_frames(80)
		expect_near(where(hero).x, 2.5, 0.06)
		expect_near(speed_of(hero).x, 0.0, 0.0001)
		expect_events(owner, ["InPosition"])
		prey.set(&"position", at(where(hero).x + 1.0, 0.0))
		await physics_frames(5)
		expect_near(speed_of(hero).x, -3.0, 0.001)
		await physics_frames(60)
		expect_near(where(prey).x - where(hero).x, 2.0, 0.06)
		expect_events(owner, ["InPosition"])
		expect_state(owner, "Walk"))


func test_it_faces_the_target_while_it_backs_off() -> void:
	in_3d = true
	var hero: CharacterBody3D = character(0.0, 20.0)
	after(hero, spot(0.5, 20.0, "Prey"), [keep({"falls": false})])
	await physics_frames(60)
	expect(where(hero).x < -1.0)
	expect_near(hero.global_rotation.y, -PI / 2.0, 0.02)


func test_each_of_a_crowd_has_a_ring_of_its_own() -> void:
	await on_both_sides(func() -> void:
		var prey := spot(50.0, 20.0, "Prey")
		var further: Dictionary[float, bool] = {}
		for i in 8:
			var hero := character(3.0 * i, 20.0)
			var owner := after(hero, prey, [keep({"falls": false, "spread": far(0.5)})])
			var drawn: float = owner.slot(0)["further"] / far(1.0)
			expect(drawn >= 0.0 and drawn <= 0.5)
			further[drawn] = true
		expect_equal(further.size(), 8))


func test_circling_goes_across_and_changes_its_mind() -> void:
	await on_both_sides(func() -> void:
		for way: Array in [[SCStrafeAroundAction.CLOCKWISE, 2.5], [SCStrafeAroundAction.ANTICLOCKWISE, -2.5]]:
			var hero := character(0.0, 20.0)
			var owner := after(hero, spot(50.0, 20.0 + TALL / 2.0, "Prey"), [strafe({"way": way[0], "change_direction_every": 0.5, "random_extra": 0.0})])
			await physics_frames(10)
			expect_near(parts_of(hero), Vector2(0.0, way[1]), 0.05)
			await physics_frames(30)
			expect_near(parts_of(hero), Vector2(0.0, -float(way[1])), 0.05, "it has not turned round")
			owner.stop()
			hero.free())


func test_a_radius_is_held() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 20.0)
		var prey := spot(5.0, 20.0 + TALL / 2.0 + 0.01, "Prey")
		after(hero, prey, [strafe({"radius": far(3.0)})])
		await physics_frames(200)
		expect_near((where(hero) - where(prey)).length(), 3.0, 0.12)
		expect_near(speed_of(hero).length(), 2.5, 0.05))


func test_two_that_drive_one_body_share_its_velocity() -> void:
	await on_both_sides(func() -> void:
		var prey := spot(50.0, 20.0 + TALL / 2.0 + 0.01, "Prey")
		var chase := kind(SCChaseAction, {"target_variable": &"prey", "speed": far(4.0), "falls": false})
		for actions: Array in [[chase, strafe()], [strafe(), keep({"falls": false, "speed": far(4.0)})], [keep({"falls": false, "speed": far(4.0)}), strafe()]]:
			var hero := character(0.0, 20.0)
			var owner := after(hero, prey, actions)
			await physics_frames(10)
			expect_near(parts_of(hero), Vector2(4.0, 2.5), 0.1, str(actions))
			var before := where(hero)
			await physics_frames(1)
			expect((where(hero) - before).length() * 60.0 < 4.8, "it was moved twice: %s" % str(actions))
			owner.stop()
			hero.free())


func test_what_an_earlier_direction_left_behind_dies_away() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 20.0)
		var prey := spot(50.0, 20.0 + TALL / 2.0 + 0.01, "Prey")
		after(hero, prey, [keep({"falls": false})])
		await physics_frames(5)
		prey.set(&"position", at(-50.0, 20.0 + TALL / 2.0 + 0.01))
		await physics_frames(2)
		expect_near(parts_of(hero), Vector2(-3.0, 0.0), 0.01)
		if in_3d:
			prey.set(&"position", Vector3(0, 20.81, -50))
		else:
			prey.set(&"position", at(0.0, 70.0))
		await physics_frames(3)
		expect_near(parts_of(hero), Vector2(0.0, 3.0), 0.02, "it slides on")
		expect_equal((hero.get_meta(&"quillstead_drive") as Array).slice(1, 3), [1, 1]))


func test_what_is_set_up_wrong_is_told() -> void:
	for made: Array in [[keep(), "Keep Distance"], [strafe(), "Strafe Around"]]:
		var ghost := spot(0.0, 0.0, "Ghost")
		var prey := spot(20.0, 0.0, "Prey")
		var wrong := "%s on Machine: Ghost is not a character body, and only a CharacterBody2D or CharacterBody3D can be moved this way." % made[1]
		await expect_warns_in_physics(made[0], wrong, {"under": ghost, "variables": {"prey": prey}})
		expect_equal(where(ghost), Vector3.ZERO)
		ghost.free()
		prey.free()
		made[0].target_variable = &""
		await expect_warns_in_physics(made[0], "%s on Machine: Hero has no Perception node" % made[1], {"under": character(9.0)})
		stage.get_node(^"Hero").free()


func test_a_target_that_goes_or_stands_in_it_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var prey := spot(9.0, 0.0, "Prey")
		var frees := act("frees").entering(func() -> void: hero.free())
		var owner := start(machine([
			state("Walk", [keep(), strafe({"radius": far(3.0), "falls": true})], {"InPosition": "Gone"}),
			state("Gone", [frees]),
		], {"under": hero, "variables": {"prey": prey}}))
		await physics_frames(5)
		prey.free()
		await physics_frames(3)
		expect_near(speed_of(hero).x, 0.0, 0.001)
		for odd: Variant in [hero, body_3d() if not in_3d else body()]:
			owner.set_value(&"prey", odd)
			await physics_frames(3)
			expect(where(hero).is_finite(), "a target in the other dimension")
		owner.set_value(&"prey", spot(where(hero).x + 2.5, 0.0, "Last"))
		await physics_frames(20)
		expect(not is_instance_valid(hero)))


func test_lines() -> void:
	expect_lines(SCKeepDistanceAction, {"Keep 2 to 3.5 away": {}})
	expect_lines(SCStrafeAroundAction, {"Circle it at 2.5": {}, "Circle it at 4 out": {"radius": 4.0}, "Circle it at [pace]": {"speed_variable": &"pace"}})
