extends Story
## Machines whose every callback enters, leaves, restarts, stops, starts, frees, moves, pauses and steps them at random. No
## order of calls may crash one, and nothing that comes back late may reach a state that has been left.
##
## A round depends on its seed alone; [code]--long[/code] plays thousands. A round that failed is played again on its own by
## [code]--seed=N[/code].

const Game := preload("res://tests/fuzz/fuzz_game.gd")

const FIRST_SEED: int = 20_260
const ROUNDS: int = 200
const LONG_ROUNDS: int = 5000
const FRAMES_A_ROUND: int = 8
## The one error that a design can lead to.
const CIRCLE: String = "states in one frame"


func most_frames() -> int:
	return 1_000_000


func test_any_call_from_within_any_callback() -> void:
	for one: int in seeds(FIRST_SEED, ROUNDS, LONG_ROUNDS):
		if not await _play_round(one):
			return


func _play_round(with_seed: int) -> bool:
	seed(with_seed)
	var game := Game.new()
	game.open(stage, with_seed)
	for i in FRAMES_A_ROUND:
		if i % 4 == 3:
			await physics_frames(1)
		else:
			await frames(1)
		game.play_frame()
	game.close()
	await frames(2)
	game.forget()
	SCMachine.set_measuring(false)
	# A machine may well complain of such treatment.
	while output.claim("error", CIRCLE) or output.claim("warning", " "):
		pass
	for complaint in output.unclaimed():
		game.ledger.fault(complaint)
	output.forget()
	_forget_what_is_shared()
	if game.ledger.faults.is_empty():
		return true
	_fail("seed %d: %s\n      %s" % [with_seed, "; ".join(game.ledger.faults), "\n      ".join(game.trail)])
	return false
