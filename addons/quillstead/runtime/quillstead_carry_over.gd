extends RefCounted
## Takes machines on into the next scene.
##
## A machine whose template carries over is written down as its scene ends: [method gather]. The machine that runs the
## same template in the next scene finds the record as it starts, and goes on with its values and with what its node has.
## [br][br]
## A record is a [Dictionary] with the keys [constant TEMPLATE], [constant PATH], [constant FROM], [constant VALUES],
## [constant STATS], [constant TIMERS], [constant BELONGINGS] and, in one that was taken up, [constant LEFT_OVER].

const Belongings := preload("res://addons/quillstead/runtime/quillstead_belongings.gd")
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
## Record key: what the machine's node has in its Inventories and Data nodes, as [code]quillstead_belongings.gd[/code] writes it down.
const BELONGINGS: StringName = &"belongings"
## Record key: the rows of it that found no place in the scene the machine arrived in, and go along to the next.
const LEFT_OVER: StringName = &"left_over"

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
	var belongings: Array[Array] = []
	belongings.assign(record.get(BELONGINGS, []) as Array)
	record[LEFT_OVER] = Belongings.give(machine.target, belongings)


## Starts again what was running out on the machine in [param record], with the time it had left.
static func start_timers(machine: SCMachine, record: Dictionary) -> void:
	var timers: Array = record.get(TIMERS, [])
	if timers.is_empty() or not _has_stats():
		return
	for row: Array in timers:
		ClassDB.class_call_static(_STATS, &"run_out_later", machine, row[0], row[1], row[2])


## Writes down every running machine whose template carries over: those below [param scene], or all of them. Answers whether there is
## any. If so, records of other templates that nobody has taken up stay for the next scene; otherwise they are dropped.
static func gather(scene: Node = null) -> bool:
	var unclaimed := _waiting
	_waiting = []
	var going := machines_that_go(scene)
	var belongings := _belongings_of(going)
	for machine in going:
		_waiting.append(_written_down(machine, belongings[machine]))
		_forget_timers(machine)
	if not going.is_empty():
		_waiting.append_array(unclaimed.filter(_is_of_no_other))
	return not going.is_empty()


## Puts every machine below [param scene] that arrived with a record in line for that record again, for the scene to begin anew.
static func gather_again(scene: Node) -> void:
	for machine in machines_that_go(scene):
		if machine.has_meta(ARRIVED_RECORD):
			_waiting.append((machine.get_meta(ARRIVED_RECORD) as Dictionary).duplicate())
		_forget_timers(machine)


## The running machines whose templates carry over, of those below [param scene], or all.
static func machines_that_go(scene: Node = null) -> Array[SCMachine]:
	var going: Array[SCMachine] = []
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		var is_there := scene == null or scene == machine or scene.is_ancestor_of(machine)
		if is_there and machine.is_running() and machine.template != null and machine.template.carries_over:
			going.append(machine)
	return going


## Whether a record waits that [param machine], which need not be in the tree, would be handed.
static func is_awaited(machine: SCMachine) -> bool:
	return machine.template != null and machine.template.carries_over and _waiting.any(_is_for.bind(machine))


## The node of [param machine], which need not be in the tree.
static func node_of(machine: SCMachine) -> Node:
	return machine.get_parent() if machine.target_path.is_empty() else machine.get_node_or_null(machine.target_path)


## Drops every record that is still waiting, for a change of scene that takes nobody along.
static func forget() -> void:
	_waiting.clear()


## What [param machine] would carry over at this moment.
static func record_of(machine: SCMachine) -> Dictionary:
	return _written_down(machine, Belongings.of(machine.target, {}))


static func _written_down(machine: SCMachine, belongings: Array[Array]) -> Dictionary:
	var values := {}
	var held := machine.values
	for name: StringName in held:
		if not SCMachine._is_global_in(machine.variables, name) and not _stays_behind(held[name]):
			values[name] = _copy_of(held[name])
	var timers: Array = []
	if _has_stats():
		timers = ClassDB.class_call_static(_STATS, &"running_out", machine)
	var arrived: Dictionary = machine.get_meta(ARRIVED_RECORD, {})
	return {
		TEMPLATE: machine.template,
		PATH: machine.template.resource_path if machine.template != null else "",
		FROM: machine.get_instance_id(),
		VALUES: values,
		STATS: Stats.to_save(machine),
		TIMERS: timers,
		BELONGINGS: belongings + arrived.get(LEFT_OVER, []),
	}


# What lies below two of the machines' nodes belongs to the nearer one.
static func _belongings_of(machines: Array[SCMachine]) -> Dictionary[SCMachine, Array]:
	var innermost_first := machines.filter(func(machine: SCMachine) -> bool: return machine.target != null and machine.target.is_inside_tree())
	innermost_first.sort_custom(func(a: SCMachine, b: SCMachine) -> bool: return _depth_of(a) > _depth_of(b))
	var each: Dictionary[SCMachine, Array] = {}
	var taken := {}
	for machine in machines:
		each[machine] = [] as Array[Array]
	for machine: SCMachine in innermost_first:
		each[machine] = Belongings.of(machine.target, taken)
	return each


static func _depth_of(machine: SCMachine) -> int:
	return machine.target.get_path().get_name_count()


static func _is_of_no_other(record: Dictionary) -> bool:
	return not _waiting.any(func(other: Dictionary) -> bool: return _is_same_template(record, other[TEMPLATE] as SCMachineTemplate))


static func _forget_timers(machine: SCMachine) -> void:
	if _has_stats():
		ClassDB.class_call_static(_STATS, &"forget_timers", machine)


# A template without a file is the same one only as long as it is the same object.
static func _is_for(record: Dictionary, machine: SCMachine) -> bool:
	return record[FROM] != machine.get_instance_id() and _is_same_template(record, machine.template)


static func _is_same_template(record: Dictionary, template: SCMachineTemplate) -> bool:
	var path: String = record[PATH]
	return record[TEMPLATE] == template or (not path.is_empty() and template != null and path == template.resource_path)


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
