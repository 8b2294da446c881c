extends "res://tests/stories/files/rooms_story.gd"
## Change Scene: which scene it goes to, what it says when there is none, and starting one again.

const SCENES: Array[StringName] = [&"scene", &"scene_path", &"path_variable", &"arrive_at", &"arrive_at_variable", &"loading_screen", &"store_progress_in"]


func test_what_it_says_and_shows() -> void:
	expect_lines(SCChangeSceneAction, {
		"Go to cave.tscn": {"scene_path": "res://levels/cave.tscn"},
		"Go to cave.tscn, arriving at CaveDoor": {"scene_path": "res://levels/cave.tscn", "arrive_at": &"CaveDoor"},
		"Go to [goes_to], arriving at [door]": {"path_variable": &"goes_to", "arrive_at_variable": &"door"},
		"Go to (pick one)": {},
		"Start this scene again": {"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE},
	})
	expect_shown(kind(SCChangeSceneAction), SCENES)
	expect_hidden(kind(SCChangeSceneAction), ["put_globals_back", "keep_as_they_are", "fade_colour"])
	var again := kind(SCChangeSceneAction, {"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
	expect_shown(again, ["put_globals_back", "keep_as_they_are"])
	expect_hidden(again, SCENES)
	expect_hidden(kind(SCChangeSceneAction, {"path_variable": &"goes_to"}), ["scene", "scene_path"])


func test_every_way_to_name_a_scene() -> void:
	var cave := room("Cave")
	var in_memory := PackedScene.new()
	in_memory.pack(body("Field"))
	await begin_in(room("Town"))
	var rows: Array[Array] = [
		[{"scene_path": cave}, "Cave"],
		[{"scene": load(cave)}, "Cave"],
		[{"scene": in_memory}, "Field"],
		[{"scene": load(cave), "scene_path": FOLDER + "nowhere.tscn"}, "Cave"],
		[{"path_variable": &"goes_to"}, "Cave"],
		# A scene is not looked at where a variable is named.
		[{"path_variable": &"goes_to", "scene": in_memory}, "Cave"],
	]
	for row in rows:
		await begin_in(FOLDER + "town.tscn")
		var guide := play(kind(SCChangeSceneAction, row[0] as Dictionary), {"FINISHED": "Done"}, {"variables": {"goes_to": cave}})
		expect_state(guide, "Done")
		expect_room("Town")
		await frames(1)
		expect_room(row[1] as String)
		expect_clear_but(guide)


func test_what_cannot_be_gone_to() -> void:
	await begin_in(room("Town"))
	var rows: Array[Array] = [
		[{}, "no scene is picked to go to, so it stays where it is. Pick one in its Scene setting."],
		[{"path_variable": &"empty"}, "It reads the scene from empty, so give that a scene (a Level Exit's is Goes To, in its Inspector)."],
		[{"path_variable": &"picture"}, "there is no scene at \"res://docs/pictures/demo.png\"."],
		[{"scene_path": FOLDER + "nowhere.tscn"}, "there is no scene at \"user://story_rooms/nowhere.tscn\"."],
		[{"scene_path": "uid://nobodyhasit"}, "there is no scene at \"uid://nobodyhasit\"."],
		[{"scene": load(FOLDER + "town.tscn"), "path_variable": &"nothing"}, "It reads the scene from nothing"],
	]
	for row in rows:
		var guide := play(kind(SCChangeSceneAction, row[0] as Dictionary), {"LoadFailed": "Failed", "FINISHED": "Done"},
			{"variables": {"empty": "", "picture": "res://docs/pictures/demo.png", "nothing": null}})
		expect_warning(row[1] as String)
		expect_state(guide, "Failed")
		await frames(3)
		expect_room("Town")
		guide.free()


func test_starting_again_undoes_what_was_done_in_the_scene() -> void:
	var globals := template([state("Idle")], {"variables": [global_variable("score", 0), global_variable("lives", 3), global_variable("bag", ["map"])]})
	await begin_in(room("Title"))
	for name: StringName in [&"score", &"lives"]:
		SCMachine.set_global_value(name, 5)
	await go_and_wait(room("Level", [hero(globals)]))
	machine_here().set_value("score", 50)
	machine_here().set_value("lives", 4)
	machine_here().get_value("bag").append("key")
	SCMachine.set_global_value(&"late", 1)
	SCMachine.set_global_value(&"later", 2)
	var former := machine_here()
	await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE, "keep_as_they_are": [&"later", &"lives"] as Array[StringName]})
	expect_room("Level")
	expect(not is_instance_valid(former))
	for row: Array in [["score", 5], ["lives", 4], ["bag", ["map"]], ["late", null], ["later", 2]]:
		expect_equal(SCMachine.global_value(row[0], null), row[1], row[0])
	machine_here().set_value("score", 60)
	await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE, "put_globals_back": false})
	expect_equal(machine_here().get_value("score"), 60)


func test_a_scene_that_is_in_no_file_is_not_started_again() -> void:
	var packed := PackedScene.new()
	packed.pack(body("Made"))
	tree.change_scene_to_packed(packed)
	await tree.scene_changed
	var guide := go({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
	expect_warning("Change Scene: the scene running now was not opened from a file, so it cannot be started again.")
	expect_state(guide, "Failed")
	var quiet := play(kind(SCChangeSceneAction, {"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE, "failed_event": &""}), {"FINISHED": "Done"})
	expect_warning("cannot be started again")
	expect_state(quiet, "Done")


func test_a_paused_game_runs_again_first() -> void:
	var town := room("Town")
	await begin_in(town)
	for resumes: bool in [true, false]:
		tree.paused = true
		go({"scene_path": town, "resume_first": resumes})
		expect_equal(tree.paused, not resumes)
		await frames(1)
		expect_equal(tree.paused, not resumes)
	tree.paused = false


func test_the_new_scene_stands_where_the_old_one_did() -> void:
	var design := hero_design({"began_in": ""}, {"carries_over": false})
	design.states[0].actions.append(kind(SCGetSceneAction, {"store_in": &"began_in"}))
	ResourceSaver.save(design, design.resource_path)
	var cave := room("Cave", [hero(design)])
	var old := await begin_in(room("Town"))
	var mine := Node.new()
	mine.name = "Mine"
	tree.root.add_child(mine)
	var told: Array[int] = []
	var changed := func() -> void: told.append(1)
	tree.scene_changed.connect(changed)
	var at := old.get_index()
	await go_and_wait(cave)
	tree.scene_changed.disconnect(changed)
	expect_equal([tree.current_scene.get_index(), told.size(), is_instance_valid(mine)], [at, 1, true])
	expect_equal(machine_here().get_value("began_in"), "Cave", "who asks as it begins finds the new scene")
	mine.free()


func test_from_within_a_signal_of_physics_and_from_a_scene_that_begins() -> void:
	var cave := room("Cave")
	var leaving := template([state("Off", [kind(SCChangeSceneAction, {"scene_path": cave})])])
	ResourceSaver.save(leaving, FOLDER + "leaving.tres")
	await begin_in(room("Boot", [hero(load(FOLDER + "leaving.tres") as SCMachineTemplate)]))
	expect_room("Cave")
	var area := boxed(Area2D.new(), Vector2(40, 40)) as Area2D
	var walker := boxed(CharacterBody2D.new(), Vector2(10, 10)) as CharacterBody2D
	walker.position = Vector2(500, 0)
	for node: Node in [area, walker]:
		node.name = node.get_class()
	await begin_in(room("Door", [area, walker]))
	var door := start(machine([
		state("Waits", [], {"body_entered": "Opens"}),
		state("Opens", [kind(SCChangeSceneAction, {"scene_path": cave})]),
	], {"under": tree.current_scene.get_node(^"Area2D")}))
	(tree.current_scene.get_node(^"CharacterBody2D") as Node2D).position = Vector2.ZERO
	await physics_frames(4)
	await frames(1)
	expect(not is_instance_valid(door))
	expect_room("Cave")


func test_two_scenes_that_lead_to_each_other_as_they_begin() -> void:
	for pair: Array in [["Left", "right"], ["Right", "left"]]:
		var onward := hero_design({}, {"carries_over": false, "resource_name": pair[0]})
		onward.states[0].actions.append(kind(SCChangeSceneAction, {"scene_path": FOLDER + "%s.tscn" % pair[1]}))
		ResourceSaver.save(onward, onward.resource_path)
		room(pair[0] as String, [hero(onward)])
	await begin_in(FOLDER + "left.tscn")
	var seen: Array[StringName] = []
	for i in 6:
		seen.append(tree.current_scene.name)
		await frames(1)
	expect(&"Left" in seen and &"Right" in seen, "%s" % [seen])
	SceneChanger.forget()
	tree.current_scene.queue_free()
	await frames(2)


func test_a_scene_put_in_the_place_of_another() -> void:
	var inner := PackedScene.new()
	var model := body("Inner")
	inner.pack(model)
	model.free()
	var old := body("Old")
	body("After")
	var old_id := old.get_instance_id()
	var said: Array[String] = []
	SceneChanger.swap(tree, old, inner, {}, func() -> void: said.append("old %s" % ("is there" if is_instance_id_valid(old_id) else "has gone")))
	expect(is_instance_valid(old))
	await frames(1)
	expect_equal(said, ["old has gone"])
	expect_equal(stage.get_children().map(func(node: Node) -> String: return node.name).slice(-2), ["Inner", "After"])
	expect_equal(tree.current_scene, null)
	SceneChanger.swap(tree, null, inner, {}, Callable())
	await frames(1)
	expect_room("Inner")
	SceneChanger.swap(tree, tree.current_scene, PackedScene.new(), {}, Callable())
	await frames(1)
	expect_warning("could not be made, so the game stays in the scene it is in.")
	expect_room("Inner")


func expect_clear_but(guide: SCMachine) -> void:
	guide.free()
	expect_clear()
