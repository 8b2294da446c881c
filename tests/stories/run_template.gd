extends Story
## A template that runs inside a state of another machine, on the same node, for as long as the state runs.


func run_template(design: SCMachineTemplate, options: Dictionary = {}) -> SCRunTemplateAction:
	return kind(SCRunTemplateAction, {"template": design}.merged(options))


func sharing(design: SCMachineTemplate, names: Array) -> SCRunTemplateAction:
	return run_template(design, {"shared_variables": Array(names, TYPE_STRING_NAME, &"", null)})


func inner_of(under: Node) -> SCMachine:
	for child in under.get_children():
		if child is SCMachine and String(child.name).ends_with("Running") and not child.is_queued_for_deletion():
			return child
	return null


## A template that works for a moment and then ends.
func short_work(last: SCMachineState = state("End", [], {}, {"end": true})) -> SCMachineTemplate:
	return template([state("Work", [wait(0.1)], {"FINISHED": last.state_name}), last])


func test_it_runs_on_the_same_node_until_it_is_done() -> void:
	# By an end state, by the event that says so, and by an end state only where there is no such event.
	var tells := state("Tell", [send("Done")])
	for row: Array in [[run_template(short_work()), "Done"], [run_template(short_work(tells)), "Done"], [run_template(short_work(tells), {"done_event": &""}), "Work"]]:
		var door := body("Door")
		var owner := play(row[0], {"FINISHED": "Done"}, {"under": door})
		var inner := inner_of(door)
		if inner == null:
			_fail("nothing runs")
			return
		expect_equal(String(inner.name), "TemplateRunning")
		expect_equal(inner.target, door)
		expect_state(inner, "Work")
		expect_state(owner, "Work")
		await expect_later(owner, 0.2, row[1])
		owner.stop()
		expect_equal(inner_of(door), null)
		await frames(2)
		expect(not is_instance_valid(inner), "the inner machine is still there")
		door.free()


func test_shared_variables_go_in_and_come_back() -> void:
	var counts := template([
		state("Count", [set_var("coins", 5, {"operation": SCSetVariableAction.ADD}), set_var("own", 9)], {"FINISHED": "End"}),
		state("End", [], {}, {"end": true}),
	], {"variables": {"coins": 0, "own": 0, "bag": []}})
	var kept := results_of(sharing(counts, [&"coins", &"bag", &"nowhere"]), {"coins": 10, "bag": ["rope"], "own": 1})
	expect_equal([kept[&"coins"], kept[&"bag"], kept[&"own"]], [15, ["rope"], 1])
	# A list is handed over as a copy, and comes back even when the machine is stopped.
	var cart := body("Cart")
	var owner := play(sharing(template([state("Hold")], {"variables": {"bag": [[]], "box": {}}}), [&"bag", &"box"]), {}, {"under": cart, "variables": {"bag": [["rope"]], "box": {1: [2]}}})
	(inner_of(cart).get_value(&"bag")[0] as Array).append("torch")
	(inner_of(cart).get_value(&"box")[1] as Array).append(3)
	expect_values(owner, {"bag": [["rope"]], "box": {1: [2]}})
	owner.stop()
	expect_values(owner, {"bag": [["rope", "torch"]], "box": {1: [2, 3]}})
	await frames(2)


func test_leaving_the_state_stops_it_and_takes_back_what_it_reached() -> void:
	var cart := body("Cart")
	var laps := template([
		state("Count", [wait(0.05)], {"FINISHED": "Add"}),
		state("Add", [set_var("laps", 1, {"operation": SCSetVariableAction.ADD}), act("inner")]),
	], {"variables": {"laps": 0}})
	var owner := play(sharing(laps, [&"laps"]), {"rain": "Pit"}, {"under": cart, "variables": {"laps": 2}})
	await advance(0.1)
	expect_equal(owner.get_value(&"laps"), 2)
	var inner := inner_of(cart)
	expect_after(owner, "rain", "Pit")
	expect_equal(owner.get_value(&"laps"), 3)
	expect(not inner.is_running(), "the inner machine runs on")
	expect_log(["inner enter", "inner exit"])
	await frames(2)


func test_nothing_to_run_holds_nothing_up() -> void:
	result_of(run_template(null), {}, {"name": "Crane"})
	expect_warning("Run Template on Crane has no Template picked, so nothing runs and the state carries on at once. Pick the template to run.")
	result_of(run_template(short_work()), {}, {"name": "Crane", "target_path": NodePath("../Nobody")})
	expect_warning("Run Template on Crane: this Machine has no node to work on, so Template has nothing to run on and the state carries on at once.")
	var circle := template([state("Round")])
	var round_again := run_template(circle)
	circle.states[0].actions = [round_again] as Array[SCMachineAction]
	var first := start(running(circle, {"name": "Crane"}))
	expect_warning("32 machines run inside one another here, which means that a template runs itself, so no further one was begun and the state carries on at once.")
	first.stop()
	round_again.set(&"template", null)
	await frames(2)


func test_it_starts_with_the_scene_when_that_is_ready() -> void:
	# A state that is left before that leaves nothing behind.
	for leaves: bool in [false, true]:
		var tower := Node2D.new()
		tower.add_child(doing([run_template(template([state("Inner")]))] + ([send("off")] if leaves else []), {"off": "Idle"}))
		add(tower)
		await frames(2)
		expect_equal(inner_of(tower) == null, leaves)
		if not leaves:
			expect_state(inner_of(tower), "Inner")
		tower.queue_free()
		await frames(2)


func test_it_works_on_the_target_of_its_machine() -> void:
	var lamp := body("Lamp")
	var owner := play(run_template(template([state("Inner")])), {}, {"target_path": NodePath("../Lamp")})
	expect_equal(inner_of(stage).target, lamp)
	owner.stop()
	await frames(2)


func test_ending_may_free_everything() -> void:
	var bomb := body("Bomb")
	start(machine([
		state("Busy", [run_template(short_work())], {"FINISHED": "Boom"}),
		state("Boom", [act("boom").entering(func() -> void: bomb.free())]),
	], {"under": bomb}))
	await advance(0.15)
	expect_error("was freed or unreferenced while a signal is being emitted from it")
	expect(not is_instance_valid(bomb), "the bomb is still there")


func test_summaries() -> void:
	var design := template([state("Work")], {"display_name": "Patrol"})
	expect_line(run_template(design), "Run Patrol")
	expect_line(sharing(design, [&"coins"]), "Run Patrol, sharing coins")
	expect_line(run_template(null), "Run a template (pick one)")
