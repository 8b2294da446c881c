extends PhysicsStory
## Beaten enemies drop loot, and whoever walks over it picks it up.

const Loot2D := preload("res://addons/quillstead/runtime/ground_loot.gd")
const Loot3D := preload("res://addons/quillstead/runtime/ground_loot_3d.gd")
const Items := preload("res://addons/quillstead/runtime/quillstead_items.gd")


func item(name: String, rarity: SCItem.Rarity = SCItem.Rarity.COMMON, amounts: Array = [], damage: float = 0.0) -> SCItem:
	var made: SCItem = kind(SCItem, {"item_name": name, "item_key": StringName(name), "rarity": rarity, "damage": damage})
	for amount: float in amounts:
		made.changes.append(kind(SCItemChange, {"stat": &"power", "amount": amount}))
	return made


func drop(settings: Dictionary) -> SCDropLootAction:
	return kind(SCDropLootAction, {"item_chance": 100.0, "dropped_event": &"dropped"}.merged(settings, true))


func lying() -> Array[Node]:
	return stage.get_children().filter(func(node: Node) -> bool: return is_instance_of(node, Loot3D if in_3d else Loot2D) and not node.is_queued_for_deletion())


func player(x: float, settings: Dictionary = {}) -> SCMachine:
	var body := character(x, -TALL / 2.0, "Hero")
	body.add_to_group(&"player")
	add(SCInventory.new(), "Bag", {"under": body}.merged(settings))
	return start(machine([state("Rest")], {"under": body, "variables": {"gold": 5}}))


func bag_of(hero: SCMachine) -> SCInventory:
	return hero.get_parent().get_node("Bag")


func lay(x: float, what: SCItem, gold: int = 0, push: float = 0.0) -> Node:
	var here := start(machine([state("Rest")], {"under": spot(x, 0.0, "Enemy")}))
	var by: Variant = at(push, 0.0)
	return Loot3D.lay(here, at(x, 0.0), what, gold, by) if in_3d else Loot2D.lay(here, at(x, 0.0), what, gold, by)


## Told numbers: an oval in 2D, a circle in 3D, a line where the game is seen from the side.
func test_it_falls_around_the_body() -> void:
	await on_both_sides(func() -> void:
		for side_on: String in ["", "body", "player"]:
			var enemy := spot(3.0, 1.0, "Enemy")
			var hero := spot(9.0, 0.0, "Player")
			hero.add_to_group(&"player")
			if not side_on.is_empty():
				(enemy if side_on == "body" else hero).set_meta(&"quillstead_side_on", true)
			var settings := {"items": [item("Stick")], "drops_what_it_carries": false, "varies_by": 0.0}
			var furthest := Vector2.ZERO
			for i in 60:
				play(drop(settings), {}, {"under": enemy}).free()
			var all := lying()
			expect_equal(all.size(), 60)
			for loot in all:
				var push: Variant = loot.get(&"push")
				expect_equal(loot.get(&"global_position"), at(3.0, 1.0))
				var long := Vector2(push.x, push.z) * 32.0 if in_3d else Vector2(push.x, push.y * (1.0 if not side_on.is_empty() else 2.0))
				if in_3d:
					expect_equal(push.y, 0.0)
				if side_on.is_empty() or in_3d:
					expect(long.length() > 23.99 and long.length() < 56.01, "%s is pushed by %s" % [loot, push])
				else:
					expect(push.y == 0.0 and absf(push.x) < 56.01)
				furthest = furthest.max(long.abs())
				loot.free()
			expect(furthest.x > 45.0 and (furthest.y > 45.0 or (not side_on.is_empty() and not in_3d)), "it falls to all sides")
			enemy.free()
			hero.free())


func test_it_slides_to_rest() -> void:
	await on_both_sides(func() -> void:
		var free_to_go := lay(0.0, item("Stick"), 0, 1.5)
		await physics_frames(40)
		expect_near(where(free_to_go).x, 1.5, 0.001)
		block(11.0, 0.0, 1.0, 4.0, "Wall")
		var walled := lay(10.0, item("Stick"), 0, 1.5)
		var other_way := lay(20.0, item("Stick"), 0, -1.0)
		character(19.5, -TALL / 2.0, "Bystander")
		await physics_frames(40)
		expect_near(where(walled).x, 10.3, 0.01)
		expect_near(where(other_way).x, 19.0, 0.001)
		expect(not free_to_go.is_physics_processing(), "it rests")
		for loot in lying():
			loot.free())


func test_what_falls_lies_on_the_ground() -> void:
	await on_both_sides(func() -> void:
		ground()
		var high := lay(0.0, item("Stick"))
		high.set(&"global_position", at(0.0, 5.0))
		high.set(&"falls", true)
		await physics_frames(90)
		expect_near(where(high).y, 0.2, 0.001)
		high.free())


func test_whoever_walks_over_it_picks_it_up() -> void:
	await on_both_sides(func() -> void:
		var stick := item("Stick")
		var loot := lay(3.0, stick)
		var coins := lay(3.0, null, 7)
		var heard: Array = []
		loot.connect(&"picked_up", func(by: Node) -> void: heard.append(by))
		var hero := player(0.0)
		var goblin := character(3.0, -TALL / 2.0, "Goblin")
		add(SCInventory.new(), "Bag", {"under": goblin})
		await physics_frames(6)
		expect_equal(lying().size(), 2, "a goblin is no player")
		hero.get_parent().set(&"position", at(3.0, 0.0))
		await physics_frames(6)
		expect_equal(heard, [hero.get_parent()])
		expect_equal(bag_of(hero).count(stick), 1)
		expect_equal(hero.get_value(&"gold"), 12)
		expect(not is_instance_valid(loot) and not is_instance_valid(coins)))


func test_a_full_bag_leaves_it_lying() -> void:
	await on_both_sides(func() -> void:
		var stick := item("Stick")
		stick.most_in_a_stack = 4
		var stone := item("Stone")
		var hero := player(0.0, {"slots": 1})
		bag_of(hero).add(stick, 3)
		var pile := lay(0.0, stick)
		pile.set(&"how_many", 5)
		var other := lay(0.0, stone)
		await physics_frames(6)
		expect_equal(bag_of(hero).count(stick), 4)
		expect_equal([pile.get(&"how_many"), pile.get(&"item")], [4, stick], "what does not fit stays")
		expect_equal(other.get(&"item"), stone)
		bag_of(hero).take(stick, 4)
		await physics_frames(30)
		expect_equal(bag_of(hero).count(stick) + bag_of(hero).count(stone), 4 if bag_of(hero).count(stick) > 0 else 1, "there is room again")
		expect_equal(lying().size(), 1)
		for loot in lying():
			loot.free())


func test_a_purse_that_is_full_leaves_the_rest() -> void:
	var body_of := character(0.0, -TALL / 2.0, "Hero")
	body_of.add_to_group(&"player")
	var hero := start(machine([state("Rest")], {"under": body_of, "variables": [variable(&"coins", 5, {"never_above": "8"})]}))
	var coins := lay(0.0, null, 10)
	coins.set(&"gold_goes_into", &"coins")
	await physics_frames(6)
	expect_equal([hero.get_value(&"coins"), coins.get(&"gold")], [8, 7])
	hero.set_value(&"coins", 0)
	await physics_frames(30)
	expect_equal(hero.get_value(&"coins"), 7)


func test_who_cannot_take_it_is_told() -> void:
	var hero := character(0.0, -TALL / 2.0, "Hero")
	hero.add_to_group(&"player")
	lay(0.0, item("Stick"), 3)
	await physics_frames(40)
	expect_warning("Hero walks over Stick and has no Inventory to put it in, so it stays on the ground. Add an Inventory node under Hero.")
	expect_warning("no machine of its has a number called gold")
	expect_equal(lying().size(), 1)


## As a blow kills: 2D adds no areas while areas tell of one another.
func test_loot_is_laid_and_taken_from_within_the_physics() -> void:
	await on_both_sides(func() -> void:
		var hero := player(0.0)
		var blade := zone(0.0, 0.0, 0.5, 0.5, "Blade")
		var stick := item("Stick")
		var made: Array[Node] = []
		blade.connect(&"body_entered", func(_body: Node) -> void: made.append(lay(0.0, stick, 0, 0.2)))
		await physics_frames(10)
		expect_equal(made.size(), 1)
		expect_equal(bag_of(hero).count(stick), 1))


## A chest that is open from the start: its machine begins while the engine sets the scene up.
func test_loot_is_laid_as_the_scene_begins() -> void:
	await on_both_sides(func() -> void:
		var stick := item("Stick")
		var chest: Node = Node3D.new() if in_3d else Node2D.new()
		var bag := SCInventory.new()
		bag.add(stick)
		chest.set(&"position", at(2.0, 0.0))
		chest.add_child(bag)
		chest.add_child(doing(drop({"gold_least": 4, "gold_most": 4})))
		var level: Node = Node3D.new() if in_3d else Node2D.new()
		level.set(&"position", at(1.0, 0.0))
		level.add_child(chest)
		stage.add_child(level)
		await frames(1)
		var laid := level.get_children().filter(func(node: Node) -> bool: return is_instance_of(node, Loot3D if in_3d else Loot2D))
		expect_equal(laid.map(func(loot: Node) -> Array: return [loot.get(&"item") == stick, loot.get(&"gold")]), [[true, 0], [false, 4]])
		for loot: Node in laid:
			expect_near(loot.get(&"global_position"), at(3.0, 0.0), 10.0 if not in_3d else 0.5)
		expect(bag.is_empty())
		level.free())


## What is really played is let go of by a thread in its own time, so this one is asked for and gives nothing.
class Asked:
	extends AudioStream

	var times: int = 0

	func _instantiate_playback() -> AudioStreamPlayback:
		times += 1
		return null

	func _get_length() -> float:
		return 0.1


func test_a_sound_is_heard_of_picking_up() -> void:
	await on_both_sides(func() -> void:
		player(0.0)
		var sounds: Array[Asked] = [Asked.new(), Asked.new()]
		var dying := drop({"drops_what_it_carries": false, "items": [item("Stick")], "item_sound": sounds[0]})
		_put(dying, {"gold_most": 3, "gold_least": 3, "gold_sound": sounds[1]})
		play(dying, {}, {"under": spot(0.0, 0.0, "Enemy")})
		await physics_frames(10)
		expect_equal([sounds[0].times, sounds[1].times], [1, 1])
		for i in 2:
			expect_error("Failed to instantiate playback")
		await advance(1.0)
		expect_equal(stage.get_children().filter(func(node: Node) -> bool: return node is AudioStreamPlayer2D or node is AudioStreamPlayer3D), []))


func test_what_the_player_throws_away_does_not_jump_back() -> void:
	await on_both_sides(func() -> void:
		var hero := player(0.0)
		var stick := item("Stick")
		var loot: Node = Loot3D.lay(hero, at(0.0, 0.0), stick, 0, at(0.2, 0.0)) if in_3d else Loot2D.lay(hero, at(0.0, 0.0), stick, 0, at(0.2, 0.0))
		await physics_frames(90)
		expect(is_instance_valid(loot) and bag_of(hero).count(stick) == 0)
		hero.get_parent().set(&"position", at(5.0, 0.0))
		await physics_frames(6)
		hero.get_parent().set(&"position", at(0.0, 0.0))
		await physics_frames(6)
		expect_equal(bag_of(hero).count(stick), 1))


## Each stack once, however often the chest is opened; the state may be left on the first.
func test_what_it_carries_falls_down() -> void:
	await on_both_sides(func() -> void:
		var arrow := item("Arrow")
		var coin := item("Coin")
		var chest := spot(0.0, 0.0, "Chest")
		var bag: SCInventory = add(SCInventory.new(), "Bag", {"under": chest})
		bag.add(arrow, 20)
		bag.add(coin)
		var worn: SCInventory = add(SCInventory.new(), "Worn", {"under": chest, "slot_names": [&"hand"] as Array[StringName]})
		var made := play(drop({"gold_least": 9, "gold_most": 4, "gold_goes_into": &"coins"}), {"dropped": "Open"}, {"under": chest})
		expect_state(made, "Open")
		expect_events(made, ["dropped", "dropped"])
		expect_equal(bag.stacks() + worn.stacks(), 0)
		var found := {}
		for loot in lying():
			var what: SCItem = loot.get(&"item")
			found[what.item_name if what != null else "gold"] = loot.get(&"how_many") if what != null else loot.get(&"gold")
			if what == null:
				expect_equal(loot.get(&"gold_goes_into"), &"coins")
		expect_equal([found.get("Arrow"), found.get("Coin")], [20, 1])
		expect(found.get("gold", 0) >= 4 and found.get("gold", 0) <= 9, "%s gold" % found.get("gold", 0))
		made.go_to(&"Work")
		expect_equal(lying().filter(func(loot: Node) -> bool: return loot.get(&"item") != null).size(), 2)
		for loot in lying():
			loot.free())


func test_it_drops_as_often_as_it_says() -> void:
	for row: Array in [[0.0, 0], [100.0, 200], [30.0, 60]]:
		var enemy := spot(0.0, 0.0, "Enemy")
		for i in 200:
			play(drop({"items": [null, item("Stick")], "item_chance": row[0]}), {}, {"under": enemy}).free()
		expect_near(lying().size(), row[1], 26 if row[0] == 30.0 else 0)
		for loot in lying():
			loot.free()
		enemy.free()


func test_no_two_swords_are_alike() -> void:
	var sword := item("Sword", SCItem.Rarity.RARE, [1.5, 10.0, -10.0, 0.0, 2.0], 20.0)
	sword.changes.append(null)
	sword.take_over_path("user://story_sword.tres")
	sword.changes[1].take_over_path("user://story_change.tres")
	var enemy := spot(0.0, 0.0, "Enemy")
	var seen := {}
	for i in 60:
		var made := play(drop({"items": [sword], "varies_by": 20.0}), {"dropped": "Done"}, {"under": enemy})
		var one: SCItem = made.event_data(&"dropped")
		made.free()
		var amounts: Array = one.changes.slice(0, 5).map(func(change: SCItemChange) -> float: return change.amount)
		seen[[one.damage] + amounts] = true
		expect_equal(one.get_meta(&"quillstead_varied_from"), "user://story_sword.tres")
		expect(one.key() != sword.key() and one.key() != "")
		expect(one.damage == roundf(one.damage) and one.damage >= 16.0 and one.damage <= 24.0, "damage %s" % one.damage)
		expect(amounts[0] >= 1.2 and amounts[0] <= 1.8, "a small one stays a fraction: %s" % amounts[0])
		expect(amounts[1] == roundf(amounts[1]) and amounts[1] >= 8.0 and amounts[1] <= 12.0)
		expect(amounts[2] == roundf(amounts[2]) and amounts[2] <= -8.0 and amounts[2] >= -12.0)
		expect_equal(amounts[3], 0.0)
		expect(amounts[4] in [2.0])
		var again: SCItem = SCDropLootAction.with_numbers(sword, SCDropLootAction.numbers_of(one))
		expect_equal([again.damage] + again.changes.slice(0, 5).map(func(change: SCItemChange) -> float: return change.amount), [one.damage] + amounts)
		expect(again.changes[0] != sword.changes[0] and again.changes[1] != sword.changes[1] and again.key() != sword.key())
	expect(seen.size() > 30, "only %d kinds" % seen.size())
	expect_equal([sword.damage, sword.changes[0].amount, sword.changes[1].amount], [20.0, 1.5, 10.0], "the item itself stays")
	expect_equal(SCDropLootAction.numbers_of(null), {})
	expect_error("Parameter \"p_item\" is null.")
	expect_equal(SCDropLootAction.with_numbers(null, {}), null)
	expect_error("Parameter \"p_item\" is null.")
	for rubbish: Dictionary in [{}, {"damage": "much", "changes": 3}, {"changes": ["x", null, 4]}, {"damage": NAN, "changes": [INF]}]:
		var made: SCItem = SCDropLootAction.with_numbers(sword, rubbish)
		expect_equal([made.damage, made.changes[0].amount], [20.0, 1.5], str(rubbish))


func test_it_needs_a_place_and_says_what_it_drops() -> void:
	expect_warns(drop({}), "Drop Loot on Machine drops loot onto the floor where Menu is, and Menu has no place in the world, as it is not a 2D or a 3D node.",
		{"under": add(Node.new(), "Menu")})
	var two := [item("Stick"), item("Stone")]
	expect_lines(SCDropLootAction, {
		"Drop what it carries": {},
		"Drop nothing yet": {"drops_what_it_carries": false},
		"Drop 50% an item from 2 and what it carries": {"items": two},
		"Drop 25% an item from 2 and 3 to 9 gold": {"items": two, "item_chance": 25.0, "gold_least": 9, "gold_most": 3, "drops_what_it_carries": false},
	})
