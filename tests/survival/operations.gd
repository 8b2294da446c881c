extends SceneTree
## Every operation of every kind, called by a script with no machine, with one that has been freed, and with one that stands still.

const ACTIONS: Array[String] = ["enter", "update", "exit", "enter_default", "update_default", "exit_default", "read_variables"]
const CONDITIONS: Array[String] = ["check", "evaluate", "rest_signals", "check_default", "rest_signals_default", "read_variables"]


func _initialize() -> void:
	await process_frame
	var idle := SCMachine.new()
	idle.autostart = false
	root.add_child(idle)
	var gone := SCMachine.new()
	gone.free()
	for row in SCMachineAction._core_kinds():
		var made: Resource = ClassDB.instantiate(row["class"])
		made.set(&"from_variables", {&"display_name": &"nothing"} if made is SCMachineAction else {})
		for operation in ACTIONS if made is SCMachineAction else CONDITIONS:
			var rest: Array = [] if operation == "read_variables" else [0] if made is SCMachineAction else [{}]
			if operation.begins_with("update"):
				rest.append(0.1)
			made.callv(operation, [null] + rest)
			made.callv(operation, [gone] + rest)
			made.callv(operation, [root] + rest)
			for index: int in [0, -1, 99]:
				made.callv(operation, [idle] + ([index] if made is SCMachineAction and not rest.is_empty() else []) + rest.slice(1 if made is SCMachineAction else 0))
	SCWaitAction.new().enter(gone, 0)
	SCDistanceCondition.new().check(gone, {})
	print("survived")
	quit()
