extends PhysicsStory
## What a game makes while it runs: bullets, enemies and effects, and how they are taken away again.


## A scene of one node, a Node2D or a Node3D.
func scene_of(name: String = "Pebble", made: Node = null) -> PackedScene:
	var top: Node = made if made != null else (Node3D.new() as Node if in_3d else Node2D.new())
	top.name = name
	var packed := PackedScene.new()
	packed.pack(top)
	top.free()
	return packed


func add_scene(settings: Dictionary = {}) -> SCInstantiateAction:
	return kind(SCInstantiateAction, {"scene": scene_of(), "parent_path": ^"/root/Stage/Heap"}.merged(settings, true))


func heap() -> Node:
	return add(Node3D.new() as Node if in_3d else Node2D.new(), "Heap")


func host(x: float = 0.0, y: float = 0.0) -> Node:
	return spot(x, y, "Host")


func places_in(above: Node) -> Array:
	return above.get_children().map(func(child: Node) -> Variant: return child.get(&"global_position"))


func test_what_is_spawned_stands_where_and_how_its_node_does() -> void:
	await on_both_sides(func() -> void:
		var under := heap()
		var gun := host(2.0, 1.0)
		gun.set(&"rotation", Vector3(0.0, PI / 2.0, 0.0) if in_3d else PI / 2.0 as Variant)
		gun.set(&"scale", Vector3.ONE * 3.0 if in_3d else Vector2.ONE * 3.0 as Variant)
		var made := play(add_scene({"offset": Vector3(0, 0, -2) if in_3d else Vector2(64, 0) as Variant, "store_in": &"bullet"}), {"FINISHED": "Done"},
			{"under": gun, "variables": {"bullet": null}})
		expect_state(made, "Done")
		var bullet: Node = made.get_value(&"bullet")
		expect_equal(bullet.get_parent(), under)
		# What faced its front now faces left in 3D, where -z became -x, and down in 2D.
		expect_near(where(bullet), Vector3(0, 1, 0) if in_3d else Vector3(2, -1, 0))
		expect_near(bullet.get(&"rotation"), gun.get(&"rotation"))
		expect_near(bullet.get(&"scale"), Vector3.ONE if in_3d else Vector2.ONE as Variant)
		expect(bullet.has_meta(&"quillstead_made_by")))


func test_under_a_turned_and_scaled_parent_the_place_is_still_the_one_in_the_world() -> void:
	await on_both_sides(func() -> void:
		var under := heap()
		under.set(&"position", at(5.0, 5.0))
		under.set(&"rotation", Vector3(0.3, 1.0, 0.2) if in_3d else 1.0 as Variant)
		under.set(&"scale", Vector3.ONE * 2.0 if in_3d else Vector2.ONE * 2.0 as Variant)
		play(add_scene(), {}, {"under": host(1.0, 2.0)})
		var pebble := under.get_child(0)
		expect_near(where(pebble), Vector3(1, 2, 0), 0.001)
		if in_3d:
			expect_near((pebble as Node3D).global_basis.get_rotation_quaternion().angle_to(Quaternion.IDENTITY), 0.0, 0.001)
		else:
			expect_near((pebble as Node2D).global_rotation, 0.0, 0.001))


func test_places_by_choice() -> void:
	await on_both_sides(func() -> void:
		var under := heap()
		add(Node.new(), "Spots")
		spot(3.0, 1.0, "Marker").reparent(stage.get_node(^"Spots"))
		var own: Node = Node3D.new() if in_3d else Node2D.new()
		own.set(&"position", at(7.0, 7.0))
		var own_place := scene_of("Own", own)
		for row: Array in [
			[{"at": SCInstantiateAction.A_NODE, "at_node_path": ^"/root/Stage/Spots/Marker"}, Vector3(3, 1, 0)],
			[{"at": SCInstantiateAction.A_PLACE, "place": at(4.0, 2.0)}, Vector3(4, 2, 0)],
			[{"at": SCInstantiateAction.A_PLACE}, Vector3.ZERO],
			[{"at": SCInstantiateAction.WHERE_THE_SCENE_SAYS, "scene": own_place}, Vector3(7, 7, 0)],
			[{"at": SCInstantiateAction.WHERE_THE_SCENE_SAYS, "scene": own_place, "offset": at(1.0, 0.0)}, Vector3(8, 7, 0)],
			[{"at": SCInstantiateAction.ONE_OF_THE_NODES_UNDER, "at_node_path": ^"/root/Stage/Spots"}, Vector3(3, 1, 0)],
		]:
			for left in under.get_children():
				left.free()
			var made := play(add_scene(row[0]))
			expect_near(where(under.get_child(0)), row[1], 0.001, str(row[0]))
			made.free())


func test_one_of_many_places_keeps_away_from_the_player() -> void:
	await on_both_sides(func() -> void:
		var under := heap()
		spot(0.0, 0.0, "Player")
		var places := host()
		for x: float in [1.0, 2.0, 6.0, 8.0]:
			spot(x, 0.0, "At%d" % x).reparent(places)
		var settings := {"at": SCInstantiateAction.ONE_OF_THE_NODES_UNDER, "away_from_path": ^"/root/Stage/Player", "at_least": far(5.0),
			"every_seconds": 0.05}
		var made := play(add_scene(settings), {}, {"under": places})
		await advance(2.0)
		var seen := {}
		for child in under.get_children():
			seen[roundi(where(child).x)] = true
		expect_equal(seen.keys().size(), 2, "the two that are far enough, each now and then")
		expect(seen.has(6) and seen.has(8))
		expect_equal(under.get_child_count(), 41)
		made.free()
		for child in under.get_children():
			child.free()
		play(add_scene(settings.merged({"at_least": far(50.0), "every_seconds": 0.0}, true)), {}, {"under": places})
		expect_near(where(under.get_child(0)).x, 8.0, 0.001, "the farthest"))


func test_somewhere_inside_each_kind_of_shape() -> void:
	var circle := CircleShape2D.new()
	circle.radius = 40.0
	var rectangle := RectangleShape2D.new()
	rectangle.size = Vector2(100, 20)
	var capsule := CapsuleShape2D.new()
	capsule.radius = 30.0
	capsule.height = 200.0
	var box := BoxShape3D.new()
	box.size = Vector3(10, 2, 4)
	var ball := SphereShape3D.new()
	ball.radius = 3.0
	var cylinder := CylinderShape3D.new()
	cylinder.radius = 2.0
	for row: Array in [[circle, 40.0], [rectangle, Vector2(50, 10)], [capsule, 30.0], [box, Vector2(5, 2)], [ball, 3.0], [cylinder, 2.0]]:
		in_3d = row[0] is Shape3D
		var under := heap()
		var area: Node = Area3D.new() if in_3d else Area2D.new()
		var shape: Node = CollisionShape3D.new() if in_3d else CollisionShape2D.new()
		shape.set(&"shape", row[0])
		area.add_child(shape)
		add(area, "Area")
		area.set(&"position", Vector3(1, 2, 3) if in_3d else Vector2(100, 50) as Variant)
		play(add_scene({"at": SCInstantiateAction.SOMEWHERE_INSIDE, "every_seconds": 0.02}), {}, {"under": area})
		await advance(3.0)
		var reach := Vector2.ZERO
		for place: Variant in places_in(under):
			var off: Variant = place - area.get(&"position")
			if in_3d:
				expect_near(off.y, 0.0, 0.0001, "at the height of the middle")
			var seen_from_above := Vector2(off.x, off.z) if in_3d else off as Vector2
			expect(seen_from_above.length() <= row[1] + 0.001 if row[1] is float else true, "out of the circle")
			reach = reach.max(seen_from_above.abs())
		var half: Vector2 = row[1] if row[1] is Vector2 else Vector2.ONE * float(row[1])
		expect(reach.x <= half.x + 0.001 and reach.y <= half.y + 0.001, "%s reaches %s" % [row[0].get_class(), reach])
		expect(reach.x > half.x * 0.8 and reach.y > half.y * 0.8, "%s reaches only %s" % [row[0].get_class(), reach])
		for left in stage.get_children():
			left.free()


func test_inside_a_shape_all_too_near_takes_its_far_end() -> void:
	var under := heap()
	var area := zone(0.0, 0.0, 10.0, 2.0)
	spot(-4.0, 0.5, "Player")
	play(add_scene({"at": SCInstantiateAction.SOMEWHERE_INSIDE, "away_from_path": ^"/root/Stage/Player", "at_least": 1000000.0}), {},
		{"under": area})
	expect_near(where(under.get_child(0)), Vector3(5, -1, 0))


func test_in_3d_it_stands_on_what_was_hit() -> void:
	in_3d = true
	var under := heap()
	for up: Vector3 in [Vector3.RIGHT, Vector3.DOWN, Vector3(1, 1, 1), Vector3.UP]:
		var made := play(add_scene({"stand_on_variable": &"normal"}), {}, {"under": host(), "variables": {"normal": up}})
		expect_near((under.get_child(0) as Node3D).global_basis.y, up.normalized(), 0.0001)
		made.get_parent().free()
		under.get_child(0).free()


func test_a_mirrored_gun_fires_to_its_side() -> void:
	var under := heap()
	var gun := host() as Node2D
	gun.scale.x = -1.0
	play(add_scene({"offset": Vector2(10, 4)}), {}, {"under": gun})
	var bullet := under.get_child(0) as Node2D
	expect_near(bullet.position, Vector2(-10, 4))
	expect_near(bullet.global_transform.x, Vector2.LEFT)
	expect_near(bullet.global_transform.y, Vector2.DOWN, 0.0001, "and is upright")
	gun.free()
	var hero := host() as Node2D
	hero.set_meta(&"quillstead_faces_left", true)
	play(add_scene({"offset": Vector2(10, 4), "scene": scene_of("Slime", CharacterBody2D.new())}), {}, {"under": hero})
	var slime := under.get_child(1) as Node2D
	expect_near(slime.position, Vector2(-10, 4))
	expect_near(slime.global_transform.x, Vector2.RIGHT, 0.0001, "a character is not mirrored")


func test_it_goes_on_as_long_as_its_state() -> void:
	var under := heap()
	var made := play([add_scene({"every_seconds_variable": &"pace"}), wait(1.0)], {"FINISHED": "Done"}, {"under": host(), "variables": {"pace": 0.25}})
	expect_equal(under.get_child_count(), 1)
	await expect_later(made, 1.1, "Done")
	expect(under.get_child_count() in [4, 5], str(under.get_child_count()))
	var many := under.get_child_count()
	await advance(0.5)
	expect_equal(under.get_child_count(), many)


func test_a_warning_stands_there_first() -> void:
	var under := heap()
	var gun := host(2.0, 1.0) as Node2D
	var made := play(add_scene({"warning_scene": scene_of("Circle"), "warning_seconds": 0.5, "store_in": &"foe"}), {"FINISHED": "Done", "HIT": "Hurt"},
		{"under": gun, "variables": {"foe": null}})
	expect_equal(under.get_child(0).name, &"Circle")
	expect_near(where(under.get_child(0)), Vector3(2, 1, 0))
	gun.position = Vector2.ZERO
	tree.paused = true
	await advance(1.0)
	tree.paused = false
	expect_equal(under.get_child(0).name, &"Circle", "the pause does not count")
	await advance(0.4)
	expect_state(made, "Work")
	await expect_later(made, 0.2, "Done")
	expect_equal(under.get_children().map(func(child: Node) -> StringName: return child.name), [&"Pebble"])
	expect_near(where(under.get_child(0)), Vector3(2, 1, 0), 0.001, "where it was warned of")
	expect_equal(made.get_value(&"foe"), under.get_child(0))


func test_what_was_warned_of_comes_unless_its_machine_is_gone() -> void:
	var under := heap()
	for gone: bool in [false, true]:
		var made := play(add_scene({"warning_scene": scene_of("Circle"), "warning_seconds": 0.3}), {"HIT": "Done"}, {"under": host()})
		made.send_event(&"HIT")
		if gone:
			made.get_parent().free()
		await advance(0.5)
		expect_equal(under.get_children().map(func(child: Node) -> StringName: return child.name), [] if gone else [&"Pebble"])
		for left in under.get_children():
			left.free()
		stage.get_children().filter(func(child: Node) -> bool: return child.name == &"Host").map(func(child: Node) -> void: child.free())


func test_a_scene_makes_copies_of_itself_by_its_path() -> void:
	var path := "user://story_spawns_itself.tscn"
	var slime := Node2D.new()
	slime.name = "Slime"
	var machine_in := SCMachine.new()
	machine_in.name = "Machine"
	machine_in.template = template([state("Wait", [wait(0.1)], {"FINISHED": "Split"}),
		state("Split", [kind(SCInstantiateAction, {"scene_path": path, "offset": Vector2(10, 0), "parent_path": ^"../.."})])])
	slime.add_child(machine_in)
	machine_in.owner = slime
	var packed := PackedScene.new()
	packed.pack(slime)
	slime.free()
	expect_equal(ResourceSaver.save(packed, path), OK)
	var under := heap()
	under.add_child((load(path) as PackedScene).instantiate())
	await advance(0.55)
	expect(under.get_child_count() in [4, 5, 6], str(under.get_child_count()))
	expect_near((under.get_child(2) as Node2D).position, Vector2(20, 0))
	DirAccess.remove_absolute(path)


func test_bodies_are_spawned_from_within_an_areas_signal() -> void:
	await on_both_sides(func() -> void:
		var under := heap()
		var trap := zone(0.0, 1.0, 2.0, 2.0, "Trap")
		var body: Node = RigidBody3D.new() if in_3d else RigidBody2D.new()
		var shape: Node = CollisionShape3D.new() if in_3d else CollisionShape2D.new()
		shape.set(&"shape", SphereShape3D.new() if in_3d else CircleShape2D.new() as Resource)
		body.add_child(shape)
		shape.owner = body
		body.set(&"freeze", true)
		var springs := start(machine([
			state("Wait", [], {"TOUCHED": "Spring"}),
			state("Spring", [add_scene({"scene": scene_of("Ball", body)})]),
		], {"under": trap, "name": "Springs"}))
		(trap as Object).connect(&"body_entered", func(_of: Node) -> void: springs.send_event(&"TOUCHED"))
		character(0.0, 0.5)
		await physics_frames(5)
		expect_equal(under.get_child_count(), 1)
		expect_near(where(under.get_child(0)), where(trap)))


func test_what_cannot_be_spawned_is_told() -> void:
	var under := heap()
	add(Node.new(), "Plain")
	var text := "nothing appears"
	expect_warns(kind(SCInstantiateAction, {}), "has no scene picked, so nothing appears. Pick one under Scene.")
	expect_warns(kind(SCInstantiateAction, {"scene_path": "res://nobody.tscn"}), "could not load res://nobody.tscn, so %s." % text)
	expect_warns(add_scene({"at": SCInstantiateAction.A_NODE}), "is set to A Node, but no node is picked, so it appears where its own scene puts it instead.")
	expect_warns(add_scene({"at": SCInstantiateAction.A_NODE, "at_node_path": ^"../Nobody"}), "is set to A Node, but there is no node at ../Nobody, so it")
	expect_warns(add_scene(), "is set to Self, but Stage is a Node, which has no place in the world, so it appears where")
	expect_warns(add_scene({"at": SCInstantiateAction.ONE_OF_THE_NODES_UNDER, "at_node_path": ^"../Plain"}), "but there is no 2D or 3D node right under Plain")
	expect_equal(under.get_child_count(), 4)
	expect_warns(add_scene({"at": SCInstantiateAction.SOMEWHERE_INSIDE, "at_node_path": ^"../Heap"}),
		"is set to Somewhere Inside, but Heap has no box, sphere, cylinder, capsule, rectangle or circle collision shape to pick a place in, so nothing")
	expect_equal(under.get_child_count(), 4)
	var count := tree.root.get_child_count()
	expect_warns(add_scene({"parent_path": ^"../Nobody", "at": SCInstantiateAction.WHERE_THE_SCENE_SAYS}),
		"Parent points at nothing, so the new one goes into the scene being played instead. Pick the node it goes under.")
	expect_equal(tree.root.get_child_count(), count + 1)
	tree.root.get_child(count).free()


func test_lines() -> void:
	expect_lines(SCInstantiateAction, {
		"Add (pick one) at Self": {},
		"Add slime at Muzzle every 2 s": {"scene_path": "res://foes/slime.tscn", "at": 1, "at_node_path": ^"../Muzzle", "every_seconds": 2.0},
		"Add slime somewhere inside Field": {"scene_path": "res://foes/slime.tscn", "at": 5, "at_node_path": ^"../Field"},
	})
	expect_lines(SCQueueFreeAction, {
		"Destroy Self": {},
		"Destroy Door after 1.5 s": {"node_path": ^"../Door", "delay": 1.5},
		"Destroy everything in bullets": {"group": &"bullets"},
	})


func test_a_node_or_a_whole_group_is_destroyed() -> void:
	var door := body("Door")
	var bullets := [body("One"), body("Two")]
	for bullet: Node in bullets:
		bullet.add_to_group(&"bullets")
	var made := play([kind(SCQueueFreeAction, {"node_path": ^"../Door"}), kind(SCQueueFreeAction, {"group": &"bullets"})])
	expect_state(made, "Done")
	expect(door.is_queued_for_deletion() and bullets.all(func(bullet: Node) -> bool: return bullet.is_queued_for_deletion()))
	await frames(2)
	expect(not is_instance_valid(door))
	expect_warns(kind(SCQueueFreeAction, {"node_path": ^"../Door"}), "there is no node at ../Door")
	expect_warns(kind(SCQueueFreeAction, {"node_path": ^"/root"}), "holds the whole game, so it stays")


func test_a_wait_before_destroying_stands_still_in_a_pause() -> void:
	for runs_on: bool in [false, true]:
		var bomb := body("Bomb")
		bomb.process_mode = Node.PROCESS_MODE_ALWAYS if runs_on else Node.PROCESS_MODE_INHERIT
		start(machine([state("Fuse", [kind(SCQueueFreeAction, {"delay": 0.3})], {"DEFUSED": "Safe"}), state("Safe")], {"under": bomb}))
		tree.paused = true
		await advance(0.5)
		tree.paused = false
		expect_equal(is_instance_valid(bomb), not runs_on)
		await advance(0.4)
		expect(not is_instance_valid(bomb))


func test_a_bomb_that_is_defused_stays() -> void:
	var bomb := body("Bomb")
	var made := start(machine([state("Fuse", [kind(SCQueueFreeAction, {"delay": 0.3})], {"DEFUSED": "Safe"}), state("Safe")], {"under": bomb}))
	await advance(0.1)
	made.send_event(&"DEFUSED")
	await advance(0.5)
	expect(is_instance_valid(bomb))
