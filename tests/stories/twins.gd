extends Story
## Settings that are read from a variable: the pretend property beside each, and where it is kept.


class Shove:
	extends SCMachineAction

	@export var strength: float = 2.0
	@export var push: Vector2 = Vector2(1, 0)
	@export var body_path: NodePath
	@export var body_variable: StringName
	@export var amount: int = 1
	@export var amount_variable: StringName
	@export var group: StringName
	@export var input_action: StringName
	@export var list: Array = []
	var hidden: float = 1.0


class HardShove:
	extends Shove

	@export var harder: bool = false


class Creep:
	extends SCMachineAction

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME


func test_which_settings_have_a_twin() -> void:
	# A variable setting of its own is kept, and one of a wrong type has none.
	for row: Array in [
		[SCWaitAction.new(), ["seconds", "random_extra", "real_time"]],
		[Shove.new(), ["strength", "push", "input_action"]],
		[HardShove.new(), ["harder", "strength", "push", "input_action"]],
		[SCMachineAction.new(), []],
		[Resource.new(), []],
	]:
		var names := Array(SCMachineAction.can_be_read_from_a_variable_of(row[0])).map(func(name: StringName) -> String: return name)
		expect_equal(names, row[1])
	expect_equal(Array(SCMachineAction.can_be_read_from_a_variable(Shove)), [&"strength", &"push", &"input_action"])
	expect_equal(Array(SCMachineAction.can_be_read_from_a_variable(&"SCWaitAction")), [&"seconds", &"random_extra", &"real_time"])
	expect_equal(SCMachineAction.setting_behind(&"SCWaitAction", &"seconds_variable"), &"seconds")
	expect_equal(SCMachineAction.setting_behind_of(Shove.new(), &"amount_variable"), &"")


func test_a_twin_is_shown_and_never_stored() -> void:
	var pause := wait(5.0)
	var changes := [0]
	pause.changed.connect(func() -> void: changes[0] += 1)
	pause.set(&"seconds_variable", &"pause")
	expect_equal(property_of(pause, "seconds_variable")["type"], TYPE_STRING_NAME)
	expect_equal(property_of(pause, "seconds_variable")["usage"], PROPERTY_USAGE_EDITOR)
	expect_equal(pause.from_variables, {&"seconds": &"pause"})
	expect_equal(pause.get(&"random_extra_variable"), &"", "one that is not set is empty")
	var path := "user://story_pause.tres"
	ResourceSaver.save(pause, path)
	var text := FileAccess.get_file_as_string(path)
	expect(not text.contains("seconds_variable") and text.contains("\"pause\""), text)
	# A file may be loaded on another thread.
	var reader := Thread.new()
	reader.start(ResourceLoader.load.bind(path, "", ResourceLoader.CACHE_MODE_IGNORE))
	while reader.is_alive():
		await frames(1)
	var loaded: SCWaitAction = reader.wait_to_finish()
	expect_equal(loaded.get(&"seconds_variable"), &"pause")
	expect_equal(loaded.seconds, 5.0)
	DirAccess.remove_absolute(path)
	pause.set(&"seconds_variable", &"")
	expect_equal(changes[0], 2)
	expect_equal(pause.from_variables, {})
	expect(pause.is_typed_in(&"seconds"))


func test_a_bound_setting_is_read_each_time_the_state_is_entered() -> void:
	var pause := wait(5.0, {"seconds_variable": &"pause"})
	var guard := start(machine([
		state("Look", [pause], {"FINISHED": "Leave"}),
		state("Leave", [], {"back": "Look"}),
	], {"variables": {"pause": 0.2}}))
	await expect_later(guard, 0.1, "Look")
	await expect_later(guard, 0.2, "Leave")
	guard.set_value("pause", 0.5)
	guard.send_event("back")
	await expect_later(guard, 0.4, "Look")
	await expect_later(guard, 0.2, "Leave")
	expect_equal(pause.seconds, 0.5)
	expect_equal(pause.get(&"_typed_in"), {&"seconds": 5.0})
	pause.set(&"seconds_variable", &"")
	expect_equal(pause.seconds, 5.0, "what was typed in comes back")


func test_the_run_mode_of_a_file_outlasts_the_script_it_belongs_to() -> void:
	var creep := Creep.new()
	expect_equal(creep.run_mode, SCMachineAction.EVERY_FRAME)
	creep.run_mode = SCMachineAction.ONCE
	expect_equal(creep.get(&"run_mode_saved"), 0)
	expect_equal(property_of(creep, "run_mode_saved")["usage"], PROPERTY_USAGE_STORAGE)
	# As while a file loads: the value first, the script after.
	var loading := SCMachineAction.new()
	loading.set(&"run_mode_saved", 0)
	loading.set_script(Creep)
	expect_equal(loading.run_mode, SCMachineAction.ONCE)
	loading.set(&"run_mode_saved", 7)
	expect_equal(loading.run_mode, SCMachineAction.EVERY_FRAME)


func test_what_an_action_reads_writes_and_sends() -> void:
	var shove := Shove.new()
	shove.body_variable = &"body"
	shove.set(&"strength_variable", &"might")
	for names: PackedStringArray in [shove.variables_read(), PackedStringArray(shove.variables_used())]:
		names.sort()
		expect_equal(names, PackedStringArray(["body", "might"]))
	expect_equal(Array(send(&"hello").events_sent()), ["hello"])
	var guard := start(machine([state("Idle")], {"variables": {"might": 3.5, "other": 1}}))
	for row: Array in [[guard, "", "might = 3.5"], [guard, "Shove", "Shove  might = 3.5"], [null, "Shove", ""]]:
		expect_equal(shove.live_words(row[0], row[1]), row[2])
