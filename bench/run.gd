extends SceneTree
## Measures: [code]./dev bench [WORDS...][/code] takes the files of this folder whose name holds one of the words, all without
## words. Prints each figure with its unit and the bound it is held against, and never fails for a slow machine: a time is
## there to be compared with others of the same machine.

const FOLDER: String = "res://bench"


func _initialize() -> void:
	var words: PackedStringArray = []
	for argument in OS.get_cmdline_user_args():
		if argument.begins_with("--native="):
			_load_native(argument.trim_prefix("--native="))
		else:
			words.append(argument)
	await process_frame
	for name in DirAccess.get_files_at(FOLDER):
		if name.begins_with("measure_") and name.ends_with(".gd") and _is_wanted(name, words):
			await _measure(FOLDER.path_join(name))
	quit()


## The node classes that are compared are built for this alone, so they lie in the build folder.
func _load_native(path: String) -> void:
	if GDExtensionManager.load_extension(path) != GDExtensionManager.LOAD_STATUS_OK:
		printerr("bench: %s does not load" % path)


func _is_wanted(name: String, words: PackedStringArray) -> bool:
	for word in words:
		if word in name:
			return true
	return words.is_empty()


func _measure(path: String) -> void:
	var script: GDScript = load(path)
	var measuring: RefCounted = script.new()
	print(measuring.call(&"title"))
	measuring.call(&"open", self)
	@warning_ignore("redundant_await")
	await measuring.call(&"measure")
	measuring.call(&"close")
	await process_frame
