extends SceneTree
## Plays the stories: [code]-s res://tests/framework/run.gd -- [--long] [--seed=N] [WORDS...][/code] runs the tests whose file
## or name holds one of the words, all without words; [code]--with=TEXT[/code] leaves out files without that text in them;
## [code]--file=PATH[/code] plays that file alone. Ends with "N passed, N failed", and with 1 when one failed.
##
## While it runs, the lines that begin and end with the markers below enclose what the engine prints: complaints in
## between were either expected by a story or fail it.

const OutputCatcher := preload("res://tests/framework/output_catcher.gd")
const STORIES: String = "res://tests/stories"
const BEGIN: String = "== stories begin"
const END: String = "== stories end"

var _catcher: OutputCatcher = OutputCatcher.new()
var _words: PackedStringArray = []
var _file: String = ""
var _text: String = ""
var _passed: int = 0
var _failed: int = 0


func _initialize() -> void:
	var long := false
	var only_seed := -1
	var released := false
	for argument in OS.get_cmdline_user_args():
		if argument == "--long":
			long = true
		elif argument == "--released":
			released = true
		elif argument.begins_with("--seed="):
			only_seed = argument.trim_prefix("--seed=").to_int()
		elif argument.begins_with("--with="):
			_text = argument.trim_prefix("--with=")
		elif argument.begins_with("--file="):
			_file = argument.trim_prefix("--file=")
		else:
			_words.append(argument)
	if not ClassDB.class_exists(&"SCMachine"):
		printerr("The library is not loaded; ./dev build builds it.")
		print("0 passed, 1 failed")
		quit(1)
		return
	var story: GDScript = load("res://tests/framework/story.gd")
	story.set(&"long", long)
	story.set(&"only_seed", only_seed)
	story.set(&"released", released)
	# Stories are about what a machine does, with designs that would get a sentence each; the check has stories of its own.
	ProjectSettings.set_setting("quillstead/debug/check_designs", false)
	await process_frame
	print(BEGIN)
	OS.add_logger(_catcher)
	var paths: PackedStringArray = []
	if _file.is_empty():
		_collect(STORIES, paths)
	else:
		paths.append(_file)
	for path in paths:
		await _play_file(path)
	OS.remove_logger(_catcher)
	for line in _catcher.unclaimed():
		_failed += 1
		print("FAIL  after the last story nobody expected the %s" % line)
	print(END)
	if _passed + _failed == 0:
		print("No story holds one of these words: %s" % " ".join(_words))
		_failed = 1
	print("%d passed, %d failed" % [_passed, _failed])
	quit(0 if _failed == 0 else 1)


func _collect(folder: String, paths: PackedStringArray) -> void:
	for name in DirAccess.get_files_at(folder):
		if name.get_extension() == "gd":
			paths.append(folder.path_join(name))
	for name in DirAccess.get_directories_at(folder):
		_collect(folder.path_join(name), paths)


func _play_file(path: String) -> void:
	var name := path.trim_prefix(STORIES + "/").trim_suffix(".gd")
	var whole_file := _words.is_empty() or _holds_a_word(name)
	if not _text.is_empty() and _text not in FileAccess.get_file_as_string(path):
		return
	# Reading the text is quicker than compiling a file that has nothing to play.
	if not whole_file and not _holds_a_word(FileAccess.get_file_as_string(path)):
		return
	var script: GDScript = load(path)
	if script == null or not script.can_instantiate():
		_failed += 1
		_catcher.forget()
		print("FAIL  %s: does not compile" % name)
		return
	if not _is_story(script):
		return
	var tests: PackedStringArray = []
	for method in script.get_script_method_list():
		var test: String = method["name"]
		if test.begins_with("test_") and test not in tests and (whole_file or _holds_a_word(test)):
			tests.append(test)
	var began := Time.get_ticks_msec()
	var bad := 0
	var reasons: PackedStringArray = []
	for test in tests:
		var failures: PackedStringArray = await _play(script, test)
		if failures.is_empty():
			continue
		bad += 1
		reasons.append("  %s" % test)
		for failure in failures:
			reasons.append("    %s" % failure)
	_passed += tests.size() - bad
	_failed += bad
	if tests.is_empty():
		return
	print("%s  %s: %d of %d, %.1f s" % ["ok  " if bad == 0 else "FAIL", name, tests.size() - bad, tests.size(), (Time.get_ticks_msec() - began) / 1000.0])
	for reason in reasons:
		print(reason)


func _is_story(script: Script) -> bool:
	var base := script.get_base_script()
	while base != null:
		if base.get_global_name() == &"Story":
			return true
		base = base.get_base_script()
	return false


func _holds_a_word(text: String) -> bool:
	for word in _words:
		if word in text:
			return true
	return false


## The reasons why it failed, none when it passed. What is made once and kept, such as a script or a compiled table, makes
## the first run of a test grow; only a test that grows again leaks.
func _play(script: GDScript, test: String) -> PackedStringArray:
	var failures: PackedStringArray = []
	var grown: PackedStringArray = []
	for attempt in 3:
		var before := _count()
		failures = await _play_once(script, test)
		await process_frame
		grown = _growth(before, _count())
		if grown.is_empty() or not failures.is_empty():
			break
	if failures.is_empty() and not grown.is_empty():
		failures.append("leaked %s" % ", ".join(grown))
	for orphan in Node.get_orphan_node_ids():
		var node: Node = instance_from_id(orphan)
		failures.append("left a node outside the tree: %s" % node)
		node.free()
	return failures


func _play_once(script: GDScript, test: String) -> PackedStringArray:
	await process_frame
	var story: RefCounted = script.new()
	story.call(&"open", self, _catcher)
	var ended: Array[bool] = [false]
	_tell(story, test, ended)
	var most: int = story.call(&"most_frames")
	var left := most
	while not ended[0] and left > 0:
		await process_frame
		left -= 1
	var failures: PackedStringArray = []
	if not ended[0]:
		failures.append("did not end within %d frames" % most)
	@warning_ignore("redundant_await")
	await story.call(&"close")
	var said: PackedStringArray = story.get(&"failures")
	failures.append_array(said)
	return failures


func _tell(story: RefCounted, test: String, ended: Array[bool]) -> void:
	@warning_ignore("redundant_await")
	await story.call(test)
	ended[0] = true


func _count() -> PackedInt32Array:
	return [
		int(Performance.get_monitor(Performance.OBJECT_COUNT)),
		int(Performance.get_monitor(Performance.OBJECT_NODE_COUNT)),
		int(Performance.get_monitor(Performance.OBJECT_RESOURCE_COUNT)),
	]


func _growth(before: PackedInt32Array, after: PackedInt32Array) -> PackedStringArray:
	var grown: PackedStringArray = []
	var words: PackedStringArray = ["objects", "nodes", "resources"]
	for i in words.size():
		if after[i] > before[i]:
			grown.append("%d %s" % [after[i] - before[i], words[i]])
	return grown
