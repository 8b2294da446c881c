@tool
class_name SCHitBox
extends Node
## What hurts whatever it touches: the blade of a swing, a bullet, spikes, an enemy that is better not touched.
##
## Its script sits on an [Area2D] or an [Area3D], or it is a plain node right under one. Under any other 2D or 3D node it makes
## itself an area from [member shape]. Whatever that area touches is hit if it has an [SCHurtBox] or is one, but never the attacker.
## [br][br]
## What it touches is settled by the collision mask of the area: it has to cover the layers of the bodies, or of the areas with
## a Hurt Box, that it is to hit.
## [br][br]
## It hits in the physics frame, outside the engine's own signals, so that whoever hears of a hit may add and remove what they
## like.

## It has hurt something: the node that the Hurt Box belongs to, null if that is gone by now.
signal hit(node: Node)

const HurtBox := preload("res://addons/quillstead/runtime/hurt_box.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const EVERY_LAYER: int = 0xFFFFFFFF
## The engine tells of what an area touches up to two physics frames after it was put there, and for so long the world is asked.
const FRAMES_TO_ASK: int = 3
## As many as one question answers.
const MOST_AT_ONCE: int = 32
## And as often as it is asked again for more.
const MOST_QUESTIONS: int = 32
## Jolt Physics finds nothing with a shape of no size.
const LEAST_SIZE_2D: float = 0.5
const LEAST_SIZE_3D: float = 0.01
## A rest of time that is no time.
const OVER: float = 0.0001

## Off, it hits nothing. Switched on again, it may hit everything anew.
@export var on: bool = true:
	set(value):
		on = value
		_struck.clear()
		_begin()

@export_group("A Hit")
## How much health it takes, less the defence of what it hits, but at least 1.
@export_range(0.0, 1000.0, 0.1, "or_greater", "hide_slider") var damage: float = 1.0
## Fire, poison: what it hits may be weak against it or stand it well, by its Damage Types. Empty is plain damage.
@export var damage_type: StringName = &""
## How many times as fast as usual it knocks back what it hits.
@export_range(0.0, 10.0, 0.01, "or_greater", "hide_slider") var knockback: float = 1.0
## How many seconds it takes until it hits the same thing again that it still touches. Zero hits it once each time it comes in, and
## again whenever it is no longer safe from the last hit. Below zero hits it once, until this is switched off and on.
@export_range(-1.0, 10.0, 0.01, "or_greater", "suffix:s", "hide_slider") var hit_again: float = 0.0

@export_group("Who Is Hit")
## Only what is in this group is hit. Empty is anything with a Hurt Box.
@export var hurts_group: StringName = &""
## Whose hit it is: it is never hit by this, and what is hit is knocked back from there. Without one it is the character that this
## is a part of, else the area itself.
@export var attacker: Node

@export_group("Reach")
## The shape of its reach, in the middle of the area: a Shape2D or a Shape3D, by the side it is on. It may be left empty where
## there is a collision shape under the area.
@export_custom(PROPERTY_HINT_RESOURCE_TYPE, "Shape2D,Shape3D") var shape: Resource:
	set(value):
		shape = value
		if _is_begun:
			_make_shape.call_deferred()
		update_configuration_warnings()

# The area that feels, which is this node itself, the one above it, or one made for it.
var _area: Node
var _made_area: Node
var _made_shape: Node
var _is_begun: bool = false
# By id, what the area touches that can be hurt.
var _inside: Dictionary[int, bool] = {}
# By the id of a Hurt Box, what is not to be hit again yet.
var _struck: Dictionary[int, Blow] = {}
# For so many more frames the world is asked.
var _to_ask: int = 0


# One hit, for as long as it counts.
class Blow:
	extends RefCounted

	var wait: float = 0.0
	var safe_times_over: int = 0


func _enter_tree() -> void:
	if Engine.is_editor_hint():
		update_configuration_warnings()
		return
	_find_area()
	if _area == null:
		MakerWarnings.once_for(self, "no area", _missing())
		return
	_is_begun = true
	if _made_shape == null:
		_make_shape()
	for row: Array in _listening():
		_area.connect(row[0], row[1])
	_begin()


func _ready() -> void:
	_plan()


func _exit_tree() -> void:
	_is_begun = false
	_inside.clear()
	_struck.clear()
	if not is_instance_valid(_area):
		_area = null
		return
	for row: Array in _listening():
		if _area.is_connected(row[0], row[1]):
			_area.disconnect(row[0], row[1])
	if _area != self:
		_drop(_made_shape)
		_drop(_made_area)
		_made_shape = null
		_made_area = null
	_area = null


func _physics_process(delta: float) -> void:
	for blow: Blow in _struck.values():
		blow.wait -= delta
	var touched := _touched()
	if _to_ask > 0:
		_to_ask -= 1
	else:
		_forget_what_left(touched)
	_plan()
	_hit_all(touched)


func _get_configuration_warnings() -> PackedStringArray:
	var missing := _missing() if is_inside_tree() else ""
	return [] if missing.is_empty() else PackedStringArray([missing])


## Hits what it touches at this moment. It does so by itself in every physics frame; this is for whoever cannot wait for the next.
func strike() -> void:
	if is_inside_tree() and _area != null and not Engine.is_editor_hint():
		_hit_all(_touched(true))


## Whose hit it is: [member attacker], or who it is without one. Null for none.
func whose() -> Node:
	if is_instance_valid(attacker):
		return attacker
	var at: Node = self
	while at != null:
		if at is CharacterBody2D or at is CharacterBody3D or at is RigidBody2D or at is RigidBody3D or (at != self and _hurt_box_under(at) != null):
			return at
		at = at.get_parent()
	return _area


func _listening() -> Array[Array]:
	return [[&"area_entered", _on_entered], [&"body_entered", _on_entered], [&"area_exited", _on_exited], [&"body_exited", _on_exited]]


func _is_area(node: Node) -> bool:
	return node is Area2D or node is Area3D


func _find_area() -> void:
	var above := get_parent()
	if _is_area(self):
		_area = self
	elif _is_area(above):
		_area = above
	elif shape != null and (above is Node2D or above is Node3D):
		_made_area = Area2D.new() if above is Node2D else Area3D.new()
		_made_area.name = "HitBoxArea"
		_made_area.set(&"collision_layer", 0)
		_made_area.set(&"collision_mask", EVERY_LAYER)
		_area = _made_area
		_add_to.call_deferred(above.get_instance_id(), _made_area.get_instance_id())


# Neither is saved with a scene, nor copied with the node.
static func _add_to(parent_id: int, child_id: int) -> void:
	if not is_instance_id_valid(child_id):
		return
	var child: Node = instance_from_id(child_id)
	if child.get_parent() != null or child.is_queued_for_deletion():
		return
	if is_instance_id_valid(parent_id):
		(instance_from_id(parent_id) as Node).add_child(child, false, INTERNAL_MODE_BACK)
	else:
		child.queue_free()


static func _drop(node: Node) -> void:
	if is_instance_valid(node):
		node.queue_free()


func _missing() -> String:
	var above := get_parent()
	if _is_area(self) or _is_area(above):
		return ""
	if above is Node2D or above is Node3D:
		return "" if shape != null else ("Hit Box %s under %s has no area to touch anything with, so it hits nothing. "
			+ "Pick a Shape, or put it right under an Area2D or an Area3D.") % [name, above.name]
	return "Hit Box %s sits under %s, which has no place in the world, so it hits nothing. Put it right under a 2D or 3D node." % [
		name, above.name if above != null else &"nothing"]


func _make_shape() -> void:
	if not is_instance_valid(_area):
		return
	_drop(_made_shape)
	_made_shape = null
	if shape == null:
		return
	if shape is Shape2D and _area is Area2D:
		_made_shape = CollisionShape2D.new()
	elif shape is Shape3D and _area is Area3D:
		_made_shape = CollisionShape3D.new()
	else:
		MakerWarnings.once_for(self, "wrong shape", ("The Shape of Hit Box %s is a %s, which does not go into an %s, so it hits nothing with it. "
			+ "Pick a shape of the same side.") % [name, shape.get_class(), _area.get_class()])
		return
	_made_shape.set(&"shape", _with_some_size(shape))
	if _area == self:
		add_child(_made_shape, false, INTERNAL_MODE_BACK)
	elif _area == _made_area:
		_area.add_child(_made_shape)
	else:
		_add_to.call_deferred(_area.get_instance_id(), _made_shape.get_instance_id())


static func _with_some_size(of: Resource) -> Resource:
	var least := LEAST_SIZE_2D if of is Shape2D else LEAST_SIZE_3D
	var enough := of
	for property: StringName in [&"size", &"radius", &"height"]:
		var held: Variant = of.get(property)
		var wanted: Variant = held
		if held is float:
			wanted = maxf(held, least)
		elif held is Vector2:
			wanted = held.max(Vector2(least, least))
		elif held is Vector3:
			wanted = held.max(Vector3(least, least, least))
		if wanted != held:
			enough = of.duplicate() if enough == of else enough
			enough.set(property, wanted)
	return enough


# From now on everything counts as new.
func _begin() -> void:
	if not _is_begun:
		return
	if on:
		_to_ask = FRAMES_TO_ASK
	_plan()


func _plan() -> void:
	var works := _is_begun and on and (_to_ask > 0 or not _inside.is_empty() or (hit_again >= 0.0 and not _struck.is_empty()))
	set_physics_process(works)


# The engine is in the middle of telling here, and refuses all sorts of things.
func _on_entered(collider: Node) -> void:
	if collider is HurtBox or _hurt_box_under(collider) != null:
		_inside[collider.get_instance_id()] = true
		_plan()


func _on_exited(collider: Node) -> void:
	_inside.erase(collider.get_instance_id())


# The one by which a body is hit when it is touched itself: one that has shapes of its own is hit there.
static func _hurt_box_under(node: Node) -> HurtBox:
	for i in node.get_child_count():
		var box := node.get_child(i) as HurtBox
		if box != null and not _has_shapes(box):
			return box
	return null


static func _has_shapes(node: Node) -> bool:
	return (node is CollisionObject2D or node is CollisionObject3D) and not (node.call(&"get_shape_owners") as PackedInt32Array).is_empty()


static func _hurt_box_at(collider: Node) -> HurtBox:
	return collider as HurtBox if collider is HurtBox else _hurt_box_under(collider)


# The Hurt Boxes that it touches, each once, by id.
func _touched(ask: bool = _to_ask > 0) -> Array[int]:
	var found: Dictionary[int, bool] = {}
	for id: int in _inside.keys():
		if is_instance_id_valid(id):
			_take_in(instance_from_id(id) as Node, found)
		else:
			_inside.erase(id)
	if ask and on and Engine.is_in_physics_frame() and _area.is_inside_tree():
		_ask_the_world(found)
	return found.keys()


func _take_in(collider: Node, found: Dictionary[int, bool]) -> void:
	var box := _hurt_box_at(collider)
	if box != null:
		found[box.get_instance_id()] = true


func _ask_the_world(found: Dictionary[int, bool]) -> void:
	var in_2d := _area is Area2D
	var query: Variant = PhysicsShapeQueryParameters2D.new() if in_2d else PhysicsShapeQueryParameters3D.new()
	var world: Variant = (_area as Area2D).get_world_2d() if in_2d else (_area as Area3D).get_world_3d()
	var space: Variant = world.direct_space_state if world != null else null
	var at: Variant = _area.get(&"global_transform")
	if space == null or is_zero_approx((at as Transform2D).determinant() if in_2d else (at as Transform3D).basis.determinant()):
		return
	query.collision_mask = _area.get(&"collision_mask")
	query.collide_with_areas = true
	for holder: int in _area.call(&"get_shape_owners"):
		if _area.call(&"is_shape_owner_disabled", holder):
			continue
		query.transform = at * _area.call(&"shape_owner_get_transform", holder)
		for i: int in _area.call(&"shape_owner_get_shape_count", holder):
			query.shape = _area.call(&"shape_owner_get_shape", holder, i)
			_ask_of_shape(space, query, found)


func _ask_of_shape(space: Variant, query: Variant, found: Dictionary[int, bool]) -> void:
	var passed: Array[RID] = [_area.call(&"get_rid")]
	for question in MOST_QUESTIONS:
		query.exclude = passed
		var answers: Array[Dictionary] = space.intersect_shape(query, MOST_AT_ONCE)
		for answer in answers:
			var collider: Node = answer["collider"] as Node
			if collider != null and not (_is_area(collider) and not collider.get(&"monitorable")):
				_take_in(collider, found)
			passed.append(answer["rid"])
		if answers.size() < MOST_AT_ONCE:
			return


func _forget_what_left(touched: Array[int]) -> void:
	if hit_again < 0.0:
		return
	for id: int in _struck.keys():
		if id not in touched and _struck[id].wait <= OVER:
			_struck.erase(id)


# First everything is hit, then it is told: what hears of a hit may well end this.
func _hit_all(touched: Array[int]) -> void:
	var id := get_instance_id()
	var by := whose()
	var by_id := by.get_instance_id() if by != null else 0
	var landed: Array[int] = []
	for box_id in touched:
		by = instance_from_id(by_id) as Node if is_instance_id_valid(by_id) else null
		var box := instance_from_id(box_id) as HurtBox if is_instance_id_valid(box_id) else null
		if not on or box == null or not _is_meant(box, by) or not _is_due(box):
			continue
		var thing_id := box.thing().get_instance_id()
		var has_hit := _hit_one(box, by)
		if not is_instance_id_valid(id):
			return
		if has_hit:
			landed.append(thing_id)
	for thing_id in landed:
		hit.emit(instance_from_id(thing_id) if is_instance_id_valid(thing_id) else null)
		if not is_instance_id_valid(id):
			return


func _hit_one(box: HurtBox, by: Node) -> bool:
	var id := get_instance_id()
	var box_id := box.get_instance_id()
	var before: Blow = _struck.get(box_id)
	var blow := Blow.new()
	blow.wait = hit_again
	blow.safe_times_over = box.safe_times_over
	# Noted first, as whoever hears of the hit may have this strike again.
	_struck[box_id] = blow
	var has_hit := box.take_typed_hit(damage_type, damage, by, knockback)
	if is_instance_id_valid(id) and not has_hit and _struck.get(box_id) == blow:
		if before != null:
			_struck[box_id] = before
		else:
			_struck.erase(box_id)
	return has_hit


func _is_meant(box: HurtBox, by: Node) -> bool:
	var thing := box.thing()
	if box == self or thing == self or thing.is_ancestor_of(self):
		return false
	if by != null and (by == thing or by == box or by.is_ancestor_of(box)):
		return false
	return hurts_group.is_empty() or thing.is_in_group(hurts_group) or box.is_in_group(hurts_group)


func _is_due(box: HurtBox) -> bool:
	var blow: Blow = _struck.get(box.get_instance_id())
	if blow == null:
		return true
	if hit_again > 0.0:
		return blow.wait <= OVER
	return hit_again == 0.0 and box.safe_times_over != blow.safe_times_over
