extends "res://tests/stories/files/page_story.gd"
## The page about quests, done as it says: its tables make the quest and the scene of the demo, and the baker gets his apples.

const FOLDER := "res://demo/first_quest/"
const MAKES: String = "Make"

## That of the page, compiled once.
static var compiled: GDScript

## What the page makes besides its templates, by the names of the files.
var files: Dictionary[String, Resource] = {}
var orchard: Node2D
var player: CharacterBody2D


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/quests.md")
	SCQuests.forget_all(tree)


func close() -> void:
	for input: StringName in [&"ui_left", &"ui_right", &"ui_up", &"ui_down"]:
		Input.action_release(input)
	files.clear()
	SCQuests.forget_all(tree)
	await super()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	for file in files:
		expect_equal(told(files[file]), told(load(FOLDER + file)), file)
	for file in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		# The quest waits for what the baker sends.
		var said := SCMachineTemplate.findings_in(made[file]).map(func(finding: Dictionary) -> String: return finding["text"])
		expect_equal(said, [all_of(r"\*([a-z ,]+waits for that\.)\*")[0]] if file == "baker.tres" else [], file)
	var saved: Node = (load(FOLDER + "first_quest.tscn") as PackedScene).instantiate()
	expect_equal(told(orchard), told(saved))
	saved.free()
	orchard.free()


func test_the_baker_gets_three_apples() -> void:
	make_all()
	await _play()


func test_the_demo_plays_like_that() -> void:
	orchard = (load(FOLDER + "first_quest.tscn") as PackedScene).instantiate()
	player = orchard.get_node(^"Player")
	files["quest.tres"] = load(FOLDER + "quest.tres")
	files["apple.tres"] = load(FOLDER + "apple.tres")
	files["pie.tres"] = load(FOLDER + "pie.tres")
	await _play()


func test_what_the_script_of_the_page_does() -> void:
	make_all()
	orchard.free()
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	var script_node: Node = compiled.new()
	script_node.set(&"errand", files["quest.tres"])
	add(script_node)
	script_node.call(&"accept")
	expect_equal(script_node.call(&"how_far"), "0 of 3")
	SCQuests.complete(files["quest.tres"], tree)
	expect_printed("Apples for the Baker is done")
	for what: String in ["carries an Inventory", "has a machine"]:
		expect_warning("The reward of the quest \"Apples for the Baker\" has to wait: no node in the group player %s." % what)


func test_what_the_page_names_is_there() -> void:
	for kind: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(kind) or _script_class(kind) != null, kind)
	for method: String in ["forget", "watch", "to_save", "from_save", "forget_all"]:
		expect("`%s`" % method in page and SCQuests.new().has_method(method), method)
	var labels := SCQuestStep.Kind.keys().map(func(key: String) -> String: return key.capitalize())
	expect_equal(tables("1. The quest")[1].slice(1).map(func(row: Array) -> String: return row[0]), labels)
	var shown := shown_settings(SCQuest.new()) + shown_settings(SCQuestStep.new())
	for setting: String in ["In Order", "Optional", "Hidden", "Steps", "Progress Event", "Done Event", "Kind"]:
		expect("**%s**" % setting in page and setting.to_snake_case() in shown, setting)
	for type: String in [SCQuestTracker.TITLE, SCQuestTracker.STEP, SCQuestTracker.OPTIONAL_STEP, SCQuestTracker.DONE_STEP]:
		expect("`%s`" % type in page, type)


func _play() -> void:
	var errand: SCQuest = files["quest.tres"]
	var machine_of_player: SCMachine = player.get_node(^"Machine")
	var bag: SCInventory = player.get_node(^"Bag")
	var lines := func() -> Array: return (orchard.get_node(^"CanvasLayer/Tracker") as SCQuestTracker).lines().map(func(line: Array) -> String: return line[0])
	add(orchard)
	await _walk_to(^"Apple1")
	expect_equal(bag.count(files["apple.tres"] as SCItem), 1)
	expect(not (orchard.get_node(^"Apple1") as Node2D).visible)
	await _walk_to(^"Baker")
	expect_equal(lines.call(), ["Apples for the Baker", "Pick apples 1/3"])
	await _walk_to(^"Apple2")
	await _walk_to(^"Baker")
	await _walk_to(^"Apple3")
	expect_equal(lines.call(), ["Apples for the Baker", "Bring them to the baker"])
	await _walk_to(^"Baker")
	expect_equal(SCQuests.status_of(errand), SCQuests.Status.DONE)
	expect_equal([bag.count(files["apple.tres"] as SCItem), bag.count(files["pie.tres"] as SCItem), machine_of_player.get_value(&"gold")], [0, 1, 5.0])
	expect((orchard.get_node(^"Baker/Thanks") as Label).visible)
	expect_equal(lines.call(), [])


# Straight there, with the arrow keys.
func _walk_to(path: NodePath) -> void:
	var to := (orchard.get_node(path) as Node2D).position
	for i in 600:
		var way := to - player.position
		if way.length() < 8.0:
			break
		for input: StringName in [&"ui_left", &"ui_right", &"ui_up", &"ui_down"]:
			Input.action_release(input)
		if absf(way.x) > 5.0:
			Input.action_press(&"ui_right" if way.x > 0.0 else &"ui_left")
		if absf(way.y) > 5.0:
			Input.action_press(&"ui_down" if way.y > 0.0 else &"ui_up")
		await physics_frames(1)
	for input: StringName in [&"ui_left", &"ui_right", &"ui_up", &"ui_down"]:
		Input.action_release(input)
	await physics_frames(3)
	await frames(1)


func make_all() -> void:
	_make_files(tables("1. The quest")[0])
	orchard = Node2D.new()
	orchard.name = "Orchard"
	build(orchard, tables("2. The orchard")[0])
	var machines := tables("3. The machines")
	for at in 3:
		var design := SCMachineTemplate.new()
		put_in(design, machines[at])
		design.initial_state = design.states[0]
		made[["player.tres", "fruit.tres", "baker.tres"][at]] = design
	player = orchard.get_node(^"Player")
	(player.get_node(^"Machine") as SCMachine).template = made["player.tres"]
	(orchard.get_node(^"Baker/Machine") as SCMachine).template = made["baker.tres"]
	var first := orchard.get_node(^"Apple1") as Node2D
	(first.get_node(^"Machine") as SCMachine).template = made["fruit.tres"]
	for row: Array in [["Apple2", Vector2(820, 320)], ["Apple3", Vector2(700, 440)]]:
		var copy: Node2D = first.duplicate()
		copy.name = row[0]
		copy.position = row[1]
		first.get_parent().add_child(copy)
		copy.owner = orchard
		for child in copy.get_children():
			child.owner = orchard
		orchard.move_child(copy, first.get_index() + (1 if row[0] == "Apple2" else 2))


func _make_files(table: Array) -> void:
	expect_equal(table[0], [MAKES, "Setting", "Value"])
	var whole: Resource
	var last: Resource
	for row: Array in table.slice(1):
		var of: String = row[0].get_slice(" ", 0)
		if "`" in row[0]:
			var file: String = row[0].get_slice("`", 1)
			whole = files.get(file, _instantiated(of) if not files.has(file) else null)
			files[file] = whole
			last = whole
		elif not of.is_empty():
			last = _instantiated(of)
			var list: Array = whole.get(&"steps" if of == "SCQuestStep" else &"reward_items")
			list.append(last)
		set_as_typed(last, row[1], row[2])


func _script_class(of: String) -> GDScript:
	for global in ProjectSettings.get_global_class_list():
		if global["class"] == of:
			return load(global["path"])
	return null


func _instantiated(of: String) -> Object:
	var script := _script_class(of)
	return script.new() if script != null else super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	return files[typed] if files.has(typed) else super(on, shown, typed)
