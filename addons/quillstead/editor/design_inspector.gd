@tool
extends EditorInspectorPlugin
## What the inspector does for designs beyond what the engine does: lists of actions with an Add button, names to pick,
## states to pick, and paths that are seen from the machine.

const DesignNames := preload("design_names.gd")
const EditedDesign := preload("edited_design.gd")
const KindListProperty := preload("kind_list_property.gd")
const NodeNames := preload("node_names.gd")
const PathProperty := preload("path_property.gd")
const ShownNames := preload("shown_names.gd")
const StateProperty := preload("state_property.gd")

const KINDS: Array[StringName] = [&"SCMachineAction", &"SCMachineCondition"]
## Settings that are one of the states in another setting.
const STARTS: Dictionary[StringName, StringName] = {&"initial_state": &"states", &"start_sub_state": &"sub_states", &"start_state": &"states"}

var _edited := EditedDesign.new()
var _names := ShownNames.new()


func _can_handle(object: Object) -> bool:
	return object is SCMachine or object is SCMachineTemplate or DesignNames.is_part(object)


func _parse_begin(object: Object) -> void:
	_edited.shows(object)
	_names.follow(object)


func _parse_property(object: Object, type: Variant.Type, name: String, hint_type: PropertyHint, hint_string: String, usage: int, _wide: bool) -> bool:
	var editor: EditorProperty = null
	match type:
		TYPE_ARRAY, TYPE_OBJECT:
			editor = _editor_of_kinds(type, hint_string)
			if editor == null and STARTS.has(name) and hint_string == "SCMachineState":
				editor = StateProperty.new(STARTS[name])
		TYPE_STRING, TYPE_STRING_NAME:
			editor = _editor_of_names(object, type, name, hint_type, usage)
		TYPE_NODE_PATH:
			editor = _editor_of_a_path(object)
	if editor != null:
		add_property_editor(name, editor)
	return editor != null


func _editor_of_kinds(type: Variant.Type, hint_string: String) -> EditorProperty:
	for base in KINDS:
		if hint_string == base or (type == TYPE_ARRAY and hint_string.ends_with(":" + base)):
			return KindListProperty.new(base, type == TYPE_ARRAY, _names)
	return null


func _editor_of_names(object: Object, type: Variant.Type, name: String, hint_type: PropertyHint, usage: int) -> EditorProperty:
	if hint_type != PROPERTY_HINT_NONE:
		return null
	var scene := EditorInterface.get_edited_scene_root()
	var design := _edited.of(object)
	var names := DesignNames.offered(design, object, name, scene)
	if names.is_empty():
		names = NodeNames.offered(object, name, EditedDesign.machine_of(design, scene))
	if names.is_empty():
		return null
	return EditorInspector.instantiate_property_editor(object, type, name, PROPERTY_HINT_ENUM_SUGGESTION, ",".join(names), usage)


## In the inspector of a machine the engine follows paths from it by itself. A template has no place of its own.
func _editor_of_a_path(object: Object) -> EditorProperty:
	if not DesignNames.is_part(object) or EditorInterface.get_inspector().get_edited_object() is SCMachine:
		return null
	return PathProperty.new(EditedDesign.machine_of(_edited.of(object), EditorInterface.get_edited_scene_root()))
