extends PhysicsStory
## Picking things up, carrying them about, and putting them down or throwing them.


func carry(change: int, settings: Dictionary = {}) -> SCCarryAction:
	return kind(SCCarryAction, {"change": change, "node_path": ^"/root/Stage/Crate"}.merged(settings, true))


## A player that does as it is told.
func player(settings: Dictionary = {}, body: Node = null) -> SCMachine:
	return start(machine([
		state("Free", [], {"TAKE": "Take", "DROP": "Drop", "THROW": "Throw"}),
		state("Take", [carry(SCCarryAction.PICK_UP, settings)], {"DROP": "Drop", "THROW": "Throw", "TAKE": "Take"}),
		state("Drop", [carry(SCCarryAction.PUT_DOWN)], {"TAKE": "Take"}),
		state("Throw", [carry(SCCarryAction.THROW, {} if in_3d else {"throw": Vector2(200, -120)})], {"TAKE": "Take"}),
	], {"under": body if body != null else spot(0.0, 5.0, "Player")}))


func test_what_is_held_follows_and_bumps_into_nothing() -> void:
	await on_both_sides(func() -> void:
		var box := crate(3.0, 1.0)
		box.set(&"collision_mask", 3)
		var made := player()
		made.send_event(&"TAKE")
		expect_near(where(box), Vector3(0, 5, 0), 0.001, "at once")
		expect(box.has_meta(&"quillstead_carried"))
		var hero := made.get_parent()
		for x: float in [1.0, 4.0]:
			hero.set(&"position", at(x, 2.0))
			await physics_frames(3)
			expect_near(where(box), Vector3(x, 2, 0), 0.001)
		block(4.0, 2.0, 3.0, 3.0)
		await physics_frames(10)
		expect_near(where(box), Vector3(4, 2, 0), 0.001, "inside a wall")
		expect_equal(box.get_parent(), stage)
		hero.set(&"position", at(0.0, 10.0))
		await physics_frames(2)
		made.send_event(&"DROP")
		expect_equal([box.get(&"collision_layer"), box.get(&"collision_mask"), box.has_meta(&"quillstead_carried")], [1, 3, false])
		await physics_frames(20)
		expect(where(box).y < 9.9 and where(box).y > 8.0, "it falls from where it was put down: %s" % where(box))
		expect_equal(hero.get_child_count(true), 1, "nothing is left in the hand"))


func test_without_snapping_it_is_carried_from_where_it_is() -> void:
	await on_both_sides(func() -> void:
		var box := crate(3.0, 5.0)
		var made := player({"snap_to_the_hand": false})
		made.send_event(&"TAKE")
		expect_near(where(box), Vector3(3, 5, 0), 0.001)
		var hero := made.get_parent()
		hero.set(&"rotation", Vector3(0.0, PI / 2.0, 0.0) if in_3d else -PI / 2.0 as Variant)
		await frames(2)
		expect_near(where(box), Vector3(0, 5, -3) if in_3d else Vector3(0, 8, 0), 0.001, "on the hand's own side")
		expect_near((box.get(&"global_transform") as Variant).basis.x if in_3d else box.get(&"rotation"), Vector3(0, 0, -1) if in_3d else -PI / 2.0 as Variant,
			0.001))


func test_in_a_mirrored_hand_it_changes_sides_and_stays_upright() -> void:
	for by_scale: bool in [true, false]:
		var box := crate(1.0, 5.0) as Node2D
		var made := player({"snap_to_the_hand": false})
		made.send_event(&"TAKE")
		var hero := made.get_parent() as Node2D
		if by_scale:
			hero.scale.x = -1.0
		else:
			hero.set_meta(&"quillstead_faces_left", true)
		await frames(2)
		expect_near(where(box), Vector3(-1, 5, 0), 0.001)
		expect_near(box.rotation, 0.0)
		made.send_event(&"THROW")
		expect_near(box.get(&"linear_velocity"), Vector2(-200, -120))
		box.free()
		hero.free()


func test_what_is_thrown_flies_the_way_its_carrier_faces() -> void:
	for rigid: bool in [true, false]:
		await on_both_sides(func() -> void:
			var box := crate(0.0, 5.0) if rigid else character(0.0, 4.0, "Crate")
			var made := player()
			made.get_parent().set(&"rotation", Vector3(0.0, PI / 2.0, 0.0) if in_3d else PI / 2.0 as Variant)
			made.send_event(&"TAKE")
			await physics_frames(2)
			made.send_event(&"THROW")
			# Within a physics frame the body is freed only with the end of it.
			if rigid:
				await frames(1)
			var fast: Variant = box.get(&"linear_velocity" if rigid else &"velocity")
			expect_near(fast, Vector3(-8, 2, 0) if in_3d else Vector2(120, 200) as Variant, far(0.35), "%s" % box.get_class())
			var before := where(box)
			await physics_frames(10)
			if rigid:
				expect((where(box) - before).length() > 0.5, "it flies"))


func test_a_thing_frozen_by_its_maker_flies_and_is_put_down_frozen() -> void:
	in_3d = true
	var box := crate(0.0, 5.0) as RigidBody3D
	box.freeze = true
	var made := player()
	made.send_event(&"TAKE")
	made.send_event(&"DROP")
	expect(box.freeze)
	made.send_event(&"TAKE")
	made.send_event(&"THROW")
	expect(not box.freeze)


func test_it_is_let_go_when_the_hand_or_it_leaves_the_game() -> void:
	await on_both_sides(func() -> void:
		var box := crate(0.0, 5.0)
		var made := player()
		made.send_event(&"TAKE")
		await physics_frames(2)
		made.get_parent().free()
		await frames(2)
		expect_equal([box.get(&"collision_layer"), box.get(&"freeze"), box.has_meta(&"quillstead_carried")], [1, false, false])
		var other := player()
		other.send_event(&"TAKE")
		await frames(1)
		box.free()
		await frames(2)
		expect_equal(other.get_parent().get_child_count(true), 1))


func test_from_one_hand_into_another() -> void:
	await on_both_sides(func() -> void:
		var box := crate(0.0, 0.0)
		player().send_event(&"TAKE")
		var thief := player({}, spot(9.0, 9.0, "Thief"))
		thief.send_event(&"TAKE")
		await frames(2)
		expect_near(where(box), Vector3(9, 9, 0), 0.001)
		thief.send_event(&"DROP")
		expect_equal([box.get(&"collision_layer"), box.get(&"freeze")], [1, false]))


func test_a_body_touched_is_picked_up_from_within_the_areas_signal() -> void:
	await on_both_sides(func() -> void:
		var hand := zone(0.0, 1.0, 2.0, 2.0, "Hand")
		var made := start(machine([state("Free", [], [transition("TOUCHED", "Take", "thing")]),
			state("Take", [carry(SCCarryAction.PICK_UP, {"node_path_variable": &"thing"})])], {"under": hand, "variables": {"thing": null}}))
		(hand as Object).connect(&"body_entered", func(of: Node) -> void: made.send_event(&"TOUCHED", of))
		var box := crate(0.5, 3.0)
		await physics_frames(60)
		expect_near(where(box), Vector3(0, 1, 0), 0.001)
		expect(box.get(&"freeze")))


func test_mistakes_are_told() -> void:
	var hero := body("Hero")
	body("Marker", Vector2.ZERO, hero)
	var plain := body_3d("Plain")
	add(Node.new(), "Words")
	body("Crate")
	var told := func(settings: Dictionary, text: String) -> void:
		expect_warns(carry(settings.get("change", 0), settings), text, {"under": hero})
	told.call({"node_path": ^"../Nobody"}, "there is no node at ../Nobody, so there is nothing to pick up. Pick it under Node, often a node variable such as")
	told.call({"node_path": ^""}, "no node is picked, so there is nothing to pick up.")
	told.call({"node_path": ^"../../Words"}, "Words is a Node, which is no 2D or 3D node, so there is nothing to pick up.")
	told.call({"change": 1}, "nobody carries Crate, so there is nothing to put down.")
	told.call({"carried_by_path": ^"../Nobody"},
		"there is no node at ../Nobody to carry Crate, so it is not picked up. Pick the hand under Carried By, or leave it empty for Self.")
	told.call({"node_path": ^"..", "carried_by_path": ^"../Marker"}, "Hero cannot carry itself, so it is not picked up. Pick something else under Carried By.")
	told.call({"node_path": ^"../../Plain"}, "so it is not picked up")
	var made := play([carry(SCCarryAction.PICK_UP, {"node_path": ^"/root/Stage/Plain"}), carry(SCCarryAction.THROW, {"node_path": ^"/root/Stage/Plain"})], {},
		{"under": body_3d("Strong")})
	expect_warning("Plain is a Node3D, which has no speed of its own, so it is let go but cannot fly. Throw a RigidBody or a CharacterBody.")
	expect(not plain.has_meta(&"quillstead_carried"))
	made.free()


func test_two_cannot_carry_each_other() -> void:
	body("Crate")
	var hero := body("Hero", Vector2(50, 0))
	play(carry(SCCarryAction.PICK_UP), {}, {"under": hero})
	play(carry(SCCarryAction.PICK_UP, {"node_path": ^"/root/Stage/Hero", "carried_by_path": ^"/root/Stage/Crate"}), {}, {"under": body("Wizard")})
	expect_warning("Hero cannot carry itself")
	await frames(3)
	expect_near(hero.position, Vector2(50, 0))


func test_lines() -> void:
	expect_lines(SCCarryAction, {
		"Pick up Box with Self": {"node_path": ^"../Box"},
		"Pick up Box with Hand": {"node_path": ^"../Box", "carried_by_path": ^"../Hand"},
		"Put down [held]": {"change": 1, "node_path_variable": &"held"},
		"Throw [held] at (0, 2, -8)": {"change": 2, "node_path_variable": &"held"},
	})
	expect_shown(kind(SCCarryAction, {"change": 2}), ["throw"])
	expect_hidden(kind(SCCarryAction), ["throw"])
