extends Story
## Makers fill inventories, take out of them, move things between them and drop them.

## What the machine of [method sent] held at the end.
var values: Dictionary = {}


func item(name: String = "Arrow", settings: Dictionary = {}) -> SCItem:
	return kind(SCItem, {"item_name": name}.merged(settings, true))


func row(what: SCItem, how_many: int = 1) -> SCItemStack:
	return kind(SCItemStack, {"item": what, "how_many": how_many})


## An inventory with these items, one row for every item and number. Options as for a node.
func bag(rows: Array = [], settings: Dictionary = {}, under: Node = stage) -> SCInventory:
	var held: Array[SCItemStack] = []
	for at in range(0, rows.size(), 2):
		held.append(row(rows[at] as SCItem, rows[at + 1] as int))
	return add(SCInventory.new(), settings.get("name", "Inventory") as String, {"held": held, "under": under}.merged(settings, true))


## Somebody with an inventory, as [method bag] makes it.
func carrier(rows: Array = [], settings: Dictionary = {}, name: String = "Player") -> Node2D:
	var made := body(name)
	bag(rows, settings, made)
	return made


func of(node: Node) -> SCInventory:
	return SCInventory.on(node)


## What lies where: "Arrow 5, -, Sword 1".
func shown(of_bag: SCInventory) -> String:
	var slots: PackedStringArray = []
	for stack in of_bag.held:
		while slots.size() < stack.place:
			slots.append("-")
		slots.append("%s %d" % [stack.item.shown_name(), stack.how_many])
	return ", ".join(slots)


## Does the action once on a machine of that node, and answers which of these events it sent.
func sent(action: SCMachineAction, node: Node, variables: Dictionary = {}, events: Array = []) -> String:
	var ways := {}
	for event: String in events:
		ways[event] = event.capitalize()
	var made := play(action, ways, {"under": node, "variables": variables})
	var came_to := current(made)
	values = made.values.duplicate()
	made.free()
	return "" if came_to == &"Work" else String(came_to)


func test_five_arrows_into_room_for_three() -> void:
	var arrow := item("Arrow", {"most_in_a_stack": 4})
	var player := carrier([arrow, 1], {"slots": 1})
	var give := kind(SCAddItemAction, {"item": arrow, "how_many": 5, "added_event": &"ADDED", "no_room_event": &"NO ROOM"})
	expect_line(give, "Put 5 Arrow in the inventory")
	expect_equal(sent(give, player, {}, ["ADDED", "NO ROOM"]), "No Room")
	expect_equal(shown(of(player)), "Arrow 4")
	of(player).take(arrow, 1)
	give.how_many_variable = &"loot"
	expect_line(give, "Put [loot] Arrow in the inventory")
	expect_equal(sent(give, player, {"loot": 1.0}, ["ADDED", "NO ROOM"]), "Added")
	expect_equal(sent(give, player, {"loot": 0}, ["ADDED", "NO ROOM"]), "")
	expect_warning("Add Item on Machine: how many is 0 (from loot), so nothing is put in and no event is sent.")
	expect_equal(sent(kind(SCAddItemAction, {"item": arrow, "added_event": &"ADDED"}), body("Stone"), {}, ["ADDED"]), "")
	expect_warning("Add Item on Machine: there is no Inventory to put anything in. Add an Inventory node under Stone, or point Bag at one.")
	expect_equal(sent(kind(SCAddItemAction, {"added_event": &"ADDED"}), player, {}, ["ADDED"]), "")
	expect_warning("Add Item on Machine: no Item is picked, so there is nothing to put in the inventory.")


func test_twenty_arrows_take_one_slot() -> void:
	var arrow := item()
	var player := carrier([arrow, 3, item("Sword"), 1], {"slots": 3})
	var found := item("Rope")
	expect_equal(sent(kind(SCAddItemAction, {"item": arrow, "how_many": 20, "added_event": &"ADDED"}), player, {}, ["ADDED"]), "Added")
	expect_equal(sent(kind(SCAddItemAction, {"item_variable": &"found", "added_event": &"ADDED"}), player, {"found": found}, ["ADDED"]), "Added")
	expect_equal(shown(of(player)), "Arrow 23, Sword 1, Rope 1")


func test_a_purchase_is_paid_in_full_or_not_at_all() -> void:
	var coin := item("Coin", {"most_in_a_stack": 3})
	var player := carrier([coin, 3, coin, 1])
	var pay := kind(SCRemoveItemAction, {"item": coin, "how_many": 5, "removed_event": &"PAID", "not_enough_event": &"POOR"})
	expect_line(pay, "Take 5 Coin out of the inventory")
	expect_equal(sent(pay, player, {}, ["PAID", "POOR"]), "Poor")
	expect_equal(of(player).count(coin), 4)
	pay.how_many = 4
	expect_equal(sent(pay, player, {}, ["PAID", "POOR"]), "Paid")
	expect(of(player).is_empty())
	pay.how_many = -2
	expect_equal(sent(pay, player, {}, ["PAID", "POOR"]), "")
	expect_warning("Remove Item on Machine: how many is -2, so nothing is taken out and no event is sent.")
	expect_equal(sent(kind(SCRemoveItemAction, {"item": coin, "bag_path": ^"../../Stone"}), player), "")
	expect_warning("Remove Item on Machine: there is no Inventory to take anything out of. Add an Inventory node under Player, or point Bag at one.")
	expect_equal(sent(kind(SCRemoveItemAction, {"item_variable": &"none"}), player, {"none": null}), "")
	expect_warning("Remove Item on Machine: the variable none holds no item, so there is nothing to take out.")


func test_counting_items_and_slots() -> void:
	var coin := item("Coin")
	var player := carrier([coin, 7, coin, 2, item("Sword"), 1], {"slots": 5})
	var count := kind(SCCountItemAction, {"item": coin})
	for expected: Array in [[SCCountItemAction.ONE_ITEM, 9, "Count the Coin in the inventory into how many"],
			[SCCountItemAction.STACKS_USED, 3, "Count the slots the inventory has in use into how many"],
			[SCCountItemAction.SLOTS_FREE, 2, "Count the slots the inventory has free into how many"]]:
		count.counts = expected[0]
		expect_line(count, expected[2] as String)
		sent(count, player, {"how many": 0})
		expect_equal(values[&"how many"], expected[1])
	of(player).slots = 0
	sent(count, player, {"how many": 0})
	expect_equal(values[&"how many"], -1, "without a limit")
	of(player).slots = 2
	sent(count, player, {"how many": 9})
	expect_equal(values[&"how many"], 0, "more stacks than slots")
	sent(kind(SCCountItemAction), body("Stone"), {"how many": 9})
	expect_warning("Count Item on Machine: there is no Inventory to count in. Add an Inventory node under Stone, or point Bag at one.")
	sent(kind(SCCountItemAction), player, {"how many": 9})
	expect_warning("Count Item on Machine: no Item is picked, so there is nothing to count.")
	expect_equal(values[&"how many"], 9)


func test_emptying_a_chest() -> void:
	var coin := item("Coin", {"most_in_a_stack": 5})
	var sword := item("Sword", {"most_in_a_stack": 1})
	var chest := carrier([coin, 5, sword, 1, coin, 3], {}, "Chest")
	var player := carrier([coin, 4], {"slots": 4})
	var move := kind(SCMoveItemAction, {"from_path": ^"../../Chest", "to_path": ^"..", "store_moved_in": &"moved", "moved_event": &"MOVED",
		"no_room_event": &"NO ROOM"})
	expect_line(move, "Move everything to Self")
	expect_equal(sent(move, player, {"moved": -1}, ["MOVED", "NO ROOM"]), "Moved")
	expect_equal(values[&"moved"], 9)
	expect_equal([shown(of(player)), shown(of(chest))], ["Coin 5, Coin 5, Coin 2, Sword 1", ""])
	of(player).move_to(of(chest), sword)
	of(chest).add(coin, 12)
	expect_equal(sent(move, player, {"moved": -1}, ["MOVED", "NO ROOM"]), "No Room")
	expect_equal([values[&"moved"], shown(of(player)), of(chest).count(coin)], [4, "Coin 5, Coin 5, Coin 5, Sword 1", 9])


func test_moving_one_item() -> void:
	var coin := item("Coin", {"most_in_a_stack": 5})
	var chest := carrier([coin, 8, item("Rope"), 1], {}, "Chest")
	var player := carrier([coin, 4], {"slots": 2})
	var move := kind(SCMoveItemAction, {"item": coin, "from_path": ^"../../Chest", "to_path": ^"..", "how_many": 3, "store_moved_in": &"moved",
		"moved_event": &"MOVED", "no_room_event": &"NO ROOM"})
	expect_line(move, "Move 3 Coin to Self")
	expect_equal(sent(move, player, {"moved": -1}, ["MOVED", "NO ROOM"]), "Moved")
	move.how_many = 0
	expect_equal(sent(move, player, {"moved": -1}, ["MOVED", "NO ROOM"]), "No Room")
	expect_equal([values[&"moved"], shown(of(player)), shown(of(chest))], [3, "Coin 5, Coin 5", "Coin 2, -, Rope 1"])
	of(chest).take(coin, 2)
	expect_equal(sent(move, player, {"moved": -1}, ["MOVED", "NO ROOM"]), "No Room", "none there to ask for")
	expect_equal(values[&"moved"], 0)
	move.item_variable = &"none"
	expect_equal(sent(move, player, {"moved": -1, "none": null}, ["MOVED", "NO ROOM"]), "")
	expect_warning("Move Item on Machine: the variable none holds no item, so nothing is moved. Leave Item Variable empty as well as Item to move everything.")
	move.to_path = ^"../../Nobody"
	expect_equal(sent(move, player, {"moved": -1, "none": coin}, ["MOVED", "NO ROOM"]), "")
	expect_equal(values[&"moved"], 0)
	expect_warning("Move Item on Machine: it needs an Inventory at both ends, and To is missing. Add an Inventory node there, or point From or To at one.")
	expect_warns(kind(SCMoveItemAction, {"item": coin}), "it needs an Inventory at both ends, and From is missing")


func test_sorting() -> void:
	var rows: Array = []
	for about: Array in [["Sword 2", "weapon", 1], ["Bread", "food", 0], ["Sword 10", "weapon", 3], ["apple", "food", 1], ["Rope", "", 3]]:
		rows.append_array([item(about[0] as String, {"type": about[1], "rarity": about[2]}), 1])
	var player := carrier(rows)
	var names := func() -> Array: return of(player).held.map(func(stack: SCItemStack) -> String: return stack.item.shown_name())
	for expected: Array in [[SCInventory.SortBy.RARITY, ["Sword 10", "Rope", "Sword 2", "apple", "Bread"], "Order the inventory with the rarest first"],
			[SCInventory.SortBy.TYPE, ["apple", "Bread", "Sword 2", "Sword 10", "Rope"], "Order the inventory by type"],
			[SCInventory.SortBy.NAME, ["apple", "Bread", "Rope", "Sword 2", "Sword 10"], "Order the inventory by name"]]:
		var sort := kind(SCSortInventoryAction, {"order": expected[0]})
		expect_line(sort, expected[2] as String)
		sent(sort, player)
		expect_equal(names.call(), expected[1])
	sent(kind(SCSortInventoryAction), body("Stone"))
	expect_warning("Sort Inventory on Machine: there is no Inventory to put in order. Add an Inventory node under Stone, or point Bag at one.")


func test_asking_what_is_in_it() -> void:
	var key_item := item("Key")
	var player := carrier([key_item, 2], {"slots": 2})
	var made := asker(player)
	var has := kind(SCInventoryHasCondition, {"item": key_item, "at_least": 2})
	expect_line(has, "the inventory has 2 Key")
	for expected: Array in [[{}, true], [{"at_least": 3}, false], [{"at_least": 0}, true], [{"test": SCInventoryHasCondition.IS_FULL}, false],
			[{"test": SCInventoryHasCondition.IS_EMPTY}, false], [{"item": item("Key")}, false]]:
		expect_equal(ask(made, kind(SCInventoryHasCondition, {"item": key_item, "at_least": 2}.merged(expected[0] as Dictionary, true))), expected[1])
	of(player).add(item("Rope"))
	expect(ask(made, kind(SCInventoryHasCondition, {"test": SCInventoryHasCondition.IS_FULL})))
	of(player).held = []
	expect(ask(made, kind(SCInventoryHasCondition, {"test": SCInventoryHasCondition.IS_EMPTY})))
	expect(not ask(made, kind(SCInventoryHasCondition)))
	expect_warning("Inventory Has on Machine: no Item is picked, so the answer is no.")
	expect(not ask(asker(body("Stone")), has))
	expect_warning("Inventory Has on Machine: there is no Inventory to ask about, so the answer is no. Add an Inventory node under Stone, or point Bag at one.")


## A scene of what then lies there, 2D or 3D.
func pickup(root: Node, settings: Dictionary = {}) -> PackedScene:
	var inside := SCInventory.new()
	_put(inside, settings)
	root.name = "Pickup"
	root.add_child(inside)
	for part in root.get_children():
		part.owner = root
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	return scene


func test_dropping_a_pile() -> void:
	var arrow := item("Arrow")
	for side: Array in [[Node2D.new(), Vector2(10, 20), Vector2(0, 5), Vector2(10, 25)], [Node3D.new(), Vector3(1, 2, 3), Vector3(0, 0, 1), Vector3(1, 2, 4)]]:
		var player := body_at(side[1], "Player")
		bag([arrow, 20], {}, player)
		var drop := kind(SCDropItemAction, {"item": arrow, "how_many": 0, "pickup_scene": pickup(side[0] as Node), "offset": side[2],
			"store_pickup_in": &"pile", "dropped_event": &"DROPPED", "cannot_event": &"CANNOT"})
		expect_line(drop, "Drop all Arrow")
		expect_equal(sent(drop, player, {"pile": null}, ["DROPPED", "CANNOT"]), "Dropped")
		var pile: Node = values[&"pile"]
		expect_equal([shown(of(pile)), shown(of(player)), pile.get(&"global_position"), pile.get_parent()], ["Arrow 20", "", side[3], tree.root])
		expect_equal(sent(drop, player, {"pile": null}, ["DROPPED", "CANNOT"]), "Cannot", "none are left")
		pile.free()
		player.free()


func test_dropped_in_the_middle_of_a_physics_frame() -> void:
	var arrow := item("Arrow")
	var victim: Area2D = boxed(Area2D.new(), Vector2(40, 40))
	victim.position = Vector2(300, 100)
	add(victim, "Victim")
	bag([arrow, 3], {}, victim)
	var drop := kind(SCDropItemAction, {"item": arrow, "how_many": 2, "pickup_scene": pickup(boxed(Area2D.new(), Vector2(10, 10))),
		"store_pickup_in": &"pile", "dropped_event": &"DROPPED"})
	var made := start(machine([state("Lives", [], {"HIT": "Dies"}), state("Dies", [drop], {"DROPPED": "Dead"}), state("Dead")],
		{"under": victim, "variables": {"pile": null}}))
	victim.body_entered.connect(func(_arrow: Node) -> void: made.send_event(&"HIT"))
	var hits: StaticBody2D = boxed(StaticBody2D.new(), Vector2(20, 20))
	hits.position = victim.position
	add(hits)
	await physics_frames(3)
	expect_state(made, "Dead")
	var pile: Area2D = made.get_value(&"pile")
	expect_equal([pile.is_inside_tree(), pile.global_position, shown(of(pile)), of(victim).count(arrow)], [true, victim.position, "Arrow 2", 1])
	pile.free()


func test_what_cannot_be_dropped_stays() -> void:
	var arrow := item("Arrow")
	var player := carrier([arrow, 5])
	var events := ["DROPPED", "CANNOT"]
	var scene := pickup(Node2D.new())
	var drop := func(settings: Dictionary) -> String:
		return sent(kind(SCDropItemAction, {"item": arrow, "dropped_event": &"DROPPED", "cannot_event": &"CANNOT"}.merged(settings, true)), player, {}, events)
	expect_equal(drop.call({"pickup_scene": scene, "how_many": 6}), "Cannot")
	expect_equal(drop.call({}), "Cannot")
	expect_warning("Drop Item on Machine: no Pickup Scene is set, so there is nowhere for Arrow to go. Make a small scene with an Inventory on it")
	expect_equal(drop.call({"pickup_scene": scene, "item": null}), "")
	expect_warning("Drop Item on Machine: no Item is picked, so there is nothing to put down.")
	expect_equal(drop.call({"pickup_scene": scene, "bag_path": ^"../../Stone"}), "")
	expect_warning("Drop Item on Machine: there is no Inventory to take anything out of.")
	var bare := PackedScene.new()
	var stone := Node2D.new()
	stone.name = "Stone"
	bare.pack(stone)
	stone.free()
	expect_equal(drop.call({"pickup_scene": bare}), "Cannot")
	expect_warning("Drop Item on Machine: Stone has no Inventory on it, so there is nowhere in it for the item to go. Add an Inventory node to that scene.")
	expect_equal(drop.call({"pickup_scene": PackedScene.new()}), "Cannot")
	expect_warning("nothing can be made of Pickup Scene, so nothing is put down. Pick a scene with an Inventory on it.")
	expect_equal(of(player).count(arrow), 5)
	var small := pickup(Node2D.new(), {"holds_only": [&"food"] as Array[StringName]})
	expect_equal(drop.call({"pickup_scene": small}), "Cannot", "it does not go into that pickup")
	expect_equal(of(player).count(arrow), 5)
	expect_equal(drop.call({"pickup_scene": scene, "at_path": ^"../../Nowhere"}), "Dropped")
	expect_warning("Drop Item on Machine: the node named in At, ../../Nowhere, was not found, so Arrow is dropped where the scene starts")
	tree.root.get_child(-1).free()
	var beside := kind(SCDropItemAction, {"item": arrow, "pickup_scene": scene, "at_path_variable": &"spot"})
	sent(beside, player, {"spot": null})
	expect_warning("the node named in At, an empty node variable, was not found, so Arrow is dropped where the scene starts")
	tree.root.get_child(-1).free()


func test_instances_of_a_scene_share_nothing() -> void:
	var arrow := item("Arrow")
	var root := Node2D.new()
	var inside := SCInventory.new()
	inside.held = [row(arrow, 3), null, row(null), row(arrow, -2)]
	root.add_child(inside)
	inside.owner = root
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	var first := add(scene.instantiate(), "First")
	var second := add(scene.instantiate(), "Second")
	of(first).take(arrow, 2)
	expect_equal([shown(of(first)), shown(of(second))], ["Arrow 1", "Arrow 3"])
	for _each in 2:
		expect_warning("has a row without an item, which is left out. Pick an item there, or take the row away.")


func test_rows_that_do_not_fit_are_kept() -> void:
	var arrow := item("Arrow", {"most_in_a_stack": 4})
	var full := bag([arrow, 9, item("Rope"), 1], {"slots": 2, "name": "Chest"})
	expect_warning("Chest on Stage holds 4 stacks and has 2 slots. They are kept, and nothing more fits until some have gone.")
	expect_equal([full.count(arrow), full.room_for(arrow), full.add(arrow, 9), full.is_full()], [9, 3, 3, true])
	var quiver := bag([item("Sword"), 1], {"holds_only": [&"ammo"] as Array[StringName], "name": "Quiver"})
	expect_warning("Quiver on Stage holds Sword, which does not belong into it. It is kept, and nothing like it can be put in.")
	expect_equal([quiver.stacks(), quiver.room_for(item("Sword")), quiver.add(item("Axe"))], [1, 0, 0])


func test_what_is_put_back_is_kept() -> void:
	var arrow := item("Arrow", {"most_in_a_stack": 4})
	var pack := bag([arrow, 3], {"slots": 1, "name": "Pack"})
	var came: Array = []
	pack.item_added.connect(func(_came: SCItem, how_many: int) -> void: came.append(how_many))
	pack.put_back(arrow, 6)
	expect_equal([shown(pack), came, pack.add(arrow, 9)], ["Arrow 4, Arrow 4, Arrow 1", [6, 3], 3])
	expect_warning("Pack on Stage holds 3 stacks and has 1 slots. They are kept, and nothing more fits until some have gone.")


func test_nothing_goes_into_a_slot_without_a_name() -> void:
	var worn := bag([], {"slot_names": [&"", &"hand"] as Array[StringName]})
	var rope := item("Rope")
	expect_equal([worn.room_for(rope), worn.add(rope), worn.add(item("Sword", {"equips_to": &"hand"}))], [0, 0, 1])
	expect_equal(worn.worn(&""), null)
	expect("Slot Names has an empty one" in "".join(worn._get_configuration_warnings()))


func test_which_inventory_of_a_node() -> void:
	var player := body("Player")
	expect_equal(SCInventory.on(player), null)
	expect_equal(SCInventory.on(null), null)
	var worn := bag([], {"slot_names": [&"hand"] as Array[StringName], "name": "Worn"}, player)
	expect_equal(SCInventory.on(player), worn)
	var carried := bag([], {"name": "Carried"}, player)
	expect_equal([SCInventory.on(player), SCInventory.on(player, SCInventory.Which.CARRIED), SCInventory.on(player, SCInventory.Which.WORN)],
		[carried, carried, worn])
	expect_equal([SCInventory.on(worn), SCInventory.on(worn, SCInventory.Which.CARRIED)], [worn, null])
	carried.queue_free()
	expect_equal(SCInventory.on(player), worn)


func test_copies_with_numbers_of_their_own_lie_apart() -> void:
	var sword := item("Sword", {"item_key": &"sword", "damage": 10.0})
	var better: SCItem = sword.duplicate()
	better.set_meta(SCItem.VARIED_FROM, "res://sword.tres")
	better.damage = 12.0
	var holder := bag([sword, 2])
	holder.add(better)
	holder.add(sword.duplicate() as SCItem)
	expect_equal(shown(holder), "Sword 3, Sword 1")
	expect_equal([holder.count(better), holder.held[1].item], [1, better])
	var other := bag([], {"name": "Other"})
	holder.move_to(other, better, 5)
	expect_equal([shown(holder), shown(other), other.held[0].item], ["Sword 3", "Sword 1", better])


func test_dropping_on_a_slot() -> void:
	var arrow := item("Arrow", {"most_in_a_stack": 4})
	var sword := item("Sword", {"equips_to": "hand"})
	var club := item("Club", {"equips_to": "hand"})
	var pack := bag([arrow, 2, arrow, 3, sword, 1], {"slots": 5})
	expect_equal([pack.put(0, pack, 1), shown(pack)], [1, "Arrow 1, Arrow 4, Sword 1"])
	expect_equal([pack.put(1, pack, 3, 3), pack.split(3), shown(pack)], [3, 4, "Arrow 1, Arrow 1, Sword 1, Arrow 2, Arrow 1"])
	var worn := bag([club, 1], {"slot_names": [&"head", &"hand"] as Array[StringName], "name": "Worn"})
	expect_equal([pack.put(2, worn, 0), pack.put(0, worn, 1), pack.put(2, worn, 1)], [0, 0, 1], "only what goes into the slot")
	expect_equal([shown(pack), worn.worn(&"hand"), worn.worn(&"head")], ["Arrow 1, Arrow 1, Club 1, Arrow 2, Arrow 1", sword, null])


func test_whoever_listens_may_change_it_again() -> void:
	var arrow := item("Arrow")
	var chest := bag([arrow, 5], {"name": "Chest"})
	var player := bag([], {"slots": 1})
	chest.changed.connect(func() -> void: chest.move_to(player, arrow, 1))
	player.item_added.connect(func(_came: SCItem, _how_many: int) -> void: player.take(arrow, 1) if player.count(arrow) == 5 else null)
	expect_equal(chest.move_to(player, arrow, 2), 2)
	expect_equal([chest.count(arrow), player.count(arrow)], [0, 4])
	var gone := bag([arrow, 3], {"name": "Gone"})
	gone.item_taken.connect(func(_went: SCItem, _how_many: int) -> void: gone.queue_free())
	expect_equal([gone.move_to(player, arrow, 3), player.count(arrow)], [3, 7])


func test_a_listener_ends_the_state() -> void:
	var coin := item("Coin")
	for action: SCMachineAction in [
			kind(SCAddItemAction, {"item": coin, "added_event": &"DONE"}),
			kind(SCRemoveItemAction, {"item": coin, "removed_event": &"DONE"}),
			kind(SCMoveItemAction, {"item": coin, "to_path": ^"../../Chest", "store_moved_in": &"moved", "moved_event": &"DONE"})]:
		var chest := carrier([], {}, "Chest")
		var player := carrier([coin, 2])
		var made := doing(action, {"LEFT": "Left", "DONE": "Done"}, {"under": player, "variables": {"moved": -1}})
		of(player).changed.connect(func() -> void: made.send_event(&"LEFT"))
		start(made)
		expect_state(made, "Left")
		expect_equal(of(player).count(coin) + of(chest).count(coin), 3 if action is SCAddItemAction else 1 if action is SCRemoveItemAction else 2)
		player.free()
		chest.free()


func test_saved_and_loaded() -> void:
	var coin := item("Coin")
	ResourceSaver.save(coin, "user://coin.tres")
	coin = load("user://coin.tres")
	var found := item("Found", {"damage": 3.5, "changes": [kind(SCItemChange, {"stat": &"speed", "amount": 2.0})] as Array[SCItemChange]})
	var key := found.key()
	var chest := bag([coin, 5, found, 1], {"slots": 4, "name": "Chest"})
	chest.put(1, chest, 3)
	var saved: Dictionary = JSON.parse_string(JSON.stringify(chest.to_save()))
	var loaded := bag([item("Rope"), 1], {"slots": 4, "name": "Loaded"})
	loaded.from_save(saved)
	expect_equal(shown(loaded), "Coin 5, -, -, Found 1")
	expect_equal(loaded.held[0].item, coin)
	var again := loaded.held[1].item
	expect_equal([again.key(), again.damage, again.changes[0].stat, again.changes[0].amount], [key, 3.5, &"speed", 2.0])
	loaded.from_save({"held": [{"item": {"path": "res://not_there.tres"}, "how_many": 2}, 7, {}]})
	expect_equal(loaded.stacks(), 0)
	expect_warning("Loaded on Stage was saved with something that cannot be found any more, so it is left out")
	DirAccess.remove_absolute("user://coin.tres")


func test_names() -> void:
	expect_equal(item("").shown_name(), "an item")
	var saved := item("")
	ResourceSaver.save(saved, "user://iron_key.tres")
	saved = load("user://iron_key.tres")
	expect_equal([saved.shown_name(), saved.key()], ["Iron Key", "user://iron_key.tres"])
	expect(item("").key() != item("").key())
	DirAccess.remove_absolute("user://iron_key.tres")
