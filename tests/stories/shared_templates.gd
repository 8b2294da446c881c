extends Story
## Machines of one template share what it comes down to. A template that is edited, even in place and between two
## starts of one frame, counts as it then is for the machine that starts next.


func _walker() -> SCMachineTemplate:
	return template([state("A", [], {"go": "B"}), state("B", [], {"back": "A"})], {"variables": {"count": 1}})


func test_a_state_appended_in_place_is_there_for_the_next_machine() -> void:
	var design := _walker()
	var before := start(running(design, {"name": "Before"}))
	design.states.append(state("C", [], {"far": "A"}))
	(design.states[0] as SCMachineState).transitions.append(transition("jump", "C"))
	var after := start(running(design, {"name": "After"}))
	expect(before.find_state(&"C") == null, "a running machine keeps the design it began with")
	after.send_event(&"jump")
	expect_state(after, "C")
	after.send_event(&"far")
	expect_state(after, "A")
	expect(after._core_listening_for().has(&"far"))
	expect(not before._core_listening_for().has(&"far"))


func test_names_and_events_that_were_edited_count_from_the_next_start() -> void:
	var design := _walker()
	var made := start(running(design))
	(design.states[1] as SCMachineState).state_name = &"Renamed"
	var first := (design.states[0] as SCMachineState).transitions[0]
	first.event = &"hop"
	made.start()
	expect(made.find_state(&"B") == null)
	expect_equal(made._core_listening_for(), [&"hop", &"back"])
	var declared := SCMachineEvent.new()
	declared.event_name = &"hop"
	design.events.append(declared)
	made.start()
	expect(not SCMachine.is_global_event(&"hop"))
	declared.is_global = true
	made.start()
	expect(SCMachine.is_global_event(&"hop"))
	expect(made.find_state(&"Renamed") != null)


func test_states_nested_later_are_found() -> void:
	var design := _walker()
	start(running(design, {"name": "Before"}))
	var inner := state("Inner")
	(design.states[0] as SCMachineState).sub_states.append(inner)
	var with_inner := start(running(design, {"name": "WithInner"}))
	expect(with_inner.find_state(&"Inner") != null)
	var region := SCMachineParallelState.new()
	region.states.append(state("Beside"))
	(design.states[1] as SCMachineState).parallel_states.append(region)
	start(running(design, {"name": "Between"}))
	region.states.append(state("Late"))
	var with_late := start(running(design, {"name": "WithLate"}))
	expect(with_late.find_state(&"Late") != null)


func test_variables_are_read_anew() -> void:
	var design := _walker()
	expect_equal(start(running(design, {"name": "First"})).values, {&"count": 1})
	var declared := design.variables[0]
	declared.default_value = 7
	declared.never_above = "5"
	expect_equal(start(running(design, {"name": "Second"})).values, {&"count": 5})
	declared.name = &"total"
	expect_equal(start(running(design, {"name": "Third"})).values, {&"total": 5})
	design.variables.clear()
	expect_equal(start(running(design, {"name": "Fourth"})).values, {})


func test_each_machine_has_lists_of_its_own() -> void:
	var design := _walker()
	var one := start(running(design, {"name": "One"}))
	var other := start(running(design, {"name": "Other"}))
	design.states.append(state("Later"))
	expect_equal(one.states.size(), 2, "the states a machine shows are those it was started with")
	one.states.clear()
	one.variables.clear()
	expect_equal(one.states.size(), 0)
	expect_equal(other.states.size(), 2)
	expect_equal(other.variables.size(), 1)
	expect_equal(design.variables.size(), 1)
	var nobody := running(design, {"name": "Nobody", "autostart": false})
	expect_equal(nobody.states.size(), 0)
	one.start()
	expect_equal(one.states.size(), 3)
	expect_equal(one.variables.size(), 1)


func test_a_template_that_is_let_go_takes_nothing_along() -> void:
	var design := _walker()
	var made := start(running(design))
	var first: WeakRef = weakref(design.states[0])
	made.free()
	design = null
	expect_equal(first.get_ref(), null, "what was read of a template outlives it")
