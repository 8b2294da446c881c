extends StoryWords
## Plants faults in a design, and tells what each should lead to: a warning with certain words, a ring that the guard stops, or
## silence, for a reason.

const Design := preload("res://tests/fuzz/design.gd")
const Filling := preload("res://tests/fuzz/filling.gd")

## All that there are to plant.
const NAMES: Array[String] = [
	"a_destination_that_is_not_there", "a_transition_without_an_event", "a_transition_without_a_destination", "a_state_without_a_name",
	"two_states_of_one_name", "variables_without_a_name_and_of_one_name", "a_system_event_that_its_node_never_sends",
	"a_state_to_go_to_that_is_not_there", "a_condition_about_a_variable_that_is_not_there", "no_state_to_start_in",
	"a_state_to_start_in_from_elsewhere", "sub_states_that_start_elsewhere", "holes_in_every_list", "a_list_with_nothing_in_any_setting",
	"a_state_inside_itself", "states_inside_each_other", "a_state_in_two_places", "actions_shared_between_states", "a_template_that_runs_itself",
	"limits_that_name_one_another", "watchers_that_write_what_they_watch", "a_loop_limit_that_is_none",
	"a_variable_that_starts_with_a_node_that_is_not_there", "a_list_of_nodes_that_are_not_there", "a_value_that_its_variable_cannot_take",
	"odd_values_in_every_setting_of_a_kind", "odd_values_in_the_design", "a_kind_with_nothing_filled_in", "a_path_to_nowhere",
	"a_path_to_a_node_of_the_wrong_class", "a_setting_that_reads_a_variable_of_the_wrong_type",
	"a_setting_that_reads_a_variable_that_is_not_there", "a_ring_that_gets_somewhere",
	"a_ring_of_finished_states", "a_ring_of_one_state", "a_ring_of_events", "a_ring_of_one_state_that_sends_itself_round",
	"a_ring_of_events_to_every_machine", "a_ring_of_global_events", "a_ring_of_conditions", "a_ring_of_states_to_go_to",
	"a_ring_of_previous_states", "a_ring_through_sub_states", "a_ring_inside_a_state", "a_ring_with_a_high_limit", "a_ring_whose_goal_moves_away",
]
const NOBODY: StringName = Filling.NOBODY
## What no description tells: kinds for which a node that is not there is no fault, or none before a key is pressed.
const MISSES_NO_NODE: Array[StringName] = [&"SCNodeCondition", &"SCEventOnInputAction"]
## Paths, as kind:setting, to what a kind can do without.
const CAN_DO_WITHOUT: Array[String] = ["SCHurtAction:attacker_path", "SCInstantiateAction:at_node_path", "SCInstantiateAction:away_from_path"]
## Kinds that say what is missing, and not where it was looked for.
const NAMES_NO_PATH: Array[StringName] = [
	&"SCAddItemAction", &"SCCountItemAction", &"SCDropItemAction", &"SCEquipItemAction", &"SCHealAction", &"SCHurtAction", &"SCInventoryHasCondition",
	&"SCMakeNoiseAction", &"SCMoveItemAction", &"SCRemoveItemAction", &"SCSortInventoryAction", &"SCUnequipItemAction", &"SCUseItemAction",
]
## Kinds that miss the map that a node is to stand on before they look for the node.
const ON_A_MAP: Array[StringName] = [
	&"SCGetCellAction", &"SCSetCellAction", &"SCPaintTerrainAction", &"SCGridMapCellAction", &"SCGridPathAction", &"SCTileCondition",
]
## Kinds that work with a node of any class, beside those that name a property, a signal or a machine of it.
const TAKES_ANY_NODE: Array[StringName] = [
	&"SCHasChildOfTypeCondition", &"SCIsChildOfCondition", &"SCNodeCondition", &"SCEventOnInputAction", &"SCSendEventAction", &"SCInstantiateAction",
	&"SCDuplicateAction", &"SCAddNodeAction", &"SCCallMethodAction", &"SCEnableNodeAction", &"SCFindChildAction", &"SCGetChildrenAction",
	&"SCGetParentAction", &"SCGroupAction", &"SCGroupSwitchAction", &"SCReparentAction", &"SCSetProcessModeAction",
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
	## By event, the states that one of may be the current one after it.
	var after: Dictionary = {}
	## By state, all that are active in it.
	var inside: Dictionary = {}
	## What else holds of the machine.
	var holds: Callable
	## The event that leads from the first state into states that lead round at once.
	var ring: StringName

	func is_borne_by(machine: SCMachine) -> bool:
		for event: StringName in after:
			machine.send_event(event)
			if machine.current_state == null or machine.current_state.state_name not in after[event]:
				return false
		for state: StringName in inside:
			machine.go_to(state)
			if machine.active_states().map(func(at: SCMachineState) -> StringName: return at.state_name) != inside[state]:
				return false
		if not inside.is_empty():
			machine.go_to("Start")
		return not holds.is_valid() or holds.call(machine)


var _of: Design


func _init(of: Design) -> void:
	_of = of


func plant(fault: String) -> Fault:
	var planted: Fault = _plant_in_states(fault)
	if planted == null:
		planted = _plant_in_values(fault)
	if planted == null:
		planted = _plant_ring(fault)
	planted.name = fault
	return planted


func _plant_in_states(fault: String) -> Fault:
	match fault:
		"a_destination_that_is_not_there":
			_lead(&"lost", &"Nowhere")
			return _silent("the graph tells it from the list of missing names", {&"lost": [&"Start"]}, {}, func(_machine: SCMachine) -> bool:
				return _of.design.missing_state_names().has("Nowhere"))
		"a_transition_without_an_event":
			_lead(&"", &"Answered")
			return _silent("nothing is ever sent that could take it", {&"": [&"Start"]})
		"a_transition_without_a_destination":
			_lead(&"astray", &"")
			return _silent("the graph shows it as leading nowhere, and so it does but for a state without a name", {&"astray": [&"Start", &""]})
		"a_state_without_a_name":
			_add(&"", [wait(0.01)], {&"FINISHED": &"", &"go": &"Start"})
			return _silent("it can be started in, and no transition can name it")
		"two_states_of_one_name":
			var second := _add(&"Answered")
			return _silent("the first of them is meant", {}, {}, func(machine: SCMachine) -> bool:
				return machine.find_state("Answered") != second and machine.find_state("Answered") != null)
		"a_system_event_that_its_node_never_sends":
			_lead(&"body_entered", &"Answered")
			return _says(["waits for body_entered"])
		"a_state_to_go_to_that_is_not_there":
			return _kind(&"SCGoToStateAction", {"state_name": NOBODY}, ["Go To State on", "no state called nobody"])
		"no_state_to_start_in":
			_of.design.initial_state = null
			return _says(["has no state to start in"])
		"a_state_to_start_in_from_elsewhere":
			_of.design.initial_state = _of.state(&"Elsewhere", [wait(60.0)])
			return _silent("it becomes one more state of the machine", {&"unheard": [&"Elsewhere"]})
		"sub_states_that_start_elsewhere":
			var foreign := _of.state(&"Foreign")
			_add(&"Outer", [], {&"FINISHED": &"Start"}, {"sub_states": [_waiting(&"Inner")]}).start_sub_state = foreign
			_add(&"Split", [], {}, {"parallel": {"A": [_waiting(&"In A")]}}).parallel_states[0].start_state = foreign
			return _silent("the first in the list is taken", {}, {&"Outer": [&"Outer", &"Inner"], &"Split": [&"Split", &"In A"]})
		"holes_in_every_list":
			_add(&"Holed", [null, wait(60.0), null], [null, transition(&"go", &"Start")]).sub_states.assign([null, _waiting(&"Sub Holed"), null])
			_add(&"Split Holed", [], {}, {"parallel": {"A": [null, _waiting(&"In Holed")], "B": [null]}}).parallel_states.insert(0, null)
			for list: Array in [_of.design.states, _of.first.transitions, _of.first.actions, _of.design.variables, _of.design.events, _of.design.notes]:
				list.insert(0, null)
			return _silent("holes are passed over", {}, {&"Holed": [&"Holed", &"Sub Holed"], &"Split Holed": [&"Split Holed", &"In Holed"]})
		"a_state_inside_itself":
			var own := _add(&"Own", [wait(60.0)])
			own.sub_states = [own]
			var beside := _add(&"Beside", [wait(60.0)])
			beside.parallel_states = [parallel("Self", [beside])]
			return _silent("it is entered once", {}, {&"Own": [&"Own"], &"Beside": [&"Beside"]})
		"states_inside_each_other":
			var over := _add(&"Over", [wait(60.0)], {}, {"sub_states": [_waiting(&"Under")]})
			over.sub_states[0].sub_states = [over]
			return _silent("each is entered once", {}, {}, func(machine: SCMachine) -> bool:
				machine.go_to("Over")
				var once := machine.is_running() and machine.active_states().size() <= 2
				machine.go_to("Start")
				return once and machine.current_state == _of.first)
		"a_state_in_two_places":
			var shared := _add(&"Shared", [wait(60.0)])
			_add(&"One", [], {}, {"sub_states": [shared]})
			_add(&"Two", [], {}, {"sub_states": [shared]})
			return _silent("it runs wherever it is entered", {}, {&"One": [&"One", &"Shared"], &"Two": [&"Two", &"Shared"]})
		"actions_shared_between_states":
			var left := _add(&"Left", [wait(0.01), wait(60.0)], {&"go": &"Right"})
			var right := _add(&"Right")
			right.actions = left.actions
			right.transitions = left.transitions
			return _silent("what a machine remembers of an action lies in the machine", {}, {&"Left": [&"Left"], &"Right": [&"Right"]})
		"a_loop_limit_that_is_none":
			_of.design.loop_increment_limit = _of.dice.pick([0, -1, -9223372036854775807])
			return _silent("one state at a time is always let through", {&"answer": [&"Answered"], &"again": [&"Start"]})
		"a_ring_that_gets_somewhere":
			var count := _filled(&"SCRepeatAction", {"times": 20_000, "again_event": &"round", "done_event": &"counted", "progress_variable": &"counted"})
			_add(&"Count", [count], {&"round": &"Count On", &"counted": &"Counted"})
			_add(&"Count On", [], {&"FINISHED": &"Count"})
			_add(&"Counted", [], {&"again": &"Start"})
			_lead(&"count", &"Count")
			return _silent("each time round is a step on", {&"count": [&"Counted"], &"again": [&"Start"]})
	return null


func _plant_in_values(fault: String) -> Fault:
	var variables: Array = _of.design.variables
	match fault:
		"variables_without_a_name_and_of_one_name":
			variables.append_array([variable(&"", 1), variable(&"level", "text"), variable(&"level", null)])
			return _silent("the last of them is what the machine holds")
		"a_condition_about_a_variable_that_is_not_there":
			return _kind(&"SCVariableCondition", {"variable_name": NOBODY}, ["Variable on", "no variable called nobody"])
		"a_list_with_nothing_in_any_setting":
			_kind(&"SCSequenceAction", {"events": [&"", &""] as Array[StringName]})
			_kind(&"SCSwitchAction", {"variable_name": &"whole", "cases": [null, null]})
			return _kind(&"SCRandomEventAction", {"events": [&""] as Array[StringName], "weights": [null]}, ["Random Event on", "names no event"])
		"a_template_that_runs_itself":
			var endless := _kind(&"SCRunTemplateAction", {"template": _of.design}, ["Run Template on", "inside one another"])
			endless.of_machine = "TemplateRunning"
			_of.runs_itself = _of.first.actions[0]
			return endless
		"limits_that_name_one_another":
			variables.append_array([
				variable(&"a", 1.0, {"never_below": "b", "never_above": "c"}), variable(&"b", 2.0, {"never_below": "c", "never_above": "a"}),
				variable(&"c", 3.0, {"never_below": "a", "never_above": "b"}), variable(&"d", 4, {"never_below": "d", "never_above": "d"}),
				variable(&"e", 5, {"never_below": "nobody", "never_above": "words", "starts": SCMachineVariable.FULL}),
				variable(&"f", 6, {"never_below": "nan", "never_above": "-inf", "starts": SCMachineVariable.AT_A_SHARE, "share": NAN}),
			])
			return _silent("they follow one another so far and no further", {}, {}, _keeps_numbers)
		"watchers_that_write_what_they_watch":
			for pair: Array in [[&"whole", &"level"], [&"level", &"whole"]]:
				var asked := _filled(&"SCVariableChangedCondition", {"variable_name": pair[0]})
				_kind(&"SCCheckAction", {"condition": asked, "true_event": &"noticed", "run_mode": SCMachineAction.EVERY_FRAME})
				_kind(&"SCSetVariableAction", {"variable_name": pair[1], "operation": SCSetVariableAction.ADD, "value": 1, "run_mode": SCMachineAction.EVERY_FRAME})
			_lead(&"noticed", &"Start")
			return _silent("each is told of a change once a frame", {}, {}, func(machine: SCMachine) -> bool:
				machine.set_value("level", 7)
				return machine.current_state == _of.first)
		"a_variable_that_starts_with_a_node_that_is_not_there":
			variables.append(variable(&"guard", null, {"starting_node": ^"../Nowhere"}))
			return _says(["Variable guard on", "starts with no node", "Nowhere"])
		"a_list_of_nodes_that_are_not_there":
			variables.append(variable(&"guards", [^"../Plain", ^"../Nowhere", 3], {"items_are": SCMachineVariable.NODES}))
			return _says(["Item 2 of list guards on", "holds no node", "Nowhere"])
		"a_value_that_its_variable_cannot_take":
			return _kind(&"SCSetVariableAction", {"variable_name": &"words", "operation": SCSetVariableAction.MULTIPLY, "value": 2}, ["Set Variable on", "so it changed nothing"])
		"odd_values_in_every_setting_of_a_kind":
			var odd := Filling.made_of(_of.next_kind())
			for property: Dictionary in Filling.open_of(odd.get_class()):
				_of.filling.put_odd(odd, property)
			_add(&"Odd", [Filling.action_with(odd), wait(60.0)])
			return _silent("a setting of a type keeps it, and what one of any type holds may be right", {}, {}, func(machine: SCMachine) -> bool:
				machine.go_to("Odd")
				return is_instance_valid(machine))
		"odd_values_in_the_design":
			_plant_odd_design()
			return _silent("a setting of a type keeps it, and a variable may hold anything", {}, {}, func(machine: SCMachine) -> bool:
				machine.go_to("Odd Design")
				return machine.current_state.state_name == &"Odd Design")
		"a_kind_with_nothing_filled_in":
			# What its line asks to be picked, a kind asks for when it runs, too.
			var bare := Filling.made_of(_of.next_kind())
			while _holes(bare) == 0:
				bare = Filling.made_of(_of.next_kind())
			_plant(bare)
			return _says([_palette(bare.get_class()) + " on"])
		"a_path_to_nowhere":
			return _plant_path(^"../Nowhere", func(kind: StringName, path: String) -> bool:
				return kind in MISSES_NO_NODE or "%s:%s" % [kind, path] in CAN_DO_WITHOUT or (kind in ON_A_MAP and path not in ["layer_path", "grid_path"]))
		"a_path_to_a_node_of_the_wrong_class":
			return _plant_path(^"../Plain", _takes_any_node)
		"a_setting_that_reads_a_variable_of_the_wrong_type":
			var typed := _next_readable([TYPE_BOOL, TYPE_INT, TYPE_FLOAT, TYPE_VECTOR2, TYPE_VECTOR3, TYPE_COLOR])
			return _kind(typed[0], {"%s_variable" % typed[1]: &"words"}, [_palette(typed[0]).replace(" ", "") + " on", "cannot use words for"])
		"a_setting_that_reads_a_variable_that_is_not_there":
			var row := _next_readable(range(TYPE_MAX))
			_kind(row[0], {"%s_variable" % row[1]: NOBODY})
			return _silent("the value typed in stands for it")
	return null


func _keeps_numbers(machine: SCMachine) -> bool:
	for name: StringName in [&"a", &"b", &"c", &"d", &"e", &"f"]:
		for value: float in [-1e300, INF, 0.5]:
			machine.set_value(name, value)
			if not machine.get_value(name) is float and not machine.get_value(name) is int:
				return false
	return true


func _plant_odd_design() -> void:
	var odd := _add(&"Odd Design", [wait(60.0)])
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


func _takes_any_node(kind: StringName, path: String) -> bool:
	var names := Filling.open_of(kind).map(func(property: Dictionary) -> String: return property["name"])
	return kind in TAKES_ANY_NODE or path == "machine_path" or "property" in names or "signal_name" in names


## Into a kind that shows such a setting, the rest filled in as far as its line asks for it.
func _plant_path(to: NodePath, is_no_fault: Callable) -> Fault:
	while true:
		var kind := _of.next_kind()
		for property: Dictionary in Filling.open_of(kind):
			var path: String = property["name"]
			if property["type"] != TYPE_NODE_PATH or is_no_fault.call(kind, path) or _of.dice.one_in(3):
				continue
			for number: int in Design.rehearsed.get(kind, PackedInt64Array([1])):
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
					return _says([_palette(kind) + " on"] if kind in NAMES_NO_PATH else [_palette(kind) + " on", to.get_name(1)])
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


static func _says(parts: PackedStringArray) -> Fault:
	var made := Fault.new()
	made.said = parts
	return made


static func _silent(why: String, after: Dictionary = {}, inside: Dictionary = {}, check: Callable = Callable()) -> Fault:
	var made := Fault.new()
	made.silent = why
	made.after = after
	made.inside = inside
	made.holds = check
	return made


func _kind(kind: StringName, settings: Dictionary, said: PackedStringArray = []) -> Fault:
	_plant(_filled(kind, settings))
	return _says(said)


## Where it is entered at once, whatever becomes of the rest.
func _plant(made: Resource) -> void:
	_of.first.actions.insert(0, Filling.action_with(made))


func _filled(kind: StringName, settings: Dictionary) -> Resource:
	var made := Filling.made_of(kind)
	_put(made, settings)
	return made


func _add(name: StringName, actions: Array = [], transitions: Variant = {}, options: Dictionary = {}) -> SCMachineState:
	_of.design.states.append(_of.state(name, actions, transitions, options))
	return _of.design.states[-1]


func _waiting(name: StringName) -> SCMachineState:
	return _of.state(name, [wait(60.0)])


func _lead(event: StringName, to: StringName) -> void:
	_of.first.transitions.append(transition(event, to))


static func _palette(kind: StringName) -> String:
	return String(kind).trim_prefix("SC").trim_suffix("Action").trim_suffix("Condition").capitalize()


## The states of a ring, one after another: the action that leads on at once, when one is needed, or what is inside the state.
func _ring_states(fault: String) -> Array:
	var shout := {"event_name": &"round", "reach": SCSendEventAction.EVERY_MACHINE}
	match fault:
		"a_ring_of_one_state":
			return [{}]
		"a_ring_of_events", "a_ring_of_global_events":
			return [_filled(&"SCSendEventAction", {"event_name": &"round"}), _filled(&"SCSendEventAction", {"event_name": &"round"})]
		"a_ring_of_one_state_that_sends_itself_round":
			return [_filled(&"SCSequenceAction", {"events": [&"round"] as Array[StringName], "progress_variable": NOBODY})]
		"a_ring_of_events_to_every_machine":
			return [_filled(&"SCSendEventAction", shout), _filled(&"SCSendEventAction", shout)]
		"a_ring_of_conditions":
			return [_filled(&"SCCheckAction", {"condition": SCCompareCondition.new(), "true_event": &"round", "run_mode": SCMachineAction.EVERY_FRAME}), {}]
		"a_ring_of_states_to_go_to":
			return [_filled(&"SCGoToStateAction", {"state_name": &"Ring 1"}), _filled(&"SCGoToStateAction", {"state_name": &"Ring 0"})]
		"a_ring_of_previous_states":
			return [{}, SCGoToPreviousStateAction.new()]
		"a_ring_through_sub_states":
			return [{"sub_states": [_of.state(&"Inside", [], {}, {"end": true})]}, {}]
		"a_ring_inside_a_state":
			var inside: Array = [_of.state(&"Round A", [], {&"FINISHED": &"Round B"}), _of.state(&"Round B", [], {&"FINISHED": &"Round A"})]
			return [{"parallel": {"A": [_waiting(&"Still")], "B": inside}}]
		"a_ring_whose_goal_moves_away":
			# It comes to rest in the end, so that a guard that misses it is told of.
			_of.design.variables.append(variable(&"goal", 1, {"never_above": "200000"}))
			var further := {"variable_name": &"goal", "operation": SCSetVariableAction.ADD, "value": 1}
			return [_filled(&"SCRepeatAction", {"times_variable": &"goal", "again_event": &"round"}), _filled(&"SCSetVariableAction", further)]
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
		_add("Ring %d" % i, actions, {&"FINISHED": to, &"round": to}, {} if states[i] is Resource else states[i])
	_lead(&"ring", &"Ring 0")
	var made := Fault.new()
	made.ring = &"ring"
	return made
