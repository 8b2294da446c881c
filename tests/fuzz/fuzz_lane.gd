extends RefCounted
## Stands for the lane that does an action's work while it rests.

const Game := preload("res://tests/fuzz/fuzz_game.gd")

var game: Game
var dropped: int = 0


func remove(_job: int) -> void:
	dropped += 1
	game.act("dropped job", 0)
