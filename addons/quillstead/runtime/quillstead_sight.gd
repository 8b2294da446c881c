extends RefCounted
## What all Perception nodes share: how many rays a physics frame may cast for them together, whose turn it is, and how big
## the things are that they look at.
##
## A game with more watchers than its frames can carry turns [member rays_per_frame] down. Everybody still gets a turn in the
## order in which they asked, only later.

## How many rays all Perception nodes together cast at most in one physics frame.
static var rays_per_frame: int = 120

# Of this physics frame.
static var _frame: int = -1
static var _cast: int = 0
static var _most_cast: int = 0
# Ids of the watchers whose look is due, and how many of them have had it.
static var _waiting: PackedInt64Array = []
static var _served: int = 0
static var _is_serving: bool = false
# The members of a group, asked for once in a physics frame.
static var _members: Dictionary[StringName, Array] = {}
static var _members_frame: int = -1
# By instance id: the box around a node's own shapes, in its own space, and the physics frame it was measured in.
static var _outlines: Dictionary[int, AABB] = {}
static var _outline_frames: Dictionary[int, int] = {}

const OUTLINE_LASTS: int = 15
const MOST_OUTLINES: int = 256


## Whether the physics can be asked just now: not between its frames where they run on a thread of their own.
static func may_ask_now(in_3d: bool) -> bool:
	return Engine.is_in_physics_frame() or not ProjectSettings.get_setting_with_override(
		&"physics/3d/run_on_separate_thread" if in_3d else &"physics/2d/run_on_separate_thread")


## How many rays are left in this physics frame.
static func rays_left() -> int:
	var frame := Engine.get_physics_frames()
	if frame != _frame:
		_frame = frame
		_cast = 0
	return maxi(rays_per_frame, 1) - _cast


## Whether nobody has cast a ray in this physics frame.
static func is_untouched() -> bool:
	return rays_left() > 0 and _cast == 0


static func count_ray() -> void:
	_cast += 1
	_most_cast = maxi(_most_cast, _cast)


## Puts a watcher at the end of the row.
static func wait_for_turn(watcher: Node) -> void:
	_waiting.append(watcher.get_instance_id())


## Gives those who wait their look, the first of them first, for as many rays as are left.
static func serve() -> void:
	if _is_serving:
		return
	_is_serving = true
	while _served < _waiting.size() and rays_left() > 0:
		var watcher := instance_from_id(_waiting[_served])
		_served += 1
		if watcher != null and not watcher.take_turn():
			_served -= 1
			break
	if _served >= _waiting.size():
		_waiting.clear()
		_served = 0
	_is_serving = false


static func members_of(group: StringName, tree: SceneTree) -> Array:
	var frame := Engine.get_physics_frames()
	if frame != _members_frame or not Engine.is_in_physics_frame():
		_members_frame = frame
		_members.clear()
	if not _members.has(group):
		_members[group] = tree.get_nodes_in_group(group)
	return _members[group]


## The box around the shapes right below a node, in the node's own space. It has no size for a node without shapes.
static func outline_of(node: Node) -> AABB:
	var id := node.get_instance_id()
	var frame := Engine.get_physics_frames()
	if _outlines.has(id) and frame - _outline_frames[id] < OUTLINE_LASTS:
		return _outlines[id]
	if _outlines.size() >= MOST_OUTLINES:
		_outlines.clear()
		_outline_frames.clear()
	var outline := AABB()
	var is_first := true
	for child in node.get_children():
		var part := _outline_of_shape(child)
		if part.size != Vector3.ZERO:
			outline = part if is_first else outline.merge(part)
			is_first = false
	_outlines[id] = outline
	_outline_frames[id] = frame
	return outline


static func _outline_of_shape(child: Node) -> AABB:
	if child is CollisionShape3D and not child.disabled and child.shape != null:
		return child.transform * _outline_in_3d(child.shape)
	if child is CollisionShape2D and not child.disabled and child.shape != null:
		return _in_2d(child.transform * child.shape.get_rect())
	if child is CollisionPolygon2D and not child.disabled and not child.polygon.is_empty():
		var around := Rect2(child.polygon[0], Vector2.ZERO)
		for corner: Vector2 in child.polygon:
			around = around.expand(corner)
		return _in_2d(child.transform * around)
	return AABB()


static func _in_2d(around: Rect2) -> AABB:
	return AABB(Vector3(around.position.x, around.position.y, 0.0), Vector3(around.size.x, around.size.y, 0.0))


static func _outline_in_3d(shape: Shape3D) -> AABB:
	if shape is BoxShape3D:
		return _box(shape.size)
	if shape is SphereShape3D:
		return _box(Vector3.ONE * shape.radius * 2.0)
	if shape is CapsuleShape3D or shape is CylinderShape3D:
		return _box(Vector3(shape.radius * 2.0, shape.height, shape.radius * 2.0))
	var points: PackedVector3Array = []
	if shape is ConvexPolygonShape3D:
		points = shape.points
	elif shape is ConcavePolygonShape3D:
		points = shape.get_faces()
	if points.is_empty():
		return AABB()
	var around := AABB(points[0], Vector3.ZERO)
	for point in points:
		around = around.expand(point)
	return around


static func _box(size: Vector3) -> AABB:
	return AABB(size * -0.5, size)
