extends Node2D
## A small station in which everything but the player is run by a state machine.
##
## Opened as usual, it is there to be played. With [code]-- --demo-frames=N[/code] the visitor walks by itself, the buttons are
## pressed, every change of state is printed, and after N frames the run ends. [code]--shot=PATH[/code] leaves a picture.

const _STOPS: Array[float] = [430.0, 120.0]

## Which button is pressed when, in a run by itself.
const _PRESSES: Dictionary[float, NodePath] = {
	1.0: ^"Lift/LiftButton",
	3.0: ^"Lift/LiftButton",
	4.8: ^"Pocket/WatchButton",
	6.5: ^"Lamp/LampButton",
	7.5: ^"Lamp/LampButton",
}

var _journal: Journal
var _frames := 0
var _frames_run := 0
var _seconds := 0.0
var _next_press := 0
var _shot_path := ""

@onready var _player: Player = $Player
@onready var _crowd: Crowd = $Crowd


func _ready() -> void:
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--demo-frames="):
			_frames = argument.get_slice("=", 1).to_int()
		elif argument.begins_with("--shot="):
			_shot_path = argument.trim_prefix("--shot=")
	set_process(_frames > 0)
	if _frames > 0:
		_player.walk_by_itself(_STOPS)
		_journal = Journal.new(_crowd)
		add_child(_journal)


func _process(delta: float) -> void:
	_seconds += delta
	_frames_run += 1
	if _next_press < _PRESSES.size() and _seconds >= _PRESSES.keys()[_next_press]:
		_press(_PRESSES.values()[_next_press])
		_next_press += 1
	if _frames_run == _frames:
		_finish()


# Not by way of the mouse, which a headless window has not got.
func _press(button: NodePath) -> void:
	(get_node(button) as BaseButton).pressed.emit()


func _finish() -> void:
	set_process(false)
	_journal.summary()
	if not _shot_path.is_empty() and DisplayServer.get_name() != "headless":
		await RenderingServer.frame_post_draw
		var error := get_viewport().get_texture().get_image().save_png(_shot_path)
		if error != OK:
			printerr("The picture could not be written to %s (%s)." % [_shot_path, error_string(error)])
	get_tree().quit()
