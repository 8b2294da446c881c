extends Node3D
## A yard, a plaza and a vault with guards in them. What everybody does comes from kinds in their templates; this script takes
## no part in it.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] a recording plays it, every change of state
## is printed, and after N frames the run ends. [code]--shot=PATH[/code] leaves a picture.

const RECORDING: String = "res://demo/arena/recording.txt"

var _journal: Journal
var _frames := 0
var _frames_run := 0
var _shot_path := ""


func _ready() -> void:
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--demo-frames="):
			_frames = argument.get_slice("=", 1).to_int()
		elif argument.begins_with("--shot="):
			_shot_path = argument.trim_prefix("--shot=")
	set_process(_frames > 0)
	if _frames > 0:
		_journal = Journal.new()
		add_child(_journal)
		play_by_itself()


func _process(_delta: float) -> void:
	_frames_run += 1
	if _frames_run == _frames:
		_finish()


## Plays the recording, as if somebody sat there.
func play_by_itself() -> RecordedInput:
	var player := RecordedInput.new()
	add_child(player)
	player.play(RECORDING)
	return player


func _finish() -> void:
	set_process(false)
	_journal.summary()
	if not _shot_path.is_empty() and DisplayServer.get_name() != "headless":
		await RenderingServer.frame_post_draw
		var error := get_viewport().get_texture().get_image().save_png(_shot_path)
		if error != OK:
			printerr("The picture could not be written to %s (%s)." % [_shot_path, error_string(error)])
	get_tree().quit()
