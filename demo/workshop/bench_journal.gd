extends Node
## Prints what happens at the benches of the workshop, each change of state with its time. What lives at a bench, such as
## the moth and the pendulum, is counted and not told of, as it never rests.

var _seconds := 0.0
var _changes: Dictionary[SCMachine, int] = {}
var _benches: Node


func _init(benches: Node) -> void:
	_benches = benches
	process_priority = -1


func _ready() -> void:
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		_changes[machine] = 0
		machine.state_changed.connect(_on_state_changed.bind(machine))
		if machine.get_parent().get_parent() == _benches:
			_tell(machine, "starts in")


func _process(delta: float) -> void:
	_seconds += delta


## Prints where everything stands.
func summary() -> void:
	print("\nAfter %.2f s:" % _seconds)
	for machine in _changes:
		if is_instance_valid(machine):
			print("  %-14s %3d changes, now in %s" % [_name_of(machine), _changes[machine], _states_of(machine)])


func _on_state_changed(_before: SCMachineState, _now: SCMachineState, machine: SCMachine) -> void:
	_changes[machine] += 1
	if machine.get_parent().get_parent() == _benches:
		_tell(machine, "->")


func _tell(machine: SCMachine, what: String) -> void:
	print("%6.2f s  %s %s %s" % [_seconds, _name_of(machine), what, _states_of(machine)])


static func _name_of(machine: SCMachine) -> String:
	return String(machine.get_parent().name).capitalize()


static func _states_of(machine: SCMachine) -> String:
	var names := PackedStringArray()
	for state: SCMachineState in machine.active_states():
		names.append(state.state_name)
	return " · ".join(names)
