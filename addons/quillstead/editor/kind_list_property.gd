@tool
extends EditorProperty
## Edits a list of actions, or the one condition of a Check: a row for each with its settings below it, and
## a button that adds one from the list of kinds. Every change can be undone.

const KindCatalog := preload("kind_catalog.gd")
const KindPicker := preload("kind_picker.gd")
const ShownNames := preload("shown_names.gd")

## What a row's own editor looks at. There is one for each resource, as it remembers whether it is unfolded.
static var _rows_of: Dictionary[int, Row] = {}

var _base: StringName
var _is_list: bool
var _names: ShownNames
var _column := VBoxContainer.new()
var _rows := VBoxContainer.new()
var _add := Button.new()
var _picker: KindPicker
var _shown: Array[Resource] = []


## Stands for a place in the list.
class Row:
	extends RefCounted

	var id: int
	var item: Resource:
		get:
			return instance_from_id(id) as Resource


func _init(base: StringName, is_list: bool, names: ShownNames) -> void:
	_base = base
	_names = names
	_is_list = is_list
	_add.text = "Add %s" % base.trim_prefix("SCMachine")
	_add.pressed.connect(_on_add)
	_column.add_child(_rows)
	_column.add_child(_add)
	add_child(_column)
	add_focusable(_add)
	set_bottom_editor(_column)


func _enter_tree() -> void:
	_add.icon = get_theme_icon(&"Add", &"EditorIcons")


func _update_property() -> void:
	var items := _items()
	if items != _shown or (_rows.get_child_count() == 0 and not items.is_empty()):
		_shown = items
		_show_rows()
	for row in _rows.get_children():
		(row.get_child(0) as EditorProperty).update_property()
	_add.visible = (_is_list or items.is_empty()) and not is_read_only()


## The button that opens the list of kinds.
func add_button() -> Button:
	return _add


## Adds a kind at the end of the list.
func add_kind(kind: KindCatalog.Kind) -> void:
	_put(_items() + [kind.make(SCMachineAction.get_shown_on_2d() == 1)])


func _items() -> Array[Resource]:
	var items: Array[Resource] = []
	if get_edited_object() == null:
		return items
	var value: Variant = get_edited_object().get(get_edited_property())
	if value is Array:
		items.assign(value)
	elif value is Resource:
		items.append(value)
	return items


func _put(items: Array) -> void:
	if not _is_list:
		emit_changed(get_edited_property(), items[0] if not items.is_empty() else null)
		return
	var list: Array = (get_edited_object().get(get_edited_property()) as Array).duplicate()
	list.assign(items)
	emit_changed(get_edited_property(), list)


func _show_rows() -> void:
	_names.follow(get_edited_object())
	for row in _rows.get_children():
		_rows.remove_child(row)
		row.queue_free()
	for at in _shown.size():
		_rows.add_child(_row(at))


func _row(at: int) -> HBoxContainer:
	var line := HBoxContainer.new()
	line.add_child(_settings_of(at, _shown[at]))
	if _is_list and _shown.size() > 1:
		_tool(line, &"MoveUp", "Move it up", at == 0, _move.bind(at, -1))
		_tool(line, &"MoveDown", "Move it down", at == _shown.size() - 1, _move.bind(at, 1))
	_tool(line, &"Remove", "Take it out", false, _remove.bind(at))
	return line


## The engine's own editor for a resource. It offers to make another of the same kind only: the others are under Add.
func _settings_of(at: int, item: Resource) -> EditorProperty:
	var row := _row_of(item)
	var editor := EditorInspector.instantiate_property_editor(row, TYPE_OBJECT, "item", PROPERTY_HINT_RESOURCE_TYPE, _class_of(item), PROPERTY_USAGE_DEFAULT)
	editor.set_object_and_property(row, &"item")
	editor.label = ""
	editor.name_split_ratio = 0.0
	editor.selectable = false
	editor.use_folding = true
	editor.read_only = is_read_only()
	editor.size_flags_horizontal = Control.SIZE_EXPAND_FILL
	editor.property_changed.connect(_on_changed.bind(at))
	editor.resource_selected.connect(func(_path: String, resource: Resource) -> void: EditorInterface.edit_resource(resource))
	return editor


func _class_of(item: Resource) -> String:
	if item == null:
		return _base
	var script: Script = item.get_script()
	return script.get_global_name() if script != null and not script.get_global_name().is_empty() else StringName(item.get_class())


static func _row_of(item: Resource) -> Row:
	var id := item.get_instance_id() if item != null else 0
	for known: int in _rows_of.keys():
		if not is_instance_id_valid(known):
			_rows_of.erase(known)
	if not _rows_of.has(id):
		var row := Row.new()
		row.id = id
		if id == 0:
			return row
		_rows_of[id] = row
	return _rows_of[id]


func _tool(line: HBoxContainer, icon: StringName, hint: String, off: bool, does: Callable) -> void:
	var button := Button.new()
	button.flat = true
	button.icon = EditorInterface.get_editor_theme().get_icon(icon, &"EditorIcons")
	button.tooltip_text = hint
	button.disabled = off or is_read_only()
	button.size_flags_vertical = Control.SIZE_SHRINK_BEGIN
	button.pressed.connect(does)
	line.add_child(button)


func _on_add() -> void:
	if _picker == null:
		_picker = KindPicker.new()
		_picker.picked.connect(add_kind)
		add_child(_picker)
	_picker.offer(_base)


func _on_changed(_property: StringName, value: Variant, _field: StringName, _changing: bool, at: int) -> void:
	var items := _items()
	if at >= items.size():
		return
	var fresh := value as Resource
	if fresh != null and fresh != items[at] and SCMachineAction.get_shown_on_2d() == 1 and is_as_it_starts(fresh):
		KindCatalog.Kind.suit(fresh)
	if value == null:
		items.remove_at(at)
	else:
		items[at] = fresh
	_put(items)


func _move(at: int, by: int) -> void:
	var items := _items()
	var item: Resource = items.pop_at(at)
	items.insert(at + by, item)
	_put(items)


func _remove(at: int) -> void:
	var items := _items()
	items.remove_at(at)
	_put(items)


## Whether nobody has set anything on it yet.
static func is_as_it_starts(made: Resource) -> bool:
	for property in made.get_property_list():
		var name: StringName = property["name"]
		if property["usage"] & PROPERTY_USAGE_EDITOR and property["usage"] & PROPERTY_USAGE_STORAGE and name != &"script":
			var starts_as: Variant = ClassDB.class_get_property_default_value(made.get_class(), name)
			if starts_as != null and made.get(name) != starts_as:
				return false
	return true
