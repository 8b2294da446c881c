@tool
extends ConfirmationDialog
## The list under Add: every kind by category, with a picture, what it is called and what it is for, and a search above.

## Somebody has picked a kind.
signal picked(kind: KindCatalog.Kind)

const KindCatalog := preload("kind_catalog.gd")
const KindIcons := preload("kind_icons.gd")
const SIZE: Vector2i = Vector2i(760, 560)

var _kinds: Array[KindCatalog.Kind] = []
var _search := LineEdit.new()
var _tree := Tree.new()
var _about := Label.new()


func _init() -> void:
	var column := VBoxContainer.new()
	_search.placeholder_text = "Search"
	_search.clear_button_enabled = true
	_search.text_changed.connect(_list)
	_search.text_submitted.connect(func(_text: String) -> void: _take())
	_search.gui_input.connect(_on_key)
	_tree.columns = 2
	_tree.hide_root = true
	_tree.set_column_expand(0, true)
	_tree.set_column_expand_ratio(0, 2)
	_tree.set_column_expand_ratio(1, 5)
	_tree.set_column_clip_content(1, true)
	_tree.size_flags_vertical = Control.SIZE_EXPAND_FILL
	_tree.item_selected.connect(_describe)
	_tree.item_activated.connect(_take)
	_about.autowrap_mode = TextServer.AUTOWRAP_WORD_SMART
	_about.custom_minimum_size.y = 66
	for control: Control in [_search, _tree, _about]:
		column.add_child(control)
	add_child(column)
	register_text_enter(_search)
	ok_button_text = "Add"
	confirmed.connect(_take)


## Shows the kinds of a base, [code]SCMachineAction[/code] or [code]SCMachineCondition[/code].
func offer(base: StringName) -> void:
	title = "Add %s" % base.trim_prefix("SCMachine")
	_kinds = KindCatalog.of(base)
	_search.clear()
	_list("")
	popup_centered(Vector2i(SIZE * EditorInterface.get_editor_scale()))
	_search.grab_focus()


## Shows those that fit what was typed in, and selects the first.
func _list(words: String) -> void:
	_tree.clear()
	var root := _tree.create_item()
	var headings: Dictionary[String, TreeItem] = {}
	var first: TreeItem = null
	for kind in _kinds:
		if not kind.fits(words):
			continue
		if not headings.has(kind.category):
			headings[kind.category] = _heading(root, kind.category, words.is_empty())
		var item := _tree.create_item(headings[kind.category])
		item.set_text(0, kind.title)
		item.set_icon(0, KindIcons.of(kind.category, kind.title, kind.icon_path))
		item.set_text(1, KindCatalog.first_sentence_of(kind.about))
		item.set_custom_color(1, _tree.get_theme_color(&"font_color") * Color(1, 1, 1, 0.6))
		item.set_metadata(0, kind)
		if first == null or kind.title.containsn(words) and not (first.get_text(0).containsn(words)):
			first = item
	if first != null and not words.is_empty():
		first.select(0)
		_tree.scroll_to_item(first)
	_describe()


func _heading(root: TreeItem, category: String, folded: bool) -> TreeItem:
	var heading := _tree.create_item(root)
	heading.set_text(0, category.capitalize())
	heading.set_icon(0, KindIcons.of(category))
	heading.set_selectable(0, false)
	heading.set_selectable(1, false)
	heading.collapsed = folded
	return heading


func _picked() -> KindCatalog.Kind:
	var item := _tree.get_selected()
	return item.get_metadata(0) if item != null else null


func _describe() -> void:
	var kind := _picked()
	_about.text = kind.about if kind != null else "%d to choose from." % _kinds.size()
	get_ok_button().disabled = kind == null


func _take() -> void:
	var kind := _picked()
	if kind != null and is_visible():
		hide()
		picked.emit(kind)


## The arrows move through the list while the pointer stays in the search.
func _on_key(event: InputEvent) -> void:
	var key := event as InputEventKey
	if key != null and key.pressed and key.keycode in [KEY_UP, KEY_DOWN, KEY_PAGEUP, KEY_PAGEDOWN]:
		_tree.grab_focus()
		get_viewport().push_input(key.duplicate() as InputEvent)
		_search.grab_focus()
