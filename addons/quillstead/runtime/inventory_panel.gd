@tool
class_name SCInventoryPanel
extends PanelContainer
## Shows an inventory as a grid of slots, and lets the player move things about in it. Two of them side by side, such as of the
## player and a chest, move things from one to the other.
##
## With the mouse, a click takes a stack up and another puts it down, and so does dragging it. A right click takes up half of a
## stack, or puts down one of what was taken up. A click with Shift moves a stack to the other panel that is open, and a double
## click chooses it. The keyboard and the gamepad walk over the slots, and do the same with the inputs below.
## [br][br]
## What is taken up stays in its inventory until it is put down, so nothing is ever lost. A panel of what somebody wears takes only
## what goes into its slots, and makes the changes of the items as Equip Item does.
## [br][br]
## Its slots are buttons of the theme type [code]InventorySlot[/code], and the numbers on them labels of the type
## [code]InventoryCount[/code], for a theme to give them a look of their own.

## The player chose what lies in a slot.
signal chosen(item: SCItem, how_many: int)
## The player moved so many of an item into this panel, out of this or another one.
signal put_in(item: SCItem, how_many: int)

## What a press on a slot does.
enum Press {
	## Takes the stack up, and puts it down again.
	MOVES,
	## Chooses the item, as for buying in a shop. Nothing can be moved then.
	CHOOSES,
}

const InputWords := preload("res://addons/quillstead/runtime/quillstead_input.gd")
const Hand := preload("res://addons/quillstead/runtime/inventory_hand.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

const SLOT: StringName = &"InventorySlot"
const COUNT: StringName = &"InventoryCount"

# All panels, for one of them to find the other and for all to show what is taken up.
const _GROUP: StringName = &"quillstead_inventory_panels"
const _TAKEN_UP: Color = Color(1.0, 1.0, 1.0, 0.4)
const _IN_EDITOR: int = 12

@export_group("Inventory")
## The inventory to show, or the node that has one. Empty shows that of the first node in [member owner_group].
@export_node_path var inventory_path: NodePath:
	set(value):
		inventory_path = value
		_find_later()
## The group of whoever's inventory is shown when [member inventory_path] is empty.
@export var owner_group: StringName = &"player":
	set(value):
		owner_group = value
		_find_later()
## Which of its inventories is shown, when it has one that it carries and one that it wears.
@export var which: SCInventory.Which = SCInventory.Which.EITHER:
	set(value):
		which = value
		_find_later()

@export_group("Slots")
## How many slots there are in a row.
@export_range(1, 20, 1, "or_greater") var columns: int = 6:
	set(value):
		columns = maxi(value, 1)
		redraw()
## How wide and high a slot is.
@export_range(16.0, 256.0, 1.0, "or_greater", "suffix:px") var slot_size: float = 56.0:
	set(value):
		slot_size = value
		redraw()
## How many rows there are at least for an inventory without a limit.
@export_range(1, 10, 1, "or_greater") var least_rows: int = 3:
	set(value):
		least_rows = maxi(value, 1)
		redraw()

@export_group("Play")
## What a press on a slot does.
@export var press: Press = Press.MOVES
## Whether the keyboard and the gamepad can walk over the slots, beginning with the first when the panel is shown. Off for a panel
## that is always on the screen, such as a bar of tools, where it would take keys away from the game. The inputs below then mean
## the slot under the mouse.
@export var takes_focus: bool = true:
	set(value):
		takes_focus = value
		redraw()
## Presses the slot that is walked on, beside what presses every button: a project has no gamepad button for that by itself.
@export var press_with: StringName = &"Pad: Bottom Button (A / Cross)"
## Puts what was taken up back to where it was, beside what cancels everywhere.
@export var put_back_with: StringName = &"Pad: Right Button (B / Circle)"
## Takes up half of the stack that is walked on, or puts down one of what was taken up.
@export var split_with: StringName = &"Key: H or Pad: Left Button (X / Square)"
## Moves the stack that is walked on to the other panel that is open.
@export var move_over_with: StringName = &"Key: M or Pad: Right Shoulder (RB / R1)"
## Chooses what is walked on: to wear it, use it or drop it.
@export var choose_with: StringName = &"Key: E or Pad: Top Button (Y / Triangle)"
## The event that is sent when something is chosen. It carries the item.
@export var chosen_event: StringName
## The node whose machine is sent the event. Empty is the machine above the panel, or else that of whoever the inventory belongs to.
@export_node_path var tells_path: NodePath

## The inventory that is shown. Null when there is none. Set it to show another one, such as of a chest that was opened.
var inventory: SCInventory:
	get:
		return inventory if is_instance_valid(inventory) and not inventory.is_queued_for_deletion() else null
	set(value):
		var before := inventory
		if value == before:
			return
		if before != null:
			before.changed.disconnect(redraw)
			before.tree_exited.disconnect(_find_later)
		inventory = value
		if value != null:
			value.changed.connect(redraw)
			value.tree_exited.connect(_find_later)
		redraw()

var _grid: GridContainer
# What is taken up, shown at the mouse or over the slot that is walked on.
var _ghost: TextureRect
var _ghost_count: Label
var _leads: bool = false
var _by_mouse: bool = true
var _is_due: bool = false
# The slot under the mouse, -1 for none.
var _hovered: int = -1
# Whether it shows what it was told to by the game, rather than what the settings say.
var _is_told: bool = false


func _init() -> void:
	_grid = GridContainer.new()
	add_child(_grid, false, INTERNAL_MODE_BACK)
	visibility_changed.connect(_on_visibility_changed)


func _ready() -> void:
	if not Engine.is_editor_hint():
		add_to_group(_GROUP)
		_make_ghost()
		_find()
		if inventory == null and not inventory_path.is_empty():
			_warn_nothing_there.call_deferred()
	_draw_slots()
	_on_visibility_changed()


func _exit_tree() -> void:
	if _leads:
		_put_back()


func _process(_delta: float) -> void:
	if inventory == null:
		_find()
	if _leads:
		_show_ghost()
	set_process(inventory == null or _leads)


func _input(event: InputEvent) -> void:
	if _leads and (event.is_action_pressed(&"ui_cancel") or _is_pressed(event, put_back_with)):
		_put_back()
		get_viewport().set_input_as_handled()
	elif _hovered >= 0 and not takes_focus and not event is InputEventMouse and is_visible_in_tree():
		_on_slot_input(event, _hovered)


func _notification(what: int) -> void:
	if what == NOTIFICATION_TRANSLATION_CHANGED:
		redraw()


## Shows the inventory of [param node], such as of the chest that was opened. Null shows what the settings say again.
func show_inventory_of(node: Node) -> void:
	var found := SCInventory.on(node, which)
	_is_told = found != null
	if found == null and node != null:
		MakerWarnings.once_for(self, "nothing on it", "%s was told to show the inventory of %s, which has none. Add an Inventory node under it." % [
			name, node.name])
	inventory = found
	if found == null:
		_find_later()


## Shows everything anew at the end of the frame. An inventory that changes does it by itself.
func redraw() -> void:
	if not _is_due and is_inside_tree():
		_is_due = true
		_draw_slots.call_deferred()


## The button that stands for a slot, counted from 0. Null when there is none.
func slot_button(place: int) -> Button:
	return _grid.get_child(place) as Button if place >= 0 and place < _grid.get_child_count() else null


## As a press on a slot does: takes it up, puts down what was taken up, or chooses it.
func press_slot(place: int) -> void:
	var bag := inventory
	if bag == null:
		return
	if press == Press.CHOOSES:
		choose(place)
	elif Hand.stack() == null:
		_take_up(place, false)
	else:
		_put_down(place, 0)


## Takes up half of the stack in a slot, at least one. With something taken up already, puts down one of it.
func split_slot(place: int) -> void:
	if inventory == null or press == Press.CHOOSES:
		return
	if Hand.stack() == null:
		_take_up(place, true)
	else:
		_put_down(place, 1)


## Moves the stack in a slot to the other panel that is open, wherever it fits.
func move_over(place: int) -> void:
	var other := _other_panel()
	if inventory == null or other == null or press == Press.CHOOSES:
		return
	var lying := inventory.stack_at(place)
	var went := Hand.move_over(inventory, place, other.inventory) if lying != null else 0
	if went > 0 and is_instance_valid(other):
		other.put_in.emit(lying.item, went)


## Chooses what lies in a slot.
func choose(place: int) -> void:
	var lying := inventory.stack_at(place) if inventory != null else null
	if lying == null:
		return
	var item := lying.item
	var machine := _machine_to_tell()
	chosen.emit(item, lying.how_many)
	if chosen_event.is_empty():
		return
	if is_instance_valid(machine):
		machine.send_event(chosen_event, item)
	else:
		MakerWarnings.once_for(self, "nobody to tell", "%s has nobody to send %s to. Put a Machine on the node named in Tells Path." % [name, chosen_event])


func _take_up(place: int, half: bool) -> void:
	var lying := inventory.stack_at(place)
	if lying == null:
		return
	Hand.take_up(inventory, place, maxi(floori(lying.how_many / 2.0), 1) if half else lying.how_many)
	_leads = true
	set_process(true)
	_redraw_all()


func _put_down(place: int, how_many: int) -> void:
	var item := Hand.stack().item
	var went := Hand.put(inventory, place, how_many)
	_redraw_all()
	if went > 0:
		put_in.emit(item, went)


func _put_back() -> void:
	_leads = false
	Hand.let_go()
	if is_instance_valid(_ghost):
		_ghost.hide()
	_redraw_all()


func _redraw_all() -> void:
	if is_inside_tree():
		get_tree().call_group(_GROUP, &"redraw")


func _other_panel() -> SCInventoryPanel:
	for node in get_tree().get_nodes_in_group(_GROUP):
		var panel := node as SCInventoryPanel
		if panel != null and panel != self and panel.is_visible_in_tree() and panel.press == Press.MOVES and panel.inventory not in [null, inventory]:
			return panel
	return null


func _machine_to_tell() -> SCMachine:
	if not tells_path.is_empty():
		return SCMachine.machine_of_or_above(get_node_or_null(tells_path))
	var machine := SCMachine.machine_of_or_above(self)
	return machine if machine != null or inventory == null else SCMachine.machine_of_or_above(inventory)


func _find_later() -> void:
	if is_inside_tree():
		_find.call_deferred()


func _find() -> void:
	if not is_inside_tree() or (_is_told and inventory != null):
		return
	_is_told = false
	var node := get_node_or_null(inventory_path) if not inventory_path.is_empty() else _first_owner()
	inventory = SCInventory.on(node, which)
	redraw()
	set_process(inventory == null and not Engine.is_editor_hint())


func _first_owner() -> Node:
	for node in get_tree().get_nodes_in_group(owner_group) if not owner_group.is_empty() else []:
		if SCInventory.on(node, which) != null:
			return node
	return null


func _warn_nothing_there() -> void:
	if inventory == null and is_inside_tree():
		MakerWarnings.once_for(self, "nothing there", "%s shows nothing, as there is no Inventory at %s. Pick an Inventory node, or a node that has one." % [
			name, inventory_path])


func _on_visibility_changed() -> void:
	if Engine.is_editor_hint() or not is_inside_tree():
		return
	if not is_visible_in_tree():
		if _leads:
			_put_back()
	elif takes_focus:
		_focus_first.call_deferred()


func _focus_first() -> void:
	if not is_inside_tree() or not is_visible_in_tree() or not takes_focus or _grid.get_child_count() == 0:
		return
	var focused := get_viewport().gui_get_focus_owner()
	if focused == null or not focused.is_visible_in_tree():
		(_grid.get_child(0) as Control).grab_focus()


func _slot_count() -> int:
	var bag := inventory
	if Engine.is_editor_hint():
		return bag.slots if bag != null and bag.slots > 0 else _IN_EDITOR
	if bag == null:
		return 0
	var in_use := bag.held[-1].place + 1 if bag.stacks() > 0 else 0
	if bag.slots > 0:
		return maxi(bag.slots, in_use)
	return maxi(ceili((in_use + 1) / float(columns)), least_rows) * columns


func _draw_slots() -> void:
	_is_due = false
	if not is_inside_tree():
		return
	_grid.columns = columns
	var count := _slot_count()
	while _grid.get_child_count() < count:
		_add_slot(_grid.get_child_count())
	while _grid.get_child_count() > count:
		var last := _grid.get_child(-1)
		_grid.remove_child(last)
		last.queue_free()
	for place in count:
		_show_slot(_grid.get_child(place) as Button, place)
	if not Engine.is_editor_hint() and _leads:
		_show_ghost()


func _add_slot(place: int) -> void:
	var slot := Button.new()
	slot.theme_type_variation = SLOT
	slot.expand_icon = true
	slot.icon_alignment = HORIZONTAL_ALIGNMENT_CENTER
	slot.clip_text = true
	slot.text_overrun_behavior = TextServer.OVERRUN_TRIM_ELLIPSIS
	slot.auto_translate_mode = Node.AUTO_TRANSLATE_MODE_DISABLED
	slot.add_child(_make_count())
	if not Engine.is_editor_hint():
		slot.pressed.connect(press_slot.bind(place))
		slot.mouse_entered.connect(_on_hovered.bind(place, true))
		slot.mouse_exited.connect(_on_hovered.bind(place, false))
		slot.gui_input.connect(_on_slot_input.bind(place))
		slot.set_drag_forwarding(_drag.bind(place), _can_drop.bind(place), _drop.bind(place))
	_grid.add_child(slot)


func _make_count() -> Label:
	var count := Label.new()
	count.name = "Count"
	count.theme_type_variation = COUNT
	count.mouse_filter = Control.MOUSE_FILTER_IGNORE
	count.auto_translate_mode = Node.AUTO_TRANSLATE_MODE_DISABLED
	count.set_anchors_and_offsets_preset(Control.PRESET_FULL_RECT, Control.PRESET_MODE_MINSIZE, 2)
	count.horizontal_alignment = HORIZONTAL_ALIGNMENT_RIGHT
	count.vertical_alignment = VERTICAL_ALIGNMENT_BOTTOM
	return count


func _show_slot(slot: Button, place: int) -> void:
	slot.custom_minimum_size = Vector2(slot_size, slot_size)
	slot.focus_mode = Control.FOCUS_ALL if takes_focus else Control.FOCUS_NONE
	var count: Label = slot.get_node(^"Count")
	var bag := inventory if not Engine.is_editor_hint() else null
	var lying := bag.stack_at(place) if bag != null else null
	if lying == null:
		var slot_name := String(bag.slot_names[place]).capitalize() if bag != null and place < bag.slot_names.size() else ""
		slot.icon = null
		slot.text = slot_name
		slot.tooltip_text = slot_name
		slot.modulate = _TAKEN_UP if not slot_name.is_empty() else Color.WHITE
		count.text = ""
		return
	var item := lying.item
	var taken_up := Hand.how_many() if Hand.bag() == bag and Hand.place() == place else 0
	slot.icon = item.icon
	slot.text = item.shown_name() if item.icon == null else ""
	slot.tooltip_text = "\n".join(PackedStringArray([item.shown_name(), tr(item.line)]).slice(0, 1 if item.line.is_empty() else 2))
	slot.modulate = _TAKEN_UP if taken_up == lying.how_many else Color.WHITE
	count.text = str(lying.how_many - taken_up) if lying.how_many - taken_up > 1 else ""


func _make_ghost() -> void:
	_ghost = TextureRect.new()
	_ghost.top_level = true
	_ghost.z_index = RenderingServer.CANVAS_ITEM_Z_MAX
	_ghost.mouse_filter = Control.MOUSE_FILTER_IGNORE
	_ghost.expand_mode = TextureRect.EXPAND_IGNORE_SIZE
	_ghost.stretch_mode = TextureRect.STRETCH_KEEP_ASPECT_CENTERED
	_ghost_count = _make_count()
	_ghost.add_child(_ghost_count)
	_ghost.hide()
	add_child(_ghost, false, INTERNAL_MODE_BACK)


func _show_ghost() -> void:
	var lying := Hand.stack()
	if lying == null:
		_put_back()
		return
	var size_of_it := Vector2(slot_size, slot_size) * 0.8
	_ghost.size = size_of_it
	_ghost.texture = lying.item.icon
	_ghost_count.text = str(Hand.how_many()) if lying.item.icon != null else "%s %d" % [lying.item.shown_name(), Hand.how_many()]
	var focused := get_viewport().gui_get_focus_owner()
	if _by_mouse or focused == null:
		_ghost.global_position = get_global_mouse_position() - size_of_it * 0.5
	else:
		_ghost.global_position = focused.global_position + focused.size * 0.3
	_ghost.show()


func _on_hovered(place: int, is_over: bool) -> void:
	if is_over or _hovered == place:
		_hovered = place if is_over else -1


func _on_slot_input(event: InputEvent, place: int) -> void:
	if event is InputEventMouse:
		_by_mouse = true
	elif event.is_pressed() and takes_focus:
		_by_mouse = false
	var click := event as InputEventMouseButton
	var is_taken := true
	if click != null and click.pressed and click.button_index == MOUSE_BUTTON_RIGHT:
		split_slot(place)
	elif click != null and click.pressed and click.button_index == MOUSE_BUTTON_LEFT and click.shift_pressed and press == Press.MOVES:
		move_over(place)
	elif click != null and click.pressed and click.double_click and click.button_index == MOUSE_BUTTON_LEFT and press == Press.MOVES:
		_put_back()
		choose(place)
	elif _is_pressed(event, press_with):
		press_slot(place)
	elif _is_pressed(event, split_with):
		split_slot(place)
	elif _is_pressed(event, move_over_with):
		move_over(place)
	elif _is_pressed(event, choose_with):
		choose(place)
	else:
		is_taken = false
	if is_taken and is_inside_tree():
		get_viewport().set_input_as_handled()


func _is_pressed(event: InputEvent, input: StringName) -> bool:
	if event is InputEventMouseMotion or input.is_empty():
		return false
	var action := InputWords.action_for(input)
	return not action.is_empty() and event.is_action_pressed(action)


func _drag(_at: Vector2, place: int) -> Variant:
	var lying := inventory.stack_at(place) if inventory != null and press == Press.MOVES else null
	if lying == null:
		return null
	Hand.let_go()
	_leads = false
	_ghost.hide()
	var preview := TextureRect.new()
	preview.texture = lying.item.icon
	preview.expand_mode = TextureRect.EXPAND_IGNORE_SIZE
	preview.size = Vector2(slot_size, slot_size) * 0.8
	if lying.item.icon == null:
		var words := Label.new()
		words.text = lying.item.shown_name()
		preview.add_child(words)
	_grid.get_child(place).call(&"set_drag_preview", preview)
	return {"quillstead_bag": inventory.get_instance_id(), "place": place, "key": lying.item.key()}


func _dragged_from(data: Variant) -> SCInventory:
	if not data is Dictionary or not (data as Dictionary).has("quillstead_bag") or not is_instance_id_valid(data["quillstead_bag"] as int):
		return null
	var from := instance_from_id(data["quillstead_bag"] as int) as SCInventory
	var lying := from.stack_at(data["place"] as int) if from != null else null
	return from if lying != null and lying.item.key() == data["key"] else null


func _can_drop(_at: Vector2, data: Variant, place: int) -> bool:
	var from := _dragged_from(data)
	return from != null and inventory != null and press == Press.MOVES and from.would_put(data["place"] as int, inventory, place) > 0


func _drop(_at: Vector2, data: Variant, place: int) -> void:
	var from := _dragged_from(data)
	if from == null or inventory == null:
		return
	var item := from.stack_at(data["place"] as int).item
	var went := Hand.move(from, data["place"] as int, inventory, place, 0)
	if went > 0:
		put_in.emit(item, went)
