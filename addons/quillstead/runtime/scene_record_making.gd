extends RefCounted
## The half of [code]quillstead_scene_record.gd[/code] that brings back.

const Carried := preload("res://addons/quillstead/runtime/quillstead_carried.gd")
const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Saver := preload("res://addons/quillstead/runtime/scene_record_saver.gd")
const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")
const Values := preload("res://addons/quillstead/runtime/quillstead_saved_values.gd")
const Words := preload("res://addons/quillstead/runtime/scene_record_words.gd")

const _RUNS_OUT: StringName = &"SCModifyStatAction"
# What may be made by its class alone: Add Node makes these, and none of them does anything by itself.
const _PLAIN_CLASSES: Array[StringName] = [&"CanvasItem", &"Node3D", &"AudioStreamPlayer", &"Timer", &"AnimationPlayer", &"CanvasLayer"]

## Whether the scene is the running one itself.
var in_place: bool = false

var _scene: Node
var _record: Dictionary
var _values: Values
# Machines that go on, and whether they start by themselves when their scene is new.
var _starts_itself: Dictionary[int, bool] = {}
# Who is held by somebody, and how.
var _carried: Dictionary[int, Variant] = {}


func _init(scene: Node, record: Dictionary) -> void:
	_scene = scene
	_record = record
	_values = Values.new(scene)


## Everything but what the machines do.
func prepare() -> void:
	_make_part(_scene, _dictionary(_record, Words.TOP))
	if in_place:
		_remove_what_came_since()
	_change_part(_scene, _dictionary(_record, Words.TOP))
	if not in_place:
		_hold_machines()


## What the machines do.
func go_on() -> void:
	var floor_kept: Variant = _values.decoded(_record.get(Words.FLOOR))
	if floor_kept is Dictionary:
		Dungeon.from_save(floor_kept as Dictionary)
	for id in _carried:
		var thing: Node = instance_from_id(id)
		var how: Variant = _values.decoded(_carried[id])
		if thing != null and how is Dictionary:
			Carried.from_save(thing, how as Dictionary)
	for row: Variant in _array(_record, Words.MACHINES):
		var machine := _values.node_at(str((row as Dictionary).get(Words.AT, ""))) as SCMachine if row is Dictionary else null
		if machine == null:
			continue
		if _starts_itself.has(machine.get_instance_id()):
			machine.autostart = _starts_itself[machine.get_instance_id()]
		var does := _doing(row as Dictionary)
		if not does.is_empty():
			_let_go_on(machine, does)


# What a machine was doing. Empty when that cannot be read.
func _doing(row: Dictionary) -> Dictionary:
	var kept := _dictionary(row, "does")
	var does: Variant = _values.decoded(kept.get("rest"))
	if not does is Dictionary:
		return {}
	(does as Dictionary)["states"] = _values.decoded(kept.get("states"))
	return does


func _let_go_on(machine: SCMachine, does: Dictionary) -> void:
	if not does.get("running", false):
		if machine.is_running():
			machine.stop()
		return
	machine._start_from(Saver.mended(machine, does))
	if not is_instance_valid(machine):
		return
	var stats: Variant = does.get("stats")
	Stats.from_save(machine, stats if stats is Dictionary else {})
	var timers: Variant = does.get("timers")
	if timers is Array and ClassDB.class_has_method(_RUNS_OUT, &"run_out_later"):
		ClassDB.class_call_static(_RUNS_OUT, &"forget_timers", machine)
		for timer: Variant in timers:
			if timer is Array and (timer as Array).size() == 3:
				ClassDB.class_call_static(_RUNS_OUT, &"run_out_later", machine, timer[0], timer[1], timer[2])


# First all who are to be there, as what a node is like may name any other.
func _make_part(top: Node, part: Dictionary) -> void:
	var made: Array[Node] = []
	for row: Variant in _array(part, Words.NEWCOMERS):
		if not row is Dictionary:
			continue
		var newcomer: Dictionary = row
		var node := _newcomer(top, newcomer)
		if node == null:
			continue
		var name := str(newcomer.get(Words.NAME, ""))
		if not name.is_empty() and not name.contains("@"):
			node.name = name
		_values.placed[str(newcomer.get(Words.AT, ""))] = node
		made.append(node)
		_make_part(node, _dictionary(newcomer, Words.PART))
	for path: Variant in _array(part, Words.GONE):
		var gone := top.get_node_or_null(str(path))
		if gone != null and gone != top and not in_place:
			gone.free()
	for row: Variant in _array(part, Words.NEWCOMERS):
		var node := _values.placed.get(str((row as Dictionary).get(Words.AT, ""))) as Node if row is Dictionary else null
		if node != null and is_instance_valid(node) and node.get_parent() != null:
			# The name was taken as long as its bearer of old stood there.
			var name := str((row as Dictionary).get(Words.NAME, ""))
			if not name.is_empty() and not name.contains("@") and str(node.name) != name:
				node.name = name
			node.get_parent().move_child(node, mini(int(_number(row as Dictionary, Words.INDEX)), node.get_parent().get_child_count() - 1))


func _newcomer(top: Node, row: Dictionary) -> Node:
	var parent := _in_part(top, str(row.get(Words.PARENT, "")))
	if parent == null:
		return null
	if row.has(Words.CAME_FROM):
		return _moved(top, parent, str(row[Words.CAME_FROM]))
	var there := parent.get_node_or_null(str(row.get(Words.NAME, ""))) if in_place else null
	if there != null and there.scene_file_path == str(row.get(Words.SCENE, "")) and not there.is_queued_for_deletion():
		return there
	var node := _made(top, row)
	if node != null:
		# A place first, then the tree: nothing is to be met on the way.
		_change_part(node, _dictionary(row, Words.PART), true)
		parent.add_child(node, true)
	return node


func _moved(top: Node, parent: Node, from: String) -> Node:
	var node := top.get_node_or_null(from)
	if node == null or node == parent or node.is_ancestor_of(parent) or node == top:
		return null
	if node.get_parent() != parent:
		var owned_by := node.owner
		node.owner = null
		node.get_parent().remove_child(node)
		parent.add_child(node)
		node.owner = owned_by if owned_by != null and owned_by.is_ancestor_of(node) else null
	node.set_meta(Words.FROM, from)
	return node


func _made(top: Node, row: Dictionary) -> Node:
	if row.has(Words.SCENE):
		var packed: PackedScene = load(str(row[Words.SCENE])) as PackedScene if GameFiles.has_scene(row[Words.SCENE]) else null
		if packed == null or not packed.can_instantiate():
			MakerWarnings.once("scene gone:%s" % row[Words.SCENE],
					"A saved game has something made from %s, which is not in the game any more, so it is left out. Put the scene back." % row[Words.SCENE])
			return null
		return packed.instantiate()
	if row.has(Words.COPY_OF):
		var original := top.get_node_or_null(str(row[Words.COPY_OF]))
		return original.duplicate() if original != null and original != top else null
	if row.has(Words.LOOT):
		var script: Variant = Words.LOOTS.get(str(row[Words.LOOT]))
		return (load(str(script)) as GDScript).new() as Node if script != null else null
	return _of_class(StringName(str(row.get(Words.CLASS, ""))))


static func _of_class(kind: StringName) -> Node:
	if ClassDB.class_exists(kind) and ClassDB.can_instantiate(kind):
		var is_plain := _PLAIN_CLASSES.any(func(plain: StringName) -> bool: return ClassDB.is_parent_class(kind, plain))
		return ClassDB.instantiate(kind) if is_plain or kind == &"Node" else null
	for own in ProjectSettings.get_global_class_list():
		if own["class"] == kind and GameFiles.has(own["path"]):
			var script := load(own["path"] as String) as GDScript
			if script != null and script.can_instantiate() and ClassDB.is_parent_class(script.get_instance_base_type(), &"Node"):
				return script.new()
	return null


# A place within a part may lead through something that was moved or made.
func _in_part(top: Node, place: String) -> Node:
	if place == ".":
		return top
	var here := str(_scene.get_path_to(top)) if top.is_inside_tree() or _scene.is_ancestor_of(top) else ""
	var node := _values.node_at(place if here == "." or here.is_empty() else here.path_join(place))
	return node if node != null else top.get_node_or_null(place)


func _change_part(top: Node, part: Dictionary, only_top: bool = false) -> void:
	var nodes := _dictionary(part, Words.NODES)
	for path: Variant in ["."] if only_top else nodes.keys():
		var node := _in_part(top, str(path))
		if node != null and nodes.get(path) is Dictionary:
			_change(node, nodes[path] as Dictionary)
	if only_top:
		return
	if in_place:
		_change_back(top, nodes)
	for row: Variant in _array(part, Words.NEWCOMERS):
		var node: Variant = _values.placed.get(str((row as Dictionary).get(Words.AT, ""))) if row is Dictionary else null
		if is_instance_valid(node) and (row as Dictionary).has(Words.PART):
			_change_part(node as Node, _dictionary(row as Dictionary, Words.PART))


func _change(node: Node, differs: Dictionary) -> void:
	var properties := _dictionary(differs, Words.PROPERTIES)
	for name: StringName in Words.properties_of(node):
		if properties.has(String(name)):
			_put(node, name, _values.decoded(properties[String(name)]))
	var metas := _dictionary(differs, Words.METAS)
	for meta: Variant in metas:
		var value: Variant = _values.decoded(metas[meta])
		if str(meta).is_valid_identifier():
			node.set_meta(StringName(str(meta)), value)
	for group: Variant in _array(differs, Words.JOINED):
		node.add_to_group(str(group))
	for group: Variant in _array(differs, Words.LEFT):
		if node.is_in_group(str(group)):
			node.remove_from_group(str(group))
	if differs.has(Words.CARRIED):
		_carried[node.get_instance_id()] = differs[Words.CARRIED]
	if differs.has(Words.SAVED) and Words.keeps_for_itself(node):
		var saved: Variant = _values.decoded(differs[Words.SAVED])
		if saved != null:
			node.call(&"from_save", saved)


# A file that was changed by hand may hold a value of another kind.
static func _put(node: Node, name: StringName, value: Variant) -> void:
	var now: Variant = node.get(name)
	if typeof(now) == typeof(value) or now == null or (value == null and typeof(now) == TYPE_OBJECT):
		node.set(name, value)


# What the record does not speak of is as nobody has changed it.
func _change_back(top: Node, nodes: Dictionary) -> void:
	for place: String in _places_below(top, top):
		var node := top.get_node_or_null(place)
		var differs := _dictionary(nodes, place)
		var properties := _dictionary(differs, Words.PROPERTIES)
		var defaults := Words.defaults_of(node)
		for name: StringName in defaults:
			var now: Variant = node.get(name)
			var before: Variant = defaults[name]
			if not properties.has(String(name)) and typeof(now) == typeof(before) and now != before and not now is Object:
				if not Values.is_lost(_values.encoded(now)):
					node.set(name, before)


func _places_below(top: Node, node: Node) -> PackedStringArray:
	var places: PackedStringArray = [str(top.get_path_to(node))]
	for child in node.get_children():
		if child.scene_file_path.is_empty() and not child.has_meta(Words.MADE_BY) and not child.is_queued_for_deletion():
			places.append_array(_places_below(top, child))
	return places


# Made since by a machine, and not in the record.
func _remove_what_came_since() -> void:
	var all := _scene.find_children("*", "", true, false)
	if _scene != _scene.get_tree().current_scene:
		all.append_array(_scene.get_tree().root.get_children())
	for node in all:
		if node.has_meta(Words.MADE_BY) and not _values.placed.values().has(node):
			node.queue_free()


func _hold_machines() -> void:
	for row: Variant in _array(_record, Words.MACHINES):
		var machine := _values.node_at(str((row as Dictionary).get(Words.AT, ""))) as SCMachine if row is Dictionary else null
		# One that waits for its node to be switched on starts by itself when that comes.
		if machine != null and not _doing(row as Dictionary).get("held", false):
			_starts_itself[machine.get_instance_id()] = machine.autostart
			machine.autostart = false


static func _dictionary(of: Dictionary, name: String) -> Dictionary:
	var found: Variant = of.get(name)
	return found if found is Dictionary else {}


static func _array(of: Dictionary, name: String) -> Array:
	var found: Variant = of.get(name)
	return found if found is Array else []


static func _number(of: Dictionary, name: String) -> float:
	var found: Variant = of.get(name)
	return found if found is float or found is int else 0.0
