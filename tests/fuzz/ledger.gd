extends RefCounted
## What has been entered and what has been left, and every way in which a machine broke its word about it. A run is one action
## in one entered state; its number lies in the slot that the machine keeps for it.

enum Phase { ENTERED, LEFT }

const SLOT_KEY: StringName = &"run"
const MOST_FAULTS: int = 5

var faults: PackedStringArray = []
## Above 0, calls are not answered with deeds.
var quiet: int = 0
## How many times a machine has called anything.
var calls: int = 0

var _phases: Dictionary[int, Phase] = {}
var _machines: Dictionary[int, int] = {}
## For the report: which machine, state and action it was.
var _words: Dictionary[int, String] = {}
var _next: int = 1


func fault(text: String) -> void:
	if faults.size() < MOST_FAULTS:
		faults.append(text)


func entered(machine: SCMachine, index: int) -> int:
	calls += 1
	var run := _next
	_next += 1
	_phases[run] = Phase.ENTERED
	_machines[run] = machine.get_instance_id()
	_words[run] = "%s, action %d of %s" % [machine.name, index, machine.running_state()]
	var slot := machine.slot(index)
	if slot.has(SLOT_KEY):
		fault("entered twice in one run, the second time as %d after %d" % [run, slot[SLOT_KEY]])
	slot[SLOT_KEY] = run
	if not machine.is_running() or not machine.still_here():
		fault("entered in a state that is not active")
	return run


func updated(machine: SCMachine, index: int) -> int:
	calls += 1
	var run := run_of(machine, index)
	_expect_entered(run, "updated")
	if not machine.is_running() or not machine.still_here():
		fault("updated in a state that is not active")
	return run


func exited(machine: SCMachine, index: int) -> int:
	calls += 1
	var run := run_of(machine, index)
	_expect_entered(run, "exited")
	_phases[run] = Phase.LEFT
	if machine.still_here():
		fault("exited in a state that is still active")
	if not machine._core_leaving():
		fault("exited while nothing is being left")
	return run


## Something that was asked for in this run has come back.
func came_back(run: int, what: String) -> void:
	calls += 1
	if run != 0 and phase_of(run) == Phase.LEFT:
		fault("%s after the state was left: %s" % [what, _words[run]])


## The run of an action of the state being worked on; 0 for one that keeps no number.
func run_of(machine: SCMachine, index: int) -> int:
	return machine.slot(index).get(SLOT_KEY, 0)


func phase_of(run: int) -> Phase:
	return _phases.get(run, Phase.LEFT)


## Every machine is gone: what was entered has to have been exited, but for those machines that had no say in their end.
func expect_all_exited(but_for: Dictionary[int, bool]) -> void:
	for run in _phases:
		if _phases[run] == Phase.ENTERED and not but_for.has(_machines[run]):
			fault("gone without an exit: %s" % _words[run])


func _expect_entered(run: int, what: String) -> void:
	if run == 0:
		fault("%s without having been entered" % what)
	elif phase_of(run) == Phase.LEFT:
		fault("%s after its exit: %s" % [what, _words[run]])
