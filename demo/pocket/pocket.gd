class_name Pocket
extends Node2D
## Holds a node outside the tree. A machine inside that node stands still meanwhile, and goes on where it was afterwards.

var _held: Node


func _notification(what: int) -> void:
	if what == NOTIFICATION_PREDELETE and _held != null:
		_held.free()


## Takes [param thing] out of the tree. A pocket holds one thing; a second is left where it is.
func stow(thing: Node) -> void:
	if thing == null or _held != null:
		return
	_held = thing
	thing.get_parent().remove_child(thing)


## Puts back what the pocket holds.
func take_out() -> void:
	if _held == null:
		return
	add_child(_held)
	_held = null
