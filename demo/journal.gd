class_name Journal
extends Node
## Prints what the machines of the scene do, each change with its time. A crowd, where there is one, is told of as one.

var _crowd: Crowd
var _left_out: Array[SCMachine]
var _seconds := 0.0
var _frames := 0
var _changes: Dictionary[SCMachine, int] = {}
var _active: Dictionary[SCMachine, PackedStringArray] = {}
var _crowd_moves := 0


func _init(crowd: Crowd = null, left_out: Array[SCMachine] = []) -> void:
	_crowd = crowd
	_left_out = left_out


func _ready() -> void:
	process_priority = -1
	var crowded: Dictionary[SCMachine, bool] = {}
	for machine in _left_out + (_crowd.machines() if _crowd != null else []):
		crowded[machine] = true
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		if not crowded.has(machine):
			_changes[machine] = 0
			_active[machine] = _states_of(machine)
			machine.state_changed.connect(_on_state_changed.bind(machine))
			_tell(_name_of(machine), "starts in %s" % _listed(_active[machine]))
	if _crowd != null:
		_crowd.moved.connect(_on_crowd_moved)
		_tell("Crowd", "%d machines start in Idle" % _crowd.idle)


func _process(delta: float) -> void:
	_seconds += delta
	_frames += 1


## Prints where everything stands, and what it cost.
func summary() -> void:
	print("\nAfter %.2f s (%d frames):" % [_seconds, _frames])
	for machine in _changes:
		if is_instance_valid(machine):
			var values := _values_of(machine)
			print("  %-13s %3d changes, now in %s%s" % [_name_of(machine), _changes[machine], _listed(_states_of(machine)), "" if values.is_empty() else "; " + values])
	if _crowd != null:
		_summary_of_the_crowd()


func _tell(who: String, what: String) -> void:
	print("%6.2f s  %s: %s" % [_seconds, who, what])


func _summary_of_the_crowd() -> void:
	print("  %-13s %3d changes, now %d of %d in Idle; the engine calls %d of them each frame" % ["Crowd", _crowd_moves, _crowd.idle, Crowd.SIZE, _crowd.called_each_frame()])
	if _crowd.quiet_frames > 0:
		print("All machines together took %.1f µs a frame while the crowd was idle, %d µs in the busiest frame." % [float(_crowd.quiet_usec) / _crowd.quiet_frames, _crowd.longest_usec])


# What was left and what was entered, also where several states run side by side.
func _on_state_changed(before: SCMachineState, _now: SCMachineState, machine: SCMachine) -> void:
	var was := _active[machine]
	var is_now := _states_of(machine)
	_active[machine] = is_now
	_changes[machine] += 1
	if before == null:
		_tell(_name_of(machine), "goes on in %s" % _listed(is_now))
	else:
		_tell(_name_of(machine), "%s -> %s" % [_listed(_without(was, is_now)), _listed(_without(is_now, was))])


func _on_crowd_moved(from: String, to: String, how_many: int) -> void:
	_crowd_moves += how_many
	_tell("Crowd", "%d machines, %s -> %s" % [how_many, from, to])


static func _name_of(machine: SCMachine) -> String:
	return String(machine.get_parent().name).capitalize()


static func _states_of(machine: SCMachine) -> PackedStringArray:
	var names := PackedStringArray()
	for state: SCMachineState in machine.active_states():
		names.append(state.state_name)
	return names


static func _without(names: PackedStringArray, others: PackedStringArray) -> PackedStringArray:
	var left := PackedStringArray()
	for state_name in names:
		if not others.has(state_name):
			left.append(state_name)
	return left


static func _listed(names: PackedStringArray) -> String:
	return "nothing" if names.is_empty() else ", ".join(names)


static func _values_of(machine: SCMachine) -> String:
	var told := PackedStringArray()
	for variable: StringName in machine.values:
		told.append("%s %s" % [variable, machine.values[variable]])
	return ", ".join(told)
