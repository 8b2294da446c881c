extends PhysicsStory
## Looking along a line, in 2D and in 3D.


## Plays it once on [param under] and gives what the variables hold when it has answered.
func _seen(action: SCMachineAction, under: Node, variables: Dictionary = {}) -> Dictionary:
	var kept := {&"hit": null, &"node": null, &"place": null, &"normal": null, &"distance": -1.0, &"list": [], &"count": -1, &"places": []}
	for name: StringName in kept:
		if StringName("store_%s_in" % name) in action:
			action.set("store_%s_in" % name, name)
	var made := play(action, {"FINISHED": "Done"}, {"under": under, "variables": kept.merged(variables, true)})
	await physics_frames(3)
	expect_state(made, "Done")
	var held := {}
	for name: StringName in kept:
		held[name] = made.get_value(name)
	made.free()
	return held


func _ray(settings: Dictionary = {}, of: Variant = SCRaycastAction) -> SCMachineAction:
	var made: SCMachineAction = kind(of)
	if not in_3d:
		made.suit_2d()
	for setting: String in settings:
		made.set(setting, settings[setting])
	return made


func test_the_ground_under_a_foot_in_the_first_frame_of_its_scene() -> void:
	await on_both_sides(func() -> void:
		var eye := spot(0.0, 3.0, "Eye")
		var owner := start(machine([
			state("Look", [_ray({"store_place_in": &"place", "store_distance_in": &"distance", "store_normal_in": &"normal", "hit_event": &"ground",
				"nothing_event": &"air"})], {"ground": "Stand", "air": "Fall"}), state("Stand"), state("Fall")],
			{"under": eye, "variables": {"place": null, "distance": 0.0, "normal": null}}))
		# Nothing of this has a place in the physics yet.
		var floor_below := block(0.0, 50.0, 20.0, 2.0, "Floor")
		floor_below.set(&"position", at(0.0, 0.0))
		await physics_frames(3)
		expect_state(owner, "Stand")
		expect_near(owner.get_value("place"), at(0.0, 1.0), far(0.001))
		expect_near(owner.get_value("distance"), far(2.0), far(0.001))
		expect_near(owner.get_value("normal"), at(0.0, 1.0) / far(1.0), 0.001))


func test_what_counts_and_what_is_passed_by() -> void:
	await on_both_sides(func() -> void:
		var hero := character()
		var sword := zone(1.0, 0.8, 0.2, 0.2, "Sword")
		sword.reparent(hero)
		var friend := block(2.0, 1.0, 1.0, 2.0, "Friend")
		friend.add_to_group(&"friends")
		var gate := zone(4.0, 1.0, 1.0, 2.0, "Gate")
		gate.set(&"collision_layer", 4)
		var wall := block(6.0, 1.0, 1.0, 2.0, "Wall")
		wall.set(&"collision_layer", 2)
		var foe := block(8.0, 1.0, 1.0, 2.0, "Foe")
		foe.add_to_group(&"foes")
		await physics_frames(2)
		var ahead: Variant = at(1.0, 0.0)
		for row: Array in [
			[{}, friend], [{"collide_with_areas": true, "exclude_group": &"friends"}, gate], [{"exclude_group": &"friends"}, wall],
			[{"collision_mask": 2}, wall], [{"collision_mask": 4}, null], [{"collision_mask": 4, "collide_with_areas": true, "collide_with_bodies": false}, gate],
			[{"only_group": &"foes"}, null], [{"only_group": &"foes", "stopped_by_others": false}, foe],
			[{"only_group": &"foes", "exclude_group": &"friends", "collision_mask": 1}, foe], [{"distance": far(1.4)}, null], [{"distance": far(1.6)}, friend],
			[{"exclude_self": false, "hit_from_inside": true}, hero], [{"collide_with_areas": true, "exclude_self": false}, sword],
			[{"direction": at(-1.0, 0.0)}, null], [{"aim": SCRaycastAction.TOWARD_A_NODE, "toward_path": ^"../../Gate", "distance": 0.0}, friend],
			[{"aim": SCRaycastAction.TOWARD_A_NODE, "toward_path": ^"../../Wall", "distance": 0.0, "exclude_group": &"friends"}, wall],
			[{"aim": SCRaycastAction.TOWARD_A_NODE, "toward_variable": &"goal", "exclude_group": &"friends", "collision_mask": 1}, foe],
			[{"from_path": ^"../../Wall", "direction": at(1.0, 0.0)}, foe], [{"from_variable": &"goal", "direction": at(1.0, 0.0)}, wall],
		]:
			var seen := await _seen(_ray({"direction": ahead}.merged(row[0], true)), hero, {&"goal": at(5.0, 1.0), &"node": hero})
			expect_equal([seen.node, seen.hit], [row[1], row[1] != null], str(row)))


func test_a_gun_looks_where_it_points() -> void:
	await on_both_sides(func() -> void:
		var gun := spot(0.0, 0.0, "Gun")
		var target := block(0.0, 4.0, 1.0, 1.0, "Target")
		if in_3d:
			gun.set(&"rotation_degrees", Vector3(0, 0, 90))
		else:
			gun.set(&"rotation_degrees", -90.0)
		var seen := await _seen(_ray({"direction": at(1.0, 0.0), "space": SCRaycastAction.LOCAL}), gun)
		expect_equal(seen.node, target)
		expect_near(seen.distance, far(3.5), far(0.001)))


func test_everything_on_a_line() -> void:
	await on_both_sides(func() -> void:
		var eye := spot(0.0, 0.0, "Eye")
		var posts: Array[Node] = []
		for x: float in [6.0, 2.0, 4.0]:
			posts.append(block(x, 0.0, 1.0, 1.0))
			posts[-1].add_to_group(&"posts")
		posts = [posts[1], posts[2], posts[0]]
		posts[1].remove_from_group(&"posts")
		var ahead: Variant = at(1.0, 0.0)
		var backward := posts.duplicate()
		backward.reverse()
		for row: Array in [
			[{}, posts], [{"most": 2}, posts.slice(0, 2)], [{"order": SCRaycastAllAction.FARTHEST_FIRST}, backward],
			[{"only_group": &"posts"}, [posts[0], posts[2]]], [{"only_group": &"posts", "stopped_by_others": true}, [posts[0]]],
			[{"direction": at(-1.0, 0.0)}, []],
		]:
			var seen := await _seen(_ray({"direction": ahead}.merged(row[0], true), SCRaycastAllAction), eye)
			expect_equal(seen.list, row[1], str(row))
			expect_equal(seen.count, (row[1] as Array).size(), str(row))
			expect_equal((seen.places as Array).size(), seen.count, str(row))
			expect_equal(seen.node, null if seen.count == 0 else posts[0], str(row))
			if row[0].is_empty():
				expect_near(seen.places[2], at(5.5, 0.0), far(0.001))
				expect_near(seen.distance, far(1.5), far(0.001)))


func test_a_watchman_tells_only_of_changes() -> void:
	await on_both_sides(func() -> void:
		var eye := spot(0.0, 0.0, "Eye")
		var door := block(3.0, 0.0, 1.0, 1.0, "Door")
		for of: Variant in [SCRaycastAction, SCRaycastAllAction]:
			var owner := play(_ray({"direction": at(1.0, 0.0), "run_mode": 1, "store_node_in": &"node", "hit_event": &"shut", "nothing_event": &"open"}, of), {},
				{"under": eye, "variables": {"node": null}})
			for row: Array in [[0.0, ["shut"]], [0.0, []], [5.0, ["open"]], [5.0, []], [0.0, ["shut"]]]:
				door.set(&"position", at(3.0, row[0]))
				await physics_frames(3)
				expect_events(owner, row[1])
				expect_equal(owner.get_value("node"), door if row[0] == 0.0 else null)
			var other := block(2.0, 0.0, 0.5, 0.5, "Cat")
			await physics_frames(3)
			expect_events(owner, ["shut"])
			other.free()
			await physics_frames(3)
			expect_events(owner, ["shut"])
			owner.free())


func test_tiles_are_seen_from_the_start() -> void:
	var eye := spot(0.0, 0.0, "Eye")
	var tiles := TileSet.new()
	tiles.tile_size = Vector2i(32, 32)
	tiles.add_physics_layer()
	var picture := PlaceholderTexture2D.new()
	picture.size = Vector2(32, 32)
	var source := TileSetAtlasSource.new()
	source.texture = picture
	source.texture_region_size = Vector2i(32, 32)
	tiles.add_source(source, 0)
	source.create_tile(Vector2i.ZERO)
	source.get_tile_data(Vector2i.ZERO, 0).add_collision_polygon(0)
	source.get_tile_data(Vector2i.ZERO, 0).set_collision_polygon_points(0, 0, [Vector2(-16, -16), Vector2(16, -16), Vector2(16, 16), Vector2(-16, 16)])
	var map := TileMapLayer.new()
	map.tile_set = tiles
	map.set_cell(Vector2i(0, 3), 0, Vector2i.ZERO)
	map.position = Vector2(-16, 0)
	add(map, "Map")
	var seen := await _seen(_ray(), eye)
	expect_equal(seen.node, map)
	expect_near(seen.place, Vector2(0, 96))


func test_what_is_set_up_wrong_is_told() -> void:
	var hero := character()
	add(Timer.new(), "Clock")
	body_3d("Deep")
	for row: Array in [
		[{"from_path": ^"../../Nobody"}, "there is no node at ../../Nobody. Pick one under From Path."],
		[{"from_path": ^"../../Clock"}, "Clock is a Timer"],
		[{"from_variable": &"word"}, "the variable word holds a String, which is no place, so nothing was looked for."],
		[{"direction": Vector2.ZERO}, "its Direction is zero, which leads nowhere, so nothing was looked for."],
		[{"direction": Vector2(NAN, 0)}, "Direction"],
		[{"distance": 0.0}, "its Distance is 0, so there is no line to look along and nothing was found."],
		[{"aim": SCRaycastAction.TOWARD_A_NODE}, "it is set to go Toward A Node, but no node is picked, so nothing was looked for."],
		[{"aim": SCRaycastAction.TOWARD_A_NODE, "toward_path": ^"../../Nobody"}, "there is no node at ../../Nobody. Pick one under Toward Path."],
		[{"aim": SCRaycastAction.TOWARD_A_NODE, "toward_path": ^"../../Deep"}, "where places mean something else, so nothing was looked for."],
	]:
		for of: Variant in [SCRaycastAction, SCRaycastAllAction]:
			var looks := _ray((row[0] as Dictionary).merged({"nothing_event": &"nothing"}), of)
			var owner := play(looks, {"nothing": "Away"}, {"under": hero, "variables": {"word": "x"}})
			await physics_frames(3)
			expect_warning(row[1])
			expect_state(owner, "Away")
			owner.free()


func test_what_is_gone_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		var eye := spot(0.0, 0.0, "Eye")
		var goal := spot(3.0, 0.0, "Goal")
		block(2.0, 0.0, 1.0, 1.0, "Wall")
		var looks := _ray({"aim": SCRaycastAction.TOWARD_A_NODE, "toward_variable": &"goal", "run_mode": 1, "hit_event": &"hit", "nothing_event": &"nothing"})
		var owner := play(looks, {}, {"under": eye, "variables": {"goal": goal}})
		await physics_frames(3)
		expect_events(owner, ["hit"])
		goal.free()
		await physics_frames(3)
		expect_events(owner, ["nothing"])
		eye.remove_child(owner)
		stage.add_child(owner)
		eye.free()
		await physics_frames(3)
		expect_warning("Stage is a Node, not a Node2D, a Node3D or a Control."))


func test_lines_on_the_graph() -> void:
	expect_lines(SCRaycastAction, {
		"Look down from Self within 10": {},
		"Look right from Muzzle within 25 for enemies": {"from_path": ^"../Muzzle", "direction": Vector3(1, 0, 0), "distance": 25.0, "only_group": &"enemies"},
		"Look toward Door from [spot]": {"from_variable": &"spot", "aim": SCRaycastAction.TOWARD_A_NODE, "toward_path": ^"../Door", "distance": 0.0},
		"Look down from Self within [reach]": {"distance_variable": &"reach"},
	})
	expect_line(kind(SCRaycastAllAction, {"only_group": &"lamps"}), "Find all lamps down from Self within 10")
	expect_hidden(kind(SCRaycastAction), ["toward_path", "stopped_by_others"])
	expect_shown(kind(SCRaycastAction, {"aim": SCRaycastAction.TOWARD_A_NODE, "only_group": &"a"}), ["toward_path", "stopped_by_others"])
