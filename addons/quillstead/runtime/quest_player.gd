extends RefCounted
## Finds what the player carries for the quests, and tells when something in it changes. It looks out for a player who is not there
## yet, or who comes with the next scene, only while [member is_needed].

## The player's inventory is another one now, or something in it came or went.
signal bag_changed
## Somebody has come who may be the player.
signal came

## The player is in this group.
const GROUP: StringName = &"player"

## Whether anybody wants to hear of it.
var is_needed: bool = false:
	set(value):
		if is_needed != value:
			is_needed = value
			_look_out()
## Whether it goes on looking out when there is an inventory already.
var is_waited_for: bool = false:
	set(value):
		if is_waited_for != value:
			is_waited_for = value
			_look_out()

var _tree: SceneTree
var _bag_id: int = 0
var _has_looked_at: bool = false
var _looks_out: bool = false


func _init(tree: SceneTree) -> void:
	_tree = tree


## The inventory that the player carries. Null for none.
func bag() -> SCInventory:
	var held := _held_bag()
	if held == null:
		_find_bag()
		held = _held_bag()
	return held


## The player's machine. Null for none.
func machine() -> SCMachine:
	for node in _players():
		var found := SCMachine.machine_of(node)
		if found != null:
			return found
	return null


func _players() -> Array[Node]:
	return _tree.get_nodes_in_group(GROUP) if is_instance_valid(_tree) else ([] as Array[Node])


func _held_bag() -> SCInventory:
	var held: Object = instance_from_id(_bag_id) if _bag_id != 0 else null
	var found := held as SCInventory
	return found if found != null and found.is_inside_tree() and not found.is_queued_for_deletion() else null


func _find_bag() -> void:
	_let_go()
	for node in _players():
		var found := SCInventory.on(node, SCInventory.Which.CARRIED)
		if found != null and found.is_inside_tree():
			_bag_id = found.get_instance_id()
			found.changed.connect(_on_bag_changed)
			found.tree_exiting.connect(_on_bag_left)
			break
	_look_out()


func _let_go() -> void:
	var held: Object = instance_from_id(_bag_id) if _bag_id != 0 else null
	var found := held as SCInventory
	_bag_id = 0
	if found != null:
		found.changed.disconnect(_on_bag_changed)
		found.tree_exiting.disconnect(_on_bag_left)


func _look_out() -> void:
	var wants := is_needed and (_bag_id == 0 or is_waited_for) and is_instance_valid(_tree)
	if wants == _looks_out or not is_instance_valid(_tree):
		return
	_looks_out = wants
	if wants:
		_tree.node_added.connect(_on_node_added)
	else:
		_tree.node_added.disconnect(_on_node_added)


func _on_bag_changed() -> void:
	if is_needed:
		bag_changed.emit()


func _on_bag_left() -> void:
	_let_go()
	_look_out()


# Children are added after their parents, so nothing is complete yet.
func _on_node_added(node: Node) -> void:
	if not _has_looked_at and (node is SCInventory or node is SCMachineBase or node.is_in_group(GROUP)):
		_has_looked_at = true
		_on_somebody_came.call_deferred()


func _on_somebody_came() -> void:
	_has_looked_at = false
	if not is_needed:
		return
	var had_bag := _held_bag() != null
	if bag() != null and not had_bag:
		bag_changed.emit()
	came.emit()
