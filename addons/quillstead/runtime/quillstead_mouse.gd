extends RefCounted
## Where the mouse pointer is: on the screen, on a canvas, and in a 3D world.
##
## The library calls these for the kinds that work under the pointer, and so may a game's own script. Where there is nobody to
## look, as with a node that is not in the scene or a world without a camera, the answer is null.

## How far into a 3D world the pointer reaches, in metres.
const REACH: float = 4096.0


## Whether what [param node] lives in is looked at in 2D: no 3D camera shows it.
static func is_2d_game(node: Node) -> bool:
	return node == null or not node.is_inside_tree() or node.get_viewport().get_camera_3d() == null


## The pointer in pixels of the screen, or of the sub-viewport, that [param node] is shown in.
static func on_screen(node: Node) -> Variant:
	return node.get_viewport().get_mouse_position() if node != null and node.is_inside_tree() else null


## The place in the 2D world that the pointer is over, on the canvas of [param item].
static func in_2d(item: CanvasItem) -> Variant:
	return item.get_global_mouse_position() if item != null and item.is_inside_tree() else null


## The line of sight through the pointer in the 3D world of [param node]: where it begins and which way it goes.
static func line_of_sight(node: Node) -> Variant:
	if is_2d_game(node):
		return null
	var camera := node.get_viewport().get_camera_3d()
	var pointer := node.get_viewport().get_mouse_position()
	return [camera.project_ray_origin(pointer), camera.project_ray_normal(pointer)]


## The first solid place under the pointer in the 3D world of [param node], of what lies on [param layers].
static func in_3d(node: Node3D, layers: int = 0xFFFFFFFF, reach: float = REACH) -> Variant:
	var sight: Variant = line_of_sight(node)
	if sight == null:
		return null
	var from: Vector3 = sight[0]
	var way: Vector3 = sight[1]
	var query := PhysicsRayQueryParameters3D.create(from, from + way * reach, layers)
	return node.get_world_3d().direct_space_state.intersect_ray(query).get("position")


## Where the pointer is over level ground of that height, whether or not anything is there.
static func on_ground(node: Node, height: float = 0.0) -> Variant:
	var sight: Variant = line_of_sight(node)
	if sight == null:
		return null
	return Plane(Vector3.UP, height).intersects_ray(sight[0], sight[1])
