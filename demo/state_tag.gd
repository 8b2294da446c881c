class_name StateTag
extends Label
## Tells which states a machine is in. It is told of changes, so it does nothing in between.

## The machine to tell of.
@export var machine: SCMachine

## What follows the states. A variable's name in braces stands for its value.
@export var and_then: String


func _ready() -> void:
	machine.state_changed.connect(_on_state_changed)
	_refresh()


func _on_state_changed(_before: SCMachineState, _now: SCMachineState) -> void:
	_refresh()


func _refresh() -> void:
	var names := PackedStringArray()
	for state: SCMachineState in machine.active_states():
		names.append(state.state_name)
	text = " · ".join(names) + and_then.format(machine.values)
