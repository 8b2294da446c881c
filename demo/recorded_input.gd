class_name RecordedInput
extends Node
## Plays a recording of keys, mouse buttons and gamepad inputs, as if somebody sat there: in the physics frames, before
## anything else has its turn in them.
##
## A recording is a text file. Each line is a frame, [code]down[/code], [code]up[/code] or [code]tap[/code], and an input by
## the word that a game maker picks it with, such as
## [codeblock]
## # To the ledge, and over it.
## 30   down  Key: D
## 95   tap   Key: Space
## 200  up    Key: D
## 900  end
## [/codeblock]
## Frames are counted from the call of [method play] on, 0 being the next one. A tap is down for one frame. The recording is
## over at [code]end[/code] or with its last line; what is still held down then is let go of.

## The recording is over.
signal ended

const Inputs := preload("res://addons/quillstead/runtime/quillstead_input.gd")

enum Deed { DOWN, UP, TAP, END }

const _WORDS: Dictionary[String, Deed] = {"down": Deed.DOWN, "up": Deed.UP, "tap": Deed.TAP, "end": Deed.END}

## The frame that comes next. Tells where a recording is, and how long it was once it is over.
var frame: int = 0

var _deeds: Array[Dictionary] = []
var _next: int = 0
var _held: Dictionary[String, bool] = {}
var _tapped: PackedStringArray = []


func _init() -> void:
	process_physics_priority = -1000
	process_mode = Node.PROCESS_MODE_ALWAYS


func _ready() -> void:
	set_physics_process(is_playing())


func _exit_tree() -> void:
	stop()


func _physics_process(_delta: float) -> void:
	for input in _tapped:
		_send(input, false)
	_tapped.clear()
	while is_playing() and _deeds[_next]["frame"] <= frame:
		_do(_deeds[_next])
		_next += 1
	Input.flush_buffered_events()
	frame += 1
	if not is_playing() and _tapped.is_empty():
		stop()
		ended.emit()


## Plays the recording in that file from its beginning. False when there is something in it that cannot be read; each such line
## is told of, and nothing is played.
func play(path: String) -> bool:
	if not FileAccess.file_exists(path):
		stop()
		push_error("There is no recording at %s." % path)
		return false
	return play_text(FileAccess.get_file_as_string(path), path)


## Plays lines as they would stand in a file. [param called] is what a line that cannot be read is told by.
func play_text(lines: String, called: String = "The recording") -> bool:
	stop()
	frame = 0
	_deeds = read(lines, called)
	set_physics_process(is_playing())
	return is_playing()


## Whether there is more to come.
func is_playing() -> bool:
	return _next < _deeds.size()


## Stops where it is and lets go of everything.
func stop() -> void:
	for input: String in _held.keys():
		_send(input, false)
	Input.flush_buffered_events()
	_deeds.clear()
	_tapped.clear()
	_next = 0
	set_physics_process(false)


## What is done when, as a list of [code]{frame, deed, input}[/code] in the order of the frames. Empty when it cannot be read.
static func read(text: String, called: String = "The recording") -> Array[Dictionary]:
	var deeds: Array[Dictionary] = []
	var lines := text.split("\n")
	var faults := 0
	for number in lines.size():
		var words := lines[number].get_slice("#", 0).replace("\t", " ").split(" ", false, 2)
		if words.is_empty():
			continue
		var deed: Deed = _WORDS.get(words[1], Deed.END) if words.size() > 1 else Deed.END
		var input := words[2].strip_edges() if words.size() > 2 else ""
		var is_known := words.size() > 1 and _WORDS.has(words[1]) and (deed == Deed.END or Inputs.event_of(input) != null)
		var at := words[0].to_int()
		if not words[0].is_valid_int() or not is_known or (not deeds.is_empty() and at < deeds[-1]["frame"]):
			push_error("%s, line %d: \"%s\" is no frame, no earlier than the last, with down, up or tap and an input." % [called, number + 1, lines[number]])
			faults += 1
		else:
			deeds.append({"frame": at, "deed": deed, "input": input})
	if faults > 0:
		deeds.clear()
	return deeds


func _do(what: Dictionary) -> void:
	var input: String = what["input"]
	match what["deed"]:
		Deed.DOWN:
			_send(input, true)
		Deed.UP:
			_send(input, false)
		Deed.TAP:
			_send(input, true)
			_tapped.append(input)


func _send(input: String, pressed: bool) -> void:
	if pressed:
		_held[input] = true
	else:
		_held.erase(input)
	var event := Inputs.event_of(input)
	event.device = maxi(event.device, 0)
	if event is InputEventKey:
		var key: InputEventKey = event
		key.keycode = key.physical_keycode
		# What a text field is typed into with.
		key.unicode = String.chr(key.keycode).to_lower().unicode_at(0) if key.keycode < KEY_SPECIAL else 0
		key.pressed = pressed
	elif event is InputEventMouseButton:
		(event as InputEventMouseButton).pressed = pressed
	elif event is InputEventJoypadButton:
		(event as InputEventJoypadButton).pressed = pressed
	elif event is InputEventJoypadMotion and not pressed:
		(event as InputEventJoypadMotion).axis_value = 0.0
	Input.parse_input_event(event)
