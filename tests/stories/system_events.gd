extends Story
## Events that nodes and the application send by themselves.

const SystemEvents := preload("res://addons/quillstead/runtime/system_events.gd")


func test_a_button_is_pressed() -> void:
	var button := Button.new()
	add(button)
	var made := _on(button, ["pressed", "button_down"])
	button.pressed.emit()
	expect_states(made, ["pressed"])
	expect_equal(button.pressed.get_connections().size(), 1)
	expect_equal(button.gui_input.get_connections().size(), 1)


func test_a_control_is_pressed_where_the_pointer_went_down_and_up() -> void:
	var panel := Panel.new()
	panel.size = Vector2(100, 50)
	panel.mouse_filter = Control.MOUSE_FILTER_IGNORE
	add(panel)
	var made := _on(panel, ["pressed", "button_down", "button_up", "right_pressed", "middle_pressed"])
	expect_equal(panel.mouse_filter, Control.MOUSE_FILTER_PASS)
	_click(panel, MOUSE_BUTTON_LEFT, true)
	expect_states(made, ["button_down"])
	made.start()
	_click(panel, MOUSE_BUTTON_LEFT, false, Vector2(500, 500))
	expect_states(made, ["Idle"])
	_click(panel, MOUSE_BUTTON_RIGHT, true)
	_click(panel, MOUSE_BUTTON_RIGHT, false)
	expect_states(made, ["right_pressed"])
	made.start()
	_click(panel, MOUSE_BUTTON_MIDDLE, false)
	expect_states(made, ["Idle"])
	_click(panel, MOUSE_BUTTON_MIDDLE, true)
	_click(panel, MOUSE_BUTTON_MIDDLE, false)
	expect_states(made, ["middle_pressed"])
	made.start()
	panel.gui_input.emit(InputEventKey.new())
	panel.gui_input.emit(null)
	expect_states(made, ["Idle"])
	made.queue_free()
	var up := _on(panel, ["pressed", "button_up"], "Up")
	_click(panel, MOUSE_BUTTON_LEFT, true)
	_click(panel, MOUSE_BUTTON_LEFT, false)
	expect(up.current_state.state_name != &"Idle")


func test_a_body_under_the_mouse() -> void:
	var box := StaticBody2D.new()
	box.input_pickable = false
	add(box)
	var made := _on(box, ["pressed", "mouse_entered"])
	expect(box.input_pickable)
	var down := InputEventMouseButton.new()
	down.button_index = MOUSE_BUTTON_LEFT
	down.pressed = true
	var up: InputEventMouseButton = down.duplicate()
	up.pressed = false
	up.position = Vector2(-999, 0)
	box.input_event.emit(tree.root, down, 0)
	expect_states(made, ["Idle"])
	box.input_event.emit(tree.root, up, 0)
	expect_states(made, ["pressed"])
	made.start()
	box.mouse_entered.emit()
	expect_states(made, ["mouse_entered"])
	var solid := StaticBody3D.new()
	solid.input_ray_pickable = false
	add(solid)
	var in_3d := _on(solid, ["pressed"], "In3D")
	expect(solid.input_ray_pickable)
	solid.input_event.emit(null, down, Vector3(), Vector3.UP, 0)
	solid.input_event.emit(null, up, Vector3(), Vector3.UP, 0)
	expect_states(in_3d, ["pressed"])


func test_something_walks_into_an_area() -> void:
	var door := Area2D.new()
	door.add_child(_shape())
	add(door)
	var made := _on(door, ["body_entered", "body_exited"], "Machine", "who")
	var player := CharacterBody2D.new()
	player.position = Vector2(500, 0)
	player.add_child(_shape())
	add(player)
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


func test_areas_meet() -> void:
	var door := Area3D.new()
	add(door)
	var made := _on(door, ["area_entered", "area_exited"], "Machine", "who")
	var key := Area3D.new()
	add(key)
	door.area_entered.emit(key)
	expect_states(made, ["area_entered"])
	expect_equal(made.get_value("who"), key)


func test_a_rigid_body_is_made_to_tell() -> void:
	var ball := RigidBody2D.new()
	add(ball)
	_on(ball, ["body_entered"])
	expect(ball.contact_monitor)
	expect_equal(ball.max_contacts_reported, 4)
	var many := RigidBody3D.new()
	many.max_contacts_reported = 8
	add(many)
	_on(many, ["body_exited"], "Many")
	expect(many.contact_monitor)
	expect_equal(many.max_contacts_reported, 8)


func test_a_node_is_shown_and_hidden() -> void:
	var lamp := body("Lamp")
	var made := _on(lamp, ["shown", "hidden"])
	lamp.hide()
	expect_states(made, ["hidden"])
	made.start()
	lamp.show()
	expect_states(made, ["shown"])
	made.start()
	stage.remove_child(lamp)
	lamp.free()
	var solid := Node3D.new()
	add(solid)
	var in_3d := _on(solid, ["hidden"], "In3D")
	solid.hide()
	expect_states(in_3d, ["hidden"])


func test_focus_text_and_children() -> void:
	var edit := LineEdit.new()
	add(edit)
	var made := _on(edit, ["focus_entered", "focus_exited", "text_submitted", "mouse_exited"], "Machine", "text")
	edit.grab_focus()
	expect_states(made, ["focus_entered"])
	made.start()
	edit.release_focus()
	expect_states(made, ["focus_exited"])
	made.start()
	edit.text_submitted.emit("hello")
	expect_states(made, ["text_submitted"])
	expect_equal(made.get_value("text"), "hello")
	made.start()
	edit.mouse_exited.emit()
	expect_states(made, ["mouse_exited"])
	var crowd := start(machine([state("A", [], {"child_order_changed": "B"}), state("B")], {"name": "Crowd", "target_path": edit.get_path()}))
	edit.add_child(Node.new())
	expect_states(crowd, ["B"])


func test_the_game_s_window() -> void:
	var made := _on(body(), ["application_focus_in", "application_focus_out", "close_requested"])
	for row: Array in [["focus_entered", "application_focus_in"], ["focus_exited", "application_focus_out"]]:
		tree.root.emit_signal(row[0])
		expect_states(made, [row[1]])
		made.start()


func test_a_node_that_never_sends_it_is_told_of() -> void:
	var made := start(machine([state("A", [], {"body_entered": "B", "open": "B"}), state("B")], {"under": body("Door"), "name": "Guard"}))
	expect_warning("Machine on Guard waits for body_entered, but Door is a Node2D, which never sends it. That takes %s." % SystemEvents.sent_by(&"body_entered"))
	made.send_event("body_entered")
	expect_states(made, ["B"])
	made.queue_free()
	start(machine([state("A", [], {"pressed": "B"}), state("B")], {"name": "Lost", "target_path": NodePath("../Nowhere")}))
	expect_warning("Machine on Lost waits for pressed, but its node is missing, which never sends it.")


func test_starting_again_listens_once() -> void:
	var button := Button.new()
	add(button)
	var made := _on(button, ["pressed"])
	made.start()
	made.start()
	expect_equal(button.pressed.get_connections().size(), 1)
	expect_equal(made._system_connections.size(), 1)
	made.stop()
	expect_equal(button.pressed.get_connections().size(), 0)
	made.start()
	stage.remove_child(button)
	expect_equal(button.pressed.get_connections().size(), 0)
	stage.add_child(button)
	expect_equal(button.pressed.get_connections().size(), 1)
	button.pressed.emit()
	expect_states(made, ["pressed"])


func test_a_source_that_goes_first() -> void:
	var button := Button.new()
	add(button)
	var made := start(machine([state("A", [], {"pressed": "B"}), state("B")], {"target_path": button.get_path()}))
	button.free()
	await frames(1)
	made.start()
	expect_warning("Machine on Machine waits for pressed, but its node is missing")
	made.stop()


func test_every_event_that_is_listed_can_be_heard() -> void:
	var nodes: Array[Node] = [Button.new(), Area2D.new(), Area3D.new(), RigidBody2D.new(), LineEdit.new(), Node3D.new()]
	for node in nodes:
		add(node)
	var made := start(machine([state("A")], {"under": stage}))
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


func test_an_event_out_of_the_physics_step_waits_for_its_end() -> void:
	var area := Area2D.new()
	add(area)
	var made := _on(area, ["body_entered"])
	await physics_frames(1)
	area.body_entered.emit(null)
	expect_states(made, ["Idle"])
	await frames(1)
	expect_states(made, ["body_entered"])


## A machine under [param node] that goes to the state named as the event when it hears one.
func _on(node: Node, events: Array, name: String = "Machine", store_in: StringName = &"") -> SCMachine:
	var idle := state("Idle")
	var states := [idle]
	for event: StringName in events:
		idle.transitions.append(transition(event, event, store_in))
		states.append(state(event))
	return start(machine(states, {"under": node, "name": name}))


func _click(on: Control, button: MouseButton, down: bool, at: Vector2 = Vector2(10, 10)) -> void:
	var event := InputEventMouseButton.new()
	event.button_index = button
	event.pressed = down
	event.position = at
	on.gui_input.emit(event)


func _shape() -> CollisionShape2D:
	var made := CollisionShape2D.new()
	made.shape = RectangleShape2D.new()
	return made
