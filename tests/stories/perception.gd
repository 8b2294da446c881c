extends "res://tests/stories/files/sense_story.gd"

const Sight := preload("res://addons/quillstead/runtime/quillstead_sight.gd")


func test_who_is_seen() -> void:
	await on_both_sides(func() -> void:
		# Where the player stands, what else there is, and whether the guard sees them.
		var rows: Array = [
			["ahead", 5.0, {}, true],
			["behind its back", -5.0, {}, false],
			["behind its back, and it sees all around", -5.0, {"view_angle": 360.0}, true],
			["just within its range", 11.9, {}, true],
			["too far off", 12.1, {}, false],
			["nearer than it is short-sighted", 3.0, {"see_range": far(3.5)}, true],
			["too far for its eyes", 4.0, {"see_range": far(3.5)}, false],
			["blind", 1.0, {"see_range": 0.0}, false],
			["looking for another group", 5.0, {"watch_group": &"thieves"}, false],
			["on the very same spot", 0.0, {}, true],
		]
		for row: Array in rows:
			var watcher := senses_of(guard(row[2]))
			var hero := player(row[1])
			watcher.look_now()
			expect_equal(watcher.can_see_target, row[3], row[0])
			expect_equal(watcher.target, hero if row[3] else null, row[0])
			hero.free()
			watcher.get_parent().free())


func test_a_wall_is_in_the_way() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var hero := player(6.0)
		var wall := block(3.0, 2.0, 0.5, 6.0, "Wall")
		watcher.look_now()
		expect(not watcher.can_see_target, "it sees through a wall")
		wall.set(&"collision_layer", 2)
		watcher.look_now()
		expect(watcher.can_see_target, "a wall it does not mind is in its way")
		watcher.blocked_by = 2
		watcher.look_now()
		expect(not watcher.can_see_target)
		watcher.blocked_by = 0
		watcher.look_now()
		expect(watcher.can_see_target and watcher.target == hero)
		watcher.blocked_by = 2
		wall.free()
		watcher.look_now()
		expect(watcher.can_see_target, "the wall has gone"))


func test_something_big_is_seen_by_its_edge() -> void:
	await on_both_sides(func() -> void:
		for points: int in [1, 5]:
			var watcher := senses_of(guard({"points_on_target": points}))
			var hero := player(6.0)
			# It hides the middle, and leaves an edge: what is up in 2D, and aside in 3D.
			var wall := block(4.0, 0.0, 0.2, 2.0, "Wall") if not in_3d else block(4.0, 0.9, 0.2, 1.0, "Wall")
			if in_3d:
				wall.set(&"position", Vector3(4.0, 1.0, 0.8))
				(wall.get_node(^"Shape") as CollisionShape3D).shape.set(&"size", Vector3(0.2, 4.0, 1.7))
			await physics_frames(1)
			watcher.look_now()
			expect_equal(watcher.can_see_target, points > 1, "%d points in 3D %s" % [points, in_3d])
			for made: Node in [watcher.get_parent(), hero, wall]:
				made.free())


func test_it_looks_where_it_is_turned() -> void:
	for row: Array in [[0.0, true], [90.0, false], [180.0, false], [-50.0, true], [-70.0, false]]:
		for side: bool in [false, true]:
			in_3d = side
			var body := guard()
			var hero := player(5.0)
			if side:
				(body as Node3D).rotation_degrees.y = -90.0 + row[0]
			else:
				(body as Node2D).rotation_degrees = row[0]
			senses_of(body).look_now()
			expect_equal(senses_of(body).can_see_target, row[1], "turned by %s in %s" % [row[0], "3D" if side else "2D"])
			hero.free()
			body.free()
	in_3d = false
	var side_on := guard()
	player(-5.0)
	side_on.set_meta(&"quillstead_faces_left", true)
	senses_of(side_on).look_now()
	expect(senses_of(side_on).can_see_target, "it was turned to the left")
	side_on.set_meta(&"quillstead_faces_left", false)
	senses_of(side_on).look_now()
	expect(not senses_of(side_on).can_see_target, "it was turned to the right")
	(side_on as Node2D).scale.x = -1.0
	side_on.remove_meta(&"quillstead_faces_left")
	senses_of(side_on).look_now()
	expect(senses_of(side_on).can_see_target, "it is mirrored")


func test_it_remembers_and_forgets() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"remember_for": 0.5}))
		var told := heed(watcher)
		var hero := player(5.0)
		var seen_at: Variant = hero.get(&"position")
		await physics_frames(3)
		expect_equal(told, ["spotted Player"])
		expect_equal(watcher.last_known_position, seen_at)
		expect(watcher.has_a_target() and not watcher.has_lost_it() and watcher.last_lost_position == null)
		hero.set(&"position", at(-5.0, 1.0))
		await physics_frames(10)
		expect(watcher.has_lost_it() and watcher.target == hero and not watcher.can_see_target, "it is remembered")
		expect_equal([watcher.last_known_position, watcher.last_lost_position], [seen_at, seen_at])
		expect_near(watcher.out_of_sight_for(), 10.0 / 60.0, 0.04)
		hero.set(&"position", at(4.0, 1.0))
		await physics_frames(3)
		hero.set(&"position", at(-5.0, 1.0))
		await physics_frames(28)
		expect_equal(told, ["spotted Player", "seen_again Player"], "it gives up too soon")
		await physics_frames(6)
		expect_equal(told, ["spotted Player", "seen_again Player", "lost Player"])
		expect(watcher.has_lost_it() and not watcher.has_a_target(), "it has given up")
		expect_equal(watcher.last_known_position, at(4.0, 1.0), "the place is still known")
		hero.set(&"position", at(4.0, 1.0))
		await physics_frames(3)
		hero.free()
		await physics_frames(3)
		expect_equal(told.slice(3), ["spotted Player", "lost nobody"])
		expect(watcher.target == null and not watcher.can_see_target))


func test_who_is_hidden_or_taken_out_is_lost() -> void:
	await on_both_sides(func() -> void:
		for how: String in ["hide", "take out"]:
			var watcher := senses_of(guard())
			var hero := player(5.0)
			await physics_frames(3)
			expect(watcher.can_see_target)
			if how == "hide":
				hero.call(&"hide")
			else:
				stage.remove_child(hero)
			await physics_frames(3)
			expect(watcher.has_lost_it() and watcher.target == hero, how)
			if how == "take out":
				stage.add_child(hero)
			hero.call(&"show")
			await physics_frames(3)
			expect(watcher.can_see_target, how)
			hero.free()
			watcher.get_parent().free())


func test_the_nearest_comes_first_and_is_kept() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var told := heed(watcher)
		var off := player(8.0, 0.0, 0.0, "Far")
		var near := player(4.0, 6.0, 0.0, "Near")
		(near as Node).set(&"position", at(4.0, 2.4))
		watcher.look_now()
		expect_equal(watcher.target, near)
		off.set(&"position", at(2.0, 0.8))
		watcher.look_now()
		expect_equal(watcher.target, near, "it leaves whom it sees")
		near.set(&"position", at(-8.0, 0.8))
		watcher.look_now()
		expect_equal(told, ["spotted Near", "spotted Far"]))


func test_what_it_is_told_of() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard({"remember_for": 0.2}))
		var told := heed(watcher)
		var thief := character(-5.0, 0.0, "Thief")
		watcher.notice(thief)
		expect(watcher.target == thief and not watcher.can_see_target and not watcher.has_lost_it())
		expect_equal(watcher.last_known_position, thief.get(&"position"))
		await physics_frames(4)
		thief.set(&"position", at(5.0, 1.0))
		await physics_frames(3)
		expect_equal(told, ["spotted Thief"], "whom it was told of is seen whatever the group")
		watcher.notice(null)
		watcher.notice(watcher.get_parent())
		expect_equal(watcher.target, thief)
		thief.free()
		watcher.notice(stage)
		await physics_frames(20)
		expect(watcher.target == null, "a thing without a place is forgotten")
		watcher.hear(at(1.0, 2.0))
		expect_equal(watcher.last_heard_position, at(1.0, 2.0))
		expect(watcher.target == null, "a noise is not somebody"))


func test_many_watchers_share_the_rays_of_a_frame() -> void:
	await on_both_sides(func() -> void:
		var watchers: Array[Senses] = []
		for number in 100:
			var body := guard({"look_every": 0.1}, -number * 0.001, "Guard%d" % number)
			body.set(&"collision_layer", 0)
			watchers.append(senses_of(body))
		block(3.0, 2.0, 0.5, 6.0, "Wall")
		player(6.0)
		Sight.rays_per_frame = 50
		Sight._most_cast = 0
		var in_one := 0
		for watcher in watchers:
			watcher.look_now()
		await physics_frames(1)
		in_one = watchers.reduce(func(sum: int, watcher: Senses) -> int: return sum + int(watcher._waits), 0)
		expect(in_one > 0, "all of them looked in two frames")
		# Two of those whose turn has not come.
		stage.remove_child(watchers[-1].get_parent())
		watchers.pop_back().get_parent().free()
		watchers[-1].get_parent().process_mode = Node.PROCESS_MODE_DISABLED
		watchers.pop_back()
		await physics_frames(12)
		expect_equal(Sight._most_cast, 50, "a frame carries more than it may, or less than it could")
		stage.get_node(^"Wall").free()
		await physics_frames(18)
		expect(watchers.all(func(watcher: Senses) -> bool: return watcher.can_see_target), "some never get their turn")
		Sight.rays_per_frame = 120)


func test_distances_nobody_set_suit_the_side() -> void:
	for row: Array in [[Node2D.new(), 32.0], [Node3D.new(), 1.0]]:
		var under: Node = add(row[0], "Under")
		var senses := senses_of(_sharpen(under, {}))
		expect_equal([senses.see_range, senses.hearing_range], [12.0 * row[1], 20.0 * row[1]])
		senses.see_range = 12.0
		expect_equal(senses.see_range, 12.0, "what was typed in stays")
		expect_equal(senses.property_get_revert(&"hearing_range"), 20.0 * row[1])
		expect_equal(senses._get_configuration_warnings(), PackedStringArray())
		under.free()
	var nowhere := senses_of(_sharpen(add(Node.new(), "Nowhere"), {}))
	expect_warning("Perception Perception sits under Nowhere, which has no place in the world, so it neither sees nor hears.")
	expect_equal(nowhere._get_configuration_warnings().size(), 1)
	nowhere.look_now()
	await physics_frames(2)
	expect(nowhere.target == null)


func test_nothing_that_happens_to_it_harms() -> void:
	await on_both_sides(func() -> void:
		var watcher := senses_of(guard())
		var hero := player(5.0)
		hero.set(&"position", at(NAN, NAN))
		await physics_frames(2)
		expect(not watcher.can_see_target)
		hero.set(&"position", at(5.0, 1.0))
		# What is spotted is freed, and so is the guard, by whoever is told.
		watcher.spotted.connect(func(whom: Node) -> void:
			whom.free()
			watcher.get_parent().queue_free())
		await physics_frames(4)
		expect(not is_instance_valid(hero) and not is_instance_valid(watcher))
		var other := senses_of(guard())
		player(5.0)
		other.spotted.connect(func(_whom: Node) -> void: stage.remove_child(other.get_parent()))
		await physics_frames(3)
		expect(not other.is_inside_tree() and other.can_see_target)
		other.look_now()
		other.get_parent().free())


func test_a_player_of_the_other_side_is_not_there() -> void:
	in_3d = true
	var in_space := senses_of(guard())
	in_3d = false
	var flat := senses_of(guard())
	var mixed := player(5.0)
	in_space.look_now()
	flat.look_now()
	expect(flat.target == mixed and in_space.target == null)


func test_a_scene_keeps_only_distances_that_were_set() -> void:
	var eyes: Node = load("res://addons/quillstead/runtime/senses.gd").new()
	var stored := func() -> Array: return eyes.get_property_list().filter(func(one: Dictionary) -> bool:
		return one["name"] in ["see_range", "hearing_range"] and one["usage"] & PROPERTY_USAGE_STORAGE).map(func(one: Dictionary) -> String: return one["name"])
	expect_equal(stored.call(), [])
	eyes.set(&"see_range", 12.0)
	expect_equal([stored.call(), eyes.get(&"see_range")], [["see_range"], 12.0])
	eyes.free()
