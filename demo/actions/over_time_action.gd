@abstract
class_name OverTimeAction
extends SCMachineAction
## Changes a node over some time, and finishes once that is done. What it changes is said by the actions made from it.

## The node to change, seen from the node that the machine works on.
@export var node_path: NodePath

## How long the change takes.
@export_range(0.0, 10.0, 0.01, "or_greater", "suffix:s") var seconds: float = 0.5


## Puts the change on a tween that lasts as long as the state does.
@abstract func _change(tween: Tween, node: CanvasItem) -> void


func _enter(m: SCMachine, index: int) -> void:
	var node := m.target.get_node_or_null(node_path) as CanvasItem
	if node == null:
		push_warning("%s on %s finds nothing to change at %s, so it did nothing. Pick a node in its Node Path." % [summary(), m.target.name, node_path])
		m.finish(index)
		return
	var tween := m.create_tween().set_trans(Tween.TRANS_SINE)
	_change(tween, node)
	m.finish_with_tween(index, tween)


func _uses_run_mode() -> bool:
	return false
