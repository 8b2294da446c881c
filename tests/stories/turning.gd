extends Story
## Things that face others, keep turning, and turn to angles.


func test_a_turret_faces_what_it_is_told_to() -> void:
	var rows: Array[Array] = [
		[{"face": SCLookAtAction.A_PLACE, "place": Vector2(0, 10)}, 90.0],
		[{"face": SCLookAtAction.A_PLACE, "place": Vector2(-10, 0)}, 180.0],
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector2(1, 1)}, 45.0],
		[{"face": SCLookAtAction.A_DIRECTION, "direction": Vector2(1, 0), "turned_by": 90.0}, 90.0],
		[{"at_path": ^"../../Player"}, -90.0],
	]
	var player := body("Player")
	player.position = Vector2(0, -50)
	for row in rows:
		for made: Node in [Node2D.new(), Control.new()]:
			add(made)
			start(machine([state("Look", [_look(row[0])])], {"under": made}))
			expect_near(absf(angle_difference(made.get(&"rotation"), deg_to_rad(row[1]))), 0.0, 0.001, str(row[0]))


func test_a_turned_and_mirrored_parent_changes_nothing() -> void:
	for scale: Vector2 in [Vector2(1, 1), Vector2(2, 1), Vector2(-1, 1)]:
		var above := body("Above")
		above.rotation_degrees = 30
		above.scale = scale
		var turret := Node2D.new()
		above.add_child(turret)
		start(machine([state("Look", [_look({"face": SCLookAtAction.A_PLACE, "place": Vector2(30, 80)})])], {"under": turret}))
		expect_near(turret.global_transform.x.angle_to(Vector2(30, 80)), 0.0, 0.001, str(scale))


func test_a_head_faces_in_3d() -> void:
	var rows: Array[Array] = [
		[{"place": Vector3(5, 0, 0)}, Vector3(1, 0, 0)],
		[{"place": Vector3(0, 5, -5)}, Vector3(0, 1, -1)],
		[{"place": Vector3(0, 5, -5), "keep_level": true}, Vector3(0, 0, -1)],
		[{"place": Vector3(0, 5, 0)}, Vector3(0, 1, 0)],
		[{"place": Vector3(0, -5, 0)}, Vector3(0, -1, 0)],
		[{"place": Vector3(5, 0, 0), "turned_by": 180.0}, Vector3(-1, 0, 0)],
	]
	for row in rows:
		for seconds: float in [0.0, 0.1]:
			var above := Node3D.new()
			add(above)
			above.rotation_degrees = Vector3(0, 40, 0)
			var head := Node3D.new()
			head.scale = Vector3(2, 3, 2)
			above.add_child(head)
			var owner := start(machine([state("Look", [_look({"face": SCLookAtAction.A_PLACE, "duration": seconds}, row[0])], {"FINISHED": "Faces"}), state("Faces")], {"under": head}))
			await advance(0.2)
			expect_state(owner, "Faces")
			var front := -head.global_basis.z.normalized()
			expect(front.is_equal_approx((row[1] as Vector3).normalized()), "%s in %s s faces %s" % [row[0], seconds, front])
			expect(head.scale.is_equal_approx(Vector3(2, 3, 2)), str(head.scale))


func test_a_slow_turret_can_be_outrun() -> void:
	for turret: Node in [Node2D.new(), Node3D.new()]:
		add(turret)
		var place: Variant = Vector2(0, 100) if turret is Node2D else Vector3(100, 0, 0)
		var look := _look({"face": SCLookAtAction.A_PLACE, "place": place, "turn_speed": 90.0, "run_mode": SCMachineAction.EVERY_FRAME})
		var owner := start(machine([state("Look", [look], {"FINISHED": "Never"}), state("Never")], {"under": turret}))
		await advance(0.5)
		expect_near(absf(_turn_of(turret)), deg_to_rad(45.0), 0.05)
		await advance(0.7)
		expect_near(absf(_turn_of(turret)), deg_to_rad(90.0), 0.001)
		expect_state(owner, "Look")


func test_it_keeps_facing_what_moves() -> void:
	var player := body("Player")
	var guard := body("Guard")
	start(machine([state("Look", [_look({"at_path": ^"../../Player", "run_mode": SCMachineAction.EVERY_FRAME})])], {"under": guard}))
	for place: Vector2 in [Vector2(0, 10), Vector2(-10, -10), Vector2(5, 0)]:
		player.position = place
		await frames(2)
		expect_near(angle_difference(guard.rotation, place.angle()), 0.0, 0.001)


func test_the_short_way_to_face_something() -> void:
	var guard := body("Guard")
	guard.rotation_degrees = 170
	start(machine([state("Look", [_look({"face": SCLookAtAction.A_DIRECTION, "direction": Vector2.from_angle(deg_to_rad(-170)), "duration": 0.2})])], {"under": guard}))
	await advance(0.1)
	expect(guard.rotation_degrees > 170.0 and guard.rotation_degrees < 190.0, str(guard.rotation_degrees))


func test_the_mouse_is_faced() -> void:
	var aim := body("Aim")
	aim.position = Vector2(40, 40)
	start(machine([state("Look", [_look({"face": SCLookAtAction.THE_MOUSE})])], {"under": aim}))
	expect_near(angle_difference(aim.rotation, (aim.get_global_mouse_position() - aim.position).angle()), 0.0, 0.001)
	var camera := Camera3D.new()
	add(camera)
	camera.position = Vector3(0, 10, 0)
	camera.rotation_degrees.x = -90
	camera.current = true
	var hero := Node3D.new()
	add(hero)
	hero.position = Vector3(1, 0, 1)
	var pointer := tree.root.get_mouse_position()
	var pointed: Variant = Plane(Vector3.UP, 0.0).intersects_ray(camera.project_ray_origin(pointer), camera.project_ray_normal(pointer))
	start(machine([state("Look", [_look({"face": SCLookAtAction.THE_MOUSE})])], {"under": hero}))
	var wanted: Vector3 = (pointed - hero.position).normalized()
	expect((-hero.global_basis.z).is_equal_approx(wanted), "%s, wanted %s" % [-hero.global_basis.z, wanted])


func test_nothing_to_face_is_told_of() -> void:
	var rows: Array[Array] = [
		[{}, "Look At on Guard: it has no node to face, so it turned nothing. Pick one under At Path."],
		[{"at_path": ^".."}, "Look At on Guard: Post cannot face itself, so it was not turned."],
		[{"at_path": ^"../Nobody"}, "Look At on Guard: there is no node at Nobody. Pick one under At Path."],
		[{"face": SCLookAtAction.A_PLACE, "place": "north"}, "Look At on Guard: Place holds a String"],
	]
	for row in rows:
		var owner := start(machine([state("Look", [_look(row[0])], {"FINISHED": "On"}), state("On")], {"name": "Guard", "under": body("Post")}))
		expect_state(owner, "On")
		expect_warning(row[1])
		owner.get_parent().free()
	expect_equal(_look({}).shown_summary(), "Turn Self to face (pick one)")


func test_numbers_that_are_none_turn_nothing() -> void:
	var rows: Array[Array] = [
		[_turn_to({"degrees": NAN, "duration": 0.0}), "Rotate To on Guard: its Degrees is no number, as 0 divided by 0 is none, so it was taken as 0. Type another under Degrees, or look at the variable that it reads."],
		[_look({"face": SCLookAtAction.A_PLACE, "place": Vector2(NAN, INF), "turn_speed": 90.0, "run_mode": SCMachineAction.EVERY_FRAME}), "Look At on Guard: Place holds a number that is none, as 0 divided by 0 is, or one too large to work with, so it did nothing."],
		[_look({"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(0, 0, -1), "turned_by": NAN}), "Look At on Guard: its Turned By is no number"],
	]
	for row in rows:
		for post: Node in [Node2D.new(), Node3D.new()]:
			add(post)
			start(machine([state("Turn", [row[0]])], {"name": "Guard", "under": post}))
			await frames(3)
			expect_warning(row[1])
			expect(is_finite(_turn_of(post)), str(_turn_of(post)))
			post.free()


func test_a_stick_at_rest_leaves_it_as_it_is() -> void:
	var hero := body("Hero")
	hero.rotation_degrees = 33
	start(machine([state("Look", [_look({"face": SCLookAtAction.A_DIRECTION, "direction": Vector2()})])], {"under": hero}))
	expect_near(hero.rotation_degrees, 33.0)


func test_a_coin_keeps_turning() -> void:
	for coin: Node in [Node2D.new(), Node3D.new(), Control.new()]:
		add(coin)
		var spin := SCRotateAction.new()
		spin.speed = 90.0
		var owner := start(machine([state("Spin", [spin, wait(0.5)], {"FINISHED": "Still"}), state("Still")], {"under": coin}))
		await advance(0.52)
		expect_near(_turn_of(coin), deg_to_rad(45.0), 0.06, coin.get_class())
		expect_state(owner, "Still")
		var stood := _turn_of(coin)
		await frames(5)
		expect_equal(_turn_of(coin), stood)


func test_the_axis_may_be_the_worlds() -> void:
	for space: int in [SCRotateAction.GLOBAL, SCRotateAction.LOCAL]:
		var top := Node3D.new()
		add(top)
		top.rotation_degrees.z = 90
		var axis := Vector3.UP if space == SCRotateAction.GLOBAL else top.global_basis.y
		var spin := SCRotateAction.new()
		spin.space = space
		var before := top.global_basis
		start(machine([state("Spin", [spin])], {"under": top}))
		await advance(0.3)
		var turned := top.global_basis * before.inverse()
		expect(turned.get_rotation_quaternion().get_axis().is_equal_approx(axis), str(turned))


func test_a_door_swings_open() -> void:
	var door := Node3D.new()
	add(door)
	var open := _turn_to({"degrees": 90.0, "duration": 0.5, "curve": SCRotateToAction.LINEAR})
	expect_equal(open.shown_summary(), "Turn Self to 90° round y in 0.5 s")
	var owner := start(machine([state("Open", [open], {"FINISHED": "Stands"}), state("Stands")], {"under": door}))
	await advance(0.25)
	expect_near(door.rotation_degrees.y, 45.0, 4.0)
	await advance(0.3)
	expect_state(owner, "Stands")
	expect_near(door.rotation_degrees.y, 90.0, 0.01)


func test_which_way_round_it_turns() -> void:
	# From 350 degrees, half way there and at the end.
	var rows: Array[Array] = [
		[{"degrees": 10.0}, 360.0, 370.0],
		[{"degrees": 10.0, "way": SCRotateToAction.AS_TYPED}, 180.0, 10.0],
		[{"degrees": 720.0, "way": SCRotateToAction.AS_TYPED}, 535.0, 720.0],
		[{"degrees": -30.0, "space": SCRotateToAction.FROM_WHERE_IT_IS}, 335.0, 320.0],
	]
	for row in rows:
		var hand := body("Hand")
		hand.rotation_degrees = 350
		start(machine([state("Turn", [_turn_to({"duration": 0.4, "curve": SCRotateToAction.LINEAR}, row[0])])], {"under": hand}))
		await advance(0.2)
		expect_near(hand.rotation_degrees, row[1], 30.0, "half of %s" % row[0])
		await advance(0.3)
		expect_near(hand.rotation_degrees, row[2], 0.01, str(row[0]))


func test_an_angle_in_the_world() -> void:
	for scale: Vector2 in [Vector2(1, 1), Vector2(1, -1)]:
		var above := body("Above")
		above.rotation_degrees = 30
		above.scale = scale
		var hand := Node2D.new()
		hand.rotation_degrees = 5
		above.add_child(hand)
		start(machine([state("Turn", [_turn_to({"degrees": 90.0, "duration": 0.0, "space": SCRotateToAction.GLOBAL})])], {"under": hand}))
		expect_near(hand.global_rotation_degrees, 90.0, 0.01)
	var deep_above := Node3D.new()
	add(deep_above)
	deep_above.rotation_degrees.y = 30
	var deep := Node3D.new()
	deep_above.add_child(deep)
	start(machine([state("Turn", [_turn_to({"degrees": 90.0, "duration": 0.1, "space": SCRotateToAction.GLOBAL})])], {"under": deep}))
	await advance(0.2)
	expect_near(deep.global_rotation_degrees.y, 90.0, 0.01)


func test_a_turn_at_a_speed() -> void:
	var lever := body("Lever")
	var owner := start(machine([state("Turn", [_turn_to({"degrees": -90.0, "speed": 180.0})], {"FINISHED": "Thrown"}), state("Thrown")], {"under": lever}))
	await advance(0.4)
	expect_state(owner, "Turn")
	await advance(0.2)
	expect_state(owner, "Thrown")
	expect_near(lever.rotation_degrees, -90.0, 0.01)


func test_in_2d_the_axis_is_not_asked_for() -> void:
	for on_2d: bool in [true, false]:
		SCMachineAction.set_shown_on_2d(1 if on_2d else 0)
		for made: SCMachineAction in [SCRotateAction.new(), SCRotateToAction.new()]:
			expect_equal(_shows(made, "axis"), not on_2d)
		expect_equal(_shows(SCLookAtAction.new(), "keep_level"), not on_2d)
		expect_equal(_turn_to({}).shown_summary(), "Turn Self to 90°%s in 0.5 s" % ("" if on_2d else " round y"))
	SCMachineAction.set_shown_on_2d(-1)


func _look(options: Dictionary, more: Dictionary = {}) -> SCLookAtAction:
	var made := SCLookAtAction.new()
	_put(made, options)
	_put(made, more)
	return made


func _turn_to(options: Dictionary, more: Dictionary = {}) -> SCRotateToAction:
	var made := SCRotateToAction.new()
	_put(made, options)
	_put(made, more)
	return made


func _turn_of(node: Node) -> float:
	return (node as Node3D).rotation.y if node is Node3D else node.get(&"rotation")


func _shows(made: SCMachineAction, setting: String) -> bool:
	for property in made.get_property_list():
		if property["name"] == setting:
			return property["usage"] & PROPERTY_USAGE_EDITOR != 0
	return false
