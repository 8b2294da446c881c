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


class Meddler:
	extends SCMachineAction

	@export var first: float = 1.0:
		set(given):
			first = given
			order.append(&"first")
			if meddle.is_valid():
				meddle.call()
	@export var second: float = 2.0:
		set(given):
			second = given
			order.append(&"second")
	var order: Array[StringName] = []
	var meddle: Callable

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME

	func _update(_m: SCMachine, _index: int, _delta: float) -> void:
		pass


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


func test_names_changed_in_place_count_from_the_next_frame() -> void:
	var scale := _scaling()
	var names := {&"amount": &"one"}
	scale.from_variables = names
	var guard := start(machine([state("Scale", [scale])], {"variables": {"scaled": Vector2(), "one": 1.0, "two": 2, "far": Vector2(5, 6)}}))
	names = scale.from_variables
	await frames(2)
	expect_equal(guard.get_value("scaled"), Vector2(3, 4))
	for step: Array in [
		[func() -> void: names[&"amount"] = &"two", Vector2(6, 8), "another variable"],
		[func() -> void: guard.set_value("two", 3), Vector2(9, 12), "a new value"],
		[func() -> void: names[&"first"] = &"far", Vector2(15, 18), "one setting more"],
		[func() -> void: names[&"amount"] = &"", Vector2(5, 6), "no variable: what was typed in"],
		[func() -> void: names[&"amount"] = &"nowhere", Vector2(5, 6), "a variable that is not there"],
		[func() -> void: names.erase(&"amount"); scale.amount = 4.0, Vector2(20, 24), "one setting less"],
		[func() -> void: scale.set(&"first_variable", &""), Vector2(12, 16), "a cleared twin"],
		[func() -> void: scale.first = Vector2(1, 1); scale.set(&"first_variable", &"far"), Vector2(20, 24), "and back"],
		[func() -> void: scale.set(&"first_variable", &""), Vector2(4, 4), "what was typed in meanwhile"],
		[func() -> void: names.clear(); scale.amount = 1.0, Vector2(1, 1), "none"],
	]:
		(step[0] as Callable).call()
		await frames(2)
		expect_equal(guard.get_value("scaled"), step[1], step[2])


func test_what_was_typed_in_may_be_changed_where_it_is_remembered() -> void:
	var scale := _scaling()
	scale.set(&"amount_variable", &"one")
	var guard := start(machine([state("Scale", [scale])], {"variables": {"scaled": Vector2(), "one": 2.0}}))
	await frames(2)
	var typed_in: Dictionary = scale.get(&"_typed_in")
	typed_in[&"amount"] = 10
	await frames(2)
	expect_equal(guard.get_value("scaled"), Vector2(6, 8), "the variable is there")
	scale.set(&"amount_variable", &"")
	expect_equal(scale.amount, 10.0)


func test_settings_of_a_script_are_read_in_order_whatever_their_setters_do() -> void:
	var meddler := Meddler.new()
	meddler.from_variables = {&"second": &"one", &"first": &"two"}
	var guard := start(machine([state("Work", [meddler])], {"variables": {"one": 1.0, "two": 2.0, "three": 3.0}}))
	await frames(2)
	meddler.order.clear()
	await frames(1)
	expect_equal(meddler.order, [&"second", &"first"])
	var names := meddler.from_variables
	names.erase(&"second")
	names[&"second"] = &"one"
	meddler.order.clear()
	await frames(1)
	expect_equal(meddler.order, [&"first", &"second"], "in the order that they stand in now")
	meddler.meddle = func() -> void: names[&"second"] = &"three"
	await frames(1)
	expect_equal(meddler.second, 3.0, "what the setter before it changed")
	meddler.meddle = guard.free
	meddler.second = 0.0
	await frames(1)
	expect_equal(meddler.second, 0.0, "nothing is read for a machine that has gone")
	expect(not is_instance_valid(guard))


func test_a_condition_reads_its_settings_each_time() -> void:
	var compare := SCCompareCondition.new()
	compare.first = 5.0
	compare.test = SCCompareCondition.GREATER
	compare.from_variables = {&"second": &"bar"}
	var guard := start(machine([state("Idle")], {"variables": {"bar": 3, "other": 7.5}}))
	for row: Array in [[3, true], [6.0, false], [4.5, true], [5, false]]:
		guard.set_value("bar", row[0])
		expect_equal(guard.ask(compare, -1, {}), row[1], str(row[0]))
	guard.set_value("bar", 3)
	compare.from_variables[&"second"] = &"other"
	expect_equal(guard.ask(compare, -1, {}), false)
	compare.set(&"second_variable", &"")
	expect_equal(compare.second, 0.0)
	expect_equal(guard.ask(compare, -1, {}), true)


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


func _scaling() -> SCVectorAction:
	var scale := SCVectorAction.new()
	scale.operation = SCVectorAction.SCALE
	scale.first = Vector2(3, 4)
	scale.store_in = &"scaled"
	scale.run_mode = SCMachineAction.EVERY_FRAME
	return scale
