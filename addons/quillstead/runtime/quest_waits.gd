extends RefCounted
## Which steps wait for what: lists of the rows of [code]quest_progress.gd[/code] that count now, each with the quest it belongs to,
## by the event or the name it waits for. Nobody has to go through all quests when something happens.

const Progress := preload("res://addons/quillstead/runtime/quest_progress.gd")

## A first step waits for an event.
signal event_needed(event_name: StringName)
## No step waits for an event any more.
signal event_not_needed(event_name: StringName)
## A step that is waiting, or was until now, was edited.
signal step_edited(key: String)

## Those that wait for the player's inventory.
var collecting: Dictionary[Progress.Row, Progress] = {}

var _events: Dictionary[StringName, Dictionary] = {}
var _talks: Dictionary[StringName, Dictionary] = {}


## Those that wait for an event.
func of_event(event_name: StringName) -> Dictionary:
	return _events.get(event_name, {})


## Those that wait for a talk that took place on [param machine]: with the node it works on, the node it sits under, or itself.
func of_talk(machine: Node) -> Dictionary:
	var rows := {}
	if _talks.is_empty():
		return rows
	for node: Variant in [machine.get(&"target"), machine.get_parent(), machine]:
		if not is_instance_valid(node) or not node is Node:
			continue
		var with: Node = node
		rows.merge(_talks.get(with.name, {}) as Dictionary)
		for group in with.get_groups():
			rows.merge(_talks.get(group, {}) as Dictionary)
	return rows


## Lets a row wait for what its step says now.
func begin(progress: Progress, row: Progress.Row) -> void:
	var step := row.step
	var waits_as: StringName = &""
	if step.kind == SCQuestStep.Kind.EVENT:
		waits_as = step.waits_for
	elif step.kind == SCQuestStep.Kind.TALK:
		waits_as = step.talk_to
	if row.waits_as != null:
		if row.kind == step.kind and row.waits_as == waits_as:
			return
		end(row)
	row.kind = step.kind
	row.waits_as = waits_as
	row.on_changed = step_edited.emit.bind(progress.key)
	step.changed.connect(row.on_changed)
	match step.kind:
		SCQuestStep.Kind.COLLECT:
			collecting[row] = progress
		SCQuestStep.Kind.TALK:
			(_talks.get_or_add(waits_as, {}) as Dictionary)[row] = progress
		SCQuestStep.Kind.EVENT:
			(_events.get_or_add(waits_as, {}) as Dictionary)[row] = progress
			event_needed.emit(waits_as)


## Ends what [method begin] began. A row that does not wait is left alone.
func end(row: Progress.Row) -> void:
	if row.waits_as == null:
		return
	var waited_as: StringName = row.waits_as
	row.waits_as = null
	row.step.changed.disconnect(row.on_changed)
	match row.kind:
		SCQuestStep.Kind.COLLECT:
			collecting.erase(row)
		SCQuestStep.Kind.TALK:
			_take_out(_talks, waited_as, row)
		SCQuestStep.Kind.EVENT:
			_take_out(_events, waited_as, row)
			if not _events.has(waited_as):
				event_not_needed.emit(waited_as)


## Ends the waiting of all rows of a list but for some.
func end_all(rows: Array[Progress.Row], but_for: Array[Progress.Row] = []) -> void:
	for row in rows:
		if row not in but_for:
			end(row)


static func _take_out(lists: Dictionary[StringName, Dictionary], name: StringName, row: Progress.Row) -> void:
	if lists.has(name):
		lists[name].erase(row)
		if lists[name].is_empty():
			lists.erase(name)
