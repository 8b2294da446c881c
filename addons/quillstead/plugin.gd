@tool
extends EditorPlugin
## The editor's side of QuillStead. The library registers its own classes; this adds what the inspector does for designs.

# Loaded only once the library is there: its scripts name the library's classes.
const INSPECTOR: String = "res://addons/quillstead/editor/design_inspector.gd"

var _inspector: EditorInspectorPlugin


func _enter_tree() -> void:
	if not ClassDB.class_exists(&"SCMachine"):
		push_warning("QuillStead: its library is not loaded, so the inspector shows designs as plain resources. Put the library into addons/quillstead/bin and open the project again.")
		return
	_inspector = (load(INSPECTOR) as GDScript).new()
	add_inspector_plugin(_inspector)


func _exit_tree() -> void:
	if _inspector != null:
		remove_inspector_plugin(_inspector)
		_inspector = null
