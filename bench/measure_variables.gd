extends Bench

const Ticker := preload("res://bench/by_hand_ticker.gd")
const TypedCalls := "res://bench/native/typed_calls.gd"


func number() -> int:
	return 6


func title() -> String:
	return "Variables: a write from a script"


func measure() -> void:
	var free_to_change := _machine([BenchDesigns.variable(&"count", 0)])
	var limited := _machine([BenchDesigns.variable(&"count", 0, "0", "1000000000")])
	var watched := _machine([BenchDesigns.variable(&"count", 0)], [BenchDesigns.watch(&"count")])
	var node := Ticker.new()
	stage.add_child(node)
	var empty: RefCounted = ClassDB.instantiate(&"BenchEmptyCalls")
	var typed_calls: GDScript = load(TypedCalls)

	var turns := BenchTurns.new()
	turns.add_loop("property", _write_property.bind(node))
	turns.add_loop("unwatched", _write.bind(free_to_change))
	turns.add_loop("empty", func(count: int) -> void: typed_calls.call(&"set_values", empty, count))
	turns.add_loop("watched", _write.bind(watched))
	turns.add_loop("limited", _write.bind(limited))
	await turns.play(tree)

	figure("variables.unwatched", "nobody watches it", "ns", turns.samples("unwatched"), 60.0)
	figure("variables.property", "a typed property of a GDScript node", "ns", turns.samples("property"))
	figure("variables.empty_call", "an empty bound call", "ns", turns.samples("empty"))
	ratio("variables.unwatched", "variables.property")
	ratio("variables.unwatched", "variables.empty_call", INF, true)
	figure("variables.watched", "a check watches it, and asks again", "ns", turns.samples("watched"))
	ratio("variables.watched", "variables.empty_call", INF, true)
	figure("variables.limited", "it has a least and a most", "ns", turns.samples("limited"))
	ratio("variables.limited", "variables.empty_call", INF, true)


func _machine(variables: Array[SCMachineVariable], actions: Array[SCMachineAction] = []) -> SCMachine:
	var made := SCMachine.new()
	made.template = BenchDesigns.template([BenchDesigns.state(&"Hold", actions)], variables)
	stage.add_child(made)
	return made


func _write(count: int, machine: SCMachine) -> void:
	for i in count:
		machine.set_value(&"count", i)


func _write_property(count: int, node: Ticker) -> void:
	for i in count:
		node.count = i
