class_name StateLabel
extends Label3D
## Tells over a thing's head which state its machine is in, the innermost of those inside one another.

## The machine to tell of.
@export var machine: SCMachine


func _ready() -> void:
	machine.state_changed.connect(_on_state_changed)
	_refresh()


func _on_state_changed(_before: SCMachineState, _now: SCMachineState) -> void:
	_refresh()


func _refresh() -> void:
	var states := machine.active_states()
	text = "" if states.is_empty() else String((states.back() as SCMachineState).state_name)
