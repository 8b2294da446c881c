@abstract
class_name Bench
extends RefCounted
## What is measured about one subject. It prints what it finds as lines of JSON, one a figure with a sample for each round;
## [code]bench/report.py[/code] makes medians, ratios and the table of them.

## A round's share of a figure lasts at least so long.
const LEAST_USEC: float = 20_000.0
const LIBRARY: String = "libquillstead_core"

## Frames between two looks at the clock.
const FRAMES_AT_ONCE: int = 20

var tree: SceneTree
## What is measured goes under this node, and is gone afterwards.
var stage: Node


## The number that the subject has in the table.
@abstract func number() -> int


@abstract func title() -> String


@abstract func measure() -> void


## What is measured with [param count] of a thing, by name: callables that answer the cost of a single one. Only for the
## subjects whose growth is of interest.
func contestants(_count: int) -> Dictionary[String, Callable]:
	return {}


func open(in_tree: SceneTree) -> void:
	tree = in_tree
	stage = Node.new()
	tree.root.add_child(stage)


func close() -> void:
	stage.free()


## Reports a figure. [param at_most] is what it is to reach by itself; what has such a target is in the README's table in any
## case.
func figure(name: String, what: String, unit: String, samples: PackedFloat64Array, at_most: float = INF, in_readme: bool = false) -> void:
	_say({"figure": name, "what": what, "unit": unit, "samples": samples, "in_readme": in_readme}, at_most)


## Holds one figure against another.
func ratio(of: String, over: String, at_most: float = INF, in_readme: bool = false) -> void:
	_say({"ratio": of, "over": over, "in_readme": in_readme}, at_most)


## Holds how a figure grows against how a yardstick does: [param beside] are the yardstick's two figures of the same sizes.
func growth(of: String, over: String, beside: PackedStringArray, at_most: float) -> void:
	_say({"ratio": of, "over": over, "beside": beside}, at_most)


## The parts of what was measured of several at once.
static func each(samples: PackedFloat64Array, parts: float) -> PackedFloat64Array:
	var parted := PackedFloat64Array()
	for sample in samples:
		parted.append(sample / parts)
	return parted


## Microseconds for which the engine has been at work. Not by the clock on the wall, which goes on while the computer does
## something else.
static func now_usec() -> float:
	return ClassDB.class_call_static(&"BenchProbe", &"thread_usec")


## Nanoseconds of a frame.
func frame_nsec() -> float:
	await frames(3)
	var count := 0
	var spent := 0.0
	var began := now_usec()
	while spent < LEAST_USEC:
		await frames(FRAMES_AT_ONCE)
		count += FRAMES_AT_ONCE
		spent = now_usec() - began
	return spent * 1000.0 / count


## Nanoseconds that each of [param count] adds to a frame of the empty scene. [param fill] gets a node to put them under.
func nsec_each(fill: Callable, count: int) -> float:
	var bare := await frame_nsec()
	var crowd := Node.new()
	stage.add_child(crowd)
	fill.call(crowd, count)
	var full := await frame_nsec()
	crowd.free()
	return (full - bare) / count


## Requests to the allocator within calls of the library while so many frames pass, each of which begins with
## [param each_frame]. Empty when nobody can count them.
func allocations(count: int, each_frame: Callable = Callable()) -> PackedFloat64Array:
	if not AllocationCounter.is_available():
		return []
	await _play(5, each_frame)
	AllocationCounter.begin(LIBRARY)
	await _play(count, each_frame)
	return [AllocationCounter.end()]


func frames(count: int) -> void:
	for i in count:
		await tree.process_frame


func add_machines(crowd: Node, count: int, design: SCMachineTemplate) -> void:
	for i in count:
		var machine := SCMachine.new()
		machine.template = design
		crowd.add_child(machine)


## Nodes of a class of the extension that is built for the measurements.
func add_native_nodes(crowd: Node, count: int, kind: StringName) -> void:
	for i in count:
		var node: Node = ClassDB.instantiate(kind)
		crowd.add_child(node)
		node.set_process(true)


func _play(count: int, each_frame: Callable) -> void:
	for i in count:
		if each_frame.is_valid():
			each_frame.call()
		await frames(1)


func _say(line: Dictionary, at_most: float) -> void:
	if at_most != INF:
		line["at_most"] = at_most
	print(JSON.stringify(line))
