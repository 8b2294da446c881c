class_name WaitUntilEmptyAction
extends SCMachineAction
## Finishes once nobody stands in the area that the machine works on. It rests until somebody leaves, so waiting is free.


func _enter(m: SCMachine, index: int) -> void:
	_look(m, index)


func _update(m: SCMachine, index: int, _delta: float) -> void:
	_look(m, index)


func _summary() -> String:
	return "Wait until nobody is inside"


func _look(m: SCMachine, index: int) -> void:
	var area := m.target as Area2D
	if area == null or not area.has_overlapping_bodies():
		m.finish(index)
	else:
		m.rest_until(index, [[area, &"body_exited"]])
