extends Story
## A template that runs inside a state of another machine, on the same node, for as long as the state runs.


func run_template(design: SCMachineTemplate, options: Dictionary = {}) -> SCRunTemplateAction:
	var made := SCRunTemplateAction.new()
	made.set(&"template", design)
	_put(made, options)
	return made


func inner_of(under: Node) -> SCMachine:
	for child in under.get_children():
		if child is SCMachine and String(child.name).ends_with("Running") and not child.is_queued_for_deletion():
			return child
	return null


func test_it_runs_on_the_same_node_until_an_end_state() -> void:
	var door := body("Door")
	var design := template([
		state("Work", [wait(0.1)], {"FINISHED": "End"}),
		state("End", [], {}, {"end": true}),
	])
	var owner := start(machine([
		state("Busy", [run_template(design)], {"FINISHED": "Idle"}),
		state("Idle"),
	], {"under": door}))
	var inner := inner_of(door)
	expect(inner != null, "nothing runs")
	if inner == null:
		return
	expect_equal(String(inner.name), "TemplateRunning")
	expect_equal(inner.target, door)
	expect_state(inner, "Work")
	expect_state(owner, "Busy")
	await advance(0.2)
	expect_state(owner, "Idle")
	expect_equal(inner_of(door), null)
	await frames(2)
	expect(not is_instance_valid(inner), "the inner machine is still there")


func test_it_ends_with_the_event_that_says_so() -> void:
	var lift := body("Lift")
	var design := template([state("Work", [wait(0.05)], {"FINISHED": "Tell"}), state("Tell", [send("Done")])])
	var owner := start(machine([
		state("Busy", [run_template(design)], {"FINISHED": "Idle"}),
		state("Idle"),
	], {"under": lift}))
	await advance(0.15)
	expect_state(owner, "Idle")
	await frames(2)


func test_without_an_event_it_waits_for_an_end_state_only() -> void:
	var lift := body("Lift")
	var design := template([state("Tell", [send("Done")])])
	var owner := start(machine([
		state("Busy", [run_template(design, {"done_event": &""})], {"FINISHED": "Idle"}),
		state("Idle"),
	], {"under": lift}))
	await frames(3)
	expect_state(owner, "Busy")
	owner.stop()
	await frames(2)


func test_shared_variables_go_in_and_come_back() -> void:
	var cart := body("Cart")
	var design := template([
		state("Count", [set_var("coins", 5, {"operation": SCSetVariableAction.ADD}), set_var("own", 9)], {"FINISHED": "End"}),
		state("End", [], {}, {"end": true}),
	], {"variables": {"coins": 0, "own": 0, "bag": []}})
	var owner := start(machine([
		state("Busy", [run_template(design, {"shared_variables": [&"coins", &"bag", &"nowhere"] as Array[StringName]})], {"FINISHED": "Idle"}),
		state("Idle"),
	], {"under": cart, "variables": {"coins": 10, "bag": ["rope"], "own": 1}}))
	await frames(1)
	expect_state(owner, "Idle")
	expect_equal(owner.get_value(&"coins"), 15)
	expect_equal(owner.get_value(&"bag"), ["rope"])
	expect_equal(owner.get_value(&"own"), 1)
	await frames(2)


func test_a_list_is_handed_over_as_a_copy() -> void:
	var cart := body("Cart")
	var design := template([state("Hold")], {"variables": {"bag": []}})
	var owner := start(machine([
		state("Busy", [run_template(design, {"shared_variables": [&"bag"] as Array[StringName]})]),
	], {"under": cart, "variables": {"bag": ["rope"]}}))
	var bag: Array = inner_of(cart).get_value(&"bag")
	bag.append("torch")
	expect_equal(owner.get_value(&"bag"), ["rope"])
	owner.stop()
	expect_equal(owner.get_value(&"bag"), ["rope", "torch"])
	await frames(2)


func test_leaving_the_state_stops_it_and_takes_back_what_it_reached() -> void:
	var cart := body("Cart")
	var design := template([
		state("Count", [wait(0.05)], {"FINISHED": "Add"}),
		state("Add", [set_var("laps", 1, {"operation": SCSetVariableAction.ADD}), act("inner")], {}),
	], {"variables": {"laps": 0}})
	var owner := start(machine([
		state("Race", [run_template(design, {"shared_variables": [&"laps"] as Array[StringName]})], {"rain": "Pit"}),
		state("Pit"),
	], {"under": cart, "variables": {"laps": 2}}))
	await advance(0.1)
	expect_equal(owner.get_value(&"laps"), 2)
	var inner := inner_of(cart)
	owner.send_event("rain")
	expect_state(owner, "Pit")
	expect_equal(owner.get_value(&"laps"), 3)
	expect(not inner.is_running(), "the inner machine runs on")
	expect_equal(noted[-1], "inner exit")
	await frames(2)


func test_nothing_to_run_holds_nothing_up() -> void:
	var owner := start(machine([
		state("Busy", [run_template(null)], {"FINISHED": "Idle"}),
		state("Idle"),
	], {"name": "Crane"}))
	expect_warning("Run Template on Crane has no Template picked, so nothing runs and the state carries on at once. Pick the template to run.")
	expect_state(owner, "Idle")


func test_it_starts_with_the_scene_when_that_is_ready() -> void:
	var tower := Node2D.new()
	var design := template([state("Work")])
	tower.add_child(machine([state("Busy", [run_template(design)])]))
	add(tower)
	await frames(1)
	var inner := inner_of(tower)
	expect(inner != null, "nothing runs")
	expect_state(inner, "Work")
	tower.queue_free()
	await frames(2)


func test_a_state_left_before_the_scene_is_ready_leaves_nothing_behind() -> void:
	var tower := Node2D.new()
	var design := template([state("Work")])
	tower.add_child(machine([state("Busy", [run_template(design), send("off")], {"off": "Idle"}), state("Idle")]))
	add(tower)
	await frames(2)
	expect_equal(inner_of(tower), null)


func test_it_works_on_the_target_of_its_machine() -> void:
	var lamp := body("Lamp")
	var design := template([state("Work")])
	var owner := machine([state("Busy", [run_template(design)])])
	owner.target_path = NodePath("../Lamp")
	start(owner)
	expect_equal(inner_of(stage).target, lamp)
	owner.stop()
	await frames(2)


func test_ending_may_free_everything() -> void:
	var bomb := body("Bomb")
	var design := template([state("Work", [wait(0.05)], {"FINISHED": "End"}), state("End", [], {}, {"end": true})])
	var explode := func() -> void: bomb.free()
	start(machine([
		state("Busy", [run_template(design)], {"FINISHED": "Boom"}),
		state("Boom", [act("boom").entering(explode)]),
	], {"under": bomb}))
	await advance(0.15)
	expect_error("was freed or unreferenced while a signal is being emitted from it")
	expect(not is_instance_valid(bomb), "the bomb is still there")


func test_summaries() -> void:
	var design := template([state("Work")])
	design.display_name = "Patrol"
	expect_equal(run_template(design).shown_summary(), "Run Patrol")
	expect_equal(run_template(design, {"shared_variables": [&"coins"] as Array[StringName]}).shown_summary(), "Run Patrol, sharing coins")
	expect_equal(run_template(null).shown_summary(), "Run a template (pick one)")
