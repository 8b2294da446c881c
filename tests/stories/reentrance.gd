extends Story
## A game's code runs inside every call of a machine, and may do anything to the machine from there.

## What a callback does to the machine of [method _door].
const DEEDS: PackedStringArray = ["go", "stop", "start", "restart", "send", "finish"]


func test_going_on_from_an_enter() -> void:
	_play("enter", {
		"go": ["a1 enter", "a1 exit", "c enter"],
		"stop": ["a1 enter", "a1 exit"],
		"start": ["a1 enter", "a1 exit", "a1 enter", "a2 enter"],
		"restart": ["a1 enter", "a1 exit", "a1 enter", "a2 enter"],
		"send": ["a1 enter", "a1 exit", "c enter"],
		"finish": ["a1 enter", "a2 enter"],
	})


func test_going_on_from_an_update() -> void:
	await _play_on("update", {
		"go": ["a1 update", "a1 exit", "a2 exit", "c enter"],
		"stop": ["a1 update", "a1 exit", "a2 exit"],
		"start": ["a1 update", "a1 exit", "a2 exit", "a1 enter", "a2 enter"],
		"restart": ["a1 update", "a1 exit", "a2 exit", "a1 enter", "a2 enter"],
		"send": ["a1 update", "a1 exit", "a2 exit", "c enter"],
		"finish": ["a1 update", "a2 update"],
	})


func test_going_on_from_an_exit() -> void:
	# The machine is on its way to B: it cannot be sent elsewhere, but stopping or starting it waits until A has been left.
	for deed in DEEDS:
		var door := _door("exit", deed)
		start(door)
		noted.clear()
		door.go_to("B")
		match deed:
			"stop":
				expect_log(["a1 exit", "a2 exit"])
				expect(not door.is_running(), "stop from an exit is forgotten")
			"start":
				expect_log(["a1 exit", "a2 exit", "a1 enter", "a2 enter"])
				expect_state(door, "A")
			_:
				expect_log(["a1 exit", "a2 exit", "b enter"])
				expect_state(door, "B")
		_away(door)


func test_stopping_from_within_a_stop() -> void:
	for deed in DEEDS:
		var door := _door("exit", deed)
		start(door)
		noted.clear()
		door.stop()
		if deed == "start":
			expect_log(["a1 exit", "a2 exit", "a1 enter", "a2 enter"])
			expect(door.is_running(), "start from within a stop is forgotten")
		else:
			expect_log(["a1 exit", "a2 exit"])
			expect(not door.is_running(), "%s from within a stop leaves it running" % deed)
		_away(door)


func test_going_on_when_told_of_a_change() -> void:
	_play("change", {
		"go": ["c enter"],
		"stop": [],
		"start": ["a1 enter", "a2 enter"],
		"restart": ["a1 enter", "a2 enter"],
		"send": ["c enter"],
		"finish": ["a1 enter", "a2 enter"],
	})


func test_going_on_when_told_that_a_state_is_done() -> void:
	for deed in DEEDS:
		var once := [true]
		var door := machine([
			state("A", [act("a").done()], {"FINISHED": "B", "jump": "C"}),
			state("B", [act("b")]),
			state("C", [act("c")]),
		])
		door.state_finished.connect(func(_of: SCMachineState) -> void: _do(door, deed, once))
		start(door)
		match deed:
			"go", "send":
				expect_log(["a enter", "a exit", "c enter"])
			"stop":
				expect_log(["a enter", "a exit"])
			"start", "restart":
				expect_log(["a enter", "a exit", "a enter", "a exit", "b enter"])
			"finish":
				expect_log(["a enter", "a exit", "b enter"])
		_away(door)


func test_going_on_when_told_of_an_event() -> void:
	for deed in DEEDS:
		var once := [true]
		var door := machine([
			state("A", [act("a")], {"knock": "B", "jump": "C"}),
			state("B", [act("b")]),
			state("C", [act("c")], {"knock": "D"}),
			state("D", [act("d")]),
		])
		door.event_sent.connect(func(_event: StringName, _data: Variant) -> void: _do(door, deed, once))
		start(door)
		noted.clear()
		door.send_event("knock")
		match deed:
			"go", "send":
				# The event is offered to where the machine is by then.
				expect_log(["a exit", "c enter", "c exit", "d enter"])
			"stop":
				expect_log(["a exit"])
			"start", "restart":
				expect_log(["a exit", "a enter", "a exit", "b enter"])
			"finish":
				expect_log(["a exit", "b enter"])
		_away(door)


func test_going_on_when_a_time_is_up() -> void:
	for deed in DEEDS:
		var once := [true]
		var door := machine([
			state("A", [
				act("a").entering(func(m: SCMachine, index: int) -> void: m.finish_after(index, 0.1, _do.bind(m, deed, once))),
			], {"FINISHED": "B", "jump": "C"}),
			state("B", [act("b")]),
			state("C", [act("c")]),
		])
		start(door)
		noted.clear()
		await advance(0.15)
		match deed:
			"go", "send":
				expect_log(["a exit", "c enter"])
			"stop":
				expect_log(["a exit"])
			"start", "restart":
				expect_log(["a exit", "a enter"])
				expect_state(door, "A")
			"finish":
				expect_log(["a exit", "b enter"])
		_away(door)


func test_going_on_when_a_variable_changes() -> void:
	for deed in DEEDS:
		var once := [true]
		var door := start(machine([
			state("A", [act("a").watching(["hp"]).updating(func(m: SCMachine) -> void: _do(m, deed, once)), act("late").watching(["hp"])], {"jump": "C"}),
			state("C", [act("c")]),
		], {"variables": {"hp": 10}}))
		noted.clear()
		door.set_value("hp", 3)
		match deed:
			"go", "send":
				expect_log(["a update", "a exit", "late exit", "c enter"])
			"stop":
				expect_log(["a update", "a exit", "late exit"])
			"start", "restart":
				expect_log(["a update", "a exit", "late exit", "a enter", "late enter"])
			"finish":
				expect_log(["a update", "late update"])
		_away(door)


func test_a_chain_of_changes_from_within_enters() -> void:
	var made := machine([
		state("A", [act("a").entering(func(m: SCMachine) -> void: m.go_to("B")), act("a2")]),
		state("B", [act("b").entering(func(m: SCMachine) -> void: m.go_to("C")), act("b2")]),
		state("C", [act("c").entering(func(m: SCMachine) -> void: m.go_to("D")), act("c2")]),
		state("D", [act("d")]),
	])
	start(made)
	expect_log(["a enter", "a exit", "b enter", "b exit", "c enter", "c exit", "d enter"])
	expect_states(made, ["D"])


func test_an_inner_state_that_moves_its_parent_while_both_are_entered() -> void:
	var made := machine([
		state("Outer", [act("outer")], {}, {"parallel": {
			"A": [state("A1", [act("a").entering(func(m: SCMachine) -> void: m.go_to("Away"))])],
			"B": [state("B1", [act("b")])],
		}}),
		state("Away", [act("away")]),
	])
	start(made)
	expect_log(["outer enter", "a enter", "a exit", "outer exit", "away enter"])
	expect_states(made, ["Away"])


func test_an_event_sent_from_an_exit_is_dropped() -> void:
	var heard: Array[StringName] = []
	var made := machine([
		state("A", [act("a").exiting(func(m: SCMachine) -> void: m.send_event("jump"))], {"go": "B", "jump": "C"}),
		state("B", [act("b")], {"jump": "C"}),
		state("C", [act("c")]),
	])
	made.event_sent.connect(func(event: StringName, _data: Variant) -> void: heard.append(event))
	start(made)
	made.send_event("go")
	expect_state(made, "B")
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
	noted.clear()


func test_a_machine_that_frees_itself_later_from_every_callback() -> void:
	var once := [true]
	for place: String in ["enter", "update", "exit", "change"]:
		once[0] = true
		var door := _door(place, "free")
		start(door)
		await frames(1)
		if is_instance_valid(door):
			door.go_to("B")
		await frames(2)
		expect(not is_instance_valid(door), "%s: it is still there" % place)
	noted.clear()


## Plays what each deed leads to when it is done as the machine starts.
func _play(place: String, wanted: Dictionary) -> void:
	for deed: String in wanted:
		var door := _door(place, deed)
		start(door)
		expect_log(wanted[deed])
		_away(door)


## The same when it is done in the first frame.
func _play_on(place: String, wanted: Dictionary) -> void:
	for deed: String in wanted:
		var door := _door(place, deed)
		start(door)
		noted.clear()
		await frames(1)
		expect_log(wanted[deed])
		_away(door)


## A machine that does [param deed] to itself, once, at [param place].
func _door(place: String, deed: String) -> SCMachine:
	var once := [true]
	var on_call := func(m: SCMachine) -> void: _do(m, deed, once)
	var first := act("a1").ticking()
	match place:
		"enter":
			first.entering(on_call)
		"update":
			first.updating(on_call)
		"exit":
			first.exiting(on_call)
	var door := machine([
		state("A", [first, act("a2").ticking()], {"jump": "C"}),
		state("B", [act("b")]),
		state("C", [act("c")]),
	])
	if place == "change":
		door.state_changed.connect(func(_from: SCMachineState, _to: SCMachineState) -> void: _do(door, deed, once))
	return door


func _do(door: SCMachine, deed: String, once: Array) -> void:
	if not once[0]:
		return
	once[0] = false
	match deed:
		"go":
			door.go_to("C")
		"stop":
			door.stop()
		"start":
			door.start()
		"restart":
			door.restart_state(door.running_state())
		"send":
			door.send_event("jump")
		"finish":
			door.finish(0)
		"free":
			door.queue_free()


func _away(door: SCMachine) -> void:
	noted.clear()
	door.stop()
	door.get_parent().remove_child(door)
	noted.clear()
