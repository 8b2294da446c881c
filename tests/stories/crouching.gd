extends PhysicsStory
## A character gets shorter and its own height again, with its feet where they were.


func crouch(settings: Dictionary = {}) -> SCCrouchAction:
	return kind(SCCrouchAction, {
		"crouched_height": far(0.8), "room_above_event": &"room", "no_room_above_event": &"no_room", "stood_up_event": &"stood",
	}.merged(settings, true))


func shape_of(body: Node) -> Node:
	return body.get_node(^"Shape")


func height_of(body: Node) -> float:
	var shape: Resource = shape_of(body).get(&"shape")
	return (float(shape.get(&"size").y) if &"size" in shape else float(shape.get(&"height"))) / far(1.0)


func feet_of(body: Node) -> float:
	return where(shape_of(body)).y - height_of(body) / 2.0


func test_it_is_shorter_while_the_state_runs() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var designed: Resource = shape_of(hero).get(&"shape")
		var feet := feet_of(hero)
		var owner := start(machine([state("Duck", [crouch()], {"up": "Stand"}), state("Stand")], {"under": hero}))
		expect_near(height_of(hero), 0.8, 0.001)
		expect_near(feet_of(hero), feet, 0.001)
		expect(shape_of(hero).get(&"shape") != designed and is_equal_approx(designed.get(&"size").y, far(TALL)), "the shape's own resource was changed")
		await physics_frames(3)
		expect_events(owner, ["room"])
		owner.send_event("up")
		expect(shape_of(hero).get(&"shape") == designed)
		expect_near(feet_of(hero), feet, 0.001)
		expect_events(owner, ["up"]))


func test_every_shape_with_a_height() -> void:
	for made: Array in [
		[CapsuleShape2D.new(), 1.0], [CapsuleShape3D.new(), 0.5], [CylinderShape3D.new(), 0.5], [BoxShape3D.new(), 0.5], [RectangleShape2D.new(), 10.0],
	]:
		var shape: Resource = made[0]
		in_3d = shape is Shape3D
		var hero := character(0.0, 3.0)
		shape_of(hero).set(&"shape", shape)
		# Upside down its feet are at the other end.
		shape_of(hero).set(&"rotation", Vector3(PI, 0, 0) if in_3d else PI)
		var feet := feet_of(hero)
		var owner := walk(hero, [crouch({"crouched_height": made[1]})])
		expect_near(height_of(hero) * far(1.0), made[1], 0.001, shape.get_class())
		expect_near(feet_of(hero), feet, 0.001, shape.get_class())
		owner.free()
		expect(shape_of(hero).get(&"shape") == shape, shape.get_class())
		hero.free()


func test_room_overhead_and_standing_up_once_the_key_is_let_go() -> void:
	await on_both_sides(func() -> void:
		ground()
		var low := block(0.0, 1.5, 2.0, 1.0, "Beam")
		var hero := character(-3.0)
		var owner := walk(hero, [crouch({"stays_while_held": &"ui_down"})])
		Input.action_press(&"ui_down")
		await physics_frames(3)
		expect_events(owner, ["room"])
		hero.set(&"position", at(0.0, TALL / 2.0 + 0.01))
		await physics_frames(2)
		expect_events(owner, ["no_room"])
		Input.action_release(&"ui_down")
		await physics_frames(5)
		expect_near(height_of(hero), 0.8, 0.001, "it stood up under the beam")
		# It stands still all the while.
		low.free()
		await physics_frames(3)
		expect_events(owner, ["room", "stood"])
		expect_near(height_of(hero), TALL, 0.001)
		owner.free())


func test_states_that_overlap_end_where_they_began() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 3.0)
		var first := walk(hero, [crouch({"crouched_height": far(1.0)})])
		var second := walk(hero, [crouch({"crouched_height": far(0.5)})])
		expect_near(height_of(hero), 0.5, 0.001)
		first.free()
		expect_near(height_of(hero), 0.5, 0.001, "the one that is left still crouches")
		second.free()
		expect_near(height_of(hero), TALL, 0.001)
		expect_near(feet_of(hero), 3.01, 0.001))


func test_what_goes_under_way_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		ground()
		for gone: String in ["shape", "body", "out of the scene"]:
			var hero := character(0.0)
			var owner := start(machine([state("Duck", [crouch({"body_path": ^"../Hero", "stays_while_held": &"ui_down"})])], {"under": stage}))
			await physics_frames(2)
			if gone == "shape":
				shape_of(hero).free()
			elif gone == "body":
				hero.free()
			else:
				stage.remove_child(hero)
			await physics_frames(2)
			owner.free()
			if gone != "body":
				hero.free()
		# Whoever hears that there is room may leave the state and take everything away.
		var hero := character(0.0)
		var made := start(machine([state("Duck", [crouch()], {"room": "Gone"}), state("Gone", [act("gone").entering(func() -> void: hero.queue_free())])],
			{"under": hero}))
		await physics_frames(3)
		expect(not is_instance_valid(made)))


func test_what_it_says() -> void:
	expect_lines(SCCrouchAction, {"Crouch to 1 tall": {}})
	expect_equal((kind(SCCrouchAction, {"crouched_height_variable": &"low"}) as SCCrouchAction).summary(), "Crouch to [low] tall")
	await on_both_sides(func() -> void:
		ground()
		block(0.0, 1.5, 2.0, 1.0, "Beam")
		var hero := character()
		var owner := walk(hero, [crouch()])
		await physics_frames(3)
		owner.stop()
		await frames(1)
		expect_warning("Crouch on Machine: Hero stood up with something overhead in the way, so it may be pushed out of the scenery. Leave")
		expect_near(height_of(hero), TALL, 0.001)
		# Of a scene that goes as a whole nothing is said.
		owner.start()
		await physics_frames(3)
		hero.free()
		hero = character(9.0)
		expect_warns(crouch({"crouched_height": far(3.0)}), "Crouch on Machine: Hero is %s tall and was asked to crouch to %s, which is no shorter" % [
			"1.6" if in_3d else "51.2", "3" if in_3d else "96"], {"under": hero})
		expect_warns(crouch({"crouched_height": NAN}), "which is no height", {"under": hero})
		expect_warns(crouch({"shape_path": ^"../.."}), "not a CollisionShape2D or a CollisionShape3D", {"under": hero})
		shape_of(hero).set(&"shape", SphereShape3D.new() if in_3d else CircleShape2D.new())
		expect_warns(crouch(), "Crouch on Machine: Hero's shape has no height to change. A capsule, a cylinder", {"under": hero})
		shape_of(hero).free()
		expect_warns(crouch(), "Crouch on Machine: Hero has no CollisionShape under it, and a character with no shape", {"under": hero}))
