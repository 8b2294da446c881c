@tool
extends EditorPlugin
## Lets a machine wait in the editor, as a tool script may, and reloads the library meanwhile. The story [code]reloading[/code]
## judges what it prints. Nothing here names a class of the library: the script stays while the library goes.

const LIBRARY: String = "res://addons/quillstead/quillstead.gdextension"
const SETTLE: int = 20


func _enter_tree() -> void:
	_work.call_deferred()


func _work() -> void:
	await _frames(SETTLE)
	while EditorInterface.get_resource_filesystem().is_scanning():
		await _frames(1)
	_wait_in_a_machine()
	await _frames(2)
	print("TOLD running: %s" % get_child(0).call(&"is_running"))
	print("TOLD reloaded: %s" % (GDExtensionManager.reload_extension(LIBRARY) == GDExtensionManager.LOAD_STATUS_OK))
	await _frames(SETTLE)
	print("TOLD then: %s" % get_child(0).get_class())
	get_tree().quit()


func _wait_in_a_machine() -> void:
	var machine: Node = ClassDB.instantiate(&"SCMachine")
	var state: Resource = ClassDB.instantiate(&"SCMachineState")
	(state.get(&"actions") as Array).append(ClassDB.instantiate(&"SCWaitAction"))
	(machine.get(&"states") as Array).append(state)
	machine.set(&"initial_state", state)
	add_child(machine)


func _frames(count: int) -> void:
	for i in count:
		await get_tree().process_frame
