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


## Whether [param path] names a scene that came with the game.
static func has_scene(path: Variant) -> bool:
	return has(path) and ResourceLoader.get_recognized_extensions_for_type("PackedScene").has(str(path).get_extension().to_lower())
