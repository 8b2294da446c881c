extends SCMachineAction
## An action of a game's own that leaves its work to the fast lane: goes after the node in the variable "prey".

const Fast := preload("res://addons/quillstead/runtime/quillstead_fast.gd")


func _enter(m: SCMachine, index: int) -> void:
	var lane := Fast.lane_for(m)
	m.rest_in_lane(index, lane, lane.add_chase(true, m, m.target, &"prey", 200.0, 20.0, &"caught", false))


func _needs_every_tick() -> bool:
	return true


func _summary() -> String:
	return "Chase prey"
