class_name BenchByHandStat
extends RefCounted
## The yardstick of a stat, as one writes it in GDScript: two dictionaries by source, and a loop over each when one changes.

var base: float = 10.0
var value: float = 10.0

var _additions: Dictionary[String, float] = {}
var _factors: Dictionary[String, float] = {}


func add(source: String, amount: float) -> void:
	_additions[source] = amount
	_settle()


func multiply(source: String, amount: float) -> void:
	_factors[source] = amount
	_settle()


func take_away(source: String) -> void:
	_additions.erase(source)
	_factors.erase(source)
	_settle()


func _settle() -> void:
	value = base
	for source in _additions:
		value += _additions[source]
	for source in _factors:
		value *= _factors[source]
