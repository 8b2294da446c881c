extends Story
## The node a game maker adds: how it starts, stops and is set up.


func test_a_machine_starts_by_itself_or_when_told() -> void:
	expect_state(start(machine([state("A"), state("B")], {"initial": "B"})), "B")
	var told := machine([state("A")], {"autostart": false, "name": "Told"})
	stage.add_child(told)
	await frames(2)
	for times in 2:
		expect(not told.is_running())
		expect_states(told, [])
		told.stop()
		told.start()
		expect_state(told, "A")
		told.stop()
		expect_equal(told.current_state, null)


func test_a_machine_without_a_state_to_start_in_says_so() -> void:
	var unset := machine([state("A")], {"name": "Guard", "autostart": false})
	unset.initial_state = null
	for made: SCMachine in [machine([], {"name": "Guard"}), running(SCMachineTemplate.new(), {"name": "Guard"}), unset]:
		start(made)
		expect_warning("Machine on Guard has no state to start in.")
		expect(not made.is_running())
		made.free()


func test_it_works_on_its_parent_or_on_what_its_path_leads_to() -> void:
	var door := body("Door")
	var lamp := body("Lamp")
	for row: Array in [[^"", door], [^"../../Lamp", lamp], [^"../Nowhere", null]]:
		var made := start(machine([state("A")], {"under": door, "target_path": row[0]}))
		expect_equal(made.target, row[1])
		expect(made.is_running())
		made.target = lamp
		expect_equal(made.target, lamp)
	lamp.free()
	expect_equal((door.get_child(0) as SCMachine).target, null)
	# It may be started before there is anything to be found.
	var early := machine([state("A", [act("a")])], {"target_path": NodePath("../Post"), "autostart": false})
	early.start()
	expect(not early.is_running())
	var post := body("Post")
	stage.add_child(early)
	expect(early.is_running())
	expect_equal(early.target, post)
	expect_log(["a enter"])


func test_a_template_goes_before_what_is_set_on_the_node() -> void:
	var design := template([state("T")], {"variables": {"from": "template"}})
	var made := start(machine([state("A")], {"variables": {"own": 1}, "template": design}))
	expect_state(made, "T")
	expect_equal(made.values, {&"from": "template"})
	made.states.append(state("More"))
	expect_equal(design.states.size(), 1, "the node's list is the template's own")


func test_starting_outside_the_tree() -> void:
	var made := machine([state("A", [act("a").ticking()])])
	made.start()
	expect_state(made, "A")
	await frames(2)
	expect_log(["a enter"])
	stage.add_child(made)
	await frames(2)
	expect_log(["a update", "a update"])


func test_a_disabled_node_holds_its_start() -> void:
	var door := body("Door")
	door.process_mode = Node.PROCESS_MODE_DISABLED
	var made := start(machine([state("A", [act("a")])], {"under": door}))
	expect(made._switched_off())
	await frames(2)
	expect_log([])
	door.process_mode = Node.PROCESS_MODE_INHERIT
	expect_log(["a enter"])
	door.process_mode = Node.PROCESS_MODE_DISABLED
	door.process_mode = Node.PROCESS_MODE_INHERIT
	var patient := machine([state("A", [act("patient")])], {"autostart": false, "process_mode": Node.PROCESS_MODE_DISABLED})
	door.add_child(patient)
	patient.process_mode = Node.PROCESS_MODE_INHERIT
	expect_log([])


func test_settings_may_change_while_it_runs() -> void:
	var made := start(machine([state("A", [act("a").ticking()])], {"process_priority": -5}))
	expect_equal(made.process_physics_priority, -5, "the two callbacks stand in one place in the frame")
	made.physics_tick = true
	expect(made.physics_tick and made.is_physics_processing())
	made.debug_log = true
	expect(made.debug_log)
	made.stop()
	made.start()
	expect(made.is_physics_processing())
	expect_equal(start(machine([state("A")], {"process_priority": -5, "process_physics_priority": 3})).process_physics_priority, 3)


func test_every_state_of_a_design_at_any_depth() -> void:
	var deep := state("Deep")
	var outside := state("Outside")
	var made := machine([
		state("A", [], {}, {"sub_states": [state("A1", [], {}, {"parallel": {"P": [deep], "Q": [state("Q1")]}})]}),
		null,
		state("B"),
	], {"initial": "A"})
	made.states.append(made.states[0])
	made.initial_state = outside
	var names := made.all_states().map(func(at: SCMachineState) -> String: return at.state_name)
	names.sort()
	expect_equal(names, ["A", "A1", "B", "Deep", "Outside", "Q1"])
	start(made)
	expect_state(made, "Outside")
	made.go_to("Deep")
	expect_states(made, ["A", "A1", "Deep", "Q1"])


func test_a_machine_from_a_scene_file() -> void:
	var scene: Node = (load("res://tests/stories/files/guard_post.tscn") as PackedScene).instantiate()
	var guard: SCMachine = scene.get_node("Guard/Machine")
	var gate: SCMachine = scene.get_node("Gate/Brain")
	add(scene)
	expect_state(guard, "Watch")
	expect_equal([guard.target, gate.target], [scene.get_node("Guard"), scene.get_node("Guard")])
	expect_values(guard, {"alarm": 0, "gate": scene.get_node("Gate")})
	await advance(0.4)
	expect_states(guard, ["Alarm", "Ringing"])
	expect_equal(guard.get_value("alarm"), 2)
	expect_state(gate, "Shut")
	expect_after(gate, "all_clear", "Open")
	expect_state(guard, "Watch")


func test_the_agent_gets_what_the_body_wants() -> void:
	var walker: CharacterBody2D = add(CharacterBody2D.new(), "", {"velocity": Vector2(100, 0)})
	var agent: NavigationAgent2D = add(NavigationAgent2D.new(), "", {"under": walker, "avoidance_enabled": true})
	var made := asker(walker)
	made._ask_the_agent(agent, walker)
	made._ask_the_agent(agent, walker)
	expect_equal(agent.velocity, Vector2(100, 0))
	expect_equal(agent.velocity_computed.get_connections().size(), 1)
	made._on_velocity_computed(Vector2(30, 40), agent, walker)
	expect_equal(walker.velocity, Vector2(30, 40))
	made._on_velocity_computed(Vector2.ZERO, agent, walker)
	expect_equal(walker.velocity, Vector2(100, 0), "avoidance stopped a body that wants to move")
	made._ask_the_agent(null, walker)
	expect_error("Parameter \"p_agent\" is null.")
	made._ask_the_agent(agent, null)
	expect_error("Parameter \"p_body\" is null.")


func test_what_comes_too_early_is_answered() -> void:
	var made := machine([state("A", [], {"go": "B"}), state("B")], {"variables": {"hp": 1}, "autostart": false})
	made.set_value("hp", 5)
	expect_warning("set_value(\"hp\") came before the machine has started")
	made.send_event("go")
	expect_warning("the event go was sent before the machine is ready")
	stage.add_child(made)
	expect(not made.go_to("B"), "a machine that does not run says it went")
	made.start()
	expect_values(made, {&"hp": 1})
	expect(made.go_to("B"))


func test_words_for_a_number_and_another_template_are_told_of() -> void:
	var made := start(running(template([state("A")], {"variables": {"hp": 1, "title": "Sir"}})))
	made.set_value("hp", 2.5)
	made.set_value("title", &"Dame")
	made.set_value("hp", "many")
	expect_debug_warning("set_value gave hp words, and it held a number. It holds the new value now.")
	made.set_value("title", 3)
	expect_debug_warning("set_value gave title a number, and it held words.")
	made.template = template([state("B")])
	made.start()
	await frames(1)
	expect_state(made, "B")
	made.template = template([state("C")])
	await frames(1)
	expect_debug_warning("was given another template while it runs, and goes on with the one it started with. Call start()")
	expect_state(made, "B")


func test_an_index_that_no_list_is_long_enough_for() -> void:
	var made := start(machine([state("A", [act("a")])]))
	for index: int in [1 << 32, (1 << 32) + 1, -(1 << 32), -1, 1 << 40]:
		made.slot(index)[&"x"] = 1
		made.finish(index)
		made.finisher(index).call()
		expect(not made.is_finished(index) and not made.is_resting(index))
	expect_equal(made.slot(0), {})
	expect(not made.is_finished(0), "the first action was finished by another's index")


class Ticker:
	extends SCMachine

	var own: int = 0
	var own_physics: int = 0

	func _process(_delta: float) -> void:
		own += 1

	func _physics_process(_delta: float) -> void:
		own_physics += 1


func test_a_script_with_callbacks_of_its_own() -> void:
	for physics: bool in [false, true]:
		var made := Ticker.new()
		var tick := act("tick").ticking()
		made.states = [state("A", [tick, wait(0.2)], {"go": "B"}), state("B", [wait(0.1)], {"FINISHED": "C"}), state("C")]
		made.initial_state = made.states[0]
		made.physics_tick = physics
		stage.add_child(made)
		await frames(10)
		expect(made.own >= 9 and made.own_physics >= 9, "its own callbacks came %d and %d times" % [made.own, made.own_physics])
		expect(tick.deltas.size() >= 9 and tick.deltas.size() <= 11, "the machine had %d updates" % tick.deltas.size())
		var before := made.own
		made.send_event("go")
		await advance(0.05)
		expect_near(made.state_time(), 0.05, 0.02)
		await advance(0.1)
		expect_state(made, "C")
		expect(made.own > before + 7, "its own callback ended with the machine's work")
		made.free()
