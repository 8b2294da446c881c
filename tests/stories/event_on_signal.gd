extends Story
## Event On Signal turns any node's signal into an event while its state runs.


class Bell:
	extends Node2D

	signal rung(times: int, by: String)
	signal cracked


func test_a_signal_sends_the_event_with_what_it_hands_over() -> void:
	for row: Array in [[1, 3], [2, "Ann"], [0, null], [3, null]]:
		var bell := _bell()
		var made := start(machine([
			state("Wait", [_on(&"rung", {"argument": row[0], "store_argument_in": "stored"}), act("hold")], [transition("go", "Gone", "kept")]),
			state("Gone"),
		], {"under": bell, "variables": {"kept": "before", "stored": "before"}}))
		bell.rung.emit(3, "Ann")
		expect_state(made, "Gone")
		expect_values(made, {"stored": row[1], "kept": "before" if row[1] is int else (row[1] if row[1] != null else "before")}, "argument %d" % row[0])
		bell.free()


func test_it_never_holds_its_state_up_and_listens_on() -> void:
	var bell := _bell()
	var made := start(machine([state("Wait", [_on(&"cracked")], {"FINISHED": "Done", "go": "Wrong"}), state("Done", [], {"go": "Wrong"}), state("Wrong")], {"under": bell}))
	expect_state(made, "Done")
	expect_equal(bell.cracked.get_connections().size(), 0, "a state that is left listens on")
	made.go_to("Wait")
	var second := play(_on(&"cracked"), {"go": "Gone"}, {"under": bell, "name": "Second"})
	expect(second.actions_done())
	bell.cracked.emit()
	expect_state(second, "Gone")
	expect_state(made, "Done")


func test_a_signal_that_leaves_the_state_and_fires_again() -> void:
	var bell := _bell()
	var made := start(machine([state("Wait", [_on(&"cracked")], {"go": "Again"}), state("Again", [_on(&"cracked")], {"go": "Wait"})], {"under": bell}))
	for wanted: String in ["Again", "Wait", "Again"]:
		bell.cracked.emit()
		expect_state(made, wanted)
	expect_equal(bell.cracked.get_connections().size(), 1)


func test_the_node_or_the_machine_may_be_freed_meanwhile() -> void:
	var bell := _bell()
	var made := play(_on(&"cracked", {"node_path": NodePath("../Bell")}), {"leave": "Away"})
	bell.free()
	expect_after(made, "leave", "Away")
	bell = _bell()
	var second := start(machine([
		state("Wait", [_on(&"rung", {"store_argument_in": "kept", "node_path": NodePath("../Bell")})], {"go": "End"}),
		state("End", [act("end").entering(func(m: SCMachine) -> void: m.free())]),
	], {"name": "Second"}))
	bell.rung.emit(1, "")
	expect(not is_instance_valid(second))
	# As its answer is kept, before the event.
	var third := play([act("watch").watching(["kept"]).updating(func(m: SCMachine) -> void: m.free()), _on(&"rung", {"store_argument_in": "kept", "node_path": NodePath("../Bell")})], {},
		{"name": "Third", "variables": {"kept": 0}})
	bell.rung.emit(1, "")
	expect(not is_instance_valid(third))
	bell.rung.emit(1, "")


func test_the_settings_are_those_of_the_machine_that_hears() -> void:
	var design := template([state("Wait", [_on(&"rung", {"store_argument_in": "kept", "argument": 1, "argument_variable": &"which"})])], {"variables": {"which": 1, "kept": null}})
	var bells: Array[Bell] = [_bell(), _bell()]
	var first := start(running(design, {"under": bells[0]}))
	var second := start(running(design, {"under": bells[1]}))
	second.set_value("which", 2)
	bells[1].rung.emit(5, "Bob")
	bells[0].rung.emit(6, "Cid")
	expect_values(first, {"kept": 6})
	expect_values(second, {"kept": "Bob"})


func test_a_signal_of_the_physics_step_changes_nothing_within_it() -> void:
	var bell := _bell()
	var made := start(machine([state("Wait", [_on(&"cracked")], {"go": "Gone"}), state("Gone", [act("gone")])], {"under": bell}))
	tree.physics_frame.connect(func() -> void:
		bell.cracked.emit()
		noted.append("rung"), CONNECT_ONE_SHOT)
	await physics_frames(1)
	await frames(2)
	expect_state(made, "Gone")
	expect_log(["rung", "gone enter"])


func test_what_is_wrong_is_told() -> void:
	_bell()
	for row: Array in [
		[{"node_path": NodePath("../Nowhere")}, "Event On Signal on Listener: there is no node at ../Nowhere. Pick one under Node Path."],
		[{"node_path": NodePath("../Bell"), "signal_name": &"broken"}, "Bell is a Node2D, which has no signal called broken"],
		[{"node_path": NodePath("../Bell"), "signal_name": &""}, "it has no signal of Bell to listen to. Type one under Signal Name."],
	]:
		var made := play(_on(&"cracked", row[0]), {"FINISHED": "Done"}, {"name": "Listener"})
		expect_state(made, "Done")
		expect_warning(row[1])
		made.free()


func test_lines_on_the_graph() -> void:
	expect_lines(SCEventOnSignalAction, {
		"When Button signals pressed, send go": {"signal_name": &"pressed", "event_name": "go", "node_path": NodePath("../Button")},
		"When Self signals pressed, send go, keep what it hands over in who": {"signal_name": &"pressed", "event_name": "go", "store_argument_in": "who"},
		"When Self signals pressed, keep what it hands over in who": {"signal_name": &"pressed", "store_argument_in": "who"},
		"When Self signals pressed, send (pick one)": {"signal_name": &"pressed"},
		"When Self signals (pick one), send go": {"event_name": "go"},
	})


func _bell() -> Bell:
	return add(Bell.new(), "Bell")


func _on(signal_name: StringName, options: Dictionary = {}) -> SCEventOnSignalAction:
	return kind(SCEventOnSignalAction, {"signal_name": signal_name, "event_name": "go"}.merged(options, true))


func test_listening_to_the_events_that_it_sends_itself() -> void:
	expect_passes_alone("""
		var answer := func(to: String) -> SCMachineAction:
			return kind(SCEventOnSignalAction, {"node_path": NodePath(to), "signal_name": &"event_sent", "event_name": &"pong"})
		for listeners: int in [1, 2]:
			var made := play(range(listeners).map(func(_i: int) -> SCMachineAction: return answer.call(".")) + [act("hold")], {"go": "Gone"})
			made.send_event(&"ping")
			expect_warning("listens to event_sent and sends an event each time")
			expect(events_of(made).size() <= 101, "it was told of %d events" % events_of(made).size())
			expect_after(made, "go", "Gone")
			made.free()
		var first := start(machine([state("Idle"), state("Work", [answer.call("../Second"), act("hold")], {"go": "Gone"}), state("Gone")], {"name": "First"}))
		var second := play([answer.call("../First"), answer.call("../First"), act("hold")], {}, {"name": "Second"})
		first.go_to("Work")
		second.send_event(&"ping")
		expect_warning("Machine on Second")
		expect_after(first, "go", "Gone")
		expect_warning("Machine on First")
	""")
