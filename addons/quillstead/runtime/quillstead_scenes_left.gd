extends RefCounted
## Keeps what the scenes that were left behind had become, for when the player comes back to them.

const GameFiles := preload("res://addons/quillstead/runtime/quillstead_game_files.gd")
const Record := preload("res://addons/quillstead/runtime/quillstead_scene_record.gd")

# By the scene's path.
static var _left: Dictionary[String, Dictionary] = {}


## Writes down [param scene], which is about to be left.
static func remember(scene: Node) -> void:
	if not scene.scene_file_path.is_empty():
		_left[scene.scene_file_path] = Record.of(scene)


## What the scene at [param path] had become when it was left. Empty when it was not, or was forgotten.
static func record_for(path: String) -> Dictionary:
	return _left.get(path, {})


## The scene at [param path] begins anew the next time.
static func forget(path: String) -> void:
	_left.erase(path)


## Every scene begins anew.
static func forget_all() -> void:
	_left.clear()


## All of them, in plain values that a file can hold. [method from_save] takes them back.
static func to_save() -> Dictionary:
	return _left.duplicate()


## Takes back what [method to_save] gave, in place of what is kept now.
static func from_save(saved: Dictionary) -> void:
	_left.clear()
	for path: Variant in saved:
		if GameFiles.has_scene(path) and saved[path] is Dictionary:
			_left[str(path)] = saved[path]
