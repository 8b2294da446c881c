extends RefCounted
## Remembers what was said: which lines of which dialogues have been heard in this game, which answers were picked, and who was
## talked with.
##
## It lasts as long as the game runs, through changes of scene. A new game starts with [method forget_all], and a saved one keeps
## what [method to_save] answers.

const _BEHIND_DIALOGUE: String = "#"
const _BEHIND_LINE: String = "/"

## From the key of a line or of an answer to true, for what was said and picked in this game. See [method heard_key].
static var heard: Dictionary = {}
## How often somebody was talked with in this game, by the place of their machine in the scene. See [method times_met].
static var met: Dictionary = {}


## The key in [member heard] of one line of a dialogue. That of an answer is the same for [method answer_in_line].
static func heard_key(dialogue: Resource, line_id: StringName) -> String:
	return "%s%s%s" % [_name_of(dialogue), _BEHIND_DIALOGUE, line_id]


## What stands for an answer in [method heard_key]: the id of its line, and its own id, or its place among the answers if it has
## none.
static func answer_in_line(line_id: StringName, answer: Variant) -> StringName:
	return "%s%s%s" % [line_id, _BEHIND_LINE, answer]


## Whether an answer to the line with the key [param line_key] was picked in this game: one by its id, or by its place.
static func was_picked(_machine: Object, line_key: String, answer: Variant) -> bool:
	return heard.get("%s%s%s" % [line_key, _BEHIND_LINE, answer], false)


## Whether a line was said in this game.
static func was_said(dialogue: Resource, line_id: StringName) -> bool:
	return dialogue != null and heard.get(heard_key(dialogue, line_id), false)


## Called as a talk starts, with the machine that has it.
static func talked(of: Object) -> void:
	var machine := of as SCMachineBase
	if machine != null:
		var place := _place_of(machine)
		met[place] = met.get(place, 0) + 1


## How many talks with the machine there were in this game, one that has started counted in. It is known again by its place in
## its scene, so one that was put there by a script should have a name of its own.
static func times_met(machine: SCMachineBase) -> int:
	return met.get(_place_of(machine), 0) if machine != null else 0


## The voice of this computer for an [SCActor], by its id. Empty when they have none, when there are no voices here, or when Text
## to Speech is not enabled in the Project Settings.
static func voice_of(actor: Object) -> String:
	var wanted: Variant = actor.get(&"voice") if actor != null else null
	# Asked before the voices are listed, which engines without speech answer with a fault.
	if not wanted is String or (wanted as String).is_empty() or not _can_speak():
		return ""
	var by_language := ""
	for voice: Dictionary in DisplayServer.tts_get_voices():
		if voice.get("id") == wanted or voice.get("name") == wanted:
			return voice["id"]
		if by_language.is_empty() and String(voice.get("language", "")).begins_with(wanted):
			by_language = voice["id"]
	return by_language


## The words as they are read aloud: without the BBCode, and without the marks that say how they are typed.
static func spoken(words: String) -> String:
	var heard_words := RegEx.create_from_string(r"\[img[^\[\]]*\].*?\[/img\]|\[(?!lb\]|rb\])/?[a-zA-Z_][^\[\]]*\]").sub(words, "", true)
	return heard_words.replace("[lb]", "[").replace("[rb]", "]").strip_edges()


## Forgets everything, for a new game.
static func forget_all() -> void:
	heard.clear()
	met.clear()


## What a saved game keeps.
static func to_save() -> Dictionary:
	return {"heard": heard.keys(), "met": met.duplicate()}


## Puts back what [method to_save] answered, in place of what is remembered now.
static func from_save(saved: Dictionary) -> void:
	forget_all()
	var keys: Variant = saved.get("heard", [])
	if keys is Dictionary:
		keys = (keys as Dictionary).keys()
	if keys is Array or keys is PackedStringArray:
		for key: Variant in keys:
			heard[String(key)] = true
	var places: Variant = saved.get("met", {})
	if places is Dictionary:
		for place: Variant in places:
			met[String(place)] = int(places[place])


static func _can_speak() -> bool:
	return ProjectSettings.get_setting("audio/general/text_to_speech", false) and DisplayServer.has_feature(DisplayServer.FEATURE_TEXT_TO_SPEECH)


static func _name_of(dialogue: Resource) -> String:
	if dialogue == null:
		return ""
	var given: Variant = dialogue.get(&"saved_as")
	if given is StringName and not (given as StringName).is_empty():
		return given
	# One that was made by a script lasts no longer than the game.
	return dialogue.resource_path if not dialogue.resource_path.is_empty() else "made while playing %d" % dialogue.get_instance_id()


static func _place_of(machine: SCMachineBase) -> String:
	var top: Node = machine.owner if machine.owner != null else machine
	while top.owner != null:
		top = top.owner
	if top != machine:
		return "%s:%s" % [top.scene_file_path, top.get_path_to(machine)]
	return String(machine.get_path()) if machine.is_inside_tree() else String(machine.name)
