extends SceneTree
## What a typed script may touch without an error being printed.


class Foreign:
	extends Resource

	var state_name: StringName = &"Own"
	var actions: Array = []
	var transitions: Array = []


func _initialize() -> void:
	await process_frame
	var made := SCMachine.new()
	made.autostart = false
	made.handed_values = {&"gold": 2}
	made.starting_values[&"gold"] = 3
	var handed: Dictionary = made.handed_values
	var starting: Dictionary = made.get_starting_values()
	_expect(handed[&"gold"] == 2 and starting[&"gold"] == 3 and handed.is_same_typed(starting))
	_expect(SCWaitAction.new().get_typed_in().is_empty())
	_expect(SCMachineAction.doc_of(&"GuardOfAGame", &"speed") == "" and SCMachineAction.doc_of(&"SCWaitAction") != "")
	root.add_child(made)
	made._core_begin([Foreign.new()], false, false, 100, {})
	_expect(made.active_states().is_empty() and made.active_chain().is_empty())
	made.free()
	for property in SCWaitAction.new().get_property_list():
		_expect(property["name"] != "run_mode" or property["hint_string"] == "Once,Every Frame")
	print("survived")
	quit()


func _expect(holds: bool) -> void:
	if not holds:
		print("FAIL line %d" % get_stack()[1]["line"])
