extends Node
## The yardstick of a tick: the least a script does each frame.

var count: int = 0


func _process(_delta: float) -> void:
	count += 1
