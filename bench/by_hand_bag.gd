class_name BenchByHandBag
extends Node
## The yardstick of an inventory, as one writes it in GDScript: a list of slots, each a dictionary of an item and how many there are
## of it, and a signal that something has changed.

signal changed

var most_slots: int = 50

var _slots: Array[Dictionary] = []


class Item:
	extends Resource

	var most_in_a_stack: int = 99


## Answers how many fitted.
func add(item: Item, how_many: int = 1) -> int:
	var left := how_many
	for slot in _slots:
		if slot["item"] == item:
			var fits := mini(left, item.most_in_a_stack - (slot["count"] as int))
			slot["count"] += fits
			left -= fits
			if left == 0:
				break
	while left > 0 and _slots.size() < most_slots:
		var goes := mini(left, item.most_in_a_stack)
		_slots.append({"item": item, "count": goes})
		left -= goes
	if left < how_many:
		changed.emit()
	return how_many - left


## Answers how many there were.
func take(item: Item, how_many: int = 1) -> int:
	var left := how_many
	for i in range(_slots.size() - 1, -1, -1):
		var slot := _slots[i]
		if slot["item"] == item:
			var goes := mini(left, slot["count"] as int)
			slot["count"] -= goes
			left -= goes
			if slot["count"] == 0:
				_slots.remove_at(i)
			if left == 0:
				break
	if left < how_many:
		changed.emit()
	return how_many - left


func count(item: Item) -> int:
	var sum := 0
	for slot in _slots:
		if slot["item"] == item:
			sum += slot["count"]
	return sum


func room_for(item: Item) -> int:
	var room := (most_slots - _slots.size()) * item.most_in_a_stack
	for slot in _slots:
		if slot["item"] == item:
			room += item.most_in_a_stack - (slot["count"] as int)
	return room


func move_to(other: BenchByHandBag, item: Item, how_many: int = 1) -> int:
	var goes := mini(how_many, mini(count(item), other.room_for(item)))
	take(item, goes)
	other.add(item, goes)
	return goes
