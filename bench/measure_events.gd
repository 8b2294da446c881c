extends Bench

const CALLS: int = 4000

var _machine: SCMachine


func title() -> String:
	return "An event, and what it costs beside a bound call that does nothing"


func measure() -> void:
	_machine = crowd(template([
		state(&"A", [], {&"go": &"B"}),
		state(&"B", [], {&"go": &"A"}),
	]), 1)[0]
	var empty := await call_nsec(_ask, CALLS)
	var ignored := await call_nsec(_send_nothing, CALLS)
	var taken := await call_nsec(_send_go, CALLS)
	report("an empty bound call", empty, "ns")
	report("an event that finds no transition", ignored, "ns")
	report("the same, beside the empty call", ignored / empty, "times", 20.0)
	report("an event with a transition between two empty states", taken, "ns")
	report("the same, beside the empty call", taken / empty, "times", 100.0)
	report("allocations of 1,000 events that find no transition", await allocations(1000, _send_nothing.bind(1)), "", 0)
	var of_changes := await allocations(1000, _send_go.bind(1))
	report("allocations of an event with a transition", of_changes / 1000.0, "each", 4)
	await clear_stage()


func _ask(count: int) -> void:
	var machine := _machine
	for i in count:
		machine.is_paused()


func _send_nothing(count: int) -> void:
	var machine := _machine
	for i in count:
		machine.send_event(&"nothing", null)


func _send_go(count: int) -> void:
	var machine := _machine
	for i in count:
		machine.send_event(&"go", null)
