extends Story
## Machines of one template share what it comes down to. A template that is edited, even in place and between two
## starts of one frame, counts as it then is for the machine that starts next.

var design: SCMachineTemplate


func walk() -> SCMachine:
	if design == null:
		design = template([state("A", [], {"go": "B"}), state("B", [], {"back": "A"})], {"variables": {"count": 1}})
	return start(running(design))


func test_a_state_appended_in_place_is_there_for_the_next_machine() -> void:
	var before := walk()
	design.states.append(state("C", [], {"far": "A"}))
	design.states[0].transitions.append(transition("jump", "C"))
	var after := walk()
	expect(before.find_state(&"C") == null, "a running machine keeps the design it began with")
	expect_after(after, &"jump", "C")
	expect_after(after, &"far", "A")
	expect(after._core_listening_for().has(&"far"))
	expect(not before._core_listening_for().has(&"far"))


func test_names_and_events_that_were_edited_count_from_the_next_start() -> void:
	var made := walk()
	design.states[1].state_name = &"Renamed"
	design.states[0].transitions[0].event = &"hop"
	made.start()
	expect(made.find_state(&"B") == null and made.find_state(&"Renamed") != null)
	expect_equal(made._core_listening_for(), [&"hop", &"back"])
	design.events.append(declared_event(&"hop"))
	for is_global: bool in [false, true]:
		design.events[0].is_global = is_global
		made.start()
		expect_equal(SCMachine.is_global_event(&"hop"), is_global)


func test_states_nested_later_are_found() -> void:
	walk()
	design.states[0].sub_states.append(state("Inner"))
	expect(walk().find_state(&"Inner") != null)
	var region := parallel(&"Region", [state("Beside")])
	design.states[1].parallel_states.append(region)
	walk()
	region.states.append(state("Late"))
	expect(walk().find_state(&"Late") != null)


func test_variables_are_read_anew() -> void:
	expect_equal(walk().values, {&"count": 1})
	var declared := design.variables[0]
	declared.default_value = 7
	declared.never_above = "5"
	expect_equal(walk().values, {&"count": 5})
	declared.name = &"total"
	expect_equal(walk().values, {&"total": 5})
	design.variables.clear()
	expect_equal(walk().values, {})


func test_each_machine_has_lists_of_its_own() -> void:
	var one := walk()
	var other := walk()
	design.states.append(state("Later"))
	expect_equal(one.states.size(), 2, "the states a machine shows are those it was started with")
	one.states.clear()
	one.variables.clear()
	expect_equal([one.states.size(), other.states.size(), other.variables.size(), design.variables.size()], [0, 2, 1, 1])
	expect_equal(start(running(design, {"autostart": false})).states.size(), 3)
	expect_equal(running(design).states.size(), 0)
	one.start()
	expect_equal([one.states.size(), one.variables.size()], [3, 1])


func test_a_template_that_is_let_go_takes_nothing_along() -> void:
	var made := walk()
	var first: WeakRef = weakref(design.states[0])
	made.free()
	design = null
	expect_equal(first.get_ref(), null, "what was read of a template outlives it")
