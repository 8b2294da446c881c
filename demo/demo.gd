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

var _seconds := 0.0
var _next_press := 0

@onready var _player: Player = $Player
@onready var _crowd: Crowd = $Crowd


func _ready() -> void:
	var run := RunByItself.wanted()
	set_process(run != null)
	if run != null:
		_player.walk_by_itself(_STOPS)
		add_child(run)
		run.write_into(Journal.new(_crowd))


func _process(delta: float) -> void:
	_seconds += delta
	if _next_press < _PRESSES.size() and _seconds >= _PRESSES.keys()[_next_press]:
		_press(_PRESSES.values()[_next_press])
		_next_press += 1


# Not by way of the mouse, which a headless window has not got.
func _press(button: NodePath) -> void:
	(get_node(button) as BaseButton).pressed.emit()
