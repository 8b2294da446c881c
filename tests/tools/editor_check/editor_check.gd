@tool
extends EditorPlugin
## Works in the editor as a game maker would and prints what came of it, a line each. The story [code]in_the_editor[/code]
## starts an engine with a project in which this is enabled, and judges the lines.

const SCENE: String = "res://hall.tscn"
const TEMPLATE: String = "res://guard.tres"
const SETTLE: int = 20

var _inspector: EditorInspector = EditorInterface.get_inspector()


func _enter_tree() -> void:
	_work.call_deferred()


func _work() -> void:
	await _frames(SETTLE)
	while EditorInterface.get_resource_filesystem().is_scanning():
		await _frames(1)
	await _in_a_scene()
	await _in_a_template()
	print("TOLD end")
	get_tree().quit()


func _in_a_scene() -> void:
	EditorInterface.open_scene_from_path(SCENE)
	await _frames(SETTLE)
	var machine: SCMachine = EditorInterface.get_edited_scene_root().get_node(^"Door/Machine")
	var state: SCMachineState = machine.states[0]
	await _edit(machine)
	_tell("side", SCMachineAction.get_shown_on_2d())
	_tell("starts in", _choices(&"initial_state"))
	_tell("state is called", state.resource_name)
	await _edit(state)
	_tell("action is called", state.actions[0].resource_name)
	_tell("transition is called", state.transitions[0].resource_name)

	# The list of kinds, and one added from it, taken back and done again.
	var list: EditorProperty = _property(&"actions")
	_press(list, "Add Action")
	await _frames(SETTLE)
	var titles := PackedStringArray()
	for tree: Tree in list.find_children("*", "Tree", true, false):
		for heading in tree.get_root().get_children():
			for item in heading.get_children():
				titles.append("%s/%s" % [heading.get_text(0), item.get_text(0)])
	_tell("offers", titles)
	var added: RefCounted
	for tree: Tree in list.find_children("*", "Tree", true, false):
		for heading in tree.get_root().get_children():
			for item in heading.get_children():
				if item.get_text(0) == "Translate":
					added = item.get_metadata(0)
	list.call(&"add_kind", added)
	await _frames(SETTLE)
	_tell("added", "%d, speed %s" % [state.actions.size(), state.actions[-1].get(&"speed")])
	var history := get_undo_redo().get_history_undo_redo(get_undo_redo().get_object_history_id(state))
	history.undo()
	_tell("undone", state.actions.size())
	history.redo()
	_tell("redone", state.actions.size())

	await _edit(state.transitions[0])
	_tell("leads to", _choices(&"to_state"))
	_tell("on", _choices(&"event"))
	_tell("stores in", _choices(&"store_data_in"))
	await _edit(state.actions[2])
	_tell("a script's own event", _choices(&"alarm_event"))
	state.state_name = &"Look"
	await _frames(2)
	_tell("state is called then", state.resource_name)
	EditorInterface.save_scene()


func _in_a_template() -> void:
	var template: SCMachineTemplate = load(TEMPLATE)
	for runs: bool in [false, true]:
		var machine: SCMachine = EditorInterface.get_edited_scene_root().get_node(^"Door/Machine")
		machine.template = template if runs else null
		await _edit(template)
		await _edit(template.states[0].actions[0])
		var property := _property(&"node_path")
		var picked: Array[NodePath] = []
		property.property_changed.connect(func(_name: StringName, value: NodePath, _field: StringName, _changing: bool) -> void: picked.append(value))
		property.call(&"on_picked", ^"Lamp")
		_tell("path in a template that %s" % ("runs" if runs else "does not run"), picked)


func _edit(object: Object) -> void:
	if object is Node:
		EditorInterface.edit_node(object as Node)
	else:
		EditorInterface.edit_resource(object as Resource)
	await _frames(SETTLE)


func _property(named: StringName) -> EditorProperty:
	for property: EditorProperty in _inspector.find_children("*", "EditorProperty", true, false):
		if property.get_edited_property() == named:
			return property
	return null


## The words of a setting's list to pick from.
func _choices(named: StringName) -> PackedStringArray:
	var words := PackedStringArray()
	var property := _property(named)
	for choice: OptionButton in property.find_children("*", "OptionButton", true, false) if property != null else []:
		for at in choice.item_count:
			words.append(choice.get_item_text(at))
	return words


func _press(property: EditorProperty, text: String) -> void:
	for button: Button in property.find_children("*", "Button", true, false):
		if button.text == text:
			button.pressed.emit()
			return


func _tell(what: String, value: Variant) -> void:
	print("TOLD %s: %s" % [what, value])


func _frames(count: int) -> void:
	for frame in count:
		await get_tree().process_frame
