class_name BenchTurns
extends RefCounted
## Measures several things one after the other, then all of them again, and so on: when the computer is busy with something
## else, it meets each of them alike, and what they are to one another stays true.

const ROUNDS: int = 9

var _takers: Dictionary[String, Callable] = {}
var _samples: Dictionary[String, PackedFloat64Array] = {}
# Callables do not keep them alive.
var _loops: Array[BenchLoop] = []


## [param take] answers one sample; it may wait for frames.
func add(name: String, take: Callable) -> void:
	_takers[name] = take
	_samples[name] = PackedFloat64Array()


## See [BenchLoop].
func add_loop(name: String, body: Callable, first_count: int = 1000) -> void:
	var loop := BenchLoop.new(body, first_count)
	_loops.append(loop)
	add(name, loop.take)


func add_all(takers: Dictionary[String, Callable]) -> void:
	for name in takers:
		add(name, takers[name])


func samples(name: String) -> PackedFloat64Array:
	return _samples[name]


## The first round only warms up. A frame lies before each turn, so that the machines' guard against circles starts anew.
func play(tree: SceneTree) -> void:
	for one_round in ROUNDS + 1:
		for name in _takers:
			await tree.process_frame
			@warning_ignore("redundant_await")
			var sample: float = await _takers[name].call()
			if one_round > 0:
				_samples[name].append(sample)
