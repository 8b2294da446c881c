extends "res://tests/stories/files/quest_story.gd"
## Rewards, and quests in saved games.

const FILE: String = "user://story_quest.tres"


func close() -> void:
	if FileAccess.file_exists(FILE):
		DirAccess.remove_absolute(FILE)
	await super()


func test_the_reward() -> void:
	for row: Array in [
		["an int", {"gold": 5}, 7.0, 12],
		["a float", {"gold": 0.5}, 2.25, 2.75],
		["nothing yet", {"gold": null}, 3.0, 3.0],
		["less", {"gold": 5}, -2.0, 3],
	]:
		var rich := player(0, row[1])
		var errand := quest("Errand", [on_event(&"a")], {
			"reward_items": [_stack("Apple", 3), null, _stack("", 2), _stack("Sword", 1)] as Array[SCItemStack], "reward_variable": &"gold", "reward_amount": row[2],
		})
		SCQuests.complete(errand, tree)
		expect_warning("The quest \"Errand\" has a row without an item under Reward Items, which was left out.")
		expect_equal(SCMachine.machine_of(rich).get_value(&"gold"), row[3], row[0])
		expect_equal([bag_of(rich).count(item("Apple")), bag_of(rich).count(item("Sword"))], [3, 1])
		for again in 2:
			SCQuests.complete(errand, tree)
			SCQuests.start(errand, tree)
		expect_equal(bag_of(rich).count(item("Apple")), 3, "the reward is given once")
		rich.free()


func test_what_does_not_fit_is_kept() -> void:
	var bag := bag_of(player(1))
	var apple := item("Apple", 5)
	bag.add(apple, 3)
	var kept: Array[String] = []
	SCQuests.watch(tree).reward_kept.connect(func(of: SCItem, how_many: int) -> void: kept.append("%d %s" % [how_many, of.item_name]))
	SCQuests.complete(quest("Errand", [], {"reward_items": [_stack("Apple", 9, 5), _stack("Sword", 1)] as Array[SCItemStack]}), tree)
	expect_equal(bag.count(apple), 5)
	expect_equal(Array(kept), ["7 Apple", "1 Sword"])
	expect_equal(SCQuests.kept_rewards(tree).values(), [7, 1])
	bag.take(apple, 1)
	expect_equal(bag.count(apple), 5, "it comes as soon as there is room")
	bag.slots = 0
	bag.take(apple, 1)
	expect_equal([bag.count(apple), bag.count(item("Sword"))], [10, 1])
	expect_equal(SCQuests.kept_rewards(tree).size(), 0)


func test_rewards_wait_for_the_player() -> void:
	var errand := quest("Errand", [], {"reward_items": [_stack("Apple", 2)] as Array[SCItemStack], "reward_variable": &"gold", "reward_amount": 5.0})
	SCQuests.complete(errand, tree)
	expect_warning("The reward of the quest \"Errand\" has to wait: no node in the group player carries an Inventory. Put one under the player.")
	expect_warning("The reward of the quest \"Errand\" has to wait: no node in the group player has a machine. Put the player into that group.")
	var poor := player(0, {"silver": 1})
	await frames(2)
	expect_equal(bag_of(poor).count(item("Apple")), 2)
	SCQuests.complete(quest("Other", [], {"reward_variable": &"gold", "reward_amount": NAN}), tree)
	expect_warning("The quest \"Other\" is worth nan of gold, which is no number to add. Type another under Reward Amount.")
	poor.free()
	var rich := player(0, {"gold": 1, "name": "Ann"})
	await frames(2)
	expect_equal(SCMachine.machine_of(rich).get_value(&"gold"), 6)
	SCQuests.complete(quest("Third", [], {"reward_variable": &"name", "reward_amount": 1.0}), tree)
	expect_warning("The reward of the quest \"Third\" was not given: the variable name of the player's machine holds String, not a number.")
	SCQuests.complete(quest("Fourth", [], {"reward_variable": &"iron", "reward_amount": 1.0}), tree)
	expect_warning("The reward of the quest \"Fourth\" has to wait: the player's machine has no variable called iron.")


func test_a_saved_game_goes_on_where_it_was() -> void:
	var rich := player(0, {"gold": 0})
	_store([on_event(&"a", 5), on_event(&"b"), on_event(&"c")])
	var done := quest("Done", [on_event(&"d")], {"quest_key": &"done", "reward_variable": &"gold", "reward_amount": 10.0})
	var errand: SCQuest = load(FILE)
	SCQuests.start(errand, tree)
	SCQuests.complete(done, tree)
	SCQuests.track(errand, false)
	come("a a a")
	var saved := _through_a_file(SCQuests.to_save(tree))
	come("a a b c")
	expect_status(errand, SCQuests.Status.DONE)
	SCQuests.from_save(saved, tree)
	expect_status(errand, SCQuests.Status.ACTIVE)
	expect_equal(counts(errand), [3, 0, 0])
	expect(not SCQuests.is_tracked(errand))
	expect_equal(SCQuests._waiting.keys(), [&"a"])
	# Another run of the game, in which nobody has named any quest.
	errand = null
	SCQuests.forget_all(tree)
	SCQuests.from_save(saved, tree)
	heard.clear()
	come("a a b c")
	expect_heard(["Stored 0: 4", "Stored 0: 5", "Stored 0 is done", "Stored 1: 1", "Stored 1 is done", "Stored 2: 1", "Stored 2 is done", "done Stored"])
	SCQuests.complete(done, tree)
	SCQuests.start(done, tree)
	expect_status(done, SCQuests.Status.DONE)
	expect_equal(SCMachine.machine_of(rich).get_value(&"gold"), 10, "it is rewarded once")


func test_saving_at_any_moment_neither_loses_nor_doubles_the_reward() -> void:
	var rich := player(0, {"gold": 0})
	var bag := bag_of(rich)
	var apple := item("Apple")
	_store([on_event(&"a")], {"reward_items": [_stack("Apple", 3), _stack("Sword", 1)] as Array[SCItemStack], "reward_variable": &"gold", "reward_amount": 7.0})
	var errand: SCQuest = load(FILE)
	var saves: Array[Array] = []
	var save := func() -> void:
		saves.append([SCQuests.to_save(tree), bag.count(apple), bag.count(item("Sword")), SCMachine.machine_of(rich).get_value(&"gold")])
	var book := SCQuests.watch(tree)
	for name: StringName in [&"quest_started", &"step_progressed", &"step_completed", &"quest_done", &"changed"]:
		book.connect(name, func(_a: Variant = null, _b: Variant = null, _c: Variant = null) -> void: save.call())
	bag.changed.connect(save)
	bag.item_added.connect(func(_of: SCItem, _many: int) -> void: save.call())
	SCQuests.start(errand, tree)
	come("a")
	expect(saves.size() >= 8, "%d saves" % saves.size())
	for connection: Dictionary in bag.changed.get_connections():
		if connection["callable"] == save:
			bag.changed.disconnect(save)
	for connection: Dictionary in bag.item_added.get_connections():
		bag.item_added.disconnect(connection["callable"] as Callable)
	for name: StringName in [&"quest_started", &"step_progressed", &"step_completed", &"quest_done", &"changed"]:
		for connection: Dictionary in book.get_signal_connection_list(name):
			book.disconnect(name, connection["callable"] as Callable)
	for row: Array in saves:
		bag.take(apple, 99)
		bag.take(item("Sword"), 99)
		bag.add(apple, row[1])
		bag.add(item("Sword"), row[2])
		SCMachine.machine_of(rich).set_value(&"gold", row[3])
		SCQuests.from_save(_through_a_file(row[0]), tree)
		come("a")
		expect_status(errand, SCQuests.Status.DONE)
		expect_equal([bag.count(apple), bag.count(item("Sword")), SCMachine.machine_of(rich).get_value(&"gold")], [3, 1, 7], "saved with %s" % [row.slice(1)])


func test_a_quest_that_was_edited_between_two_saved_games() -> void:
	# The steps then, the events, the steps now, and what they have counted.
	for row: Array in [
		[[[&"a", 3], [&"b", 3]], "a b b", [[&"b", 3], [&"a", 3]], [2, 1]],
		[[[&"a", 3], [&"b", 3]], "a b b", [[&"b", 3]], [2]],
		[[[&"a", 3]], "a a", [[&"new"], [&"a", 3], [&"newer"]], [0, 2, 0]],
		[[[&"a", 3], [&"b", 3]], "a b b", [[&"renamed", 3], [&"b", 3]], [1, 2]],
		[[[&"a", 3], [&"a", 5]], "a a", [[&"a", 3], [&"a", 5]], [2, 2]],
		[[[&"a", 5], [&"b"]], "a a a a", [[&"a", 2], [&"b"]], [2, 0]],
	]:
		SCQuests.forget_all(tree)
		_store((row[0] as Array).map(func(of: Array) -> SCQuestStep: return callv(&"on_event", of)), {"in_order": false})
		SCQuests.start(load(FILE) as SCQuest, tree)
		come(row[1])
		var saved := _through_a_file(SCQuests.to_save(tree))
		SCQuests.forget_all(tree)
		_store((row[2] as Array).map(func(of: Array) -> SCQuestStep: return callv(&"on_event", of)), {"in_order": false})
		SCQuests.from_save(saved, tree)
		expect_equal(counts(load(FILE) as SCQuest), row[3], str(row))


func test_a_quest_that_a_newer_game_made_shorter_is_over() -> void:
	var rich := player(0, {"gold": 0})
	_store([on_event(&"a"), on_event(&"b")], {"reward_variable": &"gold", "reward_amount": 3.0})
	SCQuests.start(load(FILE) as SCQuest, tree)
	come("a")
	var saved := SCQuests.to_save(tree)
	SCQuests.forget_all(tree)
	_store([on_event(&"a")], {"reward_variable": &"gold", "reward_amount": 3.0})
	SCQuests.from_save(saved, tree)
	expect_status(load(FILE) as SCQuest, SCQuests.Status.DONE)
	expect_equal(SCMachine.machine_of(rich).get_value(&"gold"), 3)


func test_what_cannot_be_saved_or_found_is_told() -> void:
	var loose := quest("Loose", [on_event(&"a")])
	SCQuests.start(loose, tree)
	expect_equal((SCQuests.to_save(tree)["quests"] as Array).size(), 0)
	expect_warning("The quest \"Loose\" was not saved, as it could not be found again: it has neither a file nor a Quest Key.")
	_store([on_event(&"a", 3)])
	var errand: SCQuest = load(FILE)
	SCQuests.forget_all(tree)
	SCQuests.start(errand, tree)
	come("a")
	var saved := SCQuests.to_save(tree)
	DirAccess.remove_absolute(FILE)
	var path := errand.resource_path
	errand.take_over_path("")
	SCQuests.forget_all(tree)
	SCQuests.from_save(saved, tree)
	expect_warning("A saved game goes on with a quest that is not found at %s, so its steps do not count. What they have counted is kept." % FILE)
	expect_equal(SCQuests.to_save(tree), saved, "nothing is lost")
	errand.take_over_path(path)
	expect_equal(counts(errand), [1], "it is found when somebody names it")
	come("a")
	expect_equal(counts(errand), [2])
	for wrong: Dictionary in [
		{}, {"quests": 5}, {"quests": [3, {}, {"key": ""}], "rewards": 7}, {"quests": [{"key": "x", "status": 99, "steps": [null, {"count": NAN}]}]},
	]:
		SCQuests.from_save(wrong, tree)
		expect_equal(SCQuests.quests_with(SCQuests.Status.ACTIVE, tree).size(), 0)
	for i in 2:
		expect_warning("A saved game has no quests that could be read, so the quest book is empty.")


func test_loading_from_within_a_quest_s_own_telling() -> void:
	_store([on_event(&"a", 3)])
	var errand: SCQuest = load(FILE)
	SCQuests.start(errand, tree)
	var saved := SCQuests.to_save(tree)
	SCQuests.watch(tree).step_completed.connect(func(_of: SCQuest, _step: int) -> void: SCQuests.from_save(saved, tree))
	come("a a a")
	expect_status(errand, SCQuests.Status.ACTIVE)
	expect_equal(counts(errand), [0])
	expect("done Stored" not in heard, "news of the game that was left")


func _stack(name: String, how_many: int, most_in_a_stack: int = 99) -> SCItemStack:
	return kind(SCItemStack, {"item": item(name, most_in_a_stack) if not name.is_empty() else null, "how_many": how_many})


func _store(steps: Array, options: Dictionary = {}) -> void:
	ResourceSaver.save(quest("Stored", steps, options), FILE)
	ResourceLoader.load(FILE, "", ResourceLoader.CACHE_MODE_REPLACE)


# As a game's file brings it back: whole numbers with a point, names as text.
func _through_a_file(saved: Dictionary) -> Dictionary:
	return JSON.parse_string(JSON.stringify(saved))
