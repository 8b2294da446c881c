extends StoryWords
## Draws a design: a state to start in, which stays until it is sent away, and states in states and beside states behind it.
##
## A valid one is made of fillings that have been rehearsed, and leads nowhere in a circle within a frame: what happens at once
## leads ahead only. Any other uses every kind with settings of every sort, and leads anywhere.

const Dice := preload("res://tests/fuzz/dice.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Own := preload("res://tests/fuzz/own.gd")

const MOST_STATES: int = 14
const MOST_DEPTH: int = 3
const SPARES: int = 4
## Leads from the first state to the others.
const BEGIN: StringName = &"begin"
const GLOBAL_EVENT: StringName = &"alarm"
## What an action may bring about within its own frame.
const AT_ONCE: Array[StringName] = [Filling.AHEAD, &"hidden", &"shown"]

## By kind, what [method Filling.fill] was seeded with each time that nothing was left to complain of.
static var rehearsed: Dictionary[StringName, PackedInt64Array] = {}
## The kinds that have been drawn so far.
static var drawn: Dictionary[StringName, bool] = {}

var dice: Dice = Dice.new()
var filling: Filling
var valid: bool
## The first state, which faults are planted in.
var first: SCMachineState
var design: SCMachineTemplate
## What the actions of the game's own tell of their calls; without one there are none of these.
var called: Callable
## How many of ten actions are the game's own.
var own_in_ten: int = 0
var wants_mate: bool = false
## The action that runs this same design, which may have been taken out of it meanwhile.
var runs_itself: SCRunTemplateAction

var _deck: Array[StringName]
var _next: int = 0
var _states: Array[SCMachineState] = []
var _drawn: Array[SCMachineState] = []
# Where each drawn state may lead at once: states after it, or after one around it, so that what is left is left for good.
var _ahead: Dictionary[SCMachineState, Array] = {}
var _declared: Dictionary[StringName, Variant] = Filling.VARIABLES.duplicate()
var _spares: Array[SCMachineAction] = []


func _init(with_seed: int, is_valid: bool, few_nodes: bool = is_valid) -> void:
	dice.seed = with_seed
	valid = is_valid
	filling = Filling.new(dice, few_nodes)
	_deck = rehearsed.keys() if valid else Filling.kinds().filter(func(kind: StringName) -> bool: return kind not in Filling.ENDS_THE_GAME)
	_next = int(with_seed * 7) % _deck.size()


func draw() -> SCMachineTemplate:
	var behind := _some_states(dice.randi_range(2, 3), 0)
	_find_ahead(behind, [])
	for made in _drawn:
		for t in dice.randi_range(0, 4):
			lead_on(made)
	for i in SPARES:
		_spares.append(_new_action())
	first = state(&"Start", [wait(60.0)], {BEGIN: &"S0", &"answer": Filling.ANSWERED})
	design = template([first, state(Filling.ANSWERED, [], {&"again": &"Start"})] + behind, {"variables": _declared, "events": [declared_event(GLOBAL_EVENT, {"is_global": true})]})
	design.carries_over = valid and dice.one_in(3)
	design.variables[0].never_above = "level"
	design.variables[1].is_global = dice.one_in(2)
	if dice.one_in(2):
		design.initial_state = dice.pick(behind)
	if not valid and dice.one_in(2):
		design.variables[1].never_above = "whole"
	return design


## Keeps every state that is made, as states that hold each other would never be let go of.
func state(name: StringName, actions: Array = [], transitions: Variant = {}, options: Dictionary = {}) -> SCMachineState:
	var made := super(name, actions, transitions, options)
	_states.append(made)
	return made


func take_apart() -> void:
	filling.live = null
	if runs_itself != null:
		runs_itself.template = null
	for made in _states:
		made.actions = []
		made.transitions = []
		made.sub_states = []
		made.parallel_states = []
		made.start_sub_state = null
	_states.clear()
	_drawn.clear()
	_ahead.clear()
	_spares.clear()
	first = null
	design = null


## One more, for a design that runs already: of a valid one none that would need a variable which its machines have not.
func action() -> SCMachineAction:
	return _spares[dice.randi() % SPARES].duplicate() if valid else _new_action()


## The next of all kinds, so that a run of some designs uses each of them.
func next_kind() -> StringName:
	_next = (_next + 1) % _deck.size()
	drawn[_deck[_next]] = true
	return _deck[_next]


static func of_filling(kind: StringName, number: int) -> Filling:
	var own_dice := Dice.new()
	own_dice.seed = absi(hash("%s %d" % [kind, number])) + 1
	var made := Filling.new(own_dice, true)
	made.well = own_dice.seed
	return made


## An action that leaves what is behind it to come no sooner than in a later frame.
static func takes_time(made: SCMachineAction) -> bool:
	if made is Own.Action:
		return not made.disabled and (made as Own.Action).finishes_in != 1
	return made is SCWaitAction and not made.disabled and (made as SCWaitAction).seconds > 0.01 and made.from_variables.is_empty()


func lead_on(from: SCMachineState) -> void:
	var event: StringName = dice.pick(Filling.EVENTS + AT_ONCE)
	var at_once := event in AT_ONCE or (event == &"FINISHED" and not from.actions.any(takes_time))
	# States that lead on as soon as they are entered make circles, which are rather loud.
	if at_once and own_in_ten > 0 and not valid and not dice.one_in(8):
		event = &"go"
	var choices: Array = _ahead.get(from, []) if valid and at_once else _drawn
	if not choices.is_empty():
		var into: StringName = dice.pick(Filling.VARIABLES.keys()) if dice.one_in(3) else &""
		var to := (dice.pick(choices) as SCMachineState).state_name
		from.transitions.append(transition(event, &"Nowhere" if not valid and dice.one_in(12) else to, into))


func _new_action() -> SCMachineAction:
	var made: SCMachineAction
	if dice.randi() % 10 < own_in_ten:
		made = _own_action()
	elif not valid:
		made = filling.action_of(next_kind(), 4 if dice.one_in(2) else 0)
	elif dice.one_in(4):
		made = wait(dice.randf_range(0.02, 0.06), {"random_extra": 0.02, "real_time": dice.one_in(4)})
	else:
		var kind := next_kind()
		var number: int = rehearsed[kind][dice.randi() % rehearsed[kind].size()]
		var well := of_filling(kind, number)
		made = well.action_of(kind)
		_declared.merge(well.declared)
		wants_mate = wants_mate or well.wants_mate
	made.wait_for_previous = dice.one_in(5)
	made.disabled = dice.one_in(12)
	return made


func _own_action() -> SCMachineAction:
	var made := Own.Action.new()
	made.ticks = dice.one_in(2)
	made.physics = dice.one_in(4)
	made.works_on = dice.one_in(4)
	made.finishes_in = dice.pick([0, 1, 3, 5])
	if dice.one_in(3):
		made.watched = PackedStringArray([dice.pick(Filling.VARIABLES.keys())])
	if dice.one_in(5):
		made.from_variables[&"display_name"] = &"words" if valid else &"list"
	if dice.one_in(6):
		made.update_interval = 0.04
	# From here on it tells; before, it would tell of what is asked in the making.
	made.called = called
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
		made.actions.append(_new_action())
	made.is_end_state = dice.one_in(3)
	made.pause_here = own_in_ten > 0 and not valid and dice.one_in(8)
	if depth == MOST_DEPTH or _drawn.size() >= MOST_STATES:
		return made
	match dice.randi() % 4:
		0:
			made.sub_states = _some_states(dice.randi_range(1, 3), depth + 1)
			made.start_sub_state = made.sub_states[-1] if dice.one_in(2) else null
		1:
			for i in dice.randi_range(1, 3):
				made.parallel_states.append(parallel("R%d" % i, _some_states(dice.randi_range(0, 2), depth + 1)))
				if not made.parallel_states[i].states.is_empty() and dice.one_in(2):
					made.parallel_states[i].start_state = made.parallel_states[i].states[-1]
	return made


func _find_ahead(among: Array[SCMachineState], further: Array) -> void:
	for i in among.size():
		_ahead[among[i]] = among.slice(i + 1) + further
		_find_ahead(among[i].sub_states, _ahead[among[i]])
		for region in among[i].parallel_states:
			_find_ahead(region.states, _ahead[among[i]])
