extends RefCounted
## Values of a running scene as plain ones that a JSON file can hold, and back. The library does the work, as a scene has many.
##
## What the engine has its own form for, such as a position or a colour, is kept in that form. A float comes back to the last bit,
## which the engine's form does not promise. A node is the place it has in the scene, a resource the path of its file; nothing that
## a file says makes an object or runs code.

## What [method encoded] answers for what no file can hold.
const LOST: StringName = &"lost"

## The top of the scene that nodes are placed in.
var scene: Node
## Nodes that stand elsewhere than a place in the file says, by that place.
var placed: Dictionary[String, Node] = {}
## Whether a number that may be the id of something elsewhere is left out. What an action remembers holds such ids.
var forgets_strangers: bool = false
## Whether something could not be read by the last [method decoded].
var broken: bool = false

# Those of all nodes in the scene.
var _ids: Dictionary[int, bool] = {}


func _init(of_scene: Node) -> void:
	scene = of_scene


## [param value] as a file can hold it, [constant LOST] for what it cannot.
func encoded(value: Variant) -> Variant:
	_list_ids()
	var kept: Variant = SCMachine.native_helper(&"encode_in_scene", [value, scene, _ids, forgets_strangers])
	return kept[0] if kept is Array else LOST


## The value that [method encoded] has written. Null, and [member broken], for anything else.
func decoded(kept: Variant) -> Variant:
	var value: Variant = SCMachine.native_helper(&"decode_in_scene", [kept, scene, placed])
	if value is Array:
		return value[0]
	broken = true
	return null


## Those properties of [param node] that are not what [param twin], or without one [param before], has them: by name, as a file can
## hold them. Only what [param before] names is looked at.
func differences(node: Node, before: Dictionary, twin: Node) -> Dictionary:
	_list_ids()
	return SCMachine.native_helper(&"differences_in_scene", [before, scene, _ids, forgets_strangers, node, twin])


## The node that had the place [param path] in the scene. Null when there is none now.
func node_at(path: String) -> Node:
	return decoded({"node": path}) as Node


## The place of a node in the scene, empty for one elsewhere.
func place_of(node: Node) -> String:
	var kept: Variant = encoded(node)
	return kept["node"] if kept is Dictionary else ""


## Whether [param kept] is what [method encoded] answers for what no file can hold.
static func is_lost(kept: Variant) -> bool:
	return kept is StringName and (kept as StringName) == LOST


func _list_ids() -> void:
	if _ids.is_empty():
		_list_below(scene)


func _list_below(node: Node) -> void:
	_ids[node.get_instance_id()] = true
	for child in node.get_children(true):
		_list_below(child)
