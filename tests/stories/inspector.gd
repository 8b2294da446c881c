extends Story
## What the inspector shows of actions and questions, and what a 2D machine changes.

const PLUMBING: Array[String] = ["resource_local_to_scene", "resource_path", "resource_name"]


class Bouncer:
	extends SCMachineAction

	@export_flags_3d_physics var layers: int = 1
	var machine: Node

	func _uses_run_mode() -> bool:
		return false

	# The engine asks only the script about what the script declares.
	func _validate_property(property: Dictionary) -> void:
		validate_setting(property)


func close() -> void:
	SCMachineAction.set_shown_on_2d(-1)
	await super()


func test_nobody_sees_the_plumbing() -> void:
	for object: Resource in [wait(1.0), SCMachineAction.new(), SCMachineCondition.new()]:
		for name in PLUMBING:
			var property := _property(object, name)
			expect(not property.is_empty(), name)
			expect_equal(property["usage"] & PROPERTY_USAGE_EDITOR, 0, name)
			expect(SCMachineAction.is_plumbing(name))
			expect(SCMachineAction.is_plumbing(property))
	expect(not SCMachineAction.is_plumbing("seconds"))


func test_the_run_mode_shows_where_it_does_something() -> void:
	expect_equal(_property(print_line("x"), "run_mode")["usage"] & PROPERTY_USAGE_EDITOR, PROPERTY_USAGE_EDITOR)
	expect_equal(_property(wait(1.0), "run_mode")["usage"], PROPERTY_USAGE_STORAGE)
	expect_equal(_property(Bouncer.new(), "run_mode")["usage"], PROPERTY_USAGE_STORAGE)


func test_the_map_of_variables_is_kept_and_not_shown() -> void:
	expect_equal(_property(wait(1.0), "from_variables")["usage"], PROPERTY_USAGE_STORAGE)
	expect_equal(_property(wait(1.0), "_typed_in")["usage"], PROPERTY_USAGE_NONE)


func test_a_hidden_setting_names_nothing() -> void:
	var shout := send(&"hello", {"reach": SCSendEventAction.A_GROUP, "to_group": &"guards"})
	expect_equal(_property(shout, "to_group")["usage"] & PROPERTY_USAGE_EDITOR, PROPERTY_USAGE_EDITOR)
	shout.reach = SCSendEventAction.THIS_MACHINE
	expect_equal(_property(shout, "to_group")["usage"] & PROPERTY_USAGE_EDITOR, 0)
	expect_equal(Array(SCMachineAction.shown_settings(shout, [&"event_name", &"to_group", &"display_name"])), [&"event_name"])
	expect_equal(Array(SCMachineAction.names_held_in(shout, [&"event_name", &"to_group"])), ["hello", "guards"])


func test_physics_layers_follow_the_side() -> void:
	var bouncer := Bouncer.new()
	SCMachineAction.set_shown_on_2d(0)
	expect_equal(_property(bouncer, "layers")["hint"], PROPERTY_HINT_LAYERS_3D_PHYSICS)
	SCMachineAction.set_shown_on_2d(1)
	expect_equal(_property(bouncer, "layers")["hint"], PROPERTY_HINT_LAYERS_2D_PHYSICS)
	expect_equal(SCMachineAction.get_shown_on_2d(), 1)
	expect(SCMachineAction.shown_on_2d_known())
	SCMachineAction.set_shown_on_2d(-1)
	expect(not SCMachineAction.shown_on_2d_known())


func test_the_machine_decides_the_side() -> void:
	var deep := Node3D.new()
	add(deep)
	var flat_machine := start(machine([state("Idle")], {"under": body()}))
	var deep_machine := start(machine([state("Idle")], {"under": deep}))
	SCMachineAction.set_shown_on_2d(0)
	expect(SCMachineAction.shown_on_2d(flat_machine))
	expect(not SCMachineAction.shown_on_2d(deep_machine))
	SCMachineAction.set_shown_on_2d(1)
	expect(not SCMachineAction.shown_on_2d(deep_machine))
	var bouncer := Bouncer.new()
	bouncer.machine = deep_machine
	expect(not SCMachineAction.shown_on_2d(bouncer))
	bouncer.machine = flat_machine
	expect_equal(_property(bouncer, "layers")["hint"], PROPERTY_HINT_LAYERS_2D_PHYSICS)
	flat_machine.target_path = flat_machine.get_path_to(deep)
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
	var asked := Asking.new()
	var literal := {"name": "value", "type": TYPE_FLOAT, "usage": PROPERTY_USAGE_DEFAULT}
	asked.validate_setting("value", literal)
	expect_equal(literal["usage"], PROPERTY_USAGE_DEFAULT)
	asked.value_variable = &"score"
	asked.validate_setting("value", literal)
	expect_equal(literal["usage"], PROPERTY_USAGE_STORAGE)


func test_a_game_does_not_ask_which_settings_take_any_type() -> void:
	expect(not SCMachineAction.holds_any_type(&"SCSetVariableAction", &"value"), "only the editor does")


func test_every_text_is_found_up_the_parents() -> void:
	expect_equal(SCMachineAction.doc_of(&"SCWaitAction", &"seconds"), "How long to wait.")
	expect_equal(SCMachineAction.doc_of(&"SCWaitAction"), "Wait a number of seconds, then finish.")
	expect_equal(SCMachineAction.doc_of(&"SCWaitAction", &"disabled"), "Skip this action without deleting it.")
	expect_equal(SCMachineAction.doc_of(&"SCWaitAction", &"nothing_of_the_kind"), "")
	expect_equal(SCMachineAction.doc_of(&"Node", &"name"), "")


func test_a_kind_starts_in_metres_and_is_suited_to_pixels_once() -> void:
	var table := SCMachineAction.starts_in_2d()
	for key: String in table:
		var parts := key.split(":")
		var fresh: Resource = ClassDB.instantiate(parts[0])
		var before: Variant = fresh.get(parts[1])
		SCMachineAction.suit_settings_2d(fresh)
		var wanted: Variant = before * 32.0 if table[key] is String else table[key]
		expect_equal(fresh.get(parts[1]), wanted, key)
	SCMachineAction.suit_settings_2d(null)
	expect_equal(SCMachineAction.pixels_per_metre(), 32.0)


func test_what_a_fresh_action_of_a_kind_does_with_time() -> void:
	expect_equal(SCMachineAction._starting_run_mode(&"SCWaitAction"), SCMachineAction.ONCE)
	expect_equal(SCMachineAction._starting_run_mode(Restless), SCMachineAction.EVERY_FRAME)
	expect(not SCMachineAction._is_a_base(Restless))
	expect(SCMachineAction.the_machines_own().has(&"update_interval"))


class Asking:
	extends SCMachineCondition

	@export var value: float = 1.0
	@export var value_variable: StringName


class Restless:
	extends SCMachineAction

	func _init() -> void:
		run_mode = SCMachineAction.EVERY_FRAME


func _property(object: Object, name: String) -> Dictionary:
	for property in object.get_property_list():
		if property["name"] == name:
			return property
	return {}
