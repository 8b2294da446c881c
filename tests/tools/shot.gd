extends SceneTree
## Runs a scene for some frames and saves what is drawn then: [code]-s res://tests/tools/shot.gd -- SCENE OUT.png FRAMES[/code].


func _initialize() -> void:
	var arguments := OS.get_cmdline_user_args()
	var error := change_scene_to_file(arguments[0])
	if error != OK:
		printerr("shot: %s does not load (%s)" % [arguments[0], error_string(error)])
		quit(1)
		return
	for frame in int(arguments[2]):
		await process_frame
	await RenderingServer.frame_post_draw
	error = root.get_texture().get_image().save_png(arguments[1])
	if error != OK:
		printerr("shot: %s cannot be written (%s)" % [arguments[1], error_string(error)])
	quit(0 if error == OK else 1)
