extends RefCounted
## What a game does to its machines from outside. Each deed has a seed of its own, so that what one of them meets makes no
## difference to the next.

const Town := preload("res://tests/soak/soak_town.gd")
const Designs := preload("res://tests/soak/soak_designs.gd")

const MOST_FORWARDERS: int = 200

var _town: Town
var _random: RandomNumberGenerator
var _seed: int
var _next: int = 0
# Each a machine's id and what was added to it.
var _forwarders: Array[Array] = []
var _deeds: Array[Callable] = [
	_start, _stop, _send, _send, _send, _send, _send, _send, _broadcast_to_group, _go_to, _go_to, _restart,
	_write, _write, _write, _write_global, _follow_prey, _reparent, _reparent, _move, _move, _take_out, _take_out, _put_back, _put_back,
	_free_machine, _free_host, _queue_free_machine, _queue_free_host, _leave_at_next_change, _answer_next_change,
	_replace, _replace, _replace, _replace, _hold_still, _switch_off, _switch_off, _pause, _step, _change_tick,
	_listen, _stop_listening, _forward, _forward, _stop_forwarding, _swap_template, _hide, _show, _rename, _look,
]


func _init(town: Town, with_seed: int) -> void:
	_town = town
	_random = town.random
	_seed = with_seed


func do_some(count: int) -> void:
	for i in count:
		_random.seed = hash(_seed + _next)
		_next += 1
		var deed: Callable = _deeds[_random.randi() % _deeds.size()]
		var number := _random.randi() % _town.size()
		var machine := _town.machine(number)
		if machine == null or machine.get_parent() == null:
			_town.add(number)
		elif machine.is_inside_tree():
			deed.call(machine, number)
		elif _one_in(3):
			_put_back(machine, number)
		else:
			_write(machine, number)


func _start(machine: SCMachine, _number: int) -> void:
	machine.start()


func _stop(machine: SCMachine, _number: int) -> void:
	machine.stop()


func _send(machine: SCMachine, _number: int) -> void:
	var event := _any_event()
	if Designs.GLOBAL_EVENTS.has(event) and not _one_in(10):
		event = &"noise"
	if _one_in(8):
		SCMachine.note_sender(event, machine)
		machine.send_event_from_signal(event, 2.0)
	else:
		machine.send_event(event, 1.0)


func _broadcast_to_group(machine: SCMachine, _number: int) -> void:
	machine.broadcast_event(Designs.RUNNERS, _any_event(), 1.0)


func _go_to(machine: SCMachine, _number: int) -> void:
	var state := _any_state(machine)
	if not machine.is_running() or machine.find_state(state.state_name) == null:
		return
	if _one_in(2):
		machine.go_to(state.state_name)
	else:
		machine.go_to_state(machine.find_state(state.state_name))


func _restart(machine: SCMachine, _number: int) -> void:
	if machine.is_running():
		machine.restart_state(machine.active_states()[0])


func _write(machine: SCMachine, _number: int) -> void:
	var held := machine.values
	if held.is_empty():
		return
	var name: StringName = held.keys()[_random.randi() % held.size()]
	match typeof(held[name]):
		TYPE_FLOAT: machine.set_value(name, 0.05 if name == &"pace" else _random.randf_range(0.0, 5.0))
		TYPE_STRING: machine.set_value(name, "a word of %d" % (_random.randi() % 100))
		TYPE_ARRAY: machine.set_value(name, range(_random.randi() % 5))
		TYPE_DICTIONARY: machine.set_value(name, {"visits": _random.randf()})


func _write_global(_machine: SCMachine, _number: int) -> void:
	var names := SCMachine.global_names()
	if not names.is_empty():
		SCMachine.set_global_value(names[_random.randi() % names.size()], _random.randf_range(0.0, 20.0))


func _follow_prey(machine: SCMachine, _number: int) -> void:
	var prey := _town.host(_random.randi() % _town.size())
	if prey != null and machine.has_value(&"prey"):
		machine.set_value(&"prey", prey)


func _reparent(_machine: SCMachine, number: int) -> void:
	_town.host(number).reparent(_town.any_place(), _one_in(2))


func _move(_machine: SCMachine, number: int) -> void:
	SCMachine.move_node(_town.host(number), _town.any_place(), _one_in(2))


func _take_out(_machine: SCMachine, number: int) -> void:
	var host := _town.host(number)
	host.get_parent().remove_child(host)


func _put_back(_machine: SCMachine, number: int) -> void:
	var host := _town.host(number)
	if not host.is_inside_tree() and not host.is_queued_for_deletion():
		_town.any_place().add_child(host)


func _free_machine(machine: SCMachine, _number: int) -> void:
	machine.free()


func _free_host(_machine: SCMachine, number: int) -> void:
	_town.host(number).free()


func _queue_free_machine(machine: SCMachine, _number: int) -> void:
	machine.queue_free()


func _queue_free_host(_machine: SCMachine, number: int) -> void:
	_town.host(number).queue_free()


func _leave_at_next_change(machine: SCMachine, _number: int) -> void:
	if not machine.state_changed.is_connected(_on_last_change):
		machine.state_changed.connect(_on_last_change.bind(machine.get_parent().get_instance_id()), CONNECT_ONE_SHOT)


func _on_last_change(_previous: SCMachineState, _current: SCMachineState, host_id: int) -> void:
	if is_instance_id_valid(host_id):
		(instance_from_id(host_id) as Node).queue_free()


func _answer_next_change(machine: SCMachine, _number: int) -> void:
	if not machine.state_changed.is_connected(_on_answered_change):
		machine.state_changed.connect(_on_answered_change.bind(machine.get_instance_id()), CONNECT_ONE_SHOT)


func _on_answered_change(_previous: SCMachineState, _current: SCMachineState, id: int) -> void:
	if is_instance_id_valid(id):
		(instance_from_id(id) as SCMachine).send_event(&"jump", 1.0)


func _replace(_machine: SCMachine, number: int) -> void:
	_town.host(number).queue_free()
	_town.add(number)


func _hold_still(_machine: SCMachine, _number: int) -> void:
	_town.any_place().process_mode = Node.PROCESS_MODE_DISABLED if _one_in(3) else Node.PROCESS_MODE_INHERIT


func _switch_off(machine: SCMachine, number: int) -> void:
	var node: Node = machine if _one_in(2) else _town.host(number)
	node.process_mode = [Node.PROCESS_MODE_INHERIT, Node.PROCESS_MODE_DISABLED, Node.PROCESS_MODE_ALWAYS, Node.PROCESS_MODE_WHEN_PAUSED][_random.randi() % 4]


func _pause(machine: SCMachine, _number: int) -> void:
	machine.set_paused(not machine.is_paused())


func _step(machine: SCMachine, _number: int) -> void:
	machine.set_paused(true)
	machine.step_once()
	if _one_in(2):
		machine.set_paused(false)


func _change_tick(machine: SCMachine, _number: int) -> void:
	machine.physics_tick = not machine.physics_tick


func _listen(machine: SCMachine, _number: int) -> void:
	if not machine.state_finished.is_connected(_town.tally.on_finish):
		machine.state_finished.connect(_town.tally.on_finish)


func _stop_listening(machine: SCMachine, _number: int) -> void:
	if machine.state_finished.is_connected(_town.tally.on_finish):
		machine.state_finished.disconnect(_town.tally.on_finish)


func _forward(machine: SCMachine, _number: int) -> void:
	if _forwarders.size() < MOST_FORWARDERS:
		var forwarder := _on_forwarded.bind(_town.machine(_random.randi() % _town.size()))
		machine.add_forwarder(forwarder)
		_forwarders.append([machine.get_instance_id(), forwarder])


func _on_forwarded(_event: StringName, _data: Variant, _to: Variant) -> bool:
	return false


func _stop_forwarding(_machine: SCMachine, _number: int) -> void:
	if _forwarders.is_empty():
		return
	var added: Array = _forwarders.pop_at(_random.randi() % _forwarders.size())
	var id: int = added[0]
	if is_instance_id_valid(id):
		(instance_from_id(id) as SCMachine).remove_forwarder(added[1])


func _swap_template(machine: SCMachine, _number: int) -> void:
	if machine.get_parent().has_node(^"Mate"):
		return
	machine.template = _town.any_template()
	if _one_in(2):
		machine.stop()
		machine.start()


func _hide(_machine: SCMachine, number: int) -> void:
	_town.host(number).hide()


func _show(_machine: SCMachine, number: int) -> void:
	_town.host(number).show()


func _rename(_machine: SCMachine, number: int) -> void:
	_town.host(number).name = "Renamed%d" % _random.randi()


## Everything that only looks.
func _look(machine: SCMachine, _number: int) -> void:
	machine.active_chain()
	machine.active_states()
	machine.live_rows()
	machine.last_event_data()
	machine.state_time()
	machine.all_states()
	machine.limits_of(&"hp")
	machine.get_value(Designs.SPARE)
	SCMachine.machine_of_or_above(machine)


func _any_event() -> StringName:
	return Designs.EVENTS[_random.randi() % Designs.EVENTS.size()]


func _any_state(machine: SCMachine) -> SCMachineState:
	var states := machine.template.all_states()
	return states[_random.randi() % states.size()]


func _one_in(chances: int) -> bool:
	return _random.randi() % chances == 0
