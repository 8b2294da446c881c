extends Story
## What becomes of a machine whose node leaves the tree, comes back, or is moved about.


func test_a_machine_taken_out_and_put_back_goes_on_where_it_was() -> void:
	var made := start(machine([
		state("Idle", [act("idle")], {"work": "Work"}),
		state("Work", [act("work")], {}, {"parallel": {
			"Arm": [state("Rest", [act("rest")]), state("Swing", [act("swing")], {"again": "Rest"})],
			"Eyes": [state("Shut", [act("shut")]), state("Open", [act("open")])],
		}}),
	], {"variables": {"score": 0}}))
	made.go_to("Swing")
	made.go_to("Open")
	made.set_value("score", 7)
	noted.clear()
	stage.remove_child(made)
	expect_log(["swing exit", "open exit", "work exit"])
	expect(not made.is_running())
	await frames(2)
	stage.add_child(made)
	expect_log(["work enter", "swing enter", "open enter"])
	expect_states(made, ["Work", "Swing", "Open"])
	expect_equal(made.get_value("score"), 7)
	made.send_event("again")
	expect_states(made, ["Work", "Rest", "Open"])


func test_a_machine_that_did_not_run_does_not_begin_to() -> void:
	var stopped := start(machine([state("A", [act("stopped")])], {"name": "Stopped"}))
	stopped.stop()
	var never := machine([state("A", [act("never")])], {"name": "Never", "autostart": false})
	stage.add_child(never)
	noted.clear()
	for made: SCMachine in [stopped, never]:
		stage.remove_child(made)
		stage.add_child(made)
		expect(not made.is_running(), "%s runs" % made.name)
	expect_log([])
	stopped.start()
	never.start()
	expect(stopped.is_running() and never.is_running())


func test_a_wait_begins_anew_when_the_machine_comes_back() -> void:
	var made := start(machine([state("A", [wait(0.2)], {"FINISHED": "B"}), state("B")]))
	await frames(8)
	stage.remove_child(made)
	await frames(20)
	stage.add_child(made)
	await frames(8)
	expect_state(made, "A")
	await frames(8)
	expect_state(made, "B")


func test_moving_a_node_does_not_disturb_its_machines() -> void:
	var here := body("Here")
	var there := body("There")
	there.position = Vector2(100, 0)
	var crate := Node2D.new()
	crate.position = Vector2(10, 0)
	here.add_child(crate)
	var made := start(machine([state("A", [act("a"), wait(0.2)], {"FINISHED": "Wrong", "go": "B"}), state("B", [act("b")]), state("Wrong")], {"under": crate}))
	noted.clear()
	await frames(5)
	SCMachine.move_node(crate, there, true)
	expect_log([])
	expect(made.is_running())
	expect_equal(crate.get_parent(), there)
	expect_equal(crate.global_position, Vector2(10, 0))
	expect_near(made.state_time(), 5.0 / 60.0, 0.02)
	expect(SCMachine.machines_in_the_scene().has(made))
	SCMachine.move_node(crate, here, false)
	expect_equal(crate.position, Vector2(-90, 0))
	made.send_event("go")
	expect_log(["a exit", "b enter"])


func test_moved_in_the_usual_way_it_lets_go_and_resumes() -> void:
	var here := body("Here")
	var there := body("There")
	var crate := Node2D.new()
	here.add_child(crate)
	var made := start(machine([state("A", [act("a")], {"go": "B"}), state("B", [act("b")])], {"under": crate}))
	made.send_event("go")
	noted.clear()
	crate.reparent(there)
	expect_log(["b exit", "b enter"])
	expect_state(made, "B")


func test_a_machine_that_works_on_a_node_elsewhere_is_not_spared() -> void:
	var here := body("Here")
	var there := body("There")
	var lamp := body("Lamp")
	var crate := Node2D.new()
	here.add_child(crate)
	var made := start(machine([state("A", [act("a")])], {"under": crate, "target_path": NodePath("../../../Lamp")}))
	expect_equal(made.target, lamp)
	noted.clear()
	SCMachine.move_node(crate, there, true)
	expect_log(["a exit", "a enter"])
	SCMachine.move_node(null, there, true)
	SCMachine.move_node(crate, null, true)


func test_a_machine_moves_its_own_node_from_within() -> void:
	var here := body("Here")
	var there := body("There")
	var crate := Node2D.new()
	here.add_child(crate)
	var made := start(machine([
		state("A", [act("a").exiting(func() -> void: SCMachine.move_node(crate, there, true))], {"go": "B"}),
		state("B", [act("b")]),
	], {"under": crate}))
	made.send_event("go")
	expect_equal(crate.get_parent(), there)
	expect_log(["a enter", "a exit", "b enter"])
	expect_state(made, "B")


func test_leaving_the_tree_from_within_an_exit() -> void:
	var crate := body("Crate")
	var made := start(machine([
		state("A", [act("a").exiting(func() -> void:
			if crate.get_parent() != null:
				stage.remove_child(crate))], {"go": "B"}),
		state("B", [act("b")]),
	], {"under": crate}))
	made.send_event("go")
	expect_log(["a enter", "a exit"])
	expect(not made.is_running())
	stage.add_child(crate)
	expect(made.is_running())
	noted.clear()
	made.stop()
	crate.free()


func test_what_it_kept_to_resume_is_dropped_by_a_start() -> void:
	var made := start(machine([state("A", [act("a")], {"go": "B"}), state("B", [act("b")])]))
	made.send_event("go")
	stage.remove_child(made)
	noted.clear()
	expect(made._core_has_resume_states())
	made.start()
	expect(not made._core_has_resume_states())
	expect_state(made, "A")
	stage.add_child(made)
	expect_state(made, "A")
	expect_log(["a enter"])


func test_a_disabled_machine_that_comes_back() -> void:
	var made := start(machine([state("A", [act("a").ticking()], {"go": "B"}), state("B", [act("b").ticking()])]))
	made.send_event("go")
	made.process_mode = Node.PROCESS_MODE_DISABLED
	stage.remove_child(made)
	stage.add_child(made)
	expect_state(made, "B")
	noted.clear()
	await frames(2)
	expect_log([])
	made.process_mode = Node.PROCESS_MODE_INHERIT
	await frames(2)
	expect_log(["b update", "b update"])
