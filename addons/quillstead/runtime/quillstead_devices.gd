extends Node
## Watches what the player plays with: keyboard, mouse, gamepad or touch.
##
## One watcher stands under the root of the tree from the moment somebody first asks, and goes on watching while the
## game is paused.

## The watcher's name under the root.
const NAME: StringName = &"QuillsteadDevices"

## The word for a keyboard.
const KEYBOARD: StringName = &"keyboard"
## The word for a mouse.
const MOUSE: StringName = &"mouse"
## The word for a gamepad.
const GAMEPAD: StringName = &"gamepad"
## The word for a touch screen.
const TOUCH: StringName = &"touch"

## A stick or trigger pushed less than this counts as one at rest, which is never quite in the middle.
const LEAST_PUSH: float = 0.5

## The word for the device used last.
var device: StringName = TOUCH if OS.has_feature("mobile") else KEYBOARD

# The watcher, from its making on: it stands in the tree only some time later.
static var _made: Node = null


## The word for the device the player used last. Until anything has been used it is touch on a phone or tablet, and
## the keyboard elsewhere.
static func last_used(tree: SceneTree) -> StringName:
	var watcher := _watcher_of(tree)
	return watcher.get(&"device") if watcher != null else KEYBOARD


## The word for the device that [param event] comes from. Empty when it says nothing about what the player holds.
static func device_of(event: InputEvent) -> StringName:
	# A touch screen sends a mouse's events beside its own, and the other way round.
	if event.device == InputEvent.DEVICE_ID_EMULATION:
		return &""
	if event is InputEventKey:
		return KEYBOARD
	if event is InputEventMouseMotion:
		return MOUSE if (event as InputEventMouseMotion).relative != Vector2.ZERO else &""
	if event is InputEventMouseButton:
		return MOUSE
	if event is InputEventJoypadMotion:
		return GAMEPAD if absf((event as InputEventJoypadMotion).axis_value) >= LEAST_PUSH else &""
	if event is InputEventJoypadButton:
		return GAMEPAD
	if event is InputEventScreenTouch or event is InputEventScreenDrag:
		return TOUCH
	return &""


static func _watcher_of(tree: SceneTree) -> Node:
	if tree == null:
		return null
	var standing := tree.root.get_node_or_null(NodePath(NAME))
	if standing != null:
		return standing
	if not is_instance_valid(_made) or _made.is_inside_tree() or _made.is_queued_for_deletion():
		_made = new()
		# The root is busy while a scene is being put under it, which is when the first machine asks.
		tree.root.add_child.call_deferred(_made)
	return _made


func _init() -> void:
	name = NAME
	process_mode = Node.PROCESS_MODE_ALWAYS


func _input(event: InputEvent) -> void:
	var used := device_of(event)
	if not used.is_empty():
		device = used
