class_name ShowTextAction
extends SCMachineAction
## Keeps a label up to date. It watches the variables it names, so it costs nothing while they stay as they are.

## The label, seen from the node that the machine works on.
@export var label_path: NodePath

## What to show. A variable's name in braces, such as {score}, stands for its value.
@export_multiline var text: String


func _enter(m: SCMachine, index: int) -> void:
	_show(m)
	m.finish(index)


func _update(m: SCMachine, _index: int, _delta: float) -> void:
	_show(m)


func _variables_to_watch() -> PackedStringArray:
	var names := PackedStringArray()
	for part: String in text.split("{").slice(1):
		names.append(part.get_slice("}", 0))
	return names


func _needs_every_tick() -> bool:
	return false


func _uses_run_mode() -> bool:
	return false


func _summary() -> String:
	return "Show \"%s\"" % text


func _show(m: SCMachine) -> void:
	var label := m.target.get_node_or_null(label_path) as Label
	if label != null:
		label.text = text.format(m.values)
