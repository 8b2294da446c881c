extends RefCounted
## Knows every input by the word a game maker picks it with.
##
## A word is a control of the project's input map, such as [code]ui_accept[/code]; an input by its own name, such as
## [code]Key: E[/code], [code]Mouse: Left Button[/code] or [code]Pad: Top Button (Y / Triangle)[/code]; several of those
## with [code] or [/code] between them; or [constant ANY]. A word that is no control yet becomes one of the input map
## the first time it is asked about, so the engine does the listening. [code]Pad 2: [/code] is the second gamepad only.

## Any key, mouse button or gamepad button at all.
const ANY: StringName = &"Any Key or Button"
## Between two inputs of one word.
const OR: String = " or "

## The gamepad's buttons, by their number.
const PAD_BUTTONS: PackedStringArray = [
	"Bottom Button (A / Cross)", "Right Button (B / Circle)", "Left Button (X / Square)", "Top Button (Y / Triangle)",
	"Select / Back", "Home / Guide", "Start / Menu", "Left Stick Press (L3)", "Right Stick Press (R3)",
	"Left Shoulder (LB / L1)", "Right Shoulder (RB / R1)", "D-Pad Up", "D-Pad Down", "D-Pad Left", "D-Pad Right",
	"Share / Microphone", "Paddle 1", "Paddle 2", "Paddle 3", "Paddle 4", "Touchpad",
]
## The ways of the gamepad's sticks and triggers, as the number of the axis and the sign.
const PAD_AXES: Dictionary[String, Vector2i] = {
	"Left Stick Left": Vector2i(JOY_AXIS_LEFT_X, -1),
	"Left Stick Right": Vector2i(JOY_AXIS_LEFT_X, 1),
	"Left Stick Up": Vector2i(JOY_AXIS_LEFT_Y, -1),
	"Left Stick Down": Vector2i(JOY_AXIS_LEFT_Y, 1),
	"Right Stick Left": Vector2i(JOY_AXIS_RIGHT_X, -1),
	"Right Stick Right": Vector2i(JOY_AXIS_RIGHT_X, 1),
	"Right Stick Up": Vector2i(JOY_AXIS_RIGHT_Y, -1),
	"Right Stick Down": Vector2i(JOY_AXIS_RIGHT_Y, 1),
	"Left Trigger (LT / L2)": Vector2i(JOY_AXIS_TRIGGER_LEFT, 1),
	"Right Trigger (RT / R2)": Vector2i(JOY_AXIS_TRIGGER_RIGHT, 1),
}
## The mouse's buttons.
const MOUSE_BUTTONS: Dictionary[String, MouseButton] = {
	"Left Button": MOUSE_BUTTON_LEFT,
	"Right Button": MOUSE_BUTTON_RIGHT,
	"Middle Button": MOUSE_BUTTON_MIDDLE,
	"Wheel Up": MOUSE_BUTTON_WHEEL_UP,
	"Wheel Down": MOUSE_BUTTON_WHEEL_DOWN,
	"Wheel Left": MOUSE_BUTTON_WHEEL_LEFT,
	"Wheel Right": MOUSE_BUTTON_WHEEL_RIGHT,
	"Side Button 1": MOUSE_BUTTON_XBUTTON1,
	"Side Button 2": MOUSE_BUTTON_XBUTTON2,
}

## A stick or trigger counts as pressed from here on.
const DEADZONE: float = 0.5
## A stick pushed less than this is at rest, which is never quite in the middle.
const LEAST_PUSH: float = 0.2

## Which inputs of a control are meant, where only some are.
enum Kind { ALL, KEYBOARD_AND_MOUSE, GAMEPAD }

# Words that mean nothing, so that none is taken apart on every frame.
static var _unknown: Dictionary[StringName, bool] = {}
# The frames in which any key or button was last pressed and let go, drawn ones first.
static var _any_pressed := Vector2i(-1, -1)
static var _any_released := Vector2i(-1, -1)
# When the inputs that are remembered were last pressed and let go, on the clock below.
static var _pressed_at: Dictionary[StringName, float] = {}
static var _released_at: Dictionary[StringName, float] = {}
static var _clock: float = 0.0


## Whether it is down now.
static func is_held(input: StringName) -> bool:
	if input == ANY:
		return Input.is_anything_pressed()
	var action := action_for(input)
	return not action.is_empty() and Input.is_action_pressed(action)


## How far it is down, from 0 to 1.
static func strength(input: StringName) -> float:
	if input == ANY:
		return 1.0 if Input.is_anything_pressed() else 0.0
	var action := action_for(input)
	return Input.get_action_strength(action) if not action.is_empty() else 0.0


## Whether it went down in this frame.
static func just_pressed(input: StringName) -> bool:
	if input == ANY:
		_listen_to_everything()
		return _is_this_frame(_any_pressed)
	var action := action_for(input)
	return not action.is_empty() and Input.is_action_just_pressed(action)


## Whether it was let go in this frame.
static func just_released(input: StringName) -> bool:
	if input == ANY:
		_listen_to_everything()
		return _is_this_frame(_any_released)
	var action := action_for(input)
	return not action.is_empty() and Input.is_action_just_released(action)


## Whether it went down in this frame or up to that many [param seconds] of game time ago. What happened before this
## was first asked about an input is not known.
static func pressed_within(input: StringName, seconds: float) -> bool:
	return just_pressed(input) or _is_remembered(_pressed_at, input, seconds)


## Whether it was let go in this frame or up to that many [param seconds] of game time ago.
static func released_within(input: StringName, seconds: float) -> bool:
	return just_released(input) or _is_remembered(_released_at, input, seconds)


## Whether a stick or trigger that the control is on is pushed, even less than it takes to count as pressed.
static func has_stick_push(input: StringName) -> bool:
	if input == ANY:
		return false
	var action := action_for(input)
	return not action.is_empty() and Input.get_action_raw_strength(action) > LEAST_PUSH and _is_on_a_stick(action)


## The control of the input map that stands for the word. Empty when it means nothing.
static func action_for(input: StringName) -> StringName:
	if InputMap.has_action(input):
		return input
	if input == ANY:
		_listen_to_everything()
		return ANY
	if input.is_empty() or _unknown.has(input):
		return &""
	var events := events_for(input)
	if events.is_empty():
		_unknown[input] = true
		return &""
	InputMap.add_action(input, DEADZONE)
	for event in events:
		InputMap.action_add_event(input, event)
	return input


## The inputs that a word names one by one. Empty when one of them means nothing.
static func events_for(input: String) -> Array[InputEvent]:
	var events: Array[InputEvent] = []
	for word in input.split(OR, false):
		var event := event_of(word.strip_edges())
		if event == null:
			return []
		events.append(event)
	return events


## The input called [param word], such as [code]Key: Space[/code]. Null when there is none.
static func event_of(word: String) -> InputEvent:
	var colon := word.find(": ")
	var device := word.left(colon)
	var what := word.substr(colon + 2)
	if colon < 0:
		return null
	if device == "Key":
		return _key_called(what)
	if device == "Mouse" and MOUSE_BUTTONS.has(what):
		var click := InputEventMouseButton.new()
		click.device = -1
		click.button_index = MOUSE_BUTTONS[what]
		return click
	if device == "Pad":
		return _pad_input_called(what, -1)
	if device.begins_with("Pad ") and device.substr(4).is_valid_int() and device.substr(4).to_int() > 0:
		return _pad_input_called(what, device.substr(4).to_int() - 1)
	return null


## The word for an input, the way [method event_of] reads it. Empty for a movement of the mouse and the like.
static func name_of(event: InputEvent) -> String:
	if event is InputEventKey:
		var key: InputEventKey = event
		var code := key.physical_keycode if key.physical_keycode != KEY_NONE else key.keycode
		return "Key: " + OS.get_keycode_string(code | key.get_modifiers_mask() if not _is_modifier(code) else code)
	if event is InputEventMouseButton:
		var button: Variant = MOUSE_BUTTONS.find_key((event as InputEventMouseButton).button_index)
		return "" if button == null else "Mouse: %s" % button
	if event is InputEventJoypadButton:
		var number := (event as InputEventJoypadButton).button_index
		return "Pad: " + PAD_BUTTONS[number] if number >= 0 and number < PAD_BUTTONS.size() else ""
	if event is InputEventJoypadMotion:
		var motion: InputEventJoypadMotion = event
		var way: Variant = PAD_AXES.find_key(Vector2i(motion.axis, -1 if motion.axis_value < 0.0 else 1))
		return "" if way == null else "Pad: %s" % way
	return ""


## What a player reads for the inputs a control is on, such as [code]E or Top Button (Y / Triangle)[/code].
static func key_name(input: StringName, which: Kind = Kind.ALL) -> String:
	if input == ANY:
		return ANY
	var names: PackedStringArray = []
	var action := action_for(input)
	if action.is_empty():
		return ""
	for event in InputMap.action_get_events(action):
		if which == Kind.ALL or kind_of(event) == which:
			var read := _as_printed_on_it(event)
			if not read.is_empty() and read not in names:
				names.append(read)
	return OR.join(names)


## Whether the input is one of a keyboard and mouse or one of a gamepad.
static func kind_of(event: InputEvent) -> Kind:
	return Kind.GAMEPAD if event is InputEventJoypadButton or event is InputEventJoypadMotion else Kind.KEYBOARD_AND_MOUSE


## The engine's number of the gamepad that players count as [param number], where 1 is the first one connected.
## -1 when there are not so many.
static func pad_numbered(number: int) -> int:
	var pads := Input.get_connected_joypads()
	return pads[number - 1] if number >= 1 and number <= pads.size() else -1


## Whether the push of a stick may be bound to the control: not to one that is on a button of the gamepad.
static func takes_a_stick(input: StringName) -> bool:
	var action := action_for(input)
	if action.is_empty() or _is_on_a_stick(action):
		return true
	return not InputMap.action_get_events(action).any(func(event: InputEvent) -> bool: return event is InputEventJoypadButton)


## Puts the control on [param event]. Its other inputs of the same kind go, unless they are kept.
static func bind(input: StringName, event: InputEvent, keep_the_old: bool = false) -> void:
	var action := action_for(input)
	if action.is_empty() or event == null or input == ANY:
		return
	var fresh := _without_the_moment(event)
	if not keep_the_old:
		for old in InputMap.action_get_events(action):
			if kind_of(old) == kind_of(fresh):
				InputMap.action_erase_event(action, old)
	if not InputMap.action_has_event(action, fresh):
		InputMap.action_add_event(action, fresh)


## Puts every control back on the inputs that the project gave it.
static func put_back_defaults() -> void:
	InputMap.load_from_project_settings()


static func _key_called(what: String) -> InputEvent:
	var code := OS.find_keycode_from_string(what)
	if code == KEY_NONE:
		return null
	var key := InputEventKey.new()
	key.device = -1
	# The place on the keyboard, so that W, A, S and D lie together on every keyboard.
	key.physical_keycode = code & KEY_CODE_MASK as Key
	key.ctrl_pressed = code & KEY_MASK_CTRL != 0
	key.shift_pressed = code & KEY_MASK_SHIFT != 0
	key.alt_pressed = code & KEY_MASK_ALT != 0
	key.meta_pressed = code & KEY_MASK_META != 0
	return key


static func _pad_input_called(what: String, device: int) -> InputEvent:
	var number := PAD_BUTTONS.find(what)
	if number >= 0:
		var button := InputEventJoypadButton.new()
		button.device = device
		button.button_index = number as JoyButton
		return button
	if PAD_AXES.has(what):
		var motion := InputEventJoypadMotion.new()
		motion.device = device
		motion.axis = PAD_AXES[what].x as JoyAxis
		motion.axis_value = PAD_AXES[what].y
		return motion
	return null


static func _is_modifier(code: Key) -> bool:
	return code in [KEY_CTRL, KEY_SHIFT, KEY_ALT, KEY_META]


static func _is_on_a_stick(action: StringName) -> bool:
	return InputMap.action_get_events(action).any(func(event: InputEvent) -> bool: return event is InputEventJoypadMotion)


# An event as it came in holds how long and how hard it was pressed, and by which pad.
static func _without_the_moment(event: InputEvent) -> InputEvent:
	var fresh: InputEvent = event.duplicate()
	fresh.device = -1
	if fresh is InputEventKey:
		(fresh as InputEventKey).pressed = false
		(fresh as InputEventKey).echo = false
	elif fresh is InputEventMouseButton:
		(fresh as InputEventMouseButton).pressed = false
	elif fresh is InputEventJoypadButton:
		(fresh as InputEventJoypadButton).pressed = false
	elif fresh is InputEventJoypadMotion:
		(fresh as InputEventJoypadMotion).axis_value = signf((fresh as InputEventJoypadMotion).axis_value)
	return fresh


# What stands on the key in the player's own layout, where there is a keyboard to ask.
static func _as_printed_on_it(event: InputEvent) -> String:
	if event is InputEventKey and (event as InputEventKey).physical_keycode != KEY_NONE:
		var key: InputEventKey = event
		var label := KEY_NONE if DisplayServer.get_name() == "headless" else DisplayServer.keyboard_get_label_from_physical(key.physical_keycode)
		return OS.get_keycode_string((label if label != KEY_NONE else key.physical_keycode) | key.get_modifiers_mask())
	return name_of(event).get_slice(": ", 1)


static func _listen_to_everything() -> void:
	var tree: SceneTree = Engine.get_main_loop()
	if not tree.root.window_input.is_connected(_on_any_input):
		tree.root.window_input.connect(_on_any_input)


static func _on_any_input(event: InputEvent) -> void:
	var is_button := event is InputEventKey or event is InputEventJoypadButton or event is InputEventMouseButton
	if not is_button or event.is_echo() or event is InputEventMouseButton and _is_wheel(event):
		return
	if event.is_pressed():
		_any_pressed = _frames_now()
	elif not Input.is_anything_pressed():
		_any_released = _frames_now()


static func _is_wheel(event: InputEventMouseButton) -> bool:
	return event.button_index >= MOUSE_BUTTON_WHEEL_UP and event.button_index <= MOUSE_BUTTON_WHEEL_RIGHT


static func _frames_now() -> Vector2i:
	return Vector2i(Engine.get_process_frames(), Engine.get_physics_frames())


static func _is_this_frame(then: Vector2i) -> bool:
	var now := _frames_now()
	return now.y == then.y if Engine.is_in_physics_frame() else now.x == then.x


static func _is_remembered(at: Dictionary[StringName, float], input: StringName, seconds: float) -> bool:
	var tree: SceneTree = Engine.get_main_loop()
	if not tree.process_frame.is_connected(_remember):
		tree.process_frame.connect(_remember)
	if not at.has(input):
		at[input] = -INF
	return _clock - at[input] <= seconds


# Before the nodes have their frame, so that they find what belongs to it.
static func _remember() -> void:
	var tree: SceneTree = Engine.get_main_loop()
	if tree.paused:
		return
	_clock += tree.root.get_process_delta_time()
	for input: StringName in _pressed_at:
		if just_pressed(input):
			_pressed_at[input] = _clock
	for input: StringName in _released_at:
		if just_released(input):
			_released_at[input] = _clock
