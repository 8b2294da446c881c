extends PhysicsStory
## Add Node, Reparent, Enable Node and Set Process Mode.


func test_a_node_of_any_kind_is_added() -> void:
	for row: Array in [["Timer", "", "Timer"], ["Node2D", "Spot{count}", "Spot3"], ["Label3D", "a/b:c", "a_b_c"], ["AnimationPlayer", "Moves", "Moves"]]:
		var under := body("Owner")
		var made := play(kind(SCAddNodeAction, {"type": row[0], "node_name": row[1], "group": &"new", "store_in": &"answer"}), {},
			{"under": under, "variables": {"answer": null, "count": 3}})
		await frames(1)
		var added: Node = made.get_value("answer")
		expect(added.is_class(row[0]) and added.get_parent() == under and added.is_in_group(&"new"), str(row))
		expect_equal(String(added.name), row[2])
		under.free()


func test_it_is_put_where_it_belongs() -> void:
	var parent := body("Parent", Vector2(100, 0))
	parent.scale = Vector2(2, 2)
	var spot := body("Spot", Vector2(40, 60))
	var made := play([
		kind(SCAddNodeAction, {"type": "Marker2D", "at_path": ^"../../Spot", "store_in": &"there"}),
		kind(SCAddNodeAction, {"type": "Marker2D", "store_in": &"here"}),
	], {}, {"under": parent, "variables": {"there": null, "here": null}})
	expect_near((made.get_value("there") as Node2D).global_position, spot.global_position)
	expect_equal((made.get_value("here") as Node2D).global_position, parent.global_position)
	var parent_3d := body_3d("Parent3D", Vector3(1, 2, 3))
	body_3d("Spot3D", Vector3(4, 5, 6))
	made = play(kind(SCAddNodeAction, {"type": "Marker3D", "at_path": ^"../../Spot3D", "store_in": &"there"}), {},
		{"under": parent_3d, "variables": {"there": null}})
	expect_near((made.get_value("there") as Node3D).global_position, Vector3(4, 5, 6))


func test_it_goes_again_with_the_state() -> void:
	var under := body("Owner")
	var made := play(kind(SCAddNodeAction, {"type": "Timer", "remove_when_left": true}), {"go": "Done"}, {"under": under})
	expect_equal(under.get_child_count(), 2)
	made.send_event("go")
	await frames(1)
	expect_equal(under.get_child_count(), 1)


func test_nodes_are_added_while_the_scene_is_set_up() -> void:
	var level := Node2D.new()
	level.name = "Level"
	var adds := machine([state("Work", [kind(SCAddNodeAction, {"type": "Area2D", "node_name": "Made"})], {"FINISHED": "Done"}), state("Done")])
	level.add_child(adds)
	add(level)
	await frames(2)
	expect(level.has_node("Made"))


func test_what_cannot_be_added_is_told() -> void:
	for row: Array in [
		[{}, "no kind of node is picked, so none was added. Pick one under Type."],
		[{"type": "Tree3000"}, "there is no kind of node called Tree3000, so none was added."],
		[{"type": "Gradient"}, "a Gradient is no node, so none was added."], [{"type": "SCItem"}, "a SCItem is no node, so none was added."],
		[{"type": "CollisionObject2D"}, "a CollisionObject2D is not there to be made, only kinds made from it are"],
		[{"type": "Timer", "parent_path": ^"../Nowhere"}, "there is no node at ../Nowhere. Pick one under Parent Path."],
		[{"type": "Node2D", "at_path": ^"../Nowhere"}, "there is no node at ../Nowhere. Pick one under At Path."],
		[{"type": "Node2D", "at_path": ^"."}, "which has no place in the world"],
	]:
		expect_warns(kind(SCAddNodeAction, row[0]), row[1], {"under": body("Owner")})


func test_a_node_gets_another_parent() -> void:
	for in_3d: bool in [false, true]:
		for keep: bool in [true, false]:
			var rider: Node = body_3d("Rider", Vector3(1, 2, 3)) if in_3d else body("Rider", Vector2(1, 2))
			var horse: Node = body_3d("Horse", Vector3(5, 0, 0)) if in_3d else body("Horse", Vector2(5, 0))
			var on_it := start(machine([state("Riding")], {"under": rider}))
			var changes: Array = []
			on_it.state_changed.connect(func(_from: SCMachineState, to: SCMachineState) -> void: changes.append(to))
			play(kind(SCReparentAction, {"node_path": ^"../../Rider", "parent_path": ^"", "keep_place": keep}), {}, {"under": horse})
			await physics_frames(2)
			expect_equal(rider.get_parent(), horse)
			var at: Variant = rider.get("global_position")
			var was: Variant = Vector3(1, 2, 3) if in_3d else Vector2(1, 2)
			expect_near(at, was if keep else was + horse.get("position"))
			expect(on_it.is_running() and changes.is_empty(), "the machine on it goes on")
			horse.free()


func test_moves_that_cannot_be_are_told() -> void:
	var horse := body("Horse")
	body("Saddle", Vector2.ZERO, horse)
	var flat := body_3d("Nothing")
	flat.scale = Vector3.ZERO
	body_3d("Cube")
	for row: Array in [
		[{}, "Horse cannot be its own parent, so it stays where it is. Pick another node under Parent Path."],
		[{"parent_path": ^"../Saddle"}, "Saddle sits under Horse itself, so it stays where it is."],
		[{"node_path": ^"/root", "parent_path": ^"../Saddle"}, "Saddle sits under root itself"],
		[{"node_path": ^"../Nowhere"}, "there is no node at ../Nowhere. Pick one under Node Path."],
		[{"parent_path": ^"../Nowhere"}, "there is no node at ../Nowhere. Pick one under Parent Path."],
		[{"node_path": ^"../../Cube", "parent_path": ^"../../Nothing"}, "Nothing has a size of 0, so Cube could not keep its place and keeps its own Position"],
	]:
		expect_warns(kind(SCReparentAction, row[0]), row[1], {"under": horse})


func test_what_is_off_is_not_seen_and_touches_nothing() -> void:
	for in_3d: bool in [false, true]:
		var trap: Node = Area3D.new() if in_3d else Area2D.new()
		trap.set("disable_mode", 2)
		add(trap, "Trap")
		var beast := add(Node.new(), "Beast", {"under": trap, "process_mode": Node.PROCESS_MODE_ALWAYS})
		var picture := add(Sprite2D.new(), "Picture", {"under": beast})
		var hidden := add(Sprite2D.new(), "Hidden", {"under": trap, "visible": false})
		var clock: Timer = add(Timer.new(), "Clock", {"under": beast, "wait_time": 1.0})
		clock.start()
		for how: Array in [
			[SCEnableNodeAction.TURN_OFF, false], [SCEnableNodeAction.TURN_OFF, false], [SCEnableNodeAction.TURN_ON, true], [SCEnableNodeAction.TURN_ON, true],
			[SCEnableNodeAction.TURN_OTHER_WAY, false], [SCEnableNodeAction.TURN_OTHER_WAY, true],
		]:
			play(kind(SCEnableNodeAction, {"node_path": ^"../Trap", "turn": how[0]})).free()
			await frames(2)
			var on: bool = how[1]
			expect_equal(trap.can_process(), on)
			expect_equal(beast.can_process(), on, "though it always runs")
			expect_equal(trap.get("visible"), on)
			expect_equal((picture as CanvasItem).visible, on, "below a node that is not seen")
			expect(not (hidden as CanvasItem).visible)
			expect_equal(_in_a_space(trap), on)
		expect_equal([trap.process_mode, beast.process_mode, trap.get("disable_mode")], [Node.PROCESS_MODE_INHERIT, Node.PROCESS_MODE_ALWAYS, 2])
		expect(not trap.has_meta(&"quillstead_when_on"))
		trap.free()


func test_a_wall_that_is_off_lets_the_ball_through() -> void:
	for off: bool in [true, false]:
		var wall := StaticBody2D.new()
		var shape := CollisionShape2D.new()
		var box := RectangleShape2D.new()
		box.size = Vector2(10, 200)
		shape.shape = box
		wall.add_child(shape)
		add(wall, "Wall", {"position": Vector2(50, 0)})
		if off:
			play(kind(SCEnableNodeAction, {"node_path": ^"../Wall", "turn": SCEnableNodeAction.TURN_OFF}))
		await physics_frames(2)
		var ray := PhysicsRayQueryParameters2D.create(Vector2.ZERO, Vector2(100, 0))
		var space := wall.get_world_2d().direct_space_state
		expect_equal(space.intersect_ray(ray).is_empty(), off)
		wall.free()


func test_within_a_physics_frame_it_is_done_at_its_end() -> void:
	var trap := add(Area2D.new(), "Trap")
	var cart := body("Cart")
	var rider := add(Area2D.new(), "Rider")
	await physics_frames(1)
	var actions: Array = [
		kind(SCEnableNodeAction, {"node_path": ^"../Trap", "turn": SCEnableNodeAction.TURN_OFF}),
		kind(SCReparentAction, {"node_path": ^"../Rider", "parent_path": ^"../Cart"}),
		kind(SCAddNodeAction, {"type": "Area2D", "node_name": "Made", "parent_path": ^"../Cart"}),
		kind(SCSetProcessModeAction, {"node_path": ^"../Rider", "mode": SCSetProcessModeAction.NEVER}),
	]
	expect_state(play(actions), "Done")
	expect(trap.can_process() and rider.get_parent() == stage and not cart.has_node("Made"))
	await frames(1)
	expect(not trap.can_process() and not rider.can_process() and rider.get_parent() == cart and cart.has_node("Made"))


func test_a_group_and_a_copy_and_what_was_off_in_the_editor() -> void:
	var coins: Array[Node2D] = []
	for i in 3:
		var coin := body("Coin%d" % i)
		coin.add_to_group(&"coins")
		coin.visible = false
		coin.process_mode = Node.PROCESS_MODE_DISABLED
		coins.append(coin)
	play(kind(SCEnableNodeAction, {"group": &"coins"}))
	expect(coins.all(func(coin: Node2D) -> bool: return coin.visible and coin.can_process()))
	body("Shine", Vector2.ZERO, coins[0])
	play(kind(SCEnableNodeAction, {"group": &"coins", "turn": SCEnableNodeAction.TURN_OFF}))
	expect(coins.all(func(coin: Node2D) -> bool: return not coin.visible and not coin.can_process()))
	add(coins[0].duplicate(), "Copy")
	play(kind(SCEnableNodeAction, {"node_path": ^"../Copy"}))
	var copy: Node2D = stage.get_node("Copy")
	expect(copy.visible and copy.can_process() and not coins[0].visible, "a copy is switched by itself")


func test_what_cannot_be_switched_is_told() -> void:
	for row: Array in [
		[{"node_path": ^"../Nowhere"}, "there is no node at ../Nowhere"], [{"group": &"nobody"}, "no node is in the group nobody, so nothing was switched."],
		[{"node_path": ^"/root"}, "root is the game's own window, so it was left as it is."],
	]:
		expect_warns(kind(SCEnableNodeAction, row[0]), row[1])


func test_who_runs_while_the_game_is_paused() -> void:
	var rows: Array = [
		[SCSetProcessModeAction.AS_ITS_PARENT, true, false], [SCSetProcessModeAction.STOPS_WHILE_PAUSED, true, false],
		[SCSetProcessModeAction.ONLY_WHILE_PAUSED, false, true], [SCSetProcessModeAction.ALWAYS, true, true], [SCSetProcessModeAction.NEVER, false, false],
	]
	var nodes: Array[Node] = []
	for row: Array in rows:
		nodes.append(body("Mode%d" % row[0]))
		play(kind(SCSetProcessModeAction, {"mode": row[0], "node_path": NodePath("../Mode%d" % row[0])}))
	for paused: bool in [false, true]:
		stage.get_tree().paused = paused
		for i in nodes.size():
			expect_equal(nodes[i].can_process(), rows[i][2 if paused else 1], "%s, paused %s" % [nodes[i].name, paused])
	stage.get_tree().paused = false
	expect_warns(kind(SCSetProcessModeAction, {"node_path": ^"../Nowhere"}), "there is no node at ../Nowhere")


func test_states_that_overlap_put_it_back_to_where_it_was() -> void:
	var menu := body("Menu")
	var hold := func(mode: SCSetProcessModeAction.Mode) -> SCMachine:
		return play(kind(SCSetProcessModeAction, {"mode": mode, "node_path": ^"../Menu", "put_back_when_left": true}), {"go": "Done"})
	var first: SCMachine = hold.call(SCSetProcessModeAction.ALWAYS)
	var second: SCMachine = hold.call(SCSetProcessModeAction.NEVER)
	expect_equal(menu.process_mode, Node.PROCESS_MODE_DISABLED)
	first.send_event("go")
	expect_equal(menu.process_mode, Node.PROCESS_MODE_DISABLED)
	second.send_event("go")
	expect_equal(menu.process_mode, Node.PROCESS_MODE_INHERIT)


func test_lines_on_the_graph() -> void:
	expect_lines(SCAddNodeAction, {
		"Add a (pick one) under Self": {},
		"Add a Timer called Fuse under Bomb, keep it in fuse": {"type": "Timer", "node_name": "Fuse", "parent_path": ^"../Bomb", "store_in": &"fuse"},
	})
	expect_lines(SCReparentAction, {
		"Move Self under Horse": {"parent_path": ^"../Horse"}, "Move Sword under Self, with its own position": {"node_path": ^"../Sword", "keep_place": false},
	})
	expect_lines(SCEnableNodeAction, {
		"Switch on Self": {}, "Switch off every node in coins": {"group": &"coins", "turn": SCEnableNodeAction.TURN_OFF},
		"Switch Door on or off, whichever it is not": {"node_path": ^"../Door", "turn": SCEnableNodeAction.TURN_OTHER_WAY},
	})
	expect_lines(SCSetProcessModeAction, {
		"Let Self always run": {}, "Let Menu run only while paused": {"node_path": ^"../Menu", "mode": SCSetProcessModeAction.ONLY_WHILE_PAUSED},
	})


func _in_a_space(area: Node) -> bool:
	if area is Area2D:
		return PhysicsServer2D.area_get_space((area as Area2D).get_rid()).is_valid()
	return PhysicsServer3D.area_get_space((area as Area3D).get_rid()).is_valid()
