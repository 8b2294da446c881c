class_name BenchLoop
extends RefCounted
## Nanoseconds of one call out of many, without the loop they are made in.

var _body: Callable
var _count: int
var _is_long_enough: bool = false


## [param body] makes as many calls as it is told to. [param first_count] is where the search for a good number begins.
func _init(body: Callable, first_count: int = 1000) -> void:
	_body = body
	_count = first_count


func take() -> float:
	var spent := _usec(_body)
	while not _is_long_enough and spent < Bench.LEAST_USEC:
		_count = ceili(_count * clampf(1.2 * Bench.LEAST_USEC / maxf(spent, 1.0), 1.2, 50.0))
		spent = _usec(_body)
	_is_long_enough = true
	return (spent - _usec(_nothing)) * 1000.0 / _count


func _usec(body: Callable) -> float:
	var began := Bench.now_usec()
	body.call(_count)
	return Bench.now_usec() - began


func _nothing(count: int) -> void:
	for i in count:
		pass
