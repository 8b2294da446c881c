extends Story
## A game's code runs inside every call of a machine, and may do anything to the machine from there.

## Where a callback runs, what it does to the machine of [method _door], what the machine does then, and where it ends.
const PLAYS: Array[Array] = [
	["enter", "go send", "a1 enter, a1 exit, c enter", "C"],
	["enter", "stop", "a1 enter, a1 exit", ""],
	["enter", "start restart", "a1 enter, a1 exit, a1 enter, a2 enter", "A"],
	["enter", "finish", "a1 enter, a2 enter", "A"],
	["update", "go send", "a1 update, a1 exit, a2 exit, c enter", "C"],
	["update", "stop", "a1 update, a1 exit, a2 exit", ""],
	["update", "start restart", "a1 update, a1 exit, a2 exit, a1 enter, a2 enter", "A"],
	["update", "finish", "a1 update, a2 update", "A"],
	# On its way to B it cannot be sent elsewhere, but stopping or starting it waits until A has been left.
	["exit", "go send restart finish", "a1 exit, a2 exit, b enter", "B"],
	["exit", "stop", "a1 exit, a2 exit", ""],
	["exit", "start", "a1 exit, a2 exit, a1 enter, a2 enter", "A"],
	["stop", "go send stop restart finish", "a1 exit, a2 exit", ""],
	["stop", "start", "a1 exit, a2 exit, a1 enter, a2 enter", "A"],
	["change", "go send", "c enter", "C"],
	["change", "stop", "", ""],
	["change", "start restart finish", "a1 enter, a2 enter", "A"],
	["done", "go send", "a1 enter, a2 enter, a1 exit, a2 exit, c enter", "C"],
	["done", "stop", "a1 enter, a2 enter, a1 exit, a2 exit", ""],
	["done", "start restart", "a1 enter, a2 enter, a1 exit, a2 exit, a1 enter, a2 enter, a1 exit, a2 exit, b enter", "B"],
	["done", "finish", "a1 enter, a2 enter, a1 exit, a2 exit, b enter", "B"],
	# The event is offered to where the machine is by then.
	["event", "go send", "a1 exit, a2 exit, c enter, c exit, d enter", "D"],
	["event", "stop", "a1 exit, a2 exit", ""],
	["event", "start restart", "a1 exit, a2 exit, a1 enter, a2 enter, a1 exit, a2 exit, b enter", "B"],
	["event", "finish", "a1 exit, a2 exit, b enter", "B"],
	["time", "go send", "a1 exit, a2 exit, c enter", "C"],
	["time", "stop", "a1 exit, a2 exit", ""],
	["time", "start restart", "a1 exit, a2 exit, a1 enter, a2 enter", "A"],
	["time", "finish", "a1 exit, a2 exit, b enter", "B"],
	["variable", "go send", "a1 update, a1 exit, a2 exit, c enter", "C"],
	["variable", "stop", "a1 update, a1 exit, a2 exit", ""],
	["variable", "start restart", "a1 update, a1 exit, a2 exit, a1 enter, a2 enter", "A"],
	["variable", "finish", "a1 update, a2 update", "A"],
]


func test_whatever_is_done_to_it_from_wherever() -> void:
	for row in PLAYS:
		for deed: String in (row[1] as String).split(" "):
			var door := _door(row[0], deed)
			start(door)
			if row[0] not in ["enter", "change", "done"]:
				noted.clear()
			await _call_back(row[0], door)
			expect_equal(", ".join(noted), row[2], "%s from %s" % [deed, row[0]])
			expect_equal(current(door), row[3], "%s from %s" % [deed, row[0]])
			expect_equal(door.is_running(), row[3] != "")
			door.get_parent().remove_child(door)
			door.free()
			noted.clear()


func test_a_chain_of_changes_from_within_enters() -> void:
	var made := start(machine([
		state("A", [act("a").entering(func(m: SCMachine) -> void: m.go_to("B")), act("a2")]),
		state("B", [act("b").entering(func(m: SCMachine) -> void: m.go_to("C")), act("b2")]),
		state("C", [act("c")]),
	]))
	expect_log(["a enter", "a exit", "b enter", "b exit", "c enter"])
	expect_states(made, ["C"])


func test_an_inner_state_that_moves_its_parent_while_both_are_entered() -> void:
	var made := start(machine([
		state("Outer", [act("outer")], {}, {"parallel": {
			"A": [state("A1", [act("a").entering(func(m: SCMachine) -> void: m.go_to("Away"))])],
			"B": [state("B1", [act("b")])],
		}}),
		state("Away", [act("away")]),
	]))
	expect_log(["outer enter", "a enter", "a exit", "outer exit", "away enter"])
	expect_states(made, ["Away"])


func test_an_event_sent_from_an_exit_is_heard_by_no_state() -> void:
	var heard: Array[StringName] = []
	var made := start(machine([
		state("A", [act("a").exiting(func(m: SCMachine) -> void: m.send_event("jump"))], {"go": "B", "jump": "C"}),
		state("B", [], {"jump": "C"}),
		state("C"),
	]))
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void: heard.append(event))
	expect_after(made, "go", "B")
	expect_equal(heard, [&"go", &"jump"])


func test_a_machine_freed_by_what_it_called() -> void:
	# From a timer or another object's signal it is free at once; while the machine itself is emitting, the engine refuses.
	for way: String in ["then", "enter", "exit"]:
		var door := body("Door")
		var bell := body("Bell")
		var free_on := func(place: String) -> void:
			if way == place:
				door.free()
		start(machine([
			state("A", [
				act("a").entering(func(m: SCMachine, index: int) -> void:
					if way == "then":
						m.finish_after(index, 0.05, door.free)
					else:
						bell.renamed.connect(m.finisher(index))),
				act("a2").done().exiting(free_on.bind("exit")),
			], {"FINISHED": "B"}),
			state("B", [act("b").entering(free_on.bind("enter")), act("b2").exiting(func() -> void: noted.append("twice"))]),
		], {"under": door}))
		bell.name = "Rung"
		await advance(0.1)
		expect(not is_instance_valid(door), "%s: it is still there" % way)
		bell.free()


func test_a_machine_that_frees_itself_later_from_every_callback() -> void:
	for place: String in ["enter", "update", "exit", "change"]:
		var door := start(_door(place, "free"))
		await frames(1)
		if is_instance_valid(door):
			door.go_to("B")
		await frames(2)
		expect(not is_instance_valid(door), "%s: it is still there" % place)


## A machine that does [param deed] to itself, once, at [param place].
func _door(place: String, deed: String) -> SCMachine:
	var once := [true]
	var on_call := func(m: SCMachine) -> void: _do(m, deed, once)
	var first := act("a1")
	var second := act("a2")
	match place:
		"enter":
			first.entering(on_call)
		"update":
			first.ticking().updating(on_call)
			second.ticking()
		"exit", "stop":
			first.exiting(on_call)
		"done":
			first.done()
			second.done()
		"time":
			first.entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1, on_call.bind(m)))
			second.done()
		"variable":
			first.watching(["hp"]).updating(on_call)
			second.watching(["hp"])
	var door := machine([
		state("A", [first, second], {"jump": "C", "knock": "B", "FINISHED": "B"}),
		state("B", [act("b")]),
		state("C", [act("c")], {"knock": "D"}),
		state("D", [act("d")]),
	], {"variables": {"hp": 10}})
	var told: Dictionary[String, Signal] = {"change": door.state_changed, "done": door.state_finished, "event": door.event_sent}
	if told.has(place):
		told[place].connect(on_call.bind(door).unbind(1 if place == "done" else 2))
	return door


func _call_back(place: String, door: SCMachine) -> void:
	match place:
		"update":
			await frames(1)
		"exit":
			door.go_to("B")
		"stop":
			door.stop()
		"event":
			door.send_event("knock")
		"time":
			await advance(0.15)
		"variable":
			door.set_value("hp", 3)


func _do(door: SCMachine, deed: String, once: Array) -> void:
	if not once[0]:
		return
	once[0] = false
	match deed:
		"go":
			door.go_to("C")
		"restart":
			door.restart_state(door.running_state())
		"send":
			door.send_event("jump")
		"finish":
			door.finish(0)
		"free":
			door.queue_free()
		_:
			door.call(deed)
