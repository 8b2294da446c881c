extends Bench

const MACHINES: int = 1000


func number() -> int:
	return 7


func title() -> String:
	return "Broadcast of a global event to 1,000 machines"


func measure() -> void:
	add_machines(stage, MACHINES, BenchDesigns.two_states([&"go", &"go_all"], [&"go_all"]))
	var machines: Array[SCMachine] = []
	for child in stage.get_children():
		machines.append(child)
	var turns := BenchTurns.new()
	turns.add_loop("single", _send_each.bind(machines), 10)
	turns.add_loop("broadcast", _broadcast, 10)
	await turns.play(tree)
	# A round's figure is for all of them.
	figure("broadcast.machine", "a machine that hears it", "ns", each(turns.samples("broadcast"), MACHINES))
	figure("broadcast.single_event", "a machine that is sent one from a script", "ns", each(turns.samples("single"), MACHINES))
	ratio("broadcast.machine", "broadcast.single_event", 1.2)


func _broadcast(count: int) -> void:
	for i in count:
		SCMachine.broadcast_everywhere(&"go_all", null)


func _send_each(count: int, machines: Array[SCMachine]) -> void:
	for i in count:
		for machine in machines:
			machine.send_event(&"go", null)
