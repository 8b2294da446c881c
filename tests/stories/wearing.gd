extends Story
## What is worn is put on and taken off, and changes whoever wears it for as long.


func item(name: String, slot: String, settings: Dictionary = {}) -> SCItem:
	return kind(SCItem, {"item_name": name, "equips_to": slot, "most_in_a_stack": 1}.merged(settings, true))


func change(stat: StringName, amount: float, how: SCItemChange.Change = SCItemChange.Change.ADD) -> Array[SCItemChange]:
	return [kind(SCItemChange, {"stat": stat, "amount": amount, "change": how})]


## A player who carries these and wears what goes into the hand, on the head and on two fingers.
func player(carries: Array[SCItem], settings: Dictionary = {}) -> Node2D:
	var made := body("Player")
	var pack: SCInventory = add(SCInventory.new(), "Pack", {"under": made}.merged(settings, true))
	add(SCInventory.new(), "Worn", {"under": made, "slot_names": [&"hand", &"head", &"finger", &"finger"] as Array[StringName]})
	for carried in carries:
		pack.add(carried)
	return made


func pack_of(node: Node) -> SCInventory:
	return node.get_node(^"Pack")


func worn_by(node: Node) -> SCInventory:
	return node.get_node(^"Worn")


func names_in(bag: SCInventory) -> Array:
	return bag.held.map(func(stack: SCItemStack) -> String: return stack.item.shown_name())


## A machine on the player whose events do these actions, one each.
func wearer(node: Node, actions: Dictionary, variables: Dictionary = {"power": 1}) -> SCMachine:
	var states: Array = [state("Ready", [], {})]
	for event: StringName in actions:
		(states[0] as SCMachineState).transitions.append(transition(event, event, &"told"))
		states.append(state(event, [actions[event]], [transition(&"YES", &"Yes %s" % event, &"worn"), transition(&"NO", &"No %s" % event)]))
		states.append(state("Yes %s" % event, [], {"AGAIN": "Ready"}))
		states.append(state("No %s" % event, [], {"AGAIN": "Ready"}))
	return start(machine(states, {"under": node, "name": "Wearer", "variables": {"told": null, "worn": null}.merged(variables)}))


## Whether the action could be done.
func does(made: SCMachine, event: StringName) -> bool:
	made.send_event(&"AGAIN")
	made.send_event(event)
	return current(made).begins_with("Yes")


func equip(what: SCItem, settings: Dictionary = {}) -> SCEquipItemAction:
	return kind(SCEquipItemAction, {"item": what, "equipped_event": &"YES", "cannot_event": &"NO"}.merged(settings, true))


func unequip(settings: Dictionary) -> SCUnequipItemAction:
	return kind(SCUnequipItemAction, {"taken_off_event": &"YES", "cannot_event": &"NO"}.merged(settings, true))


func test_a_sword_is_changed_for_a_better_one() -> void:
	var club := item("Club", "hand", {"changes": change(&"power", 2.0)})
	var sword := item("Sword", "hand", {"changes": change(&"power", 5.0)})
	var node := player([club, sword], {"slots": 2})
	var made := wearer(node, {&"CLUB": equip(club), &"SWORD": equip(sword), &"OFF": unequip({"slot": &"hand"})})
	for row: Array in [[&"CLUB", true, 3, ["Sword"]], [&"CLUB", false, 3, ["Sword"]], [&"SWORD", true, 6, ["Club"]], [&"OFF", true, 1, ["Club", "Sword"]],
			[&"OFF", false, 1, ["Club", "Sword"]]]:
		expect_equal(does(made, row[0] as StringName), row[1], String(row[0] as StringName))
		expect_equal([made.get_value(&"power"), names_in(pack_of(node))], [row[2], row[3]], String(row[0] as StringName))
	expect_line(equip(sword), "Wear Sword")
	expect_line(unequip({"item": sword}), "Take off Sword")
	expect_line(unequip({"slot": &"head"}), "Take off what is worn in head")


func test_the_event_carries_what_was_put_on() -> void:
	var hat := item("Hat", "head")
	var node := player([hat])
	var made := wearer(node, {&"ON": equip(null, {"item_variable": &"told"}), &"OFF": unequip({"item_variable": &"told"})})
	for event: StringName in [&"ON", &"OFF"]:
		made.send_event(event, hat)
		expect_equal(made.get_value(&"worn"), hat)
		made.set_value(&"worn", null)
		made.send_event(&"AGAIN")


func test_a_full_pack_changes_nothing() -> void:
	var club := item("Club", "hand", {"changes": change(&"power", 2.0)})
	var axes := item("Axe", "hand", {"most_in_a_stack": 9, "changes": change(&"power", 7.0)})
	var node := player([club], {"slots": 1})
	var made := wearer(node, {&"CLUB": equip(club), &"AXE": equip(axes), &"OFF": unequip({"item": club})})
	expect(does(made, &"CLUB"))
	pack_of(node).add(axes, 2)
	expect(not does(made, &"AXE"), "two axes keep their slot")
	expect(not does(made, &"OFF"), "there is no room for the club")
	expect_equal([made.get_value(&"power"), pack_of(node).count(axes), worn_by(node).worn(&"hand")], [3, 2, club])
	pack_of(node).take(axes)
	expect(does(made, &"AXE"), "a single axe leaves its slot to the club")
	expect_equal([made.get_value(&"power"), names_in(pack_of(node)), worn_by(node).worn(&"hand")], [8, ["Club"], axes])


func test_a_pack_that_would_not_take_it_again_keeps_it() -> void:
	var club := item("Club", "hand", {"changes": change(&"power", 2.0)})
	var sword := item("Sword", "hand", {"changes": change(&"power", 5.0)})
	for how: String in ["holds too much", "is for something else", "fills up meanwhile"]:
		var node := player([club, sword])
		var made := wearer(node, {&"CLUB": equip(club), &"SWORD": equip(sword)})
		expect(does(made, &"CLUB"))
		var pack := pack_of(node)
		match how:
			"holds too much":
				pack.add(item("Rope", ""), 2)
				pack.slots = 1
			"is for something else":
				pack.holds_only = [&"food"]
			"fills up meanwhile":
				pack.slots = 1
				pack.item_taken.connect(func(_what: SCItem, _how_many: int) -> void: pack.add(item("Rope", "")))
		expect(not does(made, &"SWORD"), how)
		expect_equal([pack.count(sword), worn_by(node).worn(&"hand"), made.get_value(&"power")], [1, club, 3], how)
		expect_warning("Pack on Player holds" if how != "is for something else" else "which does not belong into it. It is kept")
		node.free()


func test_a_ring_on_each_finger() -> void:
	var rings: Array[SCItem] = []
	for number in 3:
		rings.append(item("Ring %d" % number, "finger", {"changes": change(&"power", 1.0 + number)}))
	var node := player(rings)
	var made := wearer(node, {&"A": equip(rings[0]), &"B": equip(rings[1]), &"C": equip(rings[2]), &"OFF": unequip({"item": rings[1]})})
	expect(does(made, &"A") and does(made, &"B"))
	expect_equal([made.get_value(&"power"), names_in(worn_by(node))], [4, ["Ring 0", "Ring 1"]])
	expect(does(made, &"C"))
	expect_equal([made.get_value(&"power"), names_in(worn_by(node))], [6, ["Ring 2", "Ring 1"]])
	expect(does(made, &"OFF"))
	expect_equal([made.get_value(&"power"), names_in(worn_by(node))], [4, ["Ring 2"]])


func test_on_somebody_else() -> void:
	var saddle := item("Saddle", "head", {"changes": change(&"power", 3.0)})
	var horse := body("Horse")
	var its := start(machine([state("Stands")], {"under": horse, "variables": {"power": 10}, "name": "HorseMachine"}))
	var node := player([saddle])
	var made := wearer(node, {&"ON": equip(saddle, {"on_path": ^"../../Horse"}), &"OFF": unequip({"item": saddle, "on_path": ^"../../Horse/HorseMachine"})})
	expect(does(made, &"ON"))
	expect_equal([its.get_value(&"power"), made.get_value(&"power")], [13, 1])
	expect(does(made, &"OFF"))
	expect_equal(its.get_value(&"power"), 10)


func test_what_cannot_be_worn() -> void:
	var hat := item("Hat", "head")
	var stick := item("Stick", "")
	var boots := item("Boots", "feet")
	var node := player([hat, stick, boots])
	body("Stone")
	var made := wearer(node, {})
	var so_far := 0
	for row: Array in [
			[equip(null), "Equip Item on Wearer: no Item is picked, so there is nothing to wear."],
			[equip(hat, {"worn_path": ^"../../Stone"}), "Equip Item on Wearer: the worn Inventory is missing"],
			[equip(hat, {"from_path": ^"../Worn"}), "Equip Item on Wearer: the carried Inventory is missing"],
			[equip(stick), "(the item's Equips To is empty) goes in no slot Worn has. Set the item's Slot to one of that inventory's Slot Names."],
			[equip(boots), "Equip Item on Wearer: Boots goes in no slot Worn has. Set the item's Slot to one of that inventory's Slot Names."],
			[equip(hat, {"on_path": ^"../../Stone"}), "Equip Item on Wearer: Stone has no Machine on it, so there is nobody for Hat to change and it is not put on."],
			[equip(hat, {"on_path": ^"../../Nobody"}), "the node named in On, ../../Nobody, was not found, so there is nobody for Hat to change"],
			[equip(item("Cap", "head")), ""],
			[unequip({"worn_path": ^"../../Stone", "slot": &"head"}), "Unequip Item on Wearer: the worn Inventory is missing"],
			[unequip({}), "Unequip Item on Wearer: no Slot is named and no Item is picked, so it cannot tell what to take off. Name a Slot, or pick the item."],
			[unequip({"item": stick}), "no Slot is named and the item's Equips To is empty, so it cannot tell what to take off."],
			[unequip({"slot": &"tail"}), "Unequip Item on Wearer: Worn has no slot called tail, so nothing can be taken off it. Its Slot Names are"],
			[unequip({"slot": &"head", "on_path": ^"../../Stone"}), "Stone has no Machine on it, so there is nobody whose changes to undo, and it is left on."],
			[unequip({"slot": &"head"}), ""], [unequip({"item": hat}), ""]]:
		so_far += 1
		made.free()
		made = wearer(node, {&"TRY": row[0]})
		expect(not does(made, &"TRY"), "row %d" % so_far)
		expect_equal(current(made), &"No TRY", "row %d" % so_far)
		if not (row[1] as String).is_empty():
			expect_warning(row[1] as String)
	var beside := equip(hat)
	beside.set(&"on_path_variable", &"told")
	made.free()
	made = wearer(node, {&"TRY": beside})
	expect(not does(made, &"TRY"))
	expect_warning("the node named in On, an empty node variable, was not found, so there is nobody for Hat to change")
	expect_equal(pack_of(node).stacks(), 3)


func test_whoever_hears_of_it_frees_an_inventory() -> void:
	var club := item("Club", "hand")
	var sword := item("Sword", "hand")
	for freed: String in ["Pack", "Worn"]:
		var node := player([club, sword])
		var made := wearer(node, {&"CLUB": equip(club), &"SWORD": equip(sword)})
		expect(does(made, &"CLUB"))
		pack_of(node).item_taken.connect(func(_what: SCItem, _how_many: int) -> void: node.get_node(NodePath(freed)).queue_free(), CONNECT_ONE_SHOT)
		does(made, &"SWORD")
		var there := pack_of(node).count(club) + pack_of(node).count(sword) + worn_by(node).count(club) + worn_by(node).count(sword)
		expect_equal(there, 2, "nothing is lost while they are still there")
		node.free()


func test_worn_by_a_scene_from_the_start() -> void:
	var hat := item("Hat", "head")
	var node := player([])
	var worn := worn_by(node)
	worn.held = [kind(SCItemStack, {"item": hat, "how_many": 3}), kind(SCItemStack, {"item": item("Boots", "feet")})]
	expect_equal([worn.worn(&"head"), worn.worn(&"hand"), worn.room_for(hat), worn.slots, worn.count(hat)], [hat, null, 0, 4, 3])
	expect_warning("Worn on Player holds Boots, which does not belong into it.")
