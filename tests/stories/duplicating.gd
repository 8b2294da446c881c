extends PhysicsStory
## Copies of what is in the game already: a second coin, another enemy like this one.


func copy(settings: Dictionary = {}) -> SCDuplicateAction:
	return kind(SCDuplicateAction, settings)


func test_a_copy_stands_beside_with_all_that_the_original_has() -> void:
	await on_both_sides(func() -> void:
		var level: Node = Node3D.new() if in_3d else Node2D.new()
		add(level, "Level")
		level.set(&"scale", Vector3.ONE * 2.0 if in_3d else Vector2.ONE * 2.0 as Variant)
		var coin := spot(3.0, 1.0, "Coin")
		coin.add_to_group(&"coins", true)
		var shine := Node.new()
		shine.name = "Shine"
		coin.add_child(shine)
		coin.reparent(level)
		var made := play(copy({"node_path": ^"/root/Stage/Level/Coin", "offset": at(2.0, 0.0), "store_in": &"second"}), {"FINISHED": "Done"},
			{"variables": {"second": null}})
		expect_state(made, "Done")
		var second: Node = made.get_value(&"second")
		expect(second != null and not second.is_inside_tree(), "it joins with the end of the frame")
		await frames(1)
		expect_equal(second.get_parent(), level)
		expect_near(where(second), Vector3(5, 1, 0), 0.001)
		expect(second.is_in_group(&"coins") and second.has_node(^"Shine"))
		expect_near(where(coin), Vector3(3, 1, 0), 0.001))


func test_a_machine_in_the_copy_starts_afresh() -> void:
	var slime := body("Slime")
	var inside := start(machine([state("Small", [], {"EAT": "Big"}), state("Big")], {"under": slime, "variables": {"eaten": 0}, "name": "Brain"}))
	inside.send_event(&"EAT")
	inside.set_value(&"eaten", 5)
	play(copy({"node_path": ^"../Slime", "offset": Vector2(50, 0)}))
	await frames(2)
	var second := stage.get_children().filter(func(child: Node) -> bool: return child is Node2D and child != slime)[0] as Node2D
	var brain: SCMachine = second.get_node(^"Brain")
	expect_state(brain, "Small")
	expect_values(brain, {"eaten": 0})
	expect_state(inside, "Big")
	expect_near(second.position, Vector2(50, 0))


func test_one_that_copies_itself_as_it_starts_stops_at_a_hundred() -> void:
	var level := add(Node2D.new(), "Level")
	var slime := body("Slime", Vector2.ZERO, level)
	start(machine([state("Split", [copy()])], {"under": slime}))
	await frames(1)
	expect_equal(level.get_child_count(), 101)
	expect_warning("made 100 copies in one frame and stopped, because a copy is copying itself as it starts. Put Duplicate in a state that is not")
	await frames(5)
	expect_equal(level.get_child_count(), 101)


func test_a_copy_of_what_is_carried_is_held_by_nobody() -> void:
	await on_both_sides(func() -> void:
		var hand := spot(0.0, 5.0, "Hand")
		var box := crate(0.0, 0.0)
		play([kind(SCCarryAction, {"node_path": ^"/root/Stage/Crate"}), copy({"node_path": ^"/root/Stage/Crate", "offset": at(3.0, 0.0)})], {}, {"under": hand})
		await frames(1)
		var second := stage.get_child(stage.get_child_count() - 1)
		expect_equal([second.get(&"freeze"), second.get(&"collision_layer"), second.has_meta(&"quillstead_carried")], [false, 1, false])
		expect_equal([box.get(&"freeze"), box.get(&"collision_layer")], [true, 0])
		var height := where(second).y
		await physics_frames(20)
		expect(where(second).y < height - 0.1, "it falls")
		expect_near(where(box), Vector3(0, 5, 0)))


func test_what_cannot_be_copied_is_told() -> void:
	expect_warns(copy({"node_path": ^"../Nobody"}), "Duplicate on")
	expect_warns(copy({"node_path": ^"../Nobody"}), "../Nobody points at nothing, so nothing is copied. Pick the node to copy under Node.")
	var count := tree.root.get_child_count()
	expect_warns(copy(), "Stage is the top of the scene, which has nothing to sit beside, so it is not copied. Copy a node inside the scene instead.")
	await frames(2)
	expect_equal(tree.root.get_child_count(), count)
	expect_lines(SCDuplicateAction, {"Duplicate Self": {}, "Duplicate Coin": {"node_path": ^"../Coin"}})
