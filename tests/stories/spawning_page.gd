extends "res://tests/stories/files/page_story.gd"
## The page about spawning, done as it says: its tables make the scenes and templates of the demo, and somebody sees the wood
## planted, ghosts come until there are enough of them, and throws a stone.

const FOLDER := "res://demo/first_spawn/"
const TEMPLATES: Dictionary[String, String] = {"ghost.tres": "2. The ghosts", "meadow.tres": "4. Trees", "player.tres": "5. A stone"}
const INPUTS: Array[StringName] = [&"ui_left", &"ui_right", &"ui_up", &"ui_down", &"ui_accept"]

var meadow: Node2D
## The scenes that appear, by the names of their files.
var scenes: Dictionary[String, Node] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/spawning.md")


func close() -> void:
	for input in INPUTS:
		Input.action_release(input)
	for file in scenes:
		scenes[file].free()
	scenes.clear()
	await super()


func test_the_tables_of_the_page_make_what_the_demo_has() -> void:
	make_all()
	for file in made:
		expect_equal(told(made[file]), told(load(FOLDER + file)), file)
		expect_equal(SCMachineTemplate.findings_in(made[file]), [], file)
	var whole := all_scenes()
	for file in whole:
		expect_as_saved(whole[file], file)
	meadow.free()


func test_the_wood_is_the_same_every_time() -> void:
	await play_meadow()
	var trees := meadow.get_node(^"Trees").get_children().map(func(tree_node: Node2D) -> Vector2: return tree_node.position)
	expect_equal(trees.size(), 40)
	expect(trees.all(func(place: Vector2) -> bool: return Rect2(36, 20, 1080, 100).has_point(place)))
	await play_meadow()
	expect_equal(meadow.get_node(^"Trees").get_children().map(func(tree_node: Node2D) -> Vector2: return tree_node.position), trees)
	# The first ghosts are on their way.
	await advance(1.0)


func test_ghosts_come_until_there_are_four() -> void:
	await play_meadow(Vector2(576, 400))
	var player: Node2D = meadow.get_node(^"Player")
	await advance(0.4)
	expect_equal([ghosts().size(), named("Warning").size()], [0, 1], "the first is announced")
	expect(named("Warning")[0].position in [Vector2(60, 400), Vector2(1092, 400)], "not beside the player, but at %s" % named("Warning")[0].position)
	await advance(0.6)
	expect_equal([ghosts().size(), named("Warning").size()], [1, 0])
	var far: float = ghosts()[0].position.distance_to(player.position)
	await advance(1.0)
	expect_near(far - ghosts()[0].position.distance_to(player.position), 70.0, 2.0)
	await advance(12.0)
	expect_equal(ghosts().size(), 4)
	ghosts()[0].free()
	await advance(3.0)
	expect_equal(ghosts().size(), 4, "another comes in its place")


func test_a_stone_takes_a_ghost_away() -> void:
	await play_meadow()
	var player: CharacterBody2D = meadow.get_node(^"Player")
	var stone: RigidBody2D = meadow.get_node(^"Stone")
	await use()
	expect_states(machine_of(player), ["Playing", "Free"])
	expect_equal(stone.get_parent(), meadow)
	Input.action_press(&"ui_up")
	await advance(0.3)
	Input.action_release(&"ui_up")
	await use()
	expect_states(machine_of(player), ["Playing", "Holding"])
	Input.action_press(&"ui_right")
	await advance(0.3)
	Input.action_release(&"ui_right")
	await advance(0.2)
	expect_near(stone.global_position, (player.get_node(^"Hand") as Node2D).global_position, 2.0)
	var ghost: Node2D = (load(FOLDER + "ghost.tscn") as PackedScene).instantiate()
	ghost.position = player.position + Vector2(200, 0)
	meadow.add_child(ghost)
	await use()
	expect_states(machine_of(player), ["Playing", "Free"])
	await advance(0.5)
	expect(not is_instance_valid(ghost), "the stone is at %s" % stone.global_position)


func test_what_the_page_names_is_there() -> void:
	for named_class: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(named_class), named_class)
	for setting: String in ["every_seconds", "offset", "at_node_path", "store_in", "scene_path"]:
		expect(setting in shown_settings(kind(SCInstantiateAction, {"at": SCInstantiateAction.A_NODE})), setting)


func use() -> void:
	Input.action_press(&"ui_accept")
	await frames(3)
	Input.action_release(&"ui_accept")
	await frames(3)


func ghosts() -> Array:
	return tree.get_nodes_in_group(&"ghosts")


func named(name: String) -> Array:
	return tree.root.find_children(name + "*", "Node2D", true, false).filter(func(node: Node) -> bool: return not node.is_queued_for_deletion())


func machine_of(node: Node) -> SCMachine:
	return node.get_node(^"Machine")


## As a game would, so that what appears goes into the scene that is played.
func play_meadow(player_at: Vector2 = Vector2(576, 380)) -> void:
	make_all()
	(meadow.get_node(^"Player") as Node2D).position = player_at
	var packed := PackedScene.new()
	packed.pack(meadow)
	meadow.free()
	tree.change_scene_to_packed(packed)
	await tree.scene_changed
	meadow = tree.current_scene


func expect_as_saved(scene: Node, file: String) -> void:
	var saved: Node = (load(FOLDER + file) as PackedScene).instantiate()
	expect_equal(told(scene), told(saved), file)
	saved.free()


## What the page makes. Saved, it is the demo.
func make_all() -> void:
	var what_appears := tables("1. What will appear")
	for at: int in 3:
		var file: String = ["tree.tscn", "warning.tscn", "ghost.tscn"][at]
		var root: Node2D = CharacterBody2D.new() if at == 2 else Node2D.new()
		root.name = file.get_basename().to_pascal_case()
		if at == 2:
			set_as_typed(root, "Motion Mode", "Floating")
			set_as_typed(root, "Collision Mask", "0")
			root.add_to_group(&"ghosts", true)
		build(root, what_appears[at])
		if scenes.has(file):
			scenes[file].free()
		scenes[file] = root
	meadow = Node2D.new()
	meadow.name = "Meadow"
	build(meadow, tables("3. The meadow")[0])
	for file in TEMPLATES:
		var design := SCMachineTemplate.new()
		for table: Array in tables(TEMPLATES[file]):
			put_in(design, table)
		design.initial_state = design.states[0]
		made[file] = design
	made["player.tres"].states[0].start_sub_state = made["player.tres"].states[0].sub_states[0]
	machine_of(scenes["ghost.tscn"]).template = made["ghost.tres"]
	machine_of(meadow.get_node(^"Player")).template = made["player.tres"]
	machine_of(meadow).template = made["meadow.tres"]


## All that the page makes of scenes, by the names of their files.
func all_scenes() -> Dictionary[String, Node]:
	return scenes.merged({"first_spawn.tscn": meadow} as Dictionary[String, Node])


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	if typed.ends_with(".tscn"):
		return FOLDER + typed if shown["type"] == TYPE_STRING else load(FOLDER + typed)
	if shown["name"] == "throw":
		return str_to_var("Vector2" + typed)
	return super(on, shown, typed)
