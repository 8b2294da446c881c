extends "res://tests/fuzz/random_faults.gd"
## Plants states that lead straight back to one another, in every way in which a state can be left at once.


func plant_a_ring_of_finished_states() -> Fault:
	return _ring([{}, {}, {}])


func plant_a_ring_of_one_state() -> Fault:
	return _ring([{}])


func plant_a_ring_of_events() -> Fault:
	return _ring([{"action": _sending(&"SCSendEventAction", {"event_name": &"round"})}, {"action": _sending(&"SCSendEventAction", {"event_name": &"round"})}], &"round")


func plant_a_ring_of_one_state_that_sends_itself_round() -> Fault:
	return _ring([{"action": _sending(&"SCSequenceAction", {"events": [&"round"] as Array[StringName], "progress_variable": NOBODY})}], &"round")


func plant_a_ring_of_events_to_every_machine() -> Fault:
	var shout := {"event_name": &"round", "reach": SCSendEventAction.EVERY_MACHINE}
	return _ring([{"action": _sending(&"SCSendEventAction", shout)}, {"action": _sending(&"SCSendEventAction", shout)}], &"round")


func plant_a_ring_of_global_events() -> Fault:
	_of.design.events.append(declared_event(&"round", {"is_global": true}))
	return plant_a_ring_of_events()


func plant_a_ring_of_questions() -> Fault:
	var ask := {"condition": SCCompareCondition.new(), "true_event": &"round", "run_mode": SCMachineAction.EVERY_FRAME}
	return _ring([{"action": _sending(&"SCCheckAction", ask)}, {}], &"round")


func plant_a_ring_of_states_to_go_to() -> Fault:
	return _ring([{"action": _sending(&"SCGoToStateAction", {"state_name": &"Ring 1"})}, {"action": _sending(&"SCGoToStateAction", {"state_name": &"Ring 0"})}], &"round")


func plant_a_ring_of_previous_states() -> Fault:
	return _ring([{}, {"action": SCGoToPreviousStateAction.new()}])


func plant_a_ring_through_sub_states() -> Fault:
	return _ring([{"sub_states": [_of.state(&"Inside", [], {}, {"end": true})]}, {}])


func plant_a_ring_inside_a_state() -> Fault:
	var inside: Array = [_of.state(&"Round A", [], {&"FINISHED": &"Round B"}), _of.state(&"Round B", [], {&"FINISHED": &"Round A"})]
	return _ring([{"parallel": {"A": [_of.state(&"Still", [wait(60.0)])], "B": inside}}])


func plant_a_ring_with_a_high_limit() -> Fault:
	_of.design.loop_increment_limit = _of.dice.pick([1000, 30_000, 9223372036854775807])
	return _ring([{}, {}])


func plant_a_ring_whose_goal_moves_away() -> Fault:
	# It comes to rest in the end, so that a guard that misses it is told of.
	_of.design.variables.append(variable(&"goal", 1, {"never_above": "200000"}))
	var count := _sending(&"SCRepeatAction", {"times_variable": &"goal", "again_event": &"round"})
	var further := _sending(&"SCSetVariableAction", {"variable_name": &"goal", "operation": SCSetVariableAction.ADD, "value": 1})
	return _ring([{"action": count}, {"action": further}], &"round")


func plant_a_ring_that_gets_somewhere() -> Fault:
	var count := _sending(&"SCRepeatAction", {"times": 20_000, "again_event": &"round", "done_event": &"counted", "progress_variable": &"counted"})
	_add(_of.state(&"Count", [count], {&"round": &"Count On", &"counted": &"Counted"}))
	_add(_of.state(&"Count On", [], {&"FINISHED": &"Count"}))
	_add(_of.state(&"Counted", [], {&"again": &"Start"}))
	_lead(&"count", &"Count")
	return Fault.is_silent("each time round is a step on", func(machine: SCMachine) -> bool:
		machine.send_event("count")
		var counted := is_in(machine, &"Counted")
		machine.send_event("again")
		return counted)


## States one after another and back to the first, reached by an event of their own.
func _ring(states: Array, event: StringName = &"FINISHED") -> Fault:
	for i in states.size():
		var options: Dictionary = states[i]
		var to := "Ring %d" % ((i + 1) % states.size())
		var actions: Array = [options["action"]] if options.has("action") else []
		options.erase("action")
		_add(_of.state("Ring %d" % i, actions, {&"FINISHED": to, event: to}, options))
	_lead(&"ring", &"Ring 0")
	return Fault.goes_round(&"ring")


func _sending(kind: StringName, settings: Dictionary) -> SCMachineAction:
	var made: SCMachineAction = Settings.made_of(kind)
	_put(made, settings)
	return made
