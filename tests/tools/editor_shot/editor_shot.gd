@tool
extends EditorPlugin
## Shows actions of a template in the inspector, each beside its kind's page of the help, leaves a picture of each and
## closes the editor. Run by [code]./dev editor-shot[/code], which enables it in a project of its own and hands over the
## folder for the pictures and the kinds to show.

const TEMPLATE: String = "res://shown.tres"
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
	var actions := _actions_of(_shown_kinds(asked))
	for action in actions:
		EditorInterface.edit_resource(action)
		EditorInterface.set_main_screen_editor("Script")
		EditorInterface.get_script_editor().goto_help("class_name:%s" % action.get_class())
		await _frames(SETTLE)
		_take(action.get_class())
	if not actions.is_empty():
		await _show_a_tooltip()
		_take("tooltip")
	get_tree().quit(1 if _failed or actions.is_empty() else 0)


func _shown_kinds(asked: PackedStringArray) -> Array[StringName]:
	var kinds: Array[StringName] = []
	for name: StringName in asked if not asked.is_empty() else SHOWN.keys():
		if ClassDB.can_instantiate(name):
			kinds.append(name)
		else:
			print("%s is not a kind of this library" % name)
	return kinds


## As a game maker's: out of a file, in a state of a template.
func _actions_of(kinds: Array[StringName]) -> Array[SCMachineAction]:
	var template := SCMachineTemplate.new()
	var state := SCMachineState.new()
	state.state_name = &"Shown"
	template.states = [state]
	for kind in kinds:
		var made: Resource = ClassDB.instantiate(kind)
		if made is SCMachineCondition:
			var check: SCMachineAction = ClassDB.instantiate(&"SCCheckAction")
			check.set(&"condition", made)
			made = check
		for setting: StringName in SHOWN.get(kind, {}):
			made.set(setting, SHOWN[kind][setting])
		if made.get_class() == "SCCheckAction" and made.get(&"condition") == null:
			made.set(&"condition", ClassDB.instantiate(&"SCVariableCondition"))
		state.actions.append(made)
	ResourceSaver.save(template, TEMPLATE)
	var loaded: SCMachineTemplate = load(TEMPLATE)
	var actions: Array[SCMachineAction] = []
	actions.assign((loaded.states[0] as SCMachineState).actions)
	return actions


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
