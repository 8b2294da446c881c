extends SCMachineAction
## An action of a game's own that holds on to a tween, a timer and a place in the machine's memory while it runs.

const SECONDS: float = 0.08


func _enter(m: SCMachine, index: int) -> void:
	var body: Node2D = m.target
	m.slot(index)[&"rotation"] = body.rotation
	var tween := m.create_tween()
	tween.tween_property(body, ^"rotation", body.rotation + 0.5, SECONDS)
	m.keep_tween(index, tween)
	m.finish_after(index, SECONDS, _come_to_rest.bind(body.get_instance_id()))


func _exit(m: SCMachine, index: int) -> void:
	var body := m.target as Node2D
	if body != null:
		body.rotation = m.slot(index)[&"rotation"]


func _summary() -> String:
	return "Sway"


func _come_to_rest(body_id: int) -> void:
	var body := instance_from_id(body_id) as Node2D
	if body != null:
		body.skew = 0.0
