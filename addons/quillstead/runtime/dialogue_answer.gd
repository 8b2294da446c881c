@tool
class_name SCDialogueAnswer
extends Resource
## One answer to a line of a dialogue: what stands on its button, when it is offered, and what picking it does.
##
## Its check, its event and its change of a variable belong to the machine that runs Start Dialogue.

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## What becomes of an answer whose check says no.
enum Refused {
	## The player sees nothing of it.
	HIDE,
	## Its button is there and cannot be pressed, to show what is missing.
	GREY,
}

## How a variable is changed.
enum Change {
	## It holds the value from then on.
	SET,
	## The value is added to what it holds. Words are put behind it.
	ADD,
}

## A name that stays the same when answers are moved about. What was picked in a saved game is remembered by it; without one, by
## the place in the list.
@export var id: StringName = &""
## The words on the button. [code]{name}[/code] drops the value of a variable in.
@export_multiline var words: String = ""
## The line that comes next. Empty ends the dialogue.
@export var to_line: StringName = &""

@export_group("When It Is Offered")
## Once picked, it is never offered again in this game.
@export var only_once: bool = false
## Offers it only while this condition says yes. Tick Invert there to ask the other way round.
@export var check: SCMachineCondition
## What the player sees of it while the check says no.
@export var refused: Refused = Refused.HIDE:
	set(value):
		refused = value
		notify_property_list_changed()
## The words on the greyed button, such as [code]Lift the gate (needs Strength 10)[/code]. Empty keeps the usual words.
@export var refused_words: String = ""

@export_group("What Picking It Does")
## The variable of the machine that it changes. Empty changes nothing.
@export var change_variable: StringName = &""
## Whether the value replaces what the variable holds or is added to it.
@export var change: Change = Change.SET
## What the variable is set to, or what is added to it. Below zero it takes away.
@export var change_value: Variant = 1
## Starts this quest.
@export_custom(PROPERTY_HINT_RESOURCE_TYPE, "SCQuest") var start_quest: Resource
## The event sent on the machine. One that leads out of the state ends the dialogue.
@export var send_event: StringName = &""


func _validate_property(property: Dictionary) -> void:
	if property["name"] == &"refused_words" and refused != Refused.GREY:
		property["usage"] &= ~PROPERTY_USAGE_EDITOR


## Whether the check, asked on [param machine], lets it be picked. [param variables] are the values of that machine.
func offered(machine: SCMachine, _variables: Dictionary) -> bool:
	if check == null:
		return true
	return machine != null and machine.ask(check, -1, {})


## Changes its variable on [param machine], whose values are [param variables].
func make_change(machine: SCMachine, variables: Dictionary) -> void:
	if change_variable.is_empty() or machine == null:
		return
	if not machine.has_value(change_variable):
		_warn(machine, "there is no variable called %s, so nothing was changed. Add it under Variables, or pick another under Change Variable" % change_variable)
		return
	var held: Variant = machine.get_value(change_variable, variables.get(change_variable))
	var value: Variant = change_value
	if change == Change.ADD:
		value = _sum(held, change_value)
		if value == null:
			_warn(machine, "%s holds %s, and %s cannot be added to that, so nothing was changed. Pick another variable, or set Change to Set" % [
				change_variable, SCMachineAction.kind_in_words(held), SCMachineAction.kind_in_words(change_value)])
			return
	if value is Array or value is Dictionary:
		value = value.duplicate(true)
	if value is float:
		if not is_finite(value):
			_warn(machine, "%s would become %s, which is no number to go on with, so nothing was changed. Look at Change Value" % [change_variable, value])
			return
		value = SCMachineAction.keep_whole(machine, change_variable, value)
	machine.set_value(change_variable, value)


# Null when the two do not go together.
func _sum(held: Variant, more: Variant) -> Variant:
	if held is String or held is StringName:
		return String(held) + SCMachineAction.text_of(more)
	if held is bool or more is bool:
		return null
	if (held is float or held is int) and (more is float or more is int):
		return held + more
	if typeof(held) == typeof(more) and (held is Vector2 or held is Vector3 or held is Vector2i or held is Vector3i or held is Color):
		return held + more
	if held is Array:
		var list: Array = held
		return list + (more if more is Array else [more]) if not list.is_typed() else null
	return null


func _warn(machine: SCMachine, what: String) -> void:
	var told: String = "\"%s\"" % words if id.is_empty() else String(id)
	MakerWarnings.once_for(machine, "dialogue answer:%d" % get_instance_id(), "The answer %s, on the machine %s: %s." % [told, machine.name, what])
