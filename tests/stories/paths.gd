extends Story
## Things that go along paths drawn in the scene, and how far along they are.

const ENDS: Dictionary = {"FINISHED": "Done"}
const SIDES: Array = [Vector2.ZERO, Vector3.ZERO]


func test_a_platform_goes_along_and_stops() -> void:
	var follow := kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 10.0, "end_event": &"arrived"})
	expect_line(follow, "Move Self along Path at 10 a second, sending arrived at the end")
	for side: Variant in SIDES:
		var path := _path(side)
		var platform := body_at(side)
		var owner := play(follow, ENDS, {"under": platform})
		await advance(0.5)
		expect_near(_x(platform), 5.0, 0.4)
		await expect_later(owner, 1.0, "Work")
		expect_near(_x(platform), 10.0, 0.01)
		await expect_later(owner, 0.6, "Done")
		expect_events(owner, ["arrived"])
		expect_near(platform.get(&"position"), _at(side, 10, 10), 0.01)
		path.free()
		platform.free()


func test_a_whole_path_in_so_many_seconds() -> void:
	_path(Vector2())
	# Settings, where it is after a quarter of a second and after a whole one.
	for row: Array in [
		[{"duration": 0.5}, Vector2(10, 0), Vector2(10, 10)],
		[{"duration": 0.8, "at_the_end": SCFollowPathAction.START_OVER}, Vector2(6.25, 0), Vector2(5, 0)],
	]:
		var train := body()
		var owner := play(kind(SCFollowPathAction, row[0].merged({"along_path": ^"../../Path"})), ENDS, {"under": train})
		await expect_later(owner, 0.25, "Work")
		expect_near(train.position, row[1], 0.9)
		await expect_later(owner, 0.75, "Work" if row[0].has("at_the_end") else "Done")
		expect_near(train.position, row[2], 0.9)
		train.free()
	# A shape that swings past the end takes its time.
	var swings := {"along_path": ^"../../Path", "duration": 0.5, "curve": SCFollowPathAction.BACK, "easing": SCFollowPathAction.EASE_OUT}
	var late := play(kind(SCFollowPathAction, swings), ENDS, {"under": body()})
	await expect_later(late, 0.4, "Work")
	await expect_later(late, 0.2, "Done")


func test_it_starts_over_or_goes_back() -> void:
	# Where it is after one and a quarter times the path, and which way it looks.
	for row: Array in [[SCFollowPathAction.START_OVER, Vector2(5, 0), 0.0], [SCFollowPathAction.GO_BACK, Vector2(10, 5), -90.0]]:
		var path := _path(Vector2())
		var guard := body()
		var goes := kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 20.0, "at_the_end": row[0], "end_event": &"end", "turn_to_face": true})
		var owner := play(goes, ENDS, {"under": guard})
		await advance(1.25)
		expect_near(guard.position, row[1], 1.0)
		expect_near(wrapf(guard.rotation_degrees, -180.0, 180.0), row[2], 0.5)
		expect_events(owner, ["end"])
		await expect_later(owner, 1.0, "Work")
		expect_events(owner, ["end"])
		path.free()
		guard.free()


func test_backward_and_facing() -> void:
	for side: Variant in SIDES:
		var path := _path(side)
		var cart := body_at(side)
		play(kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 10.0, "backward": true, "turn_to_face": true}), {}, {"under": cart})
		await advance(0.5)
		expect_near(cart.get(&"position").y, 5.0, 0.4)
		if cart is Node2D:
			expect_near(angle_difference((cart as Node2D).rotation, deg_to_rad(-90.0)), 0.0, 0.01)
		else:
			expect_near(-(cart as Node3D).global_basis.z, Vector3(0, -1, 0), 0.01)
		path.free()
		cart.free()


func test_it_starts_where_it_is() -> void:
	_path(Vector2())
	# Where it stands, backward, where it starts and where it is soon after.
	for row: Array in [[Vector2(6, -3), false, Vector2(6, 0), Vector2(8, 0)], [Vector2(6, -3), true, Vector2(6, 0), Vector2(4, 0)], [Vector2(10, 10), false, Vector2(10, 10), Vector2(10, 10)]]:
		var cart := body("Cart", row[0])
		var goes := kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 10.0, "start": SCFollowPathAction.WHERE_IT_IS, "backward": row[1]})
		var owner := play(goes, ENDS, {"under": cart})
		expect_near(cart.position, row[2])
		await expect_later(owner, 0.2, "Work" if row[2] != row[3] else "Done")
		expect_near(cart.position, row[3], 0.4)


func test_what_lies_in_a_path_goes_along_it() -> void:
	for rider: Node in [PathFollow2D.new(), PathFollow3D.new(), Node2D.new()]:
		var side: Variant = Vector3.ZERO if rider is Node3D else Vector2.ZERO
		var path := _path(side)
		path.set(&"position", _at(side, 100, 0))
		add(rider, "", {"under": path})
		rider.set(&"progress", 3.0)
		var progress := kind(SCPathProgressAction, {"store_in": &"answer"})
		var before: float = result_of(progress, {}, {"under": rider})
		play(kind(SCFollowPathAction, {"speed": 4.0, "start": SCFollowPathAction.WHERE_IT_IS}), {}, {"under": rider})
		await advance(0.5)
		expect_near(rider.get(&"global_position"), _at(side, 102.0 + before, 0), 0.4)
		expect_near(before, 0.0 if rider.get(&"progress") == null else 3.0)
		path.free()


func test_a_path_that_moves_takes_along_what_is_on_it() -> void:
	var path := _path(Vector3())
	var cart := body_3d()
	play(kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 1.0}), {}, {"under": cart})
	path.set(&"position", Vector3(0, 0, 50))
	await frames(2)
	expect_near(cart.position.z, 50.0, 0.01)


func test_no_path_is_told_of_and_holds_nothing_up() -> void:
	add(Path2D.new(), "Empty")
	_path(Vector3()).name = "Deep"
	body("Post")
	for row: Array in [
		[{"node_path": ^"../Nobody"}, "there is no node at ../Nobody. Pick one under Node Path."],
		[{}, "Rider lies in no path, so there is nothing to go along. Pick a Path2D or a Path3D under Along Path."],
		[{"along_path": ^"../../Nowhere"}, "there is no node at ../../Nowhere. Pick one under Along Path."],
		[{"along_path": ^"../../Post"}, "Post is a Node2D, not a Path2D. Pick a Path2D under Along Path."],
		[{"along_path": ^"../../Deep"}, "Rider is a Node2D and Deep a Path3D, and one cannot go along the other. Pick a Path2D under Along Path."],
		[{"along_path": ^"../../Empty"}, "Empty has no path drawn yet, so there is nothing to go along."],
	]:
		var rider := body("Rider")
		result_of(kind(SCFollowPathAction, row[0]), {}, {"under": rider})
		expect_warning("Follow Path on Machine: %s" % row[1])
		result_of(kind(SCPathProgressAction, row[0].merged({"store_in": &"answer"})), {}, {"under": rider})
		expect_warning("Path Progress on Machine: %s" % row[1])
		rider.free()
	_path(Vector2())
	var still := body("Still")
	expect_warns(kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 0.0}), "Follow Path on Machine: its Speed is 0, so Still stays where it is.", {"under": still})
	expect_warns(kind(SCPathProgressAction, {"along_path": ^"../../Path"}), "there is nowhere to put how far it is, so it was lost. Pick a variable under Store In.", {"under": still})


func test_the_path_or_its_rider_may_be_freed_under_way() -> void:
	for goes_first: String in ["Path", "Body"]:
		_path(Vector2())
		body()
		var owner := play(kind(SCFollowPathAction, {"node_path": ^"../Body", "along_path": ^"../Path", "speed": 1.0}), ENDS)
		await frames(2)
		stage.get_node(goes_first).free()
		await frames(2)
		expect_state(owner, "Done")
		for node in stage.get_children():
			node.free()
	_path(Vector2())
	var cart := body()
	var ends := play(kind(SCFollowPathAction, {"along_path": ^"../../Path", "speed": 500.0, "end_event": &"end"}), {}, {"under": cart})
	ends.event_sent.connect(func(_event: StringName, _data: Variant) -> void: cart.queue_free())
	await advance(0.2)
	expect(not is_instance_valid(cart))


func test_how_far_a_racer_has_got() -> void:
	var stores := {"along_path": ^"../../Path", "store_length_in": &"length", "store_place_in": &"spot", "store_off_path_in": &"off"}
	for side: Variant in SIDES:
		var path := _path(side)
		var racer := body_at(_at(side, 13, 5))
		for row: Array in [[SCPathProgressAction.DISTANCE, 15.0], [SCPathProgressAction.SHARE, 0.75], [SCPathProgressAction.PERCENT, 75.0]]:
			var measure := kind(SCPathProgressAction, stores.merged({"measure": row[0], "store_in": &"answer"}))
			var told := results_of(measure, {"length": 0.0, "spot": Vector3(), "off": 0.0}, {"under": racer})
			expect_near(Vector3(told[&"answer"], told[&"length"], told[&"off"]), Vector3(row[1], 20.0, 3.0), 0.01)
			expect_near(told[&"spot"], Vector3(10, 5, 0), 0.01)
		# Whoever asks for something else need not keep the distance.
		expect_near(results_of(kind(SCPathProgressAction, stores), {}, {"under": racer})[&"off"], 3.0, 0.01)
		path.free()
		racer.free()
	_path(Vector2())
	var walker := body()
	var goes_on := kind(SCPathProgressAction, {"along_path": ^"../../Path", "run_mode": SCMachineAction.EVERY_FRAME, "store_in": &"answer"})
	expect_line(goes_on, "Measure Self along Path, how far it is, into answer")
	var owner := play(goes_on, {}, {"under": walker})
	walker.position = Vector2(4, 1)
	await frames(2)
	expect_near(owner.get_value("answer"), 4.0, 0.01)


## Ten to the right and ten down, or up in 3D.
func _path(side: Variant) -> Node:
	var made: Node = Path3D.new() if side is Vector3 else Path2D.new()
	made.set(&"curve", Curve3D.new() if side is Vector3 else Curve2D.new())
	for point: Vector2 in [Vector2(), Vector2(10, 0), Vector2(10, 10)]:
		made.get(&"curve").add_point(_at(side, point.x, point.y))
	return add(made, "Path")


func _at(side: Variant, x: float, y: float) -> Variant:
	return Vector3(x, y, 0) if side is Vector3 else Vector2(x, y)


func _x(of: Node) -> float:
	return of.get(&"position").x
