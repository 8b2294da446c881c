extends Story
## What the library makes known to the engine.

const PARTS: Array[StringName] = [
	&"SCMachineAction", &"SCMachineCondition", &"SCMachineTransition", &"SCMachineVariable", &"SCMachineEvent", &"SCMachineNote",
	&"SCMachineState", &"SCMachineParallelState", &"SCMachineTemplate",
]


class OwnAction:
	extends SCMachineAction


class OwnBase:
	extends SCMachineBase


func test_the_classes_and_what_they_derive_from() -> void:
	for name in PARTS:
		expect(ClassDB.can_instantiate(name), "%s cannot be made" % name)
		expect_equal(ClassDB.get_parent_class(name), &"Resource")
	expect(ClassDB.can_instantiate(&"SCMachine"))
	for row: Array in [[&"SCMachine", &"SCMachineBase"], [&"SCMachineBase", &"Node"], [&"SCMachineCore", &"Node"]]:
		expect_equal(ClassDB.get_parent_class(row[0]), row[1])
	var own := OwnBase.new()
	expect(own is SCMachineBase)
	expect(not own.is_running())
	own.free()


func test_every_setting_has_its_words() -> void:
	for name: StringName in PARTS + [&"SCMachine"] as Array[StringName]:
		expect(not _doc(name, &"").is_empty(), "%s has no words" % name)
		for property in ClassDB.class_get_property_list(name, true):
			if property["usage"] & PROPERTY_USAGE_EDITOR and not property["usage"] & PROPERTY_USAGE_GROUP:
				expect(not _doc(name, property["name"]).is_empty(), "%s.%s has no words" % [name, property["name"]])


func test_a_game_s_own_action_stands_beside_the_kinds() -> void:
	var own := OwnAction.new()
	expect(not own.has_update() and not own.has_exit() and not own.repeats())
	own.run_mode = SCMachineAction.EVERY_FRAME
	expect(own.repeats() and own.works_after_finishing())
	var made := play(own, {"FINISHED": "Wrong"})
	await frames(2)
	expect_state(made, "Work")
	expect(not made.is_processing(), "an action without an update ticks")


func _doc(of: StringName, setting: StringName) -> String:
	return ClassDB.class_call_static(&"SCMachineAction", &"doc_of", of, setting)
