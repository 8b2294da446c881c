extends Story
## Conditions about where things are: near, on the screen, touching, under the pointer.


class OwnTouching:
	extends SCTouchingCondition


func test_a_node_is_near() -> void:
	for row: Array in [
		[Vector2(0, 0), 0.0, true], [Vector2(60, 80), 100.0, true], [Vector2(60, 81), 100.0, false], [Vector2(-100, 0), 100.0, true],
		[Vector2(0, 200), 100.0, false, true],
		[Vector3(3, 0, 4), 5.0, true], [Vector3(3, 1, 4), 5.0, false], [Vector3(3, 1, 4), 5.0, true, true], [Vector3(3, 1, -4.1), 5.0, false, true],
	]:
		var start_at: Variant = row[0] * 0.0
		var post := body_at(start_at, "Post")
		var thief := body_at(row[0], "Thief")
		var made := asker(post)
		for invert: bool in [false, true]:
			var near := kind(SCDistanceCondition, {"to_node_path": ^"../../Thief", "distance": row[1], "ignore_height": row.size() > 3, "invert": invert})
			expect_equal(ask(made, near), row[2] != invert, str(row))
		made.free()
		thief.free()
		# Nothing in 2D is near to what is in 3D.
		body_at(Vector3.ZERO if start_at is Vector2 else Vector2.ZERO, "Thief")
		expect_answers(asker(post), [[kind(SCDistanceCondition, {"to_node_path": ^"../../Thief"}), false]])
		expect_warning("where places mean something else, so the answer is no.")
		stage.get_node(^"Thief").free()
		post.free()


func test_the_nearest_of_a_group_counts() -> void:
	var post := body("Post")
	post.add_to_group(&"people")
	var made := asker(post, {"variables": {&"how far": -1.0, &"metres": -1}})
	var near := kind(SCDistanceCondition, {"group": &"people", "distance": 50.0, "store_in": &"how far"})
	expect(not ask(made, near), "Self does not count")
	expect_values(made, {&"how far": -1.0})
	for place: float in [300.0, 40.5, 100.0]:
		body("Somebody", Vector2(place, 0)).add_to_group(&"people")
	expect(ask(made, near))
	expect_near(made.get_value(&"how far"), 40.5)
	near.store_in = &"metres"
	expect(ask(made, near))
	expect_values(made, {&"metres": 41})
	expect_warning("was rounded to 41")


func test_a_node_is_on_the_screen_in_2d() -> void:
	var size := tree.root.get_visible_rect().size
	var star := body("Star")
	var made := asker(star)
	for row: Array in [
		[Vector2(5, 5), 0.0, true], [Vector2(-5, 5), 0.0, false], [Vector2(-5, 5), 10.0, true], [Vector2(5, 5), -10.0, false],
		[size - Vector2(1, 1), 0.0, true], [size + Vector2(1, 1), 0.0, false], [size / 2.0, -size.x, false], [size / 2.0, -size.y / 1.9, false],
	]:
		star.position = row[0]
		expect_answers(made, [[kind(SCOnScreenCondition, {"margin": row[1]}), row[2]]], str(row))
	var on_screen := kind(SCOnScreenCondition)
	star.position = Vector2(20, 20)
	for is_shown: bool in [false, true]:
		star.visible = is_shown
		expect_answers(made, [[on_screen, is_shown]])
	var view: Camera2D = add(Camera2D.new(), "View", {"position": Vector2(5000, 0)})
	view.make_current()
	await frames(2)
	expect_answers(made, [[on_screen, false]], "the camera looks elsewhere")
	star.position = Vector2(5000, 0)
	expect_answers(made, [[on_screen, true]])
	stage.remove_child(star)
	expect_answers(made, [[on_screen, false]], "out of the tree")
	stage.add_child(star)


func test_what_has_a_size_is_on_the_screen_with_any_part() -> void:
	var texture := PlaceholderTexture2D.new()
	texture.size = Vector2(100, 100)
	add(Panel.new(), "Panel", {"size": Vector2(100, 100)})
	add(Sprite2D.new(), "Picture", {"texture": texture})
	add(VisibleOnScreenNotifier2D.new(), "Notifier", {"rect": Rect2(0, 0, 100, 100)})
	var made := asker()
	for row: Array in [["Panel", -100.0], ["Picture", -50.0], ["Notifier", -100.0]]:
		for inside: bool in [true, false]:
			stage.get_node(row[0] as String).set("position", Vector2(row[1] + (1.0 if inside else -1.0), 5))
			expect_answers(made, [[kind(SCOnScreenCondition, {"node_path": NodePath("../" + row[0])}), inside]], row[0])


func test_a_node_is_on_the_screen_in_3d() -> void:
	var camera: Camera3D = add(Camera3D.new())
	camera.make_current()
	var walls := BoxMesh.new()
	walls.size = Vector3(20, 20, 2)
	var house := add(MeshInstance3D.new(), "House", {"mesh": walls})
	for row: Array in [
		[body_3d(), Vector3(0, 0, -10), true], [body_3d(), Vector3(0, 0, 10), false], [body_3d(), Vector3(100, 0, -10), false], [body_3d(), Vector3(0, 30, -10), false],
		[body_3d(), Vector3(5, 3, -10), true], [house, Vector3(18, 0, -10), true], [house, Vector3(40, 0, -10), false], [house, Vector3(0, 0, 10), false], [house, Vector3(0, 0, 0.5), true],
	]:
		row[0].position = row[1]
		var made := asker(row[0])
		for is_shown: bool in [true, false]:
			row[0].visible = is_shown
			expect_answers(made, [[kind(SCOnScreenCondition), row[2] and is_shown]], str(row))
		row[0].visible = true
		made.free()


func test_the_pointer_is_over_a_button() -> void:
	var made := asker()
	var over := kind(SCPointerOverUiCondition)
	var button := _control(Button.new(), Vector2(10, 10))
	_control(Label.new(), Vector2.ZERO, button).mouse_filter = Control.MOUSE_FILTER_PASS
	_control(Control.new(), Vector2(40, 10)).mouse_filter = Control.MOUSE_FILTER_PASS
	# A picture of another view, with a button of its own in it.
	var frame := _control(SubViewportContainer.new(), Vector2(10, 30), stage, Vector2(60, 20))
	var picture := add(SubViewport.new(), "Picture", {"under": frame, "size": Vector2i(60, 20)})
	_control(Button.new(), Vector2(40, 0), picture)
	# Without a screen only a window that holds its own windows follows the pointer by itself.
	var embedded := tree.root.gui_embed_subwindows
	tree.root.gui_embed_subwindows = true
	tree.root.notification(Node.NOTIFICATION_VP_MOUSE_ENTER)
	await frames(1)
	for row: Array in [
		[Vector2(2, 2), false], [Vector2(15, 15), true], [Vector2(45, 15), false], [Vector2(15, 15), true], [Vector2(2, 60), false],
		[Vector2(20, 40), false], [Vector2(55, 40), true], [Vector2(20, 40), false],
	]:
		await _point_at(row[0])
		expect_answers(made, [[over, row[1]]], str(row))
	await _point_at(Vector2(15, 15))
	button.hide()
	await frames(1)
	expect_answers(made, [[over, false]], "the button has gone")
	var window: Window = add(Window.new(), "Window", {"position": Vector2i(80, 40), "size": Vector2i(20, 20)})
	await _point_at(Vector2(90, 50))
	expect_answers(made, [[over, true]], "a window")
	window.hide()
	expect_answers(made, [[over, false]], "a window that is closed")
	window.show()
	await _point_at(Vector2(2, 2))
	expect_answers(made, [[over, false]], "beside it")
	tree.root.notification(Node.NOTIFICATION_VP_MOUSE_EXIT)
	window.free()
	tree.root.gui_embed_subwindows = embedded


func test_something_stands_in_a_trigger() -> void:
	for size: Variant in [Vector2(20, 20), Vector3.ONE]:
		var trigger := add(boxed(Area2D.new() if size is Vector2 else Area3D.new(), size))
		var visitor := add(boxed(CharacterBody2D.new() if size is Vector2 else CharacterBody3D.new(), size), "Visitor")
		var glow := add(boxed(Area2D.new() if size is Vector2 else Area3D.new(), size), "Glow")
		var made := asker(trigger, {"variables": {&"who": null}})
		for row: Array in [
			# who stands in it, the settings, the answer
			[null, {}, null], [visitor, {}, visitor], [visitor, {"only_group": &"players"}, null], [glow, {}, null], [glow, {"include_areas": true}, glow],
			[glow, {"include_areas": true, "only_group": &"players"}, null],
		]:
			for one: Node in [visitor, glow]:
				one.set("position", size * (0.0 if one == row[0] else 100.0))
			await physics_frames(3)
			made.set_value(&"who", null)
			var settings: Dictionary = row[1]
			expect_answers(made, [[kind(SCTouchingCondition, {"store_touching_in": &"who"}.merged(settings)), row[2] != null]], str(row))
			expect_values(made, {&"who": row[2]})
			if "only_group" in settings:
				(row[0] as Node).add_to_group(&"players")
				expect_answers(made, [[kind(SCTouchingCondition, settings), true]], str(row))
		# A script that extends it asks as it does.
		expect_answers(made, [[OwnTouching.new(), false], [kind(OwnTouching, {"include_areas": true}), true]])
		for one: Node in [trigger, visitor, glow]:
			one.free()


func test_a_check_rests_until_somebody_comes() -> void:
	var plate := add(boxed(Area2D.new(), Vector2(20, 20)))
	var crate: CharacterBody2D = add(boxed(CharacterBody2D.new(), Vector2(20, 20)), "Crate", {"position": Vector2(1000, 0)})
	var made := start(machine([state("Up", [watch(kind(SCTouchingCondition))], {"yes": "Down"}), state("Down", [watch(kind(SCTouchingCondition))], {"no": "Up"})], {"under": plate}))
	for x: float in [1000.0, 0.0, 1000.0]:
		crate.position.x = x
		await physics_frames(5)
		expect_state(made, "Up" if x > 0.0 else "Down")
		# What is pressed is looked at.
		expect_equal(made.is_resting(0), x > 0.0)
		expect_equal(made.is_physics_processing(), x == 0.0)
	# Nor is there a signal for what is on it joining the group.
	var asking_on := play(watch(kind(SCTouchingCondition, {"only_group": &"crates"})), {"yes": "Down"}, {"under": plate, "name": "Second"})
	crate.position.x = 0.0
	await physics_frames(4)
	expect_state(asking_on, "Work")
	expect(not asking_on.is_resting(0))
	crate.add_to_group(&"crates")
	await physics_frames(2)
	expect_state(asking_on, "Down")


func test_what_can_wake_it() -> void:
	var plate := add(boxed(Area2D.new(), Vector2(20, 20)), "Plate")
	add(boxed(CharacterBody2D.new(), Vector2(20, 20)), "Hero")
	var made := asker(plate, {"variables": {&"who": "players"}})
	var bodies := [&"body_entered", &"body_exited"]
	for row: Array in [
		[{}, bodies + [&"tree_exiting"]],
		[{"include_areas": true}, bodies + [&"area_entered", &"area_exited", &"tree_exiting"]],
		[{"include_areas_variable": &"who"}, []], [{"node_path": ^"../../Gone"}, []], [{"node_path": ^"../../Hero"}, []],
		[{"test": SCTouchingCondition.THE_GROUND}, []],
	]:
		expect_equal(kind(SCTouchingCondition, row[0]).rest_signals(made, {}).map(func(waker: Array) -> StringName: return waker[1]), row[1], str(row))
	plate.set("monitoring", false)
	expect_equal(kind(SCTouchingCondition).rest_signals(made, {}), [])
	for row: Array in [[SCTouchingCondition, true], [SCDistanceCondition, false]]:
		expect_equal(kind(row[0]).can_rest, row[1])
		expect_equal(kind(row[0]).wants_physics(), row[1])


func test_a_character_stands_on_the_ground() -> void:
	for size: Variant in [Vector2(20, 20), Vector3.ONE]:
		var scale_by: float = size.x
		var down: Variant = Vector2(0, 1) if size is Vector2 else Vector3(0, -1, 0)
		var aside: Variant = Vector2(1, 0) if size is Vector2 else Vector3(1, 0, 0)
		for row: Array in [["Floor", down * 2.0], ["Wall", aside * 3.0], ["Ceiling", down * -4.0]]:
			add(boxed(StaticBody2D.new() if size is Vector2 else StaticBody3D.new(), size + size * 50.0 - (row[1] as Variant).abs().normalized() * scale_by * 50.0),
				row[0], {"position": row[1] * scale_by})
		var hero := add(boxed(CharacterBody2D.new() if size is Vector2 else CharacterBody3D.new(), size), "Hero")
		var made := asker(hero, {"variables": {&"what": null}})
		for move: Array in [
			# which way, for how long, what it touches then
			[down * -1.0, 2, ""], [down * 10.0, 60, "Floor"], [down * 0.0, 3, "Floor"], [down * 10.0 + aside * 20.0, 60, "Floor Wall"],
			[aside * -20.0, 10, "Floor"], [down * -30.0, 60, "Ceiling"],
		]:
			for i: int in move[1]:
				await physics_frames(1)
				hero.set("velocity", move[0] * scale_by)
				hero.call("move_and_slide")
			for row: Array in [[SCTouchingCondition.THE_GROUND, "Floor"], [SCTouchingCondition.A_WALL, "Wall"], [SCTouchingCondition.A_CEILING, "Ceiling"]]:
				made.set_value(&"what", null)
				var asked := kind(SCTouchingCondition, {"test": row[0], "store_touching_in": &"what"})
				expect_answers(made, [[asked, row[1] in move[2]]], str(move))
				expect_equal(made.get_value(&"what"), stage.get_node(row[1] as String) if row[1] in move[2] else null, str(move))
				asked.only_group = &"ice"
				expect_answers(made, [[asked, false]], "only ice")
			expect_answers(made, [[kind(SCTouchingCondition), move[2] != ""]], str(move))
		stage.get_node(^"Ceiling").add_to_group(&"ice")
		expect_answers(made, [[kind(SCTouchingCondition, {"test": SCTouchingCondition.A_CEILING, "only_group": &"ice"}), true]])
		for child in stage.get_children():
			child.free()


func test_a_ball_lies_on_the_ground() -> void:
	for size: Variant in [Vector2(20, 20), Vector3.ONE]:
		var below: Variant = Vector2(0, 40) if size is Vector2 else Vector3(0, -2, 0)
		var ground := add(boxed(StaticBody2D.new() if size is Vector2 else StaticBody3D.new(), size * 20.0), "Ground")
		ground.set("position", below * (2.0 if size is Vector3 else 1.0) + below.normalized() * size.x * 10.0)
		var ball := add(boxed(RigidBody2D.new() if size is Vector2 else RigidBody3D.new(), size), "Ball")
		var made := asker(ball, {"variables": {&"what": null}})
		var on_ground := kind(SCTouchingCondition, {"test": SCTouchingCondition.THE_GROUND, "store_touching_in": &"what"})
		for row: Array in [[false, 4], [true, 0]]:
			ball.set("contact_monitor", row[0])
			ball.set("max_contacts_reported", row[1])
			expect_warns(kind(SCTouchingCondition), "Ball does not report what it touches, so the answer is no. Turn on its Contact Monitor and set Max Contacts Reported to 4 or so.",
				{"under": ball})
		ball.set("max_contacts_reported", 4)
		expect(not ask(made, on_ground))
		await physics_frames(120)
		expect_answers(made, [
			[on_ground, true], [kind(SCTouchingCondition), true], [kind(SCTouchingCondition, {"test": SCTouchingCondition.A_WALL}), false],
			[kind(SCTouchingCondition, {"test": SCTouchingCondition.A_CEILING}), false], [kind(SCTouchingCondition, {"only_group": &"players"}), false],
		], ball.get_class())
		expect_values(made, {&"what": ground})
		ball.free()
		ground.free()


func test_what_is_wrong_is_told_once() -> void:
	var post := body("Post")
	add(boxed(Area3D.new(), Vector3.ONE), "Deaf", {"monitoring": false})
	add(Timer.new(), "Clock")
	body_3d("Deep")
	for row: Array in [
		[SCDistanceCondition, {}, "there is nothing to measure to, so the answer is no. Pick a node under To Node Path, or type a group under Group."],
		[SCDistanceCondition, {"to_node_path": ^"../../Clock"}, "Clock is a Timer, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under To Node Path."],
		[SCDistanceCondition, {"to_node_path": ^"../../Gone"}, "there is no node at ../../Gone. Pick one under To Node Path."],
		[SCDistanceCondition, {"group": &"people", "to_node_path_variable": &"target"}, "the variable target holds no node, so the answer is no. Put a node into it, or pick one under To Node Path."],
		[SCOnScreenCondition, {"node_path": ^"../../Clock"}, "Clock is a Timer, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Node Path."],
		[SCOnScreenCondition, {"node_path": ^"../../Deep"}, "On Screen on Machine: there is no 3D camera to see Deep, so the answer is no. Add a Camera3D to the scene and make it the current one."],
		[SCTouchingCondition, {}, "Touching on Machine: Post is a Node2D, not an area, a character body or a rigid body. Pick an area, a character body or a rigid body under Node Path."],
		[SCTouchingCondition, {"node_path": ^"../../Deaf"}, "Deaf is not monitoring, so nothing is felt touching it and the answer is no. Turn on its Monitoring."],
		[SCTouchingCondition, {"node_path": ^"../../Deaf", "test": SCTouchingCondition.A_WALL}, "Deaf is an area, which stands on nothing, so the answer is no."],
		[SCTouchingCondition, {"node_path": ^"../../Gone"}, "there is no node at ../../Gone. Pick one under Node Path."],
	]:
		expect_warns(kind(row[0], row[1]), row[2], {"under": post, "variables": {&"target": null}})
	expect_warns(kind(SCDistanceCondition), "Distance on Machine: Stage is a Node, which has no place in the world, so it cannot stand for one. Pick a 2D or 3D node under Target.")


func test_the_lines_read_like_sentences() -> void:
	expect_lines(SCDistanceCondition, {
		"player is within 5 of Self": {"to_node_path": ^"../../player"},
		"anything in players is within 2.5 of Self": {"group": &"players", "distance": 2.5},
		"anything in (pick one) is within 5 of Self": {},
		"player is within [reach] of Self": {"to_node_path": ^"../../player", "distance_variable": &"reach"},
		"[target] is within 5 of Self": {"group": &"players", "to_node_path_variable": &"target"},
	})
	expect_lines(SCOnScreenCondition, {"Self is on the screen": {}, "Self is within 20 px of the screen": {"margin": 20.0}, "Self is 20 px inside the screen": {"margin": -20.0}})
	expect_lines(SCPointerOverUiCondition, {"the pointer is over the interface": {}})
	expect_lines(SCTouchingCondition, {
		"Self is touching something": {},
		"Plate is touching something that is in players": {"only_group": &"players", "node_path": ^"../../Plate"},
		"Not: Self is on ground": {"test": SCTouchingCondition.THE_GROUND, "invert": true},
		"Self is against a wall": {"test": SCTouchingCondition.A_WALL},
		"Self is against a ceiling": {"test": SCTouchingCondition.A_CEILING},
	})


func _point_at(place: Vector2) -> void:
	var moved := InputEventMouseMotion.new()
	moved.position = place
	moved.global_position = place
	Input.parse_input_event(moved)
	await frames(1)


func _control(made: Control, at: Vector2, under: Node = stage, size: Vector2 = Vector2(15, 15)) -> Control:
	return add(made, "", {"under": under, "position": at, "size": size})
