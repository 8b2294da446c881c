extends Node2D
## Twelve benches, each put together from ready-made kinds alone; this script takes no part in what they do.
##
## Opened as usual, they are there to be played with. With [code]-- --demo-frames=N[/code] the buttons are pressed by
## themselves, every change of state is printed, and after N frames the run ends. [code]--shot=PATH[/code] leaves a picture.

const BenchJournal := preload("res://demo/workshop/bench_journal.gd")

## What happens when, in a run by itself: a button, or the word for the door.
const _PRESSES: Dictionary[float, String] = {
	0.1: "Countdown/Start",
	0.5: "ShopCounter/Apple",
	0.8: "SlotMachine/Lever",
	0.9: "ShopCounter/Tea",
	1.3: "ShopCounter/Bread",
	1.6: "Safe/LeftKey",
	1.8: "PasswordDoor/Word=feather",
	1.9: "ShopCounter/Pay",
	2.0: "TeaKitchen/Brew",
	2.2: "Pinwheel/Blow",
	2.4: "Safe/RightKey",
	3.2: "PasswordDoor/Word=quill",
	3.4: "ShopCounter/Bread",
	4.9: "ShopCounter/Tea",
	6.2: "SlotMachine/Lever",
	7.0: "SlowMotion/Slow",
	7.6: "Safe/LeftKey",
	8.0: "MoodLamp/Switch",
	8.8: "MoodLamp/Switch",
	9.2: "TrafficLight/Night",
}

var _seconds := 0.0
var _next_press := 0


func _ready() -> void:
	var run := RunByItself.wanted()
	set_process(run != null)
	if run != null:
		add_child(run)
		run.write_into(BenchJournal.new(self))


func _process(delta: float) -> void:
	_seconds += delta
	while _next_press < _PRESSES.size() and _seconds >= _PRESSES.keys()[_next_press]:
		use(_PRESSES.values()[_next_press])
		_next_press += 1


## Presses a button, turns one that stays pressed, or says a word: [code]"PasswordDoor/Word=quill"[/code].
## Not by way of the mouse, which a headless window has not got.
func use(what: String) -> void:
	var thing := get_node(what.get_slice("=", 0))
	if thing is LineEdit:
		(thing as LineEdit).text_submitted.emit(what.get_slice("=", 1))
	elif (thing as BaseButton).toggle_mode:
		(thing as BaseButton).button_pressed = not (thing as BaseButton).button_pressed
	else:
		(thing as BaseButton).pressed.emit()
