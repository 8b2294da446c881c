extends RefCounted
## One round: a few machines whose every callback does unforeseen things to all of them. What happens depends on the seed alone.
##
## Deeds that the engine itself has no answer to are left out: changing the tree while the tree is being changed, and freeing
## a node while it emits or while the engine is about to go on with it ([code]queue_free[/code] is there for these).

const Ledger := preload("res://tests/fuzz/fuzz_ledger.gd")
const Design := preload("res://tests/fuzz/fuzz_design.gd")
const Condition := preload("res://tests/fuzz/fuzz_condition.gd")
const Bell := preload("res://tests/fuzz/fuzz_bell.gd")
const FuzzLane := preload("res://tests/fuzz/fuzz_lane.gd")

const MOST_MACHINES: int = 5
const DEEDS_A_FRAME: int = 30
const MOST_DEPTH: int = 8
const KEPT: int = 12
const TRAIL: int = 40

var random: RandomNumberGenerator = RandomNumberGenerator.new()
var ledger: Ledger = Ledger.new()
var actions: Array[SCMachineAction] = []
## The last deeds, for whoever has to find out what went wrong.
var trail: PackedStringArray = []

var _tree: SceneTree
var _parents: Array[Node] = []
var _hosts: Array[Node] = []
var _templates: Array[SCMachineTemplate] = []
var _condition: Condition = Condition.new()
var _lane: FuzzLane = FuzzLane.new()
var _bells: Array[Bell] = []
var _late_calls: Array[Dictionary] = []
var _forwarders: Array[Callable] = []
var _left: int = 0
var _depth: int = 0
var _quiet: int = 0
## Above 0 while some part of the tree comes or goes.
var _tree_changes: int = 0
## Above 0 while a kept tween steps: the engine steps none within its own step.
var _in_tweens: int = 0
## Whether everything going on was begun by this game, and not by the engine's call of a node.
var _began_here: bool = false
## By id: how many signals of a machine are being emitted.
var _emitting: Dictionary[int, int] = {}
## Machines that are not asked to leave their states: freed in the middle of something, or while outside the tree.
var _freed: Dictionary[int, bool] = {}


func open(stage: Node, with_seed: int) -> void:
	random.seed = with_seed
	_tree = stage.get_tree()
	_condition.game = self
	_lane.game = self
	for name: String in ["Here", "There"]:
		var parent := Node.new()
		parent.name = name
		stage.add_child(parent)
		_parents.append(parent)
	var design := Design.new(self)
	for i in pick_count(1, 2):
		_templates.append(design.draw())
	for i in pick_count(2, 3):
		_add_machine()


## What the game itself does in a frame, on top of what its machines do.
func play_frame() -> void:
	_left = DEEDS_A_FRAME
	for i in pick_count(1, 4):
		act("outside", 0, -1, 0, true)
	if _tree.paused and one_in(2):
		_tree.paused = false
	_check_all()


func close() -> void:
	_left = 0
	_tree.paused = false
	Engine.time_scale = 1.0
	for machine in _machines():
		if not machine.is_inside_tree():
			_freed[machine.get_instance_id()] = true
	for parent in _parents:
		parent.queue_free()
	for host in _hosts:
		if is_instance_valid(host) and not host.is_inside_tree():
			host.queue_free()


## Once the nodes are gone: nothing may be left that was entered and not exited.
func forget() -> void:
	ledger.expect_all_exited(_freed)
	for action in actions:
		action.set(&"game", null)
	actions.clear()
	for template in _templates:
		for state: SCMachineState in template.all_states():
			state.actions.clear()
			state.transitions.clear()
	_templates.clear()
	for bell in _bells:
		if is_instance_valid(bell):
			bell.free()
	_bells.clear()
	_condition.game = null
	_lane.game = null
	_late_calls.clear()
	_forwarders.clear()
	_parents.clear()
	_hosts.clear()


## A callback has come: a deed or two, most of the time to the machine that called. [param begins] says that the engine is
## not in the middle of calling a node.
func act(where: String, id: int, index: int = -1, run: int = 0, begins: bool = false) -> void:
	if _left <= 0 or _depth >= MOST_DEPTH or _quiet > 0 or one_in(2):
		return
	var began_before := _began_here
	_began_here = began_before or (begins and _depth == 0)
	_depth += 1
	for i in pick_count(1, 2):
		if _left <= 0:
			break
		_left -= 1
		var machine := machine_of(id)
		if machine == null or one_in(4):
			machine = _any_machine()
		if machine == null:
			_add_machine()
			continue
		_do_something(where, machine, index if machine.get_instance_id() == id else -1, run)
	_depth -= 1
	_began_here = began_before


func machine_of(id: int) -> SCMachine:
	return instance_from_id(id) as SCMachine if id != 0 and is_instance_id_valid(id) else null


func one_in(chances: int) -> bool:
	return random.randi() % chances == 0


func pick(from: Array) -> Variant:
	return from[random.randi() % from.size()]


func pick_count(least: int, most: int) -> int:
	return random.randi_range(least, most)


func any_value() -> Variant:
	match random.randi() % 8:
		0: return random.randi_range(-5, 30)
		1: return random.randf_range(-5.0, 30.0)
		2: return "words"
		3: return null
		4: return [1, 2]
		5: return random.randi() % 2 == 0
		6: return _any_machine()
	return 1.0


func _do_something(where: String, machine: SCMachine, index: int, run: int) -> void:
	var deeds: Array[Callable] = [
		_go, _go, _restart, _restart, _stop, _start, _start, _send, _send, _send, _broadcast, _write, _write, _write_global,
		_finish, _keep_finisher, _call_late, _wait, _wait, _tween, _rest, _rest, _ring, _ring, _cancel, _pause, _step, _forward,
		_ask, _look, _look, _change_tree, _change_tree, _change_mode, _edit, _settings, _presses, _leave_for_good,
	]
	var deed: Callable = pick(deeds)
	trail.append("%s%s: %s %s" % ["  ".repeat(_depth), where, deed.get_method(), machine.get_parent().name])
	if trail.size() > TRAIL:
		trail.remove_at(0)
	deed.call(machine, index, run)


func _go(machine: SCMachine, _index: int, _run: int) -> void:
	if one_in(2):
		machine.go_to(&"S%d" % (random.randi() % Design.MOST_STATES))
	else:
		machine.go_to_state(_any_state())


func _restart(machine: SCMachine, _index: int, _run: int) -> void:
	var active: Array = machine.active_states()
	if one_in(2) and not active.is_empty():
		machine.restart_state(pick(active))
	else:
		machine.restart_state(_any_state())


func _stop(machine: SCMachine, _index: int, _run: int) -> void:
	machine.stop()


func _start(machine: SCMachine, _index: int, _run: int) -> void:
	machine.start()


func _send(machine: SCMachine, _index: int, _run: int) -> void:
	SCMachine.note_sender(&"go", machine)
	if one_in(4):
		machine.send_event_from_signal(pick(Design.EVENTS), any_value())
	else:
		machine.send_event(pick(Design.EVENTS), any_value())


func _broadcast(machine: SCMachine, _index: int, _run: int) -> void:
	if one_in(2):
		SCMachine.broadcast_everywhere(pick(Design.EVENTS), any_value())
	else:
		machine.broadcast_event(&"fuzzed", pick(Design.EVENTS), any_value())


func _write(machine: SCMachine, _index: int, _run: int) -> void:
	machine.set_value(pick(Design.VARIABLES), any_value())


func _write_global(machine: SCMachine, _index: int, _run: int) -> void:
	if one_in(4):
		machine.put_globals_back([])
	else:
		machine.set_global_value(&"shared", any_value())


func _finish(machine: SCMachine, index: int, _run: int) -> void:
	machine.finish(index if index >= 0 and one_in(2) else random.randi_range(-1, 4))


## A finisher kept beyond its time must do nothing.
func _keep_finisher(machine: SCMachine, index: int, _run: int) -> void:
	var action := maxi(index, 0)
	_late_calls.append({"machine": machine.get_instance_id(), "run": ledger.run_of(machine, action), "call": machine.finisher(action)})
	if _late_calls.size() > KEPT:
		_late_calls.remove_at(0)


func _call_late(_machine: SCMachine, _index: int, _run: int) -> void:
	if _late_calls.is_empty():
		return
	var late: Dictionary = pick(_late_calls)
	var call: Callable = late["call"]
	var machine := machine_of(late["machine"])
	var run: int = late["run"]
	if run == 0 or ledger.phase_of(run) == Ledger.Phase.ENTERED:
		call.call()
		return
	var calls := ledger.calls
	var before := _told_of(machine)
	call.call()
	if ledger.calls != calls or _told_of(machine_of(late["machine"])) != before:
		ledger.fault("a finisher that came after its state was left did something")


func _wait(machine: SCMachine, index: int, _run: int) -> void:
	var action := index if index >= 0 else random.randi_range(-1, 3)
	var seconds := random.randf_range(0.001, 0.06)
	var then := _on_time_up.bind(machine.get_instance_id(), action, ledger.run_of(machine, action))
	if one_in(8):
		seconds = 0.0
		then = Callable()
	machine.finish_after(action, seconds, then, one_in(3))


func _on_time_up(id: int, action: int, run: int) -> void:
	ledger.came_back(run, "a timer's call")
	if machine_of(id) == null:
		ledger.fault("a timer's call for a machine that is gone")
	act("then", id, action, run, true)


func _tween(machine: SCMachine, index: int, _run: int) -> void:
	var action := index if index >= 0 else random.randi_range(-1, 3)
	var slot := machine.slot(action)
	# One that takes the place of another leaves that to itself, to run on.
	if slot.has(&"tween"):
		return
	slot[&"tween"] = true
	var tween := machine.create_tween() if machine.is_inside_tree() else _tree.create_tween()
	tween.tween_interval(random.randf_range(0.001, 0.05))
	tween.tween_callback(_on_tween.bind(machine.get_instance_id(), action, ledger.run_of(machine, action)))
	if one_in(2):
		machine.finish_with_tween(action, tween)
	else:
		machine.keep_tween(action, tween)


func _on_tween(id: int, action: int, run: int) -> void:
	ledger.came_back(run, "a kept tween's call")
	_in_tweens += 1
	act("tween", id, action, run, true)
	_in_tweens -= 1


func _rest(machine: SCMachine, index: int, _run: int) -> void:
	var action := maxi(index, 0)
	if one_in(4):
		machine.rest_in_lane(action, _lane, random.randi_range(-1, 3))
		return
	var wakers := []
	for i in pick_count(0, 2):
		wakers.append([_any_bell(), &"rung" if not one_in(8) else &"never"])
	machine.rest_until(action, wakers)


func _ring(_machine: SCMachine, _index: int, _run: int) -> void:
	var bell := _any_bell()
	if one_in(5):
		# A bell that is being rung may not go.
		if not bell.has_meta(&"ringing"):
			bell.free()
		return
	bell.set_meta(&"ringing", true)
	bell.rung.emit()
	bell.remove_meta(&"ringing")


func _cancel(machine: SCMachine, _index: int, _run: int) -> void:
	machine.cancel_timeouts(_may_cancel)


func _may_cancel(_action: Variant) -> bool:
	act("cancelling", 0)
	return one_in(2)


func _pause(machine: SCMachine, _index: int, _run: int) -> void:
	machine.set_paused(not machine.is_paused() and one_in(3))


func _step(machine: SCMachine, _index: int, _run: int) -> void:
	if _in_tweens > 0:
		return
	if one_in(2):
		machine.set_paused(true)
	if is_instance_valid(machine):
		machine.step_once()


func _forward(machine: SCMachine, _index: int, _run: int) -> void:
	var forwarder := _on_forwarded.bind(machine.get_instance_id())
	if one_in(2) and _forwarders.size() < KEPT:
		machine.add_forwarder(forwarder)
		_forwarders.append(forwarder)
	elif not _forwarders.is_empty():
		machine.remove_forwarder(pick(_forwarders))


func _on_forwarded(_event: StringName, _data: Variant, id: int) -> bool:
	act("forwarder", id)
	return one_in(5)


func _ask(machine: SCMachine, index: int, _run: int) -> void:
	if one_in(3):
		machine.ask_compiled(_condition, index)
	else:
		machine.ask(_condition, index, {} if one_in(2) else null)


## Everything that only looks.
func _look(machine: SCMachine, index: int, _run: int) -> void:
	machine.active_chain()
	machine.active_states()
	machine.running_state()
	machine.previous_state()
	machine.last_event()
	machine.event_data(&"go")
	machine.last_event_data()
	machine.last_event_sender()
	machine.state_time()
	machine.is_finished(index)
	machine.actions_done()
	machine.actions_done_except(index)
	machine.sub_state_finished()
	machine.is_resting(index)
	machine.limits_of(&"level")
	machine.get_value(pick(Design.VARIABLES))
	machine.values.size()
	SCMachine.machine_of_or_above(machine)
	SCMachine.machines_running()
	# Actions speak here, and may do something.
	machine.live_rows()


func _change_tree(machine: SCMachine, _index: int, _run: int) -> void:
	var host := machine.get_parent()
	if _tree_changes > 0 or host == null or host.is_queued_for_deletion():
		return
	_tree_changes += 1
	if host.get_parent() == null:
		(pick(_parents) as Node).add_child(host)
	else:
		match random.randi() % 4:
			0: host.get_parent().remove_child(host)
			1: host.reparent(pick(_parents), false)
			2: SCMachine.move_node(host, pick(_parents), false)
			3: SCMachine.move_node(host, pick(_parents), true)
	_tree_changes -= 1


func _change_mode(machine: SCMachine, _index: int, _run: int) -> void:
	if _tree_changes > 0 or not machine.is_inside_tree():
		return
	_tree_changes += 1
	if _depth == 1 and one_in(4):
		_tree.paused = not _tree.paused
	else:
		var on: Node = machine if one_in(2) else machine.get_parent()
		on.process_mode = Node.PROCESS_MODE_INHERIT if one_in(2) else random.randi() % 5
	_tree_changes -= 1


## Designs change under machines that run them.
func _edit(machine: SCMachine, _index: int, _run: int) -> void:
	var state := _any_state()
	var design: Design = Design.new(self)
	match random.randi() % 7:
		0: state.actions.append(design.action())
		1: state.actions = state.actions.slice(1)
		2: state.actions.clear()
		3: state.transitions = state.transitions.slice(1)
		4: state.is_end_state = not state.is_end_state
		5: machine.template = pick(_templates)
		6: _start_in(pick(_templates))


func _start_in(template: SCMachineTemplate) -> void:
	template.initial_state = pick(template.states)


func _settings(machine: SCMachine, _index: int, _run: int) -> void:
	match random.randi() % 5:
		0: machine.physics_tick = not machine.physics_tick
		1: machine.values = {&"whole": 2, &"level": 1.0}
		2: SCMachine.set_measuring(not SCMachine.get_measuring())
		3: machine.progress_made(_lane, 1)
		4: Engine.time_scale = pick([0.0, 0.5, 1.0, 3.0])


func _presses(machine: SCMachine, _index: int, _run: int) -> void:
	machine.use_press(&"jump")
	machine.press_already_used(&"jump")


func _leave_for_good(machine: SCMachine, _index: int, _run: int) -> void:
	var host := machine.get_parent()
	if host == null or one_in(2):
		return
	_freed[machine.get_instance_id()] = true
	if _tree_changes == 0 and _began_here and not _emitting.has(machine.get_instance_id()) and not host.is_queued_for_deletion():
		_tree_changes += 1
		host.free()
		_tree_changes -= 1
	elif one_in(2):
		host.queue_free()
	else:
		machine.queue_free()


func _add_machine() -> void:
	if _tree_changes > 0 or _hosts.size() > MOST_MACHINES * 4 or _machines().size() >= MOST_MACHINES:
		return
	var host := Node.new()
	host.name = "Host%d" % _hosts.size()
	var machine := SCMachine.new()
	machine.name = "Machine"
	machine.template = pick(_templates)
	machine.physics_tick = one_in(3)
	machine.autostart = not one_in(8)
	host.add_to_group(&"fuzzed")
	var id := machine.get_instance_id()
	machine.state_changed.connect(_on_state_changed.bind(id))
	machine.event_sent.connect(_on_event_sent.bind(id))
	machine.state_finished.connect(_on_state_finished.bind(id))
	# The states are left between these two.
	machine.tree_exiting.connect(_on_going.bind(1))
	machine.tree_exited.connect(_on_going.bind(-1))
	host.add_child(machine)
	_hosts.append(host)
	_tree_changes += 1
	(pick(_parents) as Node).add_child(host)
	_tree_changes -= 1


func _on_going(change: int) -> void:
	_tree_changes += change


func _on_state_changed(_previous: SCMachineState, current: SCMachineState, id: int) -> void:
	_emit_within(id, "state changed", func() -> void:
		if machine_of(id).current_state != current:
			ledger.fault("state_changed tells of another state than the current one"))


func _on_event_sent(_event: StringName, _data: Variant, id: int) -> void:
	_emit_within(id, "event sent")


func _on_state_finished(state: SCMachineState, id: int) -> void:
	_emit_within(id, "state finished", func() -> void:
		if not machine_of(id).is_in_state(state):
			ledger.fault("state_finished tells of a state that is not active"))


func _emit_within(id: int, what: String, check: Callable = Callable()) -> void:
	ledger.calls += 1
	_emitting[id] = _emitting.get(id, 0) + 1
	if check.is_valid():
		check.call()
	act(what, id)
	_emitting[id] -= 1
	if _emitting[id] == 0:
		_emitting.erase(id)


func _machines() -> Array[SCMachine]:
	var machines: Array[SCMachine] = []
	for host in _hosts:
		if is_instance_valid(host) and host.get_child_count() > 0:
			var machine := host.get_child(0) as SCMachine
			if machine != null:
				machines.append(machine)
	return machines


func _any_machine() -> SCMachine:
	var machines := _machines()
	return null if machines.is_empty() else pick(machines)


func _any_state() -> SCMachineState:
	return pick((pick(_templates) as SCMachineTemplate).all_states())


func _any_bell() -> Bell:
	_bells = _bells.filter(func(bell: Variant) -> bool: return is_instance_valid(bell))
	if _bells.size() < 4:
		_bells.append(Bell.new())
	return pick(_bells)


func _told_of(machine: SCMachine) -> String:
	if machine == null:
		return "gone"
	_quiet += 1
	var told := str(machine.live_rows(), machine.current_state, machine.is_running())
	_quiet -= 1
	return told


## Between two frames nothing is half done.
func _check_all() -> void:
	if _tree_changes != 0 or _depth != 0 or not _emitting.is_empty():
		ledger.fault("the game is still in the middle of something: %d, %d, %s" % [_tree_changes, _depth, _emitting])
	for machine in _machines():
		_check(machine)


func _check(machine: SCMachine) -> void:
	var at: SCMachineState = machine.current_state
	var active: Array = machine.active_states()
	if machine.is_running() != (at != null):
		ledger.fault("running is %s and the current state is %s" % [machine.is_running(), at])
	if active.size() != machine._core_live_runs():
		ledger.fault("%d active states in %d runs" % [active.size(), machine._core_live_runs()])
	if machine._core_leaving():
		ledger.fault("still leaving when nothing is going on")
	if at == null:
		if not active.is_empty():
			ledger.fault("stopped, with active states")
		if machine.is_processing() or machine.is_physics_processing():
			ledger.fault("stopped, and called each frame")
		return
	if not machine.is_in_state(at):
		ledger.fault("the current state is not active")
	if machine.is_paused() and (machine.is_processing() or machine.is_physics_processing()):
		ledger.fault("paused, and called each frame")
	if machine.running_state() != active[-1]:
		ledger.fault("an action is still being run when nothing is going on")
