extends Story
## The node a game maker adds: how it starts, stops and is set up.


func test_a_machine_starts_by_itself_or_when_told() -> void:
	var by_itself := machine([state("A"), state("B")], {"initial": "B"})
	stage.add_child(by_itself)
	expect_state(by_itself, "B")
	var told := machine([state("A")], {"autostart": false, "name": "Told"})
	stage.add_child(told)
	await frames(2)
	expect(not told.is_running())
	expect_states(told, [])
	told.start()
	expect_state(told, "A")
	told.stop()
	expect(not told.is_running())
	expect_equal(told.current_state, null)
	told.stop()
	told.start()
	expect_state(told, "A")


func test_a_machine_without_a_state_to_start_in_says_so() -> void:
	start(machine([], {"name": "Empty", "autostart": false}))
	expect_warning("Machine on Empty has no state to start in.")
	start(running(SCMachineTemplate.new(), {"name": "Blank", "autostart": false}))
	expect_warning("Machine on Blank has no state to start in.")
	var made := machine([state("A")], {"name": "Unset", "autostart": false})
	made.initial_state = null
	start(made)
	expect_warning("Machine on Unset has no state to start in.")
	expect(not made.is_running())


func test_it_works_on_its_parent_or_on_what_its_path_leads_to() -> void:
	var door := body("Door")
	var lamp := body("Lamp")
	var made := start(machine([state("A")], {"under": door}))
	expect_equal(made.target, door)
	var other := start(machine([state("A")], {"under": door, "name": "Other", "target_path": NodePath("../../Lamp")}))
	expect_equal(other.target, lamp)
	var nothing := start(machine([state("A")], {"under": door, "name": "Nothing", "target_path": NodePath("../Nowhere")}))
	expect_equal(nothing.target, null)
	expect(nothing.is_running())
	nothing.target = lamp
	expect_equal(nothing.target, lamp)
	lamp.free()
	expect_equal(nothing.target, null)


func test_a_template_goes_before_what_is_set_on_the_node() -> void:
	var design := template([state("T")], {"variables": {"from": "template"}})
	var made := machine([state("A")], {"variables": {"own": 1}})
	made.template = design
	start(made)
	expect_state(made, "T")
	expect_equal(made.values, {&"from": "template"})
	made.states.append(state("More"))
	expect_equal(design.states.size(), 1, "the node's list is the template's own")


func test_starting_where_the_target_cannot_be_found_yet() -> void:
	var made := machine([state("A", [act("a")])], {"target_path": NodePath("../Door"), "autostart": false})
	made.start()
	expect(not made.is_running())
	var door := body("Door")
	stage.add_child(made)
	expect(made.is_running())
	expect_equal(made.target, door)
	expect_log(["a enter"])


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
	var made := machine([state("A", [act("a")])])
	door.add_child(made)
	expect(made._switched_off())
	await frames(2)
	expect_log([])
	door.process_mode = Node.PROCESS_MODE_INHERIT
	expect_log(["a enter"])
	door.process_mode = Node.PROCESS_MODE_DISABLED
	door.process_mode = Node.PROCESS_MODE_INHERIT
	expect_log([])
	var patient := machine([state("A", [act("patient")])], {"autostart": false, "name": "Patient", "process_mode": Node.PROCESS_MODE_DISABLED})
	door.add_child(patient)
	patient.process_mode = Node.PROCESS_MODE_INHERIT
	expect_log([])


func test_settings_may_change_while_it_runs() -> void:
	var made := start(machine([state("A", [act("a").ticking()])]))
	made.physics_tick = true
	expect(made.physics_tick and made.is_physics_processing())
	made.debug_log = true
	expect(made.debug_log)
	made.stop()
	made.start()
	expect(made.is_physics_processing())


func test_the_two_callbacks_stand_in_one_place_in_the_frame() -> void:
	var early := start(machine([state("A")], {"process_priority": -5}))
	expect_equal(early.process_physics_priority, -5)
	var own := start(machine([state("A")], {"process_priority": -5, "process_physics_priority": 3, "name": "Own"}))
	expect_equal(own.process_physics_priority, 3)


func test_what_it_offers_in_order() -> void:
	var names: PackedStringArray = []
	var types: Dictionary[String, int] = {}
	for property: Dictionary in ClassDB.class_get_property_list(&"SCMachine", true):
		names.append(property["name"])
		types[property["name"]] = property["type"]
	expect_equal(names.slice(0, 10), PackedStringArray([
		"template", "target_path", "autostart", "physics_tick", "debug_log", "states", "initial_state", "variables",
		"handed_values", "starting_values",
	]))
	expect_equal(types["target_path"], TYPE_NODE_PATH)
	expect_equal(types["states"], TYPE_ARRAY)
	expect_equal(types["handed_values"], TYPE_DICTIONARY)
	var made := machine([])
	expect(made.autostart and not made.physics_tick and not made.debug_log)
	expect_equal(SCMachine.LOOP_INCREMENT_LIMIT, 50)
	expect_equal([SCMachine.NOTHING, SCMachine.STOP, SCMachine.START], [0, 1, 2])
	var arguments: Dictionary[String, int] = {}
	for told: Dictionary in ClassDB.class_get_signal_list(&"SCMachine", true):
		arguments[told["name"]] = (told["args"] as Array).size()
	expect_equal(arguments, {"state_changed": 2, "event_sent": 2, "state_finished": 1} as Dictionary[String, int])


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
	_follow(guard)
	_made.append(guard)
	stage.add_child(scene)
	expect_state(guard, "Watch")
	expect_equal(guard.target, scene.get_node("Guard"))
	expect_equal(gate.target, scene.get_node("Guard"))
	expect_equal(guard.get_value("alarm"), 0)
	expect_equal(guard.get_value("gate"), scene.get_node("Gate"))
	await advance(0.4)
	expect_states(guard, ["Alarm", "Ringing"])
	expect_equal(guard.get_value("alarm"), 2)
	expect_state(gate, "Shut")
	gate.send_event("all_clear")
	expect_state(guard, "Watch")
	expect_state(gate, "Open")


func test_the_agent_gets_what_the_body_wants() -> void:
	var walker := CharacterBody2D.new()
	add(walker)
	var agent := NavigationAgent2D.new()
	walker.add_child(agent)
	agent.avoidance_enabled = true
	var made := start(machine([state("A")], {"under": walker}))
	walker.velocity = Vector2(100, 0)
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
