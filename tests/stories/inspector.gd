extends Story
## What the inspector shows of actions and conditions, and what a 2D machine changes.


class Bouncer:
	extends SCMachineAction

	@export_flags_3d_physics var layers: int = 1
	var machine: Node

	func _uses_run_mode() -> bool:
		return false

	# The engine asks only the script about what the script declares.
	func _validate_property(property: Dictionary) -> void:
		validate_setting(property)


class Asking:
	extends SCMachineCondition

	@export var value: float = 1.0
	@export var value_variable: StringName


class Restless:
	extends SCMachineAction

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME


func close() -> void:
	SCMachineAction.set_shown_on_2d(-1)
	await super()


func test_nobody_sees_the_plumbing() -> void:
	var plumbing := ["resource_local_to_scene", "resource_path", "resource_name"]
	for object: Resource in [wait(1.0), SCMachineAction.new(), SCMachineCondition.new()]:
		expect_hidden(object, plumbing)
		for name: String in plumbing:
			expect(SCMachineAction.is_plumbing(name) and SCMachineAction.is_plumbing(property_of(object, name)), name)
	expect(not SCMachineAction.is_plumbing("seconds"))
	expect_shown(print_line("x"), ["run_mode"])
	for row: Array in [
		[wait(1.0), "run_mode", PROPERTY_USAGE_STORAGE], [Bouncer.new(), "run_mode", PROPERTY_USAGE_STORAGE],
		[wait(1.0), "from_variables", PROPERTY_USAGE_STORAGE], [wait(1.0), "_typed_in", PROPERTY_USAGE_NONE],
	]:
		expect_equal(property_of(row[0], row[1])["usage"], row[2], row[1])


func test_a_hidden_setting_names_nothing() -> void:
	var shout := send(&"hello", {"reach": SCSendEventAction.A_GROUP, "to_group": &"guards"})
	expect_shown(shout, ["to_group"])
	shout.reach = SCSendEventAction.THIS_MACHINE
	expect_hidden(shout, ["to_group"])
	expect_equal(Array(SCMachineAction.shown_settings(shout, [&"event_name", &"to_group", &"display_name"])), [&"event_name"])
	expect_equal(Array(SCMachineAction.names_held_in(shout, [&"event_name", &"to_group"])), ["hello", "guards"])


func test_physics_layers_follow_the_side() -> void:
	var flat_machine := play([], {}, {"under": body()})
	var deep_machine := play([], {}, {"under": body_3d("Deep")})
	var bouncer := Bouncer.new()
	expect(not SCMachineAction.shown_on_2d_known())
	for row: Array in [
		# the side that is shown, the machine that it stands on, whether it is in 2D
		[0, null, false], [1, null, true], [0, flat_machine, true], [1, deep_machine, false],
	]:
		SCMachineAction.set_shown_on_2d(row[0])
		bouncer.machine = row[1]
		expect_equal(property_of(bouncer, "layers")["hint"], PROPERTY_HINT_LAYERS_2D_PHYSICS if row[2] else PROPERTY_HINT_LAYERS_3D_PHYSICS, str(row))
		expect_equal(SCMachineAction.shown_on_2d(bouncer), row[2], str(row))
		expect_equal(SCMachineAction.get_shown_on_2d(), row[0])
		expect(SCMachineAction.shown_on_2d_known())
	# What it works on counts, not where it is.
	bouncer.machine = flat_machine
	flat_machine.target_path = flat_machine.get_path_to(stage.get_node(^"Deep"))
	expect(not SCMachineAction.shown_on_2d(bouncer))
	bouncer.machine = null


func test_the_rules_for_a_script_that_describes_its_own() -> void:
	var described := {"name": "resource_path", "type": TYPE_STRING, "hint": 0, "hint_string": "", "usage": PROPERTY_USAGE_DEFAULT}
	wait(1.0).validate_setting(described)
	expect_equal(described["usage"], PROPERTY_USAGE_STORAGE)
	var shown := {"name": "value", "type": TYPE_FLOAT, "usage": PROPERTY_USAGE_DEFAULT}
	SCMachineAction.show_as_any_type(shown)
	expect_equal(shown["type"], TYPE_NIL)
	expect_equal(shown["usage"] & PROPERTY_USAGE_NIL_IS_VARIANT, PROPERTY_USAGE_NIL_IS_VARIANT)
	SCMachineAction.hide_from_panels(shown)
	expect_equal(shown["usage"] & PROPERTY_USAGE_EDITOR, 0)
	for variable_name: StringName in [&"", &"score"]:
		var literal := {"name": "value", "type": TYPE_FLOAT, "usage": PROPERTY_USAGE_DEFAULT}
		kind(Asking, {"value_variable": variable_name}).validate_setting("value", literal)
		expect_equal(literal["usage"], PROPERTY_USAGE_DEFAULT if variable_name.is_empty() else PROPERTY_USAGE_STORAGE)


func test_every_text_is_found_up_the_parents() -> void:
	for row: Array in [
		[&"SCWaitAction", &"seconds", "How long to wait."], [&"SCWaitAction", &"", "Wait a number of seconds, then finish."],
		[&"SCWaitAction", &"disabled", "Skip this action without deleting it."], [&"SCWaitAction", &"nothing_of_the_kind", ""], [&"Node", &"name", ""],
	]:
		expect_equal(SCMachineAction.doc_of(row[0], row[1]), row[2])


func test_a_kind_starts_in_metres_and_is_suited_to_pixels_once() -> void:
	var table := SCMachineAction.starts_in_2d()
	for key: String in table:
		var parts := key.split(":")
		var fresh: Resource = ClassDB.instantiate(parts[0])
		var wanted: Variant = fresh.get(parts[1]) * 32.0 if table[key] is String else table[key]
		SCMachineAction.suit_settings_2d(fresh)
		expect_equal(fresh.get(parts[1]), wanted, key)
	SCMachineAction.suit_settings_2d(null)
	expect_equal(SCMachineAction.pixels_per_metre(), 32.0)


func test_what_a_fresh_action_of_a_kind_does_with_time() -> void:
	expect_equal(SCMachineAction._starting_run_mode(&"SCWaitAction"), SCMachineAction.ONCE)
	expect_equal(SCMachineAction._starting_run_mode(Restless), SCMachineAction.EVERY_FRAME)
	expect(not SCMachineAction._is_a_base(Restless))
	expect(SCMachineAction.the_machines_own().has(&"update_interval"))
	expect(not SCMachineAction.holds_any_type(&"SCSetVariableAction", &"value"), "only the editor asks for it")


func test_a_running_machine_in_the_remote_inspector() -> void:
	var made := asker()
	for name: String in ["current_state", "values"]:
		expect_equal(property_of(made, name)["usage"], PROPERTY_USAGE_EDITOR | PROPERTY_USAGE_READ_ONLY, name)
	var packed := PackedScene.new()
	made.owner = null
	expect_equal(packed.pack(made), OK)
	for i in packed.get_state().get_node_property_count(0):
		expect(packed.get_state().get_node_property_name(0, i) not in [&"current_state", &"values"], "it is saved with the scene")
