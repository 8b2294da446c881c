extends SceneTree
## Saves into the slot named first behind the [code]--[/code], as large as the number behind it says: once, or with a third word
## again and again, one of two games in turn, until the engine is ended. Prints whether it worked.


func _initialize() -> void:
	await process_frame
	var words := OS.get_cmdline_user_args()
	var machine := SCMachine.new()
	var idle := SCMachineState.new()
	machine.states = [idle] as Array[SCMachineState]
	machine.initial_state = idle
	root.add_child(machine)
	for name: StringName in [&"who", &"text", &"worked"]:
		machine.set_value(name, "")
	var saving := SCSaveGameAction.new()
	saving.slot = words[0]
	saving.variables = [&"who", &"text"] as Array[StringName]
	saving.store_worked_in = &"worked"
	var round := 0
	while round == 0 or words.size() > 2:
		var who := "ab"[round % 2]
		machine.set_value(&"who", who)
		machine.set_value(&"text", who.repeat(words[1].to_int()))
		machine.set_value(&"worked", null)
		saving.enter(machine, 0)
		round += 1
	print("worked: %s" % machine.get_value(&"worked"))
	machine.free()
	quit()
