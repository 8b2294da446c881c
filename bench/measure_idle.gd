extends Bench

const MACHINES: int = 10_000


func number() -> int:
	return 3


func title() -> String:
	return "Idle: 10,000 machines that wait for an event"


func contestants(count: int) -> Dictionary[String, Callable]:
	return {
		"node": nsec_each.bind(_add_nodes, count),
		"machine": nsec_each.bind(add_machines.bind(BenchDesigns.waiting()), count),
	}


func measure() -> void:
	var waits := BenchDesigns.template([BenchDesigns.state(&"Wait", [BenchDesigns.wait(1_000_000.0)])])
	var turns := BenchTurns.new()
	turns.add_all(contestants(MACHINES))
	turns.add("tween", nsec_each.bind(_add_tweens, MACHINES))
	turns.add("wait", nsec_each.bind(add_machines.bind(waits), MACHINES))
	await turns.play(tree)

	figure("idle.machine", "a machine", "ns a frame", turns.samples("machine"), 1.0)
	figure("idle.node", "a plain node", "ns a frame", turns.samples("node"))
	figure("idle.wait", "a machine in a Wait", "ns a frame", turns.samples("wait"))
	figure("idle.tween", "a bare tween of the engine's", "ns a frame", turns.samples("tween"))
	ratio("idle.wait", "idle.tween")

	add_machines(stage, MACHINES, BenchDesigns.waiting())
	figure("idle.allocations", "allocations in 1,000 frames", "", await allocations(1000), 0.0)


func _add_nodes(crowd: Node, count: int) -> void:
	for i in count:
		crowd.add_child(Node.new())


func _add_tweens(crowd: Node, count: int) -> void:
	for i in count:
		var node := Node.new()
		crowd.add_child(node)
		node.create_tween().tween_interval(1_000_000.0)
