extends Story
## What machines share of a design, and when a change of it is taken up.


func test_two_machines_run_one_template_each_for_itself() -> void:
	var steps := func(m: SCMachine, index: int) -> void: m.slot(index)["steps"] = m.slot(index).get("steps", 0) + 1
	var counted: Array[int] = []
	var design := template([
		state("Idle", [act("idle")], {"go": "Work"}),
		state("Work", [
			act("work").ticking().updating(steps).exiting(func(m: SCMachine, index: int) -> void: counted.append(m.slot(index).get("steps", 0))),
		], {"rest": "Idle"}),
	], {"variables": {"score": 0, "bag": []}})
	var left := start(running(design, {"name": "Left"}))
	var right := start(running(design, {"name": "Right"}))
	expect_after(left, "go", "Work")
	expect_state(right, "Idle")
	await frames(3)
	right.send_event("go")
	await frames(2)
	left.send_event("rest")
	right.send_event("rest")
	expect_equal(counted, [5, 2])
	left.set_value("score", 4)
	left.get_value("bag").append("key")
	expect_values(right, {"score": 0, "bag": []})
	expect_equal(design.variables[1].default_value, [])


func test_a_new_list_of_actions_is_taken_up_at_the_next_entry() -> void:
	var work := state("Work", [act("old").ticking()], {"away": "Away"})
	var made := start(machine([work, state("Away", [], {"back": "Work"})]))
	work.actions = [act("new").ticking()]
	noted.clear()
	await frames(1)
	expect_log(["old update"])
	made.send_event("away")
	made.send_event("back")
	expect_log(["old exit", "new enter"])
	work.actions.append(act("more").ticking())
	await frames(1)
	expect_log(["new update"])
	made.restart_state(work)
	expect_log(["new exit", "new enter", "more enter"])
	work.actions.clear()
	made.send_event("away")
	expect_log(["new exit", "more exit"])


func test_a_new_transition_counts_from_the_next_event_on() -> void:
	var a := state("A", [act("a")])
	var made := start(machine([a, state("B"), state("C")]))
	expect_after(made, "go", "A")
	a.transitions.append(transition("go", "B"))
	expect_after(made, "go", "B")
	made.go_to("A")
	a.transitions = [transition("go", "C")]
	noted.clear()
	expect_after(made, "go", "C")
	expect_log(["a exit"])


func test_a_sub_state_taken_out_is_not_entered_any_more() -> void:
	var deepest := state("Deepest", [], {}, {"sub_states": [state("A", [], {"on": "B"}), state("B", [], {"on": "A"})]})
	var middle := state("Middle", [], {}, {"sub_states": [deepest]})
	var guard := start(machine([state("Outer", [], {}, {"sub_states": [middle]})]))
	guard.send_event("on")
	expect_states(guard, ["Outer", "Middle", "Deepest", "B"])
	var a: SCMachineState = deepest.sub_states.pop_front()
	guard.send_event("on")
	expect_states(guard, ["Outer", "Middle", "Deepest", "B"])
	# Anywhere below will do.
	deepest.sub_states[0].sub_states.append(a)
	guard.send_event("on")
	expect_states(guard, ["Outer", "Middle", "Deepest", "A"])


func test_what_an_action_says_of_itself_is_asked_once() -> void:
	var work := act("work").ticking()
	var design := state("Work", [work])
	var made := start(machine([design]))
	work.physics = true
	# A flag changed in place has no effect until the list is changed, too.
	for is_physics: bool in [false, true]:
		if is_physics:
			design.actions.append(act("another"))
		made.restart_state(design)
		work.in_physics.clear()
		await frames(3)
		expect(not work.in_physics.is_empty() and not work.in_physics.has(not is_physics), "updated in %s" % [work.in_physics])


func test_holes_in_a_design_are_passed_over() -> void:
	var a := state("A", [null, act("a").done(), null], [null, transition("go", "Nowhere"), transition("go", "B")])
	a.sub_states = [null, state("A1", [null], {"in": "A2"}), state("A2")]
	var b := state("B")
	b.parallel_states = [null, parallel("Side", [null, state("Side1")])]
	var made := start(machine([null, a, null, b], {"initial": "A"}))
	expect_states(made, ["A", "A1"])
	expect_after(made, "in", ["A", "A2"])
	expect_after(made, "go", ["B", "Side1"])
	made.restart_state(b)
	expect_state(made, "Side1")


func test_the_first_of_two_states_of_one_name_is_meant() -> void:
	var first := state("Same", [act("first")])
	var second := state("Same", [act("second")])
	var made := machine([state("A"), first, second])
	expect_equal(made.find_state("Same"), first, "before the start")
	start(made)
	expect_equal(made.find_state("Same"), first)
	made.go_to("Same")
	expect_log(["first enter"])
	expect_equal(made.find_state("None"), null)


func test_a_design_let_go_of_goes_on_until_the_machine_stops() -> void:
	var design := template([
		state("A", [act("a").ticking()], {"go": "B"}, {"sub_states": [state("A1", [act("a1")])]}),
		state("B", [act("b")], {"back": "A"}),
	])
	var held: WeakRef = weakref(design.states[0])
	var made := start(running(design))
	made.template = null
	made.states = []
	made.initial_state = null
	design = null
	noted.clear()
	await frames(1)
	expect_log(["a update"])
	made.send_event("go")
	made.send_event("back")
	expect_log(["a1 exit", "a exit", "b enter", "b exit", "a enter", "a1 enter"])
	made.free()
	expect_log(["a1 exit", "a exit"])
	await frames(2)
	expect_equal(held.get_ref(), null, "a state outlives the last machine that ran it")


func test_states_and_actions_may_be_any_resource_that_answers_alike() -> void:
	var a := PlainState.new("A", noted, {"go": "B"})
	var b := PlainState.new("B", noted, {"FINISHED": "A"})
	var base := PlainMachine.new()
	stage.add_child(base)
	base._core_begin([a, b], false, false, 50, {})
	expect_equal(base.find_state("B"), b)
	base.go_to_state(a)
	expect_log(["A enter"])
	await frames(2)
	expect_log(["A update", "A update"])
	base.send_event("go")
	expect_log(["A exit", "B enter"])
	expect_equal(base.current_state, b)
	base.finish(0)
	expect_log(["B exit", "A enter"])
	base.stop()
	expect_log(["A exit"])
	expect_equal(base.current_state, null)


## A state that is no compiled class, with the members the runtime reads.
class PlainState:
	extends Resource

	var state_name: StringName
	var actions: Array = []
	var transitions: Array = []
	var sub_states: Array = []
	var parallel_states: Array = []
	var pause_here: bool = false
	var is_end_state: bool = false

	func _init(name: StringName, log_of: Array[String], ways: Dictionary) -> void:
		state_name = name
		var action := PlainAction.new()
		action.said = name
		action.told = log_of
		actions = [action]
		for event: StringName in ways:
			var way := PlainTransition.new()
			way.event = event
			way.to_state = ways[event]
			transitions.append(way)

	func inner_starts() -> Array:
		return []

	func inner_slot_of(_state: Resource) -> int:
		return -1


class PlainTransition:
	extends Resource

	var event: StringName
	var to_state: StringName
	var store_data_in: StringName


class PlainActionBase:
	extends Resource

	var disabled: bool = false
	var wait_for_previous: bool = false
	var update_interval: float = 0.0
	var from_variables: Dictionary = {}
	var wants_physics: bool = false
	var needs_every_tick: bool = true
	var works_after_finishing: bool = false
	var variables_to_watch: PackedStringArray = []

	func enter(_m: Node, _index: int) -> void:
		pass

	func update(_m: Node, _index: int, _delta: float) -> void:
		pass

	func exit(_m: Node, _index: int) -> void:
		pass


class PlainAction:
	extends PlainActionBase

	var said: String
	var told: Array[String]

	func enter(_m: Node, _index: int) -> void:
		told.append("%s enter" % said)

	func update(_m: Node, _index: int, _delta: float) -> void:
		told.append("%s update" % said)

	func exit(_m: Node, _index: int) -> void:
		told.append("%s exit" % said)


class PlainMachine:
	extends SCMachineBase


func test_states_are_freed_on_another_thread_while_machines_start() -> void:
	for round in 20:
		var designs: Array[SCMachineTemplate] = []
		for count in 10:
			var design := template([state("A", [], {"go": "B"}), state("B")])
			start(running(design)).free()
			designs.append(design)
		var thread := Thread.new()
		thread.start(designs.clear)
		for count in 10:
			var made := start(running(template([state("A", [], {"go": "B"}), state("B")])))
			made.send_event("go")
			expect_state(made, "B")
			made.free()
		thread.wait_to_finish()
		await frames(1)
