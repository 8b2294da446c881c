extends Bench

const Ticker := preload("res://bench/by_hand_ticker.gd")
const MACHINES: int = 1000
const MANY: int = 9
## Settings of a Vector action: a number, and beside it a yes or no and a vector.
const ONE_BOUND: Array[StringName] = [&"amount"]
const THREE_BOUND: Array[StringName] = [&"amount", &"per_second", &"first"]


func number() -> int:
	return 2


func title() -> String:
	return "Tick of 1,000 machines that set a variable every frame"


func contestants(count: int) -> Dictionary[String, Callable]:
	return {
		"gdscript": nsec_each.bind(_add_tickers, count),
		"machine": nsec_each.bind(add_machines.bind(BenchDesigns.counting(1)), count),
		"extension": nsec_each.bind(add_native_nodes.bind(&"BenchBindingsNode"), count),
	}


func measure() -> void:
	var turns := BenchTurns.new()
	turns.add_all(contestants(MACHINES))
	turns.add("written_out", nsec_each.bind(add_native_nodes.bind(&"BenchByHandNode"), MACHINES))
	turns.add("many", nsec_each.bind(add_machines.bind(BenchDesigns.counting(MANY)), MACHINES))
	turns.add("unbound", nsec_each.bind(add_machines.bind(BenchDesigns.scaling(MANY, [])), MACHINES))
	turns.add("one_bound", nsec_each.bind(add_machines.bind(BenchDesigns.scaling(MANY, ONE_BOUND)), MACHINES))
	turns.add("three_bound", nsec_each.bind(add_machines.bind(BenchDesigns.scaling(MANY, THREE_BOUND)), MACHINES))
	await turns.play(tree)

	figure("tick.machine", "a machine", "ns a frame", turns.samples("machine"))
	figure("tick.gdscript", "a GDScript _process that adds to a number", "ns a frame", turns.samples("gdscript"))
	figure("tick.extension", "an extension's almost empty _process", "ns a frame", turns.samples("extension"))
	ratio("tick.machine", "tick.gdscript", 0.6)
	ratio("tick.machine", "tick.extension", 3.0)
	figure("tick.written_out", "the same without the bindings", "ns a frame", turns.samples("written_out"))
	ratio("tick.extension", "tick.written_out")
	figure("tick.further_action", "each further action", "ns a frame", _more(turns, "many", "machine", MANY - 1), INF, true)
	figure("tick.unbound", "a machine with nine actions that scale a vector", "ns a frame", turns.samples("unbound"))
	figure("tick.one_bound", "what an action adds that reads a number from a variable", "ns a frame", _more(turns, "one_bound", "unbound", MANY), 40.0)
	figure("tick.three_bound", "what it adds with a number, a yes or no and a vector", "ns a frame", _more(turns, "three_bound", "unbound", MANY), INF, true)

	add_machines(stage, 10, BenchDesigns.counting(MANY))
	figure("tick.allocations", "allocations of 10 machines in 1,000 frames", "", await allocations(1000), 0.0)
	add_machines(stage, 10, BenchDesigns.scaling(MANY, THREE_BOUND))
	figure("tick.bound_allocations", "allocations with 10 more that read three settings", "", await allocations(1000), 0.0)


## What each of [param count] adds to what there is without them, in each round.
func _more(turns: BenchTurns, with_them: String, without: String, count: int) -> PackedFloat64Array:
	var more := turns.samples(with_them).duplicate()
	var bare := turns.samples(without)
	for i in more.size():
		more[i] = (more[i] - bare[i]) / count
	return more


func _add_tickers(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(Ticker.new())
