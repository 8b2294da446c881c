extends Story
## What the library makes known to the engine.

const CONCRETE: Dictionary[StringName, StringName] = {
	&"SCMachine": &"SCMachineBase",
	&"SCMachineAction": &"Resource",
	&"SCMachineCondition": &"Resource",
	&"SCMachineTransition": &"Resource",
	&"SCMachineVariable": &"Resource",
	&"SCMachineEvent": &"Resource",
	&"SCMachineNote": &"Resource",
	&"SCMachineState": &"Resource",
	&"SCMachineParallelState": &"Resource",
	&"SCMachineTemplate": &"Resource",
}
const ONLY_TO_EXTEND: Dictionary[StringName, StringName] = {
	&"SCMachineBase": &"Node",
	&"SCMachineCore": &"Node",
}


class OwnAction:
	extends SCMachineAction


class OwnBase:
	extends SCMachineBase


func test_the_classes_and_what_they_derive_from() -> void:
	for name in CONCRETE:
		expect(ClassDB.class_exists(name) and ClassDB.can_instantiate(name), "%s cannot be made" % name)
		expect_equal(ClassDB.get_parent_class(name), CONCRETE[name])
	for name in ONLY_TO_EXTEND:
		expect(ClassDB.class_exists(name), "%s is not there" % name)
		expect_equal(ClassDB.get_parent_class(name), ONLY_TO_EXTEND[name])
	var own := OwnBase.new()
	expect(own is SCMachineBase)
	expect(not own.is_running())
	own.free()


func test_every_kind_keeps_the_rules() -> void:
	for name: StringName in _kinds():
		var made: Resource = ClassDB.instantiate(name)
		expect(made != null, "%s cannot be made" % name)
		var said: String = made.call(&"summary")
		expect(not said.strip_edges().is_empty() and not said.begins_with("<"), "%s says \"%s\" of itself" % [name, said])
		for property in made.get_property_list():
			_expect_in_range(made, property)
		var path := "user://story_kind.tres"
		expect_equal(ResourceSaver.save(made, path), OK)
		var loaded := ResourceLoader.load(path, "", ResourceLoader.CACHE_MODE_IGNORE)
		expect_equal(loaded.get_class(), String(name))
		for property in made.get_property_list():
			if property["usage"] & PROPERTY_USAGE_STORAGE and not (property["name"] as String).begins_with("resource_"):
				expect_equal(loaded.get(property["name"]), made.get(property["name"]), "%s.%s" % [name, property["name"]])
		DirAccess.remove_absolute(path)


func test_every_kind_survives_a_state_it_is_put_into_bare() -> void:
	for name: StringName in _kinds():
		if not ClassDB.is_parent_class(name, &"SCMachineAction"):
			continue
		var action: SCMachineAction = ClassDB.instantiate(name)
		for at_once: bool in [true, false]:
			action.run_mode = SCMachineAction.ONCE if at_once else SCMachineAction.EVERY_FRAME
			var made := start(machine([state("A", [action]), state("B")], {"name": "Bare"}))
			await frames(3)
			made.go_to("B")
			made.free()
	# A bare kind may tell the game maker what it lacks, in a warning that names the machine.
	for line in output.unclaimed():
		expect(line.begins_with("warning: ") and "Bare" in line, "a bare kind: %s" % line)
	output.forget()


func test_every_setting_has_its_words() -> void:
	if not ClassDB.class_has_method(&"SCMachineAction", &"doc_of"):
		_fail("the words for a setting cannot be asked for: SCMachineAction has no doc_of")
		return
	var classes := _kinds()
	classes.append_array(CONCRETE.keys())
	for name: StringName in classes:
		expect(not _doc(name, &"").is_empty(), "%s has no words" % name)
		for property in ClassDB.class_get_property_list(name, true):
			if property["usage"] & PROPERTY_USAGE_EDITOR and not property["usage"] & PROPERTY_USAGE_GROUP:
				expect(not _doc(name, property["name"]).is_empty(), "%s.%s has no words" % [name, property["name"]])


func test_a_game_s_own_action_stands_beside_the_kinds() -> void:
	var own := OwnAction.new()
	expect(not own.has_update() and not own.has_exit() and not own.repeats())
	own.run_mode = SCMachineAction.EVERY_FRAME
	expect(own.repeats() and own.works_after_finishing())
	var made := start(machine([state("A", [own], {"FINISHED": "Wrong"}), state("Wrong")]))
	await frames(2)
	expect_state(made, "A")
	expect(not made.is_processing(), "an action without an update ticks")


func _kinds() -> Array:
	var names := []
	for base: StringName in [&"SCMachineAction", &"SCMachineCondition"]:
		for name in ClassDB.get_inheriters_from_class(base):
			names.append(StringName(name))
	return names


func _doc(of: StringName, setting: StringName) -> String:
	return ClassDB.class_call_static(&"SCMachineAction", &"doc_of", of, setting)


func _expect_in_range(made: Object, property: Dictionary) -> void:
	if property["hint"] != PROPERTY_HINT_RANGE:
		return
	var bounds := (property["hint_string"] as String).split(",")
	var value: float = made.get(property["name"])
	var low_is_open := bounds.has("or_less")
	var high_is_open := bounds.has("or_greater")
	expect((low_is_open or value >= bounds[0].to_float()) and (high_is_open or value <= bounds[1].to_float()),
		"%s.%s starts at %s, outside %s" % [made.get_class(), property["name"], value, property["hint_string"]])
