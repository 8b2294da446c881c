extends Story
## Words for a page of [code]docs/[/code] that is done as it says: its tables make a scene and the templates that its machines
## run.
##
## The first heading of a table says where it goes: "Add" to the template, "Add in Playing" into that state, which for a state
## means its sub-states, and "Change in Jump" sets what is there already. A table with the heading "Below" adds nodes.

## As the inspector writes what is left empty.
const NOTHING: String = "*nothing*"
const SWITCH: Dictionary[String, bool] = {"On": true, "Off": false}
## Words that the inspector writes small, but at either end of a name.
const SMALL: PackedStringArray = ["a", "an", "and", "as", "at", "by", "for", "in", "not", "of", "on", "or", "over", "per", "the", "then", "to"]
const RUNTIME: String = "res://addons/quillstead/runtime/"

var page: String = ""
## The templates that the page has made so far, by the names of their files.
var made: Dictionary[String, SCMachineTemplate] = {}
## Without it, what is added starts as it should be in 3D.
var in_2d: bool = true

# Where a table has got to: what it added or found last, the state that gets its actions, and the list that gets its states.
var _last: Object
var _state: SCMachineState
var _states: Array


## The cells of each table under the heading that holds [param words], in order.
func tables(words: String) -> Array:
	var found := []
	var is_here := false
	var was_row := false
	for line in page.split("\n"):
		if line.begins_with("#"):
			is_here = words in line
		var is_row := line.begins_with("|") and is_here
		if is_row and not was_row:
			found.append([])
		if is_row and not line.begins_with("|---"):
			var cells := Array(line.trim_prefix("|").trim_suffix("|").split("|"))
			(found.back() as Array).append(cells.map(func(cell: String) -> String: return cell.strip_edges()))
		was_row = is_row
	expect(not found.is_empty(), "the page has no table under a heading with %s" % words)
	return found


## Adds the nodes of a table to a scene.
func build(scene: Node, table: Array) -> void:
	expect_equal(table[0], ["Add", "Below", "Setting", "Value"])
	for row: Array in table.slice(1):
		if not row[0].is_empty():
			_last = _node(scene, row[0], row[1])
		if row[2] == "Group":
			(_last as Node).add_to_group(row[3], true)
		elif not row[2].is_empty():
			set_as_typed(_last, row[2], row[3])


## Does to a template what a table says.
func put_in(design: SCMachineTemplate, table: Array) -> void:
	var heading: String = table[0][0]
	expect_equal(table[0].slice(1), ["Setting", "Value"])
	_state = _state_of(design.states, heading.get_slice(" in ", 1)) if " in " in heading else null
	expect(_state != null or heading == "Add", "there is no state to %s" % heading)
	_states = design.states if _state == null else _state.sub_states
	for row: Array in table.slice(1):
		if not row[0].is_empty():
			_last = _found(row[0]) if heading.begins_with("Change") else _added(design, row[0])
		if not row[1].is_empty():
			set_as_typed(_last, row[1], row[2])


## As the inspector would, which shows a setting by its name and a choice by its label.
func set_as_typed(on: Object, label: String, typed: String) -> void:
	var step := label.get_slice(" > ", 0)
	for shown: Dictionary in on.get_property_list():
		var name: String = shown["name"]
		if _as_shown(name) != step or not shown["usage"] & PROPERTY_USAGE_EDITOR:
			continue
		if step != label:
			set_as_typed(on.get(name), label.trim_prefix(step + " > "), typed)
		else:
			on.set(name, _meant(on, shown, typed))
		return
	expect(false, "%s has no setting called %s in the inspector" % [on.get_class(), label])


## Everything that a design or a scene holds, as text without what files call the pieces.
func told(of: Variant) -> Variant:
	if of is Array:
		return (of as Array).map(told)
	if not of is Resource and not of is Node:
		return of
	var all := {"class": of.get_class()}
	var script: Script = of.get_script()
	if script != null:
		all["script"] = script.resource_path
	for property: Dictionary in of.get_property_list():
		var name: String = property["name"]
		if property["usage"] & PROPERTY_USAGE_STORAGE and not name.begins_with("resource_") and not name.begins_with("graph_") and name != "script":
			all[name] = told(of.get(name))
	if of is Node:
		var node: Node = of
		all["name"] = node.name
		all["groups"] = node.get_groups().filter(func(group: StringName) -> bool: return not group.begins_with("_") and not group.begins_with("quillstead"))
		all["children"] = node.get_children().map(told)
	return all


## What the page says between such marks.
func all_of(pattern: String) -> Array:
	return RegEx.create_from_string(pattern).search_all(page).map(func(found: RegExMatch) -> String: return found.get_string(1))


## The first of that class that the state does.
func action_of(in_state: SCMachineState, of: String) -> SCMachineAction:
	for action in in_state.actions:
		if action.get_class() == of:
			return action
	return null


func _as_shown(name: String) -> String:
	var words := name.capitalize().split(" ")
	for i in range(1, words.size() - 1):
		if words[i].to_lower() in SMALL:
			words[i] = words[i].to_lower()
	return " ".join(words)


func _node(scene: Node, cell: String, below: String) -> Node:
	var node: Node = _instantiated(cell.get_slice(" ", 0))
	node.name = cell.get_slice("`", 1) if "`" in cell else cell
	var parent := scene if below == scene.name else scene.find_child(below, true, false)
	expect(parent != null, "there is no node called %s" % below)
	parent.add_child(node, true)
	node.owner = scene
	return node


func _added(design: SCMachineTemplate, of: String) -> Resource:
	var added: Resource = _instantiated(of)
	if added is SCMachineAction and in_2d:
		SCMachineAction.suit_settings_2d(added)
	if added is SCMachineVariable:
		design.variables.append(added)
	elif added is SCMachineState:
		_states.append(added)
		_state = added
	elif added is SCMachineTransition:
		_state.transitions.append(added)
	else:
		_state.actions.append(added)
	return added


func _found(of: String) -> Resource:
	var found := action_of(_state, of)
	expect(found != null, "%s has no %s to change" % [_state, of])
	return found


func _state_of(states: Array, name: String) -> SCMachineState:
	for state: SCMachineState in states:
		if state.state_name == name:
			return state
		var inside := _state_of(state.sub_states, name)
		if inside != null:
			return inside
	return null


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	var now: Variant = on.get(shown["name"])
	if typed == NOTHING:
		return type_convert(null, shown["type"])
	if shown["hint"] == PROPERTY_HINT_ENUM:
		return _number_of(typed, shown["hint_string"])
	if shown["type"] == TYPE_OBJECT:
		if typed.ends_with(".gd"):
			return load(RUNTIME + typed)
		return made[typed] if typed.ends_with(".tres") else _instantiated(typed)
	if shown["type"] == TYPE_COLOR:
		return Color(typed)
	if shown["type"] == TYPE_BOOL:
		expect(SWITCH.has(typed), "%s is neither On nor Off" % typed)
		return SWITCH[typed]
	if now is String or now is StringName or now is NodePath:
		return type_convert(typed, typeof(now))
	if now is Vector2 or now is Vector3:
		return str_to_var(("Vector2" if now is Vector2 else "Vector3") + typed)
	var value: Variant = str_to_var(typed)
	return value if shown["type"] == TYPE_NIL and not (value is float or value is int) else type_convert(value, typeof(now))


func _number_of(typed: String, hint: String) -> int:
	var labels := hint.split(",")
	for i in labels.size():
		if labels[i].get_slice(":", 0) == typed:
			return int(labels[i].get_slice(":", 1)) if ":" in labels[i] else i
	expect(false, "there is no %s among %s" % [typed, hint])
	return 0


## With what the editor puts into a new one.
func _instantiated(of: String) -> Object:
	expect(ClassDB.can_instantiate(of), "there is no class called %s" % of)
	var fresh: Object = ClassDB.instantiate(of)
	for property: Dictionary in fresh.get_property_list():
		if property["usage"] & PROPERTY_USAGE_EDITOR_INSTANTIATE_OBJECT:
			fresh.set(property["name"], ClassDB.instantiate(property["class_name"]))
	return fresh
