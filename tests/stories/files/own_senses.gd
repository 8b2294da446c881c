extends "res://addons/quillstead/runtime/senses.gd"
## A Perception node of a game's own, with a mind of its own about what is lost.

func has_lost_it() -> bool:
	return true


func out_of_sight_for() -> float:
	return -1.0
