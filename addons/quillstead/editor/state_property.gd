@tool
extends EditorProperty
## Picks one of the states that are there, by its name.

var _from: StringName
var _choice := OptionButton.new()
var _states: Array[SCMachineState] = []


## [param from] is the setting of the same resource that lists the states.
func _init(from: StringName) -> void:
	_from = from
	_choice.clip_text = true
	_choice.item_selected.connect(func(at: int) -> void: emit_changed(get_edited_property(), _states[at]))
	add_child(_choice)
	add_focusable(_choice)


func _set_read_only(read_only: bool) -> void:
	_choice.disabled = read_only


func _update_property() -> void:
	var held: SCMachineState = get_edited_object().get(get_edited_property())
	_states = [null]
	for state: SCMachineState in get_edited_object().get(_from):
		if state != null:
			_states.append(state)
	if held not in _states:
		_states.append(held)
	# A machine without a state to start in does not start, while a state with others in it takes the first of them.
	var none := "(pick one)" if get_edited_property() == &"initial_state" else "(the first)"
	_choice.clear()
	for state in _states:
		_choice.add_item(none if state == null else String(state.state_name))
	_choice.select(_states.find(held))
