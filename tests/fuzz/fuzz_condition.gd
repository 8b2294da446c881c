extends SCMachineCondition
## A question that does something unforeseen before it answers.

const Game := preload("res://tests/fuzz/fuzz_game.gd")

var game: Game


func _check(machine: SCMachine, _slot: Dictionary) -> bool:
	game.act("question", machine.get_instance_id())
	return game.one_in(2)
