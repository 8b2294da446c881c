extends "res://tests/stories/files/talk_story.gd"
## Answers on the screen, in a box that the game maker provides.


func choose(settings: Dictionary = {}, ways: Dictionary = {"FINISHED": "Done"}, options: Dictionary = {}) -> SCMachine:
	var typed := settings.duplicate()
	if settings.has("choices"):
		typed["choices"] = Array(settings["choices"], TYPE_STRING, "", null)
	if settings.has("events"):
		typed["events"] = Array(settings["events"], TYPE_STRING_NAME, "", null)
	return play(kind(SCShowChoicesAction, {"box_path": ^"../Box"}.merged(typed, true)), ways, options)


func test_a_button_for_each_answer() -> void:
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	var old: Button = add(Button.new(), "Old", {"under": box})
	add(Label.new(), "Title", {"under": box})
	var made := choose({"choices": ["Buy for {price}", "Sell", "Leave"], "events": [&"buy", &"sell"], "any_answer_event": &"any", "store_choice_in": &"number",
		"store_words_in": &"words"}, {"FINISHED": "Done"}, {"variables": {"price": 5, "number": 0, "words": ""}})
	expect(old.is_queued_for_deletion())
	expect_equal(answers_in(box), ["Buy for 5", "Sell", "Leave"])
	expect_equal(buttons_in(box).map(func(button: Button) -> String: return button.name), ["Choice0", "Choice1", "Choice2"])
	expect_equal(buttons_in(box)[0].autowrap_mode, TextServer.AUTOWRAP_WORD_SMART)
	await frames(1)
	expect(buttons_in(box)[0].has_focus())
	expect_state(made, "Work")
	buttons_in(box)[0].pressed.emit()
	expect_values(made, {"number": 1, "words": "Buy for 5"})
	expect_events(made, ["buy", "any"])
	expect_state(made, "Done")
	expect_equal(answers_in(box), [])
	await frames(2)
	expect_equal(box.get_children().map(func(child: Node) -> String: return child.name), ["Title"])


func test_the_players_press_picks_one() -> void:
	var box: HBoxContainer = add(HBoxContainer.new(), "Box")
	var made := choose({"choices": ["Yes", "No"], "events": [&"yes", &"no"], "any_answer_event": &"any"}, {"no": "Refused", "FINISHED": "Done"})
	await frames(2)
	expect_equal(buttons_in(box)[0].autowrap_mode, TextServer.AUTOWRAP_OFF)
	await tap(KEY_RIGHT)
	await tap(KEY_ENTER)
	expect_state(made, "Refused")
	expect_events(made, ["no"])


func test_a_gamepad_picks_one() -> void:
	add(VBoxContainer.new(), "Box")
	var made := choose({"choices": ["Yes", "No"], "events": [&"yes", &"no"]}, {"no": "Refused", "FINISHED": "Done"})
	await frames(2)
	for button: JoyButton in [JOY_BUTTON_DPAD_DOWN, JOY_BUTTON_A]:
		for down: bool in [true, false]:
			var event := InputEventJoypadButton.new()
			event.button_index = button
			event.pressed = down
			Input.parse_input_event(event)
			await frames(2)
	expect_state(made, "Refused")
	expect_events(made, ["no"])


func test_the_items_of_a_list() -> void:
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	var sword: Resource = kind(SCItem, {"item_name": "Sword {number}"})
	var choice := {"list_variable": &"shop", "choices": ["Ignored"], "store_choice_in": &"number", "store_words_in": &"words", "events": [&"", &"second"]}
	var made := choose(choice, {"FINISHED": "Done"}, {"variables": {"shop": [sword, stage, 3, 2.0, "{number} left", null], "number": 0, "words": ""}})
	expect_equal(answers_in(box), ["Sword {number}", "Stage", "3", "2.0", "{number} left", "<null>"])
	buttons_in(box)[4].pressed.emit()
	expect_values(made, {"number": 5, "words": "{number} left"})
	expect_state(made, "Done")
	# Nothing to offer, which is no mistake.
	add(Button.new(), "Old", {"under": box})
	expect_state(choose(choice, {"FINISHED": "Done"}, {"variables": {"shop": [], "number": 0, "words": ""}}), "Done")
	expect_equal(answers_in(box), [])


func test_the_small_button_of_a_row() -> void:
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	var settings := {"choices": ["Potion", "Rope"], "events": [&"a", &"b"], "any_answer_event": &"any", "row_button": "?", "row_button_event": &"ask",
		"store_choice_in": &"number", "store_words_in": &"words"}
	var made := choose(settings, {"FINISHED": "Done"}, {"variables": {"number": 0, "words": ""}})
	expect_equal(answers_in(box), ["Potion", "?", "Rope", "?"])
	var row: Node = box.get_node("Choice1Row")
	expect_equal([row.get_class(), row.get_meta(&"quillstead_choice_row"), (row.get_node("Choice1") as Button).size_flags_horizontal], ["HBoxContainer", true, Control.SIZE_EXPAND_FILL])
	(row.get_node("RowButton") as Button).pressed.emit()
	expect_events(made, ["ask"])
	expect_values(made, {"number": 2, "words": "Rope"})
	expect_state(made, "Done")
	expect_equal(answers_in(box), [])
	# Rows go with the box, and the answers in them are answers.
	choose(settings, {}, {"variables": {"number": 0, "words": ""}})
	var again := choose(settings, {"FINISHED": "Done"}, {"variables": {"number": 0, "words": ""}})
	expect_equal(answers_in(box).size(), 4)
	(box.get_node("Choice0Row/Choice0") as Button).pressed.emit()
	expect_events(again, ["a", "any"])


func test_leaving_the_state_takes_them_away() -> void:
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	var mine: Button = add(Button.new(), "Mine", {"under": box})
	var made := choose({"choices": ["Wait"], "clear_the_box": false}, {"hit": "Fight"})
	expect_equal(answers_in(box), ["", "Wait"])
	expect_after(made, &"hit", "Fight")
	expect_equal(buttons_in(box), [mine] as Array[Button])
	made = choose({"choices": ["Wait"], "clear_the_box": false})
	made.free()
	await frames(1)
	expect_equal(buttons_in(box), [mine] as Array[Button])


func test_the_machine_in_the_box_stays() -> void:
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	add(Button.new(), "Old", {"under": box})
	var made := choose({"box_path": ^"", "choices": ["A"], "events": [&"again"]}, {"again": "Work"}, {"under": box})
	for times in 3:
		expect_equal(answers_in(box), ["A"])
		expect(box.has_node(^"Choice0"))
		buttons_in(box)[0].pressed.emit()
		await frames(1)
	expect_state(made, "Work")
	# A machine that is on a button of the box.
	var lasting: Button = add(Button.new(), "Lasting", {"under": box})
	made.free()
	choose({"box_path": ^"../..", "choices": ["B"]}, {}, {"under": lasting})
	expect_equal(answers_in(box), ["", "B"])


func test_it_shows_them_as_its_scene_begins() -> void:
	var box := VBoxContainer.new()
	box.name = "Box"
	var made := doing(kind(SCShowChoicesAction, {"choices": Array(["A", "B"], TYPE_STRING, "", null)}), {})
	box.add_child(made)
	add(box)
	await frames(2)
	expect_equal(answers_in(box), ["A", "B"])
	expect(buttons_in(box)[0].has_focus())
	stage.remove_child(box)
	stage.add_child(box)
	await frames(2)
	expect_equal(answers_in(box), ["A", "B"])


func test_what_goes_wrong_is_told() -> void:
	expect_warns(kind(SCShowChoicesAction, {"box_path": ^"../Nobody"}), "Show Choices on Machine: there is no node at ../Nobody to put the answer buttons in, so none are shown.")
	var box: VBoxContainer = add(VBoxContainer.new(), "Box")
	add(Button.new(), "Old", {"under": box})
	expect_warns(kind(SCShowChoicesAction, {"box_path": ^"../Box"}), "Show Choices on Machine has no answers to offer, so no buttons are shown.")
	expect_equal(answers_in(box), [])
	expect_warns(kind(SCShowChoicesAction, {"box_path": ^"../Box", "list_variable": &"shop"}),
		"Show Choices on Machine: shop holds an int, not an Array, so no buttons are shown.", {"variables": {"shop": 3}})
	var made := choose({"choices": ["A", "B"]})
	buttons_in(box)[1].free()
	buttons_in(box)[0].pressed.emit()
	expect_state(made, "Done")
	expect_lines(SCShowChoicesAction, {
		"Choose: Yes, No": {"choices": Array(["Yes", "No"], TYPE_STRING, "", null)}, "Choose: (pick one)": {}, "Choose one of shop": {"list_variable": &"shop"},
	})
	expect_hidden(kind(SCShowChoicesAction, {"list_variable": &"shop"}), ["choices", "row_button_event"])
	expect_shown(kind(SCShowChoicesAction, {"row_button": "?"}), ["choices", "row_button_event"])
