extends "res://tests/stories/files/rooms_story.gd"
## Change Scene over a while: the fade, the loading screen, the progress, and what fails on the way.

const INPUTS: Array[StringName] = [&"ui_accept"]


func close() -> void:
	SceneChanger.patience = 60.0
	Engine.time_scale = 1.0
	await super()


func test_it_fades_to_black_and_back() -> void:
	var cave := room("Cave")
	var town := await begin_in(room("Town"))
	var guide := go({"scene_path": cave, "fade_seconds": 0.2, "fade_colour": Color.DARK_RED})
	expect_state(guide, "Done")
	var before := 0.0
	for i in 11:
		await frames(1)
		expect(is_instance_valid(town), "the old scene goes too early")
		expect(i == 0 or covered() > before, "it stands still at %s" % before)
		before = covered()
	expect(before > 0.8)
	expect_equal(cover().get_node(^"Cover").get(&"color"), Color.DARK_RED)
	await frames(4)
	expect_room("Cave")
	expect(not is_instance_valid(town))
	expect_equal(covered(), 1.0, "all is covered as the new scene comes")
	await frames(6)
	expect(covered() < 0.8 and covered() > 0.1, "it fades in: %s" % covered())
	await arrive_and_see()
	guide.free()
	expect_clear()


func test_a_fade_goes_on_while_the_game_stands_still_and_takes_real_seconds() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	for scale: float in [0.0, 3.0]:
		Engine.time_scale = scale
		go({"scene_path": cave, "fade_seconds": 0.2})
		await frames(8)
		expect(covered() > 0.3 and covered() < 0.9, "at %s times: %s" % [scale, covered()])
		await arrive_and_see()
		expect_room("Cave")
	Engine.time_scale = 1.0
	go({"scene_path": cave, "fade_seconds": 0.2, "resume_first": false})
	tree.paused = true
	await arrive_and_see()
	expect(not tree.paused, "a pause in the middle of a fade is left behind with its menu")


func test_keys_and_clicks_reach_nothing_meanwhile() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	var button := add(Button.new(), "Button", {"size": Vector2(200, 200)}) as Button
	var pressed: Array[int] = []
	button.pressed.connect(func() -> void: pressed.append(1))
	click(Vector2(50, 50))
	expect_equal(pressed.size(), 1)
	go({"scene_path": cave, "fade_seconds": 0.2})
	await frames(1)
	while tree.root.has_node(^"QuillSteadSceneChanger") or SceneChanger.is_leaving():
		click(Vector2(50, 50))
		await frames(1)
	expect_room("Cave")
	expect_equal(pressed.size(), 1, "a click went through")
	click(Vector2(50, 50))
	expect_equal(pressed.size(), 2, "nothing is clicked after it")


func test_a_second_change_meanwhile_does_nothing() -> void:
	var cave := room("Cave")
	var field := room("Field")
	await begin_in(room("Town"))
	for fade: float in [0.0, 0.1]:
		await begin_in(FOLDER + "town.tscn")
		go({"scene_path": cave, "fade_seconds": fade})
		for i in 3:
			expect_state(go({"scene_path": field, "fade_seconds": fade}), "Done")
		await arrive_and_see()
		expect_room("Cave")
	# The first scene of a game often goes on by itself, before it has faded in.
	go({"scene_path": FOLDER + "town.tscn", "fade_seconds": 0.1})
	await arrive()
	expect_room("Town")
	expect(cover() != null)
	go({"scene_path": field, "fade_seconds": 0.1})
	go({"scene_path": cave, "fade_seconds": 0.1})
	await arrive_and_see()
	expect_room("Field")


func test_a_loading_screen_and_how_far_it_is() -> void:
	var bar := template([state("Shows")], {"variables": [global_variable("loading", 0.5)]})
	ResourceSaver.save(bar, FOLDER + "bar.tres")
	var screen: PackedScene = load(room("Loading", [hero(load(FOLDER + "bar.tres") as SCMachineTemplate)], Control.new()))
	for root: Node in [Node3D.new(), CanvasLayer.new(), Node.new()]:
		room("Loading%s" % root.get_class(), [], root)
	await begin_in(room("Town"))
	var cave := room("Cave")
	for file: String in ["loading", "loading_node_3d", "loading_canvas_layer", "loading_node"]:
		await begin_in(FOLDER + "town.tscn")
		go({"scene_path": cave, "loading_screen": load(FOLDER + file + ".tscn")})
		await frames(1)
		var shown := tree.root.find_child("Loading*", true, false)
		expect(shown != null and shown.is_inside_tree(), "%s is not shown" % file)
		await arrive()
		expect_room("Cave")
		expect(is_instance_valid(shown) and not shown.is_queued_for_deletion(), "it stays until the new scene is there")
		expect_equal(SCMachine.global_value(&"loading", null), 1.0)
		await arrive_and_see()
		expect(not is_instance_valid(shown), "%s is still there" % file)
	expect_equal(screen.can_instantiate(), true)
	go({"scene_path": FOLDER + "town.tscn", "loading_screen": PackedScene.new()})
	await arrive_and_see()
	expect_warning("nothing can be made of its Loading Screen, so none is shown")
	expect_room("Town")


func test_progress_for_whoever_has_the_variable() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	var seen: Array[float] = []
	var watcher := start(machine([state("Watches", [act("watcher").watching(["part"]).updating(
		func(m: SCMachine) -> void: seen.append(m.get_value("part")))])], {"name": "Bar", "variables": [global_variable("part", 0.5)]}))
	go({"scene_path": cave, "store_progress_in": &"part"})
	await arrive_and_see()
	expect_room("Cave")
	expect_equal([watcher.get_value("part"), seen.front(), seen.back()], [1.0, 0.0, 1.0])
	for at in range(1, seen.size()):
		expect(seen[at] >= seen[at - 1], "it goes back: %s" % [seen])


func test_a_load_that_fails_leaves_the_old_scene_running() -> void:
	var cave := room("Cave")
	var broken := broken_room("Broken")
	var screen: PackedScene = load(room("Loading", [], Control.new()))
	var town := await begin_in(room("Town"))
	for settings: Dictionary in [{}, {"fade_seconds": 0.1}, {"loading_screen": screen}, {"fade_seconds": 0.1, "loading_screen": screen}]:
		var guide := go({"scene_path": broken}.merged(settings))
		expect_state(guide, "Done")
		await arrive_and_see()
		expect_warning("Change Scene on Guide: user://story_rooms/broken.tscn could not be loaded, so the game stays in the scene it is in.")
		_claim_errors()
		expect_equal(tree.current_scene, town)
		expect_equal(events_of(guide), ["LoadFailed"], "%s" % settings)
		guide.free()
		expect_clear()
	go({"scene_path": cave, "fade_seconds": 0.1})
	await arrive()
	expect_room("Cave")


func test_another_scene_when_the_first_fails() -> void:
	var cave := room("Cave")
	var broken := broken_room("Broken")
	await begin_in(room("Town"))
	var guide := start(machine([
		state("Tries", [kind(SCChangeSceneAction, {"scene_path": broken, "fade_seconds": 0.1})], {"LoadFailed": "Instead"}),
		state("Instead", [kind(SCChangeSceneAction, {"scene_path": cave, "fade_seconds": 0.1})]),
	]))
	await arrive_and_see()
	_claim_errors()
	expect_warning("broken.tscn could not be loaded")
	expect_state(guide, "Instead")
	expect_room("Cave")


func test_a_load_that_stands_still_counts_as_failed() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	SceneChanger.patience = -1.0
	var guide := go({"scene_path": cave, "fade_seconds": 0.1})
	await arrive_and_see()
	if tree.current_scene.name == "Town":
		expect_warning("has not been loaded in")
		expect_equal(events_of(guide), ["LoadFailed"])
	SceneChanger.patience = 60.0
	await go_and_wait(cave)
	expect_room("Cave")


func test_a_screen_that_somebody_else_covers_stays_covered() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	ScreenFade.of(tree).fade(1.0, 0.0)
	go({"scene_path": cave, "fade_seconds": 0.1})
	await arrive()
	await frames(10)
	expect_room("Cave")
	expect_equal(covered(), 1.0)
	ScreenFade.of(tree).fade(0.0, 0.1)
	await frames(10)
	expect_equal(cover(), null)


func test_what_happens_to_whoever_asked_in_the_middle() -> void:
	var cave := room("Cave")
	await begin_in(room("Town"))
	var guide := go({"scene_path": cave, "fade_seconds": 0.1})
	await frames(3)
	guide.free()
	await arrive_and_see()
	expect_room("Cave")
	go({"scene_path": FOLDER + "town.tscn", "fade_seconds": 0.1})
	await frames(3)
	tree.current_scene.free()
	await arrive_and_see()
	expect_room("Town")
	go({"scene_path": cave, "fade_seconds": 0.1})
	await frames(3)
	for node in tree.root.get_children():
		if node.name.begins_with("QuillStead"):
			node.free()
	await frames(10)
	expect_room("Town")
	await go_and_wait(cave)
	expect_room("Cave")


func test_a_game_that_ends_in_the_middle_of_a_change() -> void:
	expect_survives("res://tests/survival/ends_in_a_change.gd")
	for name: String in ["first", "second", "loading"]:
		DirAccess.remove_absolute("user://ends_%s.tscn" % name)


func cover() -> CanvasLayer:
	return tree.root.get_node_or_null(^"QuillSteadScreenFade")


func covered() -> float:
	return cover().get(&"share") if cover() != null else 0.0


func click(at: Vector2) -> void:
	for is_down: bool in [true, false]:
		var event := InputEventMouseButton.new()
		event.button_index = MOUSE_BUTTON_LEFT
		event.pressed = is_down
		event.position = at
		event.global_position = at
		tree.root.push_input(event)


# What the engine says of a file that lacks something.
func _claim_errors() -> void:
	while output.claim("error", "story_rooms"):
		pass
