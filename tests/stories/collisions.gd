extends PhysicsStory
## What touches, what was bumped into and how hard, and what is let through, in 2D and in 3D.


func _told(settings: Dictionary, under: Node, further: Array = []) -> SCMachine:
	return play([kind(SCEventOnCollisionAction, {"event_name": &"touch", "store_node_in": &"who"}.merged(settings, true))] + further, {},
		{"under": under, "variables": {"who": null}})


func test_the_player_walks_into_a_trigger() -> void:
	await on_both_sides(func() -> void:
		var trigger := zone(0.0, 0.0, 2.0, 2.0, "Trigger")
		var hero := character(9.0)
		var light := zone(9.0, 9.0, 1.0, 1.0, "Light")
		hero.add_to_group(&"players")
		var comes := _told({}, trigger)
		var goes := _told({"when": SCEventOnCollisionAction.STOPS_TOUCHING}, trigger)
		var players := _told({"only_group": &"players"}, trigger)
		var foes := _told({"only_group": &"foes"}, trigger)
		var areas := _told({"include_areas": true}, trigger)
		expect(comes.actions_done(), "it holds its state up")
		for row: Array in [
			[hero, 0.0, ["touch"], [], ["touch"]], [light, 0.0, [], [], ["touch"]], [hero, 9.0, [], ["touch"], []], [light, 9.0, [], [], []],
		]:
			(row[0] as Node).set(&"position", at(row[1], 0.0))
			await physics_frames(4)
			for i in 3:
				expect_events([comes, goes, areas][i], row[i + 2])
			expect_events(foes, [])
		expect_events(players, ["touch"])
		expect_values(comes, {"who": hero})
		expect_values(areas, {"who": light})
		# It stands there already.
		hero.set(&"position", at(0.0, 0.0))
		await physics_frames(4)
		var late := _told({}, trigger)
		var there := _told({"count_those_already_there": true}, trigger)
		await physics_frames(3)
		expect_events(late, [])
		expect_events(there, ["touch"])
		var listeners := func() -> Array:
			return [&"body_entered", &"body_exited", &"area_entered"].map(func(heard: StringName) -> int: return trigger.get_signal_connection_list(heard).size())
		expect_equal(listeners.call(), [6, 1, 1])
		for owner: SCMachine in [comes, goes, players, foes, areas, late, there]:
			owner.stop()
		expect_equal(listeners.call(), [0, 0, 0]))


func test_a_bullet_hits_a_wall() -> void:
	await on_both_sides(func() -> void:
		var wall := block(2.0, 5.0, 1.0, 4.0, "Wall")
		var bullet := crate(0.0, 5.0, 0.2, "Bullet")
		bullet.set(&"gravity_scale", 0.0)
		var owner := _told({}, bullet)
		expect_warning("Bullet does not report what it touches, so no event is sent. Turn on its Contact Monitor and set Max Contacts Reported to 4 or so.")
		bullet.set(&"contact_monitor", true)
		bullet.set(&"max_contacts_reported", 4)
		bullet.set(&"linear_velocity", at(10.0, 0.0))
		await physics_frames(20)
		expect_events(owner, ["touch"])
		expect_values(owner, {"who": wall}))


func test_a_character_runs_into_things() -> void:
	await on_both_sides(func() -> void:
		ground()
		var wall := block(2.0, 1.0, 1.0, 2.0, "Wall")
		wall.add_to_group(&"walls")
		var glow := zone(1.0, 1.0, 0.2, 0.2, "Glow")
		var hero := character()
		var walks := walk(hero, [kind(SCMoveCharacterAction, {"direction_variable": &"stick", "speed": far(5.0)})],
			{"variables": {"stick": Vector2.ZERO}, "name": "Walks"})
		await physics_frames(10)
		var starts := _told({}, hero)
		var stops := _told({"when": SCEventOnCollisionAction.STOPS_TOUCHING, "only_group": &"walls"}, hero)
		var areas := _told({"include_areas": true, "only_group": &"glows"}, hero)
		glow.add_to_group(&"glows")
		await physics_frames(5)
		# The floor it stands on is nothing new.
		expect_events(starts, [])
		walks.set_value("stick", Vector2(1, 0))
		await physics_frames(40)
		expect_events(starts, ["touch"])
		expect_values(starts, {"who": wall})
		expect_events(areas, ["touch"])
		# It no longer walks against the wall, and still stands against it.
		walks.set_value("stick", Vector2.ZERO)
		await physics_frames(10)
		expect_events(stops, [])
		walks.set_value("stick", Vector2(-1, 0))
		await physics_frames(10)
		expect_events(stops, ["touch"])
		expect_events(starts, [])
		walks.set_value("stick", Vector2(1, 0))
		await physics_frames(30)
		expect_events(starts, ["touch"])
		wall.free()
		await physics_frames(10)
		expect_events(stops, ["touch"])
		expect_values(stops, {"who": null})
		var anew := _told({"count_those_already_there": true}, hero)
		await physics_frames(3)
		expect_events(anew, ["touch"])
		hero.free()
		await physics_frames(2))


func test_touches_that_leave_the_state_and_free_things() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var wall := block(2.0, 1.0, 1.0, 2.0, "Wall")
		var owner := start(machine([state("Walk", [
			kind(SCMoveCharacterAction, {"direction": Vector2(1, 0), "speed": far(5.0)}),
			kind(SCEventOnCollisionAction, {"event_name": &"wall", "only_group": &"walls"}),
		], {"wall": "Bumped"}), state("Bumped", [act("free").entering(func(_m: SCMachine) -> void: hero.free())])], {"under": hero}))
		wall.add_to_group(&"walls")
		await physics_frames(60)
		expect(not is_instance_valid(owner) and not is_instance_valid(hero)))


func test_what_a_character_bumped_into_last() -> void:
	await on_both_sides(func() -> void:
		var floor_below := ground()
		var wall := block(2.0, 1.0, 1.0, 2.0, "Wall")
		var hero := character()
		var asks: Dictionary[int, SCMachine] = {}
		for surface: int in 4:
			asks[surface] = play(kind(SCGetLastCollisionAction, {"run_mode": 1, "surface": surface, "store_hit_in": &"hit", "store_node_in": &"who",
				"store_place_in": &"place", "store_normal_in": &"normal", "hit_event": &"bump", "nothing_event": &"free"}), {},
				{"under": hero, "variables": {"hit": null, "who": null, "place": null, "normal": null}})
		await physics_frames(3)
		for surface: int in 4:
			expect_events(asks[surface], ["free"])
		const A_WALL := SCGetLastCollisionAction.A_WALL
		const THE_GROUND := SCGetLastCollisionAction.THE_GROUND
		for row: Array in [[at(0.0, -2.0), 0.2, THE_GROUND, floor_below, at(0.0, 1.0)], [at(5.0, 0.0), 0.6, A_WALL, wall, at(-1.0, 0.0)]]:
			for i in int(row[1] * 60):
				hero.set(&"velocity", row[0])
				hero.call(&"move_and_slide")
				await physics_frames(1)
			for surface: int in [SCGetLastCollisionAction.ANYTHING, row[2]]:
				expect_values(asks[surface], {"hit": true, "who": row[3]})
				expect_near(asks[surface].get_value("normal"), (row[4] as Variant) / far(1.0), 0.001)
			expect_events(asks[row[2]], ["bump"])
		expect_near((asks[A_WALL].get_value("place") as Variant).x, far(1.5), far(0.02))
		expect_near((asks[THE_GROUND].get_value("place") as Variant).y, 0.0, far(0.02))
		expect_values(asks[SCGetLastCollisionAction.A_CEILING], {"hit": false, "who": null}))


func test_how_hard_a_vase_lands() -> void:
	await on_both_sides(func() -> void:
		ground()
		var vase := crate(0.0, 3.4, 0.8, "Vase")
		vase.set(&"mass", 2.0)
		for settings: Dictionary in [{}, {"at_least": far(1000.0)}]:
			await expect_warns_in_physics(kind(SCGetContactAction, settings),
				"Vase does not report its contacts, so none was found. Set its Max Contacts Reported to 4 or so.", {"under": vase})
		vase.set(&"max_contacts_reported", 8)
		vase.set(&"position", at(0.0, 3.4))
		vase.set(&"linear_velocity", at(0.0, 0.0))
		var lands := play(kind(SCGetContactAction, {"run_mode": 1, "at_least": far(5.0), "store_place_in": &"place", "store_normal_in": &"normal",
			"store_node_in": &"who", "store_impulse_in": &"hard", "hit_event": &"broken", "nothing_event": &"whole"}), {"broken": "Broken"},
			{"under": vase, "variables": {"place": null, "normal": null, "who": null, "hard": 0.0}})
		var never := play(kind(SCGetContactAction, {"run_mode": 1, "at_least": far(1000.0), "hit_event": &"broken"}), {}, {"under": vase})
		await physics_frames(20)
		expect_events(lands, ["whole"])
		await physics_frames(60)
		expect_state(lands, "Broken")
		expect_events(never, [])
		# It fell 3 m and lost the speed of that, to which the engine adds what it takes to push it out of the ground.
		var lost := far(2.0 * sqrt(2.0 * 3.0 * (9.8 if in_3d else 980.0 / PX)))
		var hard: float = lands.get_value("hard")
		expect(hard > lost * 0.95 and hard < lost * 1.4, "it landed with %s instead of %s" % [hard, lost])
		expect_near((lands.get_value("place") as Variant).y, 0.0, far(0.1))
		expect_near(lands.get_value("normal"), at(0.0, 1.0) / far(1.0), 0.01)
		expect_equal(lands.get_value("who"), stage.get_node(^"Ground")))


func test_a_ghost_goes_through_walls() -> void:
	await on_both_sides(func() -> void:
		var ghost := character(0.0, 5.0, "Ghost")
		var shape := ghost.get_node(^"Shape")
		var wall := block(3.0, 5.5, 1.0, 6.0, "Wall")
		var owner := start(machine([
			state("Solid", [], {"haunt": "Ghost"}),
			state("Ghost", [kind(SCSetCollisionAction, {"put_back_when_left": true})], {"wake": "Solid", "more": "Deeper"}),
			state("Deeper", [kind(SCSetCollisionAction, {"put_back_when_left": true})], {"wake": "Solid"}),
		], {"under": ghost}))
		for row: Array in [[&"haunt", true], [&"wake", false], [&"haunt", true], [&"more", true], [&"wake", false]]:
			owner.send_event(row[0])
			expect_equal(shape.get(&"disabled"), row[1], str(row))
		var for_good := play(kind(SCSetCollisionAction, {"node_path": ^"../../Wall/Shape"}), {"FINISHED": "Done"}, {"under": ghost})
		expect_state(for_good, "Done")
		expect_equal(wall.get_node(^"Shape").get(&"disabled"), true)
		play(kind(SCSetCollisionAction, {"node_path": ^"../../Wall", "collision": SCSetCollisionAction.ON}), {"FINISHED": "Done"}, {"under": ghost})
		expect_equal(wall.get_node(^"Shape").get(&"disabled"), false))


func test_a_shape_is_switched_while_the_engine_tells_of_touches() -> void:
	await on_both_sides(func() -> void:
		var coin := zone(0.0, 0.0, 1.0, 1.0, "Coin")
		var hero := character(9.0)
		var owner := start(machine([
			state("Lie", [], {"taken": "Taken"}), state("Taken", [kind(SCSetCollisionAction, {"put_back_when_left": true})], {"back": "Lie"}),
		], {"under": coin}))
		coin.connect(&"body_entered", func(_body: Node) -> void: owner.send_event(&"taken"))
		coin.connect(&"body_exited", func(_body: Node) -> void: owner.send_event(&"back"))
		var disabled: Array[bool] = []
		hero.set(&"position", at(0.0, 0.0))
		for i in 6:
			await physics_frames(1)
			disabled.append(coin.get_node(^"Shape").get(&"disabled"))
		# Switched off it lets go of the one who touches it, and is back.
		expect(true in disabled and false in disabled.slice(disabled.find(true)), str(disabled)))


func test_layers_by_number_and_by_name() -> void:
	for side: String in ["2d", "3d"]:
		ProjectSettings.set_setting("layer_names/%s_physics/layer_1" % side, "World")
		ProjectSettings.set_setting("layer_names/%s_physics/layer_3" % side, "Enemies")
	await on_both_sides(func() -> void:
		var hero := character()
		hero.set(&"collision_layer", 9)
		hero.set(&"collision_mask", 2)
		const SET := SCSetCollisionAction.SET
		const ADD := SCSetCollisionAction.ADD
		const REMOVE := SCSetCollisionAction.REMOVE
		for row: Array in [
			[{"change_layers": SET, "collision_layer": 2}, 2, 2], [{"change_layers": ADD, "layer_names": "Enemies, 32"}, 9 + 4 + 0x80000000, 2],
			[{"change_layers": REMOVE, "layer_names": "world"}, 8, 2], [{"change_layers": REMOVE, "collision_layer": 8, "layer_names": "World"}, 0, 2],
			[{"change_mask": SET, "mask_names": "World,Enemies"}, 9, 5],
			[{"change_mask": ADD, "collision_mask": 1, "change_layers": SET, "layer_names": "Enemies"}, 4, 3],
			[{"change_mask": REMOVE, "collision_mask": 0xFFFFFFFF}, 9, 0], [{"layer_names": "World"}, 9, 2],
		]:
			var changes: SCMachineAction = kind(SCSetCollisionAction, {"collision": SCSetCollisionAction.LEAVE_AS_IT_IS, "put_back_when_left": true}.merged(row[0]))
			var owner := play(changes, {"leave": "Done"}, {"under": hero})
			expect_equal([hero.get(&"collision_layer"), hero.get(&"collision_mask")], [row[1], row[2]], str(row))
			expect_equal(hero.get_node(^"Shape").get(&"disabled"), false)
			owner.send_event(&"leave")
			expect_equal([hero.get(&"collision_layer"), hero.get(&"collision_mask")], [9, 2], str(row))
			owner.free()
		play(kind(SCSetCollisionAction, {"collision": 0, "change_layers": SET, "layer_names": "Enemies, Ghosts, 33"}), {}, {"under": hero})
		expect_equal(hero.get(&"collision_layer"), 4)
		for name: String in ["Ghosts", "33"]:
			expect_warning("there is no %s physics layer called %s, so it was left out. Name one in Project Settings, under Layer Names, or type another"
				% ["3D" if in_3d else "2D", name]))
	for side: String in ["2d", "3d"]:
		for layer: int in [1, 3]:
			ProjectSettings.set_setting("layer_names/%s_physics/layer_%d" % [side, layer], "")


func test_what_is_set_up_wrong_is_told() -> void:
	var post := body("Post")
	for row: Array in [
		[SCEventOnCollisionAction, {"event_name": &"a"}, "Post is a Node2D, not an area, a character body or a rigid body."],
		[SCEventOnCollisionAction, {"event_name": &"a", "node_path": ^"../../Gone"}, "there is no node at ../../Gone. Pick one under Node Path."],
		[SCGetLastCollisionAction, {}, "Post is a Node2D, not a CharacterBody2D or CharacterBody3D."],
		[SCGetContactAction, {}, "Post is a Node2D, not a RigidBody2D or RigidBody3D."],
		[SCSetCollisionAction, {}, "Post has no collision to switch, so it was left as it is."],
		[SCSetCollisionAction, {"collision": 0, "change_mask": 1}, "Post is a Node2D, which is on no physics layers, so it was left as it is."],
		[SCSetCollisionAction, {"node_path": ^"../../Gone"}, "there is no node at ../../Gone. Pick one under Node Path."],
	]:
		await expect_warns_in_physics(kind(row[0], row[1]), row[2], {"under": post})
	var deaf := add(Area2D.new(), "Deaf", {"monitoring": false})
	await expect_warns_in_physics(kind(SCEventOnCollisionAction),
		["it has nothing to send. Type an event under Event Name", "Deaf is not monitoring, so nothing is felt touching it. Turn on its Monitoring."],
		{"under": deaf})


func test_lines_on_the_graph() -> void:
	expect_lines(SCEventOnCollisionAction, {
		"When something touches Self, send hit": {"event_name": &"hit"}, "When something touches Self, send (pick one)": {},
		"When one of players stops touching Door, keep it in who": {"when": 1, "only_group": &"players", "node_path": ^"../Door", "store_node_in": &"who"},
	})
	expect_lines(SCGetLastCollisionAction, {
		"Find what Self bumped into": {}, "Find what wall in ice Hero bumped into": {"surface": 2, "only_group": &"ice", "body_path": ^"../Hero"},
	})
	expect_lines(SCGetContactAction, {
		"Find where Self touches something": {},
		"Find where Self touches any of floors with an impulse of 5 or more": {"only_group": &"floors", "at_least": 5.0},
	})
	expect_lines(SCSetCollisionAction, {
		"Self: switch its collision off": {},
		"Wall: switch its collision on while the state runs": {"node_path": ^"../Wall", "collision": 1, "put_back_when_left": true},
		"Self: set its layers to 1, 3, add World to its mask": {"collision": 0, "change_layers": 1, "collision_layer": 5, "change_mask": 2, "mask_names": "World"},
	})
