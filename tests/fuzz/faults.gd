extends StoryWords
## Plants faults in a design. Each method that begins with [code]plant_[/code] plants one and answers with what it should
## lead to: a warning with these words, a ring that the guard stops, or silence with the reason for it.

const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")

const NOBODY: StringName = Filling.NOBODY
## What no description tells: kinds for which a node that is not there is no fault, or none before a key is pressed.
const MISSES_NO_NODE: Array[StringName] = [&"SCNodeCondition", &"SCEventOnInputAction"]
## Kinds that work with a node of any class, beside those that name a property, a signal or a machine of it.
const TAKES_ANY_NODE: Array[StringName] = [
	&"SCHasChildOfTypeCondition", &"SCIsChildOfCondition", &"SCNodeCondition", &"SCEventOnInputAction", &"SCSendEventAction",
]
## Every way in which states that lead straight back to one another can be left at once.
const RINGS: Array[String] = [
	"of_finished_states", "of_one_state", "of_events", "of_one_state_that_sends_itself_round", "of_events_to_every_machine", "of_global_events",
	"of_conditions", "of_states_to_go_to", "of_previous_states", "through_sub_states", "inside_a_state", "with_a_high_limit", "whose_goal_moves_away",
]


## What is expected of a machine that runs the design.
class Fault:
	extends RefCounted

	var name: String
	## Parts of one warning; empty when nothing is promised.
	var said: PackedStringArray = []
	## The machine that the warning names, when it is not the one that runs the design.
	var of_machine: String = ""
	## Why nothing is said.
	var silent: String = ""
	## Asked of each machine in its first frames, answers whether all is well. May move it, but not out of its first state for good.
	var holds: Callable
	## The event that leads from the first state into states that lead round at once.
	var ring: StringName


var _of: Design


func _init(of: Design) -> void:
	_of = of


## All that there are to plant.
func names() -> PackedStringArray:
	var listed: PackedStringArray = []
	for method in get_method_list():
		if (method["name"] as String).begins_with("plant_"):
			listed.append((method["name"] as String).trim_prefix("plant_"))
	for ring in RINGS:
		listed.append("a_ring_" + ring)
	return listed


func plant(fault: String) -> Fault:
	var planted: Fault = call("plant_" + fault) if has_method("plant_" + fault) else _plant_ring(fault)
	planted.name = fault
	return planted


static func is_in(machine: SCMachine, name: StringName) -> bool:
	var at: SCMachineState = machine.current_state
	return at != null and at.state_name == name


## Goes there, answers whether just these states are active then, and comes back.
static func goes(machine: SCMachine, to: StringName, active: Array) -> bool:
	machine.go_to(to)
	var got := machine.active_states().map(func(at: SCMachineState) -> StringName: return at.state_name)
	machine.go_to("Start")
	return got == active


static func _says(parts: PackedStringArray) -> Fault:
	var made := Fault.new()
	made.said = parts
	return made


static func _silent(why: String, check: Callable = Callable()) -> Fault:
	var made := Fault.new()
	made.silent = why
	made.holds = check
	return made


# Names.

func plant_a_destination_that_is_not_there() -> Fault:
	_lead(&"lost", &"Nowhere")
	return _silent("the graph tells it from the list of missing names", func(machine: SCMachine) -> bool:
		machine.send_event("lost")
		return is_in(machine, &"Start") and _of.design.missing_state_names().has("Nowhere"))


func plant_a_transition_without_an_event() -> Fault:
	_lead(&"", &"Answered")
	return _silent("nothing is ever sent that could take it", func(machine: SCMachine) -> bool:
		machine.send_event("")
		return is_in(machine, &"Start"))


func plant_a_transition_without_a_destination() -> Fault:
	_lead(&"astray", &"")
	return _silent("the graph shows it as leading nowhere, and so it does but for a state without a name", func(machine: SCMachine) -> bool:
		machine.send_event("astray")
		return is_in(machine, &"Start") or is_in(machine, &""))


func plant_a_state_without_a_name() -> Fault:
	_add(_of.state(&"", [wait(0.01)], {&"FINISHED": &"", &"go": &"Start"}))
	return _silent("it can be started in, and no transition can name it")


func plant_two_states_of_one_name() -> Fault:
	var second := _of.state(&"Answered")
	_add(second)
	return _silent("the first of them is meant", func(machine: SCMachine) -> bool:
		return machine.find_state("Answered") != second and machine.find_state("Answered") != null)


func plant_variables_without_a_name_and_of_one_name() -> Fault:
	_of.design.variables.append_array([variable(&"", 1), variable(&"level", "text"), variable(&"level", null)])
	return _silent("the last of them is what the machine holds")


func plant_a_system_event_that_its_node_never_sends() -> Fault:
	_lead(&"body_entered", &"Answered")
	return _says(["waits for body_entered"])


func plant_a_state_to_go_to_that_is_not_there() -> Fault:
	return _kind(&"SCGoToStateAction", {"state_name": NOBODY}, ["Go To State on", "no state called nobody"])


func plant_a_condition_about_a_variable_that_is_not_there() -> Fault:
	return _kind(&"SCVariableCondition", {"variable_name": NOBODY}, ["Variable on", "no variable called nobody"])


# Where to start.

func plant_no_state_to_start_in() -> Fault:
	_of.design.initial_state = null
	return _says(["has no state to start in"])


func plant_a_state_to_start_in_from_elsewhere() -> Fault:
	_of.design.initial_state = _of.state(&"Elsewhere", [wait(60.0)])
	return _silent("it becomes one more state of the machine", func(machine: SCMachine) -> bool: return is_in(machine, &"Elsewhere"))


func plant_sub_states_that_start_elsewhere() -> Fault:
	var foreign := _of.state(&"Foreign")
	var outer := _of.state(&"Outer", [], {&"FINISHED": &"Start"}, {"sub_states": [_of.state(&"Inner", [wait(60.0)])]})
	var split := _of.state(&"Split", [], {}, {"parallel": {"A": [_of.state(&"In A", [wait(60.0)])]}})
	outer.start_sub_state = foreign
	split.parallel_states[0].start_state = foreign
	_add(outer)
	_add(split)
	return _silent("the first in the list is taken", func(machine: SCMachine) -> bool:
		return goes(machine, &"Outer", [&"Outer", &"Inner"]) and goes(machine, &"Split", [&"Split", &"In A"]))


# Null elements.

func plant_holes_in_every_list() -> Fault:
	var holed := _of.state(&"Holed", [null, wait(60.0), null], [null, transition(&"go", &"Start")])
	var split := _of.state(&"Split Holed", [], {}, {"parallel": {"A": [null, _of.state(&"In Holed", [wait(60.0)])], "B": [null]}})
	holed.sub_states.assign([null, _of.state(&"Sub Holed", [wait(60.0)]), null])
	split.parallel_states.insert(0, null)
	_add(null)
	_add(holed)
	_add(split)
	_of.first.transitions.insert(0, null)
	_of.first.actions.insert(0, null)
	_of.design.variables.insert(0, null)
	_of.design.events.insert(0, null)
	_of.design.notes.append(null)
	return _silent("holes are passed over", func(machine: SCMachine) -> bool:
		return goes(machine, &"Holed", [&"Holed", &"Sub Holed"]) and goes(machine, &"Split Holed", [&"Split Holed", &"In Holed"]))


func plant_a_list_with_nothing_in_any_setting() -> Fault:
	_kind(&"SCSequenceAction", {"events": [&"", &""] as Array[StringName]})
	_kind(&"SCSwitchAction", {"variable_name": &"whole", "cases": [null, null]})
	return _kind(&"SCRandomEventAction", {"events": [&""] as Array[StringName], "weights": [null]}, ["Random Event on", "names no event"])


# Resources that hold one another.

func plant_a_state_inside_itself() -> Fault:
	var own := _of.state(&"Own", [wait(60.0)])
	own.sub_states = [own]
	var beside := _of.state(&"Beside", [wait(60.0)])
	beside.parallel_states = [parallel("Self", [beside])]
	_add(own)
	_add(beside)
	return _silent("it is entered once", func(machine: SCMachine) -> bool:
		return goes(machine, &"Own", [&"Own"]) and goes(machine, &"Beside", [&"Beside"]))


func plant_states_inside_each_other() -> Fault:
	var over := _of.state(&"Over", [wait(60.0)])
	var under := _of.state(&"Under", [wait(60.0)])
	over.sub_states = [under]
	under.sub_states = [over]
	_add(over)
	return _silent("each is entered once", func(machine: SCMachine) -> bool:
		machine.go_to("Over")
		var both := machine.active_states().size() <= 2 and machine.is_running()
		return goes(machine, &"Start", [&"Start"]) and both)


func plant_a_state_in_two_places() -> Fault:
	var shared := _of.state(&"Shared", [wait(60.0)])
	_add(_of.state(&"One", [], {}, {"sub_states": [shared]}))
	_add(_of.state(&"Two", [], {}, {"sub_states": [shared]}))
	_add(shared)
	return _silent("it runs wherever it is entered", func(machine: SCMachine) -> bool:
		return goes(machine, &"One", [&"One", &"Shared"]) and goes(machine, &"Two", [&"Two", &"Shared"]))


func plant_actions_shared_between_states() -> Fault:
	var left := _of.state(&"Left", [wait(0.01), wait(60.0)], {&"go": &"Right"})
	var right := _of.state(&"Right")
	right.actions = left.actions
	right.transitions = left.transitions
	_add(left)
	_add(right)
	return _silent("what a machine remembers of an action lies in the machine", func(machine: SCMachine) -> bool:
		return goes(machine, &"Left", [&"Left"]) and goes(machine, &"Right", [&"Right"]))


func plant_a_template_that_runs_itself() -> Fault:
	var fault := _kind(&"SCRunTemplateAction", {"template": _of.design}, ["Run Template on", "inside one another"])
	fault.of_machine = "TemplateRunning"
	return fault


func plant_limits_that_name_one_another() -> Fault:
	_of.design.variables.append_array([
		variable(&"a", 1.0, {"never_below": "b", "never_above": "c"}), variable(&"b", 2.0, {"never_below": "c", "never_above": "a"}),
		variable(&"c", 3.0, {"never_below": "a", "never_above": "b"}), variable(&"d", 4, {"never_below": "d", "never_above": "d"}),
		variable(&"e", 5, {"never_below": "nobody", "never_above": "words", "starts": SCMachineVariable.FULL}),
		variable(&"f", 6, {"never_below": "nan", "never_above": "-inf", "starts": SCMachineVariable.AT_A_SHARE, "share": NAN}),
	])
	return _silent("they follow one another so far and no further", func(machine: SCMachine) -> bool:
		for name: StringName in [&"a", &"b", &"c", &"d", &"e", &"f"]:
			for value: float in [-1e300, INF, 0.5]:
				machine.set_value(name, value)
				if not machine.get_value(name) is float and not machine.get_value(name) is int:
					return false
		return true)


func plant_watchers_that_write_what_they_watch() -> Fault:
	for pair: Array in [[&"whole", &"level"], [&"level", &"whole"]]:
		var condition := SCVariableChangedCondition.new()
		condition.variable_name = pair[0]
		_kind(&"SCCheckAction", {"condition": condition, "true_event": &"noticed", "run_mode": SCMachineAction.EVERY_FRAME})
		_kind(&"SCSetVariableAction", {"variable_name": pair[1], "operation": SCSetVariableAction.ADD, "value": 1, "run_mode": SCMachineAction.EVERY_FRAME})
	_lead(&"noticed", &"Start")
	return _silent("each is told of a change once a frame", func(machine: SCMachine) -> bool:
		machine.set_value("level", 7)
		return is_in(machine, &"Start"))


# Values.

func plant_a_loop_limit_that_is_none() -> Fault:
	_of.design.loop_increment_limit = _of.dice.pick([0, -1, -9223372036854775807])
	return _silent("one state at a time is always let through", func(machine: SCMachine) -> bool:
		machine.send_event("answer")
		var answered := is_in(machine, &"Answered")
		machine.send_event("again")
		return answered and is_in(machine, &"Start"))


func plant_a_variable_that_starts_with_a_node_that_is_not_there() -> Fault:
	_of.design.variables.append(variable(&"guard", null, {"starting_node": ^"../Nowhere"}))
	return _says(["Variable guard on", "starts with no node", "Nowhere"])


func plant_a_list_of_nodes_that_are_not_there() -> Fault:
	_of.design.variables.append(variable(&"guards", [^"../Plain", ^"../Nowhere", 3], {"items_are": SCMachineVariable.NODES}))
	return _says(["Item 2 of list guards on", "holds no node", "Nowhere"])


func plant_a_value_that_its_variable_cannot_take() -> Fault:
	return _kind(&"SCSetVariableAction", {"variable_name": &"words", "operation": SCSetVariableAction.MULTIPLY, "value": 2}, ["Set Variable on", "so it changed nothing"])


func plant_odd_values_in_every_setting_of_a_kind() -> Fault:
	var kind := _of.next_kind()
	var made := Filling.made_of(kind)
	for property: Dictionary in Filling.open_of(kind):
		_of.filling.put_odd(made, property)
	_add(_of.state(&"Odd", [Filling.action_with(made), wait(60.0)]))
	return _silent("a setting of a type keeps it, and what one of any type holds may be right", func(machine: SCMachine) -> bool:
		machine.go_to("Odd")
		return is_instance_valid(machine))


func plant_odd_values_in_the_design() -> Fault:
	var odd := _of.state(&"Odd Design", [wait(60.0)])
	_add(odd)
	_lead(&"go", &"Start")
	_of.design.variables.append(variable(&"odd", 1))
	_of.design.events.append(declared_event(&"odd"))
	_of.design.notes.append(SCMachineNote.new())
	odd.parallel_states.append(parallel(&"Odd Region", []))
	for one: Resource in [odd, odd.parallel_states[0], _of.first.transitions[-1], _of.design.variables[-1], _of.design.events[-1], _of.design.notes[-1], _of.design]:
		for property: Dictionary in Filling.stored_of(one.get_class()):
			# These have faults of their own.
			if property["name"] not in ["state_name", "initial_state", "loop_increment_limit"]:
				_of.filling.put_odd(one, property)
	return _silent("a setting of a type keeps it, and a variable may hold anything", func(machine: SCMachine) -> bool:
		machine.go_to("Odd Design")
		return is_in(machine, &"Odd Design"))


# Kinds.

## What its line asks to be picked, a kind asks for when it runs, too.
func plant_a_kind_with_nothing_filled_in() -> Fault:
	var kind := _of.next_kind()
	_plant(Filling.made_of(kind))
	return _says([_palette(kind) + " on"]) if _holes(Filling.made_of(kind)) > 0 else _silent("%s can do with nothing filled in" % kind)


func plant_a_path_to_nowhere() -> Fault:
	return _plant_path(^"../Nowhere", func(kind: StringName, _path: String) -> bool: return kind in MISSES_NO_NODE)


func plant_a_path_to_a_node_of_the_wrong_class() -> Fault:
	return _plant_path(^"../Plain", func(kind: StringName, path: String) -> bool:
		var names := Filling.open_of(kind).map(func(property: Dictionary) -> String: return property["name"])
		return kind in TAKES_ANY_NODE or path == "machine_path" or "property" in names or "signal_name" in names)


func plant_a_setting_that_reads_a_variable_of_the_wrong_type() -> Fault:
	var row := _next_readable([TYPE_BOOL, TYPE_INT, TYPE_FLOAT, TYPE_VECTOR2, TYPE_VECTOR3, TYPE_COLOR])
	return _kind(row[0], {"%s_variable" % row[1]: &"words"}, [_palette(row[0]).replace(" ", "") + " on", "cannot use words for"])


func plant_a_setting_that_reads_a_variable_that_is_not_there() -> Fault:
	var row := _next_readable(range(TYPE_MAX))
	_kind(row[0], {"%s_variable" % row[1]: NOBODY})
	return _silent("the value typed in stands for it")


## Into a kind that shows such a setting, the rest filled in as far as its line asks for it.
func _plant_path(to: NodePath, is_no_fault: Callable) -> Fault:
	while true:
		var kind := _of.next_kind()
		for property: Dictionary in Filling.open_of(kind):
			var path: String = property["name"]
			if property["type"] != TYPE_NODE_PATH or is_no_fault.call(kind, path) or _of.dice.one_in(3):
				continue
			for number in Design.rehearsed.get(kind, PackedInt64Array([1])):
				var made := Filling.made_of(kind)
				var filling := Design.of_filling(kind, number)
				var well := Filling.made_of(kind)
				filling.fill(well)
				_fill_in(made, well, func(one: Dictionary) -> bool: return one["hint"] == PROPERTY_HINT_ENUM and not _shows(made, path))
				made.set(path, to)
				_fill_in(made, well, func(one: Dictionary) -> bool: return one["type"] != TYPE_NODE_PATH and _holes(made) > 0 and one["name"] != "group")
				if _shows(made, path):
					for name in filling.declared:
						_of.design.variables.append(variable(name, filling.declared[name]))
					_plant(made)
					return _says([_palette(kind) + " on", to.get_name(1)])
	return null


func _fill_in(made: Resource, like: Resource, where: Callable) -> void:
	for property: Dictionary in Filling.open_of(made.get_class()):
		if where.call(property):
			made.set(property["name"], like.get(property["name"]))


static func _shows(made: Resource, setting: String) -> bool:
	return made.get_property_list().any(func(property: Dictionary) -> bool: return property["name"] == setting and property["usage"] & PROPERTY_USAGE_EDITOR)


## How many settings its line asks for.
static func _holes(made: Resource) -> int:
	return (made.call(&"shown_summary") as String).count(SCMachineAction.not_picked())


## The next kind with a setting of one of these types that can be read from a variable, and the setting.
func _next_readable(types: Array) -> Array:
	while true:
		var kind := _of.next_kind()
		var readable := SCMachineAction.can_be_read_from_a_variable_of(Filling.made_of(kind))
		var fitting := Filling.open_of(kind).filter(func(property: Dictionary) -> bool:
			return readable.has(StringName(property["name"])) and property["type"] in types)
		if not fitting.is_empty():
			return [kind, (_of.dice.pick(fitting) as Dictionary)["name"]]
	return []


func _kind(kind: StringName, settings: Dictionary, said: PackedStringArray = []) -> Fault:
	_plant(_made_with(kind, settings))
	return _says(said)


## Where it is entered at once, whatever becomes of the rest.
func _plant(made: Resource) -> void:
	_of.first.actions.insert(0, Filling.action_with(made))


func _made_with(kind: StringName, settings: Dictionary) -> Resource:
	var made := Filling.made_of(kind)
	_put(made, settings)
	return made


func _add(made: SCMachineState) -> void:
	_of.design.states.append(made)


func _lead(event: StringName, to: StringName) -> void:
	_of.first.transitions.append(transition(event, to))


static func _palette(kind: StringName) -> String:
	return String(kind).trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition").capitalize()


# Rings.

func plant_a_ring_that_gets_somewhere() -> Fault:
	var count := _made_with(&"SCRepeatAction", {"times": 20_000, "again_event": &"round", "done_event": &"counted", "progress_variable": &"counted"})
	_add(_of.state(&"Count", [count], {&"round": &"Count On", &"counted": &"Counted"}))
	_add(_of.state(&"Count On", [], {&"FINISHED": &"Count"}))
	_add(_of.state(&"Counted", [], {&"again": &"Start"}))
	_lead(&"count", &"Count")
	return _silent("each time round is a step on", func(machine: SCMachine) -> bool:
		machine.send_event("count")
		var counted := is_in(machine, &"Counted")
		machine.send_event("again")
		return counted)


## The states of a ring, one after another: the action that leads on at once, when one is needed, or what is inside the state.
func _ring_states(fault: String) -> Array:
	var shout := {"event_name": &"round", "reach": SCSendEventAction.EVERY_MACHINE}
	match fault:
		"a_ring_of_one_state":
			return [{}]
		"a_ring_of_events", "a_ring_of_global_events":
			return [_made_with(&"SCSendEventAction", {"event_name": &"round"}), _made_with(&"SCSendEventAction", {"event_name": &"round"})]
		"a_ring_of_one_state_that_sends_itself_round":
			return [_made_with(&"SCSequenceAction", {"events": [&"round"] as Array[StringName], "progress_variable": NOBODY})]
		"a_ring_of_events_to_every_machine":
			return [_made_with(&"SCSendEventAction", shout), _made_with(&"SCSendEventAction", shout)]
		"a_ring_of_conditions":
			return [_made_with(&"SCCheckAction", {"condition": SCCompareCondition.new(), "true_event": &"round", "run_mode": SCMachineAction.EVERY_FRAME}), {}]
		"a_ring_of_states_to_go_to":
			return [_made_with(&"SCGoToStateAction", {"state_name": &"Ring 1"}), _made_with(&"SCGoToStateAction", {"state_name": &"Ring 0"})]
		"a_ring_of_previous_states":
			return [{}, SCGoToPreviousStateAction.new()]
		"a_ring_through_sub_states":
			return [{"sub_states": [_of.state(&"Inside", [], {}, {"end": true})]}, {}]
		"a_ring_inside_a_state":
			var inside: Array = [_of.state(&"Round A", [], {&"FINISHED": &"Round B"}), _of.state(&"Round B", [], {&"FINISHED": &"Round A"})]
			return [{"parallel": {"A": [_of.state(&"Still", [wait(60.0)])], "B": inside}}]
		"a_ring_whose_goal_moves_away":
			# It comes to rest in the end, so that a guard that misses it is told of.
			_of.design.variables.append(variable(&"goal", 1, {"never_above": "200000"}))
			var further := {"variable_name": &"goal", "operation": SCSetVariableAction.ADD, "value": 1}
			return [_made_with(&"SCRepeatAction", {"times_variable": &"goal", "again_event": &"round"}), _made_with(&"SCSetVariableAction", further)]
	return [{}, {}, {}]


func _plant_ring(fault: String) -> Fault:
	if fault == "a_ring_with_a_high_limit":
		_of.design.loop_increment_limit = _of.dice.pick([1000, 30_000, 9223372036854775807])
	if fault == "a_ring_of_global_events":
		_of.design.events.append(declared_event(&"round", {"is_global": true}))
	var states := _ring_states(fault)
	for i in states.size():
		var to := "Ring %d" % ((i + 1) % states.size())
		var actions: Array = [states[i]] if states[i] is Resource else []
		_add(_of.state("Ring %d" % i, actions, {&"FINISHED": to, &"round": to}, {} if states[i] is Resource else states[i]))
	_lead(&"ring", &"Ring 0")
	var made := Fault.new()
	made.ring = &"ring"
	return made
