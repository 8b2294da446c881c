extends Bench

const TypedCalls := "res://bench/native/typed_calls.gd"


func number() -> int:
	return 1


func title() -> String:
	return "Event with a change of state"


func measure() -> void:
	add_machines(stage, 1, BenchDesigns.two_states())
	add_machines(stage, 1, BenchDesigns.nested_states())
	var machine: SCMachine = stage.get_child(0)
	var nested: SCMachine = stage.get_child(1)
	var by_hand := BenchByHandMachine.two_states()
	stage.add_child(by_hand)
	var empty: RefCounted = ClassDB.instantiate(&"BenchEmptyCalls")
	var typed_calls: GDScript = load(TypedCalls)

	var turns := BenchTurns.new()
	turns.add_loop("by_hand", _send_by_hand.bind(by_hand))
	turns.add_loop("machine", _send.bind(machine))
	turns.add_loop("nested", _send.bind(nested))
	turns.add_loop("empty", func(count: int) -> void: typed_calls.call(&"send_events", empty, count))
	turns.add_loop("untyped", _send_untyped.bind(machine))
	turns.add_loop("untyped_empty", _send_untyped.bind(empty))
	turns.add_loop("ignored", _send_nothing.bind(machine))
	await turns.play(tree)

	figure("event.machine", "a machine", "ns", turns.samples("machine"))
	figure("event.by_hand", "the same in GDScript", "ns", turns.samples("by_hand"))
	figure("event.empty_call", "an empty bound call", "ns", turns.samples("empty"))
	ratio("event.machine", "event.by_hand", 0.5)
	ratio("event.machine", "event.empty_call", 3.0)
	figure("event.nested", "a machine whose states lie three levels deep", "ns", turns.samples("nested"))
	ratio("event.nested", "event.machine", 1.4)
	figure("event.untyped", "a machine, by an untyped variable", "ns", turns.samples("untyped"))
	figure("event.untyped_empty_call", "an empty bound call, by an untyped variable", "ns", turns.samples("untyped_empty"))
	ratio("event.untyped", "event.untyped_empty_call")
	figure("event.ignored", "an event that finds no transition", "ns", turns.samples("ignored"))
	ratio("event.ignored", "event.empty_call")
	figure("event.allocations", "allocations of 1,000 events", "", await allocations(1000, _send.bind(1, machine)))
	figure("event.nested_allocations", "allocations of 1,000 three levels deep", "", await allocations(1000, _send.bind(1, nested)))
	figure("event.ignored_allocations", "allocations of 1,000 that find no transition", "", await allocations(1000, _send_nothing.bind(1, machine)), 0.0)


func _send(count: int, machine: SCMachine) -> void:
	for i in count:
		machine.send_event(&"go", null)


func _send_nothing(count: int, machine: SCMachine) -> void:
	for i in count:
		machine.send_event(&"nothing", null)


func _send_by_hand(count: int, machine: BenchByHandMachine) -> void:
	for i in count:
		machine.send_event(&"go", null)


func _send_untyped(count: int, machine: Variant) -> void:
	for i in count:
		machine.send_event(&"go", null)
