extends RefCounted
## How far one quest has got: its status, and for each step what it has counted.
##
## The steps of a quest may change while it is under way, in the editor between two saved games or by a script. Each row finds its
## step again: the same one, else one that waits for the same, else, among as many steps as before, the one in its place.

# Of SCQuests.Status: the two files would load each other in a ring.
const _ACTIVE: int = 1
const _DONE: int = 2
const _LAST_STATUS: int = 4


## What one step has counted.
class Row:
	extends RefCounted

	## Null for an empty row of the list.
	var step: SCQuestStep
	## [method SCQuestStep.likeness] of the step it stands for.
	var likeness: String = ""
	var count: int = 0
	var is_done: bool = false
	## What it is waiting for just now: the key of one of the quest book's lists. Null while it waits for nothing.
	var waits_as: Variant = null
	var kind: SCQuestStep.Kind
	## Connected to the step while the row waits.
	var on_changed: Callable


var key: String = ""
## Where the quest is loaded from, when a saved game goes on.
var path: String = ""
## Null while a saved game has a quest that was not found.
var quest: SCQuest
## One of [code]SCQuests.Status[/code].
var status: int = 0
var is_tracked: bool = false
var rows: Array[Row] = []

# The steps that the rows were made for.
var _seen: Array[SCQuestStep] = []


## Whether the quest has other steps than the rows were made for.
func is_behind() -> bool:
	return quest != null and _seen != quest.steps


## Goes by the quest's steps as they are now.
func go_by_steps() -> void:
	if not is_behind():
		return
	var before := rows
	var fresh: Array[Row] = []
	fresh.resize(quest.steps.size())
	_take_over(before, fresh, func(row: Row, step: SCQuestStep, _is_same_place: bool) -> bool: return row.step == step)
	_take_over(before, fresh, func(row: Row, step: SCQuestStep, _is_same_place: bool) -> bool: return row.likeness == step.likeness())
	if before.size() == fresh.size():
		_take_over(before, fresh, func(_row: Row, _step: SCQuestStep, is_same_place: bool) -> bool: return is_same_place)
	for at in fresh.size():
		if fresh[at] == null:
			fresh[at] = Row.new()
		var step: SCQuestStep = quest.steps[at]
		fresh[at].step = step
		fresh[at].likeness = step.likeness() if step != null else ""
	rows = fresh
	_seen = quest.steps.duplicate()


## Counts everything from nothing.
func begin() -> void:
	rows = []
	_seen = []
	go_by_steps()
	status = _ACTIVE
	is_tracked = true


## Whether there is such a step and it is done.
func is_step_done(at: int) -> bool:
	return at >= 0 and at < rows.size() and rows[at].is_done


## Whether the step is one to do now.
func counts_now(at: int) -> bool:
	return at >= 0 and at < rows.size() and rows[at] in live_rows()


## Whether the step may be shown to the player already.
func is_shown(at: int) -> bool:
	if at < 0 or at >= rows.size() or rows[at].step == null:
		return false
	return not rows[at].step.hidden or rows[at].is_done or status == _DONE or counts_now(at)


## The rows that count now, in order.
func live_rows() -> Array[Row]:
	var live: Array[Row] = []
	if status != _ACTIVE or quest == null:
		return live
	for row in rows:
		if row.step == null or row.is_done:
			continue
		live.append(row)
		if quest.in_order and not row.step.optional:
			break
	return live


## Whether everything has been done that has to be. A quest with optional steps alone is over when all of them are done, and one
## without steps never by itself.
func is_fulfilled() -> bool:
	var has_any := false
	var has_needed := false
	var lacks_any := false
	for row in rows:
		if row.step == null:
			continue
		has_any = true
		lacks_any = lacks_any or not row.is_done
		if not row.step.optional:
			has_needed = true
			if not row.is_done:
				return false
	return has_needed or (has_any and not lacks_any)


## In plain values that a file can hold.
func to_save() -> Dictionary:
	var steps: Array[Dictionary] = []
	for row in rows:
		steps.append({"like": row.likeness, "count": row.count, "done": row.is_done})
	return {"key": key, "path": path, "status": status, "tracked": is_tracked, "steps": steps}


## What [method to_save] wrote. False when it was nothing of the kind.
func from_save(saved: Dictionary) -> bool:
	key = str(saved.get("key", ""))
	path = str(saved.get("path", ""))
	status = clampi(_whole(saved.get("status")), 0, _LAST_STATUS)
	is_tracked = saved.get("tracked") is bool and saved["tracked"]
	rows = []
	_seen = []
	var steps: Variant = saved.get("steps")
	for saved_row: Variant in steps if steps is Array else []:
		var row := Row.new()
		if saved_row is Dictionary:
			var held: Dictionary = saved_row
			row.likeness = str(held.get("like", ""))
			row.count = maxi(_whole(held.get("count")), 0)
			row.is_done = held.get("done") is bool and held["done"]
		rows.append(row)
	return not key.is_empty()


# Gives the free places of `fresh` the rows of `before` that `fits` says yes to. Each row goes to one place only.
func _take_over(before: Array[Row], fresh: Array[Row], fits: Callable) -> void:
	for at in fresh.size():
		var step: SCQuestStep = quest.steps[at]
		if step == null or fresh[at] != null:
			continue
		for was_at in before.size():
			var row := before[was_at]
			if row not in fresh and fits.call(row, step, was_at == at):
				fresh[at] = row
				break


# A file may bring a whole number as one with a fraction.
static func _whole(value: Variant) -> int:
	if value is int:
		return value
	return roundi(value) if value is float and is_finite(value as float) else 0
