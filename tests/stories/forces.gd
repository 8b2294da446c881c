extends PhysicsStory
## Apply Force: shoves, steady pushes and twists.


func push(settings: Dictionary = {}) -> SCMachineAction:
	return kind(SCApplyForceAction, settings)


## A rigid box in the air that nothing else moves.
func box(name: String = "Crate", x: float = 0.0) -> Node:
	var made := crate(x, 50.0, 1.0, name)
	made.set(&"gravity_scale", 0.0)
	for damp: StringName in [&"linear_damp_mode", &"angular_damp_mode"]:
		made.set(damp, RigidBody3D.DAMP_MODE_REPLACE)
	return made


func spin_of(body: Node) -> float:
	return (body.get(&"angular_velocity") as Vector3).z if in_3d else body.get(&"angular_velocity")


func test_a_shove_is_done_at_once() -> void:
	await on_both_sides(func() -> void:
		var light := box()
		var heavy := box("Heavy", 5.0)
		heavy.set(&"mass", 4.0)
		var lifted := box("Lifted", 10.0)
		lifted.set(&"mass", 4.0)
		await physics_frames(2)
		for body: Node in [light, heavy]:
			expect_state(play(push({"force": at(0, 4)}), {"FINISHED": "Done"}, {"under": body}), "Done")
		play(push({"force": at(0, 4), "whatever_its_mass": true}), {}, {"under": lifted})
		await physics_frames(2)
		expect_near(light.get(&"linear_velocity"), at(0, 4), far(0.001))
		expect_near(heavy.get(&"linear_velocity"), at(0, 1), far(0.001), "4 kg")
		expect_near(lifted.get(&"linear_velocity"), at(0, 4), far(0.001), "whatever its mass"))


func test_a_steady_push_goes_on_until_the_state_is_left() -> void:
	await on_both_sides(func() -> void:
		var body := box()
		await physics_frames(2)
		var owner := play([push({"push": SCApplyForceAction.A_STEADY_PUSH, "force": at(3, 0)})], {"calm": "Done"}, {"under": body})
		await physics_frames(61)
		expect_near(body.get(&"linear_velocity"), at(3, 0), far(0.11), "a second of 3 a second")
		expect_after(owner, &"calm", "Done")
		var now: Variant = body.get(&"linear_velocity")
		await physics_frames(10)
		expect_near(body.get(&"linear_velocity"), now, far(0.06), "it goes on"))


func test_a_shove_of_a_body_that_is_not_there_yet_is_not_lost() -> void:
	await on_both_sides(func() -> void:
		for when: String in ["outside the tree", "just added", "long there"]:
			var body := box()
			var pushes := [push({"force": at(0, 2), "at_offset": Vector3(far(0.5), 0, 0)}), push({"force": at(1, 0)})]
			var rest := state("Rest", [act("rest").ticking()], {"go": "Push"})
			var owner := start(machine([rest, state("Push", pushes, {"FINISHED": "Done"}), state("Done")]))
			owner.target = body
			if when == "long there":
				await physics_frames(5)
			elif when == "outside the tree":
				stage.remove_child(body)
			expect_after(owner, &"go", "Done")
			if when == "outside the tree":
				await physics_frames(2)
				stage.add_child(body)
			await physics_frames(4)
			expect_near(body.get(&"linear_velocity"), at(1, 2), far(0.001), when)
			# A lever of half a metre at 1 kg in a box of 1 m, which is a sixth as hard to turn. In 2D the clock runs the other way.
			expect_near(spin_of(body), 6.0 if in_3d else -6.0, 0.1, when)
			body.free())


func test_where_it_takes_hold() -> void:
	await on_both_sides(func() -> void:
		var tip := spot(0.5, 50.0, "Tip")
		var by_node := box("ByNode")
		var its_own := box("ItsOwn", 5.0)
		its_own.set(&"rotation_degrees", Vector3(0, 0, -90) if in_3d else 90.0)
		await physics_frames(2)
		play(push({"force": at(0, 2), "at_path": NodePath("../../" + tip.name)}), {}, {"under": by_node})
		# Turned to the right, its own top is the world's right, and its own left the world's top.
		play(push({"force": at(0, 2), "at_offset": Vector3(far(-0.5), 0, 0), "space": SCApplyForceAction.LOCAL}), {}, {"under": its_own})
		await physics_frames(3)
		expect_near(by_node.get(&"linear_velocity"), at(0, 2), far(0.001))
		expect_near(spin_of(by_node), 6.0 if in_3d else -6.0, 0.1, "at the tip")
		expect_near(its_own.get(&"linear_velocity"), at(2, 0), far(0.01), "its own way")
		expect_near(spin_of(its_own), -6.0 if in_3d else 6.0, 0.1, "on its own left"))


func test_a_twist_spins_it() -> void:
	await on_both_sides(func() -> void:
		var body := box()
		await physics_frames(2)
		var zero: Variant = at(0, 0)
		# A square of 1 kg and 32 pixels, or a cube of 1 m, is as hard to turn as a sixth of its side squared.
		play(push({"force": zero, "twist": far(1.0) * far(1.0) / 6.0 * 2.0, "twist_axis": Vector3(0, 0, 1)}), {}, {"under": body})
		await physics_frames(3)
		expect_near(spin_of(body), 2.0, 0.05))


func test_a_character_is_pushed_through_its_velocity() -> void:
	await on_both_sides(func() -> void:
		ground()
		var still := character(0.0, 20.0, "Still")
		play(push({"force": at(3, 1)}), {}, {"under": still})
		expect_near(speed_of(still), Vector3(3, 1, 0), 0.001)
		var windy := character(3.0, 20.0, "Windy")
		walk(windy, [push({"push": SCApplyForceAction.A_STEADY_PUSH, "force": at(6, 0)})])
		await physics_frames(31)
		expect_near(speed_of(windy).x, 3.0, 0.15, "half a second of 6 a second")
		var hero := character(-10.0)
		walk(hero, [kind(SCMoveCharacterAction, {"speed": far(5.0)})])
		await physics_frames(10)
		var before := where(hero).x
		play(push({"force": at(5, 0)}), {}, {"under": hero})
		await physics_frames(40)
		expect_near(speed_of(hero).x, 0.0, 0.001, "its own speed is its own")
		# In full for 0.15 seconds, and half of it for as long again.
		expect_near(where(hero).x - before, 5.0 * 0.225, 0.2, "knocked back while it walks"))


func test_shoves_every_so_often() -> void:
	await on_both_sides(func() -> void:
		var body := box()
		await physics_frames(2)
		walk(body, [kind(SCApplyForceAction, {"force": at(1, 0), "run_mode": SCMachineAction.EVERY_FRAME, "update_interval": 0.5})])
		await physics_frames(70)
		expect_near(body.get(&"linear_velocity"), at(3, 0), far(0.01), "at 0, at 0.5 and at 1 second"))


func test_what_cannot_be_pushed_is_told() -> void:
	expect_warns(push(), "Spot is a Marker2D, not a RigidBody or a character body", {"under": spot(0.0, 0.0)})
	var body := box()
	expect_warns(push({"force": "hard"}), "Force holds a String, which is no place and no direction", {"under": body})
	expect_warns(push({"twist": NAN}), "Twist holds a number that is none", {"under": body})
	expect_warns(push({"at_path": ^"../Nobody"}), "there is no node at ../Nobody", {"under": body})
	expect_warns(push({"twist": 2.0}), "which no twist turns, so it is only pushed", {"under": character(9.0)})
	add(Node3D.new(), "Deep")
	expect_warns(push({"at_path": ^"../../Deep"}), "so the push took hold at the middle", {"under": body})
	body.set(&"freeze", true)
	expect_warns(push(), "Crate is frozen, so no push moves it", {"under": body})


func test_lines() -> void:
	expect_lines(SCApplyForceAction, {
		"Shove Self by (0, 5, 0)": {},
		"Push Ship steadily by (0, 0, -9), its own way, at Engine": {
			"push": 1, "body_path": ^"../Ship", "force": Vector3(0, 0, -9), "space": 1, "at_path": ^"../Ship/Engine",
		},
		"Shove Self by (0, 5, 0), with a twist of 3": {"twist": 3.0},
	})
	expect_hidden(push(), ["twist_axis"])
	expect_hidden(push({"push": SCApplyForceAction.A_STEADY_PUSH}), ["run_mode"])
	expect_shown(push({"twist": -1.0}), ["twist_axis", "run_mode"])
