extends RefCounted
## What becomes of the machine that saved its scene, when that is loaded.
##
## It plays on from the saving, as all others do. But where that leads straight out of the game or of the scene, as behind a button
## Save And Quit, nobody could ever play what was saved: such a machine is back in the state that it came from.

const _SAVE: String = "SCSaveGameAction"
const _LEADS_AWAY: Array[String] = ["SCQuitGameAction", "SCChangeSceneAction"]


## What [param machine] is to go on with in place of [param does], which may be the same.
static func mended(machine: SCMachine, does: Dictionary) -> Dictionary:
	var row := _saving_row(does)
	if row.is_empty():
		return does
	var all := machine.template.all_states() if machine.template != null else machine.all_states()
	var at := _state(all, row.get("state"))
	if at == null or not _leads_away(all, at, _saving_index(row), does):
		return does
	var back := does.duplicate()
	var came_from := _state(all, row.get("previous"))
	back["states"] = [] if came_from == null else [
		{"state": all.find(came_from), "name": came_from.state_name, "innermost": true, "entered_at": does.get("time", 0.0), "previous": -1}]
	return back


# The one with a Save Game in the middle of its work.
static func _saving_row(does: Dictionary) -> Dictionary:
	var states: Variant = does.get("states")
	for row: Variant in states if states is Array else []:
		if row is Dictionary and _saving_index(row as Dictionary) >= 0:
			return row
	return {}


static func _saving_index(row: Dictionary) -> int:
	var actions: Variant = row.get("actions")
	var list: Array = actions if actions is Array else []
	for index in list.size():
		var action: Variant = list[index]
		if action is Dictionary and action.get("kind") == _SAVE and action.get("started", false) and not action.get("finished", false):
			return index
	return -1


static func _state(all: Array, place: Variant) -> SCMachineState:
	return all[place] if place is int and place >= 0 and place < all.size() else null


static func _leads_away(all: Array, saving_in: SCMachineState, index: int, does: Dictionary) -> bool:
	for action: SCMachineAction in saving_in.actions.slice(index + 1):
		if _is_a_way_out(action):
			return true
	var events: Array[StringName] = [&"FINISHED"]
	if index < saving_in.actions.size() and saving_in.actions[index] is SCSaveGameAction:
		events.append((saving_in.actions[index] as SCSaveGameAction).worked_event)
	var ahead: Array[SCMachineState] = []
	# What is around it may be finished with it.
	for row: Variant in does.get("states", []):
		var around := _state(all, (row as Dictionary).get("state")) if row is Dictionary else null
		if around != null:
			ahead.append_array(_after(all, around, events))
	var seen: Dictionary[SCMachineState, bool] = {}
	while not ahead.is_empty():
		var state: SCMachineState = ahead.pop_back()
		if seen.has(state):
			continue
		seen[state] = true
		for within: SCMachineState in all:
			if within != state and not state.contains(within):
				continue
			if within.actions.any(_is_a_way_out):
				return true
			ahead.append_array(_after(all, within, [&"FINISHED"] as Array[StringName]))
	return false


static func _after(all: Array, state: SCMachineState, events: Array[StringName]) -> Array[SCMachineState]:
	var found: Array[SCMachineState] = []
	for way: SCMachineTransition in state.transitions:
		if way == null or way.event not in events:
			continue
		for to: SCMachineState in all:
			if to.state_name == way.to_state:
				found.append(to)
				break
	return found


static func _is_a_way_out(action: SCMachineAction) -> bool:
	if action == null or action.disabled:
		return false
	return action.get_class() in _LEADS_AWAY or (action is SCSaveGameAction and (action as SCSaveGameAction).what == SCSaveGameAction.LOAD_THE_SCENE)
