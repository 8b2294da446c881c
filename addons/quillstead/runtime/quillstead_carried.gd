extends Node
## Holds one node in the hand that carries it, for the action Carry. It goes under the hand, and while it is there what is held
## follows, without changing its parent, and bumps into nothing. When the hand or what it holds leaves the scene, it is let go.

## The metadata on what is held, with all that it needs to be let go.
const CARRIED: StringName = &"quillstead_carried"
const FACES_LEFT: StringName = &"quillstead_faces_left"

## After everything that may move the hand.
const LAST: int = 1000
const MIRRORED := Transform2D(Vector2.LEFT, Vector2.DOWN, Vector2.ZERO)

const _HOW_IT_IS_HELD: Array[StringName] = [&"_place_2d", &"_place_3d", &"_rotation", &"_hand_angle", &"_basis", &"_hand_turn"]

var _thing_id: int = 0
# In the hand's own space.
var _place_2d: Vector2
var _place_3d: Vector3
# How both were turned as it was picked up.
var _rotation: float
var _hand_angle: float
var _basis: Basis
var _hand_turn: Quaternion


## Whether somebody holds it.
static func is_carried(thing: Node) -> bool:
	return hand_of(thing) != null


## Who holds it, or null.
static func hand_of(thing: Node) -> Node:
	var record := _record_of(thing)
	var holder: Node = instance_from_id(record["holder"]) if not record.is_empty() else null
	return holder.get_parent() if holder != null else null


## Whether [param hand] is [param thing] or hangs on it: lies inside it, or is held by it.
static func hangs_on(hand: Node, thing: Node) -> bool:
	var seen: Array[Node] = []
	var at := hand
	while at != null and at not in seen:
		seen.append(at)
		if at == thing:
			return true
		var by := hand_of(at)
		at = by if by != null else at.get_parent()
	return false


## Puts it into the hand, out of any other. With [param snap] it goes to where the hand is. Both have to be in 2D, or both in 3D.
static func pick_up(thing: Node, hand: Node, snap: bool) -> void:
	var record := _record_of(thing)
	if record.is_empty():
		record = {"solid": _make_hollow(thing)}
	else:
		_forget_holder(record)
	var holder := new()
	record["thing"] = thing.get_instance_id()
	record["holder"] = holder.get_instance_id()
	thing.set_meta(CARRIED, record)
	holder._hold(thing, hand, snap)
	if SCMachine.native_helper(&"takes_children_now", [hand]):
		hand.add_child(holder, true, Node.INTERNAL_MODE_BACK)
	else:
		hand.add_child.call_deferred(holder, true, Node.INTERNAL_MODE_BACK)


## Lets it go where it is. [param velocity], unless null, is what it flies off with.
static func let_go(thing: Node, velocity: Variant = null) -> void:
	var record := _record_of(thing)
	if not record.is_empty():
		thing.remove_meta(CARRIED)
		_forget_holder(record)
		_make_solid(thing, record["solid"])
	if velocity != null:
		_throw(thing, velocity)


## How [param thing] is held, with the hand itself. [method from_save] takes it back. Empty when nobody holds it.
static func to_save(thing: Node) -> Dictionary:
	var record := _record_of(thing)
	if record.is_empty():
		return {}
	var holder: Node = instance_from_id(record["holder"])
	var saved := {"hand": holder.get_parent(), "solid": record["solid"]}
	for part in _HOW_IT_IS_HELD:
		saved[String(part)] = holder.get(part)
	return saved


## Puts [param thing], which is as hollow as it was, back into the hand it was in.
static func from_save(thing: Node, saved: Dictionary) -> void:
	var hand: Variant = saved.get("hand")
	var solid: Variant = saved.get("solid")
	if not hand is Node or not solid is Array or thing is Node3D != hand is Node3D or not (hand is Node3D or hand is CanvasItem):
		return
	var holder := new()
	holder._hold(thing, hand, false)
	for part in _HOW_IT_IS_HELD:
		if typeof(saved.get(String(part))) == typeof(holder.get(part)):
			holder.set(part, saved[String(part)])
	thing.set_meta(CARRIED, {"thing": thing.get_instance_id(), "holder": holder.get_instance_id(), "solid": solid})
	(hand as Node).add_child(holder, true, Node.INTERNAL_MODE_BACK)


## For a copy of what is held: nobody holds the copy.
static func forget(copy: Node) -> void:
	var record: Variant = copy.get_meta(CARRIED)
	copy.remove_meta(CARRIED)
	if record is Dictionary and record.get("solid") is Array:
		_make_solid(copy, record["solid"])


func _enter_tree() -> void:
	process_priority = LAST
	process_physics_priority = LAST
	_follow()


func _exit_tree() -> void:
	var thing := _thing()
	if thing != null:
		let_go(thing)


func _process(_delta: float) -> void:
	_follow()


func _physics_process(_delta: float) -> void:
	_follow()


func _thing() -> Node:
	return instance_from_id(_thing_id) if _thing_id != 0 and is_instance_id_valid(_thing_id) else null


func _hold(thing: Node, hand: Node, snap: bool) -> void:
	_thing_id = thing.get_instance_id()
	thing.tree_exiting.connect(_on_thing_leaves)
	if thing is Node3D:
		var world := _world_3d(hand)
		_basis = (thing as Node3D).global_basis
		_hand_turn = _turn_of(world)
		if not snap and not is_zero_approx(world.basis.determinant()):
			_place_3d = world.affine_inverse() * (thing as Node3D).global_position
	else:
		var world := _world_2d(hand)
		_rotation = (thing as Node2D).rotation
		_hand_angle = _angle_of(world)
		if not snap and not is_zero_approx(world.determinant()):
			_place_2d = world.affine_inverse() * (thing as Node2D).global_position


func _follow() -> void:
	var thing := _thing()
	if thing == null:
		queue_free()
	elif thing is Node3D:
		_follow_3d(thing as Node3D)
	else:
		_follow_2d(thing as Node2D)


func _follow_2d(thing: Node2D) -> void:
	var world := _world_2d(get_parent())
	var place := world * _place_2d
	var turned := _rotation + angle_difference(_hand_angle, _angle_of(world))
	if not is_equal_approx(thing.rotation, turned):
		thing.rotation = turned
	if not thing.global_position.is_equal_approx(place):
		thing.global_position = place


func _follow_3d(thing: Node3D) -> void:
	var world := _world_3d(get_parent())
	var place := world * _place_3d
	var turned := Basis(_turn_of(world) * _hand_turn.inverse()) * _basis
	if not thing.global_basis.is_equal_approx(turned):
		thing.global_basis = turned
	if not thing.global_position.is_equal_approx(place):
		thing.global_position = place


func _on_thing_leaves() -> void:
	var thing := _thing()
	if thing != null:
		let_go(thing)


# A character seen from the side that faces left holds things on its other side.
static func _world_2d(hand: Node) -> Transform2D:
	var world := (hand as CanvasItem).get_global_transform()
	var above := hand
	while above is CanvasItem and not above.has_meta(FACES_LEFT):
		above = above.get_parent()
	if above is CanvasItem and above.get_meta(FACES_LEFT):
		var body := (above as CanvasItem).get_global_transform()
		if not is_zero_approx(body.determinant()):
			return body * MIRRORED * body.affine_inverse() * world
	return world


static func _world_3d(hand: Node) -> Transform3D:
	return (hand as Node3D).global_transform


# What is held by a mirrored hand stays upright.
static func _angle_of(world: Transform2D) -> float:
	return (-world.x).angle() if world.determinant() < 0.0 and world.y.y >= 0.0 else world.x.angle()


static func _turn_of(world: Transform3D) -> Quaternion:
	return Quaternion.IDENTITY if is_zero_approx(world.basis.determinant()) else world.basis.get_rotation_quaternion()


# Empty when nobody holds it. A copy of something that is held has the metadata too, but not the holder.
static func _record_of(thing: Node) -> Dictionary:
	var record: Variant = thing.get_meta(CARRIED) if thing.has_meta(CARRIED) else null
	if not record is Dictionary or record.get("thing") != thing.get_instance_id() or not is_instance_id_valid(record["holder"]):
		return {}
	return record


static func _forget_holder(record: Dictionary) -> void:
	var holder: Node = instance_from_id(record["holder"])
	var thing: Node = holder._thing()
	if thing != null and thing.tree_exiting.is_connected(holder._on_thing_leaves):
		thing.tree_exiting.disconnect(holder._on_thing_leaves)
	holder._thing_id = 0
	holder.queue_free()


# Takes the bodies in it out of the way of everybody else. The answer is how they were.
static func _make_hollow(thing: Node) -> Array:
	var solid := []
	for body in _bodies_in(thing):
		var frozen: Variant = body.get(&"freeze")
		solid.append([thing.get_path_to(body), body.get(&"collision_layer"), body.get(&"collision_mask"), frozen])
		body.set(&"collision_layer", 0)
		body.set(&"collision_mask", 0)
		if frozen != null:
			_set_calmly(body, true, null)
	return solid


static func _make_solid(thing: Node, solid: Array) -> void:
	for row: Variant in solid:
		var body := thing.get_node_or_null(row[0]) if row is Array and (row as Array).size() == 4 and row[0] is NodePath else null
		if body == null:
			continue
		body.set(&"collision_layer", row[1])
		body.set(&"collision_mask", row[2])
		if row[3] != null:
			_set_calmly(body, row[3], Vector3.ZERO if body is Node3D else Vector2.ZERO)


static func _throw(thing: Node, velocity: Variant) -> void:
	if thing is RigidBody2D or thing is RigidBody3D:
		_set_calmly(thing, false, velocity)
	else:
		thing.set(&"velocity", velocity)


# The physics refuse to free or freeze a body while they tell of what touched what.
static func _set_calmly(body: Node, frozen: bool, velocity: Variant) -> void:
	if Engine.is_in_physics_frame():
		_set_now.call_deferred(body.get_instance_id(), frozen, velocity)
	else:
		_set_now(body.get_instance_id(), frozen, velocity)


# A velocity of null leaves the body the one it has.
static func _set_now(id: int, frozen: bool, velocity: Variant) -> void:
	var body: Node = instance_from_id(id) if is_instance_id_valid(id) else null
	if body == null:
		return
	body.set(&"freeze", frozen)
	if velocity == null:
		return
	# A body that slept would otherwise wake up where it fell asleep.
	if body is RigidBody2D and body.is_inside_tree():
		var flat := body as RigidBody2D
		PhysicsServer2D.body_set_state(flat.get_rid(), PhysicsServer2D.BODY_STATE_TRANSFORM, flat.global_transform)
		flat.angular_velocity = 0.0
	elif body is RigidBody3D and body.is_inside_tree():
		var round_body := body as RigidBody3D
		PhysicsServer3D.body_set_state(round_body.get_rid(), PhysicsServer3D.BODY_STATE_TRANSFORM, round_body.global_transform)
		round_body.angular_velocity = Vector3.ZERO
	body.set(&"sleeping", false)
	body.set(&"linear_velocity", velocity)


static func _bodies_in(node: Node) -> Array[Node]:
	var bodies: Array[Node] = []
	if node is PhysicsBody2D or node is PhysicsBody3D:
		bodies.append(node)
	for child in node.get_children():
		bodies.append_array(_bodies_in(child))
	return bodies
