@tool
class_name SCQuestStep
extends Resource
## One thing to do in a quest ([SCQuest]). It ticks itself off when what it waits for has come often enough.

## What ticks a step off.
enum Kind {
	## An event that any machine sends, such as [code]wolf_slain[/code]. Each time counts as one.
	EVENT,
	## So many of an item in the player's inventory. What is in there already when the step begins counts too.
	COLLECT,
	## A dialogue with somebody. Each time it ends counts as one.
	TALK,
}

## What there is to do, for the player to read. It is translated, when the game has a translation of it.
@export var says: String:
	set(value):
		says = value
		emit_changed()
## What ticks it off.
@export var kind: Kind = Kind.EVENT:
	set(value):
		kind = value
		notify_property_list_changed()
		emit_changed()
## The event it waits for, from whichever machine sends it.
@export var waits_for: StringName:
	set(value):
		waits_for = value
		emit_changed()
## The item that has to be in the player's inventory: the one that the first node in the group [code]player[/code] carries.
@export var item: SCItem:
	set(value):
		item = value
		emit_changed()
## Whom to talk to: the name of the node that the dialogue's machine works on, or a group that it is in.
@export var talk_to: StringName:
	set(value):
		talk_to = value
		emit_changed()
## How often the event or the talk has to come, or how many of the item there have to be.
@export_range(1, 100, 1, "or_greater", "hide_slider") var how_many: int = 1:
	set(value):
		how_many = value
		emit_changed()
## The quest is done without it. In a quest whose steps come in order, the next one does not wait for it either.
@export var optional: bool = false:
	set(value):
		optional = value
		emit_changed()
## Not shown before its turn, so that what comes next stays a surprise. It has no effect on steps that need not come in order.
@export var hidden: bool = false


func _validate_property(property: Dictionary) -> void:
	var only_for: Variant = {&"waits_for": Kind.EVENT, &"item": Kind.COLLECT, &"talk_to": Kind.TALK}.get(property["name"])
	if only_for != null and only_for != kind:
		property["usage"] &= ~PROPERTY_USAGE_EDITOR


## How many it takes, at least 1.
func needed() -> int:
	return maxi(how_many, 1)


## What the player reads: [member says], or else what it waits for.
func shown_text() -> String:
	if not says.is_empty():
		return tr(says)
	match kind:
		Kind.COLLECT:
			return item.shown_name() if item != null else ""
		Kind.TALK:
			return String(talk_to).capitalize()
	return String(waits_for).capitalize()


## Whether nothing is picked that could tick it off.
func waits_for_nothing() -> bool:
	match kind:
		Kind.COLLECT:
			return item == null
		Kind.TALK:
			return talk_to.is_empty()
	return waits_for.is_empty()


## What it is known by in a saved game, when the steps of its quest have changed since.
func likeness() -> String:
	match kind:
		Kind.COLLECT:
			return "collect:%s" % (item.key() if item != null else "")
		Kind.TALK:
			return "talk:%s" % talk_to
	return "event:%s" % waits_for
