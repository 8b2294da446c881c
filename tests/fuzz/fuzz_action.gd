extends SCMachineAction
## An action that does something unforeseen whenever it is called.

const Game := preload("res://tests/fuzz/fuzz_game.gd")

var game: Game
var ticks: bool = false
var physics: bool = false
var works_on: bool = false
var watched: PackedStringArray = []
## One in so many enters or updates finishes it; 0 never.
var finishes_in: int = 0


func _enter(machine: SCMachine, index: int) -> void:
	var id := machine.get_instance_id()
	var run := game.ledger.entered(machine, index)
	game.act("enter", id, index, run)
	_maybe_finish(id, index)


func _update(machine: SCMachine, index: int, _delta: float) -> void:
	var id := machine.get_instance_id()
	var run := game.ledger.updated(machine, index)
	game.act("update", id, index, run)
	_maybe_finish(id, index)


func _exit(machine: SCMachine, index: int) -> void:
	var id := machine.get_instance_id()
	var run := game.ledger.exited(machine, index)
	game.act("exit", id, index, run)


func _read_variables(machine: SCMachine) -> void:
	game.act("reading variables", machine.get_instance_id())


func _live_words(machine: SCMachine, line: String) -> String:
	game.act("live words", machine.get_instance_id())
	return line + "."


func _needs_every_tick() -> bool:
	_asked("needs every tick")
	return ticks


func _wants_physics() -> bool:
	_asked("wants physics")
	return physics


func _works_after_finishing() -> bool:
	_asked("works after finishing")
	return works_on


func _variables_to_watch() -> PackedStringArray:
	_asked("variables to watch")
	return watched


func _asked(what: String) -> void:
	if game != null:
		game.act(what, 0)


func _maybe_finish(id: int, index: int) -> void:
	if finishes_in > 0 and game != null and game.random.randi() % finishes_in == 0:
		var machine := game.machine_of(id)
		if machine != null:
			machine.finish(index)
