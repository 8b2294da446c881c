extends "res://tests/stories/files/page_story.gd"
## The page about scenes, done as it says: its tables make the player, the rooms and the menus of the demo, and somebody takes coins from
## one room to the other, comes back, starts again, and plays anew.

const SceneChanger := preload("res://addons/quillstead/runtime/quillstead_scene_changer.gd")
const FOLDER := "res://demo/first_scenes/"
const TEMPLATES: Dictionary[String, String] = {
	"player.tres": "1. The player", "door.tres": "2. The door", "coins.tres": "3. The coins", "pause_menu.tres": "4. The pause menu", "title.tres": "6. The title",
}
const MOST_SECONDS: float = 10.0
const INPUTS: Array[StringName] = [&"ui_left", &"ui_right", &"ui_up", &"ui_down", &"ui_cancel"]

## That of the page, compiled once.
static var compiled: GDScript

var coin: SCItem
## By the names of their files.
var scenes: Dictionary[String, Node] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/scenes.md")


func close() -> void:
	for input in INPUTS:
		Input.action_release(input)
	for scene: Node in scenes.values():
		scene.free()
	await super()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	expect_equal(told(coin), told(load(FOLDER + "coin.tres")))
	for file in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	for file in scenes:
		var saved: Node = (load(FOLDER + file) as PackedScene).instantiate()
		expect_equal(told(scenes[file]), told(saved), file)
		saved.free()


func test_coins_go_from_room_to_room() -> void:
	await begin_at_the_title()
	await press_button(^"Play")
	await arrive_in("Yard")
	expect_equal(player().position, Vector2(200, 300))
	await walk(&"ui_right", func() -> bool: return coins() == 5)
	expect_equal([coins(), words_on(0)], [5, "Gold Coin 5"])
	await frames(2)
	expect(not tree.current_scene.has_node(^"Coins"))
	await walk(&"ui_right", func() -> bool: return tree.current_scene.name == &"Cave")
	await arrive_in("Cave")
	expect_equal([coins(), words_on(0)], [5, "Gold Coin 5"])
	expect_near(player().position, Vector2(300, 300), 30.0)
	await walk(&"ui_right", func() -> bool: return coins() == 8)
	await walk(&"ui_left", func() -> bool: return tree.current_scene.name == &"Yard")
	await arrive_in("Yard")
	expect_near(player().position, Vector2(700, 300), 30.0)
	expect_equal([coins(), tree.current_scene.has_node(^"Coins")], [8, false], "the room is as it was left")


func test_starting_again_and_beginning_anew_from_the_menu() -> void:
	await begin_at_the_title()
	await press_button(^"Play")
	await arrive_in("Yard")
	await walk(&"ui_right", func() -> bool: return coins() == 5)
	await press_escape()
	expect(tree.paused)
	expect((tree.current_scene.get_node(^"PauseMenu/Buttons") as Control).visible)
	var was := player().position
	Input.action_press(&"ui_left")
	await frames(5)
	Input.action_release(&"ui_left")
	expect_equal(player().position, was)
	await press_escape()
	expect(not tree.paused and not (tree.current_scene.get_node(^"PauseMenu/Buttons") as Control).visible)
	await press_escape()
	await press_button(^"PauseMenu/Buttons/GoOn")
	expect(not tree.paused)
	await press_escape()
	await press_button(^"PauseMenu/Buttons/Again")
	await arrive_in("Yard")
	expect_equal([tree.paused, coins(), tree.current_scene.has_node(^"Coins"), player().position], [false, 0, true, Vector2(200, 300)])
	await walk(&"ui_right", func() -> bool: return coins() == 5)
	await walk(&"ui_right", func() -> bool: return tree.current_scene.name == &"Cave")
	await arrive_in("Cave")
	await walk(&"ui_right", func() -> bool: return coins() == 8)
	await press_escape()
	await press_button(^"PauseMenu/Buttons/Again")
	await arrive_in("Cave")
	expect_equal([coins(), player().position], [5, Vector2(900, 300)], "as one came in")
	await press_escape()
	await press_button(^"PauseMenu/Buttons/Leave")
	await arrive_in("Title")
	expect(not tree.paused)
	await press_button(^"Play")
	await arrive_in("Yard")
	expect_equal([coins(), tree.current_scene.has_node(^"Coins")], [0, true], "a new game")


func test_what_the_script_of_the_page_does() -> void:
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	await begin_at_the_title()
	await press_button(^"Play")
	await arrive_in("Yard")
	expect_equal(compiled.new().call(&"has_come_from_elsewhere", player()), false)
	player().position = Vector2(800, 300)
	await until(func() -> bool: return tree.current_scene.name == &"Cave")
	await arrive_in("Cave")
	expect_equal(compiled.new().call(&"has_come_from_elsewhere", player()), true)


func begin_at_the_title() -> void:
	tree.change_scene_to_file(FOLDER + "title.tscn")
	await tree.scene_changed
	await frames(1)


func player() -> CharacterBody2D:
	return tree.current_scene.get_node(^"Player")


func coins() -> int:
	return (player().get_node(^"Pack") as SCInventory).count(load(FOLDER + "coin.tres") as SCItem)


func words_on(place: int) -> String:
	var slot := (player().get_node(^"Hud/PackPanel") as SCInventoryPanel).slot_button(place)
	return ("%s %s" % [slot.text, (slot.get_node(^"Count") as Label).text]).strip_edges()


func press_button(path: NodePath) -> void:
	(tree.current_scene.get_node(path) as Button).pressed.emit()
	await frames(2)


func press_escape() -> void:
	Input.action_press(&"ui_cancel")
	await frames(2)
	Input.action_release(&"ui_cancel")
	await frames(2)


func walk(input: StringName, done: Callable) -> void:
	Input.action_press(input)
	await until(done)
	Input.action_release(input)


func until(done: Callable) -> void:
	for i in int(MOST_SECONDS * FPS):
		if tree.current_scene != null and done.call():
			return
		await frames(1)
	expect(false, "it never comes to that")


func arrive_in(name: StringName) -> void:
	await until(func() -> bool: return tree.current_scene.name == name and not tree.root.has_node(^"QuillSteadSceneChanger") and not SceneChanger.is_leaving())


## What the page makes. Saved, it is the demo.
func make_all() -> void:
	coin = SCItem.new()
	for row: Array in tables("# Scenes")[0].slice(1):
		set_as_typed(coin, row[1] as String, row[2] as String)
	for file in TEMPLATES:
		var design := SCMachineTemplate.new()
		for table: Array in tables(TEMPLATES[file]):
			if table[0][1] == "Setting":
				put_in(design, table)
		design.initial_state = design.states[0]
		made[file] = design
	expect("tick **Carries Over** of the template" in page)
	made["player.tres"].carries_over = true
	_make_scene("player.tscn", CharacterBody2D.new(), "Player", tables("1. The player")[0])
	(scenes["player.tscn"] as CharacterBody2D).motion_mode = CharacterBody2D.MOTION_MODE_FLOATING
	scenes["player.tscn"].add_to_group(&"player", true)
	(scenes["player.tscn"].get_node(^"Machine") as SCMachine).template = made["player.tres"]
	_make_scene("pause_menu.tscn", CanvasLayer.new(), "PauseMenu", tables("4. The pause menu")[0])
	scenes["pause_menu.tscn"].process_mode = Node.PROCESS_MODE_ALWAYS
	(scenes["pause_menu.tscn"].get_node(^"Machine") as SCMachine).template = made["pause_menu.tres"]
	_make_scene("yard.tscn", Node2D.new(), "Yard", tables("5. The rooms")[0])
	_make_scene("cave.tscn", Node2D.new(), "Cave", tables("5. The rooms")[1])
	_make_scene("title.tscn", Control.new(), "Title", tables("6. The title")[0])
	(scenes["title.tscn"].get_node(^"Play/Machine") as SCMachine).template = made["title.tres"]


func _make_scene(file: String, top: Node, name: String, table: Array) -> void:
	top.name = name
	build(top, table)
	scenes[file] = top


func _script_of(named: String) -> Script:
	for row in ProjectSettings.get_global_class_list():
		if row["class"] == named:
			return load(row["path"] as String)
	return null


func _instantiated(of: String) -> Object:
	if of.ends_with(".tscn"):
		return (load(FOLDER + of) as PackedScene).instantiate()
	var script := _script_of(of)
	return script.new() if script != null else super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	match String(shown["name"]):
		"held":
			return [kind(SCItemStack, {"item": coin, "how_many": typed.to_int()})] as Array[SCItemStack]
		"starting_values":
			var values := {}
			for pair in typed.split(", "):
				values[StringName(pair.get_slice(": ", 0))] = pair.get_slice(": ", 1)
			return values
	return super(on, shown, typed)
