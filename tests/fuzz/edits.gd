extends RefCounted
## Changes designs under the machines that run them. A valid design stays valid: what keeps it from going round within a frame
## is not taken away, and nothing is added that would make it.

const Town := preload("res://tests/fuzz/town.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Own := preload("res://tests/fuzz/own.gd")
const Dice := preload("res://tests/fuzz/dice.gd")

var _town: Town
var _dice: Dice
var _extras: int = 0
# What was added and may be taken away again: each the object that holds it, the list it is in, and it.
var _added: Array[Array] = []
var _edits: Array[Callable] = [
	_add_action, _add_action, _replace_wait, _drop_action, _order_actions, _clear, _add_transition, _add_transition, _drop_transition, _toggle_end,
	_add_sub_state, _add_region, _add_state, _add_variable, _change_default, _take_away, _take_away, _take_away,
]


func _init(town: Town) -> void:
	_town = town
	_dice = town.dice


func edit() -> void:
	var of := _town.any_design()
	(_dice.pick(_edits) as Callable).call(of, _dice.pick(of.design.all_states()))


func _add_action(of: Design, state: SCMachineState) -> void:
	_add(state, &"actions", of.action())


## In the same list, or in one of its own.
func _replace_wait(of: Design, state: SCMachineState) -> void:
	for i in state.actions.size():
		if state.actions[i] is SCWaitAction and state.actions[i].from_variables.is_empty():
			state.actions[i] = of.wait(_dice.randf_range(0.02, 0.1))
			_town.remember(state.actions[i])
			if _dice.one_in(2):
				state.actions = state.actions.duplicate()


func _drop_action(of: Design, state: SCMachineState) -> void:
	for action: SCMachineAction in state.actions:
		if not of.valid or not Design.takes_time(action):
			state.actions.erase(action)
			return


func _order_actions(_of: Design, state: SCMachineState) -> void:
	if not state.actions.is_empty():
		state.actions = state.actions.slice(1) + state.actions.slice(0, 1)


func _clear(of: Design, state: SCMachineState) -> void:
	if not of.valid:
		state.actions.clear()


func _add_transition(of: Design, state: SCMachineState) -> void:
	var to: SCMachineState = _dice.pick(of.design.states)
	_add(state, &"transitions", of.transition(_dice.pick(Filling.EVENTS.slice(0, -1)), to.state_name))


func _drop_transition(of: Design, state: SCMachineState) -> void:
	if not state.transitions.is_empty() and state != of.first:
		state.transitions.remove_at(_dice.randi_range(0, state.transitions.size() - 1))


func _toggle_end(of: Design, state: SCMachineState) -> void:
	if not of.valid:
		state.is_end_state = not state.is_end_state


func _add_sub_state(of: Design, state: SCMachineState) -> void:
	if state.parallel_states.is_empty() and not state.is_end_state:
		_add(state, &"sub_states", _extra(of))


func _add_region(of: Design, state: SCMachineState) -> void:
	if state.sub_states.is_empty() and not state.is_end_state:
		_extras += 1
		_add(state, &"parallel_states", of.parallel("Region %d" % _extras, [_extra(of), _extra(of)]))


func _add_state(of: Design, _state: SCMachineState) -> void:
	_add(of.design, &"states", _extra(of))


func _add_variable(of: Design, _state: SCMachineState) -> void:
	_extras += 1
	_add(of.design, &"variables", of.variable("extra %d" % _extras, 1.0))


func _change_default(of: Design, _state: SCMachineState) -> void:
	var held := of.design.variables[1]
	held.default_value = _dice.randf() if held != null else null


func _take_away(_of: Design, _state: SCMachineState) -> void:
	if _added.is_empty():
		return
	var row: Array = _added.pop_at(_dice.randi_range(0, _added.size() - 1))
	var holder: Resource = row[0]
	var list: Array = holder.get(row[1])
	list.erase(row[2])


func _add(holder: Resource, list_name: StringName, what: Resource) -> void:
	var list: Array = holder.get(list_name)
	if _dice.one_in(2):
		list = list.duplicate()
	list.insert(_dice.randi_range(0, list.size()), what)
	holder.set(list_name, list)
	_added.append([holder, list_name, what])
	_town.remember(what)


func _extra(of: Design) -> SCMachineState:
	_extras += 1
	return of.state("Extra %d" % _extras, [of.wait(0.05)])
