extends "res://tests/stories/files/quest_story.gd"
## What ticks the steps of a quest off, and in which order.


func test_the_order_of_steps() -> void:
	var optional := {"optional": true}
	# In order or not, the steps as event and settings, the events that come, and what is told of each step then.
	for row: Array in [
		[true, [[&"a"], [&"b"], [&"c"]], "c b a c b", ["done", "done", "now"]],
		[false, [[&"a"], [&"b"], [&"c"]], "c b", ["now", "done", "done"]],
		# One event counts for the step whose turn it is, not for the next one too.
		[true, [[&"a"], [&"a"], [&"b"]], "a", ["done", "now", "later"]],
		[false, [[&"a"], [&"a"], [&"b"]], "a", ["done", "done", "now"]],
		# Nobody has to wait for an optional step, nor skip it.
		[true, [[&"a", 1, optional], [&"b"], [&"c"]], "b", ["now", "done", "now"]],
		[true, [[&"a", 1, optional], [&"b"], [&"c"]], "b a", ["done", "done", "now"]],
		[true, [[&"a", 2], [&"b"]], "a b", ["now", "later"]],
		# Zero and less is as good as once.
		[true, [[&"a", 0], [&"b", -3], [&"c"]], "a b", ["done", "done", "now"]],
	]:
		var steps: Array = (row[1] as Array).map(func(of: Array) -> SCQuestStep: return callv(&"on_event", of))
		var errand := quest("Errand", steps, {"in_order": row[0]})
		SCQuests.start(errand, tree)
		come(row[2])
		expect_equal(told(errand), row[3], row[2])
		expect_status(errand, SCQuests.Status.ACTIVE)
		SCQuests.forget(errand)
		expect_status(errand, SCQuests.Status.NOT_STARTED)


## However many machines an event is sent to, a quest counts it once.
func test_an_event_for_many_counts_once() -> void:
	for row: Array in [["Every Machine", {"reach": SCSendEventAction.EVERY_MACHINE}], ["A Group", {"reach": SCSendEventAction.A_GROUP, "to_group": &"slimes"}]]:
		var errand := quest(row[0], [on_event(&"slain", 3)])
		SCQuests.start(errand, tree)
		for i in 3:
			var slime: Node2D = add(Node2D.new())
			slime.add_to_group(&"slimes")
			slime.add_child(running(template([state("Here", [], {"slain": "There"}), state("There")])))
		var settings := {"event_name": &"slain"}
		settings.merge(row[1])
		play(kind(SCSendEventAction, settings))
		expect_equal(SCQuests.step_count(errand, 0), 1, row[0])
		SCQuests.forget_all(tree)


func test_when_a_quest_is_over() -> void:
	var optional := {"optional": true}
	for row: Array in [
		["a", [on_event(&"a")], true, "a", true],
		["an optional one is left", [on_event(&"a", 1, optional), on_event(&"b")], true, "b", true],
		["only optional ones", [on_event(&"a", 1, optional), on_event(&"b", 1, optional)], true, "b", false],
		["only optional ones, all done", [on_event(&"a", 1, optional), on_event(&"b", 1, optional)], true, "b a", true],
		["no steps", [], true, "a b", false],
	]:
		var errand := quest(row[0], row[1], {"in_order": row[2]})
		SCQuests.start(errand, tree)
		come(row[3])
		expect_status(errand, SCQuests.Status.DONE if row[4] else SCQuests.Status.ACTIVE)
		SCQuests.forget_all(tree)


func test_the_inspector_shows_what_a_step_of_its_kind_needs() -> void:
	var own := ["waits_for", "item", "talk_to"]
	for at in own.size():
		var step: SCQuestStep = kind(SCQuestStep, {"kind": at})
		expect_shown(step, [own[at], "says", "how_many"])
		expect_hidden(step, own.filter(func(name: String) -> bool: return name != own[at]))


func test_mistakes_in_the_steps_are_told() -> void:
	var errand := quest("Errand", [null, on_event(&""), collecting(null, 2), talking(&""), on_event(&"a")], {"in_order": false})
	SCQuests.start(errand, tree)
	expect_warning("Step 1 of the quest \"Errand\" is an empty row, so it is left out. Make a step in it, or remove it.")
	expect_warning("Step 2 of the quest \"Errand\" waits for nothing, so it does not tick itself off. Fill in its Waits For, or count it with")
	expect_warning("Step 3 of the quest \"Errand\" waits for nothing, so it does not tick itself off. Fill in its Item, or count it with")
	expect_warning("Step 4 of the quest \"Errand\" waits for nothing, so it does not tick itself off. Fill in its Talk To, or count it with")
	expect_equal(told(errand), ["later", "now", "now", "now", "now"])
	expect_equal(SCQuests._waiting.keys(), [&"a"])
	come("a")
	for step in 4:
		SCQuests.count_step(errand, step)
	SCQuests.count_step(errand, 2)
	SCQuests.count_step(errand, 99)
	expect_status(errand, SCQuests.Status.DONE)
	for nothing: Resource in [null, item("Sword")]:
		SCQuests.start(nothing, tree)
		expect_warning("which is no quest, so nothing was done. Hand over an SCQuest.")


func test_collecting_counts_what_is_there_already_and_goes_down_again() -> void:
	var apple := item("Apple")
	var pear := item("Pear")
	var bag := bag_of(player())
	bag.add(apple, 3)
	bag.add(pear, 5)
	var errand := quest("Fruit", [collecting(apple, 10), collecting(pear, 2)])
	SCQuests.start(errand, tree)
	expect_equal(counts(errand), [3, 0])
	bag.add(apple, 2)
	bag.take(apple, 4)
	expect_equal(counts(errand), [1, 0])
	bag.add(item("Apple"), 20)
	expect_status(errand, SCQuests.Status.DONE)
	expect_equal(counts(errand), [10, 2], "it counts no further, and the next one has enough as it begins")
	expect_heard(["started Fruit", "Fruit 0: 3", "Fruit 0: 5", "Fruit 0: 1", "Fruit 0: 10", "Fruit 0 is done", "Fruit 1: 2", "Fruit 1 is done", "done Fruit"])
	bag.take(apple, 99)
	expect_equal(told(errand), ["done", "done"], "what is done stays done")


func test_the_player_comes_later_and_goes() -> void:
	var apple := item("Apple")
	var errand := quest("Fruit", [collecting(apple, 10)])
	SCQuests.start(errand, tree)
	expect_equal(counts(errand), [0])
	bag_of(player()).add(apple, 4)
	await frames(1)
	expect_equal(counts(errand), [4])
	var first := stage.get_node(^"Player")
	first.free()
	var second := player()
	bag_of(second).add(apple, 6)
	await frames(1)
	expect_equal(counts(errand), [6])
	bag_of(second).free()
	add(SCInventory.new(), "Bag", {"under": second})
	await frames(1)
	bag_of(second).add(apple, 10)
	expect_status(errand, SCQuests.Status.DONE)
	expect(not tree.node_added.is_connected(SCQuests.watch(tree)._player._on_node_added), "nobody is looked out for any more")


func test_talks() -> void:
	var baker := asker(body("Baker"))
	var guard := body("Guard 7")
	guard.add_to_group(&"guards")
	var watch_machine := asker(guard)
	var errand := quest("Errand", [talking(&"Baker"), talking(&"guards", {"how_many": 2})])
	SCQuests.start(errand, tree)
	SCQuests.talked(watch_machine, tree)
	expect_equal(counts(errand), [0, 0])
	SCQuests.talked(baker, tree)
	SCQuests.talked(watch_machine, tree)
	SCQuests.talked(baker, tree)
	expect_equal(counts(errand), [1, 1])
	SCQuests.talked(null, tree)
	SCQuests.talked(watch_machine, tree)
	expect_status(errand, SCQuests.Status.DONE)


func test_steps_that_change_while_the_quest_is_under_way() -> void:
	var first := on_event(&"a", 3)
	var last := on_event(&"c")
	var errand := quest("Errand", [first, on_event(&"b", 2), last], {"in_order": false})
	SCQuests.start(errand, tree)
	come("a a b")
	var fresh := on_event(&"d")
	errand.steps = [fresh, first, last] as Array[SCQuestStep]
	expect_equal(counts(errand), [0, 2, 0])
	expect_equal(SCQuests._waiting.keys().size(), 3)
	expect(&"b" not in SCQuests._waiting, "a step that is gone waits")
	come("b d c")
	# In place, where nobody tells: it is found out when it matters.
	errand.steps.append(on_event(&"e"))
	expect_equal(told(errand), ["done", "now", "done", "now"])
	first.waits_for = &"aa"
	come("a e aa")
	expect_status(errand, SCQuests.Status.DONE)
	var other := quest("Other", [on_event(&"a", 5), on_event(&"b")])
	SCQuests.start(other, tree)
	come("a a")
	other.steps[0].how_many = 2
	expect_equal(told(other), ["done", "now"])
	other.steps.clear()
	SCQuests.steps_changed(other)
	expect_status(other, SCQuests.Status.ACTIVE)
	come("a b")
	expect_equal(SCQuests._waiting.keys(), [])


func test_a_game_without_steps_that_wait_pays_nothing() -> void:
	var errand := quest("Errand", [on_event(&"a"), on_event(&"b")])
	expect_equal(SCQuests._waiting.keys(), [])
	SCQuests.start(errand, tree)
	SCQuests.track(errand, false)
	come("a")
	expect_equal(told(errand), ["done", "now"], "tracked or not, it counts")
	SCQuests.abandon(errand)
	expect_equal(SCQuests._waiting.keys(), [])
	come("b")
	expect_equal(told(errand), ["done", "later"])


func test_two_hundred_quests_wait_for_one_event() -> void:
	var errands := range(200).map(func(at: int) -> SCQuest: return quest("Errand %d" % at, [on_event(&"a", 2), on_event(&"b")]))
	for errand: SCQuest in errands:
		SCQuests.start(errand, tree)
	come("a a")
	expect_equal(errands.filter(func(errand: SCQuest) -> bool: return told(errand) == ["done", "now"]).size(), 200)
	SCQuests.abandon(errands[7])
	come("b")
	expect_equal(SCQuests.quests_with(SCQuests.Status.DONE, tree).size(), 199)


func test_scripts_can_wait_for_events_too() -> void:
	var came: Array[StringName] = []
	var on_bell := func(event_name: StringName, _in_tree: SceneTree) -> void: came.append(event_name)
	SCQuests.wait_for(&"bell", on_bell)
	var errand := quest("Errand", [on_event(&"bell")])
	SCQuests.start(errand, tree)
	come("bell horn bell")
	SCQuests.stop_waiting(&"bell", on_bell)
	come("bell")
	expect_equal(came, [&"bell", &"bell"] as Array[StringName])
	expect_status(errand, SCQuests.Status.DONE)
