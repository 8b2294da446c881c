extends "res://tests/stories/files/rooms_story.gd"
## What a player who goes from scene to scene has along: Inventories, what is worn, and Data nodes.

const COIN := preload("res://demo/first_items/coin.tres")
const BOOTS := preload("res://demo/first_items/boots.tres")


func test_bags_and_clothes_come_along() -> void:
	var design := hero_design()
	var cave := room("Cave", [rich_hero(design, 0)])
	await begin_in(room("Town", [rich_hero(design, 3)]))
	var made_here: SCItem = kind(SCItem, {"item_name": "Letter", "most_in_a_stack": 1})
	bag(^"Pack").add(made_here)
	bag(^"Belt/Pouch").add(COIN, 40)
	bag(^"Worn").add(BOOTS)
	await go_and_wait(cave)
	expect_equal([bag(^"Pack").count(COIN), bag(^"Belt/Pouch").count(COIN), bag(^"Worn").worn(&"feet")], [3, 40, BOOTS])
	expect_equal([bag(^"Pack").count(made_here), bag(^"Pack").stack_at(1).item], [1, made_here], "one that is in no file, in its slot")
	expect_equal(bag(^"Chest").count(COIN), 0, "what the scene file gave is gone")
	await go_and_wait(FOLDER + "town.tscn")
	expect_equal(bag(^"Pack").count(COIN), 3, "the three of the file are not added again")


func test_bags_that_the_next_scene_calls_otherwise_or_does_not_have() -> void:
	var design := hero_design()
	var renamed := rich_hero(design, 0)
	renamed.get_node(^"Pack").name = "Backpack"
	var bare := hero(design)
	await begin_in(room("Town", [rich_hero(design, 3)]))
	bag(^"Worn").add(BOOTS)
	bag(^"Belt/Pouch").add(COIN, 5)
	await go_and_wait(room("Cave", [renamed]))
	expect_equal([bag(^"Backpack").count(COIN), bag(^"Belt/Pouch").count(COIN)], [3, 5])
	await go_and_wait(room("Sea", [bare]))
	await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
	await go_and_wait(FOLDER + "town.tscn")
	expect_equal([bag(^"Pack").count(COIN), bag(^"Belt/Pouch").count(COIN), bag(^"Worn").worn(&"feet")], [3, 5, BOOTS], "nothing was lost on the way")
	var small := rich_hero(design, 0)
	(small.get_node(^"Pack") as SCInventory).slots = 1
	for item: String in ["Stone", "Stick"]:
		bag(^"Pack").add(kind(SCItem, {"item_name": item}) as SCItem)
	await go_and_wait(room("Hut", [small]))
	expect_equal(bag(^"Pack").stacks(), 3, "what is too much is kept")


func test_records_come_along() -> void:
	var definition: SCDataDefinition = kind(SCDataDefinition, {"fields": [
		kind(SCDataField, {"field_name": &"health", "type": SCDataField.Type.INT}), kind(SCDataField, {"field_name": &"title", "type": SCDataField.Type.STRING}),
	] as Array[SCDataField]})
	var design := hero_design()
	for name: String in ["Town", "Cave", "Sea"]:
		var owner := hero(design)
		if name != "Sea":
			var data := SCDataNode.new()
			data.name = "%sData" % name
			data.data = kind(SCData, {"definition": definition, "values": {&"health": 50}})
			owner.add_child(data)
		room(name, [owner])
	await begin_in(FOLDER + "town.tscn")
	for field: StringName in [&"health", &"title"]:
		(hero_here().get_node(^"TownData") as SCDataNode).set_field(field, 12 if field == &"health" else "Baron")
	for name: String in ["cave", "sea", "town"]:
		await go_and_wait(FOLDER + name + ".tscn")
		var data: SCDataNode = hero_here().get_node_or_null("%sData" % name.capitalize())
		if data != null:
			expect_equal([data.get_field(&"health"), data.get_field(&"title")], [12, "Baron"], name)


func test_a_bag_between_two_who_go_along_goes_with_the_nearer() -> void:
	var design := hero_design()
	var pet_design := hero_design({}, {"resource_name": "pet"})
	for name: String in ["Town", "Cave"]:
		var owner := rich_hero(design, 0)
		var pet := hero(pet_design)
		pet.name = "Pet"
		pet.add_child(new_bag("Saddle"))
		owner.add_child(pet)
		room(name, [owner])
	await begin_in(FOLDER + "town.tscn")
	bag(^"Pet/Saddle").add(COIN, 7)
	await go_and_wait(FOLDER + "cave.tscn")
	expect_equal(bag(^"Pet/Saddle").count(COIN), 7)
	expect_equal((machine_here().get_meta(CarryOver.ARRIVED_RECORD)[CarryOver.BELONGINGS] as Array).size(), 4)


func test_a_machine_of_the_whole_scene_takes_no_chests_along() -> void:
	var design := hero_design({"day": 1})
	var rooms := {}
	for name: String in ["Town", "Cave"]:
		var chest := Node2D.new()
		chest.name = "Chest"
		chest.add_child(new_bag("Bag"))
		var whole := hero(design, Vector2(5, 5), Node2D.new())
		rooms[name] = room(name, [chest, new_bag("Stock"), spot("Door", Vector2(90, 0))], whole)
	await begin_in(rooms["Town"] as String)
	(tree.current_scene.get_node(^"Machine") as SCMachine).set_value("day", 2)
	(tree.current_scene.get_node(^"Chest/Bag") as SCInventory).add(COIN, 3)
	(tree.current_scene.get_node(^"Stock") as SCInventory).add(COIN, 4)
	await go_and_wait({"scene_path": rooms["Cave"], "arrive_at": &"Door"})
	expect_warning("there is nobody in cave.tscn to stand at Door")
	expect_equal([(tree.current_scene.get_node(^"Machine") as SCMachine).get_value("day"), tree.current_scene.get(&"position")], [2, Vector2(5, 5)])
	expect_equal((tree.current_scene.get_node(^"Chest/Bag") as SCInventory).count(COIN), 0)
	expect_equal((tree.current_scene.get_node(^"Stock") as SCInventory).count(COIN), 4)


func test_starting_again_gives_back_what_one_came_with() -> void:
	var design := hero_design({"hp": 10})
	await begin_in(room("Town", [rich_hero(design, 3)]))
	machine_here().set_value("hp", 7)
	await go_and_wait(room("Cave", [rich_hero(design, 0)]))
	machine_here().set_value("hp", 0)
	bag(^"Pack").take(COIN, 3)
	for times in 2:
		await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
		expect_equal([machine_here().get_value("hp"), bag(^"Pack").count(COIN)], [7, 3])
		machine_here().set_value("hp", 1)
	await begin_in(FOLDER + "town.tscn")
	machine_here().set_value("hp", 0)
	await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
	expect_equal(machine_here().get_value("hp"), 10, "one who came with nothing begins anew")


func test_who_is_not_in_the_next_scene_waits_for_the_one_after() -> void:
	var design := hero_design()
	var friend_design := hero_design({"trust": 0}, {"resource_name": "friend"})
	var friend := hero(friend_design)
	friend.name = "Friend"
	var town := room("Town", [hero(design), friend.duplicate()])
	friend.free()
	var sea := room("Sea", [hero(design)])
	var title := room("Title")
	await begin_in(town)
	var trust := func() -> Variant: return (tree.current_scene.get_node(^"Friend/Machine") as SCMachine).get_value("trust")
	(tree.current_scene.get_node(^"Friend/Machine") as SCMachine).set_value("trust", 5)
	machine_here().set_value("hp", 2)
	await go_and_wait(sea)
	await go_and_wait(town)
	expect_equal([trust.call(), machine_here().get_value("hp")], [5, 2])
	await go_and_wait(sea)
	await go_and_wait(title)
	await go_and_wait(town)
	expect_equal([trust.call(), machine_here().get_value("hp")], [0, 10], "a game that is begun anew from the title has nobody along")


func rich_hero(design: SCMachineTemplate, coins: int) -> Node:
	var made := hero(design)
	var belt := Node.new()
	belt.name = "Belt"
	made.add_child(belt)
	belt.add_child(new_bag("Pouch"))
	var pack := new_bag("Pack")
	if coins > 0:
		pack.held = [kind(SCItemStack, {"item": COIN, "how_many": coins})] as Array[SCItemStack]
	made.add_child(pack)
	var worn := new_bag("Worn")
	worn.slot_names = [&"feet"] as Array[StringName]
	made.add_child(worn)
	var chest := new_bag("Chest")
	if coins == 0:
		chest.held = [kind(SCItemStack, {"item": COIN, "how_many": 9})] as Array[SCItemStack]
	made.add_child(chest)
	return made


func new_bag(name: String) -> SCInventory:
	var made := SCInventory.new()
	made.name = name
	return made


func bag(path: NodePath) -> SCInventory:
	return hero_here().get_node(path)
