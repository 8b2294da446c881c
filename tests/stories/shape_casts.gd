extends PhysicsStory
## Feeling about with a circle or a box, in 2D and in 3D.


func _cast(settings: Dictionary = {}) -> SCMachineAction:
	var made: SCMachineAction = kind(SCShapeCastAction)
	if not in_3d:
		made.suit_2d()
	for setting: String in settings:
		made.set(setting, settings[setting])
	return made


func _felt(settings: Dictionary, under: Node) -> Dictionary:
	var kept := {&"list": [], &"count": -1, &"node": under, &"place": null, &"normal": null, &"distance": -1.0}
	var action := _cast(settings)
	for name: StringName in kept:
		action.set("store_%s_in" % name, name)
	var made := play(action, {"FINISHED": "Done"}, {"under": under, "variables": kept})
	await physics_frames(3)
	expect_state(made, "Done")
	var held := {}
	for name: StringName in kept:
		held[name] = made.get_value(name)
	made.free()
	return held


func _box(wide: float, tall: float) -> Variant:
	return Vector3(wide, tall, wide) if in_3d else Vector2(wide, tall) * PX


func test_whoever_stands_around_a_bomb() -> void:
	await on_both_sides(func() -> void:
		var bomb := crate(0.0, 0.0, 0.4, "Bomb")
		bomb.set(&"freeze", true)
		var far_one := block(2.9, 0.0, 1.0, 1.0, "Far")
		var near := block(-1.5, 0.0, 1.0, 1.0, "Near")
		var hurt := zone(0.0, 2.0, 1.0, 1.0, "Hurt")
		near.add_to_group(&"people")
		near.set(&"collision_layer", 4)
		for row: Array in [
			[{"radius": far(1.0)}, [near]], [{"radius": far(0.9)}, []], [{"radius": far(2.5)}, [near, far_one]], [{"radius": far(2.5), "most": 1}, [near]],
			[{"radius": far(2.5), "collide_with_areas": true}, [near, hurt, far_one]],
			[{"radius": far(2.5), "collide_with_areas": true, "collide_with_bodies": false}, [hurt]], [{"radius": far(2.5), "collision_mask": 1}, [far_one]],
			[{"radius": far(2.5), "only_group": &"people"}, [near]], [{"radius": far(2.5), "exclude_group": &"people"}, [far_one]],
			[{"radius": far(1.5), "exclude_self": false}, [bomb, near]],
			[{"shape": SCShapeCastAction.BOX, "size": _box(3.0, 1.0)}, [near]], [{"shape": SCShapeCastAction.BOX, "size": _box(1.0, 3.4)}, []],
			[{"from_path": ^"../../Far", "radius": far(0.5), "exclude_self": false}, [far_one]],
		]:
			var felt := await _felt(row[0], bomb)
			expect_equal(felt.list, row[1], str(row))
			expect_equal([felt.count, felt.node], [(row[1] as Array).size(), null if (row[1] as Array).is_empty() else row[1][0]], str(row)))


func test_a_box_turns_with_its_node() -> void:
	await on_both_sides(func() -> void:
		var hand := spot(0.0, 0.0, "Hand")
		var above := block(0.0, 1.5, 1.0, 1.0, "Above")
		hand.set(&"rotation", Vector3(0, 0, PI / 2.0) if in_3d else PI / 2.0)
		for row: Array in [[SCShapeCastAction.GLOBAL, []], [SCShapeCastAction.LOCAL, [above]]]:
			var felt := await _felt({"shape": SCShapeCastAction.BOX, "size": _box(4.0, 0.5) if not in_3d else Vector3(4, 0.5, 0.5), "space": row[0]}, hand)
			expect_equal(felt.list, row[1], str(row)))


func test_a_charging_bull() -> void:
	await on_both_sides(func() -> void:
		var bull := spot(0.0, 0.0, "Bull")
		var second := block(6.0, 0.0, 1.0, 1.0, "Second")
		var first := block(3.0, 0.4, 1.0, 1.0, "First")
		block(3.0, -1.2, 1.0, 1.0, "Beside")
		second.add_to_group(&"people")
		var to_first := 2.5 - 0.6
		for row: Array in [
			[{"distance": far(8.0)}, [first, second], to_first], [{"distance": far(to_first + 0.01)}, [first], to_first],
			[{"distance": far(to_first - 0.01)}, [], 0.0], [{"distance": far(8.0), "most": 1}, [first], to_first],
			[{"distance": far(8.0), "only_group": &"people"}, [second], 4.9],
			[{"distance": far(8.0), "only_group": &"people", "stopped_by_others": true}, [], 0.0],
			[{"distance": far(8.0), "aim": SCShapeCastAction.TOWARD_A_NODE, "toward_path": ^"../../Second"}, [first, second], to_first],
		]:
			var felt := await _felt({"radius": far(0.6), "direction": at(1.0, 0.0)}.merged(row[0], true), bull)
			expect_equal(felt.list, row[1], str(row))
			if row[2] > 0.0:
				expect_near(felt.distance, far(row[2]), far(0.003), str(row))
			if row[1] == [second]:
				expect_near(felt.place, at(5.5, 0.0), far(0.01), str(row))
				expect_near(felt.normal, at(-1.0, 0.0) / far(1.0), 0.01, str(row))
		# What it stands in comes first, and is met at once.
		var inside := block(0.0, 0.0, 0.2, 0.2, "Inside")
		var felt := await _felt({"radius": far(0.6), "direction": at(1.0, 0.0), "distance": far(8.0)}, bull)
		expect_equal(felt.list, [inside, first, second])
		expect_equal(felt.distance, 0.0))


func test_it_tells_only_of_changes() -> void:
	await on_both_sides(func() -> void:
		var mine := spot(0.0, 0.0, "Mine")
		var people: Array[Node] = [block(9.0, 0.0, 0.5, 0.5, "Ann"), block(9.0, 3.0, 0.5, 0.5, "Bob")]
		var feels := _cast({"run_mode": 1, "hit_event": &"some", "nothing_event": &"none", "store_list_in": &"who"})
		var owner := play(feels, {}, {"under": mine, "variables": {"who": []}})
		for row: Array in [[[], ["none"]], [[0], ["some"]], [[0], []], [[0, 1], ["some"]], [[1], ["some"]], [[], ["none"]]]:
			for i in 2:
				people[i].set(&"position", at(0.5 * i if i in row[0] else 9.0, 0.3))
			await physics_frames(3)
			expect_events(owner, row[1])
			expect_equal((owner.get_value("who") as Array).size(), (row[0] as Array).size()))


func test_what_is_set_up_wrong_is_told() -> void:
	await on_both_sides(func() -> void:
		var mine := spot(0.0, 0.0, "Mine")
		for row: Array in [
			[{"radius": 0.0}, "its Radius leaves no room inside the shape, so nothing was found. Type more than 0 under Radius."],
			[{"shape": SCShapeCastAction.BOX, "size": Vector2(1, 0)}, "its Size leaves no room inside the shape, so nothing was found."],
			[{"shape": SCShapeCastAction.BOX, "size": Vector3(NAN, 1, 1)}, "Size"], [{"radius": INF}, "Radius"],
			[{"distance": 5.0, "direction": Vector3.ZERO}, "its Direction is zero, which leads nowhere"],
		]:
			var owner := play(_cast((row[0] as Dictionary).merged({"nothing_event": &"none"})), {"none": "Away"}, {"under": mine})
			await physics_frames(3)
			expect_warning(row[1])
			expect_state(owner, "Away")
			owner.free())


func test_lines_on_the_graph() -> void:
	expect_lines(SCShapeCastAction, {
		"Find what is within 1 of Self": {},
		"Find all people within 3 of Bomb": {"from_path": ^"../Bomb", "only_group": &"people", "radius": 3.0},
		"Find what is in a box of (1, 1, 1) at Self, swept 4 down": {"shape": SCShapeCastAction.BOX, "distance": 4.0},
	})
	expect_shown(kind(SCShapeCastAction), ["radius"])
	expect_hidden(kind(SCShapeCastAction), ["size", "direction", "space", "aim", "store_distance_in"])
	expect_shown(kind(SCShapeCastAction, {"distance": 2.0}), ["direction", "space", "aim", "store_distance_in"])
