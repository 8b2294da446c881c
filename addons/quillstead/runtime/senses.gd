@tool
extends Node
## A Perception node: what a character sees, hears and remembers. It goes right under the character, in 2D or in 3D.
##
## It looks for the nodes of one group, several times a second. What comes into its view, near enough and with no wall in
## between, becomes its [member target]: [signal spotted] tells. While the target is out of sight it is remembered for a while,
## and [signal seen_again] tells when it comes back; after that it is given up, and [signal lost] tells. Movers such as Chase
## and Search Last Known ask this node what to do with, and Look For Target turns its signals into events.
## [br][br]
## A character in 3D looks along its own forward direction, -z. One in 2D looks along its own x axis, so it turns with its
## rotation; seen from the side, it looks to the side that the movers turned it to, which they note in the metadata
## [code]quillstead_faces_left[/code].
## [br][br]
## Distances are metres in 3D and pixels in 2D. One that was never set is worth so many metres, at 32 pixels to a metre.
## [br][br]
## However many of these there are, they cast no more rays in one physics frame than [code]quillstead_sight.gd[/code] allows,
## and take turns.

## Something came into view. [param node] is now the [member target].
signal spotted(node: Node)
## The target came back into view before it was given up.
signal seen_again(node: Node)
## The target was out of sight for too long, or is gone, in which case [param node] is null.
signal lost(node: Node)
## A noise was heard at a place.
signal heard(place: Variant)

const Sight := preload("res://addons/quillstead/runtime/quillstead_sight.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const HEARING_GROUP: StringName = &"quillstead_hearing"
const SIDE_ON: StringName = &"quillstead_side_on"
const FACES_LEFT: StringName = &"quillstead_faces_left"

const PIXELS_PER_METRE: float = 32.0
## What a distance is worth that was never set, in metres.
const USUAL: Dictionary[StringName, float] = {&"see_range": 12.0, &"hearing_range": 20.0}
const NOT_SET: float = -1.0

## It has nothing to do in any slice of time.
const NEVER: int = 0x7FFF_FFFF_FFFF_FFFF

# What the library's part of a look is told, and what it answers.
const LOOK: StringName = &"perception_look"
enum Row { BODY, RAY, RANGE, WIDEST, BLOCKED_BY, EYE_OFFSET, POINTS, NOW, OTHERS, RAYS_LEFT, POINT, AT, HIT, SEEN, PLACE, DISTANCE, RAYS_CAST, SPACE, SIZE }
enum Answer { OVER, NO_RAYS_LEFT, CAST_A_RAY, WHO_ELSE }
# Below any cosine.
const ALL_AROUND: float = -2.0

@export_group("Sight")
## The group of the things it looks for, such as [code]player[/code].
@export var watch_group: StringName = &"player"
## How far it sees, in metres in 3D and pixels in 2D. Never set, it is 12 metres or 384 pixels. Zero is blind.
@export_range(0.0, 100.0, 0.1, "or_greater", "hide_slider") var see_range: float = NOT_SET:
	get:
		return see_range if see_range >= 0.0 else _usual(&"see_range")
	set(value):
		see_range = value
		_is_set[&"see_range"] = value >= 0.0
		_is_prepared = false
## How wide it sees, from one side to the other. 360 sees all around.
@export_range(0.0, 360.0, 1.0, "suffix:°") var view_angle: float = 120.0:
	set(value):
		view_angle = value
		_is_prepared = false
## The physics layers that hide things from it: those of the walls. The character itself and what it looks at never do, so one
## layer for everything works too, though then other characters on it stand in the way.
@export_flags_3d_physics var blocked_by: int = 1:
	set(value):
		blocked_by = value
		_is_prepared = false
## Moves its eye, in the character's own directions. Otherwise the eye is near the top of the character's shapes in 3D and in the
## middle of them in 2D.
@export var eye_offset: Vector3 = Vector3.ZERO:
	set(value):
		eye_offset = value
		_is_prepared = false
## How many points of something big are tried before it counts as hidden: its middle, then its edges to either side and, in 3D,
## its top and its bottom. Each costs a ray.
@export_range(1, 5) var points_on_target: int = 3:
	set(value):
		points_on_target = value
		_is_prepared = false

@export_group("Noticing")
## How long something has to be in view before it is noticed, at the very end of the range; half as far takes half as long. Zero
## notices at once.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var seconds_to_notice: float = 0.0
## How long it takes to calm down after it had almost noticed something. Somebody who shows up again sooner is noticed sooner.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var seconds_to_relent: float = 2.0

@export_group("Memory")
## How long a target is remembered that cannot be seen any more. Then it is given up.
@export_range(0.0, 60.0, 0.01, "or_greater", "suffix:s", "hide_slider") var remember_for: float = 5.0:
	set(value):
		remember_for = value
		_plan()

@export_group("Hearing")
## How far it hears, in metres in 3D and pixels in 2D. Never set, it is 20 metres or 640 pixels. Zero is deaf.
@export_range(0.0, 100.0, 0.1, "or_greater", "hide_slider") var hearing_range: float = NOT_SET:
	get:
		return hearing_range if hearing_range >= 0.0 else _usual(&"hearing_range")
	set(value):
		hearing_range = value
		_is_set[&"hearing_range"] = value >= 0.0

@export_group("Looking")
## How often it looks.
@export_range(0.0, 2.0, 0.01, "or_greater", "suffix:s", "hide_slider") var look_every: float = 0.1:
	set(value):
		look_every = value
		_look_at = minf(_look_at, _time() + value)
		_plan()

## What it is dealing with: something it sees or remembers, or was told of. Null for nothing. Setting it is as good as
## [method notice].
var target: Node:
	get:
		return target if is_instance_valid(target) else null
	set(value):
		if value == null:
			_mind(0)
		elif value.get_instance_id() != _target_id:
			_mind(value.get_instance_id())
			_saw_it = _sees
			_unseen_since = _time()
		target = value
		_plan()
## Whether the target is in view now.
var can_see_target: bool:
	get:
		return _sees and not _is_target_gone()
	set(value):
		if value:
			_saw_it = true
		elif _sees:
			_unseen_since = _time()
		_sees = value
		_plan()
## Where the target was when it was last seen or told of: a Vector2 or a Vector3. It stays when the target is given up. Null
## before there was any.
var last_known_position: Variant = null
## Where a target went out of sight the last time. Null when none ever did.
var last_lost_position: Variant = null
## Where the last noise was. Null when none was heard.
var last_heard_position: Variant = null
## How close it is to noticing something that is in view, from 0 to 1: for a meter over its head.
var suspicion: float = 0.0

# The distances that were set, by name.
var _is_set: Dictionary[StringName, bool] = {}
# Movers read it.
var _target_id: int = 0
var _sees: bool = false
var _saw_it: bool = false
var _waits: bool = false
# By its own time: when it lost sight, when it looks again and when it did so last.
var _unseen_since: float = 0.0
var _look_at: float = 0.0
var _looked_at: float = 0.0
# How far its own time is behind the shared clock, and where that stood when its time stopped; below zero while it goes on.
var _behind: float = 0.0
var _stopped_at: float = 0.0
# When it is woken.
var _slice: int = NEVER
var _row: Array = []
var _is_prepared: bool = false
# For the body it was made for, so that the bodies of the character itself are never in its way.
var _ray: RefCounted
var _ray_from: int = 0

static var _made: int = 0


func _init() -> void:
	if Engine.is_editor_hint():
		return
	add_to_group(HEARING_GROUP)
	# Each starts at another point of its interval, so that they do not all look in the same frame.
	_made += 1
	_stopped_at = Sight.now
	_looked_at = Sight.now
	_unseen_since = Sight.now
	_look_at = Sight.now + look_every * fposmod(_made * 0.618034, 1.0)


func _enter_tree() -> void:
	if Engine.is_editor_hint():
		update_configuration_warnings()
	elif not _has_a_place():
		MakerWarnings.once_for(self, "no place", _no_place_words())


func _notification(what: int) -> void:
	if Engine.is_editor_hint():
		return
	match what:
		NOTIFICATION_ENTER_TREE:
			_is_prepared = false
			Sight.enter(get_tree())
			if can_process():
				_go_on()
		NOTIFICATION_EXIT_TREE:
			_stop()
			Sight.leave()
		NOTIFICATION_PAUSED:
			_stop()
		NOTIFICATION_UNPAUSED:
			_go_on()


func _get_configuration_warnings() -> PackedStringArray:
	return [] if _has_a_place() else PackedStringArray([_no_place_words()])


func _validate_property(property: Dictionary) -> void:
	if property["name"] == &"blocked_by" and get_parent() is Node2D:
		property["hint"] = PROPERTY_HINT_LAYERS_2D_PHYSICS
	# A scene keeps what somebody set: the usual distance is another one on the other side.
	if USUAL.has(property["name"]) and not _is_set.get(property["name"], false):
		property["usage"] &= ~PROPERTY_USAGE_STORAGE


func _property_can_revert(property: StringName) -> bool:
	return USUAL.has(property)


func _property_get_revert(property: StringName) -> Variant:
	return _usual(property) if USUAL.has(property) else null


## Whether it is dealing with something, in view or remembered.
func has_a_target() -> bool:
	return target != null


## Whether it saw something that is out of sight now. It stays so after that was given up, until something else comes into view.
func has_lost_it() -> bool:
	return _saw_it and not can_see_target


## For how many seconds what it saw has been out of sight; below zero when it has lost nothing.
func out_of_sight_for() -> float:
	if not has_lost_it():
		return -1.0
	return 0.0 if _sees else _time() - _unseen_since


## Looks at once, without waiting for the next look. When this physics frame has no rays left, it looks in the next one.
func look_now() -> void:
	if Engine.is_editor_hint() or not is_inside_tree():
		return
	if not _waits and (not Sight.may_ask_now(get_parent() is Node3D) or not _look()):
		_waits = true
		Sight.wait_for_turn(self)


## Takes [param node] for its target without having seen it, as when an ally tells of it.
func notice(node: Node) -> void:
	if node == null or node == get_parent():
		return
	if node != target:
		_sees = false
		target = node
	if not _sees:
		_unseen_since = _time()
		_remember_place_of(node)


## Tells it of a noise at [param place], a Vector2 or a Vector3. It does not know what made it.
func hear(place: Variant) -> void:
	last_heard_position = place
	heard.emit(place)


## Called by the shared list of those who wait to look. False when there were too few rays left for it.
func take_turn() -> bool:
	if not _waits or not is_inside_tree() or not can_process():
		_waits = false
		return true
	return _look()


## Called by the shared clock, which stands at [param now], once something of it may be due. Answers in which slice of time it
## is to be woken again. [param may_look] tells that nobody waits for rays.
func wake(slice: int, now: float, may_look: bool) -> int:
	if _slice > slice:
		return NEVER
	_slice = NEVER
	var time := now - _behind
	var looks := time + Sight.ON_TIME >= _look_at
	if looks:
		_look_at = maxf(_look_at + look_every, time)
	if _target_id != 0 and not _sees and time + Sight.ON_TIME >= _unseen_since + remember_for:
		_give_up()
		if _stopped_at >= 0.0:
			return NEVER
	var at := _look_at
	if _target_id != 0 and not _sees:
		at = minf(at, _unseen_since + remember_for)
	var next := int(clampf((at + _behind - Sight.ROUNDING) * Sight.SLICES_A_SECOND, slice, slice + Sight.SLICES - 1))
	_slice = next
	if looks and not _waits and not (may_look and _look()):
		_waits = true
		Sight.wait_for_turn(self)
	return next


## Called by the shared clock when a target has been freed.
func lose_the_gone() -> void:
	if _is_target_gone():
		_lose_sight()
		_give_up()


# Its own time, which stands still while it is paused.
func _time() -> float:
	return (Sight.now if _stopped_at < 0.0 else _stopped_at) - _behind


func _go_on() -> void:
	if _stopped_at < 0.0:
		return
	_behind += Sight.now - _stopped_at
	_stopped_at = -1.0
	if _target_id != 0:
		Sight.mind(_target_id, self)
	_plan()


func _stop() -> void:
	if _stopped_at >= 0.0:
		return
	_stopped_at = Sight.now
	_slice = NEVER
	if _target_id != 0:
		Sight.mind_no_more(_target_id, self)


func _mind(id: int) -> void:
	if _stopped_at < 0.0:
		if _target_id != 0:
			Sight.mind_no_more(_target_id, self)
		if id != 0:
			Sight.mind(id, self)
	_target_id = id


# Has itself woken for what comes next. When that is put off later on, it is woken in vain.
func _plan() -> void:
	if _stopped_at >= 0.0:
		return
	var at := _look_at
	if _target_id != 0 and not _sees:
		at = minf(at, _unseen_since + remember_for)
	var slice := Sight.slice_at(at + _behind)
	if slice < _slice:
		_slice = slice
		Sight.wake_in(slice, self)


func _usual(distance: StringName) -> float:
	return USUAL[distance] * _metre()


func _metre() -> float:
	return PIXELS_PER_METRE if get_parent() is CanvasItem else 1.0


func _has_a_place() -> bool:
	return get_parent() is Node2D or get_parent() is Node3D


func _no_place_words() -> String:
	var above := get_parent()
	return "Perception %s sits under %s, which has no place in the world, so it neither sees nor hears. Put it right under the character, a 2D or 3D node." % [
		name, above.name if above != null else &"nothing"]


func _is_target_gone() -> bool:
	return _target_id != 0 and not is_instance_id_valid(_target_id)


func _lose_sight() -> void:
	if _sees:
		_sees = false
		_unseen_since = _time()
		last_lost_position = last_known_position
		_plan()


func _give_up() -> void:
	var node := target
	target = null
	lost.emit(node)


func _remember_place_of(node: Node) -> void:
	if node.is_inside_tree() and (node is Node2D or node is Node3D):
		last_known_position = node.get(&"global_position")


# One look. False, and nothing changed, when the rays of this frame ran out before it was over. Whoever listens to the signals
# may do anything, so they come last.
func _look() -> bool:
	if not _is_prepared:
		_prepare()
	var now := target
	var row := _row
	var seen: Node = null
	var others: Variant = null if now != null else Sight.members_of(watch_group, get_tree())
	if row[Row.RANGE] > 0.0 and (now != null or not (others as Array).is_empty()):
		var left := Sight.rays_left()
		row[Row.NOW] = now
		row[Row.OTHERS] = others
		row[Row.RAYS_LEFT] = left
		row[Row.POINT] = -1
		var answer: int = SCMachineBase.native_helper(LOOK, row)
		while answer >= Answer.CAST_A_RAY:
			if answer == Answer.WHO_ELSE:
				row[Row.OTHERS] = Sight.members_of(watch_group, get_tree())
			else:
				var hit := _cast(row[Row.SPACE])
				if hit == null and row[Row.AT] < 0:
					row[Row.SEEN] = now
					answer = Answer.OVER
					break
				row[Row.HIT] = hit
			answer = SCMachineBase.native_helper(LOOK, row)
		if row[Row.RAYS_CAST] > 0:
			Sight.count_rays(row[Row.RAYS_CAST])
		# One that would need more than all the rays of a frame would wait for ever.
		if answer == Answer.NO_RAYS_LEFT and left < maxi(Sight.rays_per_frame, 1):
			return false
		seen = row[Row.SEEN]
	_waits = false
	var time := _time()
	var since := time - _looked_at
	_looked_at = time
	if seen != null and seen == now and _sees:
		suspicion = 0.0
		last_known_position = row[Row.PLACE]
	else:
		_take_in(seen, row[Row.DISTANCE], since)
	return true


# What its ray hits, null for nothing.
func _cast(space: Object) -> Object:
	var in_space := space as PhysicsDirectSpaceState3D
	if in_space != null:
		return in_space.intersect_ray(_ray).get(&"collider")
	return (space as PhysicsDirectSpaceState2D).intersect_ray(_ray).get(&"collider")


func _take_in(seen: Node, distance: float, since: float) -> void:
	if seen == null:
		_lose_sight()
		if suspicion > 0.0:
			suspicion = maxf(suspicion - since / seconds_to_relent, 0.0) if seconds_to_relent > 0.0 else 0.0
		return
	var is_known := seen == target
	if not is_known and not _has_noticed(distance, since):
		_lose_sight()
		return
	suspicion = 0.0
	var was_in_view := is_known and _sees
	var was_seen := is_known and _saw_it
	if not is_known:
		_lose_sight()
	_remember_place_of(seen)
	if was_in_view:
		return
	target = seen
	can_see_target = true
	if was_seen:
		seen_again.emit(seen)
	else:
		spotted.emit(seen)


func _has_noticed(distance: float, since: float) -> bool:
	var needed := seconds_to_notice * clampf(distance / see_range, 0.0, 1.0)
	if needed > 0.0:
		suspicion = minf(suspicion + since / needed, 1.0)
		return suspicion >= 1.0
	return true


# Puts down what a look depends on. Without a place to look from it has no range.
func _prepare() -> void:
	_is_prepared = true
	var body := get_parent()
	_row.resize(Row.SIZE)
	_row[Row.RANGE] = see_range if _has_a_place() else 0.0
	_row[Row.BODY] = body
	_row[Row.DISTANCE] = 0.0
	_row[Row.RAYS_CAST] = 0
	if not _has_a_place():
		return
	if body.get_instance_id() != _ray_from:
		_make_ray(body)
	_row[Row.RAY] = _ray
	_row[Row.WIDEST] = ALL_AROUND if view_angle >= 360.0 else cos(deg_to_rad(maxf(view_angle, 0.0)) * 0.5)
	_row[Row.BLOCKED_BY] = blocked_by
	_row[Row.EYE_OFFSET] = eye_offset
	_row[Row.POINTS] = points_on_target


func _make_ray(body: Node) -> void:
	_ray_from = body.get_instance_id()
	var own: Array[RID] = []
	_gather_bodies(body, own)
	if body is Node3D:
		var in_space := PhysicsRayQueryParameters3D.new()
		in_space.exclude = own
		_ray = in_space
	else:
		var flat := PhysicsRayQueryParameters2D.new()
		flat.exclude = own
		_ray = flat


func _gather_bodies(node: Node, own: Array[RID]) -> void:
	if node is CollisionObject2D or node is CollisionObject3D:
		own.append(node.get_rid())
	for child in node.get_children():
		_gather_bodies(child, own)
