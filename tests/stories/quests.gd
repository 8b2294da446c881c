extends "res://tests/stories/files/quest_story.gd"
## The kinds about quests: starting, ending and tracking them from a machine, and asking about them.


func test_a_quest_is_given_done_and_thanked_for() -> void:
	var apples := quest("Apples", [on_event(&"apple_found", 3), on_event(&"baker_seen")])
	var giver := start(machine([
		state("Give", [kind(SCStartQuestAction, {"quest": apples})], {"FINISHED": "Wait"}),
		state("Wait", [], [transition(&"QUEST_PROGRESS", &"Cheer", &"news"), transition(&"QUEST_DONE", &"Thank", &"finished")]),
		state("Cheer", [], [transition(&"QUEST_PROGRESS", &"Cheer", &"news"), transition(&"QUEST_DONE", &"Thank", &"finished")]),
		state("Thank"),
	], {"variables": {"news": null, "finished": null}}))
	var tree_of_apples := asker(body("Tree"))
	expect_state(giver, "Wait")
	expect_heard(["started Apples"])
	expect_equal(SCQuests._waiting.keys(), [&"apple_found"], "its turn has not come")
	tree_of_apples.send_event(&"baker_seen")
	expect_equal(told(apples), ["now", "later"])
	for found in 2:
		tree_of_apples.send_event(&"apple_found")
	expect_equal(giver.get_value("news"), {"quest": apples, "step": 0, "count": 2, "how_many": 3})
	expect_state(giver, "Cheer")
	tree_of_apples.send_event(&"apple_found")
	expect_equal(told(apples), ["done", "now"])
	expect_equal(SCQuests._waiting.keys(), [&"baker_seen"])
	giver.send_event(&"baker_seen")
	expect_state(giver, "Thank")
	expect_equal(giver.get_value("finished"), apples)
	expect_status(apples, SCQuests.Status.DONE)
	expect_heard(["Apples 0: 1", "Apples 0: 2", "Apples 0: 3", "Apples 0 is done", "Apples 1: 1", "Apples 1 is done", "done Apples"])
	tree_of_apples.send_event(&"apple_found")
	SCQuests.start(apples, tree)
	expect_heard([], "a quest that is done is left as it is")


func test_what_the_lines_say() -> void:
	var apples := quest("Apples", [])
	for row: Array in [
		[SCStartQuestAction, "Start quest %s"],
		[SCCompleteQuestAction, "Complete quest %s"],
		[SCFailQuestAction, "Fail quest %s"],
		[SCAbandonQuestAction, "Abandon quest %s"],
		[SCTrackQuestAction, "Track quest %s"],
	]:
		expect_line(kind(row[0], {"quest": apples}), row[1] % "Apples")
		expect_line(kind(row[0]), row[1] % "(pick one)")
	expect_line(kind(SCTrackQuestAction, {"quest": apples, "tracked": false}), "Stop tracking quest Apples")
	expect_line(kind(SCQuestIsCondition, {"quest": apples}), "Quest Apples is active")
	expect_line(kind(SCQuestIsCondition, {"quest": apples, "status": 3, "invert": true}), "Not: Quest Apples has failed")
	expect_line(kind(SCQuestStepIsCondition, {"quest": apples, "step": 1, "status": 2}), "Step 2 of quest Apples is the one to do now")


func test_every_status_and_what_each_kind_does_in_it() -> void:
	var words := ["not started", "under way", "done already", "failed already", "abandoned"]
	# For each status: what Start, Complete, Fail, Abandon and Track make of it, and which of them complain.
	var rows := [
		[[1, 2, 0, 0, 0], [2, 3, 4]],
		[[1, 2, 3, 4, 1], []],
		[[2, 2, 2, 2, 2], [2, 3]],
		[[1, 2, 3, 3, 3], [2, 3]],
		[[1, 2, 4, 4, 4], [2, 3]],
	]
	var kinds := [SCStartQuestAction, SCCompleteQuestAction, SCFailQuestAction, SCAbandonQuestAction, SCTrackQuestAction]
	for status in rows.size():
		for at in kinds.size():
			var errand := quest("Errand %d %d" % [status, at], [on_event(&"never")])
			_bring_to(errand, status)
			var made := play(kind(kinds[at], {"quest": errand}))
			expect_state(made, "Done")
			expect_status(errand, rows[status][0][at], "%s of one that is %s" % [kinds[at], words[status]])
			if at in rows[status][1]:
				expect_warning([
					"", "",
					("Fail Quest on Machine: the quest \"%s\" is %s, not under way, so it was not failed. "
							+ "Only a quest started with Start Quest, and not done yet, can fail.") % [errand.title, words[status]],
					("Abandon Quest on Machine: the quest \"%s\" is not under way, so there was nothing to give up. "
							+ "Only a quest begun and not finished can be abandoned.") % errand.title,
					"Track Quest on Machine: the quest \"%s\" has not begun, so it cannot be tracked yet. Start it with Start Quest first." % errand.title,
				][at])
			expect_answers(made, range(5).map(func(asked: int) -> Array:
				return [kind(SCQuestIsCondition, {"quest": errand, "status": asked}), asked == rows[status][0][at]]))
			made.free()


func test_kinds_without_a_quest_say_so() -> void:
	for picked: Resource in [null, item("Sword")]:
		for row: Array in [
			[SCStartQuestAction, "Start Quest on Asker has no quest to begin."],
			[SCCompleteQuestAction, "Complete Quest on Asker has no quest to complete."],
			[SCFailQuestAction, "Fail Quest on Asker has no quest to fail."],
			[SCAbandonQuestAction, "Abandon Quest on Asker has no quest to give up. Pick one under Quest."],
			[SCTrackQuestAction, "Track Quest on Asker has no quest to track. Pick one under Quest."],
			[SCQuestIsCondition, "Quest Is on Asker has no quest to ask about, so the answer is always no. Pick a quest under Quest."],
			[SCQuestStepIsCondition, "Quest Step Is on Asker has no quest to ask about, so pick one under Quest, so the answer is always no."],
		]:
			expect_warns(kind(row[0], {"quest": picked}), row[1], {"name": "Asker"})
			if row[0] not in [SCQuestIsCondition, SCQuestStepIsCondition]:
				kind(row[0]).call(&"_warn_quest", null, 0, 0)
				expect_warning((row[1] as String).replace("on Asker", "on a machine"))


func test_where_one_step_has_got() -> void:
	var apples := quest("Apples", [on_event(&"found"), on_event(&"baked"), on_event(&"eaten")])
	var any := asker()
	var answers := func(step: int) -> Array:
		return range(3).map(func(status: int) -> bool: return ask(any, kind(SCQuestStepIsCondition, {"quest": apples, "step": step, "status": status})))
	expect_equal(answers.call(0), [false, true, false], "before it begins")
	SCQuests.start(apples, tree)
	expect_equal(answers.call(0), [false, true, true])
	expect_equal(answers.call(1), [false, true, false])
	any.send_event(&"found")
	expect_equal(answers.call(0), [true, false, false])
	expect_equal(answers.call(1), [false, true, true])
	SCQuests.fail(apples)
	expect_equal(answers.call(0), [true, false, false])
	expect_equal(answers.call(1), [false, true, false], "steps of a failed quest do not count")
	for step: int in [-1, 3, 5]:
		for status in 3:
			expect_warns(kind(SCQuestStepIsCondition, {"quest": apples, "step": step, "status": status}),
					"Quest Step Is on Asker has a step the quest does not have, so pick one under Step, so the answer is always no.", {"name": "Asker"})


func test_the_inspector_offers_the_steps_of_the_quest() -> void:
	var asked: SCQuestStepIsCondition = kind(SCQuestStepIsCondition)
	expect_equal(property_of(asked, "step")["hint_string"], "Pick a quest first:0")
	asked.quest = quest("Apples", [on_event(&"found", 3, {"says": "Find apples, three: red"}), null, on_event(&"eaten", 1, {"says": "Eat"})])
	expect_equal(property_of(asked, "step")["hint"], PROPERTY_HINT_ENUM)
	expect_equal(property_of(asked, "step")["hint_string"], "1. Find apples; three - red:0,2. :1,3. Eat:2")
	asked.quest.steps.clear()
	expect_equal(property_of(asked, "step")["hint_string"], "The quest has no steps:0")
	expect_equal(property_of(kind(SCQuestIsCondition), "status")["hint_string"], "Not Started:0,Active:1,Done:2,Failed:3,Abandoned:4")


func test_a_state_left_by_the_quest_s_own_event_is_not_finished_too() -> void:
	var errand := quest("Errand", [on_event(&"never")])
	SCQuests.start(errand, tree)
	var made := play(kind(SCFailQuestAction, {"quest": errand}), {"QUEST_FAILED": "Sad", "FINISHED": "Wrong"})
	expect_state(made, "Sad")
	expect_status(errand, SCQuests.Status.FAILED)


func test_quests_set_off_from_what_they_tell() -> void:
	var first := quest("First", [on_event(&"go")], {"done_event": &"first_done"})
	var second := quest("Second", [on_event(&"first_done")])
	var errands := quest("Both", [on_event(&"first_done"), on_event(&"QUEST_DONE")])
	for each: SCQuest in [first, second, errands]:
		SCQuests.start(each, tree)
	# Three machines hear of it, and the quests once.
	for i in 3:
		play([], {"first_done": "Heard"})
	asker().send_event(&"go")
	for each: SCQuest in [first, second, errands]:
		expect_status(each, SCQuests.Status.DONE)
	expect_equal(counts(errands), [1, 1])


func test_quests_without_end_hold_nothing_up() -> void:
	var ring := quest("Ring", [on_event(&"never")])
	var book := SCQuests.watch(tree)
	book.quest_failed.connect(func(of: SCQuest) -> void: SCQuests.start(of, tree))
	book.quest_started.connect(func(of: SCQuest) -> void: SCQuests.fail(of))
	SCQuests.start(ring, tree)
	expect_warning("Quests set each other off 10000 times in one go")
	heard.clear()


func test_ending_a_quest_from_within_its_own_telling() -> void:
	var apples := quest("Apples", [on_event(&"found", 3), on_event(&"eaten")])
	SCQuests.start(apples, tree)
	SCQuests.watch(tree).step_progressed.connect(func(of: SCQuest, _step: int, count: int) -> void:
		if count == 2:
			SCQuests.abandon(of)
			SCQuests.forget_all(tree))
	var any := asker()
	for i in 5:
		any.send_event(&"found")
	expect_status(apples, SCQuests.Status.NOT_STARTED)
	expect_heard(["started Apples", "Apples 0: 1", "Apples 0: 2"])


func _bring_to(errand: SCQuest, status: int) -> void:
	if status > 0:
		SCQuests.start(errand, tree)
	match status:
		2:
			SCQuests.complete(errand, tree)
		3:
			SCQuests.fail(errand)
		4:
			SCQuests.abandon(errand)
