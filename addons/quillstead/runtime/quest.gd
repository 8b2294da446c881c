@tool
class_name SCQuest
extends Resource
## A quest: what it is called, the steps to do, and what doing them is worth. Save each as a file of its own, so that every machine
## that names it means the same one.
##
## How far it has got is not kept here but in the quest book, [SCQuests]. Start it with a Start Quest action, or with
## [method SCQuests.start]; its steps then tick themselves off, and it is done with the last one that is not optional. A quest
## without steps goes on until a Complete Quest action ends it.
## [br][br]
## Its events go to every machine that has a transition for them. They carry the quest, and Progress Event carries a [Dictionary]
## with the keys [code]quest[/code], [code]step[/code], [code]count[/code] and [code]how_many[/code].

## What the keys of quests begin with that no saved game can find again.
const MADE: String = "made:"

## What the player reads. It is translated, when the game has a translation of it.
@export var title: String:
	set(value):
		title = value
		emit_changed()
## What it is about, for a quest log.
@export_multiline var description: String
## What there is to do. An optional step comes before the last one that is not, as the quest ends with that one.
@export var steps: Array[SCQuestStep] = []:
	set(value):
		steps = value
		emit_changed()
## The steps are done one after another. Off, all of them count from the beginning.
@export var in_order: bool = true:
	set(value):
		in_order = value
		emit_changed()

@export_group("Reward")
## What the player gets: it goes into the inventory that the first node in the group [code]player[/code] carries. What does not fit
## is kept until there is room.
@export var reward_items: Array[SCItemStack] = []
## A number of the player's machine that grows, such as [code]gold[/code]. Empty is none.
@export var reward_variable: StringName
## By how much it grows.
@export var reward_amount: float = 0.0

@export_group("Events")
## Sent as it begins.
@export var started_event: StringName = &"QUEST_STARTED"
## Sent each time a step counts.
@export var progress_event: StringName = &"QUEST_PROGRESS"
## Sent as it is done, with the reward already given.
@export var done_event: StringName = &"QUEST_DONE"
## Sent as it fails.
@export var failed_event: StringName = &"QUEST_FAILED"
## Sent as the player gives it up.
@export var abandoned_event: StringName = &"QUEST_ABANDONED"

@export_group("Saved Games")
## What saved games know it by. Empty is its file, which is right for most. Fill it in for quests that are to survive being moved to
## another folder.
@export var quest_key: StringName


## The title that a player sees, or else the name of its file.
func shown_title() -> String:
	if not title.is_empty():
		return tr(title)
	if not resource_name.is_empty():
		return tr(resource_name)
	if not resource_path.is_empty() and not resource_path.contains("::"):
		return resource_path.get_file().get_basename().capitalize()
	return "a quest"


## What tells it from other quests: [member quest_key], or else its file. A quest without either is only itself.
func key() -> String:
	if not quest_key.is_empty():
		return quest_key
	return resource_path if not resource_path.is_empty() else MADE + str(get_instance_id())
