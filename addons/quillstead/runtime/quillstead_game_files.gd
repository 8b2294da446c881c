extends RefCounted
## Tells the game's own files from all others. A saved game is open to everybody, and what it names must not become code.


## Whether [param path] names a resource that came with the game.
static func has(path: Variant) -> bool:
	if not (path is String or path is StringName):
		return false
	var file := str(path)
	if file.begins_with("uid://"):
		var id := ResourceUID.text_to_id(file)
		file = ResourceUID.get_id_path(id) if ResourceUID.has_id(id) else ""
	return file.begins_with("res://") and file == file.simplify_path() and not file.contains("..") and ResourceLoader.exists(file)


## Whether what [param path] names may be had: it came with the game, the game itself has loaded it, or it is a resource of the game
## among its saves, in which nothing but what came with the game is named and no code stands.
static func may_load(path: Variant) -> bool:
	if has(path):
		return true
	# Asked about a number that nobody has, the engine has loud words.
	if not (path is String or path is StringName) or str(path).begins_with("uid://"):
		return false
	return ResourceLoader.has_cached(str(path)) or _is_harmless(str(path))


static func _is_harmless(path: String) -> bool:
	if not path.begins_with("user://") or path.contains("..") or path.get_extension() != "tres" or not FileAccess.file_exists(path):
		return false
	var text := FileAccess.get_file_as_string(path)
	for named in RegEx.create_from_string("path\\s*=\\s*\"([^\"]*)\"").search_all(text):
		if not named.get_string(1).begins_with("res://"):
			return false
	return not text.contains("GDScript") and not text.contains("script/source")


## Whether [param path] names a scene that came with the game.
static func has_scene(path: Variant) -> bool:
	return has(path) and ResourceLoader.get_recognized_extensions_for_type("PackedScene").has(str(path).get_extension().to_lower())
