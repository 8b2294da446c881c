extends PhysicsStory
## Asking an area what is inside it.


func _inside(settings: Dictionary, under: Node) -> Array:
	var made := play(kind(SCGetOverlappingAction, {"store_list_in": &"who", "store_count_in": &"count", "store_node_in": &"first"}.merged(settings)),
		{"FINISHED": "Done"}, {"under": under, "variables": {"who": [], "count": -1, "first": under}})
	await physics_frames(3)
	expect_state(made, "Done")
	var who: Array = made.get_value("who")
	expect_equal([made.get_value("count"), made.get_value("first")], [who.size(), null if who.is_empty() else who[0]], str(settings))
	made.free()
	return who


func test_every_enemy_in_the_blast() -> void:
	await on_both_sides(func() -> void:
		var blast := zone(0.0, 0.0, 6.0, 6.0, "Blast")
		var far_one := block(2.5, 0.0, 1.0, 1.0, "Far")
		var near := character(1.0, -0.5, "Near")
		near.add_to_group(&"enemies")
		block(9.0, 0.0, 1.0, 1.0, "Outside")
		var other_layer := block(0.0, -2.0, 1.0, 1.0, "Hidden")
		other_layer.set(&"collision_layer", 8)
		var coin := zone(0.0, 1.5, 0.5, 0.5, "Coin")
		zone(0.0, -1.5, 0.5, 0.5, "Unseen").set(&"monitorable", false)
		for row: Array in [
			[{}, [near, far_one]], [{"only_group": &"enemies"}, [near]], [{"exclude_group": &"enemies"}, [far_one]],
			[{"collide_with_bodies": false}, []], [{"collide_with_bodies": false, "collide_with_areas": true}, [coin]],
			[{"collide_with_areas": true}, [near, coin, far_one]],
		]:
			expect_equal(await _inside(row[0], blast), row[1], str(row))
		# An area that does not listen can be asked all the same, and where it is now.
		blast.set(&"monitoring", false)
		blast.set(&"position", at(9.0, 0.0))
		expect_equal((await _inside({}, blast)).size(), 1)
		(blast.get_child(0) as Node).set(&"disabled", true)
		expect_equal(await _inside({}, blast), []))


func test_ones_own_sword_does_not_find_oneself() -> void:
	await on_both_sides(func() -> void:
		var hero := character()
		var sword := zone(0.0, 0.8, 3.0, 1.0, "Sword")
		sword.reparent(hero)
		var foe := block(1.0, 0.8, 1.0, 1.0, "Foe")
		expect_equal(await _inside({"area_path": ^"../Sword"}, hero), [foe])
		expect_equal(await _inside({"area_path": ^"../Sword", "exclude_self": false}, hero), [hero, foe]))


func test_a_pressure_plate_tells_only_of_changes() -> void:
	await on_both_sides(func() -> void:
		var plate := zone(0.0, 0.0, 2.0, 1.0, "Plate")
		var box := block(9.0, 0.0, 0.5, 0.5, "Box")
		var owner := play(kind(SCGetOverlappingAction, {"run_mode": 1, "hit_event": &"down", "nothing_event": &"up"}), {}, {"under": plate})
		for row: Array in [[9.0, ["up"]], [0.0, ["down"]], [0.5, []], [9.0, ["up"]]]:
			box.set(&"position", at(row[0], 0.0))
			await physics_frames(3)
			expect_events(owner, row[1])
		box.set(&"position", at(0.0, 0.0))
		await physics_frames(3)
		box.free()
		await physics_frames(2)
		expect_events(owner, ["down", "up"])
		plate.remove_child(owner)
		stage.add_child(owner)
		plate.free()
		await physics_frames(2)
		expect_warning("Stage is a Node, not an Area2D or Area3D."))


func test_a_big_crowd_is_found_whole() -> void:
	await on_both_sides(func() -> void:
		var square := zone(0.0, 0.0, 50.0, 50.0, "Square")
		for i in 90:
			block(i % 10 * 2.0 - 9.0, floorf(i / 10.0) * 2.0 - 9.0, 0.5, 0.5)
		expect_equal((await _inside({}, square)).size(), 90))


func test_what_is_set_up_wrong_is_told() -> void:
	var post := body("Post")
	add(Area2D.new(), "Bare")
	for row: Array in [
		[{}, "Post is a Node2D, not an Area2D or Area3D. Pick an Area2D or Area3D under Area Path."],
		[{"area_path": ^"../../Gone"}, "there is no node at ../../Gone. Pick one under Area Path."],
		[{"area_path": ^"../../Bare"}, "Bare has no shape, so nothing can be inside it. Add a CollisionShape2D below it and pick a shape there."],
	]:
		expect_equal(await _inside(row[0], post), [])
		expect_warning(row[1])
	expect_line(kind(SCGetOverlappingAction, {"store_list_in": &"who", "only_group": &"coins"}), "Find all coins inside Self, keep it in who")
