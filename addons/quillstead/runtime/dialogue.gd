@tool
class_name SCDialogue
extends Resource
## A conversation that a Dialogue Box plays: lines, each with the answers that lead on to others.
##
## [SCStartDialogueAction] plays it. Save it as a file of its own, so that a saved game knows it again; see [member saved_as].

const MakerWarnings := preload("res://addons/quillstead/runtime/quillstead_warnings.gd")

## The lines. Their order says nothing: each tells which one comes next.
@export var lines: Array[SCDialogueLine] = []:
	set(value):
		lines = value
		_places.clear()
## The id of the line it begins with. Empty begins with the first in the list.
@export var start: StringName = &""
## What a saved game calls this dialogue. Empty is the path of its file; type something before the file is renamed, if games
## that are saved already are to know it again.
@export var saved_as: StringName = &""

# Where the line with an id stands in the list. Whoever looks there finds out when that is not so any more.
var _places: Dictionary[StringName, int] = {}


## The [SCDialogueLine] it begins with; null when there are no lines. A script that extends this one may answer with any object
## that has the members of a line.
func first_line() -> Object:
	if not start.is_empty():
		var begins := line(start)
		if begins != null:
			return begins
		MakerWarnings.once("dialogue start:%d:%s" % [get_instance_id(), start],
			"The dialogue %s is to start with the line %s, which it does not have, so it starts with its first. Pick another under Start." % [shown_name(), start])
	for each in lines:
		if each != null:
			return each
	return null


## The [SCDialogueLine] with this [param id], or null. Of several, the first.
func line(id: StringName) -> Object:
	if id.is_empty():
		return null
	var place: int = _places.get(id, -1)
	if place < 0 or place >= lines.size() or lines[place] == null or lines[place].id != id:
		_look_up_places()
		place = _places.get(id, -1)
	return lines[place] if place >= 0 else null


## What it is called in messages: its own name, or that of its file.
func shown_name() -> String:
	if not resource_name.is_empty():
		return resource_name
	var has_a_file := not resource_path.is_empty() and "::" not in resource_path
	return resource_path.get_file().get_basename().capitalize() if has_a_file else "without a name"


## What is wrong with it, a sentence each: lines that are missing, without a way to them, or called alike.
func problems() -> PackedStringArray:
	var found: PackedStringArray = []
	var known: Dictionary[StringName, bool] = {}
	for each in lines:
		if each == null:
			found.append("One of its lines is empty. Remove it, or put a line there.")
		elif each.id.is_empty():
			if each != first_line():
				found.append("The line \"%s\" has no Id, so nothing can lead to it." % each.words)
		elif known.has(each.id):
			found.append("Two lines are called %s, and only the first is ever said. Give one another Id." % each.id)
		else:
			known[each.id] = true
	if not start.is_empty() and not known.has(start):
		found.append("It is to start with the line %s, which it does not have." % start)
	for each in lines:
		if each != null:
			_look_for_missing(each, known, found)
	return found


func _look_for_missing(from: SCDialogueLine, known: Dictionary[StringName, bool], found: PackedStringArray) -> void:
	var told: String = "\"%s\"" % from.words if from.id.is_empty() else String(from.id)
	if not from.next_line.is_empty() and not known.has(from.next_line):
		found.append("The line %s goes on with %s, which is not there." % [told, from.next_line])
	for held: Variant in from.answers:
		var answer: SCDialogueAnswer = held if held is SCDialogueAnswer else null
		if answer == null:
			found.append("One of the answers to the line %s is empty or no answer. Remove it, or put an answer there." % told)
		elif not answer.to_line.is_empty() and not known.has(answer.to_line):
			found.append("The answer \"%s\" to the line %s leads to %s, which is not there." % [answer.words, told, answer.to_line])


func _look_up_places() -> void:
	_places.clear()
	for place in lines.size():
		if lines[place] != null and not lines[place].id.is_empty():
			_places.get_or_add(lines[place].id, place)
