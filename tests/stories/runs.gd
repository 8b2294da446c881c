extends Story
## A run through a dungeon: items turn up by chance, are offered, and give their powers to whoever takes them.

const Items := preload("res://addons/quillstead/runtime/quillstead_items.gd")
const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	Items.new_run()


func item(name: String, rarity: SCItem.Rarity = SCItem.Rarity.COMMON, changes: Array = []) -> SCItem:
	var made: SCItem = kind(SCItem, {"item_name": name, "item_key": StringName(name), "rarity": rarity})
	for row: Array in changes:
		made.changes.append(kind(SCItemChange, {"stat": StringName(row[0] as String), "change": row[1], "amount": row[2]}))
	return made


func picked(of: Variant, items: Array, settings: Dictionary = {}) -> Variant:
	return result_of(kind(of, {"items": items, "store_in": &"answer"}.merged(settings, true)))


func chances(common: float, uncommon: float, rare: float, legendary: float) -> Dictionary:
	return {"common_chance": common, "uncommon_chance": uncommon, "rare_chance": rare, "legendary_chance": legendary}


## So many of each rarity out of 4000 as its weight among those that are there says.
func test_each_rarity_turns_up_by_its_chance() -> void:
	var all := [item("Stick"), item("Stone"), item("Axe", SCItem.Rarity.UNCOMMON), item("Wand", SCItem.Rarity.RARE), item("Crown", SCItem.Rarity.LEGENDARY)]
	for row: Array in [
		[all, [60.0, 25.0, 12.0, 3.0], [0.3, 0.3, 0.25, 0.12, 0.03]],
		[all, [0.6, 0.25, 0.12, 0.03], [0.3, 0.3, 0.25, 0.12, 0.03]],
		[all.slice(2), [60.0, 25.0, 12.0, 3.0], [0.0, 0.0, 0.625, 0.3, 0.075]],
		[all, [0.0, 0.0, 0.0, 7.0], [0.0, 0.0, 0.0, 0.0, 1.0]],
		[all + [all[0]], [1.0, -5.0, NAN, 0.0], [0.6667, 0.3333, 0.0, 0.0, 0.0]],
	]:
		var counts: Dictionary[SCItem, int] = {}
		for i in 4000:
			var one := Items.pick(row[0], PackedFloat32Array(row[1]))
			counts[one] = counts.get(one, 0) + 1
		for at in all.size():
			# Four times the spread of such a count.
			var share: float = row[2][at]
			expect_near(counts.get(all[at], 0) / 4000.0, share, 4.0 * sqrt(share * (1.0 - share) / 4000.0) + 0.0001, "%s by %s" % [all[at].item_name, row[1]])


func test_what_has_no_chance_never_turns_up() -> void:
	var stick := item("Stick")
	for row: Array in [[[], [1.0, 1.0, 1.0, 1.0]], [[stick], [0.0, 5.0, 5.0, 5.0]], [[stick], []], [[null, 3, Node], [1.0, 1.0, 1.0, 1.0]]]:
		expect_equal(Items.pick(row[0], PackedFloat32Array(row[1])), null, str(row))
	var offer := kind(SCOfferItemAction, {"items": [stick], "none_left_event": &"none"}.merged(chances(0, 0, 0, 0)))
	var made := play(offer, {"none": "None"}, {"variables": {"item": null}})
	expect_state(made, "None")
	expect_warning("every chance is zero")


func test_nothing_turns_up_twice_in_a_run() -> void:
	var all := [item("Stick"), null, item("Stone"), item("Wand", SCItem.Rarity.RARE)]
	var names: Array[String] = []
	for i in 3:
		names.append((picked(SCPickItemAction, all) as SCItem).item_name)
	names.sort()
	expect_equal(names, ["Stick", "Stone", "Wand"])
	var made := play(kind(SCPickItemAction, {"items": all, "none_left_event": &"none"}), {"none": "None"}, {"variables": {"item": all[0]}})
	expect_state(made, "None")
	expect_equal(made.get_value(&"item"), null, "it is not left with another's item")
	expect(picked(SCPickItemAction, all, {"not_seen_this_run": false}) != null)
	var saved := Items.to_save()
	play(kind(SCNewRunAction))
	expect(picked(SCPickItemAction, all) != null)
	Items.from_save(saved)
	expect_equal(picked(SCPickItemAction, all), null)


func test_an_offer_stands_until_somebody_takes_it() -> void:
	var stick := item("Stick")
	var stone := item("Stone")
	for i in 5:
		expect_equal(picked(SCOfferItemAction, [stick]), stick)
	expect(not Items.was_given(stick) and not Items.was_seen(stick))
	var hero := play(kind(SCGiveItemAction, {"item": stick, "item_event": &"got"}), {"got": "Got"})
	expect_state(hero, "Got")
	expect_equal(hero.event_data(&"got"), stick)
	expect(Items.was_given(stick))
	for i in 5:
		expect_equal(picked(SCOfferItemAction, [stick, stone]), stone)
	expect_equal(picked(SCOfferItemAction, [stick]), null)
	expect_equal(picked(SCOfferItemAction, [stick], {"not_taken_this_run": false}), stick)
	play(kind(SCNewRunAction))
	expect_equal(picked(SCOfferItemAction, [stick]), stick)


func test_the_item_needs_somewhere_to_go() -> void:
	for row: Array in [[SCOfferItemAction, "Offer Item"], [SCPickItemAction, "Pick Item"]]:
		expect_warns(kind(row[0], {"items": [item("Stick")], "store_in": &""}),
			"%s on Machine has no Store In, so the item it picked was lost. Pick a Resource variable beside Store In." % row[1])
	expect_warns(kind(SCPickItemAction, {"items": [Resource.new()]}), "row 0 of Items holds a Resource, which is not an item", {"variables": {"item": null}})


func test_what_they_say() -> void:
	var some := [item("Stick"), item("Stone")]
	expect_line(kind(SCOfferItemAction, {"items": some}), "item = an item offered from 2 not taken yet")
	expect_line(kind(SCOfferItemAction, {"items": some, "not_taken_this_run": false}), "item = an item offered from 2")
	expect_line(kind(SCPickItemAction, {"items": some}), "item = an item from 2 not seen yet")
	expect_line(kind(SCPickItemAction, {"items": some, "not_seen_this_run": false}), "item = an item from 2")
	expect_lines(SCGiveItemAction, {
		"Give Stick to this machine": {"item": some[0]},
		"Give [found] to Hero": {"item_variable": &"found", "machine_path": ^"../../Hero"},
		"Take Stick back from Hero": {"item": some[0], "what": 1, "machine_path": ^"../../Hero"},
		"Give (pick one) to this machine": {},
	})
	expect_line(kind(SCNewRunAction), "Start a new run")


## Given twice and taken back twice, in between with other changes of the same number.
func test_powers_come_with_the_item_and_go_with_it() -> void:
	var hero := start(machine([state("Rest")], {"under": body("Hero"), "variables": {"power": 10.0, "luck": 1, "name": "Bo"}}))
	const ADD := SCItemChange.Change.ADD
	var ring := item("Ring", SCItem.Rarity.RARE, [["power", ADD, 5.0], ["power", SCItemChange.Change.MULTIPLY, 2.0], ["luck", ADD, 1.0]])
	ring.changes.append(null)
	var give := kind(SCGiveItemAction, {"item": ring, "machine_path": ^"../../Hero"})
	var take := kind(SCGiveItemAction, {"item": ring, "machine_path": ^"../../Hero", "what": 1})
	var elsewhere := {"under": body("Chest")}
	play(give, {}, elsewhere)
	expect_values(hero, {"power": 30.0, "luck": 2})
	play(give, {}, elsewhere)
	expect_values(hero, {"power": 80.0, "luck": 3})
	Stats.add(hero, &"power", "Potion", 1.0)
	ring.changes[0].amount = 100.0
	ring.changes[2].stat = &"name"
	play(take, {}, elsewhere)
	expect_values(hero, {"power": 32.0, "luck": 2})
	expect_equal(Items.how_many_given(hero, ring), 1)
	play(take, {}, elsewhere)
	play(take, {}, elsewhere)
	expect_values(hero, {"power": 11.0, "luck": 1, "name": "Bo"}, "one that was never given stays away: ")


func test_what_is_worn_and_what_is_given_are_two() -> void:
	var hero := start(machine([state("Rest")], {"variables": {"power": 10.0}}))
	var ring := item("Ring", SCItem.Rarity.RARE, [["power", SCItemChange.Change.ADD, 5.0]])
	Items.apply_changes(hero, ring)
	Items.take_away(hero, ring)
	expect_equal(hero.get_value(&"power"), 15.0, "it was never given")
	Items.give(hero, ring)
	var other := start(machine([state("Rest")], {"variables": {"power": hero.get_value(&"power")}}))
	Stats.from_save(other, Stats.to_save(hero))
	for each: SCMachine in [hero, other]:
		expect_equal(each.get_value(&"power"), 20.0)
		Items.take_away(each, ring)
		Items.undo_changes(each, ring)
		Items.undo_changes(each, ring)
		expect_equal(each.get_value(&"power"), 10.0)


func test_a_new_run_begins_with_nothing_in_hand() -> void:
	var hero := start(machine([state("Rest")], {"variables": {"power": 10.0}}))
	var ring := item("Ring", SCItem.Rarity.RARE, [["power", SCItemChange.Change.ADD, 5.0]])
	var sword := item("Sword", SCItem.Rarity.RARE, [["power", SCItemChange.Change.MULTIPLY, 2.0]])
	Items.give(hero, ring)
	Items.give(hero, ring)
	Items.apply_changes(hero, sword)
	expect_equal(hero.get_value(&"power"), 40.0)
	play(kind(SCNewRunAction))
	expect_equal(hero.get_value(&"power"), 20.0, "what is worn stays")
	expect(not Items.was_given(ring))
	expect_equal(Items.how_many_given(hero, ring), 0)


func test_what_cannot_be_given_is_told() -> void:
	var stick := item("Stick")
	var stone := body("Stone")
	for row: Array in [
		[{"machine_path": ^"../../Stone", "item": stick}, "Stone has no Machine on it or above it, so there is nobody to give it to and none of the item's "
			+ "changes are made. Machine wants a node with a Machine on it, or under it."],
		[{"machine_path": ^"../Nobody", "item": stick}, "the node named in Machine, Nobody, was not found, so there is nobody to give it to"],
		[{}, "no Item is picked, so nothing is given."],
		[{"what": 1}, "no Item is picked, so nothing is taken back."],
		[{"item_variable": &"answer"}, "the variable answer holds no item, so nothing is given."],
	]:
		expect_warns(kind(SCGiveItemAction, row[0]), "Give Item on Machine: " + (row[1] as String), {"under": body("Giver"), "variables": {"answer": null}})
	expect_line(kind(SCGiveItemAction, {"item": Resource.new()}), "Give (pick one) to this machine")
	var machine_below := start(machine([state("Rest")], {"under": stone}))
	play(kind(SCGiveItemAction, {"item": stick, "machine_path": ^"../../Stone"}), {}, {"under": body("Giver")})
	expect_equal(Items.how_many_given(machine_below, stick), 1)
	var bad := item("Bad", SCItem.Rarity.COMMON, [["power", SCItemChange.Change.SET, 5.0], ["", 0, 1.0], ["power", 0, INF], ["missing", 0, 1.0]])
	Items.apply_changes(start(machine([state("Rest")], {"variables": {"power": 1.0}})), bad)
	for said: String in ["sets a number, which cannot be undone", "names no Stat", "has an Amount that is no number", "there is no variable called missing"]:
		expect_warning(said)


## A curse that a watcher breaks the moment it shows leaves nothing behind.
func test_what_is_undone_while_it_is_done_leaves_nothing() -> void:
	var curse := item("Curse", SCItem.Rarity.RARE, [["power", SCItemChange.Change.ADD, -5.0], ["luck", SCItemChange.Change.ADD, -1.0]])
	for frees: bool in [false, true]:
		var heard: Recorder = act("hears").watching(["power"])
		var made := start(machine([state("Hears", [heard])], {"under": body(), "variables": {"power": 10.0, "luck": 1}}))
		heard.updating(func(m: SCMachine) -> void:
			heard.forget()
			if frees:
				m.get_parent().free()
			else:
				Items.take_away(m, curse))
		Items.give(made, curse)
		expect_equal(is_instance_valid(made), not frees)
		if not frees:
			expect_values(made, {"power": 10.0, "luck": 1})
	Items.new_run()
