extends Story
## Set Visible shows and hides, fades and blinks, and leaves a node as it was designed.


func test_show_hide_and_toggle() -> void:
	for row: Array in [
		[true, SCSetVisibleAction.SHOW, true], [false, SCSetVisibleAction.SHOW, true],
		[true, SCSetVisibleAction.HIDE, false], [false, SCSetVisibleAction.HIDE, false],
		[true, SCSetVisibleAction.TOGGLE, false], [false, SCSetVisibleAction.TOGGLE, true],
	]:
		for node: Node in [Sprite2D.new(), Panel.new(), Node3D.new(), CanvasLayer.new()]:
			add(node)
			node.set(&"visible", row[0])
			var made := start(machine([state("A", [_set_it(row[1])], {"FINISHED": "B"}), state("B")], {"under": node}))
			expect_equal(node.get(&"visible"), row[2], node.get_class())
			expect_state(made, "B")


func test_a_fade_away_goes_on_when_the_state_is_left() -> void:
	var panel := _panel(0.5)
	var made := start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.5})], {"FINISHED": "B"}), state("B")], {"under": panel}))
	expect_state(made, "B")
	expect(panel.visible)
	await advance(0.25)
	expect(panel.visible)
	expect_near(panel.modulate.a, 0.25, 0.03)
	made.free()
	await advance(0.35)
	expect(not panel.visible)
	expect_near(panel.modulate.a, 0.5, 0.001, "as it was designed")
	expect_equal(panel.get_meta_list(), [] as Array[StringName])
	expect_equal(panel.visibility_changed.get_connections().size(), 0)


func test_a_fade_in_starts_from_nothing_and_ends_as_designed() -> void:
	var panel := _panel(0.5)
	panel.hide()
	start(machine([state("A", [_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 0.5})])], {"under": panel}))
	expect(panel.visible)
	expect_equal(panel.modulate.a, 0.0)
	await advance(0.25)
	expect_near(panel.modulate.a, 0.25, 0.03)
	await advance(0.35)
	expect_near(panel.modulate.a, 0.5, 0.001)
	expect_equal(panel.get_meta_list(), [] as Array[StringName])


func test_a_fade_turned_round_goes_on_from_where_it_was() -> void:
	var panel := _panel(0.8)
	var made := start(machine([
		state("Hide", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.4})], {"turn": "Show"}),
		state("Show", [_set_it(SCSetVisibleAction.TOGGLE, {"fade_seconds": 0.4})]),
	], {"under": panel}))
	await advance(0.2)
	var half := panel.modulate.a
	made.send_event("turn")
	expect_near(panel.modulate.a, half, 0.001)
	await advance(0.5)
	expect(panel.visible)
	expect_near(panel.modulate.a, 0.8, 0.001)


func test_showing_what_is_fading_in_leaves_the_fade_alone() -> void:
	var panel := _panel(1.0)
	panel.hide()
	var made := start(machine([
		state("First", [_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 0.4})], {"again": "Second"}),
		state("Second", [_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 5.0})]),
	], {"under": panel}))
	await advance(0.2)
	made.send_event("again")
	await advance(0.3)
	expect_near(panel.modulate.a, 1.0, 0.001)


func test_at_once_ends_a_fade() -> void:
	var panel := _panel(0.7)
	var made := start(machine([
		state("Fade", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 5.0})], {"now": "Now"}),
		state("Now", [_set_it(SCSetVisibleAction.HIDE)]),
	], {"under": panel}))
	await advance(0.2)
	made.send_event("now")
	expect(not panel.visible)
	expect_near(panel.modulate.a, 0.7, 0.001)


func test_a_node_hidden_by_something_else_during_a_fade_is_not_left_see_through() -> void:
	var panel := _panel(0.9)
	start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.5})])], {"under": panel}))
	await advance(0.25)
	panel.hide()
	expect_near(panel.modulate.a, 0.9, 0.001)
	panel.show()
	await advance(0.5)
	expect(panel.visible, "and no longer fades")


func test_a_3d_node_has_no_fade() -> void:
	var node := Node3D.new()
	add(node)
	start(machine([state("A", [_set_it(SCSetVisibleAction.TOGGLE, {"fade_seconds": 5.0})])], {"under": node}))
	expect(not node.visible)


func test_a_panel_on_its_way_out_answers_nothing() -> void:
	var panel := _panel(1.0)
	panel.mouse_filter = Control.MOUSE_FILTER_PASS
	var button := Button.new()
	panel.add_child(button)
	button.grab_focus()
	start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.3, "block_input_when_hidden": true})])], {"under": panel}))
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_IGNORE)
	expect_equal(button.mouse_filter, Control.MOUSE_FILTER_IGNORE)
	expect(not button.has_focus())
	await advance(0.4)
	expect(not panel.visible)
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_IGNORE)
	panel.show()
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_PASS, "whoever shows it")
	expect_equal(button.mouse_filter, Control.MOUSE_FILTER_STOP)
	expect_equal(button.focus_mode, Control.FOCUS_ALL)
	expect_equal(panel.get_meta_list(), [] as Array[StringName])


func test_a_blocked_panel_turned_round_answers_again() -> void:
	var panel := _panel(1.0)
	var made := start(machine([
		state("Hide", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.4, "block_input_when_hidden": true})], {"turn": "Show"}),
		state("Show", [_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 0.4})]),
	], {"under": panel}))
	await advance(0.2)
	made.send_event("turn")
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_STOP)
	await advance(0.5)
	expect_equal(panel.get_meta_list(), [] as Array[StringName])


func test_blinking_goes_on_until_the_state_is_left() -> void:
	var lamp := _panel(1.0)
	lamp.hide()
	var made := start(machine([
		state("Alarm", [_set_it(SCSetVisibleAction.SHOW, {"blink_every": 0.25})], {"FINISHED": "Wrong", "off": "Off"}),
		state("Wrong"),
		state("Off"),
	], {"under": lamp}))
	expect(lamp.visible, "it starts the way Show says")
	var flips := [0]
	lamp.visibility_changed.connect(func() -> void: flips[0] += 1)
	await advance(2.1)
	expect_equal(flips[0], 8)
	expect_state(made, "Alarm")
	await advance(0.2)
	made.send_event("off")
	expect(not lamp.visible, "as it was before")


func test_blinking_faster_than_the_frames_keeps_count() -> void:
	var lamp := _panel(1.0)
	var made := start(machine([state("Alarm", [_set_it(SCSetVisibleAction.SHOW, {"blink_every": 0.0123})], {"off": "Off"}), state("Off")], {"under": lamp}))
	var flips := [0]
	lamp.visibility_changed.connect(func() -> void: flips[0] += 1)
	# Some 81 are due in 60 frames: in about 21 of them two at once, which leave it as it was.
	await advance(1.0)
	expect_near(flips[0], 39.0, 2.0)
	made.send_event("off")
	expect(lamp.visible, "as it was before")


func test_a_node_that_is_freed_while_it_blinks_or_fades() -> void:
	var lamp := _panel(1.0)
	lamp.name = "Lamp"
	var made := start(machine([
		state("Alarm", [_set_it(SCSetVisibleAction.SHOW, {"blink_every": 0.1, "node_path": NodePath("../Lamp")})], {"off": "Off"}),
		state("Off"),
	]))
	await advance(0.15)
	lamp.free()
	await advance(0.2)
	made.send_event("off")
	expect_state(made, "Off")
	var panel := _panel(1.0)
	start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.1, "block_input_when_hidden": true})])], {"under": panel}))
	await advance(0.05)
	panel.free()
	await advance(0.2)


func test_a_node_taken_out_of_the_scene_as_it_is_shown() -> void:
	var panel := _panel(0.6)
	panel.name = "Panel"
	panel.hide()
	var take_out := func() -> void: stage.remove_child(panel)
	panel.visibility_changed.connect(take_out, CONNECT_ONE_SHOT)
	var made := start(machine([state("A", [_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 0.2, "node_path": NodePath("../Panel")})], {"FINISHED": "B"}), state("B")]))
	expect(not panel.is_inside_tree())
	expect_state(made, "B")
	await advance(0.1)
	stage.add_child(panel)
	await advance(0.5)
	expect(panel.visible)
	expect_near(panel.modulate.a, 0.6, 0.001)


func test_every_frame_keeps_it_hidden() -> void:
	var panel := _panel(1.0)
	start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"run_mode": SCMachineAction.EVERY_FRAME})])], {"under": panel}))
	panel.show()
	await frames(2)
	expect(not panel.visible)


func test_what_cannot_be_shown_is_told() -> void:
	var timer := Timer.new()
	timer.name = "Clock"
	add(timer)
	for row: Array in [
		[NodePath("../Clock"), "Set Visible on Shower: Clock is a Timer, not something that can be shown and hidden."],
		[NodePath("/root"), "Set Visible on Shower: root is a Window, not something that can be shown and hidden."],
		[NodePath("../Nowhere"), "Set Visible on Shower: there is no node at Nowhere. Pick one under Node Path."],
	]:
		var made := start(machine([state("A", [_set_it(SCSetVisibleAction.HIDE, {"node_path": row[0]})], {"FINISHED": "B"}), state("B")], {"name": "Shower"}))
		expect_state(made, "B")
		expect_warning(row[1])
		made.free()


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[_set_it(SCSetVisibleAction.SHOW, {"node_path": NodePath("../Menu")}), "Show Menu"],
		[_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.5}), "Hide Self over 0.5 s"],
		[_set_it(SCSetVisibleAction.TOGGLE), "Toggle Self"],
		[_set_it(SCSetVisibleAction.SHOW, {"blink_every": 0.25}), "Show Self and blink it every 0.25 s"],
	]:
		expect_equal((row[0] as SCSetVisibleAction).shown_summary(), row[1])


func _panel(alpha: float) -> Panel:
	var made := Panel.new()
	made.modulate.a = alpha
	stage.add_child(made)
	return made


func _set_it(what: int, options: Dictionary = {}) -> SCSetVisibleAction:
	var made := SCSetVisibleAction.new()
	made.what = what
	_put(made, options)
	return made
