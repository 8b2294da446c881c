extends PhysicsStory
## A walking character is helped up steps, and pulls itself up onto ledges.


func walker(hero: Node, step: Dictionary = {}, speed: float = 3.0) -> SCMachine:
	return walk(hero, [
		kind(SCStepUpAction, {"tallest_step": far(0.3), "stepped_event": &"stepped"}.merged(step, true)),
		kind(SCMoveCharacterAction, {"speed": far(speed), "direction_variable": &"stick"}),
	], {"variables": {"stick": Vector2(1, 0)}})


## Steps upward to the right, each so tall and a metre deep, the first at 1.
func stairs(count: int, tall: float) -> void:
	for i in count:
		block(1.5 + i, tall * (i + 1) - 2.0, 1.0 if i < count - 1 else 40.0, 4.0, "Step")
		if i == count - 1:
			(stage.get_child(-1) as Node).set(&"position", at(21.0 + i, tall * (i + 1) - 2.0))


func capsule(x: float) -> Node:
	var hero := character(x)
	var shape: Resource = CapsuleShape3D.new() if in_3d else CapsuleShape2D.new()
	shape.set(&"radius", far(WIDE / 2.0))
	shape.set(&"height", far(TALL))
	hero.get_node(^"Shape").set(&"shape", shape)
	return hero


func test_it_climbs_from_a_standstill_at_any_physics_rate() -> void:
	for rate: int in [60, 120]:
		await on_both_sides(func() -> void:
			Engine.physics_ticks_per_second = rate
			ground()
			stairs(1, 0.3)
			for make: Callable in [character, capsule]:
				var hero: Node = make.call(0.59)
				var owner := walker(hero)
				owner.set_value(&"stick", Vector2())
				await physics_frames(5)
				owner.set_value(&"stick", Vector2(1, 0))
				await physics_frames(rate / 2)
				expect_near(where(hero).y, TALL / 2.0 + 0.3, 0.02, "at %d" % rate)
				expect_near(where(hero).x, 2.1, 0.4, "at %d" % rate)
				expect_events(owner, ["stepped"])
				hero.free()
			Engine.physics_ticks_per_second = 60)


func test_stairs_bumps_and_walls() -> void:
	await on_both_sides(func() -> void:
		ground()
		stairs(4, 0.3)
		for make: Callable in [character, capsule]:
			var hero: Node = make.call(0.0)
			var owner := walker(hero)
			await physics_frames(150)
			expect_near(where(hero).y, TALL / 2.0 + 1.2, 0.02, "four steps up")
			expect_near(where(hero).x, 7.5, 0.5, "the steps do not take its speed")
			expect_events(owner, ["stepped", "stepped", "stepped", "stepped"])
			hero.free())
	# How tall, the limit, whether it climbs.
	for row: Array in [[0.1, 1.0, true], [0.05, 0.3, true], [0.3, 0.26, false], [0.6, 0.3, false], [0.6, 0.0, false]]:
		await on_both_sides(func() -> void:
			ground()
			stairs(1, row[0])
			for make: Callable in [character, capsule]:
				var hero: Node = make.call(0.0)
				walker(hero, {"tallest_step": far(row[1])})
				await physics_frames(60)
				expect_equal(where(hero).x > 2.0, row[2], "%s %s" % [row, hero])
				hero.free())


func test_a_runner_who_gathers_speed_slowly_keeps_it_over_a_step() -> void:
	await on_both_sides(func() -> void:
		ground()
		stairs(1, 0.3)
		for make: Callable in [character, capsule]:
			var hero: Node = make.call(-3.0)
			walk(hero, [
				kind(SCStepUpAction, {"tallest_step": far(0.3)}), kind(SCMoveCharacterAction, {"speed": far(3.0), "acceleration": far(2.0), "direction": Vector2(1, 0)}),
			])
			while where(hero).x < 1.5:
				await physics_frames(1)
			expect(speed_of(hero).x > 2.95, "%s goes on at %s" % [hero, speed_of(hero).x])
			hero.free())


func test_a_roof_stops_it_only_where_the_head_meets_it() -> void:
	await on_both_sides(func() -> void:
		ground()
		stairs(2, 0.3)
		# Over the first step there is room to stand, and none over the second; a limit of a metre would meet it from the ground.
		block(2.0, 2.0 + 2.0, 8.0, 4.0, "Roof")
		var hero := character(0.0)
		walker(hero, {"tallest_step": far(1.0)})
		await physics_frames(90)
		expect_near(where(hero).y, TALL / 2.0 + 0.3, 0.02)
		expect_near(where(hero).x, 2.0 - WIDE / 2.0, 0.05))


func test_beside_a_part_too_tall_to_climb() -> void:
	in_3d = true
	ground()
	stairs(1, 0.3)
	# A wall along the way it goes, which it is pressed against.
	var wall := block(0.0, 2.0, 20.0, 4.0, "Wall")
	wall.set(&"position", Vector3(0, 2, 10.0 + WIDE / 2.0 + 0.01))
	for make: Callable in [character, capsule]:
		var hero: Node = make.call(0.0)
		var owner := walker(hero)
		owner.set_value(&"stick", Vector2(1, 0.7))
		await physics_frames(90)
		expect_near(where(hero).y, TALL / 2.0 + 0.3, 0.02)
		expect(where(hero).x > 2.0, "stuck at %s" % where(hero))
		hero.free()


func face_right(hero: Node) -> void:
	if in_3d:
		hero.set(&"rotation", Vector3(0, -PI / 2.0, 0))


func ledge(settings: Dictionary = {}) -> SCLedgeGrabAction:
	return kind(SCLedgeGrabAction, {
		"reach_up": far(1.2), "over_the_edge": far(0.6), "grabbed_event": &"grabbed", "no_ledge_event": &"none",
	}.merged(settings, true))


func test_a_ledge_is_climbed_in_its_time() -> void:
	await on_both_sides(func() -> void:
		ground()
		block(6.0, 0.5, 10.0, 1.0, "Ledge")
		var hero := character(0.59)
		var owner := start(machine([
			state("Run", [kind(SCMoveCharacterAction, {"speed": far(3.0), "direction": Vector2(1, 0)})], {"grab": "Climb"}),
			state("Climb", [ledge()], {"FINISHED": "Up"}), state("Up", [kind(SCMoveCharacterAction)]),
		], {"under": hero}))
		await physics_frames(10)
		owner.send_event("grab")
		expect_events(owner, ["grab", "grabbed"])
		await physics_frames(10)
		expect_state(owner, "Climb")
		expect(where(hero).y > TALL / 2.0 + 0.3 and where(hero).x < 0.7, "up first: %s" % where(hero))
		await physics_frames(13)
		expect_state(owner, "Up")
		expect_near(where(hero).x, 1.0 - WIDE / 2.0 + 0.6, 0.03)
		expect_near(where(hero).y, TALL / 2.0 + 1.0, 0.02)
		await physics_frames(10)
		expect(hero.call(&"is_on_floor"), "it does not stand"))


func test_from_a_wall_slide_onto_a_thin_wall_and_no_farther_than_it_reaches() -> void:
	await on_both_sides(func() -> void:
		# How far above the feet, how thick, whether it is within reach.
		for row: Array in [[1.15, 0.3, true], [1.0, 5.0, true], [1.3, 5.0, false], [4.0, 5.0, false]]:
			var wall := block(1.0 + row[1] / 2.0, 0.0, row[1], 10.0, "Wall")
			var hero := character(1.0 - WIDE / 2.0 - 0.05, 5.0 - row[0])
			# Sliding down, no longer pushed against it, but looking at it.
			hero.set(&"velocity", at(0.0, -1.5))
			face_right(hero)
			var owner := walk(hero, [ledge({"seconds": 0.0})])
			expect_events(owner, ["grabbed" if row[2] else "none"])
			if row[2]:
				expect_near(where(hero).y, 5.0 + TALL / 2.0, 0.03, str(row))
				expect(where(hero).x > 0.7, str(row))
			hero.free()
			wall.free()
			await physics_frames(1))


func test_what_goes_under_way_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		ground()
		stairs(1, 0.3)
		for limit: float in [NAN, INF, -1.0, 1.0e20]:
			var hero := character(0.0)
			walker(hero, {"tallest_step": limit})
			await physics_frames(30)
			expect((hero.get(&"position") as Variant).is_finite(), "at %s" % limit)
			walk(hero, [ledge({"reach_up": limit, "over_the_edge": limit, "seconds": limit})])
			await physics_frames(3)
			expect((hero.get(&"position") as Variant).is_finite(), "at %s" % limit)
			hero.free()
		for gone: String in ["body", "shape", "out of the scene"]:
			var hero := character(0.59)
			face_right(hero)
			var owner := start(machine([state("Climb", [ledge({"body_path": ^"../Hero"})], {"FINISHED": "Up"}), state("Up")], {"under": stage}))
			expect_state(owner, "Climb")
			if gone == "body":
				hero.free()
			elif gone == "shape":
				hero.get_node(^"Shape").free()
			else:
				stage.remove_child(hero)
			await physics_frames(30)
			expect_state(owner, "Up")
			owner.free()
			if gone != "body":
				hero.free())


func test_what_they_say() -> void:
	expect_lines(SCStepUpAction, {"Step up onto anything 0.3 or lower": {}})
	expect_equal((kind(SCStepUpAction, {"tallest_step_variable": &"knee"}) as SCStepUpAction).summary(), "Step up onto anything [knee] or lower")
	expect_lines(SCLedgeGrabAction, {"Climb a ledge up to 1.2 higher": {}})
	expect_warns(kind(SCStepUpAction), "Step Up on Machine: Stage is not a character body, and only a CharacterBody2D or CharacterBody3D can be helped up a step.")
	expect_warns(kind(SCStepUpAction, {"body_path": ^"../Nobody"}), "there is no node at ../Nobody")
	expect_warns(kind(SCLedgeGrabAction), "Ledge Grab on Machine: Stage is not a character body, and only a CharacterBody2D or CharacterBody3D can climb a ledge.")
	expect_warns(kind(SCLedgeGrabAction, {"body_path": ^"../Nobody"}), "there is no node at ../Nobody")
