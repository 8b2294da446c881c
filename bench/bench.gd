@abstract
class_name Bench
extends RefCounted
## What is measured about one subject. The lowest of several rounds counts: whatever else the machine is doing only adds.

const ROUNDS: int = 7
const FRAMES: int = 60
const LIBRARY: String = "libquillstead_core"

var tree: SceneTree
## What is measured goes under this node, and is gone afterwards.
var stage: Node


@abstract func title() -> String


@abstract func measure() -> void


func open(in_tree: SceneTree) -> void:
	tree = in_tree
	stage = Node.new()
	tree.root.add_child(stage)


func close() -> void:
	stage.free()


## Prints a figure. The bound is the most it should be.
func report(what: String, figure: float, unit: String, bound: float = INF) -> void:
	var held := "" if bound == INF else "at most %s%s" % [_short(bound), "" if figure <= bound else "  EXCEEDED"]
	print("  %-62s %10s %-22s %s" % [what, _short(figure), unit, held])


## Microseconds of a frame.
func frame_usec() -> float:
	await frames(5)
	var lowest := INF
	for attempt in ROUNDS:
		var began := Time.get_ticks_usec()
		await frames(FRAMES)
		lowest = minf(lowest, float(Time.get_ticks_usec() - began) / FRAMES)
	return lowest


## Nanoseconds of one of the calls that [param loop] makes when it is given a count, without the loop itself. A frame lies
## between two rounds, so that the machine's guard against circles starts anew.
func call_nsec(loop: Callable, count: int) -> float:
	var of_the_calls := INF
	var of_the_loop := INF
	for attempt in ROUNDS + 1:
		await frames(1)
		var began := Time.get_ticks_usec()
		loop.call(count)
		of_the_calls = minf(of_the_calls, Time.get_ticks_usec() - began)
		began = Time.get_ticks_usec()
		_empty_loop(count)
		of_the_loop = minf(of_the_loop, Time.get_ticks_usec() - began)
	return (of_the_calls - of_the_loop) * 1000.0 / count


## Requests to the allocator within calls of the library while so many frames pass; below 0 when nobody can count them.
func allocations(count: int, each_frame: Callable = Callable()) -> int:
	if not AllocationCounter.is_available():
		return -1
	await _play(5, each_frame)
	AllocationCounter.begin(LIBRARY)
	await _play(count, each_frame)
	return AllocationCounter.end()


func frames(count: int) -> void:
	for i in count:
		await tree.process_frame


## Adds so many machines that run one design.
func crowd(design: SCMachineTemplate, count: int) -> Array[SCMachine]:
	var machines: Array[SCMachine] = []
	for i in count:
		var machine := SCMachine.new()
		machine.template = design
		machines.append(machine)
		stage.add_child(machine)
	return machines


func clear_stage() -> void:
	for child in stage.get_children():
		child.free()
	await frames(2)


func template(states: Array[SCMachineState], variables: Dictionary[StringName, Variant] = {}) -> SCMachineTemplate:
	var made := SCMachineTemplate.new()
	made.states = states
	made.initial_state = states[0]
	made.loop_increment_limit = 1_000_000
	for name in variables:
		var variable := SCMachineVariable.new()
		variable.name = name
		variable.default_value = variables[name]
		made.variables.append(variable)
	return made


func state(name: StringName, actions: Array[SCMachineAction] = [], transitions: Dictionary[StringName, StringName] = {}) -> SCMachineState:
	var made := SCMachineState.new()
	made.state_name = name
	made.actions = actions
	for event in transitions:
		var transition := SCMachineTransition.new()
		transition.event = event
		transition.to_state = transitions[event]
		made.transitions.append(transition)
	return made


## Adds one to the variable, each frame or once.
func add_one(variable_name: StringName, run_mode: SCMachineAction.RunMode = SCMachineAction.EVERY_FRAME) -> SCSetVariableAction:
	var made := SCSetVariableAction.new()
	made.variable_name = variable_name
	made.operation = SCSetVariableAction.ADD
	made.value = 1
	made.run_mode = run_mode
	return made


func wait(seconds: float) -> SCWaitAction:
	var made := SCWaitAction.new()
	made.seconds = seconds
	return made


func _empty_loop(count: int) -> void:
	for i in count:
		pass


func _play(count: int, each_frame: Callable) -> void:
	for i in count:
		if each_frame.is_valid():
			each_frame.call()
		await frames(1)


func _short(figure: float) -> String:
	if figure == roundf(figure) and absf(figure) < 1e9:
		return str(int(figure))
	return "%.2f" % figure if absf(figure) < 100.0 else "%.0f" % figure
