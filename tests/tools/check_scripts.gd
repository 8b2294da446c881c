extends SceneTree
## Loads every script of the project and reports what the compiler says of it, with types demanded everywhere.
## Run by [code]./dev lint[/code]; ends with 1 when a script does not compile.

const STRICT := {
	"debug/gdscript/warnings/directory_rules": {},
	"debug/gdscript/warnings/untyped_declaration": 2,
	"debug/gdscript/warnings/unused_variable": 2,
	"debug/gdscript/warnings/unused_local_constant": 2,
	"debug/gdscript/warnings/unreachable_code": 2,
	"debug/gdscript/warnings/standalone_expression": 2,
	"debug/gdscript/warnings/shadowed_variable": 2,
}

var _faults: Faults


## Collects what the engine complains of, with the place in the script.
class Faults:
	extends Logger

	var lines := PackedStringArray()

	func _log_error(_function: String, file: String, line: int, code: String, rationale: String,
			_editor_notify: bool, _error_type: int, _backtraces: Array[ScriptBacktrace]) -> void:
		lines.append("%s:%d: %s" % [file.trim_prefix("res://"), line, rationale if not rationale.is_empty() else code])


func _initialize() -> void:
	for setting: String in STRICT:
		ProjectSettings.set_setting(setting, STRICT[setting])
	_faults = Faults.new()
	# The compiler takes note of changed settings at the end of the frame.
	await process_frame
	await process_frame
	OS.add_logger(_faults)
	var paths := PackedStringArray()
	_collect("res://", paths)
	# Compiling the running script anew would pull it from under itself.
	paths.remove_at(paths.find((get_script() as Script).resource_path))
	for path in paths:
		_check(path)
	OS.remove_logger(_faults)
	for line in _faults.lines:
		print(line)
	print("%d scripts, %d faults" % [paths.size(), _faults.lines.size()])
	quit(0 if _faults.lines.is_empty() else 1)


func _check(path: String) -> void:
	var before := _faults.lines.size()
	var script := ResourceLoader.load(path, "GDScript", ResourceLoader.CACHE_MODE_IGNORE) as GDScript
	if script == null and _faults.lines.size() == before:
		_faults.lines.append("%s:1: does not load" % path.trim_prefix("res://"))


func _collect(folder: String, paths: PackedStringArray) -> void:
	if FileAccess.file_exists(folder.path_join(".gdignore")):
		return
	for name in DirAccess.get_files_at(folder):
		if name.get_extension() == "gd":
			paths.append(folder.path_join(name))
	for name in DirAccess.get_directories_at(folder):
		if not name.begins_with("."):
			_collect(folder.path_join(name), paths)
