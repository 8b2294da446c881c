extends Story
## Things that go wrong on the way.


class Breaker:
	extends Node2D
	var victim: Node

	func _init() -> void:
		set_notify_local_transform(true)

	func _notification(what: int) -> void:
		if what == NOTIFICATION_LOCAL_TRANSFORM_CHANGED and is_instance_valid(victim):
			victim.free()


func test_a_path_freed_as_something_moves_along_it() -> void:
	for frees_path: bool in [true, false]:
		var curve := Curve2D.new()
		for point: Vector2 in [Vector2(), Vector2(10, 0), Vector2(10, 10)]:
			curve.add_point(point)
		var path := Path2D.new()
		path.curve = curve
		path.name = "Path"
		add(path)
		var rider := Breaker.new()
		rider.name = "Rider"
		add(rider)
		var follow := SCFollowPathAction.new()
		follow.node_path = ^"../Rider"
		follow.along_path = ^"../Path"
		follow.speed = 10.0
		follow.turn_to_face = true
		var owner := start(machine([state("Go", [follow], {"FINISHED": "Done"}), state("Done")], {"under": stage}))
		await advance(0.1)
		rider.victim = path if frees_path else owner
		await advance(0.2)
		expect(not is_instance_valid(rider.victim))
		if frees_path:
			expect_state(owner, "Done")
			owner.free()
		else:
			path.free()
		rider.free()


func test_a_3d_node_taken_out_on_its_way() -> void:
	for made: SCMachineAction in [_move(), _turn()]:
		var crate := Node3D.new()
		crate.name = "Crate"
		add(crate)
		var owner := start(machine([state("Go", [made], {"FINISHED": "Done"}), state("Done")], {"under": stage}))
		await advance(0.1)
		stage.remove_child(crate)
		await advance(0.1)
		expect_state(owner, "Go")
		await advance(0.3)
		expect_state(owner, "Done")
		crate.free()
		owner.free()


func _move() -> SCMachineAction:
	var made := SCMoveToAction.new()
	made.node_path = ^"../Crate"
	made.to = Vector3(0, 4, 0)
	made.duration = 0.4
	return made


func _turn() -> SCMachineAction:
	var made := SCRotateToAction.new()
	made.node_path = ^"../Crate"
	made.space = SCRotateToAction.GLOBAL
	made.duration = 0.4
	return made
