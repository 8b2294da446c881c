extends SCWaitAction
## Waits twice as long as it says.


func _enter(m: SCMachine, index: int) -> void:
	seconds *= 2.0
	enter_default(m, index)
	seconds /= 2.0


func _summary() -> String:
	return "%s, twice" % summary_default()
