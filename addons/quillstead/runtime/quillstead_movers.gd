extends RefCounted
## Moves on by hand what moves for a machine outside of its own actions.
##
## A machine that is paused from the editor and stepped runs its actions for one tick. What moves nodes for it from
## elsewhere is not part of that: such a mover is a node that has joined [constant GROUP] and has a method
## [code]step_machine(machine, step)[/code], and it is called from here.

## The group that movers join.
const GROUP: StringName = &"quillstead_movers"


## Lets every mover of the tree do the work of [param step] seconds for [param machine].
static func step_machine(machine: SCMachine, step: float) -> void:
	if not machine.is_inside_tree():
		return
	for mover in machine.get_tree().get_nodes_in_group(GROUP):
		# One mover may free another, or the machine itself.
		if not is_instance_valid(machine):
			return
		if is_instance_valid(mover) and mover.has_method(&"step_machine"):
			mover.call(&"step_machine", machine, step)
