@tool
class_name SCItemChange
extends Resource
## One change that an item makes to whoever has it, wears it or uses it: a number of a machine, and what becomes of it.

## How the number is changed.
enum Change {
	## The amount is added. Below zero it is taken off.
	ADD,
	## The number is multiplied by the amount: 1.5 makes it half as large again.
	MULTIPLY,
	## The number becomes the amount. Only for what happens when an item is used, as it cannot be undone.
	SET,
}

## The number that changes, such as [code]speed[/code]: one of the variables of the machine.
@export var stat: StringName
## What is done with it.
@export var change: Change = Change.ADD
## How much.
@export var amount: float = 1.0
