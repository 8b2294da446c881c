extends RefCounted
## The keys of a scene's record, and which of a node's properties it speaks of.

const FILE: String = "file"
const TOP: String = "top"
const MACHINES: String = "machines"
const FLOOR: String = "floor"

const NODES: String = "nodes"
const GONE: String = "gone"
const NEWCOMERS: String = "newcomers"

const AT: String = "at"
const PARENT: String = "parent"
const INDEX: String = "index"
const NAME: String = "name"
const CAME_FROM: String = "from"
const SCENE: String = "scene"
const COPY_OF: String = "copy_of"
const CLASS: String = "class"
const LOOT: String = "loot"
const PART: String = "part"

const PROPERTIES: String = "properties"
const METAS: String = "metas"
const JOINED: String = "joined"
const LEFT: String = "left"
const SAVED: String = "saved"
const CARRIED: String = "carried"

## Meta on what was made while the game runs: by whom.
const MADE_BY: StringName = &"quillstead_made_by"
## Meta on a node that was put under another parent: the place it has in its scene's file.
const FROM: StringName = &"quillstead_came_from"
## Meta on a copy: the place of the node it was copied from.
const COPIED_FROM: StringName = &"quillstead_copied_from"
## Meta on what is there for a moment only, such as a bullet in flight: no saved game keeps it.
const PASSING: StringName = &"quillstead_passing"

## Groups whose name begins so are the engine's own.
const ENGINE_GROUP: String = "_"

## The scripts of loot on the ground, which comes without a scene.
const LOOTS: Dictionary[String, String] = {
	"2d": "res://addons/quillstead/runtime/ground_loot.gd",
	"3d": "res://addons/quillstead/runtime/ground_loot_3d.gd",
}

# What a machine is set up with comes with its scene.
const _OF_A_MACHINE: Array[StringName] = [&"process_mode", &"process_priority", &"process_physics_priority"]
const _NEVER: Array[StringName] = [&"script", &"owner", &"name", &"scene_file_path", &"unique_name_in_owner", &"editor_description"]
# Not stored by the engine, and yet part of what a body is doing.
const _OF_BODIES: Dictionary[StringName, Array] = {
	&"CharacterBody2D": [&"velocity"], &"CharacterBody3D": [&"velocity"],
}

# By class and script.
static var _known: Dictionary[String, Array] = {}
static var _defaults: Dictionary[String, Dictionary] = {}


## The properties of [param node] that a record may hold.
static func properties_of(node: Node) -> Array:
	var kind := _kind_of(node)
	if not _known.has(kind):
		_known[kind] = _listed(node)
	return _known[kind]


## What [param node] has in each of them when nobody has changed it.
static func defaults_of(node: Node) -> Dictionary:
	var kind := _kind_of(node)
	if not _defaults.has(kind):
		var script: Script = node.get_script()
		var defaults := {}
		for name: StringName in properties_of(node):
			var own: Variant = script.get_property_default_value(name) if script != null else null
			defaults[name] = own if own != null else ClassDB.class_get_property_default_value(node.get_class(), name)
		_defaults[kind] = defaults
	return _defaults[kind]


static func _kind_of(node: Node) -> String:
	var script: Script = node.get_script()
	return node.get_class() if script == null else "%s %d" % [node.get_class(), script.get_instance_id()]


static func keeps_for_itself(node: Node) -> bool:
	return node.has_method(&"to_save") and node.has_method(&"from_save")


static func _listed(node: Node) -> Array:
	if node is SCMachine:
		return _OF_A_MACHINE
	var names: Array[StringName] = []
	for property in node.get_property_list():
		var name := StringName(property["name"])
		if property["usage"] & PROPERTY_USAGE_STORAGE and not _NEVER.has(name) and not String(name).begins_with("metadata/"):
			names.append(name)
	for body_class: StringName in _OF_BODIES:
		if node.is_class(body_class):
			names.append_array(_OF_BODIES[body_class])
	return names
