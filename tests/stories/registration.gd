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


func test_every_setting_has_its_words() -> void:
	for name: StringName in CONCRETE:
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


func _doc(of: StringName, setting: StringName) -> String:
	return ClassDB.class_call_static(&"SCMachineAction", &"doc_of", of, setting)
