extends Bench

const GUARD: PackedScene = preload("res://bench/guard.tscn")
const MACHINES: int = 1000

var _design: SCMachineTemplate


func number() -> int:
	return 4


func title() -> String:
	return "Start: one more machine of a shared template, added and started"


func open(in_tree: SceneTree) -> void:
	super(in_tree)
	var guard := GUARD.instantiate()
	_design = (guard.get_node(^"Machine") as SCMachine).template
	guard.free()


func contestants(count: int) -> Dictionary[String, Callable]:
	return {
		"node": _usec_each.bind(_add_nodes, count),
		"machine": _usec_each.bind(add_machines.bind(_design), count),
		"by_hand": _usec_each.bind(_add_by_hand, count),
	}


func measure() -> void:
	var heap := func() -> int: return ClassDB.class_call_static(&"BenchProbe", &"heap_in_use")
	var turns := BenchTurns.new()
	turns.add_all(contestants(MACHINES))
	turns.add("scene", _usec_each.bind(_add_scenes, MACHINES))
	var fillers: Dictionary[String, Callable] = {"node": _add_nodes, "machine": add_machines.bind(_design), "by_hand": _add_by_hand}
	for name in fillers:
		turns.add(name + "_bytes", _more_each.bind(OS.get_static_memory_usage, fillers[name]))
		turns.add(name + "_heap", _more_each.bind(heap, fillers[name]))
	await turns.play(tree)

	figure("start.machine", "a machine", "us", turns.samples("machine"), 8.0)
	figure("start.node", "a plain node", "us", turns.samples("node"))
	figure("start.by_hand", "the same in GDScript", "us", turns.samples("by_hand"))
	ratio("start.machine", "start.node")
	ratio("start.machine", "start.by_hand", INF, true)
	figure("start.scene", "a machine under a node, out of a scene file", "us", turns.samples("scene"))
	figure("start.machine_bytes", "a machine, as the engine counts", "bytes", turns.samples("machine_bytes"), 4096.0)
	figure("start.node_bytes", "a plain node", "bytes", turns.samples("node_bytes"))
	figure("start.by_hand_bytes", "the same in GDScript", "bytes", turns.samples("by_hand_bytes"))
	ratio("start.machine_bytes", "start.by_hand_bytes", INF, true)
	figure("start.machine_heap", "a machine, as the C library counts", "bytes", turns.samples("machine_heap"))
	figure("start.node_heap", "a plain node", "bytes", turns.samples("node_heap"))
	figure("start.by_hand_heap", "the same in GDScript", "bytes", turns.samples("by_hand_heap"))
	ratio("start.machine_heap", "start.by_hand_heap")


## As many batches as it takes; that they end is not part of it.
func _usec_each(fill: Callable, count: int) -> float:
	var spent := 0.0
	var batches := 0
	while spent < LEAST_USEC:
		var crowd := Node.new()
		stage.add_child(crowd)
		var began := now_usec()
		fill.call(crowd, count)
		spent += now_usec() - began
		batches += 1
		crowd.free()
	return spent / batches / count


func _more_each(measured: Callable, fill: Callable) -> float:
	var crowd := Node.new()
	stage.add_child(crowd)
	var before: int = measured.call()
	fill.call(crowd, MACHINES)
	var after: int = measured.call()
	crowd.free()
	return float(after - before) / MACHINES


func _add_nodes(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(Node.new())


func _add_by_hand(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(BenchByHandMachine.guard())


func _add_scenes(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(GUARD.instantiate())
