class_name BenchByHandQuests
extends RefCounted
## The yardstick of quests, as one writes them in GDScript: those that wait for an event are found by its name, count, and tell of it
## by a signal.

signal progressed(quest: Dictionary, count: int)
signal done(quest: Dictionary)

var _waiting: Dictionary[StringName, Array] = {}


func begin(title: String, waits_for: StringName, how_many: int) -> void:
	var waiting: Array = _waiting.get_or_add(waits_for, [])
	waiting.append({"title": title, "count": 0, "how_many": how_many})


func hear(event: StringName) -> void:
	if not _waiting.has(event):
		return
	for quest: Dictionary in _waiting[event].duplicate():
		quest["count"] += 1
		progressed.emit(quest, quest["count"])
		if quest["count"] >= quest["how_many"]:
			_waiting[event].erase(quest)
			done.emit(quest)
