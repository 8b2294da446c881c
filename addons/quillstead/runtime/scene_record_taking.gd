extends RefCounted
## The half of [code]quillstead_scene_record.gd[/code] that writes down.

const Carried := preload("res://addons/quillstead/runtime/quillstead_carried.gd")
const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const Stats := preload("res://addons/quillstead/runtime/quillstead_stats.gd")
const Values := preload("res://addons/quillstead/runtime/quillstead_saved_values.gd")
const Words := preload("res://addons/quillstead/runtime/scene_record_words.gd")

const _RUNS_OUT: StringName = &"SCModifyStatAction"

var record: Dictionary = {}

var _scene: Node
var _values: Values
# What scenes are like as they come from their files, by path; null for one that cannot be had.
var _patterns: Dictionary[String, Node] = {}
# By object, property name to what comes back once nobody holds it any more.
var _held: Dictionary[int, Dictionary] = {}


func _init(scene: Node) -> void:
	_scene = scene
	_values = Values.new(scene)
	for row: Array in SCMachine.native_helper(&"held_properties", []):
		if row[0] is Node:
			var held: Dictionary = _held.get_or_add((row[0] as Node).get_instance_id(), {})
			held[row[1]] = row[2]
	record = {Words.FILE: scene.scene_file_path, Words.TOP: _part(scene, _pattern(scene.scene_file_path)), Words.MACHINES: _machines()}
	if scene != scene.get_tree().current_scene:
		_note_beside()
	if Dungeon.stands_in(scene):
		record[Words.FLOOR] = _values.encoded(Dungeon.to_save())
	for pattern: Node in _patterns.values():
		if pattern != null:
			pattern.free()


# Without a scene being played, what machines make under no node in particular stands at the top of the tree.
func _note_beside() -> void:
	for node in _scene.get_tree().root.get_children():
		if node != _scene and node.has_meta(Words.MADE_BY) and not node.has_meta(Words.PASSING) and not node.is_queued_for_deletion():
			_note_made(record[Words.TOP] as Dictionary, _scene, node)


# A node with all below it, beside what it is like when it is new. Places are those within the node.
func _part(top: Node, pattern: Node) -> Dictionary:
	var part := {Words.NODES: {}, Words.GONE: [], Words.NEWCOMERS: []}
	var met: Dictionary[Node, bool] = {}
	_walk(part, top, top, pattern, pattern, met)
	if pattern != null:
		_list_gone(part, pattern, pattern, met)
	return part


func _walk(part: Dictionary, top: Node, node: Node, pattern: Node, twin: Node, met: Dictionary[Node, bool]) -> void:
	var place := str(top.get_path_to(node))
	var differs := _differences(node, twin)
	if not differs.is_empty():
		(part[Words.NODES] as Dictionary)[place] = differs
	if twin != null:
		met[twin] = true
	for child in node.get_children():
		if child.is_queued_for_deletion() or child.has_meta(Words.PASSING):
			continue
		if pattern == null:
			_walk_without(part, top, child, met)
			continue
		var its_twin := _twin_of(top, child, pattern)
		if its_twin == null or met.has(its_twin):
			_note_made(part, top, child)
			continue
		if child.has_meta(Words.FROM):
			(part[Words.NEWCOMERS] as Array).append(_newcomer(top, child, {Words.CAME_FROM: str(pattern.get_path_to(its_twin))}))
		_walk(part, top, child, pattern, its_twin, met)


# Nothing tells what a scene without a file was like when it was new, but what comes from a file of its own, or was made by a machine.
func _walk_without(part: Dictionary, top: Node, child: Node, met: Dictionary[Node, bool]) -> void:
	if not child.scene_file_path.is_empty() or child.has_meta(Words.MADE_BY):
		_note_made(part, top, child)
	else:
		_walk(part, top, child, null, null, met)


# What is like it in the file: a node that was made meanwhile has nothing, whatever its name.
func _twin_of(top: Node, node: Node, pattern: Node) -> Node:
	if node.owner == null and not node.has_meta(Words.FROM):
		return null
	var place: String = str(node.get_meta(Words.FROM)) if node.has_meta(Words.FROM) else str(top.get_path_to(node))
	var twin := pattern.get_node_or_null(place)
	return twin if twin != null and twin.get_class() == node.get_class() and twin.scene_file_path == node.scene_file_path else null


func _list_gone(part: Dictionary, pattern: Node, below: Node, met: Dictionary[Node, bool]) -> void:
	for child in below.get_children():
		if met.has(child):
			_list_gone(part, pattern, child, met)
		else:
			(part[Words.GONE] as Array).append(str(pattern.get_path_to(child)))


func _note_made(part: Dictionary, top: Node, node: Node) -> void:
	var how := {}
	var pattern: Node = null
	if GameFiles.has_scene(node.scene_file_path):
		how = {Words.SCENE: node.scene_file_path}
		pattern = _pattern(node.scene_file_path)
	elif node.has_meta(Words.COPIED_FROM):
		how = {Words.COPY_OF: str(node.get_meta(Words.COPIED_FROM))}
		var original: Node = _pattern(top.scene_file_path)
		pattern = original.get_node_or_null(str(node.get_meta(Words.COPIED_FROM))) if original != null else null
	elif _loot_kind(node) != "":
		how = {Words.LOOT: _loot_kind(node)}
	elif node.has_meta(Words.MADE_BY):
		var script: Script = node.get_script()
		how = {Words.CLASS: node.get_class() if script == null else String(script.get_global_name())}
	if how.is_empty():
		return
	how[Words.PART] = _part(node, pattern)
	(part[Words.NEWCOMERS] as Array).append(_newcomer(top, node, how))


func _newcomer(top: Node, node: Node, how: Dictionary) -> Dictionary:
	how[Words.AT] = str(_scene.get_path_to(node))
	how[Words.PARENT] = str(top.get_path_to(node.get_parent()))
	how[Words.NAME] = str(node.name)
	how[Words.INDEX] = node.get_index()
	return how


static func _loot_kind(node: Node) -> String:
	var script: Script = node.get_script()
	for kind: String in Words.LOOTS:
		if script != null and script.resource_path == Words.LOOTS[kind]:
			return kind
	return ""


func _pattern(file: String) -> Node:
	if not _patterns.has(file):
		var packed: PackedScene = load(file) as PackedScene if GameFiles.has_scene(file) else null
		_patterns[file] = packed.instantiate() if packed != null and packed.can_instantiate() else null
	return _patterns[file]


func _differences(node: Node, twin: Node) -> Dictionary:
	var differs := {}
	var properties := _different_properties(node, twin)
	if not properties.is_empty():
		differs[Words.PROPERTIES] = properties
	var metas := _different_metas(node, twin)
	if not metas.is_empty():
		differs[Words.METAS] = metas
	_note_groups(differs, node, twin)
	var carried: Variant = _values.encoded(Carried.to_save(node)) if node.has_meta(Carried.CARRIED) else null
	if carried is Dictionary:
		differs[Words.CARRIED] = carried
	if Words.keeps_for_itself(node):
		var kept: Variant = _values.encoded(node.call(&"to_save"))
		if not Values.is_lost(kept):
			differs[Words.SAVED] = kept
	return differs


func _different_properties(node: Node, twin: Node) -> Dictionary:
	var before := Words.defaults_of(node)
	var held: Dictionary = _held.get(node.get_instance_id(), {})
	if held.is_empty():
		return _values.differences(node, before, twin)
	before = before.duplicate()
	var properties := {}
	for name: StringName in held:
		var was: Variant = twin.get(name) if twin != null else before.get(name)
		if before.has(name) and (typeof(held[name]) != typeof(was) or held[name] != was):
			var kept: Variant = _values.encoded(held[name])
			if not Values.is_lost(kept):
				properties[String(name)] = kept
		before.erase(name)
	properties.merge(_values.differences(node, before, twin))
	return properties


# Null for one that has been taken off.
func _different_metas(node: Node, twin: Node) -> Dictionary:
	var metas := {}
	for name in node.get_meta_list():
		if name == Carried.CARRIED:
			continue
		var now: Variant = node.get_meta(name)
		if twin != null and twin.has_meta(name) and typeof(now) == typeof(twin.get_meta(name)) and now == twin.get_meta(name):
			continue
		var kept: Variant = _values.encoded(now)
		if not Values.is_lost(kept):
			metas[String(name)] = kept
	if twin != null:
		for name in twin.get_meta_list():
			if not node.has_meta(name):
				metas[String(name)] = null
	return metas


func _note_groups(differs: Dictionary, node: Node, twin: Node) -> void:
	var joined: Array[String] = []
	for group in node.get_groups():
		if not String(group).begins_with(Words.ENGINE_GROUP) and (twin == null or not twin.is_in_group(group)):
			joined.append(String(group))
	if not joined.is_empty():
		differs[Words.JOINED] = joined
	if twin == null:
		return
	var left: Array[String] = []
	for group in twin.get_groups():
		if not node.is_in_group(group):
			left.append(String(group))
	if not left.is_empty():
		differs[Words.LEFT] = left


# In the order in which they hear events.
func _machines() -> Array:
	var machines: Array = []
	for machine: SCMachine in SCMachine.machines_in_the_scene():
		if machine == _scene or _scene.is_ancestor_of(machine):
			machines.append({Words.AT: _values.place_of(machine), "does": _written_down(machine)})
	return machines


func _written_down(machine: SCMachine) -> Variant:
	var does := machine._written_down()
	for held: String in ["values", "shared"]:
		var values: Dictionary = does.get(held, {})
		for name: StringName in values.keys():
			if Values.is_lost(_values.encoded(values[name])):
				values.erase(name)
	_values.forgets_strangers = true
	var states: Variant = _values.encoded(_mendable(does.get("states", []) as Array))
	_values.forgets_strangers = false
	does.erase("states")
	if Values.is_lost(_values.encoded(does.get("last_data"))):
		does.erase("last_data")
	does["stats"] = Stats.to_save(machine)
	if ClassDB.class_has_method(_RUNS_OUT, &"running_out"):
		does["timers"] = ClassDB.class_call_static(_RUNS_OUT, &"running_out", machine)
	var kept: Dictionary = {"states": states, "rest": _values.encoded(does)}
	return kept


# An action whose memory no file can hold is entered anew.
func _mendable(states: Array) -> Array:
	for state: Dictionary in states:
		for action: Dictionary in state["actions"]:
			for what: String in ["slot", "tween"]:
				if action.has(what) and Values.is_lost(_values.encoded(action[what])):
					action.erase(what)
					action["torn"] = true
					# Also one that has finished, such as one that listens on: it begins anew.
					action["started"] = false
	return states
