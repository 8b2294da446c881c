extends Bench

const MACHINES: int = 10_000


func title() -> String:
	return "%d machines that wait" % MACHINES


func measure() -> void:
	var bare := await frame_usec()
	for i in MACHINES:
		stage.add_child(Node.new())
	var with_nodes := await frame_usec()
	await clear_stage()
	var waiting := crowd(template([state(&"Wait", [], {&"go": &"Wait"})]), MACHINES)
	var with_machines := await frame_usec()
	report("a frame with as many empty nodes", with_nodes, "us")
	report("a frame with machines in a state that waits for an event", with_machines, "us", maxf(with_nodes, bare) + 20.0)
	report("called each frame", waiting.filter(func(one: SCMachine) -> bool: return one.is_processing() or one.is_physics_processing()).size(), "machines", 0)
	report("allocations in 1,000 frames", await allocations(1000), "", 0)
	await clear_stage()
	# A Wait has a tween of the engine's, which steps all there are each frame.
	var tween := (await _frame_with_tweens() - bare) * 1000.0 / MACHINES
	report("a bare tween of the engine's, to compare", tween, "ns a frame")
	waiting = crowd(template([state(&"Wait", [wait(10_000.0)])]), MACHINES)
	with_machines = await frame_usec()
	report("a machine in a Wait", (with_machines - bare) * 1000.0 / MACHINES, "ns a frame", tween * 1.5)
	await clear_stage()


func _frame_with_tweens() -> float:
	var tweens: Array[Tween] = []
	for i in MACHINES:
		var node := Node.new()
		stage.add_child(node)
		var tween := node.create_tween()
		tween.tween_interval(10_000.0)
		tweens.append(tween)
	var usec := await frame_usec()
	await clear_stage()
	return usec
