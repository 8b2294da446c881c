extends Story
## Words for stories about quests. Each starts with an empty quest book and leaves one.

## What the book has told, in order: "started Apples", "Apples 0: 2".
var heard: Array[String] = []


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	SCQuests.forget_all(tree)
	var book := SCQuests.watch(tree)
	book.quest_started.connect(_on_quest.bind("started"))
	book.quest_done.connect(_on_quest.bind("done"))
	book.quest_failed.connect(_on_quest.bind("failed"))
	book.quest_abandoned.connect(_on_quest.bind("abandoned"))
	book.step_progressed.connect(_on_progress)
	book.step_completed.connect(_on_step)


func close() -> void:
	var book := SCQuests.watch(tree)
	for told_by: Dictionary in (SCQuests as GDScript).get_script_signal_list():
		var name: StringName = told_by["name"]
		for connection: Dictionary in book.get_signal_connection_list(name):
			book.disconnect(name, connection["callable"] as Callable)
	SCQuests.forget_all(tree)
	expect_equal(SCQuests._waiting.keys(), [], "events that are waited for in an empty book")
	await super()


## A quest with these steps. Options are its properties.
func quest(title: String, steps: Array, options: Dictionary = {}) -> SCQuest:
	var made: SCQuest = kind(SCQuest, {"title": title}.merged(options, true))
	made.steps.assign(steps)
	return made


## A step that waits for an event.
func on_event(event: StringName, times: int = 1, options: Dictionary = {}) -> SCQuestStep:
	return kind(SCQuestStep, {"waits_for": event, "how_many": times}.merged(options, true))


func collecting(what: SCItem, how_many: int, options: Dictionary = {}) -> SCQuestStep:
	return kind(SCQuestStep, {"kind": SCQuestStep.Kind.COLLECT, "item": what, "how_many": how_many}.merged(options, true))


func talking(to: StringName, options: Dictionary = {}) -> SCQuestStep:
	return kind(SCQuestStep, {"kind": SCQuestStep.Kind.TALK, "talk_to": to}.merged(options, true))


## A node in the group player, with an Inventory and, when it has variables, a machine.
func player(slots: int = 0, variables: Dictionary = {}) -> Node2D:
	var made := body("Player")
	made.add_to_group(&"player")
	add(SCInventory.new(), "Bag", {"slots": slots, "under": made})
	if not variables.is_empty():
		asker(made, {"variables": variables})
	return made


func bag_of(node: Node) -> SCInventory:
	return SCInventory.on(node)


func item(name: String, most_in_a_stack: int = 99) -> SCItem:
	return kind(SCItem, {"item_name": name, "item_key": StringName(name.to_lower()), "most_in_a_stack": most_in_a_stack})


## These events come, one after another, from a machine that has nothing to do with any quest.
func come(events: String) -> void:
	var any := asker()
	for event in events.split(" "):
		any.send_event(event)
	any.free()


## What the steps of a quest have counted.
func counts(of: SCQuest) -> Array:
	return range(of.steps.size()).map(func(at: int) -> int: return SCQuests.step_count(of, at))


## For each step of a quest: "done", "now" or "later".
func told(of: SCQuest) -> Array:
	return range(of.steps.size()).map(func(at: int) -> String:
		return "done" if SCQuests.step_done(of, at) else ("now" if SCQuests.step_counts_now(of, at) else "later"))


func expect_heard(wanted: Array, what: String = "") -> void:
	expect_equal(Array(heard), wanted, what)
	heard.clear()


func expect_status(of: SCQuest, wanted: SCQuests.Status, what: String = "") -> void:
	expect_equal(SCQuests.Status.keys()[SCQuests.status_of(of)], SCQuests.Status.keys()[wanted], what if not what.is_empty() else of.title)


func _on_quest(of: SCQuest, what: String) -> void:
	heard.append("%s %s" % [what, of.title])


func _on_progress(of: SCQuest, step: int, count: int) -> void:
	heard.append("%s %d: %d" % [of.title, step, count])


func _on_step(of: SCQuest, step: int) -> void:
	heard.append("%s %d is done" % [of.title, step])
