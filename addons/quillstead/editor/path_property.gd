@tool
extends EditorProperty
## A node's path in a template that is edited by itself. The template has no place in a scene, so paths are seen from a machine
## of the open scene that runs it. Where there is none the path is typed in.

const WHY: String = (
	"No Machine of the open scene runs this template, so there is nothing to pick a node from. "
	+ "Open a scene with such a Machine, or type the path as that Machine sees it, such as ../Door."
)

var _machine_id: int
var _line := LineEdit.new()
var _pick := Button.new()


func _init(machine: SCMachine) -> void:
	_machine_id = machine.get_instance_id() if machine != null else 0
	_line.placeholder_text = "../Door"
	_line.size_flags_horizontal = Control.SIZE_EXPAND_FILL
	_line.text_submitted.connect(func(_text: String) -> void: _put(NodePath(_line.text)))
	_line.focus_exited.connect(func() -> void: _put(NodePath(_line.text)))
	_pick.text = "Pick"
	_pick.disabled = machine == null
	_pick.tooltip_text = WHY if machine == null else "Pick a node of the open scene, as seen from %s" % machine.name
	_line.tooltip_text = _pick.tooltip_text
	_pick.pressed.connect(func() -> void: EditorInterface.popup_node_selector(on_picked))
	var row := HBoxContainer.new()
	row.add_child(_line)
	row.add_child(_pick)
	add_child(row)
	add_focusable(_line)


## Takes the path of a node as the scene sees it. An empty one is nobody's choice.
func on_picked(path: NodePath) -> void:
	var scene := EditorInterface.get_edited_scene_root()
	var machine := instance_from_id(_machine_id) as SCMachine if is_instance_id_valid(_machine_id) else null
	var node := scene.get_node_or_null(path) if scene != null and not path.is_empty() else null
	if node != null and machine != null and machine.is_inside_tree():
		_put(machine.get_path_to(node))


func _set_read_only(read_only: bool) -> void:
	_line.editable = not read_only
	_pick.disabled = read_only or _machine_id == 0


func _update_property() -> void:
	_line.text = str(get_edited_object().get(get_edited_property()))


func _put(path: NodePath) -> void:
	if path != get_edited_object().get(get_edited_property()):
		emit_changed(get_edited_property(), path)
