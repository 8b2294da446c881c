extends PhysicsStory
## Set Velocity and Get Velocity, on rigid and character bodies.


func set_velocity(settings: Dictionary = {}) -> SCMachineAction:
	return kind(SCSetVelocityAction, settings)


## The bodies that the kinds work on, without gravity.
func movers() -> Array[Node]:
	var box := crate(0.0, 50.0)
	box.set(&"gravity_scale", 0.0)
	box.set(&"linear_damp_mode", RigidBody3D.DAMP_MODE_REPLACE)
	return [box, character(8.0, 50.0)]


func velocity_of(body: Node) -> Variant:
	return body.get(&"velocity") if body is CharacterBody2D or body is CharacterBody3D else body.get(&"linear_velocity")


func to(x: float, y: float, z: float = 0.0) -> Variant:
	return at(x, y, z)


func test_velocities_are_set_whole_and_in_parts() -> void:
	await on_both_sides(func() -> void:
		var a_speed := SCSetVelocityAction.A_SPEED_AND_A_DIRECTION
		for body in movers():
			await physics_frames(3)
			var rows := [
				[{"velocity": to(3, 4)}, to(3, 4), "the whole of it"],
				[{"velocity": to(1, 9), "set_y": false}, to(1, 4), "without y"],
				[{"velocity": to(2, -2), "how": SCSetVelocityAction.ADD}, to(3, 2), "added"],
				[{"velocity": to(9, 1), "how": SCSetVelocityAction.ADD, "set_x": false}, to(3, 3), "y added"],
				[{"what": a_speed, "velocity": to(0, 7), "speed": far(2.0)}, to(0, 2), "a speed and a direction"],
				[{"what": a_speed, "velocity": to(0, 0), "speed": far(6.0)}, to(0, 6), "the way it goes"],
				[{"what": a_speed, "velocity": to(1, 0), "speed": far(5.0), "how": SCSetVelocityAction.ADD}, to(5, 6), "a speed added"],
			]
			for row: Array in rows:
				var owner := play(set_velocity(row[0]), {"FINISHED": "Done"}, {"under": body})
				expect_state(owner, "Done")
				expect_near(velocity_of(body), row[1], far(0.001), "%s of %s" % [row[2], body.name])
				owner.free())


func test_its_own_way_is_the_way_it_points() -> void:
	await on_both_sides(func() -> void:
		for body in movers():
			var ahead: Variant = Vector3(0, 0, -5) if in_3d else Vector2(5, 0)
			var in_world: Variant = Vector3(-5, 0, 0) if in_3d else Vector2(0, 5)
			body.set(&"rotation_degrees", Vector3(0, 90, 0) if in_3d else 90.0)
			await physics_frames(2)
			var asked := kind(SCGetVelocityAction, {"space": SCGetVelocityAction.LOCAL, "store_velocity_in": &"answer", "store_forward_in": &"ahead"})
			play(set_velocity({"velocity": ahead, "space": SCSetVelocityAction.LOCAL}), {}, {"under": body})
			expect_near(velocity_of(body), in_world, 0.001, body.name)
			var told := results_of(asked, {"ahead": 0.0}, {"under": body})
			expect_near(told[&"answer"], ahead, 0.001, body.name)
			expect_near(told[&"ahead"], 5.0, 0.001, body.name))


func test_what_is_told_of_a_velocity() -> void:
	await on_both_sides(func() -> void:
		var variables := {"velocity": null, "speed": 0.0, "way": null, "flat": 0.0, "rise": 0.0, "spin": null}
		var asked := kind(SCGetVelocityAction, {
			"store_velocity_in": &"velocity", "store_speed_in": &"speed", "store_direction_in": &"way", "store_flat_speed_in": &"flat",
			"store_rising_in": &"rise", "store_turning_in": &"spin",
		})
		for body in movers():
			await physics_frames(2)
			play(set_velocity({"velocity": to(3, -4)}), {}, {"under": body})
			var told := results_of(asked, variables, {"under": body})
			expect_near(told[&"velocity"], to(3, -4), 0.001)
			expect_near(told[&"speed"], far(5.0), far(0.001))
			expect_near(told[&"flat"], far(3.0), 0.01)
			expect_near(told[&"rise"], far(-4.0), 0.01)
			expect_near(told[&"way"], to(3, -4).normalized(), 0.001))


func test_how_fast_it_turns() -> void:
	await on_both_sides(func() -> void:
		var box := movers()[0]
		box.set(&"angular_damp_mode", RigidBody3D.DAMP_MODE_REPLACE)
		await physics_frames(2)
		var turn := {"what": SCSetVelocityAction.HOW_FAST_IT_TURNS, "turn_speed": 90.0}
		play(set_velocity(turn), {}, {"under": box})
		play(set_velocity(turn.merged({"how": SCSetVelocityAction.ADD})), {}, {"under": box})
		var spin: Variant = result_of(kind(SCGetVelocityAction, {"store_turning_in": &"answer"}), {}, {"under": box})
		expect_near(spin, Vector3(0, 180, 0) if in_3d else 180.0, 0.001)
		await physics_frames(31)
		var turned: float = box.get(&"rotation_degrees").y if in_3d else box.get(&"rotation_degrees")
		expect_near(absf(turned), 90.0, 4.0, "half a second of it"))


func test_an_earlier_shove_in_the_frame_is_kept() -> void:
	await on_both_sides(func() -> void:
		var box := movers()[0]
		await physics_frames(2)
		play([
			kind(SCApplyForceAction, {"force": to(2, 0)}), set_velocity({"velocity": to(0, 3), "set_x": false}),
			kind(SCApplyForceAction, {"force": to(1, 0)}), set_velocity({"velocity": to(0, 1), "how": SCSetVelocityAction.ADD}),
		], {}, {"under": box})
		await physics_frames(2)
		expect_near(velocity_of(box), to(3, 4), far(0.001)))


func test_what_cannot_be_set_or_asked_is_told() -> void:
	var place := spot(0.0, 0.0)
	expect_warns(set_velocity(), "Spot is a Marker2D, not a RigidBody or a character body", {"under": place})
	var asked := kind(SCGetVelocityAction, {"store_speed_in": &"answer"})
	expect_warns(asked, "Pick a RigidBody or a character body under Body Path", {"under": place, "variables": {"answer": 0.0}})
	var hero := character()
	expect_warns(kind(SCGetVelocityAction), "there is nowhere to put what it found", {"under": hero})
	expect_warns(set_velocity({"what": SCSetVelocityAction.HOW_FAST_IT_TURNS}), "only a RigidBody spins by itself", {"under": hero})
	expect_warns(set_velocity({"velocity": "fast"}), "Velocity holds a String, which is no place and no direction", {"under": hero})
	expect_warns(set_velocity({"velocity": Vector2(NAN, 0)}), "Velocity holds a number that is none", {"under": hero})
	expect_warns(set_velocity({"what": SCSetVelocityAction.A_SPEED_AND_A_DIRECTION, "speed": INF}), "Speed holds a number that is none", {"under": hero})
	var box := crate(5.0, 5.0)
	box.set(&"freeze", true)
	expect_warns(set_velocity(), "Crate is frozen, so it stays where it is", {"under": box})


func test_lines() -> void:
	expect_lines(SCSetVelocityAction, {
		"Set the velocity of Self to (0, 0, 0)": {},
		"Set the xz velocity of Ball to (1, 0, 0), its own way": {"body_path": ^"../Ball", "velocity": Vector3(1, 0, 0), "set_y": false, "space": 1},
		"Set the speed of Self to 5 along the way it goes": {"what": 1},
		"Add to the spin of Self, 90 degrees a second": {"what": 2, "how": 1},
	})
	expect_line(kind(SCGetVelocityAction), "Keep the velocity as (pick one) of Self")
	expect_line(kind(SCGetVelocityAction, {"store_speed_in": &"pace", "store_rising_in": &"rise"}), "Keep the speed as pace, rise as rise of Self")
	expect_hidden(kind(SCSetVelocityAction), ["speed", "turn_speed", "turn_axis"])
	expect_shown(kind(SCSetVelocityAction, {"what": 2}), ["turn_speed", "turn_axis"])
