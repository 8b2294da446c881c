extends Story
## Things that face others, keep turning, and turn to angles.

const ENDS: Dictionary = {"FINISHED": "Faces"}


func test_a_turret_faces_what_it_is_told_to() -> void:
	body("Player", Vector2(30, -50))
	for row: Array in [
		[{"face": SCLookAtAction.A_PLACE, "place": Vector2(30, 30)}, 90.0],
		[{"face": SCLookAtAction.A_PLACE, "place": Vector2(-10, 20)}, 180.0],
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector2(1, 1)}, 45.0],
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector2(1, 0), "turned_by": 90.0}, 90.0],
		[{"at_path": ^"../../Player"}, -90.0],
	]:
		for made: Node in [Node2D.new(), Control.new()]:
			add(made, "", {"position": Vector2(30, 20)})
			play(kind(SCLookAtAction, row[0]), {}, {"under": made})
			expect_near(angle_difference(made.get(&"rotation"), deg_to_rad(row[1])), 0.0, 0.001, str(row[0]))


func test_a_turned_and_mirrored_parent_changes_nothing() -> void:
	# In 2D it may be on top of all others, and then has no parent to turn with.
	for row: Array in [[Vector2(1, 1), false], [Vector2(2, 1), false], [Vector2(-1, 1), false], [Vector2(1, 1), true]]:
		var above := body("Above")
		above.rotation_degrees = 30
		above.scale = row[0]
		var turret := body("Turret", Vector2.ZERO, above)
		turret.top_level = row[1]
		play(kind(SCLookAtAction, {"face": SCLookAtAction.A_PLACE, "place": Vector2(30, 80)}), {}, {"under": turret})
		expect_near(turret.global_transform.x.angle_to(Vector2(30, 80)), 0.0, 0.001, str(row))
		play(kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector2(1, 0), "space": SCLookAtAction.LOCAL}), {}, {"under": turret})
		expect_near(turret.rotation, 0.0, 0.001, "its parent's own right, %s" % [row])


func test_a_head_faces_in_3d() -> void:
	var behind := Vector3(sin(deg_to_rad(40)), 0, cos(deg_to_rad(40)))
	# Settings, where its front and the top of it point to then; its parent looks 40 degrees to the left.
	for row: Array in [
		[{"place": Vector3(5, 0, 0)}, Vector3(1, 0, 0), Vector3.UP],
		[{"place": Vector3(0, 5, -5)}, Vector3(0, 1, -1), Vector3(0, 1, 1)],
		[{"place": Vector3(0, 5, -5), "keep_level": true}, Vector3(0, 0, -1), Vector3.UP],
		[{"place": Vector3(0, 5, 0)}, Vector3.UP, behind],
		[{"place": Vector3(0, -5, 0)}, Vector3.DOWN, -behind],
		[{"place": Vector3(5, 0, 0), "turned_by": 180.0}, Vector3(-1, 0, 0), Vector3.UP],
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(0, 0, 1), "space": SCLookAtAction.LOCAL}, behind, Vector3.UP],
	]:
		for seconds: float in [0.0, 0.1]:
			var at := Vector3(10, -3, 2)
			var above := body_3d("Above", at)
			above.rotation_degrees.y = 40
			var head := body_3d("Head", Vector3.ZERO, above)
			head.scale = Vector3(2, 3, 2)
			var settings := {"face": SCLookAtAction.A_PLACE, "duration": seconds}.merged(row[0], true)
			if settings.has("place"):
				settings["place"] += at
			# The second time it faces there already.
			for times in 2:
				var owner := play(kind(SCLookAtAction, settings), ENDS, {"under": head})
				await expect_later(owner, 0.2, "Faces")
				expect_near(-head.global_basis.z.normalized(), (row[1] as Vector3).normalized(), 0.001, "front of %s" % [row[0]])
				expect_near(head.global_basis.y.normalized(), (row[2] as Vector3).normalized(), 0.001, "top of %s" % [row[0]])
				expect_near(head.scale, Vector3(2, 3, 2))


func test_a_slow_turret_can_be_outrun() -> void:
	for turret: Node in [Node2D.new(), Node3D.new(), Control.new()]:
		add(turret)
		var place: Variant = Vector3(100, 0, 0) if turret is Node3D else Vector2(0, 100)
		var look := kind(SCLookAtAction, {"face": SCLookAtAction.A_PLACE, "place": place, "turn_speed": 90.0, "run_mode": SCMachineAction.EVERY_FRAME})
		var owner := play(look, ENDS, {"under": turret})
		expect_equal(_turn_of(turret), 0.0, "no time has passed")
		await advance(0.5)
		expect_near(absf(_turn_of(turret)), deg_to_rad(45.0), 0.05)
		await advance(0.7)
		expect_near(absf(_turn_of(turret)), deg_to_rad(90.0), 0.001)
		expect_state(owner, "Work")


func test_it_keeps_facing_what_moves_the_short_way() -> void:
	var player := body("Player", Vector2(0, 10))
	var guard := body("Guard", Vector2(1, 2))
	play(kind(SCLookAtAction, {"at_path": ^"../../Player", "run_mode": SCMachineAction.EVERY_FRAME}), {}, {"under": guard})
	expect_near(guard.rotation, (player.position - guard.position).angle(), 0.001, "at once")
	for place: Vector2 in [Vector2(-10, -10), Vector2(5, 0)]:
		player.position = place
		await frames(2)
		expect_near(angle_difference(guard.rotation, (place - guard.position).angle()), 0.0, 0.001)
	var other := body("Other")
	other.rotation_degrees = 170
	play(kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector2.from_angle(deg_to_rad(-170)), "duration": 0.2}), {}, {"under": other})
	await advance(0.1)
	expect(other.rotation_degrees > 170.0 and other.rotation_degrees < 190.0, str(other.rotation_degrees))


func test_the_mouse_is_faced() -> void:
	var aim := body("Aim", Vector2(40, 40))
	play(kind(SCLookAtAction, {"face": SCLookAtAction.THE_MOUSE}), {}, {"under": aim})
	expect_near(angle_difference(aim.rotation, (aim.get_global_mouse_position() - aim.position).angle()), 0.0, 0.001)
	var hero := body_3d("Hero", Vector3(1, 0, 1))
	var look := kind(SCLookAtAction, {"face": SCLookAtAction.THE_MOUSE})
	expect_state(play(look, ENDS, {"under": hero}), "Faces")
	expect_equal(hero.rotation, Vector3.ZERO, "there is no camera to point through")
	expect_warning("there is no camera to look through, so there is no telling what the mouse points at, and Hero was not turned. Add a Camera3D.")
	var camera: Camera3D = add(Camera3D.new(), "", {"position": Vector3(0, 10, 0), "rotation_degrees": Vector3(-90, 0, 0), "current": true})
	var pointer := tree.root.get_mouse_position()
	var pointed: Variant = Plane(Vector3.UP, 0.0).intersects_ray(camera.project_ray_origin(pointer), camera.project_ray_normal(pointer))
	play(look, {}, {"under": hero})
	expect_near(-hero.global_basis.z, (pointed - hero.position).normalized(), 0.001)


func test_nothing_to_face_is_told_of() -> void:
	for row: Array in [
		[{}, "Look At on Guard: it has no node to face, so it turned nothing. Pick one under At Path."],
		[{"at_path": ^".."}, "Look At on Guard: Post cannot face itself, so it was not turned."],
		[{"at_path": ^"../Nobody"}, "Look At on Guard: there is no node at ../Nobody. Pick one under At Path."],
		[{"node_path": ^"../Nobody"}, "Look At on Guard: there is no node at ../Nobody. Pick one under Node Path."],
		[{"face": SCLookAtAction.A_PLACE, "place": "north"}, "Look At on Guard: Place holds a String"],
		# A stick at rest.
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector2()}, ""],
	]:
		for mode: int in [SCMachineAction.ONCE, SCMachineAction.EVERY_FRAME]:
			var post := body("Post")
			post.rotation_degrees = 33
			var owner := play(kind(SCLookAtAction, row[0].merged({"run_mode": mode})), ENDS, {"name": "Guard", "under": post})
			await frames(2)
			expect_state(owner, "Faces" if mode == SCMachineAction.ONCE else "Work")
			expect_near(post.rotation_degrees, 33.0)
			if row[1] != "":
				expect_warning(row[1])
			post.free()
	expect_line(kind(SCLookAtAction, {}), "Turn Self to face (pick one)")


func test_what_turns_may_be_freed() -> void:
	for turns: SCMachineAction in [
		kind(SCLookAtAction, {"face": SCLookAtAction.A_PLACE, "run_mode": SCMachineAction.EVERY_FRAME, "node_path": ^"../Coin"}),
		kind(SCRotateAction, {"node_path": ^"../Coin"}),
		_turn_to({"node_path": ^"../Coin", "duration": 0.5}),
	]:
		var coin := body("Coin", Vector2(5, 5))
		var owner := play([turns, wait(0.2)], ENDS)
		await frames(2)
		coin.free()
		await expect_later(owner, 0.3, "Work" if turns is SCLookAtAction else "Faces")
		if turns is SCLookAtAction:
			expect_warning("Look At on Machine: there is no node at ../Coin.")
		owner.free()


func test_numbers_that_are_none_turn_nothing() -> void:
	for row: Array in [
		[_turn_to({"degrees": NAN, "duration": 0.0}), "Rotate To on Guard: its Degrees is no number, as 0 divided by 0 is none, so it was taken as 0. Type another under Degrees, or look at the variable that it reads."],
		[kind(SCLookAtAction, {"face": SCLookAtAction.A_PLACE, "place": Vector2(NAN, INF), "turn_speed": 90.0, "run_mode": SCMachineAction.EVERY_FRAME}), "Look At on Guard: Place holds a number that is none, as 0 divided by 0 is, or one too large to work with, so it did nothing."],
		[kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(0, 0, -1), "turned_by": NAN}), "Look At on Guard: its Turned By is no number"],
	]:
		for post: Node in [Node2D.new(), Node3D.new()]:
			add(post)
			play(row[0], {}, {"name": "Guard", "under": post})
			await frames(3)
			expect_warning(row[1])
			expect(is_finite(_turn_of(post)), str(_turn_of(post)))
			post.free()


func test_a_coin_keeps_turning() -> void:
	for coin: Node in [Node2D.new(), Node3D.new(), Control.new()]:
		add(coin)
		var owner := play([kind(SCRotateAction, {"speed": 90.0}), wait(0.5)], ENDS, {"under": coin})
		await expect_later(owner, 0.52, "Faces")
		expect_near(_turn_of(coin), deg_to_rad(45.0), 0.06, coin.get_class())
		var stood := _turn_of(coin)
		await frames(5)
		expect_equal(_turn_of(coin), stood)
	# The axis may be the world's.
	for space: int in [SCRotateAction.GLOBAL, SCRotateAction.LOCAL]:
		var top := body_3d("Top")
		top.rotation_degrees.z = 90
		var axis := Vector3.UP if space == SCRotateAction.GLOBAL else top.global_basis.y
		var before := top.global_basis
		play(kind(SCRotateAction, {"space": space}), {}, {"under": top})
		await advance(0.3)
		expect_near((top.global_basis * before.inverse()).get_rotation_quaternion().get_axis(), axis, 0.001)


func test_a_door_swings_open() -> void:
	for axis in 3:
		var door := body_3d("Door")
		var open := _turn_to({"degrees": 60.0, "duration": 0.5, "axis": axis})
		expect_line(open, "Turn Self to 60° round %s in 0.5 s" % "xyz"[axis])
		var owner := play(open, ENDS, {"under": door})
		await advance(0.25)
		expect_near(door.rotation_degrees[axis], 30.0, 4.0)
		await expect_later(owner, 0.3, "Faces")
		expect_near(door.rotation_degrees[axis], 60.0, 0.01)


func test_which_way_round_it_turns() -> void:
	# From 350 degrees, half way there and at the end, all in less than half a second.
	for row: Array in [
		[{"degrees": 10.0}, 360.0, 370.0],
		[{"degrees": 10.0, "way": SCRotateToAction.AS_TYPED}, 180.0, 10.0],
		[{"degrees": 720.0, "way": SCRotateToAction.AS_TYPED}, 535.0, 720.0],
		[{"degrees": -30.0, "space": SCRotateToAction.FROM_WHERE_IT_IS}, 335.0, 320.0],
		[{"degrees": -90.0, "space": SCRotateToAction.FROM_WHERE_IT_IS, "speed": 225.0, "duration": 9.0}, 305.0, 260.0],
	]:
		for hand: Node in [Node2D.new(), Control.new()]:
			add(hand, "", {"rotation_degrees": 350.0})
			play(_turn_to({"duration": 0.4}.merged(row[0], true)), {}, {"under": hand})
			await advance(0.2)
			expect_near(hand.get(&"rotation_degrees"), row[1], 30.0, "half of %s" % row[0])
			await advance(0.3)
			expect_near(hand.get(&"rotation_degrees"), row[2], 0.01, str(row[0]))


func test_an_angle_in_the_world() -> void:
	for scale: Vector2 in [Vector2(1, 1), Vector2(1, -1)]:
		var above := body("Above")
		above.rotation_degrees = 30
		above.scale = scale
		var hand := body("Hand", Vector2.ZERO, above)
		hand.rotation_degrees = 5
		play(_turn_to({"degrees": 90.0, "duration": 0.0, "space": SCRotateToAction.GLOBAL}), {}, {"under": hand})
		expect_near(hand.global_rotation_degrees, 90.0, 0.01)
	var deep_above := body_3d("Above")
	deep_above.rotation_degrees.y = 30
	var deep := body_3d("Deep", Vector3.ZERO, deep_above)
	play(_turn_to({"degrees": 90.0, "duration": 0.1, "space": SCRotateToAction.GLOBAL}), {}, {"under": deep})
	await advance(0.2)
	expect_near(deep.global_rotation_degrees.y, 90.0, 0.01)


func test_in_2d_the_axis_is_not_asked_for() -> void:
	for on_2d: bool in [true, false]:
		SCMachineAction.set_shown_on_2d(1 if on_2d else 0)
		for row: Array in [[SCRotateAction, "axis"], [SCRotateToAction, "axis"], [SCLookAtAction, "keep_level"]]:
			if on_2d:
				expect_hidden(row[0].new(), [row[1]])
			else:
				expect_shown(row[0].new(), [row[1]])
		expect_line(_turn_to({}), "Turn Self to 90°%s in 0.5 s" % ("" if on_2d else " round y"))
	SCMachineAction.set_shown_on_2d(-1)


func _turn_to(options: Dictionary) -> SCRotateToAction:
	return kind(SCRotateToAction, {"curve": SCRotateToAction.LINEAR}.merged(options, true))


func _turn_of(node: Node) -> float:
	return (node as Node3D).rotation.y if node is Node3D else node.get(&"rotation")
