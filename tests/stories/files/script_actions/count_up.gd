extends SCMachineAction
## Adds to a variable, once or every frame.

@export var store_in: StringName = &"count"
@export var by: int = 1


func _enter(m: SCMachine, index: int) -> void:
	_add(m)
	if not repeats():
		m.finish(index)


func _update(m: SCMachine, _index: int, _delta: float) -> void:
	_add(m)


func _summary() -> String:
	return "Count %s up by %d" % [store_in, by]


func _add(m: SCMachine) -> void:
	m.set_value(store_in, m.get_value(store_in, 0) + by)
