extends RefCounted
## Changes designs under the machines that run them. A valid design stays valid: what keeps it from going round within a frame
## is not taken away, and nothing is added that would make it.

const Town := preload("res://tests/fuzz/town.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")

const EDITS: Array[StringName] = [
	&"add action", &"add action", &"replace wait", &"drop action", &"order actions", &"clear", &"add transition", &"add transition", &"drop transition",
	&"toggle end", &"add sub-state", &"add region", &"add state", &"add variable", &"change default", &"take away", &"take away", &"take away",
]

var _town: Town
var _extras: int = 0
# What was added and may be taken away again: each the object that holds it, the list it is in, and it.
var _added: Array[Array] = []


func _init(town: Town) -> void:
	_town = town


func edit() -> void:
	var of := _town.any_design()
	var state: SCMachineState = _town.dice.pick(of.design.all_states())
	var may_hold := not state.is_end_state
	match _town.dice.pick(EDITS):
		&"add action":
			_add(state, &"actions", of.action())
		&"replace wait":
			_replace_waits(of, state)
		&"drop action":
			for action: SCMachineAction in state.actions:
				if not of.valid or not Design.takes_time(action):
					state.actions.erase(action)
					break
		&"order actions" when not state.actions.is_empty():
			state.actions = state.actions.slice(1) + state.actions.slice(0, 1)
		&"clear" when not of.valid:
			state.actions.clear()
		&"toggle end" when not of.valid:
			state.is_end_state = not state.is_end_state
		&"add transition":
			var to: SCMachineState = _town.dice.pick(of.design.states)
			_add(state, &"transitions", of.transition(_town.dice.pick(Filling.EVENTS.slice(0, -1)), to.state_name))
		&"drop transition" when not state.transitions.is_empty() and state != of.first:
			state.transitions.remove_at(_town.dice.randi_range(0, state.transitions.size() - 1))
		&"add sub-state" when may_hold and state.parallel_states.is_empty():
			_add(state, &"sub_states", _extra(of))
		&"add region" when may_hold and state.sub_states.is_empty():
			_add(state, &"parallel_states", of.parallel("Region %d" % _extras, [_extra(of), _extra(of)]))
		&"add state":
			_add(of.design, &"states", _extra(of))
		&"add variable":
			_extras += 1
			_add(of.design, &"variables", of.variable("extra %d" % _extras, 1.0))
		&"change default" when of.design.variables[1] != null:
			of.design.variables[1].default_value = _town.dice.randf()
		&"take away" when not _added.is_empty():
			var row: Array = _added.pop_at(_town.dice.randi_range(0, _added.size() - 1))
			((row[0] as Resource).get(row[1]) as Array).erase(row[2])


## In the same list, or in one of its own.
func _replace_waits(of: Design, state: SCMachineState) -> void:
	for i in state.actions.size():
		if state.actions[i] is SCWaitAction and state.actions[i].from_variables.is_empty():
			state.actions[i] = of.wait(_town.dice.randf_range(0.02, 0.1))
			_town.remember(state.actions[i])
			if _town.dice.one_in(2):
				state.actions = state.actions.duplicate()


func _add(holder: Resource, list_name: StringName, what: Resource) -> void:
	var list: Array = holder.get(list_name)
	if _town.dice.one_in(2):
		list = list.duplicate()
	list.insert(_town.dice.randi_range(0, list.size()), what)
	holder.set(list_name, list)
	_added.append([holder, list_name, what])
	_town.remember(what)


func _extra(of: Design) -> SCMachineState:
	_extras += 1
	return of.state("Extra %d" % _extras, [of.wait(0.05)])
