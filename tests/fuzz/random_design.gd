extends StoryWords
## Draws a design: a state to start in, which stays until it is sent away, and states in states and beside states behind it.
##
## A valid one uses kinds that are filled in as they should be, and leads nowhere in a circle within a frame: what happens at
## once leads ahead only. Any other uses every kind with settings of every sort, and leads anywhere.

const Dice := preload("res://tests/fuzz/random_dice.gd")
const Settings := preload("res://tests/fuzz/random_settings.gd")

const MOST_STATES: int = 10
const MOST_DEPTH: int = 3
## Sent at once by the actions of a valid design.
const AHEAD: StringName = &"ahead"
## Nobody sends it but the game.
const BEGIN: StringName = &"begin"

## Kinds with settings that leave nothing to complain of.
const WELL_FILLED: Array[Array] = [
	[&"SCWaitAction", {"seconds": 0.03}],
	[&"SCSetVariableAction", {"variable_name": &"level", "operation": SCSetVariableAction.ADD, "value": 0.5}],
	[&"SCMathAction", {"first_variable": &"level", "second": 2.0, "store_in": &"level"}],
	[&"SCClampAction", {"variable_name": &"level"}],
	[&"SCRandomNumberAction", {"store_in": &"level"}],
	[&"SCFormatStringAction", {"text": "{level} of {whole}", "store_in": &"words"}],
	[&"SCStringAction", {"text": "some words", "store_in": &"words"}],
	[&"SCArrayAction", {"list_variable": &"list", "item": 3}],
	[&"SCDictionaryAction", {"table_variable": &"table", "key": "key", "value": 2}],
	[&"SCBoolOperatorAction", {"first": true, "store_in": &"flag"}],
	[&"SCGetTimeAction", {"store_in": &"level"}],
	[&"SCGetStateAction", {"store_in": &"words"}],
	[&"SCGetPropertyAction", {"property": "visible", "store_in": &"flag"}],
	[&"SCSetPropertyAction", {"property": "visible", "value": true}],
	[&"SCRandomColorAction", {"store_in": &"tint"}],
	[&"SCSetColorComponentsAction", {"variable_name": &"tint"}],
	[&"SCTimerAction", {"variable_name": &"level", "seconds": 0.04, "event_name": &"turn"}],
	[&"SCSendEventAction", {"event_name": &"back", "delay": 0.02}],
	[&"SCSendEventAction", {"event_name": AHEAD}],
	[&"SCSendEventAction", {"event_name": AHEAD, "reach": SCSendEventAction.EVERY_MACHINE}],
	[&"SCRepeatAction", {"again_event": AHEAD, "done_event": AHEAD}],
	[&"SCForEachAction", {"list_variable": &"list", "store_item_in": &"", "next_event": AHEAD, "done_event": AHEAD}],
	[&"SCSequenceAction", {"events": [AHEAD, &"unheard"]}],
	[&"SCRandomEventAction", {"events": [AHEAD, &"unheard"]}],
	[&"SCSwitchAction", {"variable_name": &"whole", "cases": [3], "events": [AHEAD]}],
	[&"SCNextFrameEventAction", {"event_name": &"turn"}],
	[&"SCEventOnSignalAction", {"node_path": ^"../Button", "signal_name": &"pressed", "event_name": &"turn"}],
	[&"SCSetVisibleAction", {}],
	[&"SCMoveToAction", {"duration": 0.05}],
	[&"SCRotateToAction", {"duration": 0.05}],
	[&"SCScaleToAction", {"duration": 0.05}],
	[&"SCPunchAction", {"duration": 0.05}],
	[&"SCRotateAction", {}],
	[&"SCTranslateAction", {}],
	[&"SCVariableCondition", {"variable_name": &"level"}],
	[&"SCVariableChangedCondition", {"variable_name": &"level"}],
	[&"SCStringCompareCondition", {"variable_name": &"words"}],
	[&"SCCompareCondition", {}],
	[&"SCChanceCondition", {}],
	[&"SCTimeoutCondition", {"seconds": 0.03}],
	[&"SCNodeCondition", {}],
	[&"SCInputCondition", {}],
	[&"SCDistanceCondition", {"to_node_path": ^"../Body"}],
	[&"SCInStateCondition", {"state_name": &"S1"}],
]

var dice: Dice
var settings: Settings
var valid: bool
## The first state, which faults are planted in.
var first: SCMachineState
var design: SCMachineTemplate

var _states: Array[SCMachineState] = []
var _drawn: Array[SCMachineState] = []
## Where each drawn state may lead at once: states after it, or after one around it, so that what is left is left for good.
var _ahead: Dictionary[SCMachineState, Array] = {}


func _init(with_seed: int, is_valid: bool) -> void:
	dice = Dice.new()
	dice.seed = with_seed
	settings = Settings.new(dice)
	valid = is_valid


func draw() -> void:
	var behind := _some_states(dice.randi_range(2, 3), 0)
	_find_ahead(behind, [])
	for made in _drawn:
		for t in dice.randi_range(0, 4):
			_lead_on(made)
	first = state(&"Start", [wait(60.0)], {BEGIN: &"S0", &"answer": &"Answered"})
	var states: Array = [first, state(&"Answered", [], {&"again": &"Start"})]
	design = template(states + behind, {"variables": Settings.VARIABLES, "events": [declared_event(&"alarm", {"is_global": true})]})
	design.variables[0].never_above = "level"
	design.variables[1].is_global = dice.one_in(2)


## Keeps every state that is made, as states that hold each other would never be let go of.
func state(name: StringName, actions: Array = [], transitions: Variant = {}, options: Dictionary = {}) -> SCMachineState:
	var made := super(name, actions, transitions, options)
	_states.append(made)
	return made


func take_apart() -> void:
	settings.live = null
	for made in _states:
		for run in made.actions:
			if run is SCRunTemplateAction:
				run.set(&"template", null)
		made.actions = []
		made.transitions = []
		made.sub_states = []
		made.parallel_states = []
		made.start_sub_state = null
	_states.clear()
	_drawn.clear()
	_ahead.clear()
	first = null
	design = null


func action() -> SCMachineAction:
	var made: SCMachineAction
	if valid:
		var row: Array = dice.pick(WELL_FILLED)
		var kind := Settings.made_of(row[0])
		_put(kind, row[1])
		if kind is SCMachineCondition:
			made = Settings.asking(kind)
			made.set(&"true_event", dice.pick([AHEAD, &""]))
			made.set(&"only_when_it_changes", dice.one_in(2))
		else:
			made = kind
		made.run_mode = dice.randi() % 2
		made.update_interval = 0.03 if dice.one_in(4) else 0.0
	else:
		made = settings.action_of(settings.next_kind(), 4 if dice.one_in(2) else 0)
	made.wait_for_previous = dice.one_in(5)
	made.disabled = dice.one_in(12)
	return made


func _some_states(count: int, depth: int) -> Array[SCMachineState]:
	var made: Array[SCMachineState] = []
	for i in count:
		made.append(_some_state(depth))
	return made


func _some_state(depth: int) -> SCMachineState:
	var made := state("S%d" % _drawn.size())
	_drawn.append(made)
	for i in dice.randi_range(0, 4):
		made.actions.append(action())
	made.is_end_state = dice.one_in(3)
	if depth == MOST_DEPTH or _drawn.size() >= MOST_STATES:
		return made
	match dice.randi() % 4:
		0:
			made.sub_states = _some_states(dice.randi_range(1, 3), depth + 1)
			made.start_sub_state = made.sub_states[-1] if dice.one_in(2) else null
		1:
			for i in dice.randi_range(1, 3):
				made.parallel_states.append(parallel("R%d" % i, _some_states(dice.randi_range(0, 2), depth + 1)))
	return made


func _find_ahead(among: Array[SCMachineState], further: Array) -> void:
	for i in among.size():
		_ahead[among[i]] = among.slice(i + 1) + further
		_find_ahead(among[i].sub_states, _ahead[among[i]])
		for region in among[i].parallel_states:
			_find_ahead(region.states, _ahead[among[i]])


func _lead_on(from: SCMachineState) -> void:
	var event: StringName = dice.pick(Settings.EVENTS + ([AHEAD] as Array[StringName]))
	var at_once := event == AHEAD or (event == &"FINISHED" and not from.actions.any(_takes_time))
	var choices: Array = _ahead[from] if valid and at_once else _drawn
	if not choices.is_empty():
		var into: StringName = dice.pick(Settings.VARIABLES.keys()) if dice.one_in(3) else &""
		from.transitions.append(transition(event, (dice.pick(choices) as SCMachineState).state_name, into))


func _takes_time(made: SCMachineAction) -> bool:
	return made is SCWaitAction and not made.disabled
