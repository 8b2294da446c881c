extends RefCounted
## Changes designs under the machines that run them, each change one that leaves the design whole.

const Town := preload("res://tests/soak/soak_town.gd")
const Designs := preload("res://tests/soak/soak_designs.gd")

var _town: Town
var _random: RandomNumberGenerator
var _words: Designs
var _extras: int = 0
# What was added and may be taken away again: each the object that holds it, the list it is in, and it.
var _added: Array[Array] = []
var _edits: Array[Callable] = [
	_add_action, _add_action, _replace_wait, _drop_action, _order_actions, _add_transition, _add_transition, _drop_transition,
	_add_sub_state, _add_region, _add_state, _add_variable, _change_default, _take_away, _take_away, _take_away, _start_elsewhere,
]


func _init(town: Town) -> void:
	_town = town
	_random = town.random
	_words = town.designs


func edit() -> void:
	var template := _town.any_template()
	var states := template.all_states()
	(_edits[_random.randi() % _edits.size()] as Callable).call(template, states[_random.randi() % states.size()])


func _add_action(_template: SCMachineTemplate, state: SCMachineState) -> void:
	var action: SCMachineAction = _words.set_var(Designs.SPARE, 1.0, Designs.ADD)
	match _random.randi() % 4:
		0: action = _words.wait(0.02)
		1: action = _words.send(&"jump", {"delay": 0.05})
		2: action.run_mode = SCMachineAction.EVERY_FRAME
	_add(state, &"actions", action)


## In the same list, or in one of its own.
func _replace_wait(_template: SCMachineTemplate, state: SCMachineState) -> void:
	for i in state.actions.size():
		if state.actions[i] is SCWaitAction:
			state.actions[i] = _words.wait(_random.randf_range(0.02, 0.1))
			_town.remember(state.actions[i])
			if _random.randi() % 2 == 0:
				state.actions = state.actions.duplicate()


func _drop_action(_template: SCMachineTemplate, state: SCMachineState) -> void:
	for action: SCMachineAction in state.actions:
		# Loops and waits keep rings from being run through at once.
		if action is SCSetVariableAction or action is SCGetPropertyAction or action is SCLookAtAction or action is SCPunchAction:
			state.actions.erase(action)
			return


func _order_actions(_template: SCMachineTemplate, state: SCMachineState) -> void:
	if not state.actions.is_empty():
		state.actions = state.actions.slice(1) + state.actions.slice(0, 1)


func _add_transition(template: SCMachineTemplate, state: SCMachineState) -> void:
	var to: SCMachineState = template.states[_random.randi() % template.states.size()]
	_add(state, &"transitions", _words.transition(Designs.UNSENT[_random.randi() % Designs.UNSENT.size()], to.state_name))


func _drop_transition(_template: SCMachineTemplate, state: SCMachineState) -> void:
	if not state.transitions.is_empty():
		state.transitions.remove_at(_random.randi() % state.transitions.size())


func _add_sub_state(_template: SCMachineTemplate, state: SCMachineState) -> void:
	if state.parallel_states.is_empty() and not state.is_end_state:
		_add(state, &"sub_states", _extra())


func _add_region(_template: SCMachineTemplate, state: SCMachineState) -> void:
	if state.sub_states.is_empty() and not state.is_end_state:
		_extras += 1
		_add(state, &"parallel_states", _words.parallel("Region %d" % _extras, [_extra(), _extra()]))


func _add_state(template: SCMachineTemplate, _state: SCMachineState) -> void:
	_add(template, &"states", _extra())


func _add_variable(template: SCMachineTemplate, _state: SCMachineState) -> void:
	_extras += 1
	_add(template, &"variables", _words.variable("extra %d" % _extras, 1.0))


func _change_default(template: SCMachineTemplate, _state: SCMachineState) -> void:
	for held: SCMachineVariable in template.variables:
		if held.name == Designs.SPARE:
			held.default_value = _random.randf()


func _take_away(_template: SCMachineTemplate, _state: SCMachineState) -> void:
	if _added.is_empty():
		return
	var row: Array = _added.pop_at(_random.randi() % _added.size())
	var holder: Resource = row[0]
	var list: Array = holder.get(row[1])
	list.erase(row[2])


func _start_elsewhere(template: SCMachineTemplate, _state: SCMachineState) -> void:
	template.initial_state = template.states[_random.randi() % template.states.size()]


func _add(holder: Resource, list_name: StringName, what: Resource) -> void:
	var list: Array = holder.get(list_name)
	if _random.randi() % 2 == 0:
		list = list.duplicate()
	list.insert(_random.randi() % (list.size() + 1), what)
	holder.set(list_name, list)
	_added.append([holder, list_name, what])
	_town.remember(what)


func _extra() -> SCMachineState:
	_extras += 1
	return _words.state("Extra %d" % _extras, [_words.wait(0.05)])
