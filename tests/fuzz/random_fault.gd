extends RefCounted
## One fault planted in a design, and what is expected of a machine that runs it.

## Parts of one warning; empty when nothing is promised.
var said: PackedStringArray = []
## The machine that the warning names, when it is not the one that runs the design.
var of_machine: String = ""
## Why nothing is said.
var silent: String = ""
## Asked of each machine in its first frames, answers whether all is well. May move it, but not out of its first state for good.
var holds: Callable
## The event that leads from the first state into states that lead round at once.
var ring: StringName
var name: String


static func says(parts: PackedStringArray) -> RefCounted:
	var made := new()
	made.said = parts
	return made


static func is_silent(why: String, check: Callable = Callable()) -> RefCounted:
	var made := new()
	made.silent = why
	made.holds = check
	return made


static func goes_round(event: StringName) -> RefCounted:
	var made := new()
	made.ring = event
	return made
