extends Story
## Questions about where things are: near, on the screen, touching, under the pointer.


class OwnTouching:
	extends SCTouchingCondition


func test_a_node_is_near_in_2d() -> void:
	var post := body("Post")
	var thief := body("Thief")
	var made := asker(post)
	var near := kind(SCDistanceCondition, {"to_node_path": ^"../../Thief", "distance": 100.0}) as SCDistanceCondition
	for row: Array in [[Vector2(0, 0), true], [Vector2(60, 80), true], [Vector2(60, 81), false], [Vector2(-100, 0), true]]:
		thief.position = row[0]
		expect_equal(ask(made, near), row[1], str(row))
	thief.position = Vector2(0, 200)
	near.ignore_height = true
	expect(not ask(made, near), "there is no height in 2D")
	near.invert = true
	expect(ask(made, near))


func test_a_node_is_near_in_3d() -> void:
	var door := _put_3d(Node3D.new(), "Door")
	var cat := _put_3d(Node3D.new(), "Cat") as Node3D
	var made := asker(door)
	var near := kind(SCDistanceCondition, {"to_node_path": ^"../../Cat"}) as SCDistanceCondition
	cat.position = Vector3(3, 0, 4)
	expect(ask(made, near))
	cat.position = Vector3(3, 1, 4)
	expect(not ask(made, near))
	near.ignore_height = true
	expect(ask(made, near))
	body("Flat")
	near.to_node_path = ^"../../Flat"
	expect(not ask(made, near), "nothing in 2D is near to what is in 3D")


func test_the_nearest_of_a_group_counts() -> void:
	var post := body("Post")
	post.add_to_group(&"people")
	var made := asker(post, {"variables": {&"how far": -1.0, &"metres": -1}})
	var near := kind(SCDistanceCondition, {"group": &"people", "distance": 50.0, "store_in": &"how far"}) as SCDistanceCondition
	expect(not ask(made, near), "Self does not count")
	expect_equal(made.get_value(&"how far"), -1.0)
	for place: float in [300.0, 40.5, 100.0]:
		var one := body("Somebody")
		one.position.x = place
		one.add_to_group(&"people")
	expect(ask(made, near))
	expect_near(made.get_value(&"how far"), 40.5)
	near.store_in = &"metres"
	expect(ask(made, near))
	expect_equal(made.get_value(&"metres"), 41)
	expect_warning("was rounded to 41")


func test_a_guard_notices_whoever_comes_near() -> void:
	var post := body("Post")
	var thief := body("Thief")
	thief.position.x = 500.0
	for with: Dictionary in [{}, {"update_interval": 0.01}]:
		var near := kind(SCDistanceCondition, {"to_node_path": ^"../../Thief", "distance": 100.0})
		var guard := start(machine([state("Calm", [watch(near, with)], {"yes": "Alarmed"}), state("Alarmed", [watch(near, with)], {"no": "Calm"})], {"under": post}))
		await frames(5)
		expect_state(guard, "Calm")
		thief.position.x = 50.0
		await frames(5)
		expect_state(guard, "Alarmed")
		thief.position.x = 500.0
		await frames(5)
		expect_state(guard, "Calm")
		guard.free()


func test_a_distance_from_or_to_nothing_is_told() -> void:
	var made := asker(stage)
	var near := SCDistanceCondition.new()
	expect(not ask(made, near))
	expect_warning("Distance on Machine: Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Target.")
	var placed := asker(body("Post"), {"name": "Placed"})
	expect(not ask(placed, near))
	expect_warning("there is nothing to measure to, so the answer is no. Pick a node under To Node Path, or type a group under Group.")
	near.to_node_path = ^"../.."
	expect(not ask(placed, near))
	expect_warning("Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under To Node Path.")
	near.to_node_path = ^"../../Gone"
	expect(not ask(placed, near))
	expect_warning("there is no node at Gone. Pick one under To Node Path.")
	var held := asker(body("Other Post"), {"variables": {&"target": null}})
	var nearest := kind(SCDistanceCondition, {"group": &"people", "to_node_path_variable": &"target"})
	expect(not ask(held, nearest))
	expect_warning("the variable target holds no node, so the answer is no. Put a node into it, or pick one under To Node Path.")
	held.set_value(&"target", held.get_parent().get_parent().get_node(^"Post"))
	expect(ask(held, nearest))


func test_in_2d_a_distance_is_in_pixels() -> void:
	expect_equal(SCMachineAction.starts_in_2d().get("SCDistanceCondition:distance"), "px")


func test_a_node_is_on_the_screen_in_2d() -> void:
	var size := tree.root.get_visible_rect().size
	var star := body("Star")
	var made := asker(star)
	var on_screen := SCOnScreenCondition.new()
	for row: Array in [
		[Vector2(5, 5), 0.0, true], [Vector2(-5, 5), 0.0, false], [Vector2(-5, 5), 10.0, true], [Vector2(5, 5), -10.0, false],
		[size - Vector2(1, 1), 0.0, true], [size + Vector2(1, 1), 0.0, false], [size / 2.0, -size.x, false],
	]:
		star.position = row[0]
		on_screen.margin = row[1]
		expect_equal(ask(made, on_screen), row[2], str(row))
	on_screen.margin = 0.0
	star.position = Vector2(20, 20)
	star.hide()
	expect(not ask(made, on_screen), "hidden")
	star.show()
	var view := Camera2D.new()
	stage.add_child(view)
	view.position = Vector2(5000, 0)
	view.make_current()
	await frames(2)
	expect(not ask(made, on_screen), "the camera looks elsewhere")
	star.position = Vector2(5000, 0)
	expect(ask(made, on_screen))


func test_what_has_a_size_is_on_the_screen_with_any_part() -> void:
	var made := asker(stage)
	var panel := Panel.new()
	panel.name = "Panel"
	panel.size = Vector2(100, 100)
	stage.add_child(panel)
	var picture := Sprite2D.new()
	picture.name = "Picture"
	var texture := PlaceholderTexture2D.new()
	texture.size = Vector2(100, 100)
	picture.texture = texture
	stage.add_child(picture)
	var panel_on_screen := kind(SCOnScreenCondition, {"node_path": ^"../Panel"})
	var picture_on_screen := kind(SCOnScreenCondition, {"node_path": ^"../Picture"})
	panel.position.x = -99.0
	picture.position.x = -49.0
	expect(ask(made, panel_on_screen))
	expect(ask(made, picture_on_screen))
	panel.position.x = -101.0
	picture.position.x = -51.0
	expect(not ask(made, panel_on_screen))
	expect(not ask(made, picture_on_screen))


func test_a_node_is_on_the_screen_in_3d() -> void:
	var star := _put_3d(Node3D.new(), "Star") as Node3D
	var made := asker(star)
	var on_screen := SCOnScreenCondition.new()
	expect(not ask(made, on_screen))
	expect_warning("On Screen on Machine: there is no 3D camera to see Star, so the answer is no. Add a Camera3D to the scene and make it the current one.")
	var camera := _put_3d(Camera3D.new(), "Camera") as Camera3D
	camera.make_current()
	for row: Array in [[Vector3(0, 0, -10), true], [Vector3(0, 0, 10), false], [Vector3(100, 0, -10), false], [Vector3(0, 30, -10), false], [Vector3(5, 3, -10), true]]:
		star.position = row[0]
		expect_equal(ask(made, on_screen), row[1], str(row))
	star.position = Vector3(0, 0, -10)
	star.hide()
	expect(not ask(made, on_screen))


func test_a_big_thing_is_on_the_screen_with_any_part() -> void:
	var camera := _put_3d(Camera3D.new(), "Camera") as Camera3D
	camera.make_current()
	var house := MeshInstance3D.new()
	var walls := BoxMesh.new()
	walls.size = Vector3(20, 20, 2)
	house.mesh = walls
	_put_3d(house, "House")
	var made := asker(house)
	house.position = Vector3(18, 0, -10)
	expect(ask(made, SCOnScreenCondition.new()))
	house.position = Vector3(40, 0, -10)
	expect(not ask(made, SCOnScreenCondition.new()))
	house.position = Vector3(0, 0, 10)
	expect(not ask(made, SCOnScreenCondition.new()))


func test_a_node_without_a_place_is_not_on_the_screen() -> void:
	var made := asker(stage)
	expect(not ask(made, SCOnScreenCondition.new()))
	expect_warning("Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Node Path.")


func test_the_pointer_is_over_a_button() -> void:
	var made := asker(stage)
	var over := SCPointerOverUiCondition.new()
	var button := Button.new()
	button.position = Vector2(10, 10)
	button.size = Vector2(15, 15)
	var text := Label.new()
	text.size = Vector2(15, 15)
	var space := Control.new()
	space.position = Vector2(40, 10)
	space.size = Vector2(15, 15)
	space.mouse_filter = Control.MOUSE_FILTER_PASS
	button.add_child(text)
	text.mouse_filter = Control.MOUSE_FILTER_PASS
	stage.add_child(button)
	stage.add_child(space)
	# Without a screen only a window that holds its own windows follows the pointer by itself.
	var embedded := tree.root.gui_embed_subwindows
	tree.root.gui_embed_subwindows = true
	tree.root.notification(Node.NOTIFICATION_VP_MOUSE_ENTER)
	await frames(1)
	for row: Array in [[Vector2(2, 2), false], [Vector2(15, 15), true], [Vector2(45, 15), false], [Vector2(15, 15), true], [Vector2(2, 60), false]]:
		_point_at(row[0])
		await frames(1)
		expect_equal(ask(made, over), row[1], str(row))
	_point_at(Vector2(15, 15))
	await frames(1)
	button.hide()
	await frames(1)
	expect(not ask(made, over), "the button has gone")
	var window := Window.new()
	window.position = Vector2i(30, 40)
	window.size = Vector2i(20, 20)
	stage.add_child(window)
	_point_at(Vector2(40, 50))
	await frames(1)
	expect(ask(made, over), "a window")
	_point_at(Vector2(2, 2))
	await frames(1)
	expect(not ask(made, over), "beside it")
	tree.root.notification(Node.NOTIFICATION_VP_MOUSE_EXIT)
	window.free()
	tree.root.gui_embed_subwindows = embedded


func test_something_stands_in_a_trigger_in_2d() -> void:
	await _stand_in_a_trigger(_area(Area2D.new(), _round_2d()), _solid(CharacterBody2D.new(), _round_2d()), Vector2(1000, 0), Vector2.ZERO)


func test_something_stands_in_a_trigger_in_3d() -> void:
	await _stand_in_a_trigger(_area(Area3D.new(), _round_3d()), _solid(CharacterBody3D.new(), _round_3d()), Vector3(1000, 0, 0), Vector3.ZERO)


func test_areas_count_when_they_are_to() -> void:
	var plate := _area(Area2D.new(), _round_2d())
	var glow := _area(Area2D.new(), _round_2d())
	glow.name = "Glow"
	var made := asker(plate, {"variables": {&"what": null}})
	var touching := kind(SCTouchingCondition, {"store_touching_in": &"what"}) as SCTouchingCondition
	await physics_frames(3)
	expect(not ask(made, touching))
	touching.include_areas = true
	expect(ask(made, touching))
	expect_equal(made.get_value(&"what"), glow)
	touching.only_group = &"players"
	expect(not ask(made, touching))
	glow.add_to_group(&"players")
	expect(ask(made, touching))


func test_a_check_rests_until_somebody_comes() -> void:
	var plate := _area(Area2D.new(), _round_2d())
	var crate := CharacterBody2D.new()
	crate.position.x = 1000.0
	_solid(crate, _round_2d())
	var made := start(machine([state("Up", [watch(SCTouchingCondition.new())], {"yes": "Down"}), state("Down", [watch(SCTouchingCondition.new())], {"no": "Up"})], {"under": plate}))
	await physics_frames(3)
	expect_state(made, "Up")
	expect(made.is_resting(0), "it goes on asking")
	expect(not made.is_physics_processing(), "the machine is called each frame")
	crate.position.x = 0.0
	await physics_frames(4)
	expect_state(made, "Down")
	expect(not made.is_resting(0), "what is pressed is looked at")
	crate.position.x = 1000.0
	await physics_frames(5)
	expect_state(made, "Up")


func test_a_check_asks_on_where_no_signal_would_tell() -> void:
	var plate := _area(Area2D.new(), _round_2d())
	var crate := _solid(StaticBody2D.new(), _round_2d())
	var made := start(machine([state("Up", [watch(kind(SCTouchingCondition, {"only_group": &"crates"}))], {"yes": "Down"}), state("Down")], {"under": plate}))
	await physics_frames(4)
	expect_state(made, "Up")
	expect(not made.is_resting(0), "what is on it may join the group")
	crate.add_to_group(&"crates")
	await physics_frames(2)
	expect_state(made, "Down")


func test_what_can_wake_a_question() -> void:
	var plate := _area(Area2D.new(), _round_2d())
	var made := asker(plate, {"variables": {&"who": "players"}})
	var names := func(asked: SCMachineCondition) -> Array:
		return asked.rest_signals(made, {}).map(func(waker: Array) -> StringName: return waker[1])
	expect_equal(names.call(SCTouchingCondition.new()), [&"body_entered", &"body_exited", &"tree_exiting"])
	expect_equal(names.call(kind(SCTouchingCondition, {"include_areas": true})), [&"body_entered", &"body_exited", &"area_entered", &"area_exited", &"tree_exiting"])
	expect_equal(names.call(kind(SCTouchingCondition, {"include_areas_variable": &"who"})), [], "a variable may change it")
	expect_equal(names.call(kind(SCTouchingCondition, {"node_path": ^"../../Gone"})), [])
	plate.set("monitoring", false)
	expect_equal(names.call(SCTouchingCondition.new()), [])
	expect(SCTouchingCondition.new().can_rest)
	expect(not SCDistanceCondition.new().can_rest)


func test_a_character_stands_on_the_ground_in_2d() -> void:
	var floor_body := _solid(StaticBody2D.new(), _box_2d(Vector2(1000, 20)))
	(floor_body as Node2D).position.y = 40.0
	floor_body.name = "Floor"
	var wall := _solid(StaticBody2D.new(), _box_2d(Vector2(20, 1000)))
	(wall as Node2D).position.x = 60.0
	wall.name = "Wall"
	var hero := _solid(CharacterBody2D.new(), _round_2d()) as CharacterBody2D
	await _stand_about(hero, Vector2(0, 300), Vector2(600, 300), Vector2(0, -100))


func test_a_character_stands_on_the_ground_in_3d() -> void:
	var floor_body := _solid(StaticBody3D.new(), _box_3d(Vector3(100, 1, 100)))
	(floor_body as Node3D).position.y = -2.0
	floor_body.name = "Floor"
	var wall := _solid(StaticBody3D.new(), _box_3d(Vector3(1, 100, 100)))
	(wall as Node3D).position.x = 3.0
	wall.name = "Wall"
	var hero := _solid(CharacterBody3D.new(), _round_3d()) as CharacterBody3D
	await _stand_about(hero, Vector3(0, -8, 0), Vector3(10, -8, 0), Vector3(0, 5, 0))


func test_a_ball_lies_on_the_ground() -> void:
	for deep: bool in [false, true]:
		var ground: Node
		var ball: Node
		if deep:
			ground = _solid(StaticBody3D.new(), _box_3d(Vector3(100, 1, 100)))
			(ground as Node3D).position.y = -2.0
			ball = _solid(RigidBody3D.new(), _round_3d())
		else:
			ground = _solid(StaticBody2D.new(), _box_2d(Vector2(1000, 20)))
			(ground as Node2D).position.y = 40.0
			ball = _solid(RigidBody2D.new(), _round_2d())
		var made := asker(ball, {"variables": {&"what": null}})
		var on_ground := kind(SCTouchingCondition, {"test": SCTouchingCondition.THE_GROUND, "store_touching_in": &"what"})
		expect(not ask(made, on_ground))
		expect_warning("does not report what it touches, so the answer is no. Turn on its Contact Monitor and set Max Contacts Reported to 4 or so.")
		ball.set("contact_monitor", true)
		ball.set("max_contacts_reported", 4)
		expect(not ask(made, on_ground))
		await physics_frames(90)
		expect(ask(made, on_ground), "%s is not on the ground" % ball.get_class())
		expect_equal(made.get_value(&"what"), ground)
		expect(ask(made, SCTouchingCondition.new()))
		expect(not ask(made, kind(SCTouchingCondition, {"test": SCTouchingCondition.A_WALL})))
		expect(not ask(made, kind(SCTouchingCondition, {"only_group": &"players"})))
		ball.free()
		ground.free()


func test_what_cannot_touch_is_told() -> void:
	var post := body("Post")
	var made := asker(post)
	expect(not ask(made, SCTouchingCondition.new()))
	expect_warning("Touching on Machine: Post is a Node2D, not an area, a character body or a rigid body. Pick an area, a character body or a rigid body under Node Path.")
	var deaf := _area(Area3D.new(), _round_3d())
	deaf.name = "Deaf"
	deaf.set("monitoring", false)
	expect(not ask(made, kind(SCTouchingCondition, {"node_path": ^"../../Deaf"})))
	expect_warning("Deaf is not monitoring, so nothing is felt touching it and the answer is no. Turn on its Monitoring.")
	expect(not ask(made, kind(SCTouchingCondition, {"node_path": ^"../../Deaf", "test": SCTouchingCondition.A_WALL})))
	expect_warning("Deaf is an area, which stands on nothing, so the answer is no.")
	expect(not ask(made, kind(SCTouchingCondition, {"node_path": ^"../../Gone"})))
	expect_warning("there is no node at Gone. Pick one under Node Path.")


func test_touching_goes_by_the_physics_tick() -> void:
	expect(SCTouchingCondition.new().wants_physics())
	expect(not SCDistanceCondition.new().wants_physics())


func test_a_script_that_extends_the_question_asks_it_too() -> void:
	var plate := _area(Area2D.new(), _round_2d())
	_solid(StaticBody2D.new(), _round_2d())
	var made := asker(plate)
	await physics_frames(3)
	expect(ask(made, OwnTouching.new()))


func test_the_lines_read_like_sentences() -> void:
	expect_line(kind(SCDistanceCondition, {"to_node_path": ^"../../player"}), "player is within 5 of Self")
	expect_line(kind(SCDistanceCondition, {"group": &"players", "distance": 2.5}), "anything in players is within 2.5 of Self")
	expect_line(kind(SCDistanceCondition), "anything in (pick one) is within 5 of Self")
	expect_line(kind(SCDistanceCondition, {"to_node_path": ^"../../player", "distance_variable": &"reach"}), "player is within [reach] of Self")
	expect_line(kind(SCDistanceCondition, {"group": &"players", "to_node_path_variable": &"target"}), "[target] is within 5 of Self")
	expect_line(kind(SCOnScreenCondition), "Self is on the screen")
	expect_line(kind(SCOnScreenCondition, {"margin": 20.0}), "Self is within 20 px of the screen")
	expect_line(kind(SCOnScreenCondition, {"margin": -20.0}), "Self is 20 px inside the screen")
	expect_line(kind(SCPointerOverUiCondition), "the pointer is over the interface")
	expect_line(kind(SCTouchingCondition), "Self is touching something")
	expect_line(kind(SCTouchingCondition, {"only_group": &"players", "node_path": ^"../../Plate"}), "Plate is touching something that is in players")
	expect_line(kind(SCTouchingCondition, {"test": SCTouchingCondition.THE_GROUND, "invert": true}), "Not: Self is on ground")
	expect_line(kind(SCTouchingCondition, {"test": SCTouchingCondition.A_WALL}), "Self is against a wall")
	expect_line(kind(SCTouchingCondition, {"test": SCTouchingCondition.A_CEILING}), "Self is against a ceiling")


func _stand_in_a_trigger(trigger: Node, visitor: Node, away: Variant, inside: Variant) -> void:
	var made := asker(trigger, {"variables": {&"who": null}})
	var touching := kind(SCTouchingCondition, {"store_touching_in": &"who"}) as SCTouchingCondition
	visitor.set("position", away)
	await physics_frames(3)
	expect(not ask(made, touching))
	expect_equal(made.get_value(&"who"), null)
	visitor.set("position", inside)
	await physics_frames(3)
	expect(ask(made, touching))
	expect_equal(made.get_value(&"who"), visitor)
	touching.only_group = &"players"
	expect(not ask(made, touching))
	visitor.add_to_group(&"players")
	expect(ask(made, touching))
	visitor.set("position", away)
	await physics_frames(3)
	expect(not ask(made, touching))
	expect_equal(made.get_value(&"who"), visitor, "it stays there")


func _stand_about(hero: Node, down: Variant, aside: Variant, up: Variant) -> void:
	var made := asker(hero, {"variables": {&"what": null}})
	var ground := kind(SCTouchingCondition, {"test": SCTouchingCondition.THE_GROUND, "store_touching_in": &"what"}) as SCTouchingCondition
	var wall := kind(SCTouchingCondition, {"test": SCTouchingCondition.A_WALL, "store_touching_in": &"what"})
	var ceiling := kind(SCTouchingCondition, {"test": SCTouchingCondition.A_CEILING})
	await _move(hero, up, 2)
	for asked: SCMachineCondition in [ground, wall, ceiling, SCTouchingCondition.new()]:
		expect(not ask(made, asked), "in the air, %s" % asked.shown_summary())
	await _move(hero, down, 60)
	expect(ask(made, ground))
	expect_equal((made.get_value(&"what") as Node).name, &"Floor")
	expect(not ask(made, wall))
	expect(ask(made, SCTouchingCondition.new()))
	await _move(hero, down * 0.0, 3)
	expect(ask(made, ground), "it stands still")
	ground.only_group = &"ice"
	expect(not ask(made, ground))
	stage.get_node(^"Floor").add_to_group(&"ice")
	expect(ask(made, ground))
	await _move(hero, aside, 60)
	expect(ask(made, wall))
	expect_equal((made.get_value(&"what") as Node).name, &"Wall")
	expect(ask(made, ground))
	expect(not ask(made, ceiling))


func _move(hero: Node, velocity: Variant, count: int) -> void:
	for i in count:
		await physics_frames(1)
		hero.set("velocity", velocity)
		hero.call("move_and_slide")


func _point_at(place: Vector2) -> void:
	var moved := InputEventMouseMotion.new()
	moved.position = place
	moved.global_position = place
	Input.parse_input_event(moved)


func _put_3d(node: Node3D, name: String) -> Node3D:
	node.name = name
	stage.add_child(node)
	return node


func _area(area: Node, shape: Node) -> Node:
	area.add_child(shape)
	stage.add_child(area)
	return area


func _solid(solid: Node, shape: Node) -> Node:
	return _area(solid, shape)


func _round_2d() -> CollisionShape2D:
	var made := CollisionShape2D.new()
	var circle := CircleShape2D.new()
	circle.radius = 10.0
	made.shape = circle
	return made


func _round_3d() -> CollisionShape3D:
	var made := CollisionShape3D.new()
	made.shape = SphereShape3D.new()
	return made


func _box_2d(size: Vector2) -> CollisionShape2D:
	var made := CollisionShape2D.new()
	var box := RectangleShape2D.new()
	box.size = size
	made.shape = box
	return made


func _box_3d(size: Vector3) -> CollisionShape3D:
	var made := CollisionShape3D.new()
	var box := BoxShape3D.new()
	box.size = size
	made.shape = box
	return made
