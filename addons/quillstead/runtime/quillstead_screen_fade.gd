extends CanvasLayer
## Covers the whole screen with a colour, little by little, and uncovers it again. It belongs to no scene, goes on while the game is
## paused, and counts real seconds. There is one at most: [method of]. Uncovered, it frees itself.

## What the node under the root is called.
const NAME: StringName = &"QuillSteadScreenFade"
# Beyond the layer that the engine shows windows within the game on.
const ABOVE_ALL: int = 2000

## How much is covered, from 0 to 1.
var share: float = 0.0:
	set(value):
		share = value
		_cover.modulate.a = value

# The one of the game, 0 for none.
static var _made: int = 0

var _cover: ColorRect = ColorRect.new()
var _tween: Tween


## The one of the game, made when there is none.
static func of(tree: SceneTree) -> Node:
	var found := there_is()
	if found == null:
		found = new()
		_made = found.get_instance_id()
		tree.root.add_child(found)
	return found


## The one of the game; null when nothing is covered.
static func there_is() -> Node:
	var found: Node = instance_from_id(_made) if is_instance_id_valid(_made) else null
	return found if found != null and not found.is_queued_for_deletion() else null


func _init() -> void:
	name = NAME
	layer = ABOVE_ALL
	process_mode = PROCESS_MODE_ALWAYS
	_cover.name = "Cover"
	_cover.color = Color.BLACK
	_cover.modulate.a = 0.0
	_cover.mouse_filter = Control.MOUSE_FILTER_IGNORE
	_cover.set_anchors_preset(Control.PRESET_FULL_RECT)
	add_child(_cover)


## Covers or uncovers as much as [param wanted] in so many seconds, from wherever it is now.
func fade(wanted: float, seconds: float) -> void:
	if _tween != null:
		_tween.kill()
		_tween = null
	if seconds <= 0.0 or is_equal_approx(share, wanted):
		_come_to_rest(wanted)
		return
	_tween = create_tween().set_ignore_time_scale().set_pause_mode(Tween.TWEEN_PAUSE_PROCESS)
	_tween.tween_property(self, ^"share", wanted, seconds)
	_tween.tween_callback(_come_to_rest.bind(wanted))


## Whether it is where it was sent.
func is_at_rest() -> bool:
	return _tween == null


## Which colour it covers with.
func take_colour(colour: Color) -> void:
	_cover.color = colour


func _come_to_rest(at: float) -> void:
	_tween = null
	share = at
	if at <= 0.0:
		queue_free()
