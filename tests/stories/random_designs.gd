extends Story
## Designs drawn from a seed. Valid ones run without a word; broken ones hold planted faults among kinds with settings of every
## sort, and whatever they do, nothing crashes, each fault has its sentence and the guard stops every ring.
##
## [code]--long[/code] plays thousands. A seed that failed is played again on its own, its design told first, by
## [code]--seed=N[/code]; one that took the engine down with it is named by the next run.

const Design := preload("res://tests/fuzz/design.gd")
const Rehearsal := preload("res://tests/fuzz/rehearsal.gd")
const Round := preload("res://tests/fuzz/random_round.gd")
const Filling := preload("res://tests/fuzz/filling.gd")

const FIRST_SEED: int = 5000
const VALID: int = 50
const BROKEN: int = 92
const LONG: int = 4000
## Holds the seed that is being played.
const PLAYING: String = "user://random_design_being_played.txt"


func most_frames() -> int:
	return 1_000_000


func test_valid_designs_run_without_a_word() -> void:
	await _play_all(VALID, true)
	expect(Design.rehearsed.size() > 0.75 * (Filling.kinds().size() - Filling.ENDS_THE_GAME.size()), "too few kinds find a filling that leaves nothing to complain of: %s" % [Design.rehearsed.keys()])


func test_broken_designs_say_what_is_wrong_and_go_on() -> void:
	await _play_all(BROKEN, false)
	for kind in Filling.kinds():
		expect(only_seed >= 0 or Design.drawn.has(kind) or kind in Filling.ENDS_THE_GAME, "no design used %s" % kind)


## Events alone lead a machine where they lead the bare skeleton of one.
func test_events_lead_where_the_small_model_says() -> void:
	for one: int in seeds(FIRST_SEED, VALID, LONG):
		var dice := Design.Dice.new()
		dice.seed = one
		var states := range(6).map(func(i: int) -> SCMachineState: return state("S%d" % i))
		for i in 20:
			(dice.pick(states) as SCMachineState).transitions.append(transition(dice.pick(Filling.EVENTS.slice(0, 3)), "S%d" % dice.randi_range(0, 6)))
		var made := start(running(template(states)))
		var model := SCMachineCore.new()
		model.design = made.template
		add(model)
		for i in 30:
			var event: StringName = dice.pick(Filling.EVENTS.slice(0, 4))
			made.send_event(event)
			model.send_event(event)
			if current(made) != model.get_current_state():
				_fail("seed %d: after %s the machine is in %s and the model in %s" % [one, event, current(made), model.get_current_state()])
				return
		made.free()
		model.free()
		_made.clear()


func _play_all(rounds: int, valid: bool) -> void:
	if FileAccess.file_exists(PLAYING):
		print("      An earlier run ended in the middle of a design: %s" % FileAccess.get_file_as_string(PLAYING))
	await Rehearsal.hold(stage, output)
	for one: int in seeds(FIRST_SEED, rounds, LONG):
		var file := FileAccess.open(PLAYING, FileAccess.WRITE)
		file.store_string("a %s one, --seed=%d" % ["valid" if valid else "broken", one])
		file.close()
		var went_well := await _play(one, valid)
		DirAccess.remove_absolute(PLAYING)
		if not went_well:
			return


func _play(with_seed: int, valid: bool) -> bool:
	# What is made once and kept makes the first round with it grow; only one that grows again leaks.
	for attempt in 2:
		var before := int(Performance.get_monitor(Performance.OBJECT_COUNT))
		var round := Round.new(self, with_seed, valid)
		if only_seed >= 0 and attempt == 0:
			print(round.told())
		Engine.print_to_stdout = false
		await round.play()
		await round.end()
		Engine.print_to_stdout = true
		if not round.faults.is_empty():
			_fail("seed %d: %s\n%s" % [with_seed, "\n      ".join(round.faults.slice(0, 8)), round.told()])
		round.take_apart()
		if not failures.is_empty():
			return false
		round = null
		await frames(1)
		var grown := int(Performance.get_monitor(Performance.OBJECT_COUNT)) - before
		if grown <= 0:
			return true
		if attempt == 1:
			_fail("seed %d leaves %d objects behind" % [with_seed, grown])
	return false
