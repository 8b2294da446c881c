extends RefCounted
## Draws designs: states in states and beside states, with transitions to anywhere.

const Game := preload("res://tests/fuzz/fuzz_game.gd")
const Action := preload("res://tests/fuzz/fuzz_action.gd")

const EVENTS: Array[StringName] = [&"go", &"turn", &"back", &"alarm", &"FINISHED"]
const VARIABLES: Array[StringName] = [&"whole", &"level", &"top", &"shared", &"thing", &"list"]
const GLOBAL_EVENT: StringName = &"alarm"
const MOST_DEPTH: int = 3
const MOST_STATES: int = 14

var _game: Game
var _names: Array[StringName] = []


func _init(game: Game) -> void:
	_game = game


func draw() -> SCMachineTemplate:
	_names = []
	var made := SCMachineTemplate.new()
	made.states = _states(_game.pick_count(2, 4), 0)
	made.initial_state = made.states[_game.random.randi() % made.states.size()]
	made.variables.append_array([
		_variable(&"whole", 3, "0", "level"), _variable(&"level", 2.5, "0", "top"), _variable(&"top", 8.0, "", "whole"),
		_variable(&"shared", 1.0, "", "20"), _variable(&"thing", null), _variable(&"list", []),
		_variable(&"count", 0.0, "0", "level"),
	])
	made.variables[3].is_global = true
	var event := SCMachineEvent.new()
	event.event_name = GLOBAL_EVENT
	event.is_global = true
	made.events.append(event)
	for state: SCMachineState in made.all_states():
		for i in _game.pick_count(0, 4):
			state.transitions.append(transition(state.actions.any(_takes_time)))
	return made


## States that lead on as soon as they are entered make circles, which are rather loud.
func transition(may_follow_finished: bool) -> SCMachineTransition:
	var made := SCMachineTransition.new()
	made.event = _game.pick(EVENTS)
	if made.event == &"FINISHED" and not may_follow_finished and not _game.one_in(8):
		made.event = &"go"
	made.to_state = _game.pick(_names) if not _game.one_in(12) else &"Nowhere"
	if _game.one_in(3):
		made.store_data_in = _game.pick(VARIABLES)
	return made


func _takes_time(made: SCMachineAction) -> bool:
	return not made.disabled and (made is SCWaitAction or (made is Action and (made as Action).finishes_in != 1))


func action() -> SCMachineAction:
	match _game.random.randi() % 10:
		0:
			var wait := SCWaitAction.new()
			wait.seconds = _game.random.randf() * 0.06
			wait.random_extra = 0.02 if _game.one_in(2) else 0.0
			wait.real_time = _game.one_in(4)
			return _chained(wait)
		1:
			var count := SCSetVariableAction.new()
			# Left alone by all others, or it would complain of what it finds there.
			count.variable_name = &"count"
			count.operation = _game.pick([SCSetVariableAction.ADD, SCSetVariableAction.SUBTRACT, SCSetVariableAction.SET])
			count.value = 1.5
			count.run_mode = SCMachineAction.EVERY_FRAME if _game.one_in(2) else SCMachineAction.ONCE
			return _chained(count)
		2:
			var send := SCSendEventAction.new()
			send.event_name = _game.pick(EVENTS)
			send.reach = SCSendEventAction.EVERY_MACHINE if _game.one_in(3) else SCSendEventAction.THIS_MACHINE
			send.delay = 0.0 if _game.one_in(6) else _game.random.randf() * 0.05
			return _chained(send)
	var made := Action.new()
	made.ticks = _game.one_in(2)
	made.physics = _game.one_in(4)
	made.works_on = _game.one_in(4)
	made.finishes_in = [0, 1, 3, 5][_game.random.randi() % 4]
	if _game.one_in(3):
		made.watched = PackedStringArray([_game.pick(VARIABLES)])
	if _game.one_in(5):
		made.from_variables[&"display_name"] = &"list"
	if _game.one_in(6):
		made.update_interval = 0.04
	# From here on it acts; before, it would answer the questions of its own making.
	made.game = _game
	_game.actions.append(made)
	return _chained(made)


func _chained(made: SCMachineAction) -> SCMachineAction:
	made.wait_for_previous = _game.one_in(4)
	made.disabled = _game.one_in(12)
	return made


func _states(count: int, depth: int) -> Array[SCMachineState]:
	var made: Array[SCMachineState] = []
	for i in count:
		made.append(_state(depth))
	return made


func _state(depth: int) -> SCMachineState:
	var made := SCMachineState.new()
	made.state_name = &"S%d" % _names.size()
	_names.append(made.state_name)
	for i in _game.pick_count(0, 3):
		made.actions.append(action())
	made.is_end_state = _game.one_in(3)
	made.pause_here = _game.one_in(8)
	if depth < MOST_DEPTH and _names.size() < MOST_STATES:
		match _game.random.randi() % 3:
			0:
				made.sub_states = _states(_game.pick_count(1, 3), depth + 1)
				made.start_sub_state = made.sub_states[-1] if _game.one_in(2) else null
			1:
				for i in _game.pick_count(1, 3):
					made.parallel_states.append(_region(depth))
	return made


func _region(depth: int) -> SCMachineParallelState:
	var made := SCMachineParallelState.new()
	# A region may be empty.
	made.states = _states(_game.pick_count(0, 2), depth + 1)
	if not made.states.is_empty() and _game.one_in(2):
		made.start_state = made.states[-1]
	return made


func _variable(name: StringName, starts_as: Variant, never_below: String = "", never_above: String = "") -> SCMachineVariable:
	var made := SCMachineVariable.new()
	made.name = name
	made.default_value = starts_as
	made.never_below = never_below
	made.never_above = never_above
	return made
