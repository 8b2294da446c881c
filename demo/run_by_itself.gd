class_name RunByItself
extends Node
## A run of a scene with nobody to play it, as [code]-- --demo-frames=N[/code] asks for: after N frames it sums up, leaves a
## picture where [code]--shot=PATH[/code] names one, and ends the game.

var _frames := 0
var _shot_path := ""
var _sum_up: Callable


## Null when somebody plays. The run is to be added to the scene, with its journal below it, whose summary ends it.
static func wanted() -> RunByItself:
	var made := RunByItself.new()
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--demo-frames="):
			made._frames = argument.get_slice("=", 1).to_int()
		elif argument.begins_with("--shot="):
			made._shot_path = argument.trim_prefix("--shot=")
	if made._frames > 0:
		return made
	made.free()
	return null


## Writes the run down in [param journal], a node with a method [code]summary()[/code].
func write_into(journal: Node) -> void:
	add_child(journal)
	_sum_up = Callable(journal, &"summary")


func _process(_delta: float) -> void:
	_frames -= 1
	if _frames == 0:
		finish()


## Ends the run before its time.
func finish() -> void:
	if not is_processing():
		return
	set_process(false)
	if _sum_up.is_valid():
		_sum_up.call()
	if not _shot_path.is_empty() and DisplayServer.get_name() != "headless":
		await RenderingServer.frame_post_draw
		var error := get_viewport().get_texture().get_image().save_png(_shot_path)
		if error != OK:
			printerr("The picture could not be written to %s (%s)." % [_shot_path, error_string(error)])
	get_tree().quit()
