extends RefCounted
## The table of what a game can do to machines, their nodes, states, actions and variables, and to the scene, while they run.
## Done from outside, or from within any call that a machine makes.
##
## Deeds that the engine itself has no answer to are left out: changing the tree while the tree is being changed, and freeing a
## node while it emits or while the engine is about to go on with it ([code]queue_free[/code] is there for these). In a town
## whose designs are all valid, only what leaves nothing to complain of is done.

const Town := preload("res://tests/fuzz/town.gd")
const Design := preload("res://tests/fuzz/design.gd")
const Edits := preload("res://tests/fuzz/edits.gd")
const Filling := preload("res://tests/fuzz/filling.gd")
const Ledger := preload("res://tests/fuzz/ledger.gd")
const Own := preload("res://tests/fuzz/own.gd")
const Dice := preload("res://tests/fuzz/dice.gd")
const Fast := preload("res://addons/quillstead/runtime/quillstead_fast.gd")

## Each as often as it is drawn.
const TO_MACHINES: Array[StringName] = [
	&"start", &"start", &"stop", &"restart", &"restart", &"go to", &"go to", &"send", &"send", &"send", &"send", &"broadcast", &"write", &"write", &"write",
	&"write global", &"put globals back", &"cancel", &"pause", &"step", &"forward", &"forward", &"look", &"look", &"listen", &"change tick", &"replace values",
	&"swap design", &"leave at next change", &"answer next change", &"ask", &"use press",
]
const TO_ACTIONS: Array[StringName] = [&"finish", &"keep finisher", &"call late", &"wait", &"wait", &"tween", &"rest", &"rest", &"ring", &"ring", &"progress"]
const TO_THE_SCENE: Array[StringName] = [
	&"put back", &"take out", &"reparent", &"move", &"change mode", &"show", &"rename", &"replace", &"replace", &"leave", &"leave", &"take a node away",
	&"press", &"edit", &"edit", &"edit", &"start elsewhere", &"measure", &"change speed", &"pause the game",
]
const TO_ALL: Array[StringName] = [&"measure", &"change speed", &"pause the game"]
const ROUGH_ONES: Array[StringName] = [&"ask", &"replace values", &"finish", &"progress", &"take a node away"]
const KEPT: int = 12
const TRAIL: int = 40

var ledger: Ledger = Ledger.new()
## The last deeds, for whoever has to find out what went wrong.
var trail: PackedStringArray = []
## Told of calls that come back from what the deeds have asked for: what it is, the machine, and the action's index.
var called: Callable
## Whether everything going on was begun by a player, and not by the engine's call of a node.
var began_here: bool = true
## Above 0 while a kept tween steps: the engine steps none within its own step.
var in_tweens: int = 0
## By id: how many signals of a machine are being emitted.
var emitting: Dictionary[int, int] = {}
## Machines that are not asked to leave their states: freed in the middle of something, or while outside the tree.
var no_say: Dictionary[int, bool] = {}
## Machines that a deed has stopped.
var stopped: Dictionary[int, bool] = {}

var _town: Town
var _dice: Dice
var _rough: bool
var _edits: Edits
var _lane: Own.Lane = Own.Lane.new()
var _condition: Own.Condition = Own.Condition.new()
var _bells: Array[Own.Bell] = []
var _late_calls: Array[Dictionary] = []
# Each a machine's id and what was added to it.
var _forwarders: Array[Array] = []
var _all: Array[StringName] = TO_MACHINES + TO_ACTIONS + TO_THE_SCENE


func _init(town: Town, calls: Callable) -> void:
	_town = town
	_dice = town.dice
	_rough = not town.designs[0].valid
	_edits = Edits.new(town)
	called = calls
	_lane.called = calls
	_condition.called = calls


## From outside, to any of them.
func do_some(count: int) -> void:
	for i in count:
		var number := _dice.randi_range(0, _town.size() - 1)
		var machine := _town.machine(number)
		if machine == null or machine.get_parent() == null:
			_town.add(number)
		elif _rough or machine.is_inside_tree():
			do_one("outside", machine)
		else:
			_do_to_the_scene(&"put back", machine)


## One, to a machine that runs the action of [param index], or to any when that is below 0.
func do_one(where: String, machine: SCMachine, index: int = -1) -> void:
	var deed: StringName = _dice.pick(_all)
	trail.append("%s: %s %s" % [where, deed, machine.name])
	if trail.size() > TRAIL:
		trail.remove_at(0)
	if (deed in ROUGH_ONES and not _rough) or (deed in TO_ALL and not _may_reach_all()) or (deed == &"take a node away" and where != "outside"):
		return
	if deed in TO_MACHINES:
		_do_to_machine(deed, machine, index)
	elif deed in TO_ACTIONS and (_rough or index >= 0):
		do_to_action(deed, machine, index)
	elif deed in TO_THE_SCENE and machine.get_parent() != null:
		_do_to_the_scene(deed, machine)


func forget() -> void:
	for bell in _bells:
		if is_instance_valid(bell):
			bell.free()
	_bells.clear()
	_late_calls.clear()
	_forwarders.clear()
	for action: StringName in [&"ui_accept", &"ui_left"]:
		Input.action_release(action)


func _do_to_machine(deed: StringName, machine: SCMachine, index: int) -> void:
	var id := machine.get_instance_id()
	var data: Variant = _any_value() if _rough else null
	match deed:
		&"start":
			stopped.erase(id)
			machine.start()
			if is_instance_id_valid(id):
				machine.send_event(Design.BEGIN)
		&"stop":
			stopped[id] = true
			machine.stop()
		&"restart":
			var active: Array = machine.active_states()
			if not active.is_empty() and (not _rough or _dice.one_in(2)):
				machine.restart_state(_dice.pick(active))
			elif _rough:
				machine.restart_state(_any_state())
		&"go to":
			var states := machine.all_states()
			var state: SCMachineState = _any_state() if _rough else null if states.is_empty() or not machine.is_running() else _dice.pick(states)
			if state != null and _dice.one_in(2):
				machine.go_to(state.state_name)
			elif state != null:
				machine.go_to_state(state)
		&"send":
			var event := _any_event()
			if _dice.one_in(4):
				SCMachine.note_sender(event, machine)
				machine.send_event_from_signal(event, data)
			else:
				machine.send_event(event, data)
		&"broadcast":
			if _may_reach_all() and _dice.one_in(2):
				SCMachine.broadcast_everywhere(_any_event(), data)
			else:
				machine.broadcast_event(Town.RUNNERS, _any_event(), data)
		&"write":
			_write(machine)
		&"write global":
			machine.set_global_value(&"level", data if _rough else _dice.randf_range(0.0, 20.0))
		&"put globals back":
			machine.put_globals_back([])
		&"cancel":
			machine.cancel_timeouts(_may_cancel)
		&"pause":
			machine.set_paused(not machine.is_paused() and _dice.one_in(3))
		&"step":
			if in_tweens == 0:
				machine.set_paused(_dice.one_in(2))
				if is_instance_id_valid(id):
					machine.step_once()
		&"forward":
			if _dice.one_in(2) and _forwarders.size() < KEPT:
				_forwarders.append([id, _on_forwarded.bind(id)])
				machine.add_forwarder(_forwarders[-1][1])
			elif not _forwarders.is_empty():
				var added: Array = _forwarders.pop_at(_dice.randi_range(0, _forwarders.size() - 1))
				if _with_id(added[0]) != null:
					_with_id(added[0]).remove_forwarder(added[1])
		&"look":
			_look(machine, index)
		&"listen":
			_connect_or_not(machine.state_finished, _on_heard)
		&"leave at next change":
			_connect_or_not(machine.state_changed, _on_last_change.bind(id))
		&"answer next change":
			_connect_or_not(machine.state_changed, _on_answered_change.bind(id))
		&"change tick":
			machine.physics_tick = not machine.physics_tick
			machine.process_priority = _dice.randi_range(0, 3)
		&"replace values":
			machine.values = {&"whole": 2, &"level": 1.0}
		&"swap design":
			var design := _town.any_design()
			if _rough or (machine.template != null and not design.wants_mate):
				machine.template = design.design
				if is_instance_id_valid(id) and (not _rough or _dice.one_in(2)):
					machine.stop()
					if is_instance_id_valid(id):
						_do_to_machine(&"start", machine, index)
		&"ask":
			if _dice.one_in(3):
				machine.ask_compiled(_condition, index)
			else:
				machine.ask(_condition, index, {} if _dice.one_in(2) else null)
		&"use press":
			machine.use_press(&"jump")
			machine.press_already_used(&"jump")


## Any index will do when it is below 0.
func do_to_action(deed: StringName, machine: SCMachine, index: int) -> void:
	var action := index if index >= 0 else _dice.randi_range(-1, 3)
	match deed:
		&"finish":
			machine.finish(action)
		&"keep finisher":
			# Kept beyond its time it must do nothing.
			_late_calls.append({"machine": machine.get_instance_id(), "run": ledger.run_of(machine, action), "call": machine.finisher(action)})
			if _late_calls.size() > KEPT:
				_late_calls.remove_at(0)
		&"call late":
			if not _late_calls.is_empty():
				_call_late(_dice.pick(_late_calls))
		&"wait":
			var then := _on_time_up.bind(machine.get_instance_id(), action, ledger.run_of(machine, action))
			var at_once := _dice.one_in(8)
			machine.finish_after(action, 0.0 if at_once else _dice.randf_range(0.001, 0.06), Callable() if at_once else then, _dice.one_in(3))
		&"tween":
			_tween(machine, action)
		&"rest":
			var wakers := []
			for i in _dice.randi_range(0, 2):
				wakers.append([_any_bell(), &"rung" if not _rough or not _dice.one_in(8) else &"never"])
			if _rough and _dice.one_in(4):
				machine.rest_in_lane(action, _lane, _dice.randi_range(-1, 3))
			else:
				machine.rest_until(action, wakers)
		&"chase":
			var lane := Fast.lane_for(machine)
			if lane != null:
				machine.rest_in_lane(action, lane, lane.add_chase(true, machine, machine.target, &"thing", 200.0, 20.0, &"go", false))
		&"ring":
			var bell := _any_bell()
			if not _dice.one_in(5):
				bell.set_meta(&"ringing", true)
				bell.rung.emit()
				bell.remove_meta(&"ringing")
			# One that is being rung may not go.
			elif not bell.has_meta(&"ringing"):
				bell.free()
		&"progress":
			machine.progress_made(_lane, 1)


func _do_to_the_scene(deed: StringName, machine: SCMachine) -> void:
	var host := machine.get_parent()
	var id := machine.get_instance_id()
	var may_change := _town.tree_changes == 0 and not host.is_queued_for_deletion()
	var may_free := may_change and began_here and not emitting.has(id)
	_town.tree_changes += 1
	match deed:
		&"put back" when may_change and host.get_parent() == null:
			_town.any_place().add_child(host)
		&"take out" when may_change and host.get_parent() != null:
			host.get_parent().remove_child(host)
		&"reparent" when may_change and host.get_parent() != null:
			host.reparent(_town.any_place(), _dice.one_in(2))
		&"move" when may_change and host.get_parent() != null:
			SCMachine.move_node(host, _town.any_place(), _dice.one_in(2))
		&"change mode" when may_change and machine.is_inside_tree():
			var on: Node = _dice.pick([machine, host, _town.any_place()])
			on.process_mode = Node.PROCESS_MODE_INHERIT if _dice.one_in(2) else _dice.randi_range(0, 4)
		&"show":
			host.set(&"visible", _dice.one_in(2))
		&"rename" when may_change:
			host.name = "Renamed%d" % id
		&"replace" when may_change and _town.number_of(id) >= 0:
			no_say[id] = true
			_town.add(_town.number_of(id))
		&"leave" when _dice.one_in(2):
			no_say[id] = true
			var goes: Node = host if _rough or _dice.one_in(2) else machine
			if may_free:
				goes.free()
			else:
				goes.queue_free()
		&"take a node away" when may_free:
			var child: Node = _dice.pick(host.get_children())
			if not child is SCMachine:
				child.free()
		&"press":
			if _dice.one_in(2):
				Input.action_press(_dice.pick([&"ui_accept", &"ui_left"]))
			else:
				Input.action_release(&"ui_accept")
		&"measure":
			SCMachine.set_measuring(not SCMachine.get_measuring())
		&"change speed":
			Engine.time_scale = _dice.pick([0.0, 0.5, 1.0, 3.0] if _rough else [1.0, 2.0])
		&"pause the game" when may_change and began_here:
			_town.tree.paused = not _town.tree.paused
		&"edit":
			_edits.edit()
		&"start elsewhere":
			var template := _town.any_design().design
			template.initial_state = _dice.pick(template.states)
	_town.tree_changes -= 1


func _any_value() -> Variant:
	match _dice.randi_range(0, 9):
		0, 1: return _dice.randi_range(-5, 30)
		2, 3: return _dice.randf_range(-5.0, 30.0)
		4: return [1, 2]
		5: return _dice.pick(_town.machines()) if not _town.machines().is_empty() else null
	return _town.any_design().filling.odd()


func _any_state() -> SCMachineState:
	return _dice.pick(_town.any_design().design.all_states())


func _any_event() -> StringName:
	var event: StringName = _dice.pick(Filling.EVENTS + ([Design.BEGIN, Filling.AHEAD, &"answer", &"again", &"hidden"] as Array[StringName]))
	return event if event != Design.GLOBAL_EVENT or _may_reach_all() else &"go"


## Once in a while will do where there are thousands of machines.
func _may_reach_all() -> bool:
	return _dice.randi_range(0, _town.size()) < 20


func _any_bell() -> Own.Bell:
	_bells = _bells.filter(func(bell: Variant) -> bool: return is_instance_valid(bell))
	if _bells.size() < 4:
		_bells.append(Own.Bell.new())
	return _dice.pick(_bells)


func _with_id(id: int) -> SCMachine:
	return instance_from_id(id) as SCMachine if is_instance_id_valid(id) else null


## Of a valid design, what the variable starts with, or a node.
func _write(machine: SCMachine) -> void:
	# One that has never run would say that it is too early.
	if not machine.is_running() and machine.values.is_empty():
		return
	var held: Array = machine.variables if machine.template == null else machine.template.variables
	if _rough:
		machine.set_value(_dice.pick(Filling.VARIABLES.keys()), _any_value())
	elif _dice.one_in(4):
		machine.set_value(&"thing", _town.host(_dice.randi_range(0, _town.size() - 1)))
	elif not held.is_empty():
		var variable: SCMachineVariable = _dice.pick(held)
		machine.set_value(variable.name, variable.default_value)


func _may_cancel(_action: Variant) -> bool:
	called.call("cancelling", null, -1)
	return _dice.one_in(2)


func _on_forwarded(_event: StringName, _data: Variant, id: int) -> bool:
	called.call("forwarder", _with_id(id), -1)
	return _rough and _dice.one_in(5)


func _connect_or_not(heard: Signal, told: Callable) -> void:
	if heard.is_connected(told):
		heard.disconnect(told)
	else:
		heard.connect(told, CONNECT_ONE_SHOT)


func _on_heard(_state: SCMachineState) -> void:
	ledger.calls += 1


func _on_last_change(_previous: SCMachineState, _current: SCMachineState, id: int) -> void:
	no_say[id] = true
	if _with_id(id) != null and _with_id(id).get_parent() != null:
		_with_id(id).get_parent().queue_free()


func _on_answered_change(_previous: SCMachineState, _current: SCMachineState, id: int) -> void:
	if _with_id(id) != null:
		_with_id(id).send_event(Filling.AHEAD, 1.0)


## Everything that only looks.
func _look(machine: SCMachine, index: int) -> void:
	for asked: StringName in [
		&"active_chain", &"active_states", &"all_states", &"running_state", &"previous_state", &"last_event", &"last_event_data", &"last_event_sender",
		&"state_time", &"actions_done", &"sub_state_finished",
	]:
		machine.call(asked)
	machine.event_data(&"go")
	machine.is_finished(index)
	machine.actions_done_except(index)
	machine.is_resting(index)
	machine.limits_of(&"level")
	machine.get_value(_dice.pick(Filling.VARIABLES.keys()))
	machine.values.size()
	SCMachine.machine_of_or_above(machine)
	SCMachine.machines_running()
	# Actions speak here, and may do something.
	machine.live_rows()


func _call_late(late: Dictionary) -> void:
	var call: Callable = late["call"]
	var run: int = late["run"]
	if run == 0 or ledger.phase_of(run) == Ledger.Phase.ENTERED:
		call.call()
		return
	var calls := ledger.calls
	var before := _told_of(late["machine"])
	call.call()
	if ledger.calls != calls or _told_of(late["machine"]) != before:
		ledger.fault("a finisher that came after its state was left did something")


func _told_of(id: int) -> String:
	ledger.quiet += 1
	var machine := _with_id(id)
	var told := str(machine.live_rows(), machine.current_state, machine.is_running()) if machine != null else "gone"
	ledger.quiet -= 1
	return told


func _on_time_up(id: int, action: int, run: int) -> void:
	ledger.came_back(run, "a timer's call")
	if _with_id(id) == null:
		ledger.fault("a timer's call for a machine that is gone")
	called.call("then", _with_id(id), action)


func _tween(machine: SCMachine, action: int) -> void:
	var slot := machine.slot(action)
	# One that takes the place of another leaves that to itself, to run on.
	if slot.has(&"tween"):
		return
	slot[&"tween"] = true
	var tween := machine.create_tween() if machine.is_inside_tree() else _town.tree.create_tween()
	tween.tween_interval(_dice.randf_range(0.001, 0.05))
	tween.tween_callback(_on_tween.bind(machine.get_instance_id(), action, ledger.run_of(machine, action)))
	if _dice.one_in(2):
		machine.finish_with_tween(action, tween)
	else:
		machine.keep_tween(action, tween)


func _on_tween(id: int, action: int, run: int) -> void:
	ledger.came_back(run, "a kept tween's call")
	in_tweens += 1
	called.call("tween", _with_id(id), action)
	in_tweens -= 1
