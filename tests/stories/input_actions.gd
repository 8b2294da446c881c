extends Story
## What the player presses becomes events and directions, by whatever word it is called.

const Words := preload("res://addons/quillstead/runtime/quillstead_input.gd")
const EVERY_FRAME := SCMachineAction.EVERY_FRAME


func test_a_press_sends_its_event_once() -> void:
	var made := _watching(_on(SCEventOnInputAction.JUST_PRESSED, "Key: E"))
	var sent := _events_of(made)
	start(made)
	await frames(2)
	expect_equal(sent, [])
	_key(KEY_E, true)
	await frames(5)
	expect_equal(sent, [&"go"])
	_key(KEY_E, false)
	await frames(3)
	expect_equal(sent, [&"go"])


func test_letting_go_sends_its_event_once() -> void:
	var made := _watching(_on(SCEventOnInputAction.JUST_RELEASED, "Key: E"))
	var sent := _events_of(made)
	start(made)
	_key(KEY_E, true)
	await frames(4)
	expect_equal(sent, [])
	_key(KEY_E, false)
	await frames(4)
	expect_equal(sent, [&"go"])


func test_pressed_sends_on_every_frame_it_is_down() -> void:
	var made := _watching(_on(SCEventOnInputAction.PRESSED, "Key: E"))
	var sent := _events_of(made)
	start(made)
	_key(KEY_E, true)
	await frames(6)
	_key(KEY_E, false)
	await frames(3)
	expect(sent.size() >= 4 and sent.size() <= 7, "sent %d" % sent.size())


func test_held_for_sends_once_each_time_it_is_held() -> void:
	var made := _watching(_on(SCEventOnInputAction.HELD_FOR, "Key: E", {"seconds": 0.5, "store_held_seconds_in": "held"}))
	var sent := _events_of(made)
	start(made)
	for i in 2:
		_key(KEY_E, true)
		await advance(0.4)
		expect_equal(sent.size(), i)
		await advance(1.0)
		expect_equal(sent.size(), i + 1)
		_key(KEY_E, false)
		await advance(0.2)
	expect_near(made.get_value("held"), 1.4, 0.05, "kept when let go")


func test_two_quick_taps() -> void:
	var made := _watching(_on(SCEventOnInputAction.DOUBLE_TAPPED, "Key: E", {"seconds": 0.3}))
	var sent := _events_of(made)
	start(made)
	await _tap(0.1)
	expect_equal(sent.size(), 0)
	await _tap(0.1)
	expect_equal(sent.size(), 1)
	await _tap(0.5)
	expect_equal(sent.size(), 1, "a third tap begins anew")
	await _tap(0.5)
	expect_equal(sent.size(), 1, "too slow")
	await _tap(0.1)
	expect_equal(sent.size(), 1, "counted from the slow one")


func test_two_quick_pushes_of_a_stick_must_let_it_go_between() -> void:
	var made := _watching(_on(SCEventOnInputAction.DOUBLE_TAPPED, "Pad: Left Stick Right", {"seconds": 0.5}))
	var sent := _events_of(made)
	start(made)
	await frames(2)
	# Trembling round the point where it counts as pressed.
	for push: float in [0.6, 0.4, 0.6, 0.4]:
		_stick(JOY_AXIS_LEFT_X, push)
		await frames(3)
	expect_equal(sent.size(), 0)
	_stick(JOY_AXIS_LEFT_X, 0.0)
	await frames(2)
	_stick(JOY_AXIS_LEFT_X, 0.9)
	await frames(3)
	expect_equal(sent.size(), 1)
	_stick(JOY_AXIS_LEFT_X, 0.0)
	await frames(2)


func test_done_once_it_finishes_and_goes_on_listening() -> void:
	var action := _on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"run_mode": SCMachineAction.ONCE})
	var made := start(machine([state("Wait", [action, act("other")], {"go": "Gone"}), state("Gone")]))
	await frames(3)
	expect(made.is_finished(0))
	_key(KEY_E, true)
	await frames(3)
	expect_state(made, "Gone")
	_key(KEY_E, false)
	await frames(2)


func test_one_press_is_not_used_again_by_the_state_it_leads_to() -> void:
	var made := start(machine([
		state("A", [_on(SCEventOnInputAction.JUST_PRESSED, "Key: E")], {"go": "B"}),
		state("B", [_on(SCEventOnInputAction.JUST_PRESSED, "Key: E")], {"go": "A"}),
	]))
	for wanted: String in ["B", "A", "B"]:
		_key(KEY_E, true)
		await frames(4)
		expect_state(made, wanted)
		_key(KEY_E, false)
		await frames(2)


func test_what_it_carries() -> void:
	var action := _on(SCEventOnInputAction.JUST_PRESSED, "Key: E")
	action.set(&"data_variable", &"power")
	var made := start(machine([state("A", [action], [transition("go", "B", "kept")]), state("B")], {"variables": {"power": 7, "kept": 0}}))
	_key(KEY_E, true)
	await frames(3)
	expect_equal(made.get_value("kept"), 7)
	_key(KEY_E, false)
	await frames(2)


func test_only_while_the_player_stands_inside() -> void:
	var area := Area2D.new()
	area.name = "Front"
	_give_shape(area)
	var player := CharacterBody2D.new()
	player.position = Vector2(500, 0)
	_give_shape(player)
	add(area)
	add(player)
	var made := _watching(_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"only_while_inside": NodePath("../Front")}))
	var sent := _events_of(made)
	start(made)
	await physics_frames(3)
	await _press_e()
	expect_equal(sent.size(), 0)
	player.position = Vector2.ZERO
	await physics_frames(3)
	await _press_e()
	expect_equal(sent.size(), 1)
	var other := Node.new()
	add(other)
	other.add_to_group("player")
	await _press_e()
	expect_equal(sent.size(), 1, "with a group of players others do not count")
	player.add_to_group("player")
	await _press_e()
	expect_equal(sent.size(), 2)


func test_what_is_wrong_is_told() -> void:
	body("Crate")
	for row: Array in [
		[_on(SCEventOnInputAction.JUST_PRESSED, ""), "Event On Input on Watcher: it has no input to watch, so it sends nothing. Pick one under Input Action."],
		[_on(SCEventOnInputAction.JUST_PRESSED, "jmup"), "nothing is called \"jmup\", so it sends nothing."],
		[_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"event_name": ""}), "it watches Key: E and has nothing to send."],
	]:
		var made := _watching(row[0])
		made.name = "Watcher"
		start(made)
		expect_warning(row[1])
		await frames(2)
		made.free()
	var inside := _watching(_on(SCEventOnInputAction.JUST_PRESSED, "Key: E", {"only_while_inside": NodePath("../Crate")}))
	inside.name = "Watcher"
	start(inside)
	await _press_e()
	expect_warning("Crate is a Node2D, not an Area2D or an Area3D.")


func test_any_key_or_button() -> void:
	var made := _watching(_on(SCEventOnInputAction.JUST_PRESSED, Words.ANY))
	var sent := _events_of(made)
	start(made)
	await frames(2)
	_key(KEY_Q, true)
	await frames(3)
	expect_equal(sent.size(), 1)
	_pad_button(JOY_BUTTON_A, true)
	await frames(3)
	expect_equal(sent.size(), 2, "another one while the first is down")
	_pad_button(JOY_BUTTON_A, false)
	_key(KEY_Q, false)
	await frames(2)


func test_every_word_is_an_input_and_every_input_has_its_word() -> void:
	var words: PackedStringArray = ["Key: E", "Key: Space", "Key: Ctrl+S", "Key: Left", "Key: Shift"]
	for what: String in Words.PAD_BUTTONS:
		words.append("Pad: " + what)
	for what: String in Words.PAD_AXES:
		words.append("Pad: " + what)
	for what: String in Words.MOUSE_BUTTONS:
		words.append("Mouse: " + what)
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
	var key := func(down: bool) -> void: _key(KEY_E, down)
	var button := func(down: bool) -> void: _pad_button(JOY_BUTTON_Y, down)
	for press: Callable in [key, button]:
		var made := start(machine([state("A", [_on(SCEventOnInputAction.JUST_PRESSED, word)], {"go": "B"}), state("B")]))
		press.call(true)
		await frames(3)
		expect_state(made, "B")
		press.call(false)
		await frames(2)


func test_rebinding() -> void:
	InputMap.add_action("story_jump")
	Words.bind("story_jump", Words.event_of("Key: J"))
	Words.bind("story_jump", Words.event_of("Pad: Select / Back"))
	expect_equal(Words.key_name("story_jump"), "J or Select / Back")
	Words.bind("story_jump", Words.event_of("Key: K"))
	expect_equal(Words.key_name("story_jump"), "Select / Back or K", "only one of the same kind goes")
	Words.bind("story_jump", Words.event_of("Key: L"), true)
	expect_equal(Words.key_name("story_jump", Words.Kind.KEYBOARD_AND_MOUSE), "K or L")
	expect(not Words.takes_a_stick("story_jump"), "it is on a button of the gamepad")
	expect(Words.takes_a_stick("Pad: Left Stick Up"))
	expect(Words.takes_a_stick("Key: E"))
	Words.put_back_defaults()
	expect(not InputMap.has_action("story_jump"))
	expect(InputMap.has_action("ui_accept"))


func test_the_direction_held() -> void:
	for row: Array in [[null, false], [Vector3.ZERO, true]]:
		var made := start(machine([state("A", [_direction({"store_strength_in": "far"})])], {"variables": {"move": row[0], "far": 0.0}}))
		_key(KEY_D, true)
		_key(KEY_W, true)
		await frames(3)
		var wanted := Vector2(1, -1).normalized()
		expect(made.get_value("move").is_equal_approx(Vector3(wanted.x, 0, wanted.y) if row[1] else wanted), "%s" % made.get_value("move"))
		expect_near(made.get_value("far"), 1.0)
		_key(KEY_W, false)
		await frames(3)
		expect_equal(made.get_value("move"), Vector3.RIGHT if row[1] else Vector2.RIGHT)
		_key(KEY_D, false)
		await frames(3)
		expect_equal(made.get_value("move"), Vector3.ZERO if row[1] else Vector2.ZERO)
		made.free()


func test_the_last_direction_is_kept() -> void:
	var made := start(machine([state("A", [_direction({"keep_last_direction": true, "store_strength_in": "far"})])], {"variables": {"move": Vector2.DOWN, "far": 1.0}}))
	await frames(2)
	expect_equal(made.get_value("move"), Vector2.DOWN)
	expect_equal(made.get_value("far"), 0.0)
	_key(KEY_A, true)
	await frames(3)
	_key(KEY_A, false)
	await frames(3)
	expect_equal(made.get_value("move"), Vector2.LEFT)


func test_only_left_and_right() -> void:
	var made := start(machine([state("A", [_direction({"up_action": "", "down_action": ""})])]))
	_key(KEY_A, true)
	await frames(3)
	expect_equal(made.get_value("move"), Vector2.LEFT)
	_key(KEY_A, false)
	await frames(2)


func test_a_direction_that_is_wrong_is_told() -> void:
	for row: Array in [
		[_direction({"store_in": ""}), "Get Input Vector on Walker: it has no variable for the direction"],
		[_direction({"left_action": "lfet"}), "nothing is called \"lfet\", so that direction is never held."],
		[_direction({"left_action": "", "right_action": "", "up_action": "", "down_action": ""}), "it has no inputs to read"],
	]:
		var made := start(machine([state("A", [row[0]])], {"name": "Walker"}))
		expect_warning(row[1])
		await frames(2)
		made.free()


func test_the_question_about_an_input() -> void:
	for row: Array in [
		[SCInputCondition.HELD, [false, true, true, false, false]],
		[SCInputCondition.JUST_PRESSED, [false, true, false, false, false]],
		[SCInputCondition.JUST_RELEASED, [false, false, false, true, false]],
	]:
		var question := SCInputCondition.new()
		question.input_action = "Key: E"
		question.when = row[0]
		var answers := []
		var check := SCCheckAction.new()
		check.condition = question
		check.store_in = "answer"
		check.run_mode = EVERY_FRAME
		var made := start(machine([state("A", [check])]))
		await frames(1)
		for down: int in [-1, 1, -1, 0, -1]:
			if down >= 0:
				_key(KEY_E, down == 1)
				await frames(1)
			await frames(1)
			answers.append(made.get_value("answer"))
		expect_equal(answers, row[1], "when %d" % row[0])
		made.free()


func test_a_press_is_remembered_for_a_moment() -> void:
	var question := SCInputCondition.new()
	question.input_action = "Key: E"
	question.when = SCInputCondition.JUST_PRESSED
	question.remembered_for = 0.3
	var check := SCCheckAction.new()
	check.condition = question
	check.true_event = "jump"
	check.run_mode = EVERY_FRAME
	var made := start(machine([
		state("Ground", [check], {"jump": "Air"}),
		state("Air", [], {"land": "Ground"}),
	]))
	await frames(3)
	made.go_to("Air")
	await _press_e()
	await advance(0.1)
	made.send_event("land")
	await frames(2)
	expect_state(made, "Air")
	await advance(0.5)
	made.send_event("land")
	await frames(3)
	expect_state(made, "Ground")


func test_a_question_about_no_input_is_told() -> void:
	var question := SCInputCondition.new()
	question.input_action = "lfet"
	var check := SCCheckAction.new()
	check.condition = question
	check.store_in = "answer"
	var made := start(machine([state("A", [check])], {"name": "Asker"}))
	expect_equal(made.get_value("answer"), false)
	expect_warning("Input on Asker: nothing is called \"lfet\", so the answer is no.")


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[_on(SCEventOnInputAction.JUST_PRESSED, "Key: E"), "When Key: E is pressed, send go"],
		[_on(SCEventOnInputAction.DOUBLE_TAPPED, "Key: E", {"seconds": 0.25}), "When Key: E is tapped twice within 0.25 s, send go"],
		[_on(SCEventOnInputAction.HELD_FOR, "ui_accept", {"seconds": 2.0, "data": 5}), "When ui_accept is held for 2 s, send go with 5"],
		[_on(SCEventOnInputAction.PRESSED, "ui_accept", {"event_name": "", "store_held_seconds_in": "held"}), "When ui_accept is down, keep how long in held"],
		[_on(SCEventOnInputAction.JUST_RELEASED, "ui_accept", {"only_while_inside": NodePath("../Front")}), "When ui_accept is let go inside Front, send go"],
		[_on(SCEventOnInputAction.JUST_PRESSED, ""), "When (pick one) is pressed, send go"],
		[_direction({}), "Put the direction held into move"],
		[_direction({"keep_last_direction": true, "store_strength_in": "far"}), "Put the direction held into move and keep the last, how far into far"],
	]:
		expect_equal((row[0] as SCMachineAction).shown_summary(), row[1])


func _watching(action: SCMachineAction) -> SCMachine:
	return machine([state("Watch", [action])], {"variables": {"held": 0.0}})


func _on(when: int, input: StringName, options: Dictionary = {}) -> SCEventOnInputAction:
	var made := SCEventOnInputAction.new()
	made.when = when
	made.input_action = input
	made.event_name = "go"
	_put(made, options)
	return made


func _direction(options: Dictionary) -> SCGetInputVectorAction:
	var made := SCGetInputVectorAction.new()
	made.left_action = "Key: A"
	made.right_action = "Key: D"
	made.up_action = "Key: W"
	made.down_action = "Key: S"
	_put(made, options)
	return made


func _events_of(made: SCMachine) -> Array:
	var sent := []
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void: sent.append(event))
	return sent


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


func _stick(axis: JoyAxis, push: float) -> void:
	var event := InputEventJoypadMotion.new()
	event.axis = axis
	event.axis_value = push
	Input.parse_input_event(event)


## Down for two frames, and then that much longer.
func _tap(then: float) -> void:
	_key(KEY_E, true)
	await frames(2)
	_key(KEY_E, false)
	await advance(then)


func _press_e() -> void:
	_key(KEY_E, true)
	await frames(3)
	_key(KEY_E, false)
	await frames(2)


func _give_shape(to: CollisionObject2D) -> void:
	var shape := CollisionShape2D.new()
	shape.shape = CircleShape2D.new()
	to.add_child(shape)
