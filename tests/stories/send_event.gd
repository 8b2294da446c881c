extends Story
## Send Event reaches this machine, a group, every machine or one node's, at once or later.


func test_who_hears_it() -> void:
	var door := body("Door")
	door.add_to_group("doors")
	add(Node2D.new(), "Handle", {"under": door})
	var hosts := {"door": door, "cook": body("Cook"), "sender": body("Lamp")}
	# Settings, who hears it.
	for row: Array in [
		[{}, ["sender"]],
		[{"reach": SCSendEventAction.A_GROUP, "to_group": "doors"}, ["door"]],
		[{"reach": SCSendEventAction.EVERY_MACHINE}, ["door", "cook", "sender"]],
		[{"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../../Door/Handle")}, ["door"]],
		# An empty path means the node it works on.
		[{"reach": SCSendEventAction.A_NODE}, ["sender"]],
		[{"event_name": &"loud"}, ["door", "cook", "sender"]],
	]:
		var sent: StringName = row[0].get("event_name", &"go")
		var listening := template([state("Idle", [], {sent: "Gone"}), state("Gone")], {"events": [declared_event("loud", {"is_global": true})]})
		var machines := {}
		for name: String in hosts:
			var on := {"under": hosts[name]}
			machines[name] = start(doing(send("go", row[0]), {sent: "Gone"}, on) if name == "sender" else running(listening, on))
		for name: String in machines:
			expect_equal(current(machines[name]) == &"Gone", name in row[1], "%s heard %s" % [name, row[0]])
			machines[name].free()


func test_later() -> void:
	# Settings, so many seconds later it is still there, and soon after here; pause holds 0.3.
	for row: Array in [
		[send("go", {"delay": 0.3}), "Gone"],
		[send("go", {"delay_variable": &"pause"}), "Gone"],
		[send("nobody hears", {"delay": 0.3}), "Over"],
	]:
		expect(not (row[0] as SCSendEventAction).finishes_as_it_starts())
		var made := play(row[0], {"go": "Gone", "FINISHED": "Over"}, {"variables": {"pause": 0.3}})
		await expect_later(made, 0.25, "Work")
		await expect_later(made, 0.1, row[1])
	var left := start(machine([state("A", [send("go", {"delay": 0.2})], {"leave": "B"}), state("B", [], {"go": "Wrong"}), state("Wrong")]))
	await advance(0.1)
	left.send_event("leave")
	await expect_later(left, 0.5, "B")


func test_what_it_carries_can_be_kept() -> void:
	var hit := [transition("hit", "B", "damage")]
	var at_once := start(machine([state("A", [send("hit", {"data": 7})], hit), state("B")], {"variables": {"damage": 0}}))
	expect_equal(at_once.get_value("damage"), 7)
	# Later it carries the value of that moment, of each machine that shares the action its own.
	var later := send("hit", {"delay": 0.2, "data": 0, "data_variable": &"power"})
	var design := template([state("A", [later], hit), state("B")], {"variables": {"power": 1, "damage": 0}})
	var machines := [start(running(design)), start(running(design, {"name": "Second"}))]
	machines[0].set_value("power", 3)
	machines[1].set_value("power", 4)
	await advance(0.3)
	expect_equal(machines.map(func(made: SCMachine) -> int: return made.get_value("damage")), [3, 4])


func test_what_is_wrong_is_told() -> void:
	# Anywhere on the stage the sender itself would be the machine above it.
	var crate := Node.new()
	crate.name = "Crate"
	tree.root.add_child(crate)
	for row: Array in [
		[send(""), "Send Event on Machine: it has no event, so nothing was sent."],
		[send("go", {"reach": SCSendEventAction.A_GROUP}), "it has no group to send go to"],
		[send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Nowhere")}), "there is no node at ../Nowhere. Pick one under To Node Path."],
		[send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../../Crate")}), "there is no Machine on Crate or on a node above it, so nobody heard go."],
	]:
		result_of(row[0])
		expect_warning(row[1])
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
	expect_line(send("go"), "Send go")
	expect_line(send("go", {"delay": 1.5}), "Send go after 1.5 s")
	expect_line(send("hit", {"data": 5, "reach": SCSendEventAction.A_GROUP, "to_group": "guards"}), "Send hit with 5 to group guards")
	expect_line(send("go", {"reach": SCSendEventAction.EVERY_MACHINE}), "Send go to every machine")
	expect_line(send("go", {"reach": SCSendEventAction.A_NODE, "to_node_path": NodePath("../Door")}), "Send go to Door")
	expect_line(send("go", {"reach": SCSendEventAction.A_NODE}), "Send go to Self")
	expect_line(send(""), "Send (pick one)")


func test_a_script_sends_what_was_to_be_sent_later() -> void:
	var later := send(&"go", {"delay": 60.0, "data": 5})
	for what: int in [3, 4, -1]:
		var guard := play([act("a")], {"go": "Gone"})
		SCMachineBase.native_action(what, later, guard, 0, 0.0)
		expect_state(guard, "Gone")
		guard.free()
