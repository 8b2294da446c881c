extends Node
## On an area: how many bodies have come into it.

var came: int = 0


func _ready() -> void:
	connect(&"body_entered", func(_who: Node) -> void: came += 1)
