extends RefCounted
## What a game does with items beside carrying them: picking one by chance, handing it to a machine, and the changes it makes there.
##
## A run goes from one [method new_run] to the next, through as many scenes as it likes. It remembers which items turned up and which
## were taken.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")

# Of a machine's notes: item key to the changes that were made, a row for each time, of a source and the stats it changes.
const _APPLIED: StringName = &"applied"
# Of a machine's notes: item key to how often it was given.
const _GIVEN: StringName = &"given"

# By item key, those that turned up in this run and those that were taken.
static var _seen: Dictionary[String, bool] = {}
static var _taken: Dictionary[String, bool] = {}
# The machines that were given something.
static var _given_to: Dictionary[int, bool] = {}
# How many of them there are when those that have gone are left out.
static var _tidied_at: int = 16


## Starts a run: every item can turn up again, and whoever was given one has it no longer. What inventories hold stays.
static func new_run() -> void:
	_seen.clear()
	_taken.clear()
	var ids := _given_to.keys()
	_given_to.clear()
	for id: int in ids:
		_take_all_back(id)


## Picks one of [param items] by chance. [param chances] say how often each rarity turns up, from common to legendary. They are
## weights, so 1 and 3 are as good as 10 and 30; a rarity of which there is none is left out, and within one rarity each row of the
## list is as likely as the next. [param leave_out_seen] leaves out what turned up in this run, and [param remember] lets the one
## that is picked count as turned up. Null when there is nothing to pick.
static func pick(items: Array, chances: PackedFloat32Array, leave_out_seen: bool = false, remember: bool = false) -> SCItem:
	var by_rarity: Array[Array] = []
	for rarity: String in SCItem.Rarity:
		by_rarity.append([])
	for entry: Variant in items:
		var item: SCItem = entry if is_instance_valid(entry) and entry is SCItem else null
		if item != null and not (leave_out_seen and _seen.has(item.key())):
			by_rarity[clampi(item.rarity, 0, by_rarity.size() - 1)].append(item)
	var weights: PackedFloat64Array = []
	var sum := 0.0
	for rarity in by_rarity.size():
		var weight := chances[rarity] if rarity < chances.size() else 0.0
		weights.append(maxf(weight, 0.0) if is_finite(weight) and not by_rarity[rarity].is_empty() else 0.0)
		sum += weights[rarity]
	if sum <= 0.0:
		return null
	# Never one without a chance, however the draw is rounded.
	var left := randf() * sum
	var drawn := -1
	for rarity in by_rarity.size():
		if weights[rarity] > 0.0:
			drawn = rarity
			left -= weights[rarity]
			if left < 0.0:
				break
	var picked: SCItem = by_rarity[drawn].pick_random()
	if remember:
		_seen[picked.key()] = true
	return picked


## Whether an item turned up in this run.
static func was_seen(item: SCItem) -> bool:
	return item != null and _seen.has(item.key())


## Whether an item was taken in this run, even when it was taken back since.
static func was_given(item: SCItem) -> bool:
	return item != null and _taken.has(item.key())


## Gives an item to a machine: its changes are made there until it is taken back.
static func give(machine: SCMachine, item: SCItem) -> void:
	if machine == null or item == null:
		return
	_taken[item.key()] = true
	_remember(machine)
	var given := _note(machine, _GIVEN)
	given[item.key()] = _count(given.get(item.key())) + 1
	apply_changes(machine, item)


## Takes one back that was given: its changes are undone. One that the machine was never given stays away.
static func take_away(machine: SCMachine, item: SCItem) -> void:
	if machine == null or item == null:
		return
	var given := _note(machine, _GIVEN)
	var times := _count(given.get(item.key()))
	if times < 1:
		return
	if times == 1:
		given.erase(item.key())
	else:
		given[item.key()] = times - 1
	undo_changes(machine, item)


## How many of an item a machine was given and still has.
static func how_many_given(machine: SCMachine, item: SCItem) -> int:
	return _count(_note(machine, _GIVEN).get(item.key())) if machine != null and item != null else 0


## Makes the changes of using an item up, for good: what is added is added to the variable itself.
static func use_up(machine: SCMachine, item: SCItem) -> void:
	if machine == null or item == null:
		return
	for change: SCItemChange in item.when_used.duplicate():
		# Writing a number may run the game's code.
		if not is_instance_valid(machine):
			return
		if change != null and _is_ready(machine, item, change):
			_change_for_good(machine, item, change)


## Makes the changes of an item that is worn or was given, until [method undo_changes].
static func apply_changes(machine: SCMachine, item: SCItem) -> void:
	if machine == null or item == null:
		return
	var changes: Array[SCItemChange] = []
	var stats: Array[String] = []
	for change in item.changes:
		if change == null or not _is_ready(machine, item, change):
			continue
		if change.change == SCItemChange.Change.SET:
			_tell(machine, "item sets:%s" % item.key(), "the change of %s by %s sets a number, which cannot be undone, so it is left out. "
				% [change.stat, item.shown_name()] + "Let it add or multiply, or put it under When Used.")
			continue
		changes.append(change)
		if String(change.stat) not in stats:
			stats.append(String(change.stat))
	var rows := _rows_of(machine, item)
	var row := _new_row(item, rows, stats)
	for change in changes:
		# Writing a number may run the game's code, which may have undone it already.
		if not is_instance_valid(machine) or row not in rows:
			return
		if change.change == SCItemChange.Change.ADD:
			Stats.add(machine, change.stat, row[0], change.amount, true)
		else:
			Stats.multiply(machine, change.stat, row[0], change.amount, true)


## Undoes the changes of an item that were made last, whatever has become of the item since.
static func undo_changes(machine: SCMachine, item: SCItem) -> void:
	if machine != null and item != null:
		_undo(machine, item.key())


## The memory of this run, in plain values that a file can hold. [method from_save] takes it back.
static func to_save() -> Dictionary:
	return {"seen": PackedStringArray(_seen.keys()), "taken": PackedStringArray(_taken.keys())}


## Takes back what [method to_save] gave, in place of the run that was going on. What machines were given is theirs to save, with
## their stats.
static func from_save(saved: Dictionary) -> void:
	_seen = _keys_of(saved.get("seen"))
	_taken = _keys_of(saved.get("taken"))


static func _keys_of(saved: Variant) -> Dictionary[String, bool]:
	var keys: Dictionary[String, bool] = {}
	if saved is PackedStringArray or saved is Array:
		for key: Variant in saved:
			if key is String:
				keys[key] = true
	return keys


static func _rows_of(machine: SCMachine, item: SCItem) -> Array:
	var applied := _note(machine, _APPLIED)
	if not applied.get(item.key()) is Array:
		applied[item.key()] = []
	return applied[item.key()]


# What is done is written before it is done, so that it can be undone from within.
static func _new_row(item: SCItem, rows: Array, stats: Array[String]) -> Array:
	var source := "item:%s" % item.key()
	var number := 2
	while rows.any(func(row: Variant) -> bool: return row is Array and row[0] == source):
		source = "item:%s #%d" % [item.key(), number]
		number += 1
	rows.append([source, stats])
	return rows.back()


static func _undo(machine: SCMachine, key: String) -> void:
	var applied := _note(machine, _APPLIED)
	var rows := _rows(applied.get(key))
	if rows.is_empty():
		return
	var row := _rows(rows.pop_back())
	if rows.is_empty():
		applied.erase(key)
	# A file that was edited by hand may hold anything.
	if row.size() != 2 or not row[0] is String:
		return
	for stat: Variant in _rows(row[1]):
		if is_instance_valid(machine) and (stat is String or stat is StringName):
			Stats.take_away(machine, stat, row[0])


static func _take_all_back(id: int) -> void:
	var machine := instance_from_id(id) as SCMachine
	if machine == null:
		return
	var given := _note(machine, _GIVEN)
	var counts := given.duplicate()
	given.clear()
	for key: String in counts:
		for times in _count(counts[key]):
			if is_instance_valid(machine):
				_undo(machine, key)


static func _change_for_good(machine: SCMachine, item: SCItem, change: SCItemChange) -> void:
	var held: Variant = machine.get_value(change.stat)
	if not (held is int or held is float):
		_tell(machine, "no stat:%s" % change.stat, "there is no number called %s, so using %s does not change it. Add it in its Variables tab, or correct the name."
			% [change.stat, item.shown_name()])
		return
	var fresh := change.amount
	match change.change:
		SCItemChange.Change.ADD:
			fresh = float(held) + change.amount
			if held is int and change.amount == roundf(change.amount):
				machine.set_value(change.stat, held + roundi(change.amount))
				return
		SCItemChange.Change.MULTIPLY:
			fresh = held * change.amount
	if is_finite(fresh):
		machine.set_value(change.stat, roundi(fresh) if held is int else fresh)


static func _is_ready(machine: SCMachine, item: SCItem, change: SCItemChange) -> bool:
	if change.stat.is_empty():
		_tell(machine, "item without stat:%s" % item.key(), "a change of %s names no Stat, so it does nothing. Name the number that changes." % item.shown_name())
	elif not is_finite(change.amount):
		_tell(machine, "item amount:%s" % item.key(),
			"the change of %s by %s has an Amount that is no number, so it does nothing." % [change.stat, item.shown_name()])
	else:
		return true
	return false


static func _note(machine: SCMachine, name: StringName) -> Dictionary:
	var notes := Stats.book_of(machine).notes
	if not notes.get(name) is Dictionary:
		notes[name] = {}
	return notes[name]


# An id is never given twice, so those of machines that have gone are of no more use.
static func _remember(machine: SCMachine) -> void:
	if _given_to.size() >= _tidied_at:
		for id: int in _given_to.keys():
			if not is_instance_id_valid(id):
				_given_to.erase(id)
		_tidied_at = _given_to.size() * 2 + 16
	_given_to[machine.get_instance_id()] = true


static func _count(value: Variant) -> int:
	return maxi(value, 0) if value is int else 0


static func _rows(value: Variant) -> Array:
	return value if value is Array else []


static func _tell(machine: SCMachine, key: String, what: String) -> void:
	MakerWarnings.once_for(machine, key, "%s: %s" % [machine.name, what])
