extends Story
## Machines whose every callback does unforeseen things to all of them. No order of calls may crash one, what was entered is
## exited once, and nothing that comes back late may reach a state that has been left.
##
## A round depends on its seed alone; [code]--long[/code] plays thousands. A round that failed is played again on its own by
## [code]--seed=N[/code].

const Deeds := preload("res://tests/fuzz/deeds.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Dice := preload("res://tests/fuzz/dice.gd")
const Town := preload("res://tests/fuzz/town.gd")

const FIRST_SEED: int = 20_260
const ROUNDS: int = 200
const LONG_ROUNDS: int = 5000
const FRAMES_A_ROUND: int = 8
const DEEDS_A_FRAME: int = 30
const MOST_MACHINES: int = 5
const MOST_DEPTH: int = 8
## The errors that a design can lead to.
const OF_ITS_OWN_MAKING: Array[String] = ["states in one frame", "Assert on "]

var _town: Town
var _deeds: Deeds
var _dice: Dice
var _left: int = 0
var _depth: int = 0


func most_frames() -> int:
	return 1_000_000


func test_any_call_from_within_any_callback() -> void:
	for one: int in seeds(FIRST_SEED, ROUNDS, LONG_ROUNDS):
		if not await _play_round(one):
			return


func _play_round(with_seed: int) -> bool:
	seed(with_seed)
	_dice = Dice.new()
	_dice.seed = with_seed
	var designs: Array[Design] = []
	for i in _dice.randi_range(1, 2):
		var design := Design.new(with_seed + i, false, true)
		design.called = _on_called
		design.own_in_ten = 7
		designs.append(design)
		design.draw()
	_town = Town.new(stage, _dice, designs)
	_town.told = _connect_all
	_deeds = Deeds.new(_town, _on_called)
	for i in _dice.randi_range(2, 3):
		_town.add()
	Engine.print_to_stdout = false
	for i in FRAMES_A_ROUND:
		if i % 4 == 3:
			await physics_frames(1)
		else:
			await frames(1)
		_left = DEEDS_A_FRAME
		for j in _dice.randi_range(1, 4):
			_act("outside", null, -1, true)
		tree.paused = tree.paused and _dice.one_in(2)
		_check_all()
	_left = 0
	tree.paused = false
	Engine.time_scale = 1.0
	for made in _town.machines():
		if not made.is_inside_tree():
			_deeds.no_say[made.get_instance_id()] = true
	_town.close()
	await frames(2)
	Engine.print_to_stdout = true
	return _judge(with_seed)


## Once the nodes are gone: nothing may be left that was entered and not exited. A machine may well complain of such treatment.
func _judge(with_seed: int) -> bool:
	var ledger := _deeds.ledger
	ledger.expect_all_exited(_deeds.no_say)
	for line in output.unclaimed():
		if not line.begins_with("warning: ") and not OF_ITS_OWN_MAKING.any(func(part: String) -> bool: return part in line):
			ledger.fault(line)
	output.forget()
	_deeds.forget()
	_town.let_go()
	SCMachine.set_measuring(false)
	_forget_what_is_shared()
	if not ledger.faults.is_empty():
		_fail("seed %d: %s\n      %s" % [with_seed, "; ".join(ledger.faults), "\n      ".join(_deeds.trail)])
	_deeds = null
	_town = null
	return ledger.faults.is_empty()


func _connect_all(made: SCMachine) -> void:
	var id := made.get_instance_id()
	made.state_changed.connect(_on_state_changed.bind(id))
	made.event_sent.connect(_on_event_sent.bind(id))
	made.state_finished.connect(_on_state_finished.bind(id))
	# The states are left between these two.
	made.tree_exiting.connect(_on_going.bind(1))
	made.tree_exited.connect(_on_going.bind(-1))


func _on_going(change: int) -> void:
	_town.tree_changes += change


func _on_called(where: String, made: SCMachine, index: int) -> void:
	match where:
		"enter": _deeds.ledger.entered(made, index)
		"update": _deeds.ledger.updated(made, index)
		"exit": _deeds.ledger.exited(made, index)
	_act(where, made, index, where in ["then", "tween"])


## A callback has come: a deed or two, most of the time to the machine that called. [param begins] says that the engine is not
## in the middle of calling a node.
func _act(where: String, made: SCMachine, index: int, begins: bool) -> void:
	if _left <= 0 or _depth >= MOST_DEPTH or _deeds.ledger.quiet > 0 or _dice.one_in(2):
		return
	var began_before := _deeds.began_here and _depth > 0
	_deeds.began_here = began_before or (begins and _depth == 0)
	_depth += 1
	var id := made.get_instance_id() if made != null else 0
	for i in _dice.randi_range(1, 2):
		if _left <= 0:
			break
		_left -= 1
		var there := _town.machines()
		if is_instance_id_valid(id) and not _dice.one_in(4):
			_deeds.do_one(where, instance_from_id(id), index)
		elif not there.is_empty():
			_deeds.do_one(where, _dice.pick(there))
		if there.size() < 2 and _town.size() < MOST_MACHINES * 4 and _town.tree_changes == 0:
			_town.add()
	_depth -= 1
	_deeds.began_here = began_before


func _on_state_changed(_previous: SCMachineState, current_one: SCMachineState, id: int) -> void:
	var made: SCMachine = instance_from_id(id)
	if made.current_state != current_one:
		_deeds.ledger.fault("state_changed tells of another state than the current one")
	_emit_within(id, "state changed")


func _on_event_sent(_event: StringName, _data: Variant, id: int) -> void:
	_emit_within(id, "event sent")


func _on_state_finished(at: SCMachineState, id: int) -> void:
	var made: SCMachine = instance_from_id(id)
	if not made.is_in_state(at):
		_deeds.ledger.fault("state_finished tells of a state that is not active")
	_emit_within(id, "state finished")


func _emit_within(id: int, what: String) -> void:
	_deeds.ledger.calls += 1
	_deeds.emitting[id] = _deeds.emitting.get(id, 0) + 1
	_act(what, instance_from_id(id), -1, false)
	_deeds.emitting[id] -= 1
	if _deeds.emitting[id] == 0:
		_deeds.emitting.erase(id)


## Between two frames nothing is half done.
func _check_all() -> void:
	var ledger := _deeds.ledger
	if _town.tree_changes != 0 or _depth != 0 or not _deeds.emitting.is_empty():
		ledger.fault("the game is still in the middle of something: %d, %d, %s" % [_town.tree_changes, _depth, _deeds.emitting])
	for made in _town.machines():
		var at: SCMachineState = made.current_state
		var active: Array = made.active_states()
		var called_each_frame := made.is_processing() or made.is_physics_processing()
		var checks: Dictionary[String, bool] = {
			"running is %s and the current state is %s" % [made.is_running(), at]: made.is_running() == (at != null),
			"%d active states in %d runs" % [active.size(), made._core_live_runs()]: active.size() == made._core_live_runs(),
			"still leaving when nothing is going on": not made._core_leaving(),
			"stopped, with active states": at != null or active.is_empty(),
			"stopped, and called each frame": at != null or not called_each_frame,
			"the current state is not active": at == null or made.is_in_state(at),
			"paused, and called each frame": at == null or not made.is_paused() or not called_each_frame,
			"an action is still being run when nothing is going on": at == null or (not active.is_empty() and made.running_state() == active[-1]),
		}
		for told in checks:
			if not checks[told]:
				ledger.fault(told)
