extends Story
## Potions are drunk up, and what a hero carries on the belt is used when it is charged.


func potion(settings: Dictionary = {}, changes: Array = [["health", SCItemChange.Change.ADD, 30.0]]) -> SCItem:
	var made: SCItem = kind(SCItem, {"item_name": "Potion", "item_key": &"potion", "used_up": true}.merged(settings, true))
	for row: Array in changes:
		made.when_used.append(kind(SCItemChange, {"stat": StringName(row[0] as String), "change": row[1], "amount": row[2]}))
	return made


func bag_with(holder: Node, item: SCItem, how_many: int) -> SCInventory:
	var bag: SCInventory = add(SCInventory.new(), "Bag", {"under": holder})
	bag.add(item, how_many)
	return bag


func use(item: SCItem, settings: Dictionary = {}) -> SCUseItemAction:
	return kind(SCUseItemAction, {"item": item, "not_ready_event": &"not ready", "none_left_event": &"none left"}.merged(settings, true))


func test_a_potion_is_drunk_up() -> void:
	for row: Array in [
		[{}, [["health", SCItemChange.Change.ADD, 30.0]], {"health": 40.0, "coins": 3}, 1],
		[{}, [["health", SCItemChange.Change.MULTIPLY, 0.5], ["coins", SCItemChange.Change.ADD, 1.6]], {"health": 5.0, "coins": 5}, 1],
		[{}, [["health", SCItemChange.Change.SET, 99.0], ["coins", SCItemChange.Change.SET, 0.0]], {"health": 99.0, "coins": 0}, 1],
		[{"leaves_the_bag": false}, [["health", SCItemChange.Change.ADD, -1.0]], {"health": 9.0, "coins": 3}, 2],
	]:
		var drink := potion(row[0], row[1])
		var hero := body("Hero")
		var bag := bag_with(hero, drink, 2)
		var made := play(use(drink), {"FINISHED": "Done"}, {"under": hero, "variables": {"health": 10.0, "coins": 3}})
		expect_state(made, "Done")
		expect_values(made, row[2], str(row))
		expect_equal(bag.count(drink), row[3])
		hero.free()


func test_the_last_one_has_been_drunk() -> void:
	var drink := potion()
	var hero := body("Hero")
	var bag := bag_with(hero, drink, 1)
	for state_name: String in ["Done", "None"]:
		var made := play(use(drink), {"FINISHED": "Done", "none left": "None"}, {"under": hero, "variables": {"health": 10.0}})
		expect_state(made, state_name)
		expect_equal(made.get_value(&"health"), 40.0 if state_name == "Done" else 10.0)
		made.free()
	expect_equal(bag.count(drink), 0)


func test_it_is_taken_from_one_and_changes_another() -> void:
	var drink := potion()
	var chest := body("Chest")
	var bag := bag_with(chest, drink, 2)
	var dog := start(machine([state("Rest")], {"under": body("Dog"), "variables": {"health": 1}}))
	var made := play(use(drink, {"bag_path": ^"../../Chest", "on_path": ^"../../Dog"}), {}, {"under": body("Hero"), "variables": {"health": 10.0}})
	expect_equal(dog.get_value(&"health"), 31)
	expect_equal(made.get_value(&"health"), 10.0)
	expect_equal(bag.count(drink), 1)
	play(use(drink, {"bag_path": ^"../../Chest", "on_path": ^"../../Chest"}), {}, {"under": body("Other"), "name": "Other", "variables": {"health": 10.0}})
	expect_warning("Use Item on Other: Chest has no Machine on it or above it, so the item is used on this machine instead.")


func test_what_is_picked_stands_in_for_an_empty_hand() -> void:
	var drink := potion()
	var other := potion({"item_key": &"other"}, [["health", SCItemChange.Change.ADD, 1.0]])
	var hero := body("Hero")
	bag_with(hero, drink, 3).add(other)
	for row: Array in [[null, 40.0], [other, 11.0], [7, 40.0]]:
		var made := play(use(drink, {"item_variable": &"hand"}), {}, {"under": hero, "variables": {"health": 10.0, "hand": row[0]}})
		expect_equal(made.get_value(&"health"), row[1], str(row))
		made.free()
	expect_warning("hand on Machine holds an int, not an item")


## Rows of what it needs, what the machine has, and what becomes of it.
func test_a_charged_item() -> void:
	for row: Array in [
		[3, 3, "Boom", 0],
		[3, 5.0, "Boom", 0.0],
		[3, 2, "Not", 2],
		[0, 0, "Boom", 0],
		[0, null, "Boom", null],
	]:
		var bomb: SCItem = kind(SCItem, {"item_name": "Bomb", "active": true, "charge": row[0], "use_event": &"boom"})
		var made := play(use(bomb), {"boom": "Boom", "not ready": "Not"}, {"variables": {"charge": row[1]} if row[1] != null else {}})
		expect_state(made, row[2])
		expect_equal(made.get_value(&"charge"), row[3], str(row))
		if row[2] == "Boom":
			expect_equal(made.event_data(&"boom"), bomb)


func test_what_is_set_up_wrong_is_told() -> void:
	for row: Array in [
		[null, {}, "Use Item on Machine: no Item is picked, so there is nothing to use.", "not ready"],
		[potion(), {}, "Use Item on Machine: Potion is used up when used, but there is no Inventory to take it out of. Add an Inventory node under Hero, "
			+ "or point Bag at one.", "none left"],
	]:
		var made := play(use(row[0], row[1]), {}, {"under": body("Hero"), "variables": {"charge": 5}})
		expect_warning(row[2])
		expect_events(made, [row[3]])
		made.get_parent().free()
	var water := potion({}, [])
	var hero := body("Hero")
	bag_with(hero, water, 1)
	play(use(water), {}, {"under": hero})
	expect_warning("Use Item on Machine: Potion is used up when used, but it has no When Used changes, so using it does nothing but take it out of the inventory.")
	var odd := potion({}, [["missing", 0, 1.0]])
	bag_with(body("Other"), odd, 1)
	play(use(odd, {"bag_path": ^"../../Other"}), {}, {"under": body("User"), "name": "Second"})
	expect_warning("there is no number called missing, so using Potion does not change it")


func test_it_says_what_it_does() -> void:
	var drink := potion()
	var bomb: SCItem = kind(SCItem, {"item_name": "Bomb", "active": true, "charge": 3})
	expect_lines(SCUseItemAction, {
		"Use Potion from the inventory": {"item": drink},
		"Use Potion from Chest": {"item": drink, "bag_path": ^"../../Chest"},
		"Use Bomb when charge is full": {"item": bomb},
		"Use [held]": {"item_variable": &"held"},
		"Use (pick one)": {},
	})


## The event of a bomb may end whoever threw it.
func test_the_use_event_may_free_the_machine() -> void:
	var bomb: SCItem = kind(SCItem, {"item_name": "Bomb", "active": true, "use_event": &"boom"})
	var hero := body("Hero")
	var ends: Recorder = act("ends").entering(func() -> void: hero.free())
	var made := start(machine([state("Wait", [], {"go": "Work"}), state("Work", [use(bomb), act("never").done()], {"boom": "Gone"}), state("Gone", [ends])],
		{"under": hero, "variables": {"charge": 1}}))
	made.send_event(&"go")
	expect(not is_instance_valid(hero))
	expect_log(["ends enter", "ends exit"])
