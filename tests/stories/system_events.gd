extends Story
## Events that nodes and the application send by themselves.

const SystemEvents := preload("res://addons/quillstead/runtime/system_events.gd")


func test_a_button_is_pressed_and_heard_once() -> void:
	var button := add(Button.new()) as Button
	var made := _on(button, ["pressed", "button_down"])
	button.pressed.emit()
	expect_states(made, ["pressed"])
	expect_equal(button.gui_input.get_connections().size(), 1)
	# Once, however often it is started; not at all while it is stopped or its node outside the tree.
	var counts: Array[int] = []
	for change: Callable in [made.start, made.start, made.stop, made.start, stage.remove_child.bind(button), stage.add_child.bind(button)]:
		change.call()
		counts.append(button.pressed.get_connections().size())
	expect_equal(counts, [1, 1, 0, 1, 0, 1] as Array[int])
	expect_equal(made._system_connections.size(), 2)
	button.pressed.emit()
	expect_states(made, ["pressed"])


func test_a_control_is_pressed_where_the_pointer_went_down_and_up() -> void:
	var panel: Panel = add(Panel.new(), "", {"size": Vector2(100, 50), "mouse_filter": Control.MOUSE_FILTER_IGNORE})
	var made := _on(panel, ["pressed", "button_down", "button_up", "right_pressed", "middle_pressed"])
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_PASS)
	# Which button goes down and up where, and what that is.
	for row: Array in [
		[[MOUSE_BUTTON_LEFT, true, 10], "button_down"],
		[[MOUSE_BUTTON_LEFT, false, 500], "Idle"],
		[[MOUSE_BUTTON_RIGHT, true, 10], "Idle"],
		[[MOUSE_BUTTON_RIGHT, false, 10], "right_pressed"],
		[[MOUSE_BUTTON_MIDDLE, false, 10], "Idle"],
		[[MOUSE_BUTTON_MIDDLE, true, 10], "Idle"],
		[[MOUSE_BUTTON_MIDDLE, false, 10], "middle_pressed"],
	]:
		panel.gui_input.emit(_mouse(row[0][0], row[0][1], Vector2(row[0][2], 10)))
		expect_states(made, [row[1]])
		if row[1] != "Idle":
			made.start()
	panel.gui_input.emit(InputEventKey.new())
	panel.gui_input.emit(null)
	expect_states(made, ["Idle"])
	made.queue_free()
	var up := _on(panel, ["pressed", "button_up"], {"name": "Up"})
	panel.gui_input.emit(_mouse(MOUSE_BUTTON_LEFT, true))
	expect_states(up, ["Idle"])
	panel.gui_input.emit(_mouse(MOUSE_BUTTON_LEFT, false))
	expect(up.current_state.state_name != &"Idle")


func test_a_body_under_the_mouse() -> void:
	var press := [_mouse(MOUSE_BUTTON_LEFT, true), _mouse(MOUSE_BUTTON_LEFT, false, Vector2(-999, 0))]
	for box: Node in [StaticBody2D.new(), StaticBody3D.new()]:
		var pickable := &"input_pickable" if box is StaticBody2D else &"input_ray_pickable"
		add(box, "", {pickable: false})
		var made := _on(box, ["pressed", "mouse_entered"])
		expect(box.get(pickable))
		for event: InputEvent in press:
			expect_states(made, ["Idle"])
			var more: Array = [tree.root, event, 0] if box is StaticBody2D else [null, event, Vector3(), Vector3.UP, 0]
			box.emit_signal.callv([&"input_event"] + more)
		expect_states(made, ["pressed"])
		made.start()
		box.emit_signal(&"mouse_entered")
		expect_states(made, ["mouse_entered"])


func test_something_walks_into_an_area() -> void:
	var door := add(boxed(Area2D.new(), Vector2(20, 20)))
	var made := _on(door, ["body_entered", "body_exited"], {}, "who")
	var player: Node2D = add(boxed(CharacterBody2D.new(), Vector2(20, 20)), "", {"position": Vector2(500, 0)})
	await physics_frames(4)
	expect_states(made, ["Idle"])
	player.position = Vector2.ZERO
	await physics_frames(6)
	expect_states(made, ["body_entered"])
	expect_equal(made.get_value("who"), player)
	made.start()
	player.position = Vector2(500, 0)
	await physics_frames(6)
	expect_states(made, ["body_exited"])


func test_an_event_out_of_the_physics_step_waits_for_its_end() -> void:
	var area := add(Area2D.new()) as Area2D
	var made := _on(area, ["body_entered"])
	await physics_frames(1)
	area.body_entered.emit(null)
	expect_states(made, ["Idle"])
	await frames(1)
	expect_states(made, ["body_entered"])


func test_a_rigid_body_is_made_to_tell() -> void:
	for ball: Node in [RigidBody2D.new(), RigidBody3D.new()]:
		for contacts: int in [0, 8]:
			add(ball, "", {"max_contacts_reported": contacts, "contact_monitor": false})
			_on(ball, ["body_entered" if contacts == 0 else "body_exited"])
			expect(ball.get(&"contact_monitor"))
			expect_equal(ball.get(&"max_contacts_reported"), maxi(contacts, 4))
			stage.remove_child(ball)
		ball.free()


func test_what_nodes_tell() -> void:
	var edit: LineEdit = add(LineEdit.new())
	var key := add(Area3D.new())
	# Node, what happens to it, the event, and what it carries.
	for row: Array in [
		[body("Lamp"), &"hide", [], "hidden", null],
		[add(Node2D.new(), "", {"visible": false}), &"show", [], "shown", null],
		[body_3d("Solid"), &"hide", [], "hidden", null],
		[edit, &"grab_focus", [], "focus_entered", null],
		[edit, &"release_focus", [], "focus_exited", null],
		[edit, &"emit_signal", [&"text_submitted", "hello"], "text_submitted", "hello"],
		[edit, &"emit_signal", [&"mouse_exited"], "mouse_exited", null],
		[edit, &"add_child", [Node.new()], "child_order_changed", null],
		[add(Area3D.new()), &"emit_signal", [&"area_entered", key], "area_entered", key],
		[tree.root, &"emit_signal", [&"focus_entered"], "application_focus_in", null],
		[tree.root, &"emit_signal", [&"focus_exited"], "application_focus_out", null],
	]:
		var of_the_game: bool = row[0] == tree.root
		var made := _on(stage if of_the_game else row[0], [row[3]] if not of_the_game else ["application_focus_in", "application_focus_out", "close_requested"],
				{"under": stage, "target_path": (row[0] as Node).get_path()}, "what")
		(row[0] as Node).callv(row[1], row[2])
		expect_states(made, [row[3]])
		expect_equal(made.get_value("what"), row[4])
		made.free()


func test_a_node_that_never_sends_it_is_told_of() -> void:
	var made := doing([], {"body_entered": "B", "open": "B"}, {"under": body("Door"), "name": "Guard"})
	start(made)
	expect_warning("Machine on Guard waits for body_entered, but Door is a Node2D, which never sends it. That takes %s." % SystemEvents.sent_by(&"body_entered"))
	expect_after(made, "body_entered", "B")
	play([], {"pressed": "B"}, {"name": "Lost", "target_path": NodePath("../Nowhere")})
	expect_warning("Machine on Lost waits for pressed, but its node is missing, which never sends it.")
	var button := add(Button.new())
	made = play([], {"pressed": "B"}, {"name": "Late", "target_path": button.get_path()})
	button.free()
	await frames(1)
	made.start()
	expect_warning("Machine on Late waits for pressed, but its node is missing")
	made.stop()


func test_every_event_that_is_listed_can_be_heard() -> void:
	var nodes: Array[Node] = [Button.new(), Area2D.new(), Area3D.new(), RigidBody2D.new(), LineEdit.new(), Node3D.new()]
	for node in nodes:
		add(node)
	var made := asker()
	for event: StringName in SystemEvents.SENT_BY:
		expect(SystemEvents.is_system_event(event) and not SystemEvents.sent_by(event).is_empty())
		var heard := false
		for node in nodes:
			made.target = node
			heard = heard or made._listen_to_system_event(event)
		expect(heard, "no node sends %s" % event)
	expect(not made._listen_to_system_event("open"))
	expect(not SystemEvents.is_system_event(&"open"))
	made._disconnect_system_events()


## A machine under [param node] that goes to the state named as the event when it hears one.
func _on(node: Node, events: Array, options: Dictionary = {}, store_in: StringName = &"") -> SCMachine:
	var states := [state("Idle")]
	for event: StringName in events:
		states[0].transitions.append(transition(event, event, store_in))
		states.append(state(event))
	return start(machine(states, {"under": node}.merged(options, true)))


func _mouse(button: MouseButton, down: bool, at: Vector2 = Vector2(10, 10)) -> InputEventMouseButton:
	var event := InputEventMouseButton.new()
	event.button_index = button
	event.pressed = down
	event.position = at
	return event
