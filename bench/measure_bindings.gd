extends Bench

const NODES: int = 10_000


func title() -> String:
	return "An empty _process of %d nodes" % NODES


func measure() -> void:
	if not ClassDB.class_exists(&"BenchByHandNode"):
		print("  not measured: the classes compared are not loaded")
		return
	# In turns, so that a change of the machine's speed meets both.
	var through_bindings := INF
	var by_hand := INF
	for attempt in 3:
		through_bindings = minf(through_bindings, await _frame_with(&"BenchBindingsNode"))
		by_hand = minf(by_hand, await _frame_with(&"BenchByHandNode"))
	var bare := await frame_usec()
	var one := (by_hand - bare) * 1000.0 / NODES
	report("written out against the C interface", one, "ns a call")
	report("through the bindings", (through_bindings - bare) * 1000.0 / NODES, "ns a call", one * 1.2)
	report("through the bindings, against written out", (through_bindings - bare) / (by_hand - bare), "times", 1.2)


func _frame_with(kind: StringName) -> float:
	for i in NODES:
		var node: Node = ClassDB.instantiate(kind)
		stage.add_child(node)
		node.set_process(true)
	var usec := await frame_usec()
	await clear_stage()
	return usec
