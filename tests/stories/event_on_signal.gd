extends Story
## Event On Signal turns any node's signal into an event while its state runs.


class Bell:
	extends Node2D

	signal rung(times: int, by: String)
	signal cracked


func test_a_signal_sends_the_event_with_what_it_hands_over() -> void:
	var bell := _bell()
	var made := start(machine([
		state("Wait", [_on(&"rung", {"event_name": "go"}), act("hold")], [transition("go", "Gone", "kept")]),
		state("Gone"),
	], {"under": bell, "variables": {"kept": 0}}))
	bell.rung.emit(3, "Ann")
	expect_state(made, "Gone")
	expect_values(made, {"kept": 3})


func test_which_of_the_things_handed_over() -> void:
	for row: Array in [[1, 3], [2, "Ann"], [0, null], [5, null]]:
		var bell := _bell()
		var made := start(machine([state("Wait", [_on(&"rung", {"store_argument_in": "kept", "argument": row[0]})])], {"under": bell, "variables": {"kept": "before"}}))
		bell.rung.emit(3, "Ann")
		expect_equal(made.get_value("kept"), row[1], "argument %d" % row[0])


func test_it_never_holds_its_state_up_and_listens_on() -> void:
	var bell := _bell()
	var made := start(machine([state("Wait", [_on(&"cracked", {"event_name": "go"})], {"FINISHED": "Wrong", "go": "Gone"}), state("Wrong"), state("Gone")], {"under": bell}))
	expect_state(made, "Wrong")
	var second := start(machine([state("Wait", [_on(&"cracked", {"event_name": "go"})], {"go": "Gone"}), state("Gone")], {"under": bell}))
	expect(second.actions_done())
	bell.cracked.emit()
	expect_state(second, "Gone")


func test_leaving_the_state_ends_the_listening() -> void:
	var bell := _bell()
	var made := start(machine([
		state("Wait", [_on(&"cracked", {"event_name": "go"})], {"leave": "Away"}),
		state("Away", [], {"go": "Wrong"}),
		state("Wrong"),
	], {"under": bell}))
	expect_equal(bell.cracked.get_connections().size(), 1)
	made.send_event("leave")
	expect_equal(bell.cracked.get_connections().size(), 0)
	bell.cracked.emit()
	expect_state(made, "Away")


func test_a_signal_that_leaves_the_state_and_fires_again() -> void:
	var bell := _bell()
	var made := start(machine([
		state("Wait", [_on(&"cracked", {"event_name": "go"})], {"go": "Again"}),
		state("Again", [_on(&"cracked", {"event_name": "go"})], {"go": "Wait"}),
	], {"under": bell}))
	for wanted: String in ["Again", "Wait", "Again"]:
		bell.cracked.emit()
		expect_state(made, wanted)
	expect_equal(bell.cracked.get_connections().size(), 1)


func test_the_node_may_be_freed_meanwhile() -> void:
	var bell := _bell()
	bell.name = "Bell"
	var made := start(machine([state("Wait", [_on(&"cracked", {"event_name": "go", "node_path": NodePath("../Bell")})], {"leave": "Away"}), state("Away")]))
	bell.free()
	expect_after(made, "leave", "Away")


func test_the_machine_may_be_freed_by_the_event() -> void:
	var bell := _bell()
	bell.name = "Bell"
	var made := start(machine([
		state("Wait", [_on(&"rung", {"event_name": "go", "store_argument_in": "kept", "node_path": NodePath("../Bell")})], {"go": "End"}),
		state("End", [act("end").entering(func(m: SCMachine) -> void: m.free())]),
	]))
	bell.rung.emit(1, "")
	expect(not is_instance_valid(made))
	bell.rung.emit(1, "")


func test_the_settings_are_those_of_the_machine_that_hears() -> void:
	var first_bell := _bell()
	var second_bell := _bell()
	var action := _on(&"rung", {"store_argument_in": "kept", "argument": 1})
	action.set(&"argument_variable", &"which")
	var design := template([state("Wait", [action])], {"variables": {"which": 1, "kept": null}})
	var first := start(running(design, {"under": first_bell}))
	var second := start(running(design, {"under": second_bell}))
	second.set_value("which", 2)
	second_bell.rung.emit(5, "Bob")
	first_bell.rung.emit(6, "Cid")
	expect_values(first, {"kept": 6})
	expect_values(second, {"kept": "Bob"})


func test_a_signal_of_the_physics_step_changes_nothing_within_it() -> void:
	var bell := _bell()
	var made := start(machine([
		state("Wait", [_on(&"cracked", {"event_name": "go"})], {"go": "Gone"}),
		state("Gone", [act("gone")]),
	], {"under": bell}))
	var ring := func() -> void:
		bell.cracked.emit()
		noted.append("rung")
	tree.physics_frame.connect(ring, CONNECT_ONE_SHOT)
	await physics_frames(1)
	await frames(2)
	expect_state(made, "Gone")
	expect_log(["rung", "gone enter"])


func test_what_is_wrong_is_told() -> void:
	var bell := _bell()
	bell.name = "Bell"
	for row: Array in [
		[_on(&"cracked", {"node_path": NodePath("../Nowhere"), "event_name": "go"}), "Event On Signal on Listener: there is no node at Nowhere. Pick one under Node Path."],
		[_on(&"broken", {"node_path": NodePath("../Bell"), "event_name": "go"}), "Bell is a Node2D, which has no signal called broken"],
		[_on(&"", {"node_path": NodePath("../Bell"), "event_name": "go"}), "it has no signal of Bell to listen to. Type one under Signal Name."],
	]:
		var made := start(machine([state("Wait", [row[0]], {"FINISHED": "On"}), state("On")], {"name": "Listener"}))
		expect_state(made, "On")
		expect_warning(row[1])
		made.free()


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[_on(&"pressed", {"event_name": "go", "node_path": NodePath("../Button")}), "When Button signals pressed, send go"],
		[_on(&"pressed", {"event_name": "go", "store_argument_in": "who"}), "When Self signals pressed, send go, keep what it hands over in who"],
		[_on(&"pressed", {"store_argument_in": "who"}), "When Self signals pressed, keep what it hands over in who"],
		[_on(&"pressed"), "When Self signals pressed, send (pick one)"],
		[_on(&"", {"event_name": "go"}), "When Self signals (pick one), send go"],
	]:
		expect_equal((row[0] as SCEventOnSignalAction).shown_summary(), row[1])


func _bell() -> Bell:
	var made := Bell.new()
	stage.add_child(made)
	return made


func _on(signal_name: StringName, options: Dictionary = {}) -> SCEventOnSignalAction:
	var made := SCEventOnSignalAction.new()
	made.signal_name = signal_name
	_put(made, options)
	return made
