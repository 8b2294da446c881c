extends Story
## Set Visible shows and hides, fades and blinks, and leaves a node as it was designed.


class Odd:
	extends Node

	var visible: Variant = "as ever"


func test_show_hide_and_toggle() -> void:
	for row: Array in [
		[true, SCSetVisibleAction.SHOW, true], [false, SCSetVisibleAction.SHOW, true],
		[true, SCSetVisibleAction.HIDE, false], [false, SCSetVisibleAction.HIDE, false],
		[true, SCSetVisibleAction.TOGGLE, false], [false, SCSetVisibleAction.TOGGLE, true],
	]:
		# What is no canvas item has no fade.
		for node: Node in [Sprite2D.new(), Panel.new(), Node3D.new(), CanvasLayer.new()]:
			add(node, "", {"visible": row[0]})
			var settings := {"fade_seconds": 0.0 if node is CanvasItem else 5.0}
			expect_state(play(_set_it(row[1], settings), {"FINISHED": "Done"}, {"under": node}), "Done")
			expect_equal(node.get(&"visible"), row[2], node.get_class())


func test_a_fade_goes_on_when_the_state_is_left_and_ends_as_designed() -> void:
	# What, how see-through the node was designed, what that is half way and at the end.
	for row: Array in [[SCSetVisibleAction.HIDE, 0.5, 0.25, 0.5], [SCSetVisibleAction.SHOW, 0.5, 0.25, 0.5], [SCSetVisibleAction.SHOW, 0.0, 0.5, 1.0]]:
		var shows: bool = row[0] == SCSetVisibleAction.SHOW
		var panel := _panel(row[1], not shows)
		var made := play(_set_it(row[0], {"fade_seconds": 0.5}), {"FINISHED": "Done"}, {"under": panel})
		expect_state(made, "Done")
		expect(panel.visible)
		expect_near(panel.modulate.a, 0.0 if shows else row[1])
		await advance(0.25)
		expect(panel.visible)
		expect_near(panel.modulate.a, row[2], 0.03)
		made.free()
		await advance(0.35)
		expect_equal(panel.visible, shows)
		_expect_as_designed(panel, row[3])


func test_a_fade_turned_round_goes_on_from_where_it_was() -> void:
	var panel := _panel(0.8)
	var turns := {"fade_seconds": 0.4, "block_input_when_hidden": true}
	var made := _hide_then(panel, turns, _set_it(SCSetVisibleAction.TOGGLE, {"fade_seconds": 0.4}))
	await advance(0.2)
	var half := panel.modulate.a
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_IGNORE)
	made.send_event("turn")
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_STOP)
	expect_near(panel.modulate.a, half, 0.001)
	await advance(0.2)
	# Showing what is fading in leaves the fade alone.
	play(_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 5.0}), {}, {"under": panel})
	await advance(0.3)
	expect(panel.visible)
	_expect_as_designed(panel, 0.8)


func test_at_once_ends_a_fade() -> void:
	for row: Array in [[_set_it(SCSetVisibleAction.HIDE), false], [_set_it(SCSetVisibleAction.SHOW), true]]:
		var panel := _panel(0.7)
		var made := _hide_then(panel, {"fade_seconds": 5.0}, row[0])
		await advance(0.2)
		made.send_event("turn")
		expect_equal(panel.visible, row[1])
		_expect_as_designed(panel, 0.7)


func test_a_node_hidden_by_something_else_during_a_fade_is_not_left_see_through() -> void:
	var panel := _panel(0.9)
	play(_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.5}), {}, {"under": panel})
	await advance(0.25)
	panel.hide()
	_expect_as_designed(panel, 0.9)
	panel.show()
	await advance(0.5)
	expect(panel.visible, "and no longer fades")


func test_a_panel_on_its_way_out_answers_nothing() -> void:
	var panel := _panel(1.0)
	panel.mouse_filter = Control.MOUSE_FILTER_PASS
	var button: Button = add(Button.new(), "", {"under": add(Node.new(), "", {"under": panel})})
	button.grab_focus()
	play(_set_it(SCSetVisibleAction.HIDE, {"fade_seconds": 0.3, "block_input_when_hidden": true}), {}, {"under": panel})
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
	_expect_as_designed(panel, 1.0)


func test_blinking_goes_on_until_the_state_is_left() -> void:
	# Seconds between, and what it does in two seconds: of those that are due in one frame two leave it as it was.
	for row: Array in [[0.25, 8, 0.0], [0.0123, 78, 3.0]]:
		for was_shown: bool in [true, false]:
			var lamp := _panel(1.0, was_shown)
			var blinks := _set_it(SCSetVisibleAction.SHOW, {"blink_every": row[0]})
			var made := play(blinks, {"FINISHED": "Wrong", "off": "Off"}, {"under": lamp})
			expect(lamp.visible, "it starts the way Show says")
			var flips := [0]
			lamp.visibility_changed.connect(func() -> void: flips[0] += 1)
			await advance(2.1 if row[2] == 0.0 else 2.0)
			expect_near(flips[0], row[1], row[2])
			expect_state(made, "Work")
			await advance(0.2)
			made.send_event("off")
			expect_equal(lamp.visible, was_shown, "as it was before")
	# What is on its way out counts as hidden.
	var panel := _panel(0.6)
	var turned := _hide_then(panel, {"fade_seconds": 5.0}, _set_it(SCSetVisibleAction.TOGGLE, {"blink_every": 9.0}))
	turned.send_event("turn")
	expect(panel.visible)
	turned.stop()
	expect(not panel.visible)
	_expect_as_designed(panel, 0.6)


func test_a_node_that_is_freed_meanwhile() -> void:
	for settings: Dictionary in [
		{"blink_every": 0.1}, {"blink_every": 0.1, "run_mode": SCMachineAction.EVERY_FRAME},
		{"fade_seconds": 0.2, "block_input_when_hidden": true}, {"run_mode": SCMachineAction.EVERY_FRAME},
	]:
		var lamp := _panel(1.0)
		var keeps_hidden := settings.size() == 1 and settings.has("run_mode")
		var made := play(_set_it(SCSetVisibleAction.HIDE, settings.merged({"node_path": NodePath("../Panel")})), {"off": "Off"})
		await advance(0.05)
		if keeps_hidden:
			lamp.show()
		await advance(0.1)
		expect(not keeps_hidden or not lamp.visible)
		lamp.free()
		await advance(0.2)
		if keeps_hidden:
			expect_warning("Set Visible on Machine: there is no node at ../Panel.")
		expect_after(made, "off", "Off")
		made.free()


func test_a_node_taken_out_of_the_scene_as_it_is_shown() -> void:
	var panel := _panel(0.6, false)
	panel.visibility_changed.connect(func() -> void: stage.remove_child(panel), CONNECT_ONE_SHOT)
	var made := play(_set_it(SCSetVisibleAction.SHOW, {"fade_seconds": 0.2, "node_path": NodePath("../Panel")}))
	expect(not panel.is_inside_tree())
	expect_state(made, "Done")
	await advance(0.1)
	stage.add_child(panel)
	await advance(0.5)
	expect(panel.visible)
	_expect_as_designed(panel, 0.6)


func test_what_cannot_be_shown_is_told_and_left_alone() -> void:
	var odd: Odd = add(Odd.new(), "Odd")
	for row: Array in [
		[NodePath("../Odd"), "Odd is a Node, not something that can be shown and hidden."],
		[NodePath("/root"), "root is a Window, not something that can be shown and hidden."],
		[NodePath("../Nowhere"), "there is no node at ../Nowhere. Pick one under Node Path."],
	]:
		for mode: int in [SCMachineAction.ONCE, SCMachineAction.EVERY_FRAME]:
			var made := play(_set_it(SCSetVisibleAction.HIDE, {"node_path": row[0], "run_mode": mode}))
			await frames(2)
			expect_state(made, "Done" if mode == SCMachineAction.ONCE else "Work")
			expect_warning("Set Visible on Machine: %s" % row[1])
			made.free()
	expect_equal(odd.visible, "as ever")
	expect(tree.root.visible)


func test_lines_on_the_graph() -> void:
	expect_lines(SCSetVisibleAction, {
		"Show Menu": {"what": SCSetVisibleAction.SHOW, "node_path": NodePath("../Menu")},
		"Hide Self over 0.5 s": {"what": SCSetVisibleAction.HIDE, "fade_seconds": 0.5},
		"Toggle Self": {"what": SCSetVisibleAction.TOGGLE},
		"Show Self and blink it every 0.25 s": {"what": SCSetVisibleAction.SHOW, "blink_every": 0.25},
	})


func _panel(alpha: float, shown: bool = true) -> Panel:
	return add(Panel.new(), "Panel", {"modulate": Color(1, 1, 1, alpha), "visible": shown})


func _set_it(what: int, options: Dictionary = {}) -> SCSetVisibleAction:
	return kind(SCSetVisibleAction, {"what": what}.merged(options))


## Hides the panel, and does something else to it when told to turn.
func _hide_then(panel: Panel, hides: Dictionary, then: SCMachineAction) -> SCMachine:
	return start(machine([state("Hide", [_set_it(SCSetVisibleAction.HIDE, hides)], {"turn": "Then"}), state("Then", [then])], {"under": panel}))


func _expect_as_designed(panel: Panel, alpha: float) -> void:
	expect_near(panel.modulate.a, alpha, 0.001)
	expect_equal(panel.get_meta_list(), [] as Array[StringName])
	expect_equal(panel.visibility_changed.get_connections().size(), 0)
