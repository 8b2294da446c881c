extends "res://tests/stories/files/page_story.gd"
## The page about saving, done as it says: its tables make the scene and the templates of the demo, and somebody digs, saves, goes
## on in another run of the game, and flips a switch.

const FOLDER := "res://demo/first_save/"
const SAVES := "user://quillstead"
const SLOTS: Array[String] = ["scores", "options", "1", "2"]

var mine: Node2D


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/saving.md")
	_remove_saves()


func close() -> void:
	await super()
	_remove_saves()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	for file in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	var saved: Node = (load(FOLDER + "first_save.tscn") as PackedScene).instantiate()
	expect_equal(told(mine), told(saved))
	saved.free()
	mine.free()


func test_gold_and_the_best_score() -> void:
	await begin()
	expect_shows("Slot 1: 0 gold, best 0", false)
	for i in 3:
		await press("Dig")
	await press("Save")
	expect_shows("Slot 1: 3 gold, best 3", true)
	await press("Dig")
	await press("Continue")
	expect_shows("Slot 1: 3 gold, best 4", true)
	await press("Other")
	expect_shows("Slot 2: 3 gold, best 4", false)
	await press("Dig")
	await press("Dig")
	await press("Save")
	expect_shows("Slot 2: 5 gold, best 5", true)
	await press("Other")
	await press("Continue")
	expect_shows("Slot 1: 3 gold, best 5", true)
	await begin()
	expect_shows("Slot 1: 0 gold, best 5", true)
	await press("Continue")
	expect_shows("Slot 1: 3 gold, best 5", true)


func test_the_switch() -> void:
	await begin()
	var music: CheckButton = mine.get_node(^"Music")
	expect(music.button_pressed)
	music.button_pressed = false
	await frames(2)
	await begin()
	music = mine.get_node(^"Music")
	expect(not music.button_pressed)


func test_the_files_are_as_the_page_shows_them() -> void:
	await begin()
	for i in 12:
		await press("Dig")
	expect_equal(FileAccess.get_file_as_string(SAVES.path_join("scores.json")).strip_edges(), (all_of(r"```json\n([\s\S]+?)```")[0] as String).strip_edges())
	FileAccess.open(SAVES.path_join("scores.json"), FileAccess.WRITE).store_string('{"best": 40}')
	await begin()
	expect_shows("Slot 1: 0 gold, best 40", false)


func test_what_the_page_names_is_there() -> void:
	for named: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(named), named)
	var labels: String = property_of(SCSaveGameAction.new(), "what")["hint_string"]
	for named: String in ["Save The Scene", "Load The Scene", "Delete", "Exists"]:
		expect(("**%s**" % named) in page and named in labels, named)


func begin() -> void:
	if is_instance_valid(mine):
		mine.free()
	made.clear()
	make_all()
	add(mine)
	await frames(2)


func press(button: String) -> void:
	var pressed: Button = mine.get_node(button)
	expect(pressed.visible, "%s is hidden" % button)
	pressed.pressed.emit()
	await frames(2)


func expect_shows(words: String, can_continue: bool) -> void:
	expect_equal((mine.get_node(^"Words") as Label).text, words)
	expect_equal((mine.get_node(^"Continue") as Button).visible, can_continue, words)


## What the page makes. Saved, it is the demo.
func make_all() -> void:
	mine = Node2D.new()
	mine.name = "Mine"
	build(mine, tables("1. The scene")[0])
	for row: Array in [["mine.tres", ["2. A best score", "3. Slots"], "Machine"], ["music.tres", ["4. An option"], "Music/Machine"]]:
		var design := SCMachineTemplate.new()
		for heading: String in row[1]:
			put_in(design, tables(heading)[0])
		design.initial_state = design.states[0]
		made[row[0]] = design
		(mine.get_node(row[2]) as SCMachine).template = design


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	if shown["name"] == "variables":
		return [StringName(typed)] as Array[StringName]
	return super(on, shown, typed)


func _remove_saves() -> void:
	for slot in SLOTS:
		if FileAccess.file_exists(SAVES.path_join(slot + ".json")):
			DirAccess.remove_absolute(SAVES.path_join(slot + ".json"))
