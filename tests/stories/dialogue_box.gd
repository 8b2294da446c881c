extends "res://tests/stories/files/talk_story.gd"
## The box that people talk in: how letters come, what a press does, and what a game maker lays out.


var heard: Array[String] = []


func listened_to(settings: Dictionary = {}) -> SCDialogueBox:
	heard.clear()
	var box := dialogue_box(settings)
	box.moved_on.connect(func() -> void: heard.append("moved on"))
	box.answered.connect(func(index: int) -> void: heard.append("answered %d" % index))
	box.left_early.connect(func() -> void: heard.append("left"))
	box.shown_whole.connect(func() -> void: heard.append("shown"))
	return box


func say(box: SCDialogueBox, words: String, answers: Array = [], actor: SCActor = null) -> void:
	box.show_line(words, "", null, PackedStringArray(answers), actor)


func expect_heard(wanted: Array) -> void:
	expect_equal(heard, Array(wanted, TYPE_STRING, "", null))
	heard.clear()


## The key is down already, and repeats.
func hold(key: Key) -> void:
	var event := InputEventKey.new()
	event.keycode = key
	event.pressed = true
	event.echo = true
	for i in 5:
		Input.parse_input_event(event.duplicate() as InputEvent)
		await frames(1)


func test_letters_come_as_fast_as_told() -> void:
	var box := listened_to({"letters_per_second": 10.0, "pause_at_stops": 0.5})
	# The words, and after which seconds how many letters can be seen.
	for row: Array in [
		["abcdefghij", {0.05: 1, 0.35: 4, 0.95: 10}],
		["[b]ab[/b]cd[i]ef[/i]", {0.05: 1, 0.35: 4}],
		["a[speed=2]bcdef[speed=1]gh", {0.12: 2, 0.27: 5, 0.52: 8}],
		["a[speed=no]bc[/speed]d", {0.35: 4}],
		["ab[pause=0.5]cd", {0.4: 2, 0.65: 2, 0.75: 3}],
		["a. b", {0.3: 2, 0.65: 2, 0.75: 3, 0.85: 4}],
		["1.23.4", {0.55: 6}],
		["Wait... no", {0.75: 7, 1.1: 7, 1.25: 8}],
		["\"No!\" b", {0.75: 4, 0.95: 5}],
		["ab[lb]wait]c", {0.55: 6, 0.75: 8}],
	]:
		say(box, row[0])
		var at := 0.0
		for seconds: float in row[1]:
			await advance(seconds - at)
			at = seconds
			expect_equal(letters_in(box).length(), row[1][seconds], "%s after %s s" % [row[0], seconds])
	say(box, "abc")
	expect_equal(letters_in(box), "a", "the letters of the line before are still counted")
	say(box, "[wait]late")
	expect_equal(letters_in(box), "")
	box.close()
	heard.clear()
	box.letters_per_second = 0.0
	say(box, "Everything. At once.")
	expect_heard(["shown"])
	box.close()


func test_one_press_shows_the_line_and_the_next_moves_on() -> void:
	var box := listened_to({"letters_per_second": 5.0})
	for words: String in ["The first line.", "The second line."]:
		say(box, words)
		await frames(2)
		await tap(KEY_ENTER)
		expect_heard(["shown"])
		expect_equal(letters_in(box), words)
		await tap(KEY_SPACE)
		expect_heard(["moved on"])
	say(box, "To be seen [wait]in two parts.")
	await tap(KEY_ENTER)
	expect_equal([letters_in(box), box.is_typing()], ["To be seen ", true])
	await advance(1.0)
	expect_equal(letters_in(box), "To be seen ")
	await tap(KEY_ENTER)
	await tap(KEY_ENTER)
	expect_heard(["shown"])
	await tap(KEY_ENTER)
	expect_heard(["moved on"])
	box.prepare(line(&"", "", {"can_skip": false}), [])
	say(box, "No way.")
	await tap(KEY_ENTER)
	expect_heard([])
	await advance(2.0)
	expect_heard(["shown"])
	box.close()


func test_the_press_that_shows_the_answers_picks_none() -> void:
	var box := listened_to({"letters_per_second": 2.0})
	say(box, "Well?", ["Yes", "No"])
	await tap(KEY_ENTER)
	expect_heard(["shown"])
	expect(buttons_in(box)[0].has_focus())
	await hold(KEY_ENTER)
	expect_heard([])
	await tap(KEY_DOWN)
	await tap(KEY_ENTER)
	expect_heard(["answered 1"])
	# Round from the last to the first.
	await tap(KEY_DOWN)
	await tap(KEY_ENTER)
	expect_heard(["answered 0"])
	# Nothing has the focus, as after a click beside it.
	buttons_in(box)[0].release_focus()
	await tap(KEY_ENTER)
	expect_heard([])
	await tap(KEY_ENTER)
	expect_heard(["answered 0"])
	box.close()
	expect_equal(tree.root.gui_get_focus_owner(), null)


func test_a_key_that_is_held_down_presses_once() -> void:
	var box := listened_to({"letters_per_second": 2.0})
	say(box, "A line with many letters.")
	await hold(KEY_ENTER)
	expect_heard([])
	await tap(KEY_ENTER)
	await hold(KEY_ENTER)
	expect_heard(["shown"])
	box.close()


func test_the_click_that_begins_a_talk_is_no_press_in_it() -> void:
	var box := listened_to({"letters_per_second": 2.0})
	var starter := Starter.new()
	starter.box = box
	add(starter, "Starter")
	await click(Vector2(600, 50))
	expect_equal(letters_in(box), "C")
	expect_heard([])
	await click(Vector2(600, 50))
	expect_heard(["shown"])
	box.close()


## Somebody of the game who starts to talk when the world is clicked.
class Starter:
	extends Node

	var box: SCDialogueBox

	func _input(event: InputEvent) -> void:
		if event is InputEventMouseButton and event.is_pressed() and not box.is_talking():
			box.show_line("Clicked.", "", null, [], null)


func test_other_inputs_press_too() -> void:
	var box := listened_to({"press_action": &"Key: E or Pad: Bottom Button (A / Cross)", "leave_action": &"Key: Escape"})
	say(box, "One.")
	await tap(KEY_ENTER)
	expect_heard(["shown"])
	await tap(KEY_E)
	expect_heard(["moved on"])
	say(box, "Two.", ["a", "b"])
	heard.clear()
	await tap(KEY_DOWN)
	await tap(KEY_E)
	expect_heard(["answered 1"])
	for pressed: bool in [true, false]:
		var pad := InputEventJoypadButton.new()
		pad.button_index = JOY_BUTTON_A
		pad.pressed = pressed
		Input.parse_input_event(pad)
		await frames(2)
	expect_heard(["answered 1"])
	await tap(KEY_ESCAPE)
	expect_heard(["left"])
	box.prepare(line(&"", "", {"can_skip": false}), [])
	say(box, "Hear me out.")
	heard.clear()
	await tap(KEY_ESCAPE)
	expect_heard([])
	box.press_action = &"Key: Nonsense"
	await tap(KEY_E)
	expect_warning("nothing is called \"Key: Nonsense\", so no press of it counts")
	box.close()


func test_clicks() -> void:
	var box := listened_to()
	box.set_anchors_and_offsets_preset(Control.PRESET_BOTTOM_WIDE)
	var elsewhere: Button = add(Button.new(), "Elsewhere", {"position": Vector2(10, 10), "size": Vector2(100, 40)})
	var clicked := [0]
	elsewhere.pressed.connect(func() -> void: clicked[0] += 1)
	say(box, "One.")
	heard.clear()
	await frames(2)
	await click(box.get_global_rect().get_center())
	expect_heard(["moved on"])
	# On a button of the game, and where nothing is.
	await click(Vector2(20, 20))
	expect_equal(clicked, [1])
	expect_heard([])
	await click(Vector2(300, 60))
	expect_heard(["moved on"])
	say(box, "Well?", ["Yes", "No"])
	heard.clear()
	await frames(2)
	await click(Vector2(300, 60))
	expect_heard([])
	await click(buttons_in(box)[1].get_global_rect().get_center())
	expect_heard(["answered 1"])
	box.clicks_count = false
	say(box, "Two.")
	heard.clear()
	await click(box.get_global_rect().get_center())
	expect_heard([])
	box.close()


func test_the_press_that_ends_it_is_used_up() -> void:
	var hero := body("Hero")
	hero.add_to_group(&"player")
	dialogue_box()
	# A neighbour within reach, and the key to talk with it is the one that moves on.
	var npc := body("Neighbour", Vector2(10, 0))
	npc.add_to_group(&"usable")
	var npc_machine := start(machine([
		state("Idle", [], {"USED": "Talk"}),
		state("Talk", [kind(SCStartDialogueAction, {"conversation": dialogue([line(&"a", "Hello."), line(&"b", "Bye.")], {"start": &"a"})})], {"FINISHED": "Idle"}),
	], {"under": npc}))
	var spoken := [0]
	npc_machine.state_changed.connect(func(_from: SCMachineState, to: SCMachineState) -> void: spoken[0] += 1 if to.state_name == &"Talk" else 0)
	var hero_machine := start(machine([state("Play", [kind(SCInteractionAction, {"reach": 100.0, "input_action": &"ui_accept"})])], {"under": hero}))
	await frames(2)
	await tap(KEY_ENTER)
	expect_state(npc_machine, "Talk")
	await tap(KEY_ENTER)
	expect_state(npc_machine, "Idle")
	expect(hero.can_process())
	await frames(10)
	expect_equal(spoken, [1], "it began again")
	await tap(KEY_ENTER)
	expect_equal(spoken, [2])
	hero_machine.free()


func test_it_moves_on_by_itself() -> void:
	var box := listened_to({"auto_advance": 0.5})
	say(box, "One.")
	heard.clear()
	await advance(0.4)
	expect_heard([])
	await advance(0.2)
	expect_heard(["moved on"])
	# A press does it sooner, answers wait, and it may be switched on late.
	say(box, "Two.")
	await tap(KEY_ENTER)
	expect_heard(["shown", "moved on"])
	say(box, "Three.", ["a"])
	await advance(1.0)
	expect_heard(["shown"])
	box.auto_advance = 0.0
	say(box, "Four.")
	await advance(1.0)
	expect_heard(["shown"])
	box.auto_advance = 0.2
	await advance(0.3)
	expect_heard(["moved on"])
	box.close()


func test_it_goes_on_in_a_paused_game_if_it_is_told_to() -> void:
	var box := listened_to({"letters_per_second": 30.0, "process_mode": Node.PROCESS_MODE_ALWAYS})
	tree.paused = true
	say(box, "Paused.")
	await advance(0.5)
	expect_heard(["shown"])
	await tap(KEY_ENTER)
	expect_heard(["moved on"])
	box.process_mode = Node.PROCESS_MODE_INHERIT
	say(box, "Still.")
	await advance(0.5)
	await tap(KEY_ENTER)
	expect_heard([])
	tree.paused = false
	box.close()


func test_what_a_game_maker_lays_out_is_used() -> void:
	var scene := (load("res://tests/stories/files/talk_box.tscn") as PackedScene).instantiate()
	add(scene)
	var box: SCDialogueBox = scene.get_node("Box")
	box.letters_per_second = 0.0
	var face := PlaceholderTexture2D.new()
	var who: SCActor = kind(SCActor, {"actor_name": "Captain {rank}", "portrait": face, "color": Color.RED})
	var of := dialogue([asked(&"a", "Ahoy.", [answer("Aye")], {"actor": who}), line(&"b", "Psst.", {"actor": who, "speaker": "A voice", "portrait": PlaceholderTexture2D.new()})])
	of.lines[0].answers[0].to_line = &"b"
	expect(not box.visible)
	talk(of, {}, {"FINISHED": "Done"}, {"variables": {"rank": 3}})
	var speaker: Label = box.get_node("Side/Speaker")
	expect_equal([speaker.text, speaker.self_modulate, (box.get_node("Side/Words") as RichTextLabel).text], ["Captain 3", Color.RED, "Ahoy."])
	expect_equal([(box.get_node("Side/Portrait") as TextureRect).texture, box.get_node("Side/Answers").get_child_count()], [face, 1])
	box.answered.emit(0)
	expect_equal([speaker.text, (box.get_node("Side/Portrait") as TextureRect).texture], ["A voice", of.lines[1].portrait])
	expect_equal(box.find_children("*", "RichTextLabel", true, false).size(), 1)
	box.moved_on.emit()
	# Only some of it, something of a wrong type, and nothing for a name.
	var half: SCDialogueBox = SCDialogueBox.new()
	var words := Label.new()
	words.name = "Words"
	half.add_child(words)
	add(half, "Half")
	expect_warning("The Dialogue Box Half: Words is a Label, not a RichTextLabel")
	say(half, "Hm.", ["a"])
	await half.shown_whole
	expect_equal(answers_in(half), ["a"])
	half.close()


func test_it_lies_along_the_lower_edge_and_long_answers_wrap() -> void:
	var box := dialogue_box()
	say(box, "Word ".repeat(60), ["Answer ".repeat(60), "Short"])
	await frames(3)
	var screen := box.get_viewport_rect()
	expect(screen.encloses(box.get_global_rect()), "%s in %s" % [box.get_global_rect(), screen])
	expect(box.size.x > screen.size.x * 0.9 and box.get_global_rect().end.y > screen.end.y - 30.0, "it lies at %s" % box.get_global_rect())
	for button in buttons_in(box):
		expect(box.get_global_rect().encloses(button.get_global_rect()), "%s is outside" % button.get_global_rect())
	expect(buttons_in(box)[0].size.y > buttons_in(box)[1].size.y * 1.5)
	box.close()


func test_another_language_rewords_what_is_shown_without_saying_it_again() -> void:
	var german := Translation.new()
	german.locale = "de"
	for text: Array in [["Good day, {name}.", "Guten Tag, {name}."], ["Pay", "Zahlen"], ["Too poor", "Zu arm"], ["Guard", "Wache"]]:
		german.add_message(text[0], text[1])
	TranslationServer.add_translation(german)
	var before := TranslationServer.get_locale()
	TranslationServer.set_locale("en")
	var box := dialogue_box({"letters_per_second": 10.0})
	var poor: SCMachineCondition = kind(SCChanceCondition, {"chance": 0.0})
	var made := talk(dialogue([
		asked(&"a", "Good day, {name}.", [answer("Pay", &"", {"check": poor, "refused": SCDialogueAnswer.Refused.GREY, "refused_words": "Too poor"}), answer("Pay")],
			{"actor": kind(SCActor, {"actor_name": "Guard"})}),
	]), {}, {"FINISHED": "Done"}, {"variables": {"name": "Eva"}})
	await advance(0.55)
	expect_equal(letters_in(box), "Good d")
	TranslationServer.set_locale("de")
	await frames(2)
	expect_equal(words_in(box), "Guten Tag, Eva.")
	expect(letters_in(box).length() in [6, 7, 8] and box.is_typing(), "%s is shown" % letters_in(box))
	await advance(2.0)
	expect_equal([answers_in(box), (box.find_child("Speaker", true, false) as Label).text], [["Zu arm", "Zahlen"], "Wache"])
	TranslationServer.set_locale("en")
	await frames(2)
	expect_equal([words_in(box), answers_in(box), letters_in(box)], ["Good day, Eva.", ["Too poor", "Pay"], "Good day, Eva."])
	made.free()
	TranslationServer.set_locale(before)
	TranslationServer.remove_translation(german)


func test_sounds_and_voices() -> void:
	var beep := AudioStreamWAV.new()
	beep.data = PackedByteArray([0, 0, 0, 0])
	beep.loop_mode = AudioStreamWAV.LOOP_FORWARD
	var box := dialogue_box({"letters_per_second": 20.0})
	var who: SCActor = kind(SCActor, {"actor_name": "Bell", "typing_sound": beep, "voice": "en"})
	box.prepare(line(&"", "", {"voice_sound": beep}), [])
	say(box, "Ding dong.", [], who)
	await advance(0.3)
	var players := box.find_children("*", "AudioStreamPlayer", true, false)
	expect_equal(players.map(func(player: AudioStreamPlayer) -> bool: return player.playing), [true, true])
	box.close()
	expect_equal(players.map(func(player: AudioStreamPlayer) -> bool: return player.playing), [false, false])
	players.clear()
	box.free()
	var beep_id := beep.get_instance_id()
	beep = null
	who.typing_sound = null
	# The sound server lets go of a sound on its own clock.
	for i in 500:
		if not is_instance_id_valid(beep_id):
			break
		OS.delay_msec(2)
		await frames(1)
	# There are no voices where there is no screen.
	expect_equal(Conversation.voice_of(who), "")
	expect_equal(Conversation.voice_of(null), "")
	expect_equal(Conversation.spoken("[b]One[/b] [wait]two[img]res://a.png[/img], [lb]three[rb]. [speed=2]x < y"), "One two, [three]. x < y")


func test_parts_that_are_freed_while_it_talks() -> void:
	for part: String in ["Words", "Answers", "Speaker", "Portrait"]:
		var box := dialogue_box({"letters_per_second": 10.0})
		box.show_line("Some words.", "Me", null, ["a"], null)
		await advance(0.2)
		box.find_child(part, true, false).free()
		await advance(2.0)
		box.show_line("More.", "Me", PlaceholderTexture2D.new(), ["b"], null)
		await advance(2.0)
		expect_equal(answers_in(box), ["b"], part)
		buttons_in(box)[0].free()
		box.reword("Less.", "You", ["c"])
		box.close()
		box.free()
