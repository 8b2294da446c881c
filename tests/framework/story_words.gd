@abstract
class_name StoryWords
extends RefCounted
## The words a story writes its designs in: each makes one resource or node the way a game maker would in the editor.

## What the actions of [method act] did, in order: "door enter", "door update", "door exit".
var noted: Array[String] = []

var _acts: Array[Recorder] = []
var _made: Array[Node] = []


## An action that writes down what the machine calls on it, and can do something from within each call.
class Recorder:
	extends SCMachineAction

	var said: String = ""
	var told: Array[String] = []
	var on_enter: Callable
	var on_update: Callable
	var on_exit: Callable
	var finishes: bool = false
	var ticks: bool = false
	var physics: bool = false
	var works_on: bool = false
	var watched: PackedStringArray = []
	## The delta of every update it got.
	var deltas: Array[float] = []
	## Whether the engine was in a physics frame, for every update.
	var in_physics: Array[bool] = []

	## Finishes as it is entered.
	func done() -> Recorder:
		finishes = true
		return self

	## Gets an update each frame.
	func ticking() -> Recorder:
		ticks = true
		return self

	func on_the_physics_tick() -> Recorder:
		physics = true
		return self

	## Goes on being updated once it has finished.
	func working_on() -> Recorder:
		works_on = true
		return self

	func watching(variables: PackedStringArray) -> Recorder:
		watched = variables
		return self

	## Waits for the action before it.
	func then() -> Recorder:
		wait_for_previous = true
		return self

	func off() -> Recorder:
		disabled = true
		return self

	func every(seconds: float) -> Recorder:
		ticks = true
		update_interval = seconds
		return self

	## What is called may take the machine, the index and, when updated, the delta, or fewer of them.
	func entering(what: Callable) -> Recorder:
		on_enter = what
		return self

	func updating(what: Callable) -> Recorder:
		on_update = what
		return self

	func exiting(what: Callable) -> Recorder:
		on_exit = what
		return self

	func forget() -> void:
		on_enter = Callable()
		on_update = Callable()
		on_exit = Callable()

	func _enter(m: SCMachine, index: int) -> void:
		told.append("%s enter" % said)
		_do(on_enter, [m, index])
		if finishes and m.still_here():
			m.finish(index)

	func _update(m: SCMachine, index: int, delta: float) -> void:
		told.append("%s update" % said)
		deltas.append(delta)
		in_physics.append(Engine.is_in_physics_frame())
		_do(on_update, [m, index, delta])

	func _exit(m: SCMachine, index: int) -> void:
		told.append("%s exit" % said)
		_do(on_exit, [m, index])

	func _summary() -> String:
		return said

	func _wants_physics() -> bool:
		return physics

	func _needs_every_tick() -> bool:
		return ticks

	func _works_after_finishing() -> bool:
		return works_on

	func _variables_to_watch() -> PackedStringArray:
		return watched

	func _do(what: Callable, arguments: Array) -> void:
		if what.is_valid():
			what.callv(arguments.slice(0, what.get_argument_count()))


## Keeps the events and the last moves of one machine, for what the story expects and for its report when it fails.
class Trail:
	extends RefCounted

	const LENGTH: int = 12

	var lines: PackedStringArray = []
	## The events that came since the story asked last.
	var events: Array[String] = []

	func on_event(event_name: StringName, data: Variant) -> void:
		if event_name != SCMachineTransition.finished_event():
			events.append(String(event_name))
		_add("event %s%s" % [event_name, "" if data == null else " (%s)" % [data]])

	func on_change(previous: SCMachineState, current: SCMachineState) -> void:
		_add("%s -> %s" % [previous, current])

	func _add(line: String) -> void:
		lines.append(line)
		if lines.size() > LENGTH:
			lines.remove_at(0)


## A machine with these states, not yet in the tree. Options are properties of the machine, and:
## [br][code]name[/code]: what the node is called; [code]initial[/code]: the name of the state to start in, else the first;
## [br][code]variables[/code]: a list of [method variable]s, or names with what they start as;
## [br][code]under[/code]: the node that [method Story.start] adds it to.
func machine(states: Array, options: Dictionary = {}) -> SCMachine:
	var made := SCMachine.new()
	_made.append(made)
	made.name = options.get("name", "Machine")
	made.states.assign(states)
	if not states.is_empty():
		made.initial_state = _named(states, options.get("initial", &""))
	_declare(made, options)
	return _follow(made)


## A machine, not yet in the tree, that does this action or list of actions in the state Work. Each of [param ways] leads from
## there to a state of that name, which does nothing. Options as for [method machine].
func doing(actions: Variant, ways: Dictionary = {"FINISHED": "Done"}, options: Dictionary = {}) -> SCMachine:
	var list: Array = actions if actions is Array else [actions]
	var states := [state("Work", list, ways)]
	for name: StringName in ways.values():
		if not states.any(func(made: SCMachineState) -> bool: return made.state_name == name):
			states.append(state(name))
	return machine(states, options)


## A machine that runs [param design], not yet in the tree. Options as for [method machine].
func running(design: SCMachineTemplate, options: Dictionary = {}) -> SCMachine:
	var made := SCMachine.new()
	_made.append(made)
	made.name = options.get("name", "Machine")
	made.template = design
	_declare(made, options)
	return _follow(made)


## Options are properties of the template, and: [code]initial[/code], [code]variables[/code] as for [method machine];
## [code]events[/code]: a list of [method declared_event]s.
func template(states: Array, options: Dictionary = {}) -> SCMachineTemplate:
	var made := SCMachineTemplate.new()
	made.states.assign(states)
	if not states.is_empty():
		made.initial_state = _named(states, options.get("initial", &""))
	made.events.assign(options.get("events", []))
	made.variables.assign(_variables_of(options))
	_put(made, options, ["initial", "events", "variables"])
	return made


## Transitions are names of events with names of states, or a list of [method transition]s.
## Options are properties of the state, and: [code]sub_states[/code]: states inside it; [code]parallel[/code]: names of
## regions with their states; [code]start[/code]: the name of the sub-state it starts in; [code]end[/code]: an end state.
func state(name: StringName, actions: Array = [], transitions: Variant = {}, options: Dictionary = {}) -> SCMachineState:
	var made := SCMachineState.new()
	made.state_name = name
	made.actions.assign(actions)
	if transitions is Dictionary:
		var ways: Dictionary = transitions
		for event: StringName in ways:
			made.transitions.append(transition(event, ways[event]))
	else:
		made.transitions.assign(transitions)
	made.sub_states.assign(options.get("sub_states", []))
	var regions: Dictionary = options.get("parallel", {})
	for region: StringName in regions:
		made.parallel_states.append(parallel(region, regions[region]))
	if options.has("start"):
		made.start_sub_state = _named(made.sub_states, options["start"])
	made.is_end_state = options.get("end", false)
	_put(made, options, ["sub_states", "parallel", "start", "end"])
	return made


func parallel(name: StringName, states: Array, starts_in: StringName = &"") -> SCMachineParallelState:
	var made := SCMachineParallelState.new()
	made.parallel_name = name
	made.states.assign(states)
	if not starts_in.is_empty():
		made.start_state = _named(states, starts_in)
	return made


func transition(event: StringName, to_state: StringName, store_data_in: StringName = &"") -> SCMachineTransition:
	var made := SCMachineTransition.new()
	made.event = event
	made.to_state = to_state
	made.store_data_in = store_data_in
	return made


## A new one of that class with these properties, such as [code]kind(SCWaitAction, {"seconds_variable": &"pace"})[/code]. One
## that it does not have fails the story.
func kind(of: Variant, settings: Dictionary = {}) -> Resource:
	var made: Resource = of.new()
	_put(made, settings)
	return made


## Options are properties of the variable.
func variable(name: StringName, starts_as: Variant, options: Dictionary = {}) -> SCMachineVariable:
	return kind(SCMachineVariable, {"name": name, "default_value": starts_as}.merged(options, true))


## A variable shared by every machine that declares one of this name.
func global_variable(name: StringName, starts_as: Variant, options: Dictionary = {}) -> SCMachineVariable:
	return variable(name, starts_as, {"is_global": true}.merged(options, true))


func declared_event(name: StringName, options: Dictionary = {}) -> SCMachineEvent:
	return kind(SCMachineEvent, {"event_name": name}.merged(options, true))


## An action that writes down what is called on it. By itself it never finishes and asks for no updates.
func act(name: String) -> Recorder:
	var made := Recorder.new()
	made.said = name
	made.told = noted
	_acts.append(made)
	return made


func wait(seconds: float, options: Dictionary = {}) -> SCWaitAction:
	return kind(SCWaitAction, {"seconds": seconds}.merged(options, true))


func set_var(name: StringName, value: Variant, options: Dictionary = {}) -> SCSetVariableAction:
	return kind(SCSetVariableAction, {"variable_name": name, "value": value}.merged(options, true))


func send(event: StringName, options: Dictionary = {}) -> SCSendEventAction:
	return kind(SCSendEventAction, {"event_name": event}.merged(options, true))


func print_line(text: String, options: Dictionary = {}) -> SCPrintAction:
	return kind(SCPrintAction, {"text": text}.merged(options, true))


## Asks every frame and sends "yes" and "no" when the answer changes. Options are settings of the action.
func watch(asked: SCMachineCondition, options: Dictionary = {}) -> SCCheckAction:
	return kind(SCCheckAction, {
		"condition": asked, "run_mode": SCMachineAction.EVERY_FRAME, "only_when_it_changes": true, "true_event": &"yes", "false_event": &"no",
	}.merged(options, true))


## The node with a box of that size to be hit by, in 2D or 3D as the size says.
func boxed(node: Node, size: Variant) -> Node:
	var shape: Resource = BoxShape3D.new() if size is Vector3 else RectangleShape2D.new()
	shape.set(&"size", size)
	var made: Node = CollisionShape3D.new() if size is Vector3 else CollisionShape2D.new()
	made.set(&"shape", shape)
	node.add_child(made)
	return node


## Keeps track of a machine that came out of a scene file, for the report of a story that fails.
func _follow(made: SCMachine) -> SCMachine:
	var trail := Trail.new()
	made.event_sent.connect(trail.on_event)
	made.state_changed.connect(trail.on_change)
	made.set_meta(&"trail", trail)
	return made


func _declare(made: SCMachine, options: Dictionary) -> void:
	made.variables.assign(_variables_of(options))
	var under: Variant = options.get("under")
	if under is Node:
		made.set_meta(&"under", under)
	_put(made, options, ["name", "initial", "variables", "under"])


func _variables_of(options: Dictionary) -> Array:
	var wanted: Variant = options.get("variables", [])
	if wanted is Array:
		return wanted
	var made := []
	var by_name: Dictionary = wanted
	for name: StringName in by_name:
		made.append(variable(name, by_name[name]))
	return made


func _named(states: Array, name: StringName) -> SCMachineState:
	if name.is_empty():
		return states[0]
	for candidate: SCMachineState in states:
		if candidate != null and candidate.state_name == name:
			return candidate
	push_error("The story names a state that is not there: %s" % name)
	return null


func _put(on: Object, options: Dictionary, but: Array = []) -> void:
	for name: String in options:
		if name not in but:
			if name not in on:
				push_error("The story sets %s, which %s does not have" % [name, on.get_class()])
			on.set(name, options[name])
