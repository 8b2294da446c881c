class_name StowAction
extends SCMachineAction
## Keeps a node in a pocket, outside the tree, for as long as the state lasts.

## The node to take out of the tree, seen from the pocket.
@export var thing_path: NodePath


func _enter(m: SCMachine, index: int) -> void:
	var pocket := m.target as Pocket
	if pocket != null:
		pocket.stow(pocket.get_node_or_null(thing_path))
	m.finish(index)


# The state may be left because the whole scene goes, and then nothing can be added to it any more.
func _exit(m: SCMachine, _index: int) -> void:
	var pocket := m.target as Pocket
	if pocket != null:
		pocket.take_out.call_deferred()


func _uses_run_mode() -> bool:
	return false


func _summary() -> String:
	return "Keep %s in the pocket" % thing_path
