extends Node2D
## A level to run and jump through, past three guards. Everything in it is put together from ready-made kinds.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] it plays itself from a recording, every change
## of state is printed, and the run ends with the recording, or after N frames. [code]--shot=PATH[/code] leaves a picture.

## How the level is played by itself.
const RECORDING: String = "res://demo/platformer/recording.txt"

var _journal: Journal
var _frames := 0
var _shot_path := ""


func _ready() -> void:
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--demo-frames="):
			_frames = argument.get_slice("=", 1).to_int()
		elif argument.begins_with("--shot="):
			_shot_path = argument.trim_prefix("--shot=")
	set_physics_process(_frames > 0)
	if _frames > 0:
		_journal = Journal.new(null, _machines_of_the_critters())
		add_child(_journal)
		play_by_itself().ended.connect(_finish)


func _physics_process(_delta: float) -> void:
	_frames -= 1
	if _frames == 0:
		_finish()


## From here on the recording plays, in place of whoever sits there.
func play_by_itself() -> RecordedInput:
	var player := RecordedInput.new()
	add_child(player)
	player.play(RECORDING)
	return player


func _machines_of_the_critters() -> Array[SCMachine]:
	var found: Array[SCMachine] = []
	for critter in $Critters.get_children():
		found.append(SCMachine.machine_of(critter))
	return found


func _finish() -> void:
	if not is_physics_processing():
		return
	set_physics_process(false)
	_journal.summary()
	if not _shot_path.is_empty() and DisplayServer.get_name() != "headless":
		await RenderingServer.frame_post_draw
		var error := get_viewport().get_texture().get_image().save_png(_shot_path)
		if error != OK:
			printerr("The picture could not be written to %s (%s)." % [_shot_path, error_string(error)])
	get_tree().quit()
