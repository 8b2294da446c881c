extends Story
## Keys, buttons and sticks: when an event is sent, what a direction is, what an input is called.

const Words := preload("res://addons/quillstead/runtime/quillstead_input.gd")


func test_when_a_key_sends_its_event() -> void:
	for row: Array in [
		[SCEventOnInputAction.JUST_PRESSED, 1, 1], [SCEventOnInputAction.JUST_RELEASED, 0, 1], [SCEventOnInputAction.PRESSED, 4, 5],
	]:
		var made := play(_on(row[0], "Key: E"), {})
		await frames(2)
		expect_events(made, [])
		_key(KEY_E, true)
		await frames(5)
		expect_equal(events_of(made).size(), row[1], "down, %d" % row[0])
		_key(KEY_E, false)
		await frames(4)
		expect_equal(events_of(made).size(), row[2], "let go, %d" % row[0])
		made.free()


func test_held_for_sends_once_each_time_it_is_held() -> void:
	var made := play(_on(SCEventOnInputAction.HELD_FOR, "Key: E", {"seconds": 0.5, "store_held_seconds_in": "held"}), {}, {"variables": {"held": 0.0}})
	for i in 2:
		_key(KEY_E, true)
		await advance(0.4)
		expect_events(made, [])
		await advance(1.0)
		expect_events(made, ["go"])
		_key(KEY_E, false)
		await advance(0.2)
		expect_near(made.get_value("held"), 1.4, 0.05, "kept when let go")


func test_two_quick_taps() -> void:
	var made := play(_on(SCEventOnInputAction.DOUBLE_TAPPED, "Key: E", {"seconds": 0.3}), {})
	# A third tap begins anew, and one that is too slow counts as a first.
	for row: Array in [[0.1, 0], [0.1, 1], [0.5, 1], [0.5, 1], [0.1, 1], [0.1, 2]]:
		await _tap(row[0])
		expect_equal(events_of(made).size(), row[1], str(row))


func test_two_quick_pushes_of_a_stick_must_let_it_go_between() -> void:
	var made := play(_on(SCEventOnInputAction.DOUBLE_TAPPED, "Pad: Left Stick Right", {"seconds": 0.5}), {})
	await frames(2)
	# Trembling round the point where it counts as pressed.
	for push: float in [0.6, 0.4, 0.6, 0.4]:
		await _stick(push)
	expect_events(made, [])
	await _stick(0.0)
	await _stick(0.9)
	expect_events(made, ["go"])
	await _stick(0.0)


func test_done_once_it_finishes_and_goes_on_listening() -> void:
	var made := play([_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"run_mode": SCMachineAction.ONCE}), act("other")], {"go": "Gone"})
	await frames(3)
	expect(made.is_finished(0))
	await _tap()
	expect_state(made, "Gone")


func test_one_press_is_not_used_again_by_the_state_it_leads_to() -> void:
	for when: int in [SCEventOnInputAction.JUST_PRESSED, SCEventOnInputAction.JUST_RELEASED]:
		var made := start(machine([state("A", [_on(when, "Key: E")], {"go": "B"}), state("B", [_on(when, "Key: E")], {"go": "A"})]))
		for wanted: String in ["B", "A", "B"]:
			await _tap()
			expect_state(made, wanted)
		made.free()


func test_what_it_carries() -> void:
	var made := start(machine([state("A", [_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"data_variable": &"power"})], [transition("go", "B", "kept")]), state("B")],
		{"variables": {"power": 7, "kept": 0}}))
	await _tap()
	expect_values(made, {"kept": 7})


func test_only_while_the_player_stands_inside() -> void:
	var player: CharacterBody2D = boxed(CharacterBody2D.new(), Vector2(20, 20))
	add(boxed(Area2D.new(), Vector2(20, 20)), "Front")
	add(player, "Player", {"position": Vector2(500, 0)})
	var made := play(_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"only_while_inside": NodePath("../Front")}), {})
	var rows: Dictionary[String, Callable] = {
		"outside": func() -> void: pass,
		"inside": func() -> void: player.position = Vector2.ZERO,
		"with a group of players others do not count": func() -> void: add(Node.new(), "Other").add_to_group("player"),
		"as a player": func() -> void: player.add_to_group("player"),
	}
	for row in rows:
		rows[row].call()
		await physics_frames(3)
		await _tap()
		expect_events(made, ["go"] if row in ["inside", "as a player"] else [])


func test_what_is_wrong_is_told() -> void:
	body("Crate")
	for row: Array in [
		[_on(SCEventOnInputAction.JUST_PRESSED, ""), "Event On Input on Watcher: it has no input to watch, so it sends nothing. Pick one under Input Action."],
		[_on(SCEventOnInputAction.JUST_PRESSED, "jmup"), "nothing is called \"jmup\", so it sends nothing."],
		[_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"event_name": ""}), "it watches Key: E and has nothing to send."],
		[_direction({"store_in": ""}), "Get Input Vector on Watcher: it has no variable for the direction"],
		[_direction({"left_action": "lfet"}), "nothing is called \"lfet\", so that direction is never held."],
		[_direction({"left_action": "", "right_action": "", "up_action": "", "down_action": ""}), "it has no inputs to read"],
		[kind(SCInputCondition, {"input_action": ""}), "Input on Watcher: it has no input to ask about, so the answer is no. Pick one under Input Action."],
		[kind(SCInputCondition, {"input_action": "lfet"}), "Input on Watcher: nothing is called \"lfet\", so the answer is no."],
	]:
		expect_warns(row[0], row[1], {"name": "Watcher"})
	var inside := play(_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"only_while_inside": NodePath("../Crate")}), {})
	await _tap()
	expect_warning("Crate is a Node2D, not an Area2D or an Area3D.")
	expect_events(inside, [])


func test_any_key_or_button() -> void:
	var made := play(_on(SCEventOnInputAction.JUST_PRESSED, Words.ANY), {})
	await frames(2)
	for down: bool in [true, false]:
		_key(KEY_Q, down)
		await frames(3)
		expect_events(made, ["go"] if down else [])
		# Another one while the first is down.
		_pad_button(JOY_BUTTON_A, down)
		await frames(3)
		expect_events(made, ["go"] if down else [])


func test_every_word_is_an_input_and_every_input_has_its_word() -> void:
	var words: PackedStringArray = ["Key: E", "Key: Space", "Key: Ctrl+S", "Key: Left", "Key: Shift"]
	for names: Array in [["Pad: ", Words.PAD_BUTTONS], ["Pad: ", Words.PAD_AXES], ["Mouse: ", Words.MOUSE_BUTTONS]]:
		for what: String in names[1]:
			words.append(names[0] + what)
	for word in words:
		var event: InputEvent = Words.event_of(word)
		expect(event != null, word)
		expect_equal(Words.name_of(event), word)
	for nothing: String in ["", "E", "Key: ", "Key: Nonsense", "Pad: Knob", "Mouse: Tail", "Pad 0: Select / Back", "Stick: Up"]:
		expect(Words.event_of(nothing) == null, nothing)
	expect_equal(Words.event_of("Pad 2: Select / Back").device, 1)
	expect_equal(Words.action_for("Key: E or Nonsense"), &"")


func test_one_word_for_two_inputs() -> void:
	var word := "Key: E or Pad: Top Button (Y / Triangle)"
	expect_equal(Words.action_for(word), word)
	expect_equal(Words.key_name(word, Words.Kind.GAMEPAD), "Top Button (Y / Triangle)")
	var made := play(_on(SCEventOnInputAction.JUST_PRESSED, word), {})
	for press: Callable in [func(down: bool) -> void: _key(KEY_E, down), func(down: bool) -> void: _pad_button(JOY_BUTTON_Y, down)]:
		press.call(true)
		await frames(3)
		expect_events(made, ["go"])
		press.call(false)
		await frames(2)


func test_rebinding() -> void:
	InputMap.add_action("story_jump")
	for row: Array in [
		# what is bound, whether as one more, what it is called then
		["Key: J", false, "J"], ["Pad: Select / Back", false, "J or Select / Back"], ["Key: K", false, "Select / Back or K"],
		["Key: L", true, "Select / Back or K or L"],
	]:
		Words.bind("story_jump", Words.event_of(row[0]), row[1])
		expect_equal(Words.key_name("story_jump"), row[2])
	expect_equal(Words.key_name("story_jump", Words.Kind.KEYBOARD_AND_MOUSE), "K or L")
	expect(not Words.takes_a_stick("story_jump"), "it is on a button of the gamepad")
	expect(Words.takes_a_stick("Pad: Left Stick Up"))
	expect(Words.takes_a_stick("Key: E"))
	Words.put_back_defaults()
	expect(not InputMap.has_action("story_jump"))
	expect(InputMap.has_action("ui_accept"))


func test_the_direction_held() -> void:
	for row: Array in [
		# the settings, what is held before, and what with right and up, with right alone, with neither
		[{}, null, Vector2(1, -1).normalized(), Vector2.RIGHT, Vector2.ZERO],
		[{}, Vector3.ZERO, Vector3(1, 0, -1).normalized(), Vector3.RIGHT, Vector3.ZERO],
		[{"keep_last_direction": true}, Vector2.DOWN, Vector2(1, -1).normalized(), Vector2.RIGHT, Vector2.RIGHT],
		[{"up_action": "", "down_action": ""}, null, Vector2.RIGHT, Vector2.RIGHT, Vector2.ZERO],
		[{"down_action": ""}, null, Vector2(1, -1).normalized(), Vector2.RIGHT, Vector2.ZERO],
		[{"left_action": "Key: D", "right_action": "Key: A", "up_action": "Key: S", "down_action": "Key: W"}, null, Vector2(-1, 1).normalized(), Vector2.LEFT, Vector2.ZERO],
	]:
		var made := play(_direction({"store_strength_in": "far"}.merged(row[0])), {}, {"variables": {"move": row[1], "far": 1.0}})
		await frames(2)
		expect_values(made, {"move": Vector2.DOWN if "keep_last_direction" in row[0] else row[4], "far": 0.0})
		_key(KEY_D, true)
		for step: Array in [[true, 2, 1.0], [false, 3, 1.0]]:
			_key(KEY_W, step[0])
			await frames(3)
			expect_near(made.get_value("move"), row[step[1]], 0.0001, str(row))
			expect_near(made.get_value("far"), 1.0)
		_key(KEY_D, false)
		await frames(3)
		expect_values(made, {"move": row[4], "far": 0.0}, str(row))
		made.free()


func test_the_condition_about_an_input() -> void:
	for row: Array in [
		[SCInputCondition.HELD, [false, true, true, false, false]],
		[SCInputCondition.JUST_PRESSED, [false, true, false, false, false]],
		[SCInputCondition.JUST_RELEASED, [false, false, false, true, false]],
	]:
		var asked := kind(SCInputCondition, {"input_action": "Key: E", "when": row[0]})
		var made := play(kind(SCCheckAction, {"condition": asked, "store_in": "answer", "run_mode": SCMachineAction.EVERY_FRAME}), {})
		await frames(1)
		for i in 5:
			if i in [1, 3]:
				_key(KEY_E, i == 1)
				await frames(1)
			await frames(1)
			expect_values(made, {"answer": row[1][i]}, "when %d, %d" % [row[0], i])
		made.free()


func test_a_press_or_a_release_is_remembered_for_a_moment() -> void:
	for when: int in [SCInputCondition.JUST_PRESSED, SCInputCondition.JUST_RELEASED]:
		var asked := kind(SCInputCondition, {"input_action": "Key: E", "when": when, "remembered_for": 0.3})
		var made := start(machine([state("Ground", [watch(asked)], {"yes": "Air"}), state("Air", [], {"land": "Ground"})]))
		await frames(3)
		made.go_to("Air")
		await _tap(0.1)
		expect_after(made, "land", "Air")
		await advance(0.5)
		made.send_event("land")
		await expect_later(made, 0.05, "Ground")
		made.free()


func test_lines_on_the_graph() -> void:
	var t := SCEventOnInputAction
	expect_lines(t, {
		"When Key: E is pressed, send go": {"input_action": "Key: E", "event_name": "go"},
		"When Key: E is tapped twice within 0.25 s, send go": {"when": t.DOUBLE_TAPPED, "input_action": "Key: E", "seconds": 0.25, "event_name": "go"},
		"When ui_accept is held for 2 s, send go with 5": {"when": t.HELD_FOR, "input_action": "ui_accept", "seconds": 2.0, "event_name": "go", "data": 5},
		"When ui_accept is down, keep how long in held": {"when": t.PRESSED, "input_action": "ui_accept", "event_name": "", "store_held_seconds_in": "held"},
		"When ui_accept is let go inside Front, send go": {"when": t.JUST_RELEASED, "input_action": "ui_accept", "only_while_inside": ^"../Front", "event_name": "go"},
		"When (pick one) is pressed, send go": {"input_action": "", "event_name": "go"},
	})
	expect_lines(SCGetInputVectorAction, {
		"Put the direction held into move": {"store_in": "move"},
		"Put the direction held into move and keep the last, how far into far": {"store_in": "move", "keep_last_direction": true, "store_strength_in": "far"},
	})
	expect_shown(kind(SCInputCondition, {"when": SCInputCondition.JUST_PRESSED}), ["remembered_for"])
	expect_hidden(kind(SCInputCondition), ["remembered_for"])


func _on(when: int, input: StringName, options: Dictionary = {}) -> SCEventOnInputAction:
	return kind(SCEventOnInputAction, {"when": when, "input_action": input, "event_name": "go"}.merged(options, true))


func _direction(options: Dictionary) -> SCGetInputVectorAction:
	return kind(SCGetInputVectorAction, {"left_action": "Key: A", "right_action": "Key: D", "up_action": "Key: W", "down_action": "Key: S", "store_in": "move"}.merged(options, true))


func _key(code: Key, down: bool) -> void:
	var event := InputEventKey.new()
	event.keycode = code
	event.physical_keycode = code
	event.pressed = down
	Input.parse_input_event(event)


func _pad_button(button: JoyButton, down: bool) -> void:
	var event := InputEventJoypadButton.new()
	event.button_index = button
	event.pressed = down
	Input.parse_input_event(event)


## Pushes the left stick to the right.
func _stick(push: float) -> void:
	var event := InputEventJoypadMotion.new()
	event.axis = JOY_AXIS_LEFT_X
	event.axis_value = push
	Input.parse_input_event(event)
	await frames(3)


## The key E down for two frames, and then up for that long.
func _tap(then: float = 0.04) -> void:
	_key(KEY_E, true)
	await frames(2)
	_key(KEY_E, false)
	await advance(then)
