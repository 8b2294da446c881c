extends Story
## What a game maker meets in the editor: an engine of its own opens a small project, [code]tests/tools/editor_check[/code]
## works in it and tells what came of it.

const PROJECT: String = "user://editor_check"
const MOST_SECONDS: float = 180.0
const SHOUT: String = """class_name ShoutAction
extends SCMachineAction
## Shouts as loud as it can. Then it is quiet.

@export var alarm_event: StringName
"""
const SETTINGS: String = """config_version=5
[application]
config/features=PackedStringArray("4.6", "GL Compatibility")
[editor_plugins]
enabled=PackedStringArray("res://addons/quillstead/plugin.cfg", "res://addons/editor_check/plugin.cfg")
[rendering]
renderer/rendering_method="gl_compatibility"
"""


func test_a_design_is_put_together_in_the_inspector() -> void:
	_make_a_project()
	var said := _what_the_editor_says()
	var told := {}
	for line in said.split("\n"):
		if line.begins_with("TOLD "):
			told[line.trim_prefix("TOLD ").get_slice(": ", 0)] = line.get_slice(": ", 1) if ": " in line else ""
	expect(told.has("end"), "the editor has not come to the end and says:\n%s" % said)
	for row: Array in [
		["side", "1"], ["starts in", '["(pick one)", "Watch", "Chase"]'], ["state is called", "Watch"], ["state is called then", "Look"],
		["action is called", "Wait 1 s"], ["transition is called", "on seen to Chase"],
		["added", "4, speed 160.0"], ["undone", "3"], ["redone", "4"],
		["path in a template that does not run", "[]"], ["path in a template that runs", '[^"../../Lamp"]'],
		["leads to", '["", "Watch", "Chase"]'], ["stores in", '["", "level"]'],
	]:
		expect_equal(told.get(row[0]), row[1], row[0])
	for event: String in ["FINISHED", "seen", "lost", "alarm"]:
		expect('"%s"' % event in String(told.get("on", "")), "%s is not offered as an event" % event)
		expect('"%s"' % event in String(told.get("a script's own event", "")), "%s is not offered to a script's action" % event)
	var offered: String = told.get("offers", "")
	for title: String in ["This Game/Shout", "Flow/Wait", "Transform/Translate"]:
		expect('"%s"' % title in offered, "%s is not offered" % title)
	for title: String in ["Machine Action", "Chance", "/Machine\""]:
		expect(not title in offered, "%s is offered" % title)
	for complaint: String in ["SCRIPT ERROR", "Parse Error"]:
		expect(not complaint in said, said)
	var saved := FileAccess.get_file_as_string(PROJECT.path_join("hall.tscn"))
	expect("Look" in saved and not "resource_name" in saved, "the names that are shown have got into the file:\n%s" % saved)


## Everything until it ends, or until it has taken far too long.
func _what_the_editor_says() -> String:
	var pipe := OS.execute_with_pipe(OS.get_executable_path(), [
		"--headless", "--no-header", "--fixed-fps", "60", "--editor", "--path", ProjectSettings.globalize_path(PROJECT),
	], false)
	var began := Time.get_ticks_msec()
	var said := ""
	while not pipe.is_empty():
		for stream: FileAccess in [pipe["stdio"], pipe["stderr"]]:
			said += stream.get_buffer(65536).get_string_from_utf8()
		if not OS.is_process_running(pipe["pid"]) or Time.get_ticks_msec() - began > MOST_SECONDS * 1000.0:
			break
		OS.delay_msec(5)
	if not pipe.is_empty() and OS.is_process_running(pipe["pid"]):
		OS.kill(pipe["pid"])
	return said


func _make_a_project() -> void:
	DirAccess.make_dir_recursive_absolute(PROJECT.path_join("addons"))
	DirAccess.make_dir_recursive_absolute(PROJECT.path_join(".godot"))
	var folder := DirAccess.open(PROJECT)
	for link: Array in [["res://addons/quillstead", "addons/quillstead"], ["res://tests/tools/editor_check", "addons/editor_check"]]:
		if not folder.dir_exists(link[1]):
			expect_equal(folder.create_link(ProjectSettings.globalize_path(link[0]), link[1]), OK, link[1])
	_write("project.godot", SETTINGS)
	_write("shout_action.gd", SHOUT)
	_write(".godot/extension_list.cfg", "res://addons/quillstead/quillstead.gdextension\n")
	var scene := Node2D.new()
	var door := add(Node2D.new(), "Door")
	stage.remove_child(door)
	scene.add_child(door)
	scene.name = "Hall"
	var lamp := Node2D.new()
	lamp.name = "Lamp"
	scene.add_child(lamp)
	var shout := SCMachineAction.new()
	var machine_of_the_door := machine(
		[
			state("Watch", [wait(1.0), send(&"alarm"), shout], {"seen": "Chase"}),
			state("Chase", [], {"lost": "Watch"}),
		],
		{"variables": {"level": 1.0}}
	)
	machine_of_the_door.remove_meta(&"trail")
	door.add_child(machine_of_the_door)
	for node: Node in [door, lamp, machine_of_the_door]:
		node.owner = scene
	var packed := PackedScene.new()
	expect_equal(packed.pack(scene), OK)
	expect_equal(ResourceSaver.save(packed, PROJECT.path_join("hall.tscn")), OK)
	scene.free()
	var moves := SCMoveToAction.new()
	expect_equal(ResourceSaver.save(template([state("Go", [moves])]), PROJECT.path_join("guard.tres")), OK)
	_give_the_script_to_the_plain_action()


## The script belongs to the other project, so it is named in the file.
func _give_the_script_to_the_plain_action() -> void:
	var path := PROJECT.path_join("hall.tscn")
	var text := FileAccess.get_file_as_string(path)
	var at := text.find('[sub_resource type="SCMachineAction"')
	var ends := text.find("\n", at) + 1
	text = text.insert(ends, 'script = ExtResource("shout")\n')
	var after_head := text.find("\n") + 1
	_write("hall.tscn", text.insert(after_head, '\n[ext_resource type="Script" path="res://shout_action.gd" id="shout"]\n'))


func _write(path: String, text: String) -> void:
	var file := FileAccess.open(PROJECT.path_join(path), FileAccess.WRITE)
	expect(file != null, path)
	if file != null:
		file.store_string(text)
