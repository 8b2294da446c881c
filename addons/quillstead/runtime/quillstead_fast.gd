extends SCFastLane
## The scene tree's fast lane: it walks bodies and asks for distances on behalf of all machines in one loop.
##
## An action that could do its work without a call for each machine hands it over to the lane that [method lane_for]
## answers with, and rests. There is one lane under the root of the tree from the moment somebody first asks.

const Movers := preload("res://addons/quillstead/runtime/quillstead_movers.gd")

## The lane's name under the root.
const NAME: StringName = &"QuillsteadFastLane"

## The meta of a node that is moved by its position alone, without physics.
const MOVED_BY_POSITION: StringName = &"quillstead_moved_by_position"

## Late in the frame, so that the lane measures where things have come to, and so that it makes no difference to a job
## whether the scene or the lane is older.
const PRIORITY: int = 1_000_000

# The lane, from its making on: it stands in the tree only some time later.
static var _made: SCFastLane = null


## The lane that serves [param machine], or null for one that is outside of any tree.
static func lane_for(machine: Node) -> SCFastLane:
	if machine == null or not machine.is_inside_tree():
		return null
	var tree := machine.get_tree()
	if not _is_of(tree):
		_made = new()
		# The root is busy while a scene is being put under it, which is when the first machine asks.
		_stand_under.call_deferred(tree.root, _made.get_instance_id())
	return _made


## Marks [param node] as one that is moved by its position alone.
static func note_moved_by_position(node: Node) -> void:
	if node != null and not node.has_meta(MOVED_BY_POSITION):
		node.set_meta(MOVED_BY_POSITION, true)


static func _stand_under(root: Node, lane_id: int) -> void:
	var lane := instance_from_id(lane_id) as Node
	if lane != null and lane.get_parent() == null:
		root.add_child(lane)


static func _is_of(tree: SceneTree) -> bool:
	if not is_instance_valid(_made) or _made.is_queued_for_deletion():
		return false
	return not _made.is_inside_tree() or _made.get_tree() == tree


func _init() -> void:
	name = NAME
	# Each job asks for itself whether its machine is at work.
	process_mode = Node.PROCESS_MODE_ALWAYS
	process_priority = PRIORITY
	process_physics_priority = PRIORITY
	add_to_group(Movers.GROUP)
