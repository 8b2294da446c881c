extends SCWaitAction
## A wait with a line of its own and nothing else.


func _summary() -> String:
	return "Rest a while"
