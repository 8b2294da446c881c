extends Node
## A small game that a test runs under a debugger. It does as it is told through a capture of its own, and goes when nobody
## listens any more.

const CAPTURE: StringName = &"session"
## Fields: none. The machines stand and the capture is there.
const READY: String = "session:ready"
## Asks for [constant TOLD]. Fields: a machine's path.
const ASK: String = "session:ask"
## Fields: the machine's path, whether it is paused, its state, its values, whether either callback is on.
const TOLD: String = "session:told"
## Fields: a machine's path, the event, its data.
const EVENT: String = "session:event"
## Fields: a machine's path, a variable, its value, whether the machine is paused right after.
const SET: String = "session:set"
## Ends the game. Fields: none.
const QUIT: String = "session:quit"

## The listener may be gone without a word.
const MOST_SECONDS: float = 120.0

var _began: int = Time.get_ticks_msec()


func _ready() -> void:
	if not EngineDebugger.is_active():
		return
	EngineDebugger.register_message_capture(CAPTURE, _take)
	EngineDebugger.send_message(READY, [])


func _exit_tree() -> void:
	if EngineDebugger.has_capture(CAPTURE):
		EngineDebugger.unregister_message_capture(CAPTURE)


func _process(_delta: float) -> void:
	if not EngineDebugger.is_active() or Time.get_ticks_msec() - _began > MOST_SECONDS * 1000.0:
		get_tree().quit(1)


func _take(message: String, fields: Array) -> bool:
	match "%s:%s" % [CAPTURE, message]:
		ASK:
			_tell(get_node(fields[0] as String) as SCMachine)
		EVENT:
			(get_node(fields[0] as String) as SCMachine).send_event(fields[1], fields[2])
		SET:
			var machine: SCMachine = get_node(fields[0] as String)
			machine.set_value(fields[1], fields[2])
			if fields[3]:
				machine.set_paused(true)
		QUIT:
			get_tree().quit()
		_:
			return false
	return true


func _tell(machine: SCMachine) -> void:
	var state: SCMachineState = machine.current_state
	EngineDebugger.send_message(TOLD, [
		String(machine.get_path()),
		machine.is_paused(),
		String(state.state_name) if state != null else "",
		machine.values,
		machine.is_processing() or machine.is_physics_processing(),
	])
