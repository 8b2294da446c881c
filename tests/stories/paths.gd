extends Story
## Things that go along paths drawn in the scene, and how far along they are.


func test_a_platform_goes_along_and_stops() -> void:
	for flat: bool in [true, false]:
		var path := _path(flat)
		var platform := _rider(flat)
		var follow := _along({"along_path": ^"../../Path", "speed": 10.0, "end_event": &"arrived"})
		expect_equal(follow.shown_summary(), "Move Self along Path at 10 a second, sending arrived at the end")
		var owner := start(machine([state("Go", [follow], {"arrived": "Rang", "FINISHED": "Done"}), state("Rang"), state("Done")], {"under": platform}))
		# The path is ten long to the right and ten further down.
		await advance(0.5)
		expect_near(_x(platform), 5.0, 0.4)
		await advance(1.0)
		expect_near(_x(platform), 10.0, 0.01)
		expect_state(owner, "Go")
		await advance(0.6)
		expect(current(owner) in [&"Rang", &"Done"], str(current(owner)))
		expect_near(_x(platform), 10.0, 0.01)
		expect_near(platform.get(&"position").y, 10.0, 0.01)
		path.free()
		platform.free()


func test_it_finishes_when_it_stops() -> void:
	var path := _path(true)
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 100.0})], {"FINISHED": "Done"}), state("Done")], {"under": _rider(true)}))
	await advance(0.3)
	expect_state(owner, "Done")
	path.free()


func test_a_whole_path_in_so_many_seconds() -> void:
	_path(false)
	var train := _rider(false)
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "duration": 0.5})], {"FINISHED": "Done"}), state("Done")], {"under": train}))
	await advance(0.25)
	expect_near(_x(train) + train.get(&"position").y, 10.0, 0.7)
	expect_state(owner, "Go")
	await advance(0.3)
	expect_state(owner, "Done")
	expect((train.get(&"position") as Vector3).is_equal_approx(Vector3(10, 10, 0)))


func test_a_shape_that_swings_past_the_end_takes_its_time() -> void:
	_path(true)
	var train := _rider(true)
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "duration": 0.5, "curve": SCFollowPathAction.BACK, "easing": SCFollowPathAction.EASE_OUT})], {"FINISHED": "Done"}), state("Done")], {"under": train}))
	await advance(0.4)
	expect_state(owner, "Go")
	await advance(0.2)
	expect_state(owner, "Done")


func test_it_starts_over_or_goes_back() -> void:
	# Where it is after one and a quarter times the path.
	for row: Array in [[SCFollowPathAction.START_OVER, Vector2(5, 0)], [SCFollowPathAction.GO_BACK, Vector2(10, 5)]]:
		var path := _path(true)
		var guard := _rider(true)
		var rung: Array[int] = [0]
		var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 20.0, "at_the_end": row[0], "end_event": &"end"})], {"FINISHED": "Done"}), state("Done")], {"under": guard}))
		owner.event_sent.connect(func(event: StringName, _data: Variant) -> void: rung[0] += int(event == &"end"))
		await advance(1.25)
		expect((guard.get(&"position") as Vector2).distance_to(row[1]) < 1.0, "%s leads to %s" % [row[0], guard.get(&"position")])
		expect_equal(rung[0], 1)
		await advance(1.0)
		expect_equal(rung[0], 2)
		expect_state(owner, "Go")
		path.free()
		guard.free()


func test_backward_and_facing() -> void:
	for flat: bool in [true, false]:
		var path := _path(flat)
		var cart := _rider(flat)
		start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 10.0, "backward": true, "turn_to_face": true})])], {"under": cart}))
		await advance(0.5)
		expect_near(cart.get(&"position").y, 5.0, 0.4)
		if flat:
			expect_near(angle_difference((cart as Node2D).rotation, deg_to_rad(-90.0)), 0.0, 0.01)
		else:
			expect((-(cart as Node3D).global_basis.z).is_equal_approx(Vector3(0, -1, 0)), str(-(cart as Node3D).global_basis.z))
		path.free()
		cart.free()


func test_it_starts_where_it_is() -> void:
	_path(true)
	var cart := _rider(true)
	cart.set(&"position", Vector2(6, -3))
	start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 10.0, "start": SCFollowPathAction.WHERE_IT_IS})])], {"under": cart}))
	expect((cart.get(&"position") as Vector2).is_equal_approx(Vector2(6, 0)), str(cart.get(&"position")))
	await advance(0.2)
	expect_near(_x(cart), 8.0, 0.4)


func test_who_stands_at_the_end_already_is_there_at_once() -> void:
	_path(true)
	var cart := _rider(true)
	cart.set(&"position", Vector2(10, 10))
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 1.0, "start": SCFollowPathAction.WHERE_IT_IS})], {"FINISHED": "Done"}), state("Done")], {"under": cart}))
	await advance(0.1)
	expect_state(owner, "Done")


func test_a_follower_in_the_path_is_moved_by_its_progress() -> void:
	for flat: bool in [true, false]:
		var path := _path(flat)
		path.set(&"position", Vector2(100, 0) if flat else Vector3(100, 0, 0))
		var follower: Node = PathFollow2D.new() if flat else PathFollow3D.new()
		path.add_child(follower)
		start(machine([state("Go", [_along({"speed": 10.0})])], {"under": follower}))
		await advance(0.5)
		expect_near(follower.get(&"progress"), 5.0, 0.4)
		expect_near(follower.get(&"global_position").x, 105.0, 0.4)
		path.free()


func test_a_path_that_moves_takes_along_what_is_on_it() -> void:
	var path: Path3D = _path(false)
	var cart := _rider(false)
	start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 1.0})])], {"under": cart}))
	path.position = Vector3(0, 0, 50)
	await frames(2)
	expect_near(cart.get(&"position").z, 50.0, 0.01)


func test_no_path_is_told_of_and_holds_nothing_up() -> void:
	var empty := Path2D.new()
	empty.name = "Empty"
	add(empty)
	var deep := _path(false)
	deep.name = "Deep"
	add(Node2D.new()).name = "Post"
	var rows: Array[Array] = [
		[{}, "Follow Path on Cart: Rider lies in no path, so there is nothing to go along. Pick a Path2D or a Path3D under Along Path."],
		[{"along_path": ^"../../Nowhere"}, "Follow Path on Cart: there is no node at Nowhere. Pick one under Along Path."],
		[{"along_path": ^"../../Post"}, "Follow Path on Cart: Post is a Node2D, not a Path2D. Pick a Path2D under Along Path."],
		[{"along_path": ^"../../Deep"}, "Follow Path on Cart: Rider is a Node2D and Deep a Path3D, and one cannot go along the other. Pick a Path2D under Along Path."],
		[{"along_path": ^"../../Empty"}, "Follow Path on Cart: Empty has no path drawn yet, so there is nothing to go along."],
	]
	for row in rows:
		var rider := _rider(true)
		var owner := start(machine([state("Go", [_along(row[0])], {"FINISHED": "On"}), state("On")], {"name": "Cart", "under": rider}))
		expect_state(owner, "On")
		expect_warning(row[1])
		rider.free()
	var still := _rider(true)
	_path(true)
	start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 0.0})])], {"name": "Cart", "under": still}))
	expect_warning("Follow Path on Cart: its Speed is 0, so Rider stays where it is.")


func test_a_path_may_be_freed_under_way() -> void:
	var path := _path(true)
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 1.0})], {"FINISHED": "Off"}), state("Off")], {"under": _rider(true)}))
	await frames(2)
	path.free()
	await frames(2)
	expect_state(owner, "Off")


func test_a_machine_may_be_freed_by_the_end_event() -> void:
	_path(true)
	var cart := _rider(true)
	var owner := start(machine([state("Go", [_along({"along_path": ^"../../Path", "speed": 500.0, "end_event": &"end"})])], {"under": cart}))
	owner.event_sent.connect(func(_event: StringName, _data: Variant) -> void: cart.queue_free())
	await advance(0.2)
	expect(not is_instance_valid(cart))


func test_how_far_a_racer_has_got() -> void:
	for flat: bool in [true, false]:
		var path := _path(flat)
		var racer := _rider(flat)
		racer.set(&"position", Vector2(13, 5) if flat else Vector3(13, 5, 0))
		for row: Array in [[SCPathProgressAction.DISTANCE, 15.0], [SCPathProgressAction.SHARE, 0.75], [SCPathProgressAction.PERCENT, 75.0]]:
			var measure := SCPathProgressAction.new()
			measure.along_path = ^"../../Path"
			measure.measure = row[0]
			measure.store_in = &"far"
			measure.store_length_in = &"length"
			measure.store_place_in = &"spot"
			measure.store_off_path_in = &"off"
			var owner := start(machine([state("Race", [measure], {"FINISHED": "Told"}), state("Told")], {"under": racer, "variables": {"far": 0.0, "length": 0.0, "spot": Vector3(), "off": 0.0}}))
			expect_state(owner, "Told")
			expect_near(owner.get_value("far"), row[1], 0.01)
			expect_near(owner.get_value("length"), 20.0, 0.01)
			expect_near(owner.get_value("off"), 3.0, 0.01)
			expect((owner.get_value("spot") as Vector3).is_equal_approx(Vector3(10, 5, 0)), str(owner.get_value("spot")))
		path.free()
		racer.free()


func test_measuring_goes_on_and_says_what_is_missing() -> void:
	_path(true)
	var racer := _rider(true)
	var measure := SCPathProgressAction.new()
	measure.along_path = ^"../../Path"
	measure.run_mode = SCMachineAction.EVERY_FRAME
	expect_equal(measure.shown_summary(), "Measure Self along Path, how far it is, into (pick one)")
	var owner := start(machine([state("Race", [measure])], {"name": "Race", "under": racer, "variables": {"far": 0.0}}))
	expect_warning("Path Progress on Race: there is nowhere to put how far it is, so it was lost. Pick a variable under Store In.")
	measure.store_in = &"far"
	racer.set(&"position", Vector2(4, 1))
	await frames(2)
	expect_near(owner.get_value("far"), 4.0, 0.01)


func _along(options: Dictionary) -> SCFollowPathAction:
	var made := SCFollowPathAction.new()
	_put(made, options)
	return made


## Ten to the right and ten down, or up in 3D.
func _path(flat: bool) -> Node:
	var made: Node
	if flat:
		var curve := Curve2D.new()
		for point: Vector2 in [Vector2(), Vector2(10, 0), Vector2(10, 10)]:
			curve.add_point(point)
		made = Path2D.new()
		made.set(&"curve", curve)
	else:
		var curve := Curve3D.new()
		for point: Vector3 in [Vector3(), Vector3(10, 0, 0), Vector3(10, 10, 0)]:
			curve.add_point(point)
		made = Path3D.new()
		made.set(&"curve", curve)
	made.name = "Path"
	return add(made)


func _rider(flat: bool) -> Node:
	var made: Node = Node2D.new() if flat else Node3D.new()
	made.name = "Rider"
	return add(made)


func _x(of: Node) -> float:
	return of.get(&"position").x
