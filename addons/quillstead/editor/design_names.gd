@tool
extends RefCounted
## The names that a setting of a design may hold: states, events and variables of the design itself, groups and input
## actions of the game. They are offered, and any other can be typed in.

## What a setting names.
enum Role { NOTHING, STATE, EVENT, VARIABLE, GROUP, INPUT }

const OF_A_TRANSITION: Dictionary[StringName, Role] = {&"event": Role.EVENT, &"to_state": Role.STATE, &"store_data_in": Role.VARIABLE}
const OF_A_VARIABLE: Dictionary[StringName, Role] = {&"never_below": Role.VARIABLE, &"never_above": Role.VARIABLE}


## The names for a setting of [param object], which is part of [param design]. Groups are also looked for in
## [param scene]. Empty where a setting names nothing of the kind.
static func offered(design: Object, object: Object, setting: StringName, scene: Node = null) -> PackedStringArray:
	match role_of(object, setting):
		Role.STATE:
			return states_of(design)
		Role.EVENT:
			return events_of(design)
		Role.VARIABLE:
			return variables_of(design)
		Role.GROUP:
			return groups_in(scene)
		Role.INPUT:
			return _settings_below("input/")
	return []


## What a setting names, told by its own name.
static func role_of(object: Object, setting: StringName) -> Role:
	if object is SCMachineTransition:
		return OF_A_TRANSITION.get(setting, Role.NOTHING)
	if object is SCMachineVariable:
		return OF_A_VARIABLE.get(setting, Role.NOTHING)
	if not (object is SCMachineAction or object is SCMachineCondition):
		return Role.NOTHING
	var name := String(setting)
	var naming := SCMachineAction.naming_settings(object)
	if name.ends_with("_variable") or name.begins_with("variable_") or setting in naming[0] or setting in naming[1]:
		return Role.VARIABLE
	if name == "event" or setting in naming[2]:
		return Role.EVENT
	if name == "state_name" or name.ends_with("_state"):
		return Role.STATE
	if name == "group" or name.ends_with("_group"):
		return Role.GROUP
	return Role.INPUT if name.ends_with("_action") else Role.NOTHING


static func states_of(design: Object) -> PackedStringArray:
	var names := PackedStringArray()
	for part in parts_of(design):
		if part is SCMachineState:
			_add((part as SCMachineState).state_name, names)
	return names


## Those it declares, those its transitions wait for and those its actions send.
static func events_of(design: Object) -> PackedStringArray:
	var names := PackedStringArray()
	_add(SCMachineTransition.finished_event(), names)
	for part in parts_of(design):
		if part is SCMachineEvent:
			_add((part as SCMachineEvent).event_name, names)
		elif part is SCMachineTransition:
			_add((part as SCMachineTransition).event, names)
		elif part is SCMachineAction:
			for name in (part as SCMachineAction).events_sent():
				_add(name, names)
	return names


static func variables_of(design: Object) -> PackedStringArray:
	var names := PackedStringArray()
	for part in parts_of(design):
		if part is SCMachineVariable:
			_add((part as SCMachineVariable).name, names)
	return names


## Those the project declares, and those that nodes of the scene are in.
static func groups_in(scene: Node) -> PackedStringArray:
	var names := _settings_below("global_group/")
	if scene != null:
		for node: Node in [scene] + scene.find_children("*", "", true, false):
			for group in node.get_groups():
				_add(group, names)
	return names


## Every resource of a design, whichever way it is nested: states, actions, conditions, transitions, variables, events.
static func parts_of(design: Object) -> Array[Resource]:
	var found: Dictionary[Resource, bool] = {}
	if design is SCMachine and (design as SCMachine).template != null:
		_walk((design as SCMachine).template, found)
	if design != null:
		_walk(design, found)
	return found.keys()


## What [param object] holds itself: the items of its lists and the resources of its own that it is made of.
static func held_by(object: Object) -> Array[Resource]:
	var held: Array[Resource] = []
	for property in object.get_property_list():
		if not property["usage"] & PROPERTY_USAGE_STORAGE:
			continue
		if property["type"] == TYPE_ARRAY:
			for item: Variant in object.get(property["name"]):
				if is_part(item):
					held.append(item)
		elif property["type"] == TYPE_OBJECT and is_part(object.get(property["name"])):
			held.append(object.get(property["name"]))
	return held


## Whether it is a piece of a design.
static func is_part(value: Variant) -> bool:
	return (
		value is SCMachineState or value is SCMachineAction or value is SCMachineCondition or value is SCMachineTransition
		or value is SCMachineVariable or value is SCMachineEvent or value is SCMachineParallelState or value is SCMachineNote
	)


static func _walk(object: Object, found: Dictionary[Resource, bool]) -> void:
	for part in held_by(object):
		if not found.has(part):
			found[part] = true
			_walk(part, found)


static func _settings_below(folder: String) -> PackedStringArray:
	var names := PackedStringArray()
	for property in ProjectSettings.get_property_list():
		if String(property["name"]).begins_with(folder):
			_add(String(property["name"]).trim_prefix(folder), names)
	return names


## A comma would part it in the engine's list, and a name that begins with an underscore is the engine's own.
static func _add(name: String, names: PackedStringArray) -> void:
	if not (name.is_empty() or name.contains(",") or name.begins_with("_") or names.has(name)):
		names.append(name)
