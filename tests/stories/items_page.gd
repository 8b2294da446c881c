extends "res://tests/stories/files/page_story.gd"
## The page about items, done as it says: its tables make the items, the scene and the templates of the demo, and somebody picks up
## coins, buys boots and wears them.

const FOLDER := "res://demo/first_items/"
const TEMPLATES: Dictionary[String, String] = {"player.tres": "3. The player", "pickup.tres": "4. The coins", "shop.tres": "5. The shop"}
const INPUTS: Array[StringName] = [&"ui_left", &"ui_right", &"ui_up", &"ui_down"]

## That of the page, compiled once.
static var compiled: GDScript

## The items of the page, by the names of their files.
var items: Dictionary[String, SCItem] = {}
var camp: Node2D


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/items.md")


func close() -> void:
	for input in INPUTS:
		Input.action_release(input)
	await super()
	items.clear()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	for file in items:
		expect_equal(told(items[file]), told(load(FOLDER + file)), file)
	for file in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	var saved: Node = (load(FOLDER + "first_items.tscn") as PackedScene).instantiate()
	expect_equal(told(camp), told(saved))
	saved.free()
	camp.free()


func test_coins_boots_and_a_faster_player() -> void:
	make_all()
	add(camp)
	var player: CharacterBody2D = camp.get_node(^"Player")
	var pack: SCInventory = player.get_node(^"Pack")
	var shop: SCInventory = SCInventory.on(camp.get_node(^"Shop"))
	var shop_panel: SCInventoryPanel = camp.get_node(^"ShopPanel")
	var pack_panel: SCInventoryPanel = camp.get_node(^"PackPanel")
	var worn_panel: SCInventoryPanel = camp.get_node(^"WornPanel")
	await advance(0.2)
	expect(not shop_panel.visible)
	Input.action_press(&"ui_right")
	await advance(0.5)
	expect_near(player.velocity.x, 160.0, 0.01)
	await advance(1.1)
	expect_equal([pack.count(items["coin.tres"]), words_on(pack_panel, 0)], [12, "Gold Coin 12"])
	expect(not (camp.get_node(^"Coins") as Node2D).visible)
	await advance(1.6)
	Input.action_release(&"ui_right")
	await advance(0.3)
	expect(shop_panel.visible)
	shop_panel.press_slot(0)
	await frames(3)
	expect_equal([pack.count(items["coin.tres"]), pack.count(items["boots.tres"]), shop.stacks()], [2, 1, 2])
	shop_panel.press_slot(1)
	await frames(3)
	expect_equal([pack.count(items["coin.tres"]), pack.count(items["boots.tres"])], [2, 1], "two coins buy nothing")
	pack_panel.choose(1)
	await frames(3)
	expect_equal([words_on(worn_panel, 0), pack.count(items["boots.tres"]), machine_of(player).get_value(&"speed")], ["Boots", 0, 280.0])
	Input.action_press(&"ui_left")
	await advance(0.5)
	expect_near(player.velocity.x, -280.0, 0.01)
	Input.action_release(&"ui_left")
	worn_panel.choose(0)
	await frames(3)
	expect_equal([words_on(worn_panel, 0), pack.count(items["boots.tres"]), machine_of(player).get_value(&"speed")], ["Feet", 1, 160.0])
	await advance(1.0)
	expect(not shop_panel.visible)


func test_a_full_pack() -> void:
	make_all()
	var player: CharacterBody2D = camp.get_node(^"Player")
	var pack: SCInventory = player.get_node(^"Pack")
	add(camp)
	for number in 12:
		pack.add(kind(SCItem, {"item_name": "Stone %d" % number}) as SCItem)
	player.position = (camp.get_node(^"Coins") as Node2D).position
	await advance(0.2)
	expect_state(machine_of(camp.get_node(^"Coins")), "Full")
	pack.take(pack.held[0].item)
	player.position = (camp.get_node(^"Shop") as Node2D).position
	await advance(0.2)
	expect_states(machine_of(camp.get_node(^"Coins")), ["Lies"])
	pack.add(items["coin.tres"], 10)
	(camp.get_node(^"ShopPanel") as SCInventoryPanel).press_slot(0)
	await frames(4)
	expect_equal(pack.count(items["boots.tres"]), 1, "the coins make room")
	pack.add(items["coin.tres"], 10)
	expect_equal(pack.count(items["coin.tres"]), 0)
	pack.take(pack.held[1].item)
	pack.add(items["coin.tres"], 12)
	(camp.get_node(^"ShopPanel") as SCInventoryPanel).press_slot(0)
	await frames(4)
	expect_equal([pack.count(items["boots.tres"]), pack.count(items["coin.tres"])], [1, 12], "paid back")


func test_what_the_script_of_the_page_does() -> void:
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	var arrow: SCItem = kind(SCItem, {"item_name": "Arrow", "most_in_a_stack": 5})
	var chest := body("Chest")
	var player := body("Player")
	for node: Node in [chest, player]:
		add(SCInventory.new(), "Inventory", {"under": node, "slots": 3})
	SCInventory.on(chest).add(arrow, 12)
	SCInventory.on(player).add(arrow, 7)
	compiled.new().call(&"open_chest", chest, player)
	expect_equal([SCInventory.on(chest).count(arrow), SCInventory.on(player).count(arrow)], [4, 15])
	expect_printed("The pack is full, 8 went in.")


func test_what_the_page_names_is_there() -> void:
	for named: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(named) or _script_of(named) != null, named)


func words_on(panel: SCInventoryPanel, place: int) -> String:
	var slot := panel.slot_button(place)
	return ("%s %s" % [slot.text, (slot.get_node(^"Count") as Label).text]).strip_edges()


func machine_of(node: Node) -> SCMachine:
	return node.get_node(^"Machine")


## What the page makes. Saved, it is the demo.
func make_all() -> void:
	var item: SCItem = null
	for row: Array in tables("1. Two items")[0].slice(1):
		if not row[0].is_empty():
			item = SCItem.new()
			items[row[0].trim_prefix("`").trim_suffix("`")] = item
		set_as_typed(item, row[1] as String, row[2] as String)
	camp = Node2D.new()
	camp.name = "Camp"
	build(camp, tables("2. The camp")[0])
	for file in TEMPLATES:
		var design := SCMachineTemplate.new()
		for table: Array in tables(TEMPLATES[file]):
			put_in(design, table)
		design.initial_state = design.states[0]
		made[file] = design
	made["player.tres"].states[0].start_sub_state = made["player.tres"].states[0].sub_states[0]
	machine_of(camp.get_node(^"Player")).template = made["player.tres"]
	machine_of(camp.get_node(^"Coins")).template = made["pickup.tres"]
	machine_of(camp.get_node(^"Shop")).template = made["shop.tres"]


func _script_of(named: String) -> Script:
	for row in ProjectSettings.get_global_class_list():
		if row["class"] == named:
			return load(row["path"] as String)
	return null


func _instantiated(of: String) -> Object:
	var script := _script_of(of)
	return script.new() if script != null else super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	match String(shown["name"]):
		"held":
			return [kind(SCItemStack, {"item": items[typed.get_slice(" ", 1)], "how_many": typed.to_int()})] as Array[SCItemStack]
		"slot_names":
			return [StringName(typed)] as Array[StringName]
		"changes":
			var parts := typed.split(", ")
			return [kind(SCItemChange, {"stat": StringName(parts[0]), "change": SCItemChange.Change[parts[1].to_upper()],
				"amount": parts[2].to_float()})] as Array[SCItemChange]
		"item":
			return items[typed]
	return super(on, shown, typed)
