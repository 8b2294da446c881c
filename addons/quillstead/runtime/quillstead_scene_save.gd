extends RefCounted
## Saves a whole scene into a file and brings it back: what was made, moved and freed in it, what every machine was doing, what lies
## on the ground, and what the whole game keeps, such as globals, quests, what was said and the scenes left behind.
##
## The file is JSON. It is read whole before anything is changed, so a broken one changes nothing.

const Changer := preload("res://addons/quillstead/runtime/quillstead_scene_changer.gd")
const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const Conversation := preload("res://addons/quillstead/runtime/conversation.gd")
const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const Items := preload("res://addons/quillstead/runtime/quillstead_items.gd")
const Left := preload("res://addons/quillstead/runtime/quillstead_scenes_left.gd")
const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")
const Record := preload("res://addons/quillstead/runtime/quillstead_scene_record.gd")
const Values := preload("res://addons/quillstead/runtime/quillstead_saved_values.gd")
const Words := preload("res://addons/quillstead/runtime/scene_record_words.gd")

## The form of the files. A later one says so.
const FORM: int = 1

const _FORM: String = "quillstead_scene"
const _TITLE: String = "title"
const _SCENE: String = "scene"
const _GLOBALS: String = "globals"
const _QUESTS: String = "quests"
const _SAID: String = "said"
const _ITEMS: String = "items"
const _LEFT: String = "scenes_left"
const _PAUSED: String = "paused"
const _SPEED: String = "speed"


## Writes the scene [param machine] is in to [param path]. Whether that worked.
static func save(machine: Node, path: String) -> bool:
	var scene := scene_of(machine)
	return scene != null and SCMachine.native_helper(&"write_save", [path, JSON.stringify(_taken(scene), "\t", true, true)])


## Brings back the scene that [param path] holds, with the end of this frame. Whether there is one: a file that is broken, or of a
## scene that the game no longer has, changes nothing.
static func load_into(machine: Node, path: String) -> bool:
	var found: Variant = SCMachine.native_helper(&"read_save", [path])
	if not found is Dictionary or not machine.is_inside_tree() or not _is_sound(found as Dictionary):
		return false
	var saved: Dictionary = found
	var record: Dictionary = saved[_SCENE]
	var file: String = record.get(Words.FILE, "")
	var scene := scene_of(machine)
	if not file.is_empty():
		var packed := load(file) as PackedScene
		if packed == null or not packed.can_instantiate():
			return false
		Changer.swap(machine.get_tree(), scene, packed, record, _bring_back.bind(machine.get_tree(), saved))
		return true
	_bring_back_in_place.call_deferred(scene.get_instance_id(), saved)
	return true


## The scene that [param node] is in: the one being played, or the top of what it stands in.
static func scene_of(node: Node) -> Node:
	if not node.is_inside_tree():
		return null
	var top := node.get_tree().current_scene
	if top != null and (top == node or top.is_ancestor_of(node)):
		return top
	top = node
	while top.get_parent() != null and not top.get_parent() is Window:
		top = top.get_parent()
	return top


static func _taken(scene: Node) -> Dictionary:
	var values := Values.new(scene)
	var globals := {}
	for name: StringName in SCMachine.global_names():
		var kept: Variant = values.encoded(SCMachine.global_value(name))
		if not Values.is_lost(kept):
			globals[String(name)] = kept
	return {
		_FORM: FORM,
		_TITLE: {"time": Time.get_datetime_string_from_system(false, true), "game": ProjectSettings.get_setting("application/config/version", "")},
		_SCENE: Record.of(scene),
		_GLOBALS: globals,
		_QUESTS: values.encoded(SCQuests.to_save(scene.get_tree())),
		_SAID: values.encoded(Conversation.to_save()),
		_ITEMS: values.encoded(Items.to_save()),
		_LEFT: Left.to_save(),
		_PAUSED: scene.get_tree().paused,
		_SPEED: _speed(),
	}


# What is held for a while is held again by whoever goes on.
static func _speed() -> float:
	for row: Array in SCMachine.native_helper(&"held_properties", []):
		if row[0] is Engine and row[1] == &"time_scale":
			return row[2]
	return Engine.time_scale


# Every place that is looked into later is what it should be.
static func _is_sound(saved: Dictionary) -> bool:
	var form: Variant = saved.get(_FORM)
	if not (form is float or form is int) or int(form as float) != FORM:
		return false
	for part: String in [_SCENE, _GLOBALS, _LEFT]:
		if not saved.get(part) is Dictionary:
			return false
	var record: Dictionary = saved[_SCENE]
	if not record.get(Words.FILE) is String or not record.get(Words.TOP) is Dictionary or not record.get(Words.MACHINES) is Array:
		return false
	var file: String = record[Words.FILE]
	if not file.is_empty() and not GameFiles.has_scene(file):
		MakerWarnings.once("scene gone:%s" % file, "A saved game is of the scene %s, which is not in the game any more, so it cannot be loaded." % file)
		return false
	# What could not be decoded is found before anything is touched.
	var reader := Values.new(Node.new())
	for kept: Variant in [(saved[_GLOBALS] as Dictionary).values(), [saved.get(_QUESTS), saved.get(_SAID), saved.get(_ITEMS)]]:
		for value: Variant in kept:
			reader.decoded(value)
	for row: Variant in record[Words.MACHINES]:
		var does: Variant = (row as Dictionary).get("does") if row is Dictionary else null
		for half: String in ["states", "rest"]:
			reader.decoded((does as Dictionary).get(half, &"") if does is Dictionary else &"")
	reader.scene.free()
	return not reader.broken


# While the old scene has gone and the new one is not there yet.
static func _bring_back(tree: SceneTree, saved: Dictionary) -> void:
	CarryOver.forget()
	var values := Values.new(tree.root)
	var globals: Dictionary = saved[_GLOBALS]
	for name: StringName in SCMachine.global_names():
		if not globals.has(String(name)):
			SCMachine._core_global_values().erase(name)
	for name: Variant in globals:
		SCMachine.set_global_value(StringName(str(name)), values.decoded(globals[name]))
	SCQuests.from_save(_dictionary(values.decoded(saved.get(_QUESTS))), tree)
	Conversation.from_save(_dictionary(values.decoded(saved.get(_SAID))))
	Items.from_save(_dictionary(values.decoded(saved.get(_ITEMS))))
	Left.from_save(saved[_LEFT] as Dictionary)
	Dungeon.forget()
	tree.paused = saved.get(_PAUSED) is bool and saved[_PAUSED]
	var speed: Variant = saved.get(_SPEED)
	Engine.time_scale = speed if speed is float and is_finite(speed as float) and (speed as float) >= 0.0 else 1.0


static func _bring_back_in_place(scene_id: int, saved: Dictionary) -> void:
	var scene := instance_from_id(scene_id) as Node
	if scene == null or not scene.is_inside_tree():
		return
	_bring_back(scene.get_tree(), saved)
	Record.put_back_in_place(scene, saved[_SCENE] as Dictionary)


static func _dictionary(value: Variant) -> Dictionary:
	return value if value is Dictionary else {}
