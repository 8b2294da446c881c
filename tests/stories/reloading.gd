extends Story
## The editor reloads the library while the engine goes on: nothing of the engine's may lead into the one that has gone.

const PROJECT: String = "user://reload_check"
const SETTINGS: String = """config_version=5
[application]
config/features=PackedStringArray("4.6", "GL Compatibility")
[editor_plugins]
enabled=PackedStringArray("res://addons/reload_check/plugin.cfg")
[rendering]
renderer/rendering_method="gl_compatibility"
"""


func test_a_machine_waits_while_the_library_is_reloaded() -> void:
	_make_a_project()
	var said: Array[String] = []
	# What the engine itself still holds of a library that it has let go of is no leak of ours.
	var options := OS.get_environment("ASAN_OPTIONS")
	OS.set_environment("ASAN_OPTIONS", options.replace("detect_leaks=1", "detect_leaks=0"))
	var exit_code := OS.execute("timeout", [
		str(SECONDS_TO_SURVIVE), OS.get_executable_path(), "--headless", "--no-header", "--fixed-fps", str(FPS), "--editor",
		"--path", ProjectSettings.globalize_path(PROJECT),
	], said, true)
	OS.set_environment("ASAN_OPTIONS", options)
	expect_equal(exit_code, 0, "the editor's exit status")
	for line: String in ["TOLD running: true", "TOLD reloaded: true", "TOLD then: SCMachine"]:
		expect(line in "".join(said), "the editor does not say \"%s\"" % line)


func _make_a_project() -> void:
	for folder: String in ["addons", ".godot"]:
		DirAccess.make_dir_recursive_absolute(PROJECT.path_join(folder))
	var folder := DirAccess.open(PROJECT)
	for link: Array in [["res://addons/quillstead", "addons/quillstead"], ["res://tests/tools/reload_check", "addons/reload_check"]]:
		if not folder.dir_exists(link[1]):
			expect_equal(folder.create_link(ProjectSettings.globalize_path(link[0]), link[1]), OK, link[1])
	for file: Array in [["project.godot", SETTINGS], [".godot/extension_list.cfg", "res://addons/quillstead/quillstead.gdextension\n"]]:
		FileAccess.open(PROJECT.path_join(file[0]), FileAccess.WRITE).store_string(file[1])
