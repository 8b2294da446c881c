extends RefCounted
## Makes the resources that a game maker fills in: items, quests, dialogues, records and tables.

const FIELD: StringName = &"level"
const LINE: StringName = &"hello"
## Settings that name something inside one of them.
const NAMES: Dictionary[String, StringName] = {"field": FIELD, "line": LINE, "method_name": &"get_index", "signal_name": &"renamed"}
## Settings that name something outside of the game.
const TEXTS: Dictionary[String, String] = {
	"path": "res://project.godot", "program": "true", "scene_path": "res://tests/stories/files/placement/pine.tscn",
}

# Each quest is a new one: what another kind has done to it is not to be complained of.
static var _quests: int = 0

static var _makers: Dictionary[String, Callable] = {
	"SCItem": _item, "SCQuest": _quest, "SCDialogue": _dialogue, "SCData": _record, "SCDataTable": _table,
}


## Null for a class that is none of these.
static func made(class_of: String) -> Resource:
	return _makers[class_of].call() if _makers.has(class_of) else null


## What whoever carries, wears and owns something has under it.
static func belongings() -> Array[Node]:
	var stack := SCItemStack.new()
	stack.item = _item()
	stack.how_many = 3
	var carried := SCInventory.new()
	carried.held = [stack]
	var worn := SCInventory.new()
	worn.slot_names = [_item().equips_to]
	var owned := SCDataNode.new()
	owned.data = _record()
	return [carried, worn, owned]


static func _item() -> SCItem:
	var item := SCItem.new()
	item.item_name = "Lamp"
	item.item_key = &"lamp"
	item.equips_to = &"hand"
	return item


static func _quest() -> SCQuest:
	var step := SCQuestStep.new()
	step.says = "Turn around"
	step.waits_for = &"turn"
	var quest := SCQuest.new()
	quest.title = "The Round"
	_quests += 1
	quest.quest_key = StringName("the_round_%d" % _quests)
	quest.steps = [step]
	return quest


static func _dialogue() -> SCDialogue:
	var line := SCDialogueLine.new()
	line.id = LINE
	line.words = "Hello."
	var dialogue := SCDialogue.new()
	dialogue.lines = [line]
	return dialogue


static func _definition() -> SCDataDefinition:
	var definition := SCDataDefinition.new()
	definition.add_field(FIELD)
	return definition


static func _record() -> SCData:
	var record := SCData.new()
	record.definition = _definition()
	return record


static func _table() -> SCDataTable:
	var table := SCDataTable.new()
	table.definition = _definition()
	table.add_row("first")
	table.add_row("second")
	return table
