@abstract
extends Story
## A story about questions: asks them straight from a machine, or in a state by a Check.


## A running machine that does nothing of its own. Options as for [method machine].
func asker(under: Node, options: Dictionary = {}) -> SCMachine:
	var with := options.duplicate()
	with["under"] = under
	return start(machine([state("Asking", [act("asking")])], with))


## Puts the settings on a question.
func question(made: SCMachineCondition, settings: Dictionary = {}) -> SCMachineCondition:
	_put(made, settings)
	return made


## Asks with a memory of its own, or with the one handed over.
func ask(of: SCMachine, asked: SCMachineCondition, memory: Dictionary = {}) -> bool:
	return of.ask(asked, -1, memory)


## Asks every frame and sends "yes" and "no" when the answer changes. Options are settings of the action.
func watch(asked: SCMachineCondition, options: Dictionary = {}) -> SCCheckAction:
	var made := SCCheckAction.new()
	made.condition = asked
	made.run_mode = SCMachineAction.EVERY_FRAME
	made.only_when_it_changes = true
	made.true_event = &"yes"
	made.false_event = &"no"
	_put(made, options)
	return made


## Each row is a question and the line that the graph draws for it.
func expect_lines(rows: Array) -> void:
	for row: Array in rows:
		var asked: SCMachineCondition = row[0]
		expect_equal(asked.shown_summary(), row[1])
