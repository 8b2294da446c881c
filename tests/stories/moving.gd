extends Story
## Things that move to places, keep moving, grow, wobble, and places told in one space and the other.

const ENDS: Dictionary = {"FINISHED": "There"}


func test_a_lift_goes_up_and_the_state_ends() -> void:
	var lift := body_3d("Lift")
	var owner := play(kind(SCMoveToAction, {"to": Vector3(0, 4, 0), "duration": 1.0, "curve": SCMoveToAction.LINEAR}), ENDS, {"under": lift})
	await expect_later(owner, 0.5, "Work")
	expect_near(lift.position.y, 2.0, 0.1)
	await expect_later(owner, 0.55, "There")
	expect_equal(lift.global_position, Vector3(0, 4, 0))


func test_spaces_of_a_move() -> void:
	# Where a step of ten to the right leads from a parent and a child that are both turned once, and how far off that is.
	for row: Array in [
		[SCMoveToAction.GLOBAL, Vector2(10, 0), 90.0],
		[SCMoveToAction.LOCAL, Vector2(100, 10), 5.0],
		[SCMoveToAction.FROM_WHERE_IT_IS, Vector2(110, 5), 10.0],
		[SCMoveToAction.ITS_OWN_WAY, Vector2(90, 5), 10.0],
	]:
		for crate: Node in [Node2D.new(), Node3D.new(), Control.new()]:
			var is_deep := crate is Node3D
			var turned: Dictionary = {"rotation_degrees": Vector3(0, 0, 90)} if is_deep else {"rotation_degrees": 90.0}
			var above := body_at(Vector3(100, 0, 0) if is_deep else Vector2(100, 0))
			_put(above, turned)
			add(crate, "", turned.merged({"under": above}))
			for seconds: float in [0.0, 0.05]:
				crate.set(&"position", Vector3(5, 0, 0) if is_deep else Vector2(5, 0))
				var to: Variant = Vector3(10, 0, 0) if is_deep else Vector2(10, 0)
				play(kind(SCMoveToAction, {"space": row[0], "to": to, "duration": seconds}), {}, {"under": crate})
				await advance(0.15)
				expect_near(SCMachineAction.as_vector2(crate.get(&"global_position")), row[1], 0.01, "%s in %s s" % [row[0], seconds])
			crate.set(&"position", Vector3(5, 0, 0) if is_deep else Vector2(5, 0))
			var timed := play(kind(SCMoveToAction, {"space": row[0], "to": Vector2(10, 0), "speed": 100.0, "duration": 9.0}), ENDS, {"under": crate})
			await expect_later(timed, row[2] / 100.0 - 0.04, "Work")
			await expect_later(timed, 0.09, "There")
			above.free()


func test_a_coin_flies_to_a_running_player() -> void:
	for options: Dictionary in [{"duration": 0.5}, {"speed": 400.0}]:
		for side: Variant in [Vector2(100, 0), Vector3(100, 0, 0)]:
			var player := body_at(side, "Player")
			var coin := body_at(side * 0.0, "Coin")
			var fly := kind(SCMoveToAction, {"to_path": ^"../../Player", "follow_it": true, "curve": SCMoveToAction.LINEAR}.merged(options))
			var owner := play(fly, ENDS, {"under": coin})
			for i in 70:
				if current(owner) == &"There":
					break
				player.set(&"position", player.get(&"position") + side * 0.02)
				await frames(1)
				if i == 9 and options.has("duration"):
					expect_near(coin.get(&"position").x, 40.0, 5.0, "a third of the way")
			expect_state(owner, "There")
			expect(coin.get(&"position").x > 120.0 and coin.get(&"position").distance_to(player.get(&"position")) < 3.0, "%s" % coin.get(&"position"))
			player.free()
			coin.free()


func test_a_node_to_go_to_counts_as_it_was_unless_it_is_followed() -> void:
	var marker := body_3d("Marker", Vector3(2, 0, 0))
	var cart := body_3d("Cart")
	play(kind(SCMoveToAction, {"to_path": ^"../../Marker", "duration": 0.2}), {}, {"under": cart})
	await frames(2)
	marker.position = Vector3(9, 9, 9)
	await advance(0.3)
	expect_equal(cart.position, Vector3(2, 0, 0))
	var move := kind(SCMoveToAction, {"duration": 0.0, "to_variable": &"place"})
	expect_line(move, "Move Self to [place] in 0 s")
	play(move, {}, {"under": cart, "variables": {"place": marker}})
	expect_equal(cart.position, Vector3(9, 9, 9))


func test_leaving_the_state_stops_the_move_and_pausing_holds_it() -> void:
	var cart := body_3d("Cart")
	var owner := play(kind(SCMoveToAction, {"to": Vector3(10, 0, 0), "duration": 1.0}), {"halt": "Halt"}, {"under": cart})
	await advance(0.2)
	owner.set_paused(true)
	var stood := cart.position
	await advance(0.2)
	expect_equal(cart.position, stood)
	owner.set_paused(false)
	await advance(0.2)
	expect(cart.position.x > stood.x)
	owner.send_event("halt")
	stood = cart.position
	expect(stood.x < 10.0)
	await advance(0.3)
	expect_equal(cart.position, stood)


func test_what_moves_or_is_followed_may_be_freed() -> void:
	for goes_first: String in ["Crate", "Player"]:
		for follows: bool in [true, false]:
			body("Crate")
			body("Player", Vector2(100, 0))
			var owner := play(kind(SCMoveToAction, {"node_path": ^"../Crate", "to_path": ^"../Player", "follow_it": follows, "duration": 0.5}), ENDS)
			await frames(3)
			stage.get_node(goes_first).free()
			await frames(3)
			expect_state(owner, "There" if follows or goes_first == "Crate" else "Work")
			for node in stage.get_children():
				node.free()


func test_who_keeps_moving_may_be_freed_and_come_back() -> void:
	for gone: Node in [body("Crate"), null]:
		var owner := play([kind(SCTranslateAction, {"node_path": ^"../Crate", "direction": Vector2(1, 0), "speed": 60.0}), act("stays")], ENDS)
		await frames(2)
		if gone != null:
			expect_near(gone.get(&"position"), Vector2(2, 0), 1.01)
			gone.free()
		else:
			expect_warning("Translate on Machine: there is no node at ../Crate. Pick one under Node Path.")
		await frames(3)
		expect_state(owner, "Work")
		var back := body("Crate")
		await frames(3)
		expect_near(back.position, Vector2(3, 0), 1.01)
		back.free()
		owner.free()


func test_where_there_is_no_size_there_is_no_place() -> void:
	for row: Array in [
		[kind(SCMoveToAction, {"to": Vector3(3, 0, 0), "duration": 0.1}), "Flat"], [kind(SCMoveToAction, {"to_path": ^"../../../Goal", "follow_it": true, "duration": 0.1}), "Flat"],
		[kind(SCRotateToAction, {"degrees": 90.0, "space": SCRotateToAction.GLOBAL, "duration": 0.1}), "Flat"],
		[kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(1, 0, 0), "duration": 0.1}), "Flat"],
		[kind(SCRotateToAction, {"degrees": 90.0, "space": SCRotateToAction.GLOBAL, "duration": 0.1}), "Crate"],
		[kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(1, 0, 0), "duration": 0.1}), "Crate"],
		[kind(SCLookAtAction, {"face": SCLookAtAction.A_DIRECTION, "direction": Vector3(1, 0, 0), "run_mode": SCMachineAction.EVERY_FRAME}), "Crate"],
	]:
		var goal := body_3d("Goal", Vector3(1, 1, 1))
		var flat := body_3d("Flat")
		var crate := body_3d("Crate", Vector3.ZERO, flat)
		(flat if row[1] == "Flat" else crate).scale = Vector3.ZERO
		play(row[0], {}, {"under": crate})
		await advance(0.15)
		expect_warning("%s has a size of 0, so %s stays as it is. Give it a Scale above 0." % [row[1], "Crate" if row[1] == "Flat" else "it"])
		flat.free()
		goal.free()


func test_what_is_wrong_is_told_and_holds_nothing_up() -> void:
	var odd := "holds a number that is none, as 0 divided by 0 is, or one too large to work with, so it did nothing. Type another beside"
	var far := Vector3(9e11, 0, 0)
	for row: Array in [
		[kind(SCMoveToAction, {"node_path": ^"../Nobody"}), "Move To on Guard: there is no node at ../Nobody. Pick one under Node Path."],
		[kind(SCMoveToAction, {"node_path": ^"."}), "Move To on Guard: Guard is a SCMachine, not a Node2D, a Node3D or a Control. Pick a Node2D, a Node3D or a Control under Node Path."],
		[kind(SCMoveToAction, {"to_path": ^"../Nobody"}), "Move To on Guard: there is no node at ../Nobody. Pick one under To Path."],
		[kind(SCMoveToAction, {"to": Color.RED}), "Move To on Guard: To holds a Color, which is no place and no direction, so it did nothing. Pick a Vector2, a Vector3 or a node beside To."],
		[kind(SCMoveToAction, {"to": Vector2(NAN, INF)}), "Move To on Guard: To %s To, or look at the variable that it reads." % odd],
		[kind(SCMoveToAction, {"to": far, "space": SCMoveToAction.FROM_WHERE_IT_IS, "node_path": ^"../../Far"}), "Move To on Guard: the place it would move to is none, or too far away to work with, so Far stays where it is. Look at where Far lies and at what To holds."],
		[kind(SCMoveToAction, {"to": Vector3.ZERO, "speed": NAN, "duration": 0.0}), "Move To on Guard: its Speed is no number, as 0 divided by 0 is none, so it was taken as 0. Type another under Speed"],
		[kind(SCMoveToAction, {"space": 9, "duration": 0.0}), "Move To on Guard: its Space is 9, which is none of the choices there are, so it was taken as Global. Pick one beside Space."],
		[kind(SCMoveToAction, {"curve": 99, "duration": 0.02}), "Move To on Guard: its Curve is 99, which is none of the choices there are, so it was taken as Linear."],
		[kind(SCMoveToAction, {"easing": -1, "duration": 0.02}), "Move To on Guard: its Easing is -1, which is none of the choices there are, so it was taken as Ease In Out."],
		[kind(SCScaleToAction, {"node_path": ^"../Nobody"}), "Scale To on Guard: there is no node at ../Nobody."],
		[kind(SCScaleToAction, {"to": -INF}), "Scale To on Guard: To %s To" % odd],
		[kind(SCScaleToAction, {"to": 1e10, "measure": SCScaleToAction.TIMES_ITS_SIZE}), "Scale To on Guard: Crate would become too large to work with, so its size was left alone. Type less beside To"],
		[kind(SCScaleToAction, {"to": 2.0, "curve": -1, "duration": 0.02}), "Scale To on Guard: its Curve is -1"],
		[kind(SCPunchAction, {"node_path": ^"../Nobody"}), "Punch on Guard: there is no node at ../Nobody."],
		[kind(SCPunchAction, {"amount": Vector3(1e38, NAN, -INF)}), "Punch on Guard: Amount %s Amount" % odd],
		[kind(SCPunchAction, {"amount": -9e18, "what": SCPunchAction.POSITION}), "Punch on Guard: Amount holds"],
		[kind(SCTranslateAction, {"direction": Vector3(0, NAN, 0)}), "Translate on Guard: Direction %s Direction" % odd],
		[kind(SCTranslateAction, {"direction": Vector3.ZERO, "speed": INF}), "Translate on Guard: its Speed is too large to work with, so it was taken as 1000000000000."],
		[kind(SCToGlobalAction, {"node_path": ^"../Nobody", "store_in": &"seen"}), "To Global on Guard: there is no node at ../Nobody."],
		[kind(SCToLocalAction, {"global_point": "here", "store_in": &"seen"}), "To Local on Guard: Global Point holds a String"],
		[kind(SCToLocalAction, {"node_path": ^"../../Flat", "store_in": &"seen"}), "To Local on Guard: Flat has a size of 0"],
	]:
		body_3d("Flat").scale = Vector3(1, 0, 1)
		body_3d("Far", far)
		var crate := body_3d("Crate")
		crate.scale = Vector3.ONE * 1000.0
		crate.add_child(Sprite3D.new())
		var goes_on := row[0] is SCTranslateAction
		var owner := play(row[0], {} if goes_on else ENDS, {"name": "Guard", "under": crate, "variables": {"seen": Vector3.ONE}})
		await expect_later(owner, 0.1, "Work" if goes_on else "There")
		expect_warning(row[1])
		expect(crate.transform.is_finite() and crate.position == Vector3.ZERO, str(crate.transform))
		expect_equal(owner.get_value("seen"), Vector3.ONE)
		for node in stage.get_children():
			node.free()


func test_a_kick_through_nothing_leaves_a_size() -> void:
	var crate := body_3d("Crate")
	crate.add_child(boxed(Area3D.new(), Vector3.ONE))
	crate.scale = Vector3.ONE * 0.00001
	play(kind(SCPunchAction, {"amount": Vector3.ONE * 1000.0, "duration": 0.2}), ENDS, {"under": crate})
	for i in 20:
		await frames(1)
		expect(crate.basis.determinant() != 0.0, str(crate.scale))


func test_what_others_place_is_told_of() -> void:
	var box := add(VBoxContainer.new(), "Box")
	play(kind(SCMoveToAction, {"to": Vector2(5, 5), "duration": 0.0}), {}, {"name": "Menu", "under": add(Button.new(), "Play", {"under": box})})
	expect_warning("Move To on Menu: Play lies in Box, a VBoxContainer, which places what it holds, so it will not stay there.")
	for stone: Node in [RigidBody2D.new(), RigidBody3D.new()]:
		play(kind(SCTranslateAction, {}), {}, {"name": "Fall", "under": add(stone, "Stone")})
		expect_warning("Translate on Fall: Stone is a %s, which the physics moves too" % stone.get_class())
		stone.set(&"freeze", true)
		play(kind(SCTranslateAction, {}), {}, {"under": stone})
		stone.free()


func test_a_bullet_keeps_moving_its_own_way() -> void:
	for bullet: Node in [Node2D.new(), Node3D.new()]:
		add(bullet, "", {"rotation_degrees": 90.0 if bullet is Node2D else Vector3(0, 0, 90)})
		var fly := kind(SCTranslateAction, {"direction": Vector2(10, 0), "space": SCTranslateAction.LOCAL, "speed": 60.0})
		var owner := play([fly, wait(0.5)], ENDS, {"under": bullet})
		await advance(0.25)
		expect_near(SCMachineAction.as_vector2(bullet.get(&"position")), Vector2(0, 15), 2.0)
		await expect_later(owner, 0.3, "There")
		var stood: Variant = bullet.get(&"position")
		await advance(0.1)
		expect_equal(bullet.get(&"position"), stood)


func test_how_fast_a_direction_is() -> void:
	# A second of it, in the world, from a node whose parent is turned.
	for row: Array in [[Vector3(10, 0, 0), Vector3(6, 0, 0)], [Vector3(0.5, 0, 0), Vector3(3, 0, 0)], [Vector2(0, 1), Vector3(0, 6, 0)], [Vector3(), Vector3()]]:
		var above := body_3d("Above")
		above.rotation_degrees.y = 90
		var cloud := body_3d("Cloud", Vector3.ZERO, above)
		play(kind(SCTranslateAction, {"direction": row[0], "speed": 6.0}), {}, {"under": cloud})
		await advance(1.0)
		expect_near(cloud.global_position, row[1], 0.2, str(row[0]))
		above.free()


func test_a_balloon_grows_and_a_coin_shrinks_away() -> void:
	var balloon := body_3d("Balloon")
	var owner := start(machine([
		state("Grow", [kind(SCScaleToAction, {"to": 2.0, "duration": 0.2})], {"FINISHED": "Shrink"}),
		state("Shrink", [kind(SCScaleToAction, {"to": Vector3(), "duration": 0.2})], {"FINISHED": "Gone"}),
		state("Gone"),
	], {"under": balloon}))
	await advance(0.21)
	expect(balloon.scale.x > 1.7, str(balloon.scale))
	await expect_later(owner, 0.3, "Gone")
	expect(balloon.scale.length() < 0.001)
	for made: Node in [Node2D.new(), Control.new(), Node3D.new()]:
		add(made, "", {"scale": Vector3(2, 1, 2) if made is Node3D else Vector2(2, 1)})
		play(kind(SCScaleToAction, {"to": Vector3(2, 3, 1), "measure": SCScaleToAction.TIMES_ITS_SIZE, "duration": 0.0}), {}, {"under": made})
		expect(made.get(&"scale").is_equal_approx(Vector3(4, 3, 2) if made is Node3D else Vector2(4, 3)), str(made.get(&"scale")))
	expect_line(kind(SCScaleToAction, {"to": Vector2(2, 3), "measure": SCScaleToAction.TIMES_ITS_SIZE, "duration": 0.0}), "Scale Self to (2, 3) times its size in 0 s")


func test_a_punched_crate_springs_back() -> void:
	for what: int in [SCPunchAction.POSITION, SCPunchAction.ROTATION, SCPunchAction.SCALE]:
		for crate: Node in [Node2D.new(), Node3D.new(), Control.new()]:
			add(crate, "", {"position": Vector3(3, 7, 1) if crate is Node3D else Vector2(3, 7)})
			var before := _pose(crate)
			var owner := play(kind(SCPunchAction, {"what": what, "duration": 0.4, "wobbles": 1, "amount": Vector3(30, 0, 0)}), ENDS, {"under": crate})
			await advance(0.1)
			# A quarter of the way it has swung out to the square of what is left, here in the numbers of the setting.
			var kicked: Variant = crate.get([&"position", &"rotation_degrees", &"scale"][what]) - before[what]
			expect_near(kicked if kicked is float else kicked.x, 30.0 * 0.5625, 3.0, "%s %d" % [crate.get_class(), what])
			await expect_later(owner, 0.4, "There")
			expect_equal(str(_pose(crate)), str(before))


func test_leaving_puts_a_punched_thing_back() -> void:
	for waits: bool in [true, false]:
		var crate := body("Crate")
		var owner := play([kind(SCPunchAction, {"duration": 2.0, "wait_for_end": waits}), wait(0.1)], ENDS.merged({"calm": "There"}), {"under": crate})
		await advance(0.05)
		expect(crate.scale != Vector2.ONE)
		await expect_later(owner, 0.1, "Work" if waits else "There")
		owner.send_event("calm")
		expect_equal(crate.scale, Vector2.ONE)
		await advance(0.1)
		expect_equal(crate.scale, Vector2.ONE)


func test_a_punch_goes_together_with_a_move() -> void:
	var crate := body("Crate")
	play([kind(SCPunchAction, {"what": SCPunchAction.POSITION, "amount": Vector2(0, 20), "duration": 0.3}), kind(SCTranslateAction, {"speed": 60.0})], {}, {"under": crate})
	await advance(0.5)
	expect_near(crate.position, Vector2(30, 0), 2.0)
	expect_near(crate.position.y, 0.0, 0.001)


func test_a_place_in_the_world_and_back() -> void:
	var car := body_3d("Car", Vector3(1, 0, 0))
	car.rotation_degrees.y = 90
	car.scale = Vector3(2, 2, 2)
	var out := kind(SCToGlobalAction, {"local_point": Vector3(0, 0, -2), "store_in": &"ahead"})
	var back := kind(SCToLocalAction, {"global_point_variable": &"ahead", "store_in": &"seen"})
	expect_line(out, "Keep where (0, 0, -2) of Self is in the world as ahead")
	expect_line(back, "Keep where [ahead] is, seen from Self, as seen")
	var owner := play([out, back], {}, {"under": car, "variables": {"ahead": Vector3(), "seen": Vector3()}})
	expect_near(owner.get_value("ahead"), Vector3(-3, 0, 0))
	expect_near(owner.get_value("seen"), Vector3(0, 0, -2))
	var sword := body("Sword")
	for made: Resource in [kind(SCToGlobalAction, {"local_point": Vector2(10, 0)}), kind(SCToLocalAction, {"global_point": Vector2(20, 10)})]:
		sword.position = Vector2.ZERO
		_put(made, {"store_in": &"tip", "run_mode": SCMachineAction.EVERY_FRAME})
		owner = play(made, {}, {"under": sword, "variables": {"tip": Vector2()}})
		sword.position = Vector2(5, 5)
		await frames(2)
		expect_equal(owner.get_value("tip"), Vector2(15, 5))


func _pose(of: Node) -> Array:
	return [of.get(&"position"), of.get(&"rotation_degrees"), of.get(&"scale")]
