extends SceneTree
## A game that quits by itself, with machines that are told of it and states that are left: -- [quiet] [code=N] [hostile].


class Leaves:
	extends SCMachineAction

	func _exit(m: SCMachine, _index: int) -> void:
		print("left %s" % m.name)


class Saver:
	extends Node

	var takes_along: Array[Node] = []

	func _notification(what: int) -> void:
		if what == NOTIFICATION_WM_CLOSE_REQUEST:
			print("saved by %s" % name)
			for node in takes_along:
				node.free()
			add_sibling(Node.new())


func _initialize() -> void:
	await process_frame
	var arguments := OS.get_cmdline_user_args()
	var quit_game := SCQuitGameAction.new()
	quit_game.tell_everybody_first = "quiet" not in arguments
	for argument in arguments:
		if argument.begins_with("code="):
			quit_game.exit_code = argument.to_int()
	var menu := _machine("Menu", &"leave", [Leaves.new(), quit_game])
	_machine("Autosave", &"close_requested", [_says("autosaved"), quit_game])
	_machine("Guard", &"nothing", [])
	var saver := Saver.new()
	saver.name = "Saver"
	root.add_child(saver)
	menu.send_event(&"leave")
	if "hostile" in arguments:
		saver.takes_along.append(menu)
	# Not awaited, as a game that ends meanwhile would leave that behind.
	process_frame.connect(_played_on)


func _played_on() -> void:
	print("played on")


func _machine(name: String, event: StringName, actions: Array[SCMachineAction]) -> SCMachine:
	var on := SCMachineState.new()
	on.state_name = &"On"
	on.actions = [Leaves.new()]
	var off := SCMachineState.new()
	off.state_name = &"Off"
	off.actions = actions
	var way := SCMachineTransition.new()
	way.event = event
	way.to_state = &"Off"
	on.transitions = [way]
	var made := SCMachine.new()
	made.name = name
	made.states = [on, off]
	made.initial_state = on
	root.add_child(made)
	return made


func _says(text: String) -> SCMachineAction:
	var made := SCPrintAction.new()
	made.text = text
	return made
