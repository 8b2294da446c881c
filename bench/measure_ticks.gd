extends Bench

const MACHINES: int = 1000
const MANY: int = 9


func title() -> String:
	return "A tick of %d machines whose actions set a variable every frame" % MACHINES


func measure() -> void:
	var bare := await frame_usec()
	var one := await _frame_with(1)
	var many := await _frame_with(MANY)
	report("a machine with one active action", (one - bare) * 1000.0 / MACHINES, "ns a frame")
	report("each further active action", (many - one) * 1000.0 / MACHINES / (MANY - 1), "ns a frame", 400.0)
	crowd(_counting(MANY), 10)
	report("allocations in 1,000 frames of 10 machines", await allocations(1000), "", 0)
	await clear_stage()


func _frame_with(actions: int) -> float:
	crowd(_counting(actions), MACHINES)
	var usec := await frame_usec()
	await clear_stage()
	return usec


func _counting(actions: int) -> SCMachineTemplate:
	var counters: Array[SCMachineAction] = []
	for i in actions:
		counters.append(add_one(&"count"))
	return template([state(&"Count", counters)], {&"count": 0})
