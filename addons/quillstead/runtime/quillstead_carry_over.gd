extends RefCounted
## Takes machines on into the next scene.
##
## A machine whose template carries over is written down as its scene ends: [method gather]. The machine that runs the
## same template in the next scene finds the record as it starts, and goes on with its values.
## [br][br]
## A record is a [Dictionary] with the keys [constant TEMPLATE], [constant PATH], [constant FROM], [constant VALUES],
## [constant STATS] and [constant TIMERS].

const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")

## The meta under which a machine keeps the record it arrived with.
const ARRIVED_RECORD: StringName = &"quillstead_arrived"

## Record key: the template itself.
const TEMPLATE: StringName = &"template"
## Record key: the template's path, empty for one that is not saved in a file.
const PATH: StringName = &"path"
## Record key: the id of the machine that was written down.
const FROM: StringName = &"from"
## Record key: variable name to value. What belongs to the scene left behind is not in it.
const VALUES: StringName = &"values"
## Record key: what changes its stats, as [code]quillstead_stats.gd[/code] writes it down.
const STATS: StringName = &"stats"
## Record key: the changes of stats that run out later, each an [Array] of stat, source and seconds left.
const TIMERS: StringName = &"timers"

const _STATS: StringName = &"SCModifyStatAction"

## The records that no machine has taken up yet.
static var _waiting: Array[Dictionary] = []


## Whether any record is waiting for its machine.
static func is_waiting() -> bool:
	return not _waiting.is_empty()


## Hands out the record that waits for [param machine], which nobody else gets then. Empty when there is none.
static func claim(machine: SCMachine) -> Dictionary:
	if machine.template == null or not machine.template.carries_over:
		return {}
	for at in _waiting.size():
		if _is_for(_waiting[at], machine):
			var record := _waiting[at]
			_waiting.remove_at(at)
			return record
	return {}


## Gives [param machine], which is about to start, the values in [param record]. Only variables that it has take one,
## and a global is left alone: it has come along by itself.
static func take_in(machine: SCMachine, record: Dictionary) -> void:
	var values: Dictionary = record.get(VALUES, {})
	for name: StringName in values:
		if machine.has_value(name) and not SCMachine._is_global_in(machine.variables, name):
			machine._write(name, _copy_of(values[name]), true)
	Stats.from_save(machine, record.get(STATS, {}))


## Starts again what was running out on the machine in [param record], with the time it had left.
static func start_timers(machine: SCMachine, record: Dictionary) -> void:
	var timers: Array = record.get(TIMERS, [])
	if timers.is_empty() or not _has_stats():
		return
	for row: Array in timers:
		ClassDB.class_call_static(_STATS, &"run_out_later", machine, row[0], row[1], row[2])


## Writes down every running machine of the scene whose template carries over. Records that nobody has taken up since
## the last change of scene are dropped.
static func gather() -> void:
	_waiting.clear()
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		if machine.is_running() and machine.template != null and machine.template.carries_over:
			_waiting.append(record_of(machine))
			if _has_stats():
				ClassDB.class_call_static(_STATS, &"forget_timers", machine)


## Drops every record that is still waiting, for a change of scene that takes nobody along.
static func forget() -> void:
	_waiting.clear()


## What [param machine] would carry over at this moment.
static func record_of(machine: SCMachine) -> Dictionary:
	var values := {}
	var held := machine.values
	for name: StringName in held:
		if not SCMachine._is_global_in(machine.variables, name) and not _stays_behind(held[name]):
			values[name] = _copy_of(held[name])
	var timers: Array = []
	if _has_stats():
		timers = ClassDB.class_call_static(_STATS, &"running_out", machine)
	return {
		TEMPLATE: machine.template,
		PATH: machine.template.resource_path if machine.template != null else "",
		FROM: machine.get_instance_id(),
		VALUES: values,
		STATS: Stats.to_save(machine),
		TIMERS: timers,
	}


# A template without a file is the same one only as long as it is the same object.
static func _is_for(record: Dictionary, machine: SCMachine) -> bool:
	if record[FROM] == machine.get_instance_id():
		return false
	var path: String = record[PATH]
	return record[TEMPLATE] == machine.template or (not path.is_empty() and path == machine.template.resource_path)


# Changes of stats that run out are kept by an action kind, and a game may run without that kind.
static func _has_stats() -> bool:
	return ClassDB.class_exists(_STATS) and ClassDB.class_has_method(_STATS, &"run_out_later")


static func _copy_of(value: Variant) -> Variant:
	if value is Array:
		return (value as Array).duplicate(true)
	if value is Dictionary:
		return (value as Dictionary).duplicate(true)
	return value


# Nodes stay behind in their scene, and so does every list that has one in it.
static func _stays_behind(value: Variant) -> bool:
	match typeof(value):
		TYPE_OBJECT:
			return not is_instance_valid(value) or not value is Resource
		TYPE_ARRAY:
			return (value as Array).any(_stays_behind)
		TYPE_DICTIONARY:
			var held: Dictionary = value
			return held.keys().any(_stays_behind) or held.values().any(_stays_behind)
	return false
