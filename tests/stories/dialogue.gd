extends "res://tests/stories/files/talk_story.gd"
## Somebody is talked with: which line comes next, what an answer does, and how a talk ends.


## Calls back from wherever the talk comes by.
class NosyBox:
	extends SCDialogueBox

	var act: Callable

	func is_talking() -> bool:
		act.call("is_talking")
		return super()

	func show_line(words: String, speaker: String, portrait: Texture2D, answers: PackedStringArray, actor: Resource) -> void:
		super(words, speaker, portrait, answers, actor)
		act.call("show_line")

	func close() -> void:
		super()
		act.call("close")


class NosyAnswer:
	extends SCDialogueAnswer

	var act: Callable

	func offered(m: SCMachine, variables: Dictionary) -> bool:
		act.call("offered")
		return super(m, variables)

	func make_change(m: SCMachine, variables: Dictionary) -> void:
		super(m, variables)
		act.call("make_change")


func greeting() -> SCDialogue:
	return dialogue([
		asked(&"hello", "Hello, {name}.", [answer("Who are you?", &"who"), answer("Bye.", &"", {"send_event": &"rude"})]),
		line(&"who", "I keep the gate.", {"next_line": &"bye"}),
		line(&"bye", "Farewell."),
	])


func test_lines_lead_on_and_the_last_one_ends_it() -> void:
	var box := dialogue_box()
	var made := talk(greeting(), {"finished_event": &"talked"}, {"FINISHED": "Done"}, {"variables": {"name": "Ann"}})
	expect_equal([words_in(box), answers_in(box), box.visible], ["Hello, Ann.", ["Who are you?", "Bye."], true])
	expect_line(kind(SCStartDialogueAction, {"conversation": kind(SCDialogue, {"resource_name": "Greeting"})}), "Have dialogue Greeting")
	expect_line(kind(SCStartDialogueAction, {"conversation": load("res://demo/first_dialogue/gate_talk.tres")}), "Have dialogue Gate Talk")
	expect_line(SCStartDialogueAction.new(), "Have dialogue (pick one)")
	buttons_in(box)[0].pressed.emit()
	expect_equal([words_in(box), answers_in(box)], ["I keep the gate.", []])
	box.moved_on.emit()
	expect_equal(words_in(box), "Farewell.")
	expect_state(made, "Work")
	expect_events(made, [])
	box.moved_on.emit()
	expect_state(made, "Done")
	expect_events(made, ["talked"])
	expect(not box.is_talking() and not box.visible, "the box is still open")
	for signal_name: StringName in [&"moved_on", &"answered", &"taken_over", &"tree_exited", &"left_early", &"language_changed"]:
		expect_equal(box.get_signal_connection_list(signal_name).size(), 0, signal_name)
	expect_equal(Conversation.times_met(made), 1)


func test_an_event_that_leads_away_ends_it_there() -> void:
	var box := dialogue_box()
	var made := talk(greeting(), {"finished_event": &"talked"}, {"FINISHED": "Done", "rude": "Fight"}, {"variables": {"name": ""}})
	buttons_in(box)[1].pressed.emit()
	expect_state(made, "Fight")
	expect_events(made, ["rude"])
	expect(not box.is_talking(), "they talk on")
	# One that leads nowhere lets it go on.
	var stays := talk(dialogue([asked(&"a", "A", [answer("B", &"b", {"send_event": &"noise"})]), line(&"b", "B")]))
	box.answered.emit(0)
	expect_equal(words_in(box), "B")
	expect_events(stays, ["noise"])
	stays.free()
	expect(not box.is_talking(), "it talks on without its machine")


func test_who_leaves_the_state_ends_it_without_a_word() -> void:
	var box := dialogue_box()
	var made := talk(greeting(), {"finished_event": &"talked"}, {"FINISHED": "Done", "hit": "Fight"}, {"variables": {"name": ""}})
	expect_after(made, &"hit", "Fight")
	expect_events(made, ["hit"])
	expect(not box.is_talking())
	box.answered.emit(0)
	expect_equal(words_in(box), "")


func test_another_dialogue_takes_the_box() -> void:
	var box := dialogue_box()
	var first := talk(greeting(), {"finished_event": &"talked"}, {"FINISHED": "Done"}, {"variables": {"name": ""}})
	var second := talk(dialogue([line(&"boo", "Boo!")]), {"finished_event": &"scared"})
	expect_state(first, "Done")
	expect_events(first, [])
	expect_equal(words_in(box), "Boo!")
	box.moved_on.emit()
	expect_state(second, "Done")
	expect_events(second, ["scared"])


func test_chance_answers() -> void:
	var box := dialogue_box()
	var counts := {"Left": 0, "Right": 0}
	for i in 40:
		var made := talk(dialogue([
			asked(&"a", "Where now?", [answer("l", &"left"), answer("no", &"never", {"check": kind(SCChanceCondition, {"chance": 0.0})}), answer("r", &"right")],
				{"answers_are": SCDialogueLine.AnswersAre.AT_RANDOM}),
			line(&"left", "Left"), line(&"right", "Right"), line(&"never", "Never"),
		]))
		expect_equal(answers_in(box), [])
		box.moved_on.emit()
		counts[words_in(box)] += 1
		made.free()
	expect(counts["Left"] > 8 and counts["Right"] > 8 and counts.size() == 2, "it went %s" % counts)


func test_what_an_answer_does() -> void:
	var box := dialogue_box()
	var give := {"id": &"give", "change_variable": &"gold", "change": SCDialogueAnswer.Change.ADD, "change_value": -3}
	var of := dialogue([
		asked(&"a", "Pay?", [
			answer("Pay 3 of {gold}", &"a", give.merged({"check": kind(SCVariableCondition, {"variable_name": &"gold", "test": SCVariableCondition.GREATER_OR_EQUAL, "value": 3})})),
			answer("Take a name", &"a", {"change_variable": &"name", "change": SCDialogueAnswer.Change.ADD, "change_value": "!", "only_once": true}),
			answer("Rest", &"a", {"change_variable": &"rested", "change_value": true}),
			answer("Go"),
		]),
	])
	var made := talk(of, {}, {"FINISHED": "Done"}, {"variables": {"gold": 7, "name": "Bo", "rested": false}})
	expect_equal(answers_in(box), ["Pay 3 of 7", "Take a name", "Rest", "Go"])
	box.answered.emit(1)
	expect_equal(answers_in(box), ["Pay 3 of 7", "Rest", "Go"])
	box.answered.emit(1)
	for i in 2:
		box.answered.emit(0)
	expect_equal(answers_in(box), ["Rest", "Go"])
	expect_values(made, {"gold": 1, "name": "Bo!", "rested": true})
	for index: Variant in [-1, 2, 99]:
		box.answered.emit(index)
	expect_equal(answers_in(box), ["Rest", "Go"])
	box.answered.emit(1)
	expect_state(made, "Done")


func test_changes_that_cannot_be_made() -> void:
	# What the variable holds, what is added, what becomes of it, what is said.
	for row: Array in [
		[1.5, 1, 2.5, ""], [2, 0.6, 3, "so 2.6 was rounded to 3"], [Vector2(1, 2), Vector2(1, 0), Vector2(2, 2), ""], ["a", 1.0, "a1", ""], [[1], 2, [1, 2], ""],
		[true, 1, true, "cannot be added"], [1.0, "x", 1.0, "a String cannot be added"], [1.0, INF, 1.0, "no number to go on with"],
	]:
		var picked := answer("x", &"", {"change_variable": &"held", "change": SCDialogueAnswer.Change.ADD, "change_value": row[1]})
		var made := asker(stage, {"variables": {"held": row[0]}})
		picked.make_change(made, made.values)
		expect_equal(made.get_value(&"held"), row[2], str(row))
		if not row[3].is_empty():
			expect_warning(row[3])
		made.free()
	var lost := answer("Give up", &"", {"change_variable": &"hope"})
	var made := asker()
	for times in 2:
		lost.make_change(made, made.values)
	expect_warning("The answer \"Give up\", on the machine Machine: there is no variable called hope")
	lost.make_change(null, {})
	expect(not answer("x", &"", {"check": SCVariableCondition.new()}).offered(null, {}))


func test_refused_answers_are_hidden_or_greyed() -> void:
	var box := dialogue_box()
	var weak: SCMachineCondition = kind(SCVariableCondition, {"variable_name": &"strength", "test": SCVariableCondition.GREATER_OR_EQUAL, "value": 10})
	var of := dialogue([
		asked(&"a", "The gate is shut.", [
			answer("Lift it", &"lifted", {"check": weak, "refused": SCDialogueAnswer.Refused.GREY, "refused_words": "Lift it (Strength 10, not {strength})"}),
			answer("Sing", &"", {"check": weak}),
			answer("Knock", &"a"),
		]),
		asked(&"lifted", "It is open.", [answer("Shut it", &"", {"check": weak.duplicate(), "refused": SCDialogueAnswer.Refused.GREY})], {"next_line": &"end"}),
		line(&"end", "It stays open."),
	])
	(of.lines[1].answers[0].check as SCMachineCondition).invert = true
	var made := talk(of, {}, {"FINISHED": "Done"}, {"variables": {"strength": 4}})
	expect_equal(answers_in(box), ["Lift it (Strength 10, not 4)", "Knock"])
	expect_equal(buttons_in(box).map(func(button: Button) -> bool: return button.disabled), [true, false])
	expect(buttons_in(box)[1].has_focus(), "the greyed one has the focus")
	box.answered.emit(0)
	expect_equal(words_in(box), "The gate is shut.")
	made.set_value(&"strength", 12)
	box.answered.emit(1)
	expect_equal(answers_in(box), ["Lift it", "Sing", "Knock"])
	box.answered.emit(0)
	expect_equal([answers_in(box), buttons_in(box)[0].disabled], [["Shut it"], true])
	# Nothing can be picked, so a press moves on.
	box.press()
	expect_equal(words_in(box), "It stays open.")


func test_once_only_answers_stay_used_when_they_are_moved() -> void:
	var box := dialogue_box()
	var make := func(order: Array) -> SCDialogue:
		var by_id := {
			&"secret": answer("A secret?", &"a", {"id": &"secret", "only_once": true}), &"plain": answer("Again?", &"a", {"only_once": true}), &"bye": answer("Bye."),
		}
		return dialogue([asked(&"a", "Yes?", order.map(func(id: StringName) -> SCDialogueAnswer: return by_id[id]))], {"saved_as": &"barkeep"})
	var made := talk(make.call([&"secret", &"plain", &"bye"]))
	box.answered.emit(0)
	expect_equal(answers_in(box), ["Again?", "Bye."])
	box.answered.emit(1)
	expect_state(made, "Done")
	var saved: Dictionary = JSON.parse_string(JSON.stringify(Conversation.to_save()))
	Conversation.forget_all()
	expect(not Conversation.was_said(make.call([]), &"a"))
	Conversation.from_save(saved)
	expect(Conversation.was_said(make.call([]), &"a"))
	talk(make.call([&"bye", &"plain", &"secret"]))
	expect_equal(answers_in(box), ["Bye.", "Again?"])
	box.answered.emit(1)
	expect_equal(answers_in(box), ["Bye."])
	expect(Conversation.was_picked(made, Conversation.heard_key(make.call([]), &"a"), 1) and Conversation.was_picked(made, Conversation.heard_key(make.call([]), &"a"), &"secret"))


func test_what_was_said_can_be_asked() -> void:
	var box := dialogue_box()
	var of := greeting()
	var made := talk(of, {}, {"FINISHED": "Done"}, {"variables": {"name": ""}})
	var said := func(id: StringName) -> SCMachineCondition: return kind(SCDialogueLineSaidCondition, {"dialogue": of, "line": id})
	expect_answers(made, [[said.call(&"hello"), true], [said.call(&"who"), false]])
	box.answered.emit(0)
	expect_answers(made, [[said.call(&"who"), true], [said.call(&"bye"), false]])
	expect_warns(said.call(&"nobody"), "has a line the dialogue does not have, so pick one under Line, so the answer is always no.")
	expect_warns(SCDialogueLineSaidCondition.new(), "has no dialogue, so pick one under Dialogue, so the answer is always no.")
	of.resource_name = "Gate"
	expect_lines(SCDialogueLineSaidCondition, {"who of Gate has been said": {"dialogue": of, "line": &"who"}, "(pick one) of (pick one) has been said": {}})


func test_mistakes_are_told() -> void:
	expect_warns(SCStartDialogueAction.new(), "Start Dialogue on Machine has no dialogue to play. Pick one under Conversation.")
	expect_warns(kind(SCStartDialogueAction, {"conversation": kind(SCDialogue, {"resource_name": "Empty"})}), "has no dialogue to play, because Empty has no lines in it.")
	expect_warns(kind(SCStartDialogueAction, {"conversation": Resource.new()}), "has no dialogue to play")
	var of := greeting()
	expect_warns(kind(SCStartDialogueAction, {"conversation": of}), "Start Dialogue on Machine: there is no Dialogue Box in the scene to show it in.")
	expect_warns(kind(SCStartDialogueAction, {"conversation": of, "box_path": ^"../Nobody"}), "Start Dialogue on Machine: there is no node at ../Nobody, so there is nowhere")
	add(PanelContainer.new(), "Panel")
	expect_warns(kind(SCStartDialogueAction, {"conversation": of, "box_path": ^"../Panel", "finished_event": &"never"}), "Start Dialogue on Machine: Panel is not a Dialogue Box, so")
	var box := dialogue_box()
	var broken := dialogue([null, line(&"a", "A", {"next_line": &"gone"}), line(&"a", "Another A"), line(&"", "Lost")], {"start": &"none", "resource_name": "Broken"})
	broken.lines[1].answers.assign([null, 3, answer("b", &"nowhere", {"check": kind(SCChanceCondition, {"chance": 0.0})})])
	var made := talk(broken, {"finished_event": &"over"})
	expect_warning("The dialogue Broken is to start with the line none, which it does not have")
	expect_equal(answers_in(box), [])
	box.moved_on.emit()
	expect_warning("Broken has no line called gone, so it ended there")
	expect_state(made, "Done")
	expect_events(made, ["over"])
	var told := "\n".join(broken.problems())
	for part: String in ["One of its lines is empty", "Two lines are called a", "\"Lost\" has no Id", "start with the line none", "line a goes on with gone", "answers to the line a is empty",
		"\"b\" to the line a leads to nowhere"]:
		expect(part in told, "nothing says %s" % part)
	expect_equal(greeting().problems(), PackedStringArray())


func test_a_long_dialogue_is_walked_quickly() -> void:
	var box := dialogue_box()
	var lines := range(5000).map(func(i: int) -> SCDialogueLine: return line(&"l%d" % i, "Line %d" % i, {"next_line": &"l%d" % (i + 1) if i < 4999 else &""}))
	lines.reverse()
	var of := dialogue(lines, {"start": &"l0"})
	var began := Time.get_ticks_msec()
	var made := talk(of)
	for i in 5000:
		if i % 1000 == 0:
			expect_equal(words_in(box), "Line %d" % i)
		box.moved_on.emit()
	expect_state(made, "Done")
	# With a search through all lines for each it is half a minute.
	expect(Time.get_ticks_msec() - began < 5000, "it took %d ms" % (Time.get_ticks_msec() - began))
	# Lines that come, go and change their names are found as they are now.
	of.lines[0].id = &"renamed"
	expect_equal([of.line(&"renamed"), of.line(&"l4999")], [of.lines[0], null])
	var moved: SCDialogueLine = of.lines.pop_at(10)
	expect_equal(of.line(moved.id), null)
	of.lines.append(moved)
	expect_equal(of.line(moved.id), moved)


func test_a_box_that_answers_by_itself_cannot_go_round_for_ever() -> void:
	var box := dialogue_box()
	box.shown_whole.connect(func() -> void: box.moved_on.emit())
	var made := talk(dialogue([line(&"a", "A", {"next_line": &"b"}), line(&"b", "B", {"next_line": &"a"})], {"resource_name": "Ring"}))
	expect_warning("Ring went from line to line without anybody pressing anything, so it was ended at a")
	expect_state(made, "Done")
	expect(not box.is_talking())


func test_whatever_is_freed_it_ends_cleanly() -> void:
	for gone: String in ["box", "player", "machine", "above"]:
		var hero := body("Hero")
		hero.add_to_group(&"player")
		var above := body("Above")
		var box := dialogue_box({"letters_per_second": 20.0})
		var made := talk(dialogue([line(&"a", "A long line to be cut off.")]), {}, {"FINISHED": "Done"}, {"under": above})
		await advance(0.1)
		expect_equal(hero.process_mode, Node.PROCESS_MODE_DISABLED)
		match gone:
			"box":
				box.free()
				await frames(2)
				expect_warning("its Dialogue Box left the scene while something was said")
				expect_state(made, "Done")
			"player":
				hero.free()
				box.moved_on.emit()
				expect_state(made, "Done")
			"machine":
				made.free()
			"above":
				above.queue_free()
				await frames(2)
		if gone != "player":
			expect_equal(hero.process_mode, Node.PROCESS_MODE_INHERIT, gone)
			hero.free()
		if gone != "box":
			expect(not box.is_talking(), gone)
			box.free()
		if gone != "above":
			above.free()
		await frames(2)


func test_a_script_that_frees_things_from_within() -> void:
	# Called back from each step; the last column says whether the talk is over by it.
	for step: String in ["is_talking", "show_line", "close", "offered", "make_change"]:
		for victim: String in ["machine", "box"]:
			var box: NosyBox = add(NosyBox.new(), "Box", {"letters_per_second": 0.0})
			var picked := NosyAnswer.new()
			picked.to_line = &"b"
			var made := doing(kind(SCStartDialogueAction, {"conversation": dialogue([asked(&"a", "A", [picked]), line(&"b", "B")])}), {"FINISHED": "Done", "away": "Gone"})
			var act := func(at: String) -> void:
				if at != step:
					return
				if victim == "machine":
					made.send_event(&"away")
				elif box.is_inside_tree():
					box.queue_free()
					box.get_parent().remove_child(box)
			box.act = act
			picked.act = act
			start(made)
			if is_instance_valid(box):
				box.answered.emit(0)
			await frames(2)
			if is_instance_valid(box):
				box.moved_on.emit()
				await frames(2)
			expect(current(made) in [&"Gone", &"Done"], "%s at %s: it is in %s" % [victim, step, current(made)])
			output.claim("warning", "left the scene")
			picked.act = Callable()
			made.free()
			if is_instance_valid(box):
				box.act = func(_at: String) -> void: pass
				expect(not box.is_talking(), "%s at %s: the box talks on" % [victim, step])
				box.free()


func test_the_player_is_held_still() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 0.0)
		hero.add_to_group(&"player")
		var zone_around := zone(0.0, 0.5, 3.0, 3.0, "Zone")
		var seen: Array[String] = []
		zone_around.connect(&"body_entered", func(_body: Node) -> void: seen.append("in"))
		zone_around.connect(&"body_exited", func(_body: Node) -> void: seen.append("out"))
		await physics_frames(4)
		expect_equal(seen, ["in"] as Array[String])
		var box := dialogue_box()
		var made := talk(dialogue([line(&"a", "A"), line(&"b", "B")]))
		expect_equal(hero.process_mode, Node.PROCESS_MODE_DISABLED)
		await physics_frames(4)
		# A second talk in a box of its own.
		var other := dialogue_box({}, "Other")
		var second := talk(dialogue([line(&"c", "C")]), {"box_path": ^"../Other"})
		box.moved_on.emit()
		expect_state(made, "Done")
		expect_equal(hero.process_mode, Node.PROCESS_MODE_DISABLED, "the other talk goes on")
		other.moved_on.emit()
		expect_state(second, "Done")
		expect_equal(hero.process_mode, Node.PROCESS_MODE_INHERIT)
		expect_equal(hero.get(&"disable_mode"), CollisionObject2D.DISABLE_MODE_REMOVE)
		expect(hero.get_meta_list().is_empty(), "left on it: %s" % [hero.get_meta_list()])
		await physics_frames(4)
		expect_equal(seen, ["in"] as Array[String], "it left the zone it stands in")
		# One that stands still anyway is left alone, and so is the machine's own.
		hero.process_mode = Node.PROCESS_MODE_DISABLED
		talk(dialogue([line(&"a", "A")]))
		box.moved_on.emit()
		expect_equal(hero.process_mode, Node.PROCESS_MODE_DISABLED)
		hero.process_mode = Node.PROCESS_MODE_INHERIT
		for settings: Dictionary in [{"hold_the_player_still": false}, {}]:
			talk(dialogue([line(&"a", "A")]), settings, {}, {"under": stage if settings.has("hold_the_player_still") else hero})
			expect_equal(hero.process_mode, Node.PROCESS_MODE_INHERIT)
			box.moved_on.emit()
		for each: Node in [box, other]:
			each.free())


func test_a_box_below_the_player_goes_on() -> void:
	var hero := body("Hero")
	hero.add_to_group(&"player")
	var box: SCDialogueBox = add(SCDialogueBox.new(), "Box", {"under": hero, "letters_per_second": 60.0})
	var made := talk(dialogue([line(&"a", "Twelve words")]))
	await advance(0.5)
	expect_equal([letters_in(box), hero.can_process(), box.is_typing()], ["Twelve words", false, false])
	await tap(KEY_ENTER)
	expect_state(made, "Done")
	expect_equal(box.process_mode, Node.PROCESS_MODE_INHERIT)


func test_quests_begin_and_tick_off() -> void:
	var quest: SCQuest = kind(SCQuest, {"title": "The gate"})
	quest.steps.assign([kind(SCQuestStep, {"kind": SCQuestStep.Kind.TALK, "talk_to": &"Smith"})])
	var box := dialogue_box()
	var smith := body("Smith")
	var guard := talk(dialogue([asked(&"a", "Help?", [answer("Yes", &"b", {"start_quest": quest})]), line(&"b", "See the smith.")]))
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.NOT_STARTED)
	box.answered.emit(0)
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.ACTIVE)
	box.moved_on.emit()
	expect_state(guard, "Done")
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.ACTIVE)
	# A talk that is cut off does not count.
	var of := dialogue([line(&"a", "A key?")])
	talk(of, {}, {"FINISHED": "Done", "away": "Gone"}, {"under": smith}).send_event(&"away")
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.ACTIVE)
	talk(of, {}, {"FINISHED": "Done"}, {"under": smith})
	box.moved_on.emit()
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.DONE)
	SCQuests.forget_all()


## As somebody may write who wants dialogues from elsewhere: nothing but what is asked for by name.
class OwnLine:
	extends RefCounted

	var id: StringName
	var words: String
	var actor: Resource
	var answers: Array
	var answers_are: int = 0
	var next_line: StringName

	func _init(called: StringName, says: String, next: StringName = &"", with: Array = []) -> void:
		id = called
		words = says
		next_line = next
		answers = with

	func shown_speaker() -> String:
		return "{who}"

	func shown_portrait() -> Texture2D:
		return null


class OwnAnswer:
	extends RefCounted

	var only_once: bool = true
	var words: String = "Again"
	var start_quest: Resource
	var send_event: StringName = &"picked"
	var to_line: StringName = &"a"
	var told: Array

	func offered(machine: SCMachine, variables: Dictionary) -> bool:
		told.append([String(machine.name), variables])
		return true

	func make_change(machine: SCMachine, _variables: Dictionary) -> void:
		machine.set_value(&"who", "Cy")


class OwnDialogue:
	extends Resource

	var lines: Array

	func first_line() -> Object:
		return lines[0] if not lines.is_empty() else null

	func line(id: StringName) -> Object:
		for each: OwnLine in lines:
			if each.id == id:
				return each
		return null


func test_a_dialogue_of_somebody_elses_making() -> void:
	var box := dialogue_box()
	var of := OwnDialogue.new()
	var told := []
	var again := OwnAnswer.new()
	again.told = told
	of.lines = [OwnLine.new(&"a", "A", &"b", [null, again, 3, Resource.new()]), OwnLine.new(&"b", "B")]
	var made := start(doing(kind(SCStartDialogueAction, {"conversation": of}), {"FINISHED": "Done"}, {"name": "Mouth", "variables": {"who": "Di"}}))
	expect_equal([answers_in(box), told], [["Again"], [["Mouth", {&"who": "Di"}]]])
	expect_equal((box.find_child("Speaker", true, false) as Label).text, "Di")
	box.answered.emit(0)
	expect_events(made, ["picked"])
	expect_equal([words_in(box), answers_in(box), (box.find_child("Speaker", true, false) as Label).text], ["A", [], "Cy"])
	expect_equal([Conversation.was_picked(made, Conversation.heard_key(of, &"a"), 1), Conversation.was_picked(made, Conversation.heard_key(of, &"a"), 0)], [true, false])
	box.moved_on.emit()
	box.moved_on.emit()
	expect_state(made, "Done")


func test_who_was_met_is_known_again_by_place() -> void:
	dialogue_box()
	var made := talk(dialogue([line(&"a", "A")]))
	made.start()
	expect_equal(Conversation.times_met(made), 2)
	expect_equal(Conversation.times_met(null), 0)
	var saved: Dictionary = JSON.parse_string(JSON.stringify(Conversation.to_save()))
	Conversation.from_save(saved)
	expect_equal(Conversation.times_met(made), 2)
	for wrong: Dictionary in [{}, {"heard": 3, "met": "x"}, {"heard": {"k": true}}]:
		Conversation.from_save(wrong)
	expect_equal(Conversation.heard, {"k": true})
	expect_equal(Conversation.times_met(made), 0)
