extends Story
## What becomes of a machine whose node leaves the tree, comes back, or is moved about.

const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")


## A value whose end runs a game's code.
class Parting:
	extends RefCounted

	var words: Callable

	func _notification(what: int) -> void:
		if what == NOTIFICATION_PREDELETE and words.is_valid():
			words.call()


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
	expect_values(made, {"score": 7})
	expect_after(made, "again", ["Work", "Rest", "Open"])


func test_a_machine_that_did_not_run_does_not_begin_to() -> void:
	var stopped := start(machine([state("A", [act("stopped")])], {"name": "Stopped"}))
	stopped.stop()
	var never := add(machine([state("A", [act("never")])], {"name": "Never", "autostart": false}))
	noted.clear()
	for made: SCMachine in [stopped, never]:
		stage.remove_child(made)
		stage.add_child(made)
		expect(not made.is_running(), "%s runs" % made.name)
	expect_log([])
	for made: SCMachine in [stopped, never]:
		made.start()
		expect(made.is_running())


func test_a_wait_begins_anew_when_the_machine_comes_back() -> void:
	var made := play(wait(0.2))
	await frames(8)
	stage.remove_child(made)
	await frames(20)
	stage.add_child(made)
	await expect_later(made, 0.14, "Work")
	await expect_later(made, 0.14, "Done")


func test_a_node_is_moved_about_with_its_machine() -> void:
	var here := body("Here")
	var there := body("There", Vector2(100, 0))
	var lamp := body("Lamp")
	var crate := body("Crate", Vector2(10, 0), here)
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
	# Moved in the usual way it lets go and resumes, and so it does when it works on a node that stays where it is.
	crate.reparent(there)
	expect_log(["b exit", "b enter"])
	var elsewhere := start(machine([state("A", [act("far")])], {"name": "Elsewhere", "under": crate, "target_path": ^"../../../Lamp"}))
	expect_equal(elsewhere.target, lamp)
	noted.clear()
	SCMachine.move_node(crate, here, true)
	expect_log(["far exit", "far enter"])
	for wrong: Array in [[null, there], [crate, null], [crate, crate], [here, crate]]:
		SCMachine.move_node(wrong[0], wrong[1], true)
		expect_equal(crate.get_parent(), here)


func test_a_machine_moves_its_own_node_from_within() -> void:
	var there := body("There")
	var crate := body("Crate", Vector2.ZERO, body("Here"))
	var made := start(machine([
		state("A", [act("a").exiting(func() -> void: SCMachine.move_node(crate, there, true))], {"go": "B"}),
		state("B", [act("b")]),
	], {"under": crate}))
	expect_after(made, "go", "B")
	expect_equal(crate.get_parent(), there)
	expect_log(["a enter", "a exit", "b enter"])


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


func test_a_start_that_ends_as_its_former_values_go() -> void:
	var design := template([state("A", [act("a")])], {"variables": {"hp": 10, "it": null}, "carries_over": true})
	var deeds: Dictionary[String, Callable] = {
		"nothing": func(_m: SCMachine) -> void: pass,
		"start": func(m: SCMachine) -> void: m.start(),
		"stop": func(m: SCMachine) -> void: m.stop(),
		"free": func(m: SCMachine) -> void: m.free(),
	}
	for deed in deeds:
		var new := start(running(design, {"name": deed}))
		new.stop()
		var old := start(running(design, {"name": "Old"}))
		old.set_value("hp", 4)
		CarryOver.gather()
		old.free()
		new.set_value("it", Parting.new())
		(new.get_value("it") as Parting).words = deeds[deed].bind(new)
		noted.clear()
		new.start()
		# What is said to it meanwhile is the later word, and the record waits on for one that starts.
		var starts: bool = deed in ["nothing", "start"]
		expect_log(["a enter"] if starts else [])
		expect_equal(CarryOver.is_waiting(), not starts, deed)
		if deed != "free":
			expect_values(new, {"hp": 4 if starts else 10, "it": null}, deed)
			expect_equal(new.has_meta(CarryOver.ARRIVED_RECORD), starts, deed)
			new.free()
		CarryOver.forget()
