extends Story
## Things that move to places, keep moving, grow, wobble, and places told in one space and the other.


func test_a_lift_goes_up_and_the_state_ends() -> void:
	var lift := _deep("Lift")
	var up := SCMoveToAction.new()
	up.to = Vector3(0, 4, 0)
	up.duration = 1.0
	up.curve = SCMoveToAction.LINEAR
	var owner := start(machine([state("Up", [up], {"FINISHED": "There"}), state("There")], {"under": lift}))
	await advance(0.5)
	expect_state(owner, "Up")
	expect_near(lift.position.y, 2.0, 0.1)
	await advance(0.55)
	expect_state(owner, "There")
	expect_equal(lift.global_position, Vector3(0, 4, 0))


func test_spaces_of_a_move() -> void:
	var rows: Array[Array] = [
		[SCMoveToAction.GLOBAL, Vector2(10, 0), Vector2(10, 0)],
		[SCMoveToAction.LOCAL, Vector2(10, 0), Vector2(100, 10)],
		[SCMoveToAction.FROM_WHERE_IT_IS, Vector2(10, 0), Vector2(110, 5)],
		# Turned once by its parent and once by itself: its right side is the left of the world.
		[SCMoveToAction.ITS_OWN_WAY, Vector2(10, 0), Vector2(90, 5)],
	]
	for row in rows:
		var above := body("Above")
		above.position = Vector2(100, 0)
		above.rotation_degrees = 90
		var crate := Node2D.new()
		crate.position = Vector2(5, 0)
		crate.rotation_degrees = 90
		above.add_child(crate)
		for seconds: float in [0.0, 0.05]:
			crate.position = Vector2(5, 0)
			start(machine([state("Move", [_move({"space": row[0], "to": row[1], "duration": seconds})])], {"under": crate}))
			await advance(0.15)
			expect(crate.global_position.is_equal_approx(row[2]), "%s in %s s leads to %s, wanted %s" % [row[0], seconds, crate.global_position, row[2]])


func test_a_speed_makes_a_longer_way_take_longer() -> void:
	for way: float in [1.0, 2.0]:
		var cart := _deep("Cart")
		var owner := start(machine([state("Go", [_move({"to": Vector3(way, 0, 0), "speed": 4.0, "duration": 9.0})], {"FINISHED": "There"}), state("There")], {"under": cart}))
		await advance(way / 4.0 - 0.1)
		expect_state(owner, "Go")
		await advance(0.2)
		expect_state(owner, "There")
		expect_equal(cart.position, Vector3(way, 0, 0))


func test_a_coin_flies_to_a_running_player() -> void:
	for options: Dictionary in [{"duration": 0.5}, {"speed": 400.0}]:
		var player := body("Player")
		var coin := body("Coin")
		player.position = Vector2(100, 0)
		var fly := _move({"to_path": ^"../../Player", "follow_it": true, "curve": SCMoveToAction.LINEAR})
		_put(fly, options)
		var owner := start(machine([state("Fly", [fly], {"FINISHED": "Got"}), state("Got")], {"under": coin}))
		for i in 70:
			if current(owner) == &"Got":
				break
			player.position.x += 2.0
			await frames(1)
		expect_state(owner, "Got")
		expect(coin.position.x > 120.0 and coin.position.distance_to(player.position) < 3.0, "%s after %s" % [coin.position, player.position])
		player.free()
		coin.free()


func test_without_following_it_goes_to_where_the_node_was() -> void:
	var marker := _deep("Marker")
	marker.position = Vector3(2, 0, 0)
	var cart := _deep("Cart")
	start(machine([state("Go", [_move({"to_path": ^"../../Marker", "duration": 0.2})])], {"under": cart}))
	await frames(2)
	marker.position = Vector3(9, 9, 9)
	await advance(0.3)
	expect_equal(cart.position, Vector3(2, 0, 0))


func test_a_move_can_be_read_from_variables() -> void:
	var post := _deep("Post")
	post.position = Vector3(3, 0, 1)
	var cart := _deep("Cart")
	var move := _move({"duration": 0.0})
	move.set(&"to_variable", &"place")
	expect_equal(move.shown_summary(), "Move Self to [place] in 0 s")
	start(machine([state("Go", [move])], {"under": cart, "variables": {"place": post}}))
	expect_equal(cart.position, Vector3(3, 0, 1))


func test_leaving_the_state_stops_the_move() -> void:
	var cart := _deep("Cart")
	var owner := start(machine([state("Go", [_move({"to": Vector3(10, 0, 0), "duration": 1.0})]), state("Halt")], {"under": cart}))
	await advance(0.3)
	owner.go_to("Halt")
	var stood := cart.position
	expect(stood.x > 0.0 and stood.x < 10.0)
	await advance(0.3)
	expect_equal(cart.position, stood)


func test_what_is_followed_may_be_freed() -> void:
	var coin := body("Coin")
	var player := body("Player")
	player.position = Vector2(100, 0)
	var owner := start(machine([state("Fly", [_move({"to_path": ^"../../Player", "follow_it": true, "duration": 5.0})], {"FINISHED": "Gone"}), state("Gone")], {"under": coin}))
	await frames(3)
	player.free()
	await frames(2)
	expect_state(owner, "Gone")


func test_what_moves_may_be_freed() -> void:
	var crate := body("Crate")
	var owner := start(machine([state("Go", [_move({"node_path": ^"../../Crate", "to": Vector2(100, 0), "duration": 5.0})], {"FINISHED": "Gone"}), state("Gone")], {"under": body()}))
	await frames(3)
	crate.free()
	await frames(2)
	expect_state(owner, "Gone")


func test_a_held_machine_holds_its_move() -> void:
	var cart := _deep("Cart")
	var owner := start(machine([state("Go", [_move({"to": Vector3(10, 0, 0), "duration": 1.0})])], {"under": cart}))
	await advance(0.2)
	owner.set_paused(true)
	var stood := cart.position
	await advance(0.2)
	expect_equal(cart.position, stood)
	owner.set_paused(false)
	await advance(1.0)
	expect_equal(cart.position, Vector3(10, 0, 0))


func test_what_is_wrong_with_a_move_is_told_and_holds_nothing_up() -> void:
	var rows: Array[Array] = [
		[{"node_path": ^"../Nobody"}, "Move To on Guard: there is no node at Nobody. Pick one under Node Path."],
		[{"to_path": ^"../Nobody"}, "Move To on Guard: there is no node at Nobody. Pick one under To Path."],
		[{"to": Color.RED}, "Move To on Guard: To holds a Color, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside To."],
		[{"node_path": ^"."}, "Move To on Guard: Guard is a SCMachine, not a Node2D, a Node3D or a Control. Pick a Node2D, a Node3D or a Control under Node Path."],
	]
	for row in rows:
		var owner := start(machine([state("Go", [_move(row[0])], {"FINISHED": "On"}), state("On")], {"name": "Guard", "under": body()}))
		expect_state(owner, "On")
		expect_warning(row[1])


func test_settings_that_nothing_can_be_done_with_are_told_of() -> void:
	var odd := "holds a number that is none, as 0 divided by 0 is, or one too large to work with, so it did nothing. Type another beside"
	var rows: Array[Array] = [
		[_move({"to": Vector2(NAN, INF)}), "Move To on Guard: To %s To, or look at the variable that it reads." % odd],
		[_move({"to": Vector3.ZERO, "speed": NAN, "duration": 0.0}), "Move To on Guard: its Speed is no number, as 0 divided by 0 is none, so it was taken as 0. Type another under Speed"],
		[_move({"space": 9, "duration": 0.0}), "Move To on Guard: its Space is 9, which is none of the choices there are, so it was taken as Global. Pick one beside Space."],
		[_move({"curve": 99, "duration": 0.02}), "Move To on Guard: its Curve is 99, which is none of the choices there are, so it was taken as Linear."],
		[_move({"easing": -1, "duration": 0.02}), "Move To on Guard: its Easing is -1, which is none of the choices there are, so it was taken as Ease In Out."],
		[_scale_to({"to": -INF}), "Scale To on Guard: To %s To" % odd],
		[_scale_to({"to": 1e10, "measure": SCScaleToAction.TIMES_ITS_SIZE}), "Scale To on Guard: Crate would become too large to work with, so its size was left alone. Type less beside To"],
		[_scale_to({"to": 2.0, "curve": -1, "duration": 0.02}), "Scale To on Guard: its Curve is -1"],
		[_punch({"amount": Vector3(1e38, NAN, -INF)}), "Punch on Guard: Amount %s Amount" % odd],
		[_punch({"amount": -9e18, "what": SCPunchAction.POSITION}), "Punch on Guard: Amount holds"],
		[_keep_moving({"direction": Vector3(0, NAN, 0)}), "Translate on Guard: Direction %s Direction" % odd],
		[_keep_moving({"direction": Vector3.ZERO, "speed": INF}), "Translate on Guard: its Speed is too large to work with, so it was taken as 1000000000000."],
	]
	for row in rows:
		var crate := _deep("Crate")
		crate.scale = Vector3.ONE * 1000.0
		crate.add_child(Sprite3D.new())
		var owner := start(machine([state("Go", [row[0]], {"FINISHED": "On"}), state("On")] if not row[0] is SCTranslateAction else [state("On", [row[0]])], {"name": "Guard", "under": crate}))
		await advance(0.1)
		expect_state(owner, "On")
		expect_warning(row[1])
		expect(crate.transform.is_finite() and crate.position == Vector3.ZERO, str(crate.transform))
		crate.free()


func test_a_kick_through_nothing_leaves_a_size() -> void:
	var crate := _deep("Crate")
	var area := Area3D.new()
	var shape := CollisionShape3D.new()
	shape.shape = SphereShape3D.new()
	area.add_child(shape)
	crate.add_child(area)
	crate.scale = Vector3.ONE * 0.00001
	start(machine([state("Hit", [_punch({"amount": Vector3.ONE * 1000.0, "duration": 0.2})], {"FINISHED": "Calm"}), state("Calm")], {"under": crate}))
	for i in 20:
		await frames(1)
		expect(crate.basis.determinant() != 0.0, str(crate.scale))


func test_what_others_place_is_told_of() -> void:
	var box := VBoxContainer.new()
	box.name = "Box"
	var button := Button.new()
	button.name = "Play"
	box.add_child(button)
	add(box)
	start(machine([state("Go", [_move({"to": Vector2(5, 5), "duration": 0.0})])], {"name": "Menu", "under": button}))
	expect_warning("Move To on Menu: Play lies in Box, a VBoxContainer, which places what it holds, so it will not stay there.")
	var stone := RigidBody3D.new()
	stone.name = "Stone"
	add(stone)
	start(machine([state("Go", [_keep_moving({})])], {"name": "Fall", "under": stone}))
	expect_warning("Translate on Fall: Stone is a RigidBody3D, which the physics moves too")


func test_a_bullet_keeps_moving_its_own_way() -> void:
	var bullet := body("Bullet")
	bullet.rotation_degrees = 90
	var fly := _keep_moving({"direction": Vector2(1, 0), "space": SCTranslateAction.LOCAL, "speed": 60.0})
	var owner := start(machine([state("Fly", [fly, wait(0.5)], {"FINISHED": "Over"}), state("Over")], {"under": bullet}))
	await advance(0.25)
	expect(absf(bullet.position.y - 15.0) < 2.0 and absf(bullet.position.x) < 0.01, str(bullet.position))
	await advance(0.3)
	expect_state(owner, "Over")
	var stood := bullet.position
	await advance(0.1)
	expect_equal(bullet.position, stood)


func test_how_fast_a_direction_is() -> void:
	# A second of it, in the world, from a node whose parent is turned.
	for row: Array in [[Vector3(10, 0, 0), Vector3(6, 0, 0)], [Vector3(0.5, 0, 0), Vector3(3, 0, 0)], [Vector2(0, 1), Vector3(0, 6, 0)], [Vector3(), Vector3()]]:
		var above := _deep("Above")
		above.rotation_degrees.y = 90
		var cloud := Node3D.new()
		above.add_child(cloud)
		start(machine([state("Drift", [_keep_moving({"direction": row[0], "speed": 6.0})])], {"under": cloud}))
		await advance(1.0)
		expect(cloud.global_position.distance_to(row[1]) < 0.2, "%s leads to %s" % [row[0], cloud.global_position])
		above.free()


func test_a_control_moves_too() -> void:
	var panel := Panel.new()
	add(panel)
	start(machine([state("In", [_move({"to": Vector2(40, 20), "duration": 0.1, "space": SCMoveToAction.LOCAL})])], {"under": panel}))
	await advance(0.2)
	expect_equal(panel.position, Vector2(40, 20))


func test_a_balloon_grows_and_a_coin_shrinks_away() -> void:
	var balloon := _deep("Balloon")
	var grow := SCScaleToAction.new()
	grow.to = 2.0
	grow.duration = 0.2
	var shrink := SCScaleToAction.new()
	shrink.to = Vector3()
	shrink.duration = 0.2
	var owner := start(machine([state("Grow", [grow], {"FINISHED": "Shrink"}), state("Shrink", [shrink], {"FINISHED": "Gone"}), state("Gone")], {"under": balloon}))
	await advance(0.21)
	expect(balloon.scale.x > 1.7, str(balloon.scale))
	await advance(0.3)
	expect_state(owner, "Gone")
	expect(balloon.scale.length() < 0.001)


func test_times_its_size() -> void:
	for made: Node in [Node2D.new(), Control.new()]:
		add(made)
		made.set(&"scale", Vector2(2, 1))
		var grow := SCScaleToAction.new()
		grow.to = Vector2(2, 3)
		grow.measure = SCScaleToAction.TIMES_ITS_SIZE
		grow.duration = 0.0
		expect_equal(grow.shown_summary(), "Scale Self to (2, 3) times its size in 0 s")
		start(machine([state("Grow", [grow])], {"under": made}))
		expect_equal(made.get(&"scale"), Vector2(4, 3))


func test_a_punched_crate_springs_back() -> void:
	for what: int in [SCPunchAction.POSITION, SCPunchAction.ROTATION, SCPunchAction.SCALE]:
		for crate: Node in [Node2D.new(), Node3D.new(), Control.new()]:
			add(crate)
			crate.set(&"position", Vector2(3, 7) if not crate is Node3D else Vector3(3, 7, 1))
			var before := _pose(crate)
			var owner := start(machine([state("Hit", [_punch({"what": what, "duration": 0.4, "amount": Vector3(0.5, 0.5, 0.5)})], {"FINISHED": "Calm"}), state("Calm")], {"under": crate}))
			await advance(0.1)
			expect(_pose(crate) != before, "%s was not kicked" % crate.get_class())
			await advance(0.4)
			expect_state(owner, "Calm")
			expect_equal(str(_pose(crate)), str(before))


func test_leaving_puts_a_punched_thing_back() -> void:
	for waits: bool in [true, false]:
		var crate := body("Crate")
		var owner := start(machine([state("Hit", [_punch({"duration": 2.0, "wait_for_end": waits}), wait(0.1)], {"FINISHED": "Calm"}), state("Calm")], {"under": crate}))
		await advance(0.05)
		expect(crate.scale != Vector2(1, 1))
		if waits:
			await advance(0.1)
			expect_state(owner, "Hit")
			owner.go_to("Calm")
		else:
			await advance(0.1)
		expect_state(owner, "Calm")
		expect_equal(crate.scale, Vector2(1, 1))
		await advance(0.1)
		expect_equal(crate.scale, Vector2(1, 1))


func test_a_punch_goes_together_with_a_move() -> void:
	var crate := body("Crate")
	var actions := [_punch({"what": SCPunchAction.POSITION, "amount": Vector2(0, 20), "duration": 0.3}), _keep_moving({"speed": 60.0})]
	start(machine([state("Hit", actions)], {"under": crate}))
	await advance(0.5)
	expect_near(crate.position.y, 0.0, 0.001)
	expect_near(crate.position.x, 30.0, 2.0)


func test_a_place_in_the_world_and_back() -> void:
	var car := _deep("Car")
	car.position = Vector3(1, 0, 0)
	car.rotation_degrees.y = 90
	car.scale = Vector3(2, 2, 2)
	var out := SCToGlobalAction.new()
	out.local_point = Vector3(0, 0, -2)
	out.store_in = &"ahead"
	var back := SCToLocalAction.new()
	back.set(&"global_point_variable", &"ahead")
	back.store_in = &"seen"
	expect_equal(out.shown_summary(), "Keep where (0, 0, -2) of Self is in the world as ahead")
	expect_equal(back.shown_summary(), "Keep where [ahead] is, seen from Self, as seen")
	var owner := start(machine([state("Tell", [out, back])], {"under": car, "variables": {"ahead": Vector3(), "seen": Vector3()}}))
	expect((owner.get_value("ahead") as Vector3).is_equal_approx(Vector3(-3, 0, 0)), str(owner.get_value("ahead")))
	expect((owner.get_value("seen") as Vector3).is_equal_approx(Vector3(0, 0, -2)), str(owner.get_value("seen")))


func test_a_place_every_frame_in_2d() -> void:
	var sword := body("Sword")
	var tip := SCToGlobalAction.new()
	tip.local_point = Vector2(10, 0)
	tip.store_in = &"tip"
	tip.run_mode = SCMachineAction.EVERY_FRAME
	var owner := start(machine([state("Tell", [tip])], {"under": sword, "variables": {"tip": Vector2()}}))
	sword.position = Vector2(5, 5)
	await frames(2)
	expect_equal(owner.get_value("tip"), Vector2(15, 5))


func test_a_thing_without_size_has_no_places() -> void:
	var flat := _deep("Flat")
	flat.scale = Vector3(1, 0, 1)
	var seen := SCToLocalAction.new()
	seen.store_in = &"seen"
	start(machine([state("Tell", [seen])], {"name": "Guard", "under": flat, "variables": {"seen": Vector3(1, 2, 3)}}))
	expect_warning("To Local on Guard: Flat has a size of 0")


func _move(options: Dictionary) -> SCMoveToAction:
	var made := SCMoveToAction.new()
	_put(made, options)
	return made


func _keep_moving(options: Dictionary) -> SCTranslateAction:
	var made := SCTranslateAction.new()
	_put(made, options)
	return made


func _punch(options: Dictionary) -> SCPunchAction:
	var made := SCPunchAction.new()
	_put(made, options)
	return made


func _scale_to(options: Dictionary) -> SCScaleToAction:
	var made := SCScaleToAction.new()
	_put(made, options)
	return made


func _deep(name: String) -> Node3D:
	var made := Node3D.new()
	made.name = name
	stage.add_child(made)
	return made


func _pose(of: Node) -> Array:
	return [of.get(&"position"), of.get(&"rotation"), of.get(&"scale")]
