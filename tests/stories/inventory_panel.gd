extends Story
## The player looks into inventories and moves things about in them, with the mouse, the keyboard and a gamepad.

const Hand := preload("res://addons/quillstead/runtime/inventory_hand.gd")

var _window_size: Vector2i


func item(name: String = "Arrow", settings: Dictionary = {}) -> SCItem:
	return kind(SCItem, {"item_name": name}.merged(settings, true))


## Somebody with an inventory of these items and numbers.
func carrier(name: String, rows: Array, settings: Dictionary = {}) -> SCInventory:
	var made: SCInventory = add(SCInventory.new(), "Inventory", {"under": body(name)}.merged(settings, true))
	for at in range(0, rows.size(), 2):
		made.add(rows[at] as SCItem, rows[at + 1] as int)
	return made


func panel(shows: SCInventory, settings: Dictionary = {}) -> SCInventoryPanel:
	var path := NodePath("../%s" % shows.get_parent().name) if shows != null else ^""
	return add(SCInventoryPanel.new(), "", {"inventory_path": path, "slot_size": 40.0, "columns": 3}.merged(settings, true))


## What a player reads on the slots.
func read(from: SCInventoryPanel) -> Array:
	var slots: Array = []
	var place := 0
	while from.slot_button(place) != null:
		var button := from.slot_button(place)
		slots.append(("%s %s" % [button.text, (button.get_node(^"Count") as Label).text]).strip_edges())
		place += 1
	return slots


func click(on: Control, button: MouseButton = MOUSE_BUTTON_LEFT, shift: bool = false) -> void:
	mouse_to(on.get_global_rect().get_center())
	for down: bool in [true, false]:
		var event := InputEventMouseButton.new()
		event.button_index = button
		event.pressed = down
		event.shift_pressed = shift
		event.position = on.get_global_rect().get_center()
		event.global_position = event.position
		tree.root.push_input(event)
	await frames(2)


func mouse_to(at: Vector2, mask: MouseButtonMask = 0 as MouseButtonMask) -> void:
	var event := InputEventMouseMotion.new()
	event.position = at
	event.global_position = at
	event.relative = Vector2(20, 0)
	event.button_mask = mask
	tree.root.push_input(event)


func tap(event: InputEvent) -> void:
	for down: bool in [true, false]:
		event.set(&"pressed", down)
		tree.root.push_input(event.duplicate() as InputEvent)
	await frames(2)


func key(code: Key) -> void:
	var event := InputEventKey.new()
	event.keycode = code
	event.physical_keycode = code
	await tap(event)


func pad(button: JoyButton) -> void:
	var event := InputEventJoypadButton.new()
	event.button_index = button
	await tap(event)


## The window of a game that is not shown is too small for two panels.
func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_window_size = tree.root.size
	tree.root.size = Vector2i(640, 360)


func close() -> void:
	Hand.let_go()
	tree.root.size = _window_size
	await super()


func test_it_shows_what_is_there_as_it_changes() -> void:
	var arrow := item("Arrow", {"line": "Flies far."})
	var icon := GradientTexture2D.new()
	var bag := carrier("Player", [arrow, 5, item("Sword", {"icon": icon}), 1], {"slots": 4})
	var shown := panel(bag)
	await frames(2)
	expect_equal(read(shown), ["Arrow 5", "", "", ""])
	expect_equal([shown.slot_button(1).icon, shown.slot_button(0).tooltip_text, shown.slot_button(1).tooltip_text], [icon, "Arrow\nFlies far.", "Sword"])
	bag.take(arrow, 4)
	bag.add(item("Rope"), 2)
	await frames(2)
	expect_equal(read(shown), ["Arrow", "", "Rope 2", ""])
	bag.slots = 0
	bag.sort_by(SCInventory.SortBy.RARITY)
	bag.add(item("Hat"), 1)
	await frames(2)
	expect_equal(read(shown), ["Arrow", "", "Rope 2", "Hat", "", "", "", "", ""], "without a limit there is always a row to spare")


func test_clicks_pick_up_put_down_and_swap() -> void:
	var arrow := item("Arrow", {"most_in_a_stack": 6})
	var rope := item("Rope")
	var bag := carrier("Player", [arrow, 5, rope, 1], {"slots": 4})
	var shown := panel(bag)
	await frames(2)
	await click(shown.slot_button(0))
	expect_equal([Hand.how_many(), read(shown)[0], shown.slot_button(0).modulate.a < 1.0], [5, "Arrow", true])
	await click(shown.slot_button(3))
	expect_equal([Hand.how_many(), read(shown)], [0, ["", "Rope", "", "Arrow 5"]])
	await click(shown.slot_button(3))
	await click(shown.slot_button(1))
	expect_equal(read(shown), ["", "Arrow 5", "", "Rope"], "they change places")
	await click(shown.slot_button(1), MOUSE_BUTTON_RIGHT)
	expect_equal([Hand.how_many(), read(shown)[1]], [2, "Arrow 3"], "the odd one stays behind")
	await click(shown.slot_button(0), MOUSE_BUTTON_RIGHT)
	await click(shown.slot_button(0), MOUSE_BUTTON_RIGHT)
	expect_equal([Hand.how_many(), read(shown)], [0, ["Arrow 2", "Arrow 3", "", "Rope"]])
	await click(shown.slot_button(1))
	await click(shown.slot_button(3))
	await key(KEY_ESCAPE)
	expect_equal([Hand.how_many(), bag.count(arrow)], [0, 5])


func test_keys_and_a_gamepad() -> void:
	var arrow := item("Arrow")
	var bag := carrier("Player", [arrow, 9, item("Rope"), 1], {"slots": 6})
	var shown := panel(bag)
	await frames(3)
	expect_equal(tree.root.gui_get_focus_owner(), shown.slot_button(0))
	await key(KEY_H)
	await key(KEY_DOWN)
	await key(KEY_ENTER)
	expect_equal(read(shown), ["Arrow 5", "Rope", "", "Arrow 4", "", ""])
	await pad(JOY_BUTTON_A)
	await pad(JOY_BUTTON_DPAD_RIGHT)
	await pad(JOY_BUTTON_X)
	expect_equal([read(shown), Hand.how_many()], [["Arrow 5", "Rope", "", "Arrow", "Arrow", ""], 3])
	await pad(JOY_BUTTON_B)
	expect_equal(read(shown), ["Arrow 5", "Rope", "", "Arrow 3", "Arrow", ""])


func test_a_chest_beside_the_player() -> void:
	var coin := item("Coin", {"most_in_a_stack": 10})
	var chest := carrier("Chest", [coin, 8, item("Rope"), 1], {"slots": 3})
	var pack := carrier("Player", [coin, 9], {"slots": 2})
	pack.get_parent().add_to_group(&"player")
	var chest_panel := panel(chest)
	var pack_panel := panel(null)
	pack_panel.position = Vector2(200, 0)
	await frames(2)
	expect_equal(read(pack_panel), ["Coin 9", ""], "without a path it is the player's")
	await click(chest_panel.slot_button(0))
	await click(pack_panel.slot_button(0))
	expect_equal([read(chest_panel), read(pack_panel), Hand.how_many()], [["Coin", "Rope", ""], ["Coin 10", ""], 7])
	await click(pack_panel.slot_button(1))
	expect_equal([read(chest_panel), read(pack_panel)], [["", "Rope", ""], ["Coin 10", "Coin 7"]])
	await click(pack_panel.slot_button(0), MOUSE_BUTTON_LEFT, true)
	pack_panel.slot_button(1).grab_focus()
	await key(KEY_M)
	expect_equal([read(chest_panel), read(pack_panel)], [["Coin 10", "Rope", "Coin 7"], ["", ""]])
	await click(chest_panel.slot_button(0))
	chest.get_parent().free()
	await frames(2)
	expect_equal([read(chest_panel), read(pack_panel), Hand.how_many()], [[], ["", ""], 0])
	await click(pack_panel.slot_button(0))
	chest_panel.show_inventory_of(pack.get_parent())
	await frames(2)
	expect_equal(read(chest_panel), ["", ""])


func test_dragging() -> void:
	var arrow := item("Arrow")
	var chest := carrier("Chest", [arrow, 3], {"slots": 2})
	var pack := carrier("Player", [item("Rope"), 1], {"slots": 2})
	var chest_panel := panel(chest)
	var pack_panel := panel(pack)
	pack_panel.position = Vector2(200, 0)
	await frames(2)
	var from := chest_panel.slot_button(0).get_global_rect().get_center()
	var to := pack_panel.slot_button(0).get_global_rect().get_center()
	mouse_to(from)
	for down: bool in [true, false]:
		var event := InputEventMouseButton.new()
		event.button_index = MOUSE_BUTTON_LEFT
		event.pressed = down
		event.position = from if down else to
		event.global_position = event.position
		tree.root.push_input(event)
		if down:
			mouse_to(from + Vector2(30, 0), MOUSE_BUTTON_MASK_LEFT)
			mouse_to(to, MOUSE_BUTTON_MASK_LEFT)
			await frames(1)
	await frames(2)
	expect_equal([read(chest_panel), read(pack_panel)], [["Rope", ""], ["Arrow 3", ""]])


func test_putting_on_what_is_worn_changes_the_player() -> void:
	var change: SCItemChange = kind(SCItemChange, {"stat": &"power", "amount": 4.0})
	var sword := item("Sword", {"equips_to": "hand", "changes": [change] as Array[SCItemChange]})
	var pack := carrier("Player", [sword, 1, item("Rope"), 1])
	var player := pack.get_parent()
	add(SCInventory.new(), "Worn", {"under": player, "slot_names": [&"head", &"hand"] as Array[StringName]})
	var made := start(machine([state("Plays")], {"under": player, "variables": {"power": 1}}))
	var pack_panel := panel(pack, {"which": SCInventory.Which.CARRIED})
	var worn_panel := panel(pack, {"which": SCInventory.Which.WORN, "position": Vector2(200, 0)})
	await frames(2)
	expect_equal(read(worn_panel), ["Head", "Hand"])
	await click(pack_panel.slot_button(0))
	await click(worn_panel.slot_button(0))
	expect_equal([read(worn_panel), made.get_value(&"power")], [["Head", "Hand"], 1], "it does not go onto the head")
	await click(worn_panel.slot_button(1))
	expect_equal([read(worn_panel), made.get_value(&"power")], [["Head", "Sword"], 5])
	await click(worn_panel.slot_button(1), MOUSE_BUTTON_LEFT, true)
	expect_equal([read(worn_panel), made.get_value(&"power"), pack.count(sword)], [["Head", "Hand"], 1, 1])
	pack_panel.move_over(0)
	expect_equal([made.get_value(&"power"), pack.count(sword)], [5, 0])


func test_a_shop_is_told_what_was_chosen() -> void:
	var rope := item("Rope")
	var shelf := carrier("Shop", [rope, 3])
	var keeper := start(machine([state("Waits", [], [transition(&"BUY", &"Sells", &"wanted")]), state("Sells")],
		{"under": shelf.get_parent(), "variables": {"wanted": null}}))
	var shown := panel(shelf, {"press": SCInventoryPanel.Press.CHOOSES, "chosen_event": &"BUY"})
	await frames(2)
	await click(shown.slot_button(1))
	expect_state(keeper, "Waits")
	await click(shown.slot_button(0))
	expect_state(keeper, "Sells")
	expect_equal([keeper.get_value(&"wanted"), shelf.count(rope), Hand.how_many()], [rope, 3, 0])
	keeper.free()
	await click(shown.slot_button(0))
	expect_warning("has nobody to send BUY to. Put a Machine on the node named in Tells Path.")


func test_closed_with_something_taken_up() -> void:
	var bag := carrier("Player", [item("Arrow"), 5], {"slots": 2})
	var shown := panel(bag)
	await frames(2)
	await click(shown.slot_button(0))
	shown.hide()
	expect_equal(Hand.how_many(), 0)
	shown.show()
	await frames(2)
	expect_equal(read(shown), ["Arrow 5", ""])
	await click(shown.slot_button(0))
	shown.free()
	expect_equal([Hand.how_many(), bag.stacks()], [0, 1])


func test_nothing_to_show() -> void:
	var shown := panel(null, {"inventory_path": ^"../Nobody"})
	await frames(2)
	expect_warning("shows nothing, as there is no Inventory at ../Nobody. Pick an Inventory node, or a node that has one.")
	shown.press_slot(0)
	shown.split_slot(3)
	shown.move_over(-1)
	shown.choose(7)
	shown.show_inventory_of(body("Stone"))
	expect_warning("was told to show the inventory of Stone, which has none. Add an Inventory node under it.")
	carrier("Nobody", [item("Arrow"), 2], {"slots": 1})
	await frames(3)
	expect_equal(read(shown), ["Arrow 2"])


func test_a_bar_takes_no_keys() -> void:
	var shown := panel(carrier("Player", [item("Arrow"), 2], {"slots": 2}), {"takes_focus": false})
	await frames(2)
	expect_equal(tree.root.gui_get_focus_owner(), null)
	await click(shown.slot_button(0))
	expect_equal(tree.root.gui_get_focus_owner(), null)
	await click(shown.slot_button(1))
	expect_equal(read(shown), ["", "Arrow 2"])
	var seen: Array = []
	shown.chosen.connect(func(item_there: SCItem, how_many: int) -> void: seen.append([item_there.item_name, how_many]))
	await key(KEY_E)
	expect_equal(seen, [["Arrow", 2]], "what is under the mouse")
	await key(KEY_H)
	expect_equal([Hand.how_many(), read(shown)], [1, ["", "Arrow"]])
	await key(KEY_ESCAPE)
	expect_equal([Hand.how_many(), read(shown)], [0, ["", "Arrow 2"]])
	mouse_to(Vector2(600, 300))
	await key(KEY_E)
	expect_equal(seen.size(), 1)


func test_a_double_click_chooses() -> void:
	var shown := panel(carrier("Player", [item("Boots"), 1], {"slots": 2}))
	var seen: Array = []
	shown.chosen.connect(func(item_there: SCItem, _how_many: int) -> void: seen.append(item_there.item_name))
	await frames(2)
	await click(shown.slot_button(0))
	var event := InputEventMouseButton.new()
	event.button_index = MOUSE_BUTTON_LEFT
	event.pressed = true
	event.double_click = true
	event.position = shown.slot_button(0).get_global_rect().get_center()
	event.global_position = event.position
	tree.root.push_input(event)
	await frames(2)
	expect_equal([seen, Hand.how_many(), read(shown)], [["Boots"], 0, ["Boots", ""]])
