class_name SCQuestTracker
extends VBoxContainer
## Shows the quests that the player is on: those that are tracked, each with its title and the steps to do now, such as
## "Bring apples 3/10". It is put together anew only when something in the quest book changes.
##
## It takes its look from the theme: titles are of the type [code]QuestTitle[/code], steps to do of [code]QuestStep[/code], optional
## ones of [code]QuestStepOptional[/code], and done ones of [code]QuestStepDone[/code]. Each is a variation of [Label] that a theme may
## fill in.

## The theme type of a title.
const TITLE: StringName = &"QuestTitle"
## The theme type of a step to do.
const STEP: StringName = &"QuestStep"
## The theme type of a step that the quest can be done without.
const OPTIONAL_STEP: StringName = &"QuestStepOptional"
## The theme type of a step that is done.
const DONE_STEP: StringName = &"QuestStepDone"

## How many quests it shows at most. Those that began last come first, and the others wait until one is over.
@export_range(1, 20, 1, "or_greater", "hide_slider") var most_quests: int = 3:
	set(value):
		most_quests = maxi(value, 1)
		_show_later()
## Show the steps that are done too, until the quest is over.
@export var shows_done_steps: bool = false:
	set(value):
		shows_done_steps = value
		_show_later()
## Show the steps that come later too, but for hidden ones.
@export var shows_coming_steps: bool = false:
	set(value):
		shows_coming_steps = value
		_show_later()
## Hide the whole while there is nothing to show, such as an empty panel around it.
@export var hides_when_empty: bool = true:
	set(value):
		hides_when_empty = value
		_show_later()

@export_group("Words")
## How a step is written that counts to more than one. [code]{says}[/code], [code]{count}[/code] and [code]{how_many}[/code] are
## filled in. It is translated, when the game has a translation of it.
@export var counted_step: String = "{says} {count}/{how_many}"
## How a step is written that counts to one.
@export var plain_step: String = "{says}"
## How a step is written that the quest can be done without. [code]{step}[/code] is the step as it is written otherwise.
@export var optional_step: String = "{step} (optional)"

var _shows_soon: bool = false


func _enter_tree() -> void:
	var book := SCQuests.watch(get_tree())
	if book != null and not book.changed.is_connected(_show_later):
		book.changed.connect(_show_later)
	_show_later()


func _exit_tree() -> void:
	var book := SCQuests.watch(get_tree())
	if book != null and book.changed.is_connected(_show_later):
		book.changed.disconnect(_show_later)


func _notification(what: int) -> void:
	if what == NOTIFICATION_TRANSLATION_CHANGED:
		_show_later()


## The lines it shows, top to bottom, each an [Array] of text and theme type: for a game that draws them in its own way.
func lines() -> Array[Array]:
	var shown: Array[Array] = []
	if not is_inside_tree():
		return shown
	var quests: Array[SCQuest] = SCQuests.tracked_quests(get_tree())
	quests.reverse()
	for quest: SCQuest in quests.slice(0, most_quests):
		shown.append([quest.shown_title(), TITLE])
		for at in quest.steps.size():
			var line := _line_of(quest, at)
			if not line.is_empty():
				shown.append(line)
	return shown


func _line_of(quest: SCQuest, at: int) -> Array:
	if not SCQuests.step_shown(quest, at):
		return []
	var step := quest.steps[at]
	var is_done := SCQuests.step_done(quest, at)
	var is_now := SCQuests.step_counts_now(quest, at)
	if not is_now and not (shows_done_steps if is_done else shows_coming_steps):
		return []
	var written := counted_step if step.needed() > 1 else plain_step
	var text := tr(written).format({"says": step.shown_text(), "count": SCQuests.step_count(quest, at), "how_many": step.needed()})
	if step.optional:
		text = tr(optional_step).format({"step": text})
	return [text, DONE_STEP if is_done else (OPTIONAL_STEP if step.optional else STEP)]


# However much happens in a frame, it is put together once.
func _show_later() -> void:
	if not _shows_soon:
		_shows_soon = true
		_show_lines.call_deferred()


func _show_lines() -> void:
	_shows_soon = false
	if not is_inside_tree():
		return
	var shown := lines()
	for at in shown.size():
		var label := _label(at)
		label.text = shown[at][0]
		label.theme_type_variation = shown[at][1]
		label.visible = true
	for at in range(shown.size(), _labels().size()):
		_labels()[at].visible = false
	if hides_when_empty:
		visible = not shown.is_empty()


func _label(at: int) -> Label:
	var there := _labels()
	if at < there.size():
		return there[at]
	var label := Label.new()
	label.autowrap_mode = TextServer.AUTOWRAP_WORD_SMART
	# The texts have been translated already, with the numbers in them.
	label.auto_translate_mode = Node.AUTO_TRANSLATE_MODE_DISABLED
	label.mouse_filter = Control.MOUSE_FILTER_IGNORE
	add_child(label, false, Node.INTERNAL_MODE_BACK)
	return label


# Its own, which come after those that a game put in.
func _labels() -> Array[Label]:
	var own: Array[Label] = []
	for child: Node in get_children(true).slice(get_child_count()):
		if child is Label:
			own.append(child as Label)
	return own
