extends SceneTree
## A game that is closed while one scene fades into the next, which is still being loaded.

const SceneChanger := preload("res://addons/quillstead/runtime/quillstead_scene_changer.gd")


func _initialize() -> void:
	await process_frame
	for name: String in ["first", "second", "loading"]:
		var scene := Node2D.new()
		scene.name = name.capitalize()
		var packed := PackedScene.new()
		packed.pack(scene)
		scene.free()
		ResourceSaver.save(packed, "user://ends_%s.tscn" % name)
	change_scene_to_file("user://ends_first.tscn")
	await scene_changed
	SceneChanger.go(self, "user://ends_second.tscn", null, 0.5, Color.BLACK, load("user://ends_loading.tscn") as PackedScene, &"loading", &"", false, null,
		Callable())
	for i in 3:
		await process_frame
	var covers := root.get_node_or_null(^"QuillSteadScreenFade") != null and root.get_node_or_null(^"QuillSteadSceneChanger") != null
	print("survived" if covers and current_scene.name == "First" else "FAIL it is not in the middle of a change")
	quit()
