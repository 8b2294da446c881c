extends Bench

const Ticker := preload("res://bench/by_hand_ticker.gd")
const MACHINES: int = 1000
const MANY: int = 9


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
	await turns.play(tree)

	figure("tick.machine", "a machine", "ns a frame", turns.samples("machine"))
	figure("tick.gdscript", "a GDScript _process that adds to a number", "ns a frame", turns.samples("gdscript"))
	figure("tick.extension", "an extension's almost empty _process", "ns a frame", turns.samples("extension"))
	ratio("tick.machine", "tick.gdscript", 0.6)
	ratio("tick.machine", "tick.extension", 3.0)
	figure("tick.written_out", "the same without the bindings", "ns a frame", turns.samples("written_out"))
	ratio("tick.extension", "tick.written_out")
	var one := turns.samples("machine")
	var further := turns.samples("many")
	for i in further.size():
		further[i] = (further[i] - one[i]) / (MANY - 1)
	figure("tick.further_action", "each further action", "ns a frame", further, INF, true)

	add_machines(stage, 10, BenchDesigns.counting(MANY))
	figure("tick.allocations", "allocations of 10 machines in 1,000 frames", "", await allocations(1000), 0.0)


func _add_tickers(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(Ticker.new())
