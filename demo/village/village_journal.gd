class_name VillageJournal
extends Journal
## Prints, beside what the machines do, what happens to things, quests and gold, and what is said.

var _gold: Variant


func _ready() -> void:
	super()
	for bag: SCInventory in get_tree().root.find_children("*", "SCInventory", true, false):
		var whose := "%s, %s" % [bag.get_parent().name, bag.name]
		bag.item_added.connect(func(item: SCItem, how_many: int) -> void: _tell(whose, "+%d %s" % [how_many, item.shown_name()]))
		bag.item_taken.connect(func(item: SCItem, how_many: int) -> void: _tell(whose, "-%d %s" % [how_many, item.shown_name()]))
	var book := SCQuests.watch(get_tree())
	book.quest_started.connect(func(quest: SCQuest) -> void: _tell("Quest", "%s begins" % quest.shown_title()))
	book.step_progressed.connect(_on_step)
	book.quest_done.connect(func(quest: SCQuest) -> void: _tell("Quest", "%s is done" % quest.shown_title()))
	for box: SCDialogueBox in get_tree().root.find_children("*", "SCDialogueBox", true, false):
		box.shown_whole.connect(func() -> void: _tell("Said", (box.find_child("Words", true, false) as RichTextLabel).get_parsed_text()))


func _process(delta: float) -> void:
	super(delta)
	var gold: Variant = SCMachine.global_value(&"gold")
	if gold != _gold:
		_gold = gold
		_tell("Purse", "%s gold" % gold)


func _on_step(quest: SCQuest, step: int, count: int) -> void:
	_tell("Quest", "%s %d/%d" % [quest.steps[step].shown_text(), count, quest.steps[step].needed()])
