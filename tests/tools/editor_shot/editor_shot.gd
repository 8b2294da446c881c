@tool
extends EditorPlugin
## Shows actions of a template in the inspector, each beside its kind's page of the help, then a state with its list of
## actions, the list under Add and the whole template, leaves a picture of each and closes the editor. Run by [code]./dev editor-shot[/code], which enables it in a project of its own and hands over the
## folder for the pictures and the kinds to show.

const TEMPLATE: String = "res://shown.tres"
const SCENE: String = "res://hall.tscn"
const CHECK: StringName = &"SCCheckAction"
## What a game maker would have typed in; a kind that is not here is shown as it starts.
const SHOWN: Dictionary[StringName, Dictionary] = {
	&"SCSetVariableAction": {"variable_name": &"score", "operation": 1, "value": 2},
	&"SCSendEventAction": {"event_name": &"alarm", "reach": 1, "to_group": &"guards", "delay": 0.5},
	&"SCCheckAction": {"true_event": &"won"},
	&"SCMathAction": {},
	&"SCMoveToAction": {"seconds_variable": &"pace"},
}
## Rests that are long enough for the editor to lay out and draw what was asked of it.
const WARM_UP: int = 240
const SETTLE: int = 90
const TOOLTIP: int = 90

var _folder: String = ""
var _failed: bool = false


func _enter_tree() -> void:
	var arguments := OS.get_cmdline_user_args()
	if not arguments.is_empty():
		_folder = arguments[0]
		_take_pictures.call_deferred(arguments.slice(1))


func _take_pictures(asked: PackedStringArray) -> void:
	await _frames(WARM_UP)
	EditorInterface.get_inspector().custom_minimum_size.x = 380.0
	var shown := _made_of(_shown_kinds(asked))
	for kind in shown:
		EditorInterface.edit_resource(kind)
		EditorInterface.set_main_screen_editor("Script")
		EditorInterface.get_script_editor().goto_help("class_name:%s" % kind.get_class())
		await _frames(SETTLE)
		_take(kind.get_class())
	if not shown.is_empty():
		await _show_a_tooltip()
		_take("tooltip")
	await _show_a_design()
	get_tree().quit(1 if _failed or shown.is_empty() else 0)


func _shown_kinds(asked: PackedStringArray) -> Array[StringName]:
	var kinds: Array[StringName] = []
	for name: StringName in asked if not asked.is_empty() else SHOWN.keys():
		if ClassDB.class_exists(name) and ClassDB.can_instantiate(name):
			kinds.append(name)
		else:
			print("%s is not a kind of this library" % name)
	return kinds


## As a game maker's: out of a file, in a state of a template; a question within a Check.
func _made_of(kinds: Array[StringName]) -> Array[Resource]:
	var state := SCMachineState.new()
	state.state_name = &"Shown"
	for kind in kinds:
		var made: Resource = ClassDB.instantiate(kind)
		for setting: StringName in SHOWN.get(kind, {}):
			made.set(setting, SHOWN[kind][setting])
		var action := made as SCMachineAction
		if made is SCMachineCondition:
			action = ClassDB.instantiate(CHECK)
			action.set(&"condition", made)
		elif kind == CHECK:
			action.set(&"condition", ClassDB.instantiate(&"SCVariableCondition"))
		state.actions.append(action)
	var template := SCMachineTemplate.new()
	template.states = [state]
	ResourceSaver.save(template, TEMPLATE)
	var loaded: SCMachineTemplate = load(TEMPLATE)
	var shown: Array[Resource] = []
	for i in kinds.size():
		var action: SCMachineAction = (loaded.states[0] as SCMachineState).actions[i]
		shown.append(action if ClassDB.is_parent_class(kinds[i], &"SCMachineAction") else action.get(&"condition"))
	return shown


## What is worked with most: a state, the list of kinds, and the machine of a scene with its states.
func _show_a_design() -> void:
	var scene := Node2D.new()
	scene.name = "Hall"
	var door := Sprite2D.new()
	door.name = "Door"
	var machine := SCMachine.new()
	machine.name = "Machine"
	for node: Node in [door, machine]:
		(scene if node == door else door).add_child(node)
		node.owner = scene
	machine.states = _states()
	machine.initial_state = machine.states[0]
	for name: StringName in [&"seen", &"alarm_level"]:
		var variable := SCMachineVariable.new()
		variable.name = name
		machine.variables.append(variable)
	var packed := PackedScene.new()
	if packed.pack(scene) == OK and ResourceSaver.save(packed, SCENE) == OK:
		EditorInterface.open_scene_from_path(SCENE)
	scene.free()
	await _frames(SETTLE)
	machine = EditorInterface.get_edited_scene_root().get_node(^"Door/Machine")
	EditorInterface.edit_node(machine)
	EditorInterface.get_script_editor().goto_help("class_name:SCMachineCondition")
	await _frames(SETTLE)
	_take("machine")
	EditorInterface.edit_resource(machine.states[0])
	await _frames(SETTLE)
	_take("state")
	for picture: Array in [["add_list", ""], ["add_list_search", "variable"]]:
		_press_add()
		await _frames(SETTLE)
		for search: LineEdit in EditorInterface.get_inspector().find_children("*", "LineEdit", true, false).filter(_is_search):
			search.text = picture[1]
			search.text_changed.emit(picture[1])
		await _frames(SETTLE)
		_take(picture[0])


func _is_search(line: LineEdit) -> bool:
	return line.placeholder_text == "Search" and line.is_visible_in_tree()


func _press_add() -> void:
	for button: Button in EditorInterface.get_inspector().find_children("*", "Button", true, false):
		if button.text == "Add Action" and button.is_visible_in_tree():
			button.pressed.emit()
			return
	print("There is no Add Action button")
	_failed = true


func _states() -> Array[SCMachineState]:
	var states: Array[SCMachineState] = []
	for row: Array in [[&"Watch", &"seen", &"Chase"], [&"Chase", &"lost", &"Watch"]]:
		var state := SCMachineState.new()
		state.state_name = row[0]
		var way := SCMachineTransition.new()
		way.event = row[1]
		way.to_state = row[2]
		state.transitions.append(way)
		for kind: StringName in [&"SCWaitAction", &"SCMoveToAction", &"SCSendEventAction"]:
			var action: SCMachineAction = ClassDB.instantiate(kind)
			if kind == &"SCSendEventAction":
				action.set(&"event_name", row[1])
			state.actions.append(action)
		states.append(state)
	return states


## Rests the pointer on the first setting of whatever the inspector shows.
func _show_a_tooltip() -> void:
	var shown := EditorInterface.get_inspector().find_children("*", "EditorProperty", true, false)
	if shown.is_empty():
		print("The inspector shows no setting")
		_failed = true
		return
	var at := (shown[0] as Control).get_global_rect().position + Vector2(30, 12)
	for step in 2:
		var motion := InputEventMouseMotion.new()
		motion.position = at + Vector2(step, 0)
		motion.global_position = motion.position
		get_viewport().push_input(motion)
		await _frames(2)
	await _frames(TOOLTIP)


func _take(name: String) -> void:
	var path := _folder.path_join(name + ".png")
	var error := EditorInterface.get_base_control().get_viewport().get_texture().get_image().save_png(path)
	if error != OK:
		print("%s cannot be written (%s)" % [path, error_string(error)])
		_failed = true


func _frames(count: int) -> void:
	for frame in count:
		await get_tree().process_frame
