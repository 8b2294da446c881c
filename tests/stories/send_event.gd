extends Story
## Send Event reaches this machine, a group, every machine or one node's, at once or later.


func test_to_this_machine() -> void:
	var made := start(machine([state("A", [send("go")], {"go": "B"}), state("B")]))
	var other := start(_listener("Other"))
	expect_state(made, "B")
	expect_state(other, "Idle")


func test_to_a_group() -> void:
	var guard := body("Guard")
	guard.add_to_group("guards")
	var heard := start(_listener("Heard", guard))
	var missed := start(_listener("Missed", body("Cook")))
	start(machine([state("A", [send("go", {"reach": SCSendEventAction.A_GROUP, "to_group": "guards"})])]))
	expect_state(heard, "Gone")
	expect_state(missed, "Idle")


func test_to_every_machine() -> void:
	var first := start(_listener("First"))
	var second := start(_listener("Second", body()))
	var sender := start(machine([state("A", [send("go", {"reach": SCSendEventAction.EVERY_MACHINE})], {"go": "B"}), state("B")]))
	for heard: SCMachine in [first, second]:
		expect_state(heard, "Gone")
	expect_state(sender, "B")


func test_to_the_machine_of_a_node_or_of_one_above_it() -> void:
	var door := body("Door")
	var handle := Node2D.new()
	handle.name = "Handle"
	door.add_child(handle)
	var heard := start(_listener("Machine", door))
	start(machine([state("A", [send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Door/Handle")})])], {"name": "Sender"}))
	expect_state(heard, "Gone")


func test_an_empty_path_means_the_node_it_works_on() -> void:
	var lamp := body("Lamp")
	var made := start(machine([state("A", [send("go", {"reach": SCSendEventAction.A_NODE})], {"go": "B"}), state("B")], {"under": lamp}))
	expect_state(made, "B")


func test_an_event_declared_global_goes_everywhere() -> void:
	var other := start(_listener("Other", body()))
	start(running(template([state("A", [send("go")])], {"events": [declared_event("go", {"is_global": true})]})))
	expect_state(other, "Gone")


func test_what_it_carries_can_be_kept() -> void:
	var made := start(machine([
		state("A", [send("hit", {"data": 7})], [transition("hit", "B", "damage")]),
		state("B"),
	], {"variables": {"damage": 0}}))
	expect_equal(made.get_value("damage"), 7)


func test_later() -> void:
	var made := start(machine([state("A", [send("go", {"delay": 0.5})], {"go": "B", "FINISHED": "C"}), state("B"), state("C")]))
	await advance(0.4)
	expect_state(made, "A")
	await advance(0.2)
	expect_state(made, "B")


func test_later_finishes_only_then() -> void:
	var made := start(machine([state("A", [send("nobody hears", {"delay": 0.3})], {"FINISHED": "B"}), state("B")]))
	await advance(0.2)
	expect_state(made, "A")
	await advance(0.2)
	expect_state(made, "B")


func test_leaving_first_means_it_is_never_sent() -> void:
	var made := start(machine([
		state("A", [send("go", {"delay": 0.2})], {"leave": "B"}),
		state("B", [], {"go": "Wrong"}),
		state("Wrong"),
	]))
	await advance(0.1)
	made.send_event("leave")
	await advance(0.5)
	expect_state(made, "B")


func test_later_carries_the_value_of_that_moment() -> void:
	var later := send("hit", {"delay": 0.2, "data": 0})
	later.set(&"data_variable", &"power")
	var made := start(machine([
		state("A", [later], [transition("hit", "B", "damage")]),
		state("B"),
	], {"variables": {"power": 1, "damage": 0}}))
	made.set_value("power", 9)
	await advance(0.3)
	expect_state(made, "B")
	expect_equal(made.get_value("damage"), 9)


func test_how_much_later_may_come_from_a_variable() -> void:
	var later := send("go")
	later.set(&"delay_variable", &"pause")
	expect(not later.finishes_as_it_starts())
	var made := start(machine([state("A", [later], {"go": "B"}), state("B")], {"variables": {"pause": 0.3}}))
	expect_state(made, "A")
	await advance(0.4)
	expect_state(made, "B")


func test_two_machines_that_share_the_action_each_send_their_own() -> void:
	var later := send("hit", {"delay": 0.2, "data": 0})
	later.set(&"data_variable", &"power")
	var design := template([state("A", [later], [transition("hit", "B", "damage")]), state("B")], {"variables": {"power": 1, "damage": 0}})
	var first := start(running(design))
	var second := start(running(design, {"name": "Second"}))
	first.set_value("power", 3)
	second.set_value("power", 4)
	await advance(0.3)
	expect_equal(first.get_value("damage"), 3)
	expect_equal(second.get_value("damage"), 4)


func test_what_is_wrong_is_told() -> void:
	# Anywhere on the stage the sender itself would be the machine above it.
	var crate := Node.new()
	crate.name = "Crate"
	tree.root.add_child(crate)
	for row: Array in [
		[send(""), "Send Event on Sender: it has no event, so nothing was sent."],
		[send("go", {"reach": SCSendEventAction.A_GROUP}), "it has no group to send go to"],
		[send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Nowhere")}), "there is no node at Nowhere. Pick one under To Node Path."],
		[send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../../Crate")}), "there is no Machine on Crate or on a node above it, so nobody heard go."],
	]:
		var made := start(machine([state("A", [row[0]], {"FINISHED": "B"}), state("B")], {"name": "Sender"}))
		expect_state(made, "B")
		expect_warning(row[1])
		made.free()
	crate.free()


func test_a_machine_that_is_freed_by_its_own_event() -> void:
	var made := machine([
		state("A", [send("go"), act("after")], {"go": "B"}),
		state("B", [act("end").entering(func(m: SCMachine) -> void: m.free())]),
	])
	stage.add_child(made)
	expect(not is_instance_valid(made))
	expect_log(["end enter", "end exit"])


func test_lines_on_the_graph() -> void:
	for row: Array in [
		[send("go"), "Send go"],
		[send("go", {"delay": 1.5}), "Send go after 1.5 s"],
		[send("hit", {"data": 5, "reach": SCSendEventAction.A_GROUP, "to_group": "guards"}), "Send hit with 5 to group guards"],
		[send("go", {"reach": SCSendEventAction.EVERY_MACHINE}), "Send go to every machine"],
		[send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Door")}), "Send go to Door"],
		[send("go", {"reach": SCSendEventAction.A_NODE}), "Send go to Self"],
		[send(""), "Send (pick one)"],
	]:
		expect_equal((row[0] as SCSendEventAction).shown_summary(), row[1])


func _listener(name: String, under: Node = null) -> SCMachine:
	var options := {"name": name}
	if under != null:
		options["under"] = under
	return machine([state("Idle", [], {"go": "Gone"}), state("Gone")], options)
