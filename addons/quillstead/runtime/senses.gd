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

## The eye sits so far up from the middle of a 3D character to its top.
const EYE_UP: float = 0.8
## How far from the middle of a target to its edge the other points lie that are tried.
const NEAR_THE_EDGE: float = 0.85
## What reaches no farther than this from its middle, in metres, is small: one point tells whether it can be seen.
const SMALL: float = 0.3
## Nearer than this, in metres, there is no direction to look in.
const TOUCHING: float = 0.01

enum View { HIDDEN, CLEAR, NO_RAYS_LEFT }

@export_group("Sight")
## The group of the things it looks for, such as [code]player[/code].
@export var watch_group: StringName = &"player"
## How far it sees, in metres in 3D and pixels in 2D. Never set, it is 12 metres or 384 pixels. Zero is blind.
@export_range(0.0, 100.0, 0.1, "or_greater", "hide_slider") var see_range: float = NOT_SET:
	get:
		return see_range if see_range >= 0.0 else _usual(&"see_range")
## How wide it sees, from one side to the other. 360 sees all around.
@export_range(0.0, 360.0, 1.0, "suffix:°") var view_angle: float = 120.0:
	set(value):
		view_angle = value
		_widest = cos(deg_to_rad(clampf(value, 0.0, 360.0)) * 0.5)
## The physics layers that hide things from it: those of the walls. The character itself and what it looks at never do, so one
## layer for everything works too, though then other characters on it stand in the way.
@export_flags_3d_physics var blocked_by: int = 1
## Moves its eye, in the character's own directions. Otherwise the eye is near the top of the character's shapes in 3D and in the
## middle of them in 2D.
@export var eye_offset: Vector3 = Vector3.ZERO
## How many points of something big are tried before it counts as hidden: its middle, then its edges to either side and, in 3D,
## its top and its bottom. Each costs a ray.
@export_range(1, 5) var points_on_target: int = 3

@export_group("Noticing")
## How long something has to be in view before it is noticed, at the very end of the range; half as far takes half as long. Zero
## notices at once.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var seconds_to_notice: float = 0.0
## How long it takes to calm down after it had almost noticed something. Somebody who shows up again sooner is noticed sooner.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var seconds_to_relent: float = 2.0

@export_group("Memory")
## How long a target is remembered that cannot be seen any more. Then it is given up.
@export_range(0.0, 60.0, 0.01, "or_greater", "suffix:s", "hide_slider") var remember_for: float = 5.0

@export_group("Hearing")
## How far it hears, in metres in 3D and pixels in 2D. Never set, it is 20 metres or 640 pixels. Zero is deaf.
@export_range(0.0, 100.0, 0.1, "or_greater", "hide_slider") var hearing_range: float = NOT_SET:
	get:
		return hearing_range if hearing_range >= 0.0 else _usual(&"hearing_range")

@export_group("Looking")
## How often it looks.
@export_range(0.0, 2.0, 0.01, "or_greater", "suffix:s", "hide_slider") var look_every: float = 0.1:
	set(value):
		look_every = value
		_until_look = minf(_until_look, value)

## What it is dealing with: something it sees or remembers, or was told of. Null for nothing. Setting it is as good as
## [method notice].
var target: Node:
	get:
		return target if is_instance_valid(target) else null
	set(value):
		if value == null:
			_target_id = 0
		elif value.get_instance_id() != _target_id:
			_target_id = value.get_instance_id()
			_saw_it = _sees
			_unseen_for = 0.0
		target = value
## Whether the target is in view now.
var can_see_target: bool:
	get:
		return _sees and not _is_target_gone()
	set(value):
		if value:
			_saw_it = true
			_unseen_for = 0.0
		_sees = value
## Where the target was when it was last seen or told of: a Vector2 or a Vector3. It stays when the target is given up. Null
## before there was any.
var last_known_position: Variant = null
## Where a target went out of sight the last time. Null when none ever did.
var last_lost_position: Variant = null
## Where the last noise was. Null when none was heard.
var last_heard_position: Variant = null
## How close it is to noticing something that is in view, from 0 to 1: for a meter over its head.
var suspicion: float = 0.0

var _target_id: int = 0
var _sees: bool = false
var _saw_it: bool = false
var _unseen_for: float = 0.0
var _until_look: float = 0.0
var _since_look: float = 0.0
var _waits: bool = false
var _widest: float = cos(deg_to_rad(60.0))
# Where it looks from and to, read anew for each look. In 2D z is 0.
var _in_3d: bool = false
var _middle: Vector3
var _eye: Vector3
var _forward: Vector3
var _has_aimed: bool = false
# One of the two is made at the first look.
var _ray_2d: PhysicsRayQueryParameters2D
var _ray_3d: PhysicsRayQueryParameters3D
var _ray_from: int = 0

static var _made: int = 0


func _init() -> void:
	if Engine.is_editor_hint():
		return
	add_to_group(HEARING_GROUP)
	# Each starts at another point of its interval, so that they do not all look in the same frame.
	_made += 1
	_until_look = look_every * fposmod(_made * 0.618034, 1.0)


func _enter_tree() -> void:
	if Engine.is_editor_hint():
		update_configuration_warnings()
	elif not _has_a_place():
		MakerWarnings.once_for(self, "no place", _no_place_words())


func _ready() -> void:
	if Engine.is_editor_hint():
		set_physics_process(false)


func _physics_process(delta: float) -> void:
	_until_look -= delta
	_since_look += delta
	if not _sees:
		_unseen_for += delta
	if _until_look <= 0.0:
		_until_look = maxf(_until_look + look_every, 0.0)
		if not _waits:
			_waits = true
			Sight.wait_for_turn(self)
	if _target_id != 0:
		_keep_in_mind()
	if _waits:
		Sight.serve()


func _get_configuration_warnings() -> PackedStringArray:
	return [] if _has_a_place() else PackedStringArray([_no_place_words()])


func _validate_property(property: Dictionary) -> void:
	if property["name"] == &"blocked_by" and get_parent() is Node2D:
		property["hint"] = PROPERTY_HINT_LAYERS_2D_PHYSICS


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
	return _unseen_for if has_lost_it() else -1.0


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
		_unseen_for = 0.0
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


func _keep_in_mind() -> void:
	if _is_target_gone():
		_lose_sight()
		_give_up()
	elif not _sees and _unseen_for >= remember_for:
		_give_up()


func _lose_sight() -> void:
	if _sees:
		_sees = false
		_unseen_for = 0.0
		last_lost_position = last_known_position


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
	var now := target
	var others := Sight.members_of(watch_group, get_tree())
	var whole_frame := Sight.is_untouched()
	var nearest: Node = null
	var near: float = see_range
	var at_end := false
	if (now != null or not others.is_empty()) and near > 0.0 and _place_myself():
		if now != null:
			match _view_of(now, near):
				View.CLEAR:
					nearest = now
				View.NO_RAYS_LEFT:
					at_end = true
		if nearest == null and not at_end:
			for node: Variant in others:
				if not is_instance_valid(node) or node == now:
					continue
				match _view_of(node, near):
					View.CLEAR:
						nearest = node
						near = _middle.distance_to(_middle_of(node))
					View.NO_RAYS_LEFT:
						at_end = true
						break
		# One that would need more than all the rays of a frame would wait for ever.
		if at_end and not whole_frame:
			return false
	_waits = false
	var since := _since_look
	_since_look = 0.0
	_take_in(nearest, near, since)
	return true


func _take_in(seen: Node, distance: float, since: float) -> void:
	if seen == null:
		_lose_sight()
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
	target = seen
	can_see_target = true
	_remember_place_of(seen)
	if was_in_view:
		return
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


# False when there is no place to look from.
func _place_myself() -> bool:
	var body := get_parent()
	if not _has_a_place() or not body.is_inside_tree():
		return false
	if body.get_instance_id() != _ray_from:
		_make_ray(body)
	_in_3d = body is Node3D
	_middle = _middle_of(body)
	_has_aimed = false
	return _middle.is_finite()


# Only once somebody is near enough.
func _aim() -> void:
	_has_aimed = true
	var body := get_parent()
	if _in_3d:
		var basis: Basis = (body as Node3D).global_basis
		_forward = -basis.z.normalized()
		_eye = _middle + basis * (Vector3.UP * Sight.outline_of(body).size.y * 0.5 * EYE_UP + eye_offset)
		return
	var space: Transform2D = (body as Node2D).global_transform
	var way := space.x.normalized()
	if body.has_meta(FACES_LEFT) or body.has_meta(SIDE_ON):
		way = Vector2.LEFT if body.get_meta(FACES_LEFT, false) else Vector2.RIGHT
	_forward = Vector3(way.x, way.y, 0.0)
	var aside := space.basis_xform(Vector2(eye_offset.x, eye_offset.y))
	_eye = _middle + Vector3(aside.x, aside.y, 0.0)


func _middle_of(node: Node) -> Vector3:
	var middle := Sight.outline_of(node).get_center()
	if node is Node3D:
		return (node as Node3D).global_transform * middle
	var flat := (node as Node2D).global_transform * Vector2(middle.x, middle.y)
	return Vector3(flat.x, flat.y, 0.0)


func _view_of(node: Node, within: float) -> View:
	if node == get_parent() or not _is_there(node):
		return View.HIDDEN
	var middle := _middle_of(node)
	var way := middle - _middle
	var distance := way.length()
	# What is no number is not below any.
	if not distance <= within:
		return View.HIDDEN
	if distance <= TOUCHING * _metre():
		return View.CLEAR
	if not _has_aimed:
		_aim()
	if view_angle < 360.0 and _forward.dot(way) < _widest * distance:
		return View.HIDDEN
	return _view_past_walls(node, middle)


# In the same world and shown.
func _is_there(node: Node) -> bool:
	if not node.is_inside_tree():
		return false
	if _in_3d:
		var in_space := node as Node3D
		return in_space != null and in_space.is_visible_in_tree() and in_space.get_world_3d() == (get_parent() as Node3D).get_world_3d()
	var flat := node as Node2D
	return flat != null and flat.is_visible_in_tree() and flat.get_world_2d() == (get_parent() as Node2D).get_world_2d()


func _view_past_walls(node: Node, middle: Vector3) -> View:
	if blocked_by == 0:
		return View.CLEAR
	var half := Sight.outline_of(node).size * 0.5
	var is_small: bool = half[half.max_axis_index()] <= SMALL * _metre()
	var count := 1 if is_small else clampi(points_on_target, 1, 5 if _in_3d else 3)
	for number in count:
		if Sight.rays_left() <= 0:
			return View.NO_RAYS_LEFT
		if _reaches(node, middle if number == 0 else _point_at_edge(node, number, half, middle)):
			return View.CLEAR
	return View.HIDDEN


# To either side as it is seen from the eye, then up and down. Each lies within a ball that fills the box around its shapes.
func _point_at_edge(node: Node, number: int, half: Vector3, middle: Vector3) -> Vector3:
	var way := middle - _eye
	var side := Vector3(-way.z, 0.0, way.x) if _in_3d else Vector3(-way.y, way.x, 0.0)
	var toward := Vector3.UP if number >= 3 else side.normalized()
	if number % 2 == 0:
		toward = -toward
	if _in_3d:
		var basis := (node as Node3D).global_basis
		var own := (basis.orthonormalized().inverse() * toward) * half * NEAR_THE_EDGE if not is_zero_approx(basis.determinant()) else Vector3.ZERO
		return middle + basis * own
	var turned := Vector2(toward.x, toward.y).rotated(-(node as Node2D).global_rotation) * Vector2(half.x, half.y) * NEAR_THE_EDGE
	var flat := (node as Node2D).global_transform.basis_xform(turned)
	return middle + Vector3(flat.x, flat.y, 0.0)


# Whether nothing but the node itself stands between the eye and a point on it.
func _reaches(node: Node, point: Vector3) -> bool:
	var hit: Dictionary
	Sight.count_ray()
	if _in_3d:
		var space := (get_parent() as Node3D).get_world_3d().direct_space_state
		if space == null:
			return false
		_ray_3d.collision_mask = blocked_by
		_ray_3d.from = _eye
		_ray_3d.to = point
		hit = space.intersect_ray(_ray_3d)
	else:
		var flat := (get_parent() as Node2D).get_world_2d().direct_space_state
		if flat == null:
			return false
		_ray_2d.collision_mask = blocked_by
		_ray_2d.from = Vector2(_eye.x, _eye.y)
		_ray_2d.to = Vector2(point.x, point.y)
		hit = flat.intersect_ray(_ray_2d)
	return hit.is_empty() or _is_part_of(hit[&"collider"] as Node, node)


# A body belongs to what it carries, such as a hurt box that is looked for, unless it is the ground that everything stands on.
func _is_part_of(collider: Node, node: Node) -> bool:
	if collider == null or collider == node or node.is_ancestor_of(collider):
		return true
	return (collider is CharacterBody2D or collider is CharacterBody3D) and collider.is_ancestor_of(node)


# The bodies of the character itself are never in its way.
func _make_ray(body: Node) -> void:
	_ray_from = body.get_instance_id()
	var own: Array[RID] = []
	_gather_bodies(body, own)
	if body is Node3D:
		_ray_3d = PhysicsRayQueryParameters3D.new()
		_ray_3d.exclude = own
	else:
		_ray_2d = PhysicsRayQueryParameters2D.new()
		_ray_2d.exclude = own


func _gather_bodies(node: Node, own: Array[RID]) -> void:
	if node is CollisionObject2D or node is CollisionObject3D:
		own.append(node.get_rid())
	for child in node.get_children():
		_gather_bodies(child, own)
