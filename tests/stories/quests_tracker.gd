extends "res://tests/stories/files/quest_story.gd"
## The list on the screen of what there is to do.


func test_it_shows_what_there_is_to_do() -> void:
	var errand := quest("Baking", [
		on_event(&"apple", 10, {"says": "Bring apples"}),
		on_event(&"song", 1, {"says": "Sing", "optional": true}),
		on_event(&"oven", 1, {"says": "Light the oven", "hidden": true}),
	])
	var tracker := _tracker()
	await frames(1)
	expect_equal([_shown(tracker), tracker.visible], [[], false])
	SCQuests.start(errand, tree)
	come("apple apple apple")
	expect_equal(_shown(tracker), [], "it is put together once in a frame")
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Baking", "QuestStep Bring apples 3/10"])
	expect(tracker.visible)
	SCQuests.count_step(errand, 0, 7)
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Baking", "QuestStepOptional Sing (optional)", "QuestStep Light the oven"])
	tracker.shows_done_steps = true
	await frames(1)
	expect_equal(_shown(tracker)[1], "QuestStepDone Bring apples 10/10")
	SCQuests.track(errand, false)
	await frames(1)
	expect_equal(_shown(tracker), [])
	SCQuests.track(errand)
	come("oven")
	await frames(1)
	expect_equal([_shown(tracker), tracker.visible], [[], false], "a quest that is done")


func test_coming_steps_but_for_hidden_ones() -> void:
	var tracker := _tracker({"shows_coming_steps": true, "counted_step": "{count} of {how_many}: {says}"})
	SCQuests.start(quest("Baking", [
		on_event(&"a", 2, {"says": "One"}), on_event(&"b", 1, {"hidden": true, "says": "Two"}), on_event(&"c", 1, {"says": "Three"}), null,
	]), tree)
	expect_warning("Step 4 of the quest \"Baking\" is an empty row")
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Baking", "QuestStep 0 of 2: One", "QuestStep Three"])
	come("a a")
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Baking", "QuestStep Two", "QuestStep Three"])


func test_the_latest_quests_come_first_and_no_more_than_fit() -> void:
	var tracker := _tracker({"most_quests": 2})
	for title: String in ["First", "Second", "Third"]:
		SCQuests.start(quest(title, [on_event(StringName(title.to_lower()), 1, {"says": "Do it"})]), tree)
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Third", "QuestStep Do it", "QuestTitle Second", "QuestStep Do it"])
	come("third")
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Second", "QuestStep Do it", "QuestTitle First", "QuestStep Do it"])
	tracker.free()
	come("second")
	await frames(1)


func test_it_draws_nothing_while_nothing_changes_and_speaks_the_player_s_language() -> void:
	var words := Translation.new()
	words.locale = "de"
	words.add_message("Bring apples", "Bring Äpfel")
	words.add_message("{says} {count}/{how_many}", "{says} ({count} von {how_many})")
	TranslationServer.add_translation(words)
	var tracker := _tracker()
	SCQuests.start(quest("Baking", [on_event(&"apple", 10, {"says": "Bring apples"})]), tree)
	await frames(1)
	(tracker.get_child(1, true) as Label).text = "drawn over"
	await frames(5)
	expect_equal(_shown(tracker)[1], "QuestStep drawn over")
	var before := TranslationServer.get_locale()
	TranslationServer.set_locale("de")
	await frames(1)
	expect_equal(_shown(tracker)[1], "QuestStep Bring Äpfel (0 von 10)")
	TranslationServer.set_locale(before)
	TranslationServer.remove_translation(words)


func test_a_tracker_of_the_next_scene_shows_the_same() -> void:
	SCQuests.start(quest("Baking", [on_event(&"apple", 2, {"says": "Bring apples"})]), tree)
	_tracker().free()
	come("apple")
	var tracker := _tracker()
	await frames(1)
	expect_equal(_shown(tracker), ["QuestTitle Baking", "QuestStep Bring apples 1/2"])
	var parent := tracker.get_parent()
	parent.remove_child(tracker)
	come("apple")
	parent.add_child(tracker)
	await frames(1)
	expect_equal(_shown(tracker), [])


func _tracker(settings: Dictionary = {}) -> SCQuestTracker:
	return add(SCQuestTracker.new(), "Tracker", settings)


# Each line with its theme type before it.
func _shown(tracker: SCQuestTracker) -> Array:
	var shown := tracker.get_children(true).filter(func(child: Node) -> bool: return child is Label and (child as Label).visible)
	return shown.map(func(label: Label) -> String: return "%s %s" % [label.theme_type_variation, label.text])
