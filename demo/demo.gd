extends Node2D
## A small station in which everything but the player is run by a state machine.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] the visitor walks by itself, the buttons are
## pressed, every change of state is printed, and after N frames the run ends. [code]--shot=PATH[/code] leaves a picture.

const _STOPS: Array[float] = [430.0, 120.0]

var _journal: Journal
var _frames_left := 0
var _shot_path := ""

@onready var _player: Player = $Player
@onready var _crowd: Crowd = $Crowd


func _ready() -> void:
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--demo-frames="):
			_frames_left = argument.get_slice("=", 1).to_int()
		elif argument.begins_with("--shot="):
			_shot_path = argument.trim_prefix("--shot=")
	if _frames_left > 0:
		_play_by_itself()


func _play_by_itself() -> void:
	_player.walk_by_itself(_STOPS)
	_journal = Journal.new(_crowd)
	add_child(_journal)
	_press_later($Lift/LiftButton, 2.6)
	_press_later($Pocket/WatchButton, 4.8)
	_press_later($Lamp/LampButton, 6.5)
	_press_later($Lamp/LampButton, 7.5)
	for frame in _frames_left:
		await get_tree().process_frame
	_journal.summary()
	if not _shot_path.is_empty() and DisplayServer.get_name() != "headless":
		await RenderingServer.frame_post_draw
		var error := get_viewport().get_texture().get_image().save_png(_shot_path)
		if error != OK:
			printerr("The picture could not be written to %s (%s)." % [_shot_path, error_string(error)])
	get_tree().quit()


# Not by way of the mouse, which a headless window has not got.
func _press_later(button: BaseButton, seconds: float) -> void:
	await get_tree().create_timer(seconds).timeout
	button.pressed.emit()
