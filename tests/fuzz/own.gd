extends RefCounted
## What a game's own scripts add to a design: an action, a condition, a lane and something to wait for, each of which tells a
## random player of every call that a machine makes.


class Action:
	extends SCMachineAction

	## Takes what the call is, the machine when there is one, and the action's index. Holds on to nobody, as a lambda would.
	var called: Callable
	var ticks: bool = false
	var physics: bool = false
	var works_on: bool = false
	var watched: PackedStringArray = []
	## One in so many enters or updates finishes it; 0 never.
	var finishes_in: int = 0

	func _enter(machine: SCMachine, index: int) -> void:
		_tell_and_finish("enter", machine, index)

	func _update(machine: SCMachine, index: int, _delta: float) -> void:
		_tell_and_finish("update", machine, index)

	func _exit(machine: SCMachine, index: int) -> void:
		_tell("exit", machine, index)

	func _read_variables(machine: SCMachine) -> void:
		_tell("reading variables", machine)

	func _live_words(machine: SCMachine, line: String) -> String:
		_tell("live words", machine)
		return line + "."

	func _summary() -> String:
		return "Something of the game's own"

	func _needs_every_tick() -> bool:
		_tell("needs every tick")
		return ticks

	func _wants_physics() -> bool:
		_tell("wants physics")
		return physics

	func _works_after_finishing() -> bool:
		_tell("works after finishing")
		return works_on

	func _variables_to_watch() -> PackedStringArray:
		_tell("variables to watch")
		return watched

	func _tell(what: String, machine: SCMachine = null, index: int = -1) -> void:
		if called.is_valid():
			called.call(what, machine, index)

	func _tell_and_finish(what: String, machine: SCMachine, index: int) -> void:
		var id := machine.get_instance_id()
		_tell(what, machine, index)
		if finishes_in > 0 and randi() % finishes_in == 0 and is_instance_id_valid(id):
			(instance_from_id(id) as SCMachine).finish(index)


class Condition:
	extends SCMachineCondition

	var called: Callable

	func _check(machine: SCMachine, _slot: Dictionary) -> bool:
		called.call("check", machine, -1)
		return randi() % 2 == 0


## Stands for the lane that does an action's work while it rests.
class Lane:
	extends RefCounted

	var called: Callable

	func remove(_job: int) -> void:
		called.call("dropped job", null, -1)


## Something that an action may rest on, and that may be gone before it rings.
class Bell:
	extends Object

	@warning_ignore("unused_signal")
	signal rung
