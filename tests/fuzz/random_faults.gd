extends StoryWords
## Plants faults in a design. Each method that begins with [code]plant_[/code] plants one and answers with what it should
## lead to: a warning with these words, a ring that the guard stops, or silence with the reason for it.

const Design := preload("res://tests/fuzz/random_design.gd")
const Settings := preload("res://tests/fuzz/random_settings.gd")
const Fault := preload("res://tests/fuzz/random_fault.gd")

const NOBODY: StringName = Settings.NOBODY
## Kinds that are content with nothing filled in: all of their settings start as something useful, which the scene or the
## design has, or may be left out.
const CONTENT_BARE: Array[StringName] = [
	&"SCWaitAction", &"SCCancelDelayedEventsAction", &"SCChanceCondition", &"SCCompareCondition", &"SCDrawDebugAction", &"SCGetInputVectorAction",
	&"SCForEachAction", &"SCInputCondition", &"SCMoveToAction", &"SCNextFrameEventAction", &"SCNodeCondition", &"SCOnScreenCondition", &"SCPlayingCondition",
	&"SCPointerOverUiCondition",
	&"SCPrintAction", &"SCPunchAction", &"SCRandomSeedAction", &"SCRepeatAction", &"SCRotateAction", &"SCRotateToAction", &"SCScaleToAction",
	&"SCSetTimeScaleAction", &"SCSetVisibleAction", &"SCTimeoutCondition", &"SCTranslateAction",
]
## What else a kind needs before it looks for the node of that setting.
const BEFORE_THE_NODE: Dictionary[StringName, Dictionary] = {
	&"SCSendEventAction": {"event_name": &"unheard", "reach": SCSendEventAction.A_NODE},
	&"SCGetPropertyAction": {"property": "visible", "store_in": &"flag"},
	&"SCInStateCondition": {"state_name": &"S0"},
	&"SCDrawDebugAction": {"shape": SCDrawDebugAction.LINE},
}
## One asks whether there is a node, so that there is none is no fault; the other looks for its area as the key is pressed.
const MISSES_NO_NODE: Array[StringName] = [&"SCNodeCondition", &"SCEventOnInputAction"]
## Kinds that work with a node of any class, or with the machine of one above it.
const TAKES_ANY_NODE: Array[StringName] = [
	&"SCEnableMachineAction", &"SCForwardEventsAction", &"SCGetStateAction", &"SCMachineVariableAction", &"SCInStateCondition", &"SCSendEventAction",
	&"SCEventOnSignalAction", &"SCEventOnInputAction", &"SCHasChildOfTypeCondition", &"SCIsChildOfCondition", &"SCNodeCondition", &"SCPropertyCondition",
	&"SCSetPropertyAction", &"SCGetPropertyAction",
]

var _of: Design


func _init(of: Design) -> void:
	_of = of


## All that there are to plant.
func names() -> PackedStringArray:
	var listed: PackedStringArray = []
	for method in get_method_list():
		if (method["name"] as String).begins_with("plant_"):
			listed.append((method["name"] as String).trim_prefix("plant_"))
	return listed


func plant(fault: String) -> Fault:
	var planted: Fault = call("plant_" + fault)
	planted.name = fault
	return planted


# Names.

func plant_a_destination_that_is_not_there() -> Fault:
	_lead(&"lost", &"Nowhere")
	return Fault.is_silent("the graph tells it from the list of missing names", func(machine: SCMachine) -> bool:
		machine.send_event("lost")
		return is_in(machine, &"Start") and _of.design.missing_state_names().has("Nowhere"))


func plant_a_transition_without_an_event() -> Fault:
	_lead(&"", &"Answered")
	return Fault.is_silent("nothing is ever sent that could take it", func(machine: SCMachine) -> bool:
		machine.send_event("")
		return is_in(machine, &"Start"))


func plant_a_transition_without_a_destination() -> Fault:
	_lead(&"astray", &"")
	return Fault.is_silent("the graph shows it as leading nowhere, and so it does but for a state without a name", func(machine: SCMachine) -> bool:
		machine.send_event("astray")
		return is_in(machine, &"Start") or is_in(machine, &""))


func plant_a_state_without_a_name() -> Fault:
	_add(_of.state(&"", [wait(0.01)], {&"FINISHED": &"", &"go": &"Start"}))
	return Fault.is_silent("it can be started in, and no transition can name it")


func plant_two_states_of_one_name() -> Fault:
	var second := _of.state(&"Answered")
	_add(second)
	return Fault.is_silent("the first of them is meant", func(machine: SCMachine) -> bool:
		return machine.find_state("Answered") != second and machine.find_state("Answered") != null)


func plant_variables_without_a_name_and_of_one_name() -> Fault:
	_of.design.variables.append_array([variable(&"", 1), variable(&"level", "text"), variable(&"level", null)])
	return Fault.is_silent("the last of them is what the machine holds")


func plant_a_system_event_that_its_node_never_sends() -> Fault:
	_lead(&"body_entered", &"Answered")
	return Fault.says(["waits for body_entered"])


func plant_a_state_to_go_to_that_is_not_there() -> Fault:
	return _kind(&"SCGoToStateAction", {"state_name": NOBODY}, ["Go To State on", "no state called nobody"])


func plant_a_question_about_a_variable_that_is_not_there() -> Fault:
	return _kind(&"SCVariableCondition", {"variable_name": NOBODY}, ["Variable on", "no variable called nobody"])


# Where to start.

func plant_no_state_to_start_in() -> Fault:
	_of.design.initial_state = null
	return Fault.says(["has no state to start in"])


func plant_a_state_to_start_in_from_elsewhere() -> Fault:
	_of.design.initial_state = _of.state(&"Elsewhere", [wait(60.0)])
	return Fault.is_silent("it becomes one more state of the machine", func(machine: SCMachine) -> bool: return is_in(machine, &"Elsewhere"))


func plant_sub_states_that_start_elsewhere() -> Fault:
	var foreign := _of.state(&"Foreign")
	var outer := _of.state(&"Outer", [], {&"FINISHED": &"Start"}, {"sub_states": [_of.state(&"Inner", [wait(60.0)])]})
	var split := _of.state(&"Split", [], {}, {"parallel": {"A": [_of.state(&"In A", [wait(60.0)])]}})
	outer.start_sub_state = foreign
	split.parallel_states[0].start_state = foreign
	_add(outer)
	_add(split)
	return Fault.is_silent("the first in the list is taken", func(machine: SCMachine) -> bool:
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
	return Fault.is_silent("holes are passed over", func(machine: SCMachine) -> bool:
		return goes(machine, &"Holed", [&"Holed", &"Sub Holed"]) and goes(machine, &"Split Holed", [&"Split Holed", &"In Holed"]))


func plant_a_list_with_nothing_in_any_setting() -> Fault:
	_plant_action(&"SCSequenceAction", {"events": [&"", &""] as Array[StringName]})
	_plant_action(&"SCSwitchAction", {"variable_name": &"whole", "cases": [null, null]})
	return _kind(&"SCRandomEventAction", {"events": [&""] as Array[StringName], "weights": [null]}, ["Random Event on", "names no event"])


# Resources that hold one another.

func plant_a_state_inside_itself() -> Fault:
	var own := _of.state(&"Own", [wait(60.0)])
	own.sub_states = [own]
	var beside := _of.state(&"Beside", [wait(60.0)])
	beside.parallel_states = [parallel("Self", [beside])]
	_add(own)
	_add(beside)
	return Fault.is_silent("it is entered once", func(machine: SCMachine) -> bool:
		return goes(machine, &"Own", [&"Own"]) and goes(machine, &"Beside", [&"Beside"]))


func plant_states_inside_each_other() -> Fault:
	var over := _of.state(&"Over", [wait(60.0)])
	var under := _of.state(&"Under", [wait(60.0)])
	over.sub_states = [under]
	under.sub_states = [over]
	_add(over)
	return Fault.is_silent("each is entered once", func(machine: SCMachine) -> bool:
		machine.go_to("Over")
		var both := machine.active_states().size() <= 2 and machine.is_running()
		return goes(machine, &"Start", [&"Start"]) and both)


func plant_a_state_in_two_places() -> Fault:
	var shared := _of.state(&"Shared", [wait(60.0)])
	_add(_of.state(&"One", [], {}, {"sub_states": [shared]}))
	_add(_of.state(&"Two", [], {}, {"sub_states": [shared]}))
	_add(shared)
	return Fault.is_silent("it runs wherever it is entered", func(machine: SCMachine) -> bool:
		return goes(machine, &"One", [&"One", &"Shared"]) and goes(machine, &"Two", [&"Two", &"Shared"]))


func plant_actions_shared_between_states() -> Fault:
	var left := _of.state(&"Left", [wait(0.01), wait(60.0)], {&"go": &"Right"})
	var right := _of.state(&"Right")
	right.actions = left.actions
	right.transitions = left.transitions
	_add(left)
	_add(right)
	return Fault.is_silent("what a machine remembers of an action lies in the machine", func(machine: SCMachine) -> bool:
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
	return Fault.is_silent("they follow one another so far and no further", func(machine: SCMachine) -> bool:
		for name: StringName in [&"a", &"b", &"c", &"d", &"e", &"f"]:
			for value: float in [-1e300, INF, 0.5]:
				machine.set_value(name, value)
				if not machine.get_value(name) is float and not machine.get_value(name) is int:
					return false
		return true)


func plant_watchers_that_write_what_they_watch() -> Fault:
	for pair: Array in [[&"whole", &"level"], [&"level", &"whole"]]:
		var question := SCVariableChangedCondition.new()
		question.variable_name = pair[0]
		_plant_action(&"SCCheckAction", {"condition": question, "true_event": &"noticed", "run_mode": SCMachineAction.EVERY_FRAME})
		_plant_action(&"SCSetVariableAction", {"variable_name": pair[1], "operation": SCSetVariableAction.ADD, "value": 1, "run_mode": SCMachineAction.EVERY_FRAME})
	_lead(&"noticed", &"Start")
	return Fault.is_silent("each is told of a change once a frame", func(machine: SCMachine) -> bool:
		machine.set_value("level", 7)
		return is_in(machine, &"Start"))


# Values.

func plant_a_loop_limit_that_is_none() -> Fault:
	_of.design.loop_increment_limit = _of.dice.pick([0, -1, -9223372036854775807])
	return Fault.is_silent("one state at a time is always let through", func(machine: SCMachine) -> bool:
		machine.send_event("answer")
		var answered := is_in(machine, &"Answered")
		machine.send_event("again")
		return answered and is_in(machine, &"Start"))


func plant_a_variable_that_starts_with_a_node_that_is_not_there() -> Fault:
	_of.design.variables.append(variable(&"guard", null, {"starting_node": ^"../Nowhere"}))
	return Fault.says(["Variable guard on", "starts with no node", "Nowhere"])


func plant_a_list_of_nodes_that_are_not_there() -> Fault:
	_of.design.variables.append(variable(&"guards", [^"../Plain", ^"../Nowhere", 3], {"items_are": SCMachineVariable.NODES}))
	return Fault.says(["Item 2 of list guards on", "holds no node", "Nowhere"])


func plant_a_value_that_its_variable_cannot_take() -> Fault:
	return _kind(&"SCSetVariableAction", {"variable_name": &"words", "operation": SCSetVariableAction.MULTIPLY, "value": 2}, ["Set Variable on", "so it changed nothing"])


func plant_odd_values_in_every_setting_of_a_kind() -> Fault:
	var kind := _of.settings.next_kind()
	var made := Settings.made_of(kind)
	for property: Dictionary in Settings.settings_of(kind):
		if not Settings.LEFT_ALONE.get(kind, {}).has(property["name"]) and property["name"] != "disabled":
			_of.settings.put_odd(made, property)
	_add(_of.state(&"Odd", [Settings.asking(made) if made is SCMachineCondition else made as SCMachineAction, wait(60.0)]))
	return Fault.is_silent("a setting of a type keeps it, and what one of any type holds may be right", func(machine: SCMachine) -> bool:
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
		for property: Dictionary in Settings.settings_of(one.get_class()):
			# These have faults of their own.
			if property["name"] not in ["state_name", "initial_state", "loop_increment_limit"]:
				_of.settings.put_odd(one, property)
	return Fault.is_silent("a setting of a type keeps it, and a variable may hold anything", func(machine: SCMachine) -> bool:
		machine.go_to("Odd Design")
		return is_in(machine, &"Odd Design"))


# Kinds.

func plant_a_kind_with_nothing_filled_in() -> Fault:
	var kind := _of.settings.next_kind()
	if kind in CONTENT_BARE:
		_plant_action(kind, {})
		return Fault.is_silent("%s needs nothing filled in" % kind)
	return _kind(kind, {}, [_palette(kind) + " on"])


func plant_a_path_to_nowhere() -> Fault:
	var row := _next_setting(_is_path.bind(MISSES_NO_NODE))
	var filled: Dictionary = BEFORE_THE_NODE.get(row[0], {}).duplicate()
	filled[row[1]] = ^"../Nowhere"
	return _kind(row[0], filled, [_palette(row[0]) + " on", "Nowhere"])


func plant_a_path_to_a_node_of_the_wrong_class() -> Fault:
	var row := _next_setting(_is_path.bind(TAKES_ANY_NODE))
	var filled: Dictionary = BEFORE_THE_NODE.get(row[0], {}).duplicate()
	filled[row[1]] = ^"../Plain"
	return _kind(row[0], filled, [_palette(row[0]) + " on", "Plain"])


func plant_a_setting_that_reads_a_variable_of_the_wrong_type() -> Fault:
	var row := _next_setting(func(_kind_of: StringName, property: Dictionary) -> bool:
		return property["type"] in [TYPE_BOOL, TYPE_INT, TYPE_FLOAT, TYPE_VECTOR2, TYPE_VECTOR3, TYPE_COLOR])
	return _kind(row[0], {"%s_variable" % row[1]: &"words"}, [_palette(row[0]).replace(" ", "") + " on", "cannot use words for"])


func plant_a_setting_that_reads_a_variable_that_is_not_there() -> Fault:
	var row := _next_setting(func(_kind_of: StringName, _property: Dictionary) -> bool: return true)
	_plant_action(row[0], {"%s_variable" % row[1]: NOBODY})
	return Fault.is_silent("the value typed in stands for it")


func _is_path(kind: StringName, property: Dictionary, but_of: Array[StringName]) -> bool:
	return property["type"] == TYPE_NODE_PATH and kind not in but_of


## The next kind with such a setting, and one of these that can be read from a variable.
func _next_setting(fits: Callable) -> Array:
	while true:
		var kind := _of.settings.next_kind()
		var readable := SCMachineAction.can_be_read_from_a_variable_of(Settings.made_of(kind))
		var fitting := Settings.settings_of(kind).filter(func(property: Dictionary) -> bool:
			return readable.has(StringName(property["name"])) and fits.call(kind, property))
		if not fitting.is_empty():
			return [kind, (_of.dice.pick(fitting) as Dictionary)["name"]]
	return []


func _kind(kind: StringName, settings: Dictionary, said: PackedStringArray) -> Fault:
	_plant_action(kind, settings)
	return Fault.says(said)


## Where it is entered at once, whatever becomes of the rest.
func _plant_action(kind: StringName, settings: Dictionary) -> void:
	var made := Settings.made_of(kind)
	_put(made, settings)
	_of.first.actions.insert(0, Settings.asking(made) if made is SCMachineCondition else made as SCMachineAction)


func _add(made: SCMachineState) -> void:
	_of.design.states.append(made)


func _lead(event: StringName, to: StringName) -> void:
	_of.first.transitions.append(transition(event, to))


static func _palette(kind: StringName) -> String:
	return String(kind).trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition").capitalize()


static func is_in(machine: SCMachine, name: StringName) -> bool:
	var at: SCMachineState = machine.current_state
	return at != null and at.state_name == name


## Goes there, answers whether just these states are active then, and comes back.
static func goes(machine: SCMachine, to: StringName, active: Array) -> bool:
	machine.go_to(to)
	var got := machine.active_states().map(func(at: SCMachineState) -> StringName: return at.state_name)
	machine.go_to("Start")
	return got == active
