extends Story
## The village, played by its recording: what is bought, looted, worn, fought, told and written down. Then its conversation and its
## panels with a gamepad and with the mouse.

const Village := preload("res://demo/village/village.gd")
const FOLDER: String = "res://demo/village/"
const QUEST: SCQuest = preload("res://demo/village/odo/meadow_quest.tres")

var village: Village
## What each machine has gone through, innermost states alone, by the name of the node it is on.
var gone_through: Dictionary[String, Array] = {}
## What came into the player's pack, and what was said.
var came_in: Dictionary[String, int] = {}
var said: PackedStringArray = []
var _size_before := Vector2i.ZERO


func most_frames() -> int:
	return 80 * FPS


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_size_before = tree.root.size
	tree.root.size = Vector2i(1152, 648)
	gone_through.clear()
	came_in.clear()
	said.clear()
	village = add((load(FOLDER + "village.tscn") as PackedScene).instantiate())
	for of: SCMachine in SCMachine.machines_in_the_scene():
		var states: Array[StringName] = []
		gone_through[String(of.get_parent().name)] = states
		of.state_changed.connect(func(_from: SCMachineState, _to: SCMachineState) -> void: states.append_array(of.active_states().map(_name_of)))
	var pack: SCInventory = village.get_node("Player/Pack")
	pack.item_added.connect(func(what: SCItem, how_many: int) -> void: came_in[what.item_name] = came_in.get(what.item_name, 0) + how_many)
	box().shown_whole.connect(func() -> void: said.append((box().find_child("Words") as RichTextLabel).get_parsed_text()))


func close() -> void:
	tree.root.size = _size_before
	await super()


func _name_of(one: SCMachineState) -> StringName:
	return one.state_name


func on(thing: String) -> SCMachine:
	return village.get_node(thing + "/Machine")


func box() -> SCDialogueBox:
	return village.get_node("Screen/Talk")


func panel(name: String) -> SCInventoryPanel:
	return village.get_node("Screen/Panels/%s/Slots" % name)


func gold() -> Variant:
	return SCMachine.global_value(&"gold")


func item(file: String) -> SCItem:
	return load(FOLDER + "items/%s.tres" % file)


func bag(path: String) -> SCInventory:
	return village.get_node(path)


func is_seen(path: String) -> bool:
	return (village.get_node(path) as CanvasItem).is_visible_in_tree()


## The buttons of the answers that can be picked, and those that are greyed, by their words.
func answers(greyed: bool = false) -> Array:
	return box().find_children("*", "Button", true, false).filter(
		func(button: Button) -> bool: return button.disabled == greyed and not button.is_queued_for_deletion()).map(func(button: Button) -> String: return button.text)


func put_player(at: Vector2) -> void:
	(village.get_node("Player") as Node2D).position = at
	await physics_frames(3)


## It has been in these states one after the other, whatever else came in between.
func expect_went(thing: String, states: Array) -> void:
	var at := 0
	for one: StringName in gone_through[thing]:
		at += int(at < states.size() and one == states[at])
	expect(at == states.size(), "%s did not come to %s (number %d) on its way: %s" % [thing, states[mini(at, states.size() - 1)], at + 1, gone_through[thing]])


func pad(button: JoyButton) -> void:
	for is_down: bool in [true, false]:
		var event := InputEventJoypadButton.new()
		event.button_index = button
		event.pressed = is_down
		Input.parse_input_event(event)
		await physics_frames(3)


func click(at: Control, shift: bool = false) -> void:
	var place := at.get_global_rect().get_center()
	var motion := InputEventMouseMotion.new()
	motion.position = place
	motion.global_position = place
	tree.root.push_input(motion)
	for is_down: bool in [true, false]:
		var event := InputEventMouseButton.new()
		event.button_index = MOUSE_BUTTON_LEFT
		event.pressed = is_down
		event.shift_pressed = shift
		event.position = place
		event.global_position = place
		tree.root.push_input(event)
		await physics_frames(3)


func answer_button(words: String) -> Button:
	for button: Button in box().find_children("*", "Button", true, false):
		if button.text == words and not button.is_queued_for_deletion():
			return button
	return null


func test_the_recording_tells_the_whole_story() -> void:
	var rewards := [0]
	var purse_before := [0]
	var book := SCQuests.watch(tree)
	var on_step := func(_quest: SCQuest, _step: int) -> void: purse_before[0] = SCMachine.global_value(&"gold")
	var on_done := func(_quest: SCQuest) -> void: rewards[0] += 1
	book.step_completed.connect(on_step)
	book.quest_done.connect(on_done)
	var recording := village.play_by_itself()
	var least_health: int = 10
	var greyed: Array = []
	var hero := on("Player")
	var tracked: PackedStringArray = []
	while recording.is_playing():
		await physics_frames(1)
		least_health = mini(least_health, hero.get_value(&"health"))
		for words: String in answers(true):
			if not greyed.has(words):
				greyed.append(words)
		for line: Array in (village.get_node("Screen/Tracker") as SCQuestTracker).lines():
			if not tracked.has(line[0]):
				tracked.append(line[0])
	# The book outlives the story.
	book.step_completed.disconnect(on_step)
	book.quest_done.disconnect(on_done)
	expect_went("Odo", ["Talking", "Waiting", "Talking", "Waiting"])
	expect(said.has("Three slimes have taken my meadow! Bare hands will not do. Buy a sword from Marta first. Will you help?"), str(said))
	expect_equal(greyed[0], "Could you lend me a little gold?  (You have 20.)")
	expect_equal(said.count("A well, a shop and a meadow. It used to be quiet. Chests are for everybody here, so help yourself."), 1)
	# The helmet was too dear at first, and not when the quest was done.
	expect_went("Marta", ["Offering", "Refusing", "Selling", "Offering", "Taking The Money", "Offering", "Taking The Money", "Waiting", "Offering", "Taking The Money", "Waiting"])
	expect(said.has("Come back when you have 30 gold. You have 20."))
	expect_equal([came_in["Iron Sword"], came_in["Steel Helmet"]], [1, 1])
	expect_equal([bag("Marta/Shelf").count(item("iron_sword")), bag("Marta/Shelf").count(item("steel_helmet")), bag("Marta/Shelf").count(item("healing_potion"))], [0, 0, 4])
	expect_went("Chest", ["Open", "Shut"])
	expect(bag("Chest/Inventory").is_empty(), "something is left in the chest")
	# What is worn is seen, and counts.
	expect_went("Figure", ["Sword", "Cap", "Bare Head", "Helmet"])
	expect_equal([is_seen("Player/Figure/Hand/Sword"), is_seen("Player/Figure/Cap"), is_seen("Player/Figure/Helmet")], [true, false, true])
	expect_equal(hero.get_value(&"defence"), 2)
	# The fight: with the cap on, a hit takes three.
	for slime: String in ["Slime1", "Slime2", "Slime3"]:
		expect_went(slime, ["Chasing", "Reeling", "Dying", "Gone"])
	expect_equal(least_health, 7)
	expect_went("Player", ["Swinging", "Drinking", "Walking"])
	expect_equal(hero.get_value(&"health"), 10)
	expect(came_in["Slime Jelly"] + came_in["Healing Potion"] == 3 + 3, "three came from the shop and the chest, three from the slimes: %s" % came_in)
	# The quest, its line on the screen, and its reward, once.
	for line: String in ["Peace for the Meadow", "Buy a sword from Marta", "Drive the slimes out of the meadow 0/3", "Drive the slimes out of the meadow 2/3", "Tell Odo"]:
		expect(tracked.has(line), "%s was never shown: %s" % [line, tracked])
	expect_equal(SCQuests.status_of(QUEST), SCQuests.Status.DONE)
	expect_equal([rewards[0], came_in["Honey Cake"]], [1, 2])
	expect_equal(gold(), purse_before[0] + 25 - 30)
	expect(not is_seen("Screen/Tracker"), "the tracker is still there")
	# The stone.
	var scores: Array = on("Board").get_value(&"scores")
	expect_equal(scores.map(func(row: Dictionary) -> String: return row["name"]), ["Marta", "You", "Odo"])
	expect((village.get_node("Board/Scores") as Label).text.contains("2.  You  %.1f s" % scores[1]["score"]))
	expect_equal((village.get_node("Screen/Gold") as Label).text, str(gold()))


func test_a_gamepad_will_do() -> void:
	await put_player(Vector2(484, 285))
	await pad(JOY_BUTTON_A)
	expect_state(on("Odo"), "Talking")
	expect(box().is_typing(), "all letters are there at once")
	await pad(JOY_BUTTON_A)
	expect_equal(answers(), ["Is there any work?", "What is this place?", "Nothing. Good day!"])
	await pad(JOY_BUTTON_DPAD_DOWN)
	await pad(JOY_BUTTON_A)
	for press in 3:
		await pad(JOY_BUTTON_A)
	expect_equal(answers(), ["Is there any work?", "Nothing. Good day!"], "what is asked once is asked once")
	await pad(JOY_BUTTON_B)
	expect_state(on("Odo"), "Waiting")
	await put_player(Vector2(200, 450))
	await pad(JOY_BUTTON_A)
	expect_states(on("Player"), ["Busy", "Looking"])
	expect(is_seen("Screen/Panels/Chest") and is_seen("Screen/Panels/Pack"), "the panels are not open")
	# The cap is moved over. Of the two potions one is taken up and put down two slots further on.
	await pad(JOY_BUTTON_RIGHT_SHOULDER)
	expect_equal(bag("Player/Pack").count(item("leather_cap")), 1)
	await pad(JOY_BUTTON_DPAD_RIGHT)
	await pad(JOY_BUTTON_X)
	await pad(JOY_BUTTON_DPAD_DOWN)
	await pad(JOY_BUTTON_A)
	expect_equal([bag("Chest/Inventory").stack_at(1).how_many, bag("Chest/Inventory").stack_at(5).how_many], [1, 1])
	await pad(JOY_BUTTON_B)
	expect_state(on("Player"), "Walking")
	expect_state(on("Chest"), "Shut")
	await pad(JOY_BUTTON_START)
	await pad(JOY_BUTTON_Y)
	expect_equal(bag("Player/Worn").worn(&"head"), item("leather_cap"))
	expect_equal(on("Player").get_value(&"defence"), 1)
	await pad(JOY_BUTTON_B)
	expect(not is_seen("Screen/Panels/Pack"), "the panel is still open")


func test_the_mouse_will_do() -> void:
	await put_player(Vector2(484, 285))
	on("Odo").send_event(&"USED")
	await physics_frames(3)
	await click(box())
	await click(answer_button("Is there any work?"))
	await click(box())
	await click(answer_button("I will."))
	expect_equal(SCQuests.status_of(QUEST), SCQuests.Status.ACTIVE)
	for press in 2:
		await click(box())
	expect_state(on("Odo"), "Waiting")
	# Buying by a click on the shelf and one on the answer.
	on("Marta").send_event(&"USED")
	await physics_frames(5)
	await click(panel("Shop").slot_button(0))
	await click(box())
	await click(answer_button("I'll take it."))
	expect_equal([bag("Player/Pack").count(item("iron_sword")), gold()], [1, 8])
	expect(SCQuests.step_done(QUEST, 0))
	await click(village.get_node("Screen/Close") as Button)
	expect(not is_seen("Screen/Panels/Pack"), "the panels are still open")
	# Out of the chest with Shift, and into the hand by taking up and putting down.
	on("Chest").send_event(&"USED")
	await physics_frames(5)
	await click(panel("Chest").slot_button(0), true)
	expect_equal(bag("Player/Pack").count(item("leather_cap")), 1)
	await click(village.get_node("Screen/Close") as Button)
	expect(not is_seen("Screen/Panels/Pack"), "the panels are still open")
	await _open_the_pack()
	await click(panel("Pack").slot_button(0))
	await click(panel("Worn").slot_button(0))
	expect(bag("Player/Worn").worn(&"head") == null, "a sword is worn as a hat")
	await click(panel("Worn").slot_button(1))
	expect_equal(bag("Player/Worn").worn(&"hand"), item("iron_sword"))
	await physics_frames(2)
	expect(is_seen("Player/Figure/Hand/Sword"), "the sword is not seen")


func _open_the_pack() -> void:
	on("Player").send_event(&"look")
	await physics_frames(5)
	expect(is_seen("Screen/Panels/Pack") and is_seen("Screen/Panels/Worn"), "the pack is not open")


func test_what_does_not_fit_is_not_sold() -> void:
	var potion := item("healing_potion")
	bag("Player/Pack").add(item("leather_cap"), 12)
	await put_player(Vector2(190, 262))
	on("Marta").send_event(&"USED")
	await physics_frames(3)
	on("Marta").send_event(&"picked", potion)
	await physics_frames(3)
	box().press()
	await physics_frames(2)
	box().pick(0)
	await physics_frames(3)
	expect_state(on("Marta"), "Shrugging")
	expect_equal([bag("Marta/Shelf").count(potion), gold()], [5, 20])
	for press in 2:
		box().press()
		await physics_frames(3)
	expect_state(on("Marta"), "Selling")


func test_whoever_is_beaten_wakes_up_by_the_well_and_slimes_return() -> void:
	await put_player(Vector2(985, 430))
	for second in 12:
		await advance(1.0)
		if gone_through["Player"].has(&"Waking Up"):
			break
	expect_went("Player", ["Beaten", "Waking Up", "Walking"])
	expect_near((village.get_node("Player") as Node2D).position, Vector2(470, 330), 1.0)
	expect_equal(on("Player").get_value(&"health"), 10)
	for slime: String in ["Slime1", "Slime2", "Slime3"]:
		(village.get_node("Slimes/%s/HurtBox" % slime) as SCHurtBox).take_hit(9.0, null, 1.0)
	await advance(1.0)
	expect_state(on("Board"), "Entering")
	await advance(40.0)
	expect_state(on("Board"), "Waiting")
	for slime: String in ["Slime1", "Slime2", "Slime3"]:
		expect_equal(on("Slimes/" + slime).get_value(&"health"), 5)
		expect_states(on("Slimes/" + slime), ["Awake", "Grazing"])


func test_the_designs_hold_no_mistake_and_no_script() -> void:
	var designs: Dictionary[SCMachineTemplate, bool] = {}
	for of: SCMachine in SCMachine.machines_in_the_scene():
		designs[of.template] = true
	expect_equal(designs.size(), 8)
	for design in designs:
		expect_equal(SCMachineTemplate.findings_in(design), [], design.display_name)
		for one: SCMachineState in design.all_states():
			for action: SCMachineAction in one.actions:
				expect(action.get_script() == null, "%s has an action made from a script" % design)
	for talk: String in ["odo/odo_talk", "marta/deal_talk", "marta/too_dear_talk", "marta/no_room_talk"]:
		expect_equal((load("%s%s.tres" % [FOLDER, talk]) as SCDialogue).problems(), PackedStringArray(), talk)
