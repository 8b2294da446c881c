class_name BenchDesigns
extends RefCounted
## The designs that are measured.


## Two states, each of which adds one to a variable as it is entered. The events lead from either to the other.
static func two_states(events: Array[StringName] = [&"go"], heard_everywhere: Array[StringName] = []) -> SCMachineTemplate:
	var to_second: Dictionary[StringName, StringName] = {}
	var to_first: Dictionary[StringName, StringName] = {}
	for event in events:
		to_second[event] = &"B"
		to_first[event] = &"A"
	var made := template([
		state(&"A", [add_one(&"count", SCMachineAction.ONCE)], to_second),
		state(&"B", [add_one(&"count", SCMachineAction.ONCE)], to_first),
	], [variable(&"count", 0)])
	for event in heard_everywhere:
		var declared := SCMachineEvent.new()
		declared.event_name = event
		declared.is_global = true
		made.events.append(declared)
	return made


## The same two states, two levels further down.
static func nested_states() -> SCMachineTemplate:
	var made := two_states()
	for name: StringName in [&"Inner", &"Outer"]:
		var around := state(name)
		around.sub_states = made.states
		made.states = [around]
		made.initial_state = around
	return made


## So many actions, each of which adds one to a variable every frame.
static func counting(actions: int) -> SCMachineTemplate:
	var counters: Array[SCMachineAction] = []
	for i in actions:
		counters.append(add_one(&"count", SCMachineAction.EVERY_FRAME))
	return template([state(&"Count", counters)], [variable(&"count", 0)])


## So many actions, each of which scales a vector every frame. These settings of theirs are read from variables.
static func scaling(actions: int, bound: Array[StringName]) -> SCMachineTemplate:
	var made: Array[SCMachineAction] = []
	for i in actions:
		var scale := SCVectorAction.new()
		scale.operation = SCVectorAction.SCALE
		scale.first = Vector2(1, 2)
		scale.store_in = &"scaled"
		scale.run_mode = SCMachineAction.EVERY_FRAME
		for setting in bound:
			scale.set("%s_variable" % setting, setting)
		made.append(scale)
	return template([state(&"Scale", made)], [
		variable(&"scaled", Vector2()), variable(&"amount", 2.0), variable(&"per_second", false), variable(&"first", Vector2(3, 4)),
	])


## A state that nothing but an event ends.
static func waiting(variables: Array[SCMachineVariable] = []) -> SCMachineTemplate:
	return template([state(&"Wait", [], {&"go": &"Wait"})], variables)


static func template(states: Array[SCMachineState], variables: Array[SCMachineVariable] = []) -> SCMachineTemplate:
	var made := SCMachineTemplate.new()
	made.states = states
	made.initial_state = states[0]
	made.variables = variables
	made.loop_increment_limit = 1_000_000
	return made


static func state(name: StringName, actions: Array[SCMachineAction] = [], transitions: Dictionary[StringName, StringName] = {}) -> SCMachineState:
	var made := SCMachineState.new()
	made.state_name = name
	made.actions = actions
	for event in transitions:
		var transition := SCMachineTransition.new()
		transition.event = event
		transition.to_state = transitions[event]
		made.transitions.append(transition)
	return made


static func variable(name: StringName, default_value: Variant, never_below: String = "", never_above: String = "") -> SCMachineVariable:
	var made := SCMachineVariable.new()
	made.name = name
	made.default_value = default_value
	made.never_below = never_below
	made.never_above = never_above
	return made


static func add_one(variable_name: StringName, run_mode: SCMachineAction.RunMode) -> SCSetVariableAction:
	var made := SCSetVariableAction.new()
	made.variable_name = variable_name
	made.operation = SCSetVariableAction.ADD
	made.value = 1
	made.run_mode = run_mode
	return made


static func wait(seconds: float) -> SCWaitAction:
	var made := SCWaitAction.new()
	made.seconds = seconds
	return made


## Asks again only when the variable is written.
static func watch(variable_name: StringName) -> SCCheckAction:
	var condition := SCVariableCondition.new()
	condition.variable_name = variable_name
	condition.test = SCVariableCondition.LESS
	condition.value = 0
	var made := SCCheckAction.new()
	made.condition = condition
	made.true_event = &"below"
	made.run_mode = SCMachineAction.EVERY_FRAME
	made.only_when_it_changes = true
	return made
