extends "res://tests/stories/files/page_story.gd"
## The page about dungeons, done as it says: its tables make the scenes and templates of the demo, and somebody walks through the
## floor, knocks on a wall and goes down to the next one.

const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")

const FOLDER := "res://demo/first_dungeon/"
const TEMPLATES: Dictionary[String, Array] = {
	"door.tres": ["1. A door", 1], "room.tres": ["2. A room", 1], "floor.tres": ["4. The floor", 1], "player.tres": ["4. The floor", 2],
}
const INPUTS: Dictionary[String, StringName] = {"west": &"ui_left", "east": &"ui_right", "north": &"ui_up", "south": &"ui_down"}
const EXTRAS: PackedStringArray = ["boss", "treasure"]
const SIZE := Vector2(480, 288)

## That of the page, compiled once.
static var compiled: GDScript

var dungeon: Node2D
## The scenes that the floor is made of, by the names of their files.
var scenes: Dictionary[String, Node] = {}


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	page = FileAccess.get_file_as_string("res://docs/dungeons.md")


func close() -> void:
	for side in INPUTS:
		Input.action_release(INPUTS[side])
	for input: StringName in [&"ui_accept", &"ui_cancel"]:
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
		var saved: Node = (load(FOLDER + file) as PackedScene).instantiate()
		expect_equal(told(whole[file]), told(saved), file)
		saved.free()
	dungeon.free()


func test_the_floor_is_the_one_of_the_seed() -> void:
	await play_floor()
	var layout := Dungeon.lay_out(12, 6, EXTRAS, true)
	expect_equal(Dungeon.cells.keys(), (layout["cells"] as Dictionary).keys())
	for cell: Vector2i in layout["cells"]:
		var room := Dungeon.room_in(cell) as Node2D
		expect_equal([room.position, (room.get_node(^"Title") as Label).text], [Vector2(cell) * SIZE, layout["cells"][cell]])
	for way: Array in layout["joins"]:
		expect_state(door_between(way[0] as Vector2i, way[1] as Vector2i), "Open")
	for way: Array in layout["secret"]:
		expect_state(door_between(way[0] as Vector2i, way[1] as Vector2i), "Hidden")
	var closed := dungeon.find_children("Machine", "SCMachine", true, false).filter(func(of: SCMachine) -> bool: return current(of) == &"Wall")
	expect_equal(closed.size(), 4 * Dungeon.cells.size() - 2 * ((layout["joins"] as Array).size() + (layout["secret"] as Array).size()))


func test_doors_open_only_where_they_lead_on() -> void:
	await play_floor()
	var player: CharacterBody2D = dungeon.get_node(^"Player")
	var map: SCMinimap = dungeon.get_node(^"Screen/Map")
	for side: String in INPUTS:
		var beyond: Vector2i = Dungeon.SIDES[side]
		var leads_on := (Dungeon.joins as Array).any(func(way: Array) -> bool: return Vector2i.ZERO in way and beyond in way)
		player.position = SIZE / 2.0
		await walk(side, 2.0)
		expect_equal(Dungeon.cell_at(player.position), beyond if leads_on else Vector2i.ZERO, side)
		expect_equal(map.player_cell, Dungeon.cell_at(player.position))
	expect(Dungeon.seen.has(Vector2i.ZERO) and Dungeon.seen.size() > 1)


func test_a_wall_sounds_hollow() -> void:
	await play_floor()
	var player: CharacterBody2D = dungeon.get_node(^"Player")
	var way: Array = Dungeon.secret[0]
	var cell: Vector2i = way[1]
	var side: String = Dungeon.SIDES.find_key((way[0] as Vector2i) - cell)
	player.position = (Vector2(cell) + Vector2(0.5, 0.5)) * SIZE
	await press(&"ui_accept")
	expect_state(door_between(cell, way[0] as Vector2i), "Hidden")
	await walk(side, 1.2)
	expect_equal(Dungeon.cell_at(player.position), cell, "the wall holds")
	await press(&"ui_accept")
	expect_state(door_between(cell, way[0] as Vector2i), "Open")
	# The door on the other side of the wall is as far away again.
	await walk(side, 0.5)
	await press(&"ui_accept")
	await walk(side, 1.0)
	expect_equal(Dungeon.kind_of(Dungeon.cell_at(player.position) as Vector2i), "secret")


func test_the_next_floor() -> void:
	await play_floor()
	var player: CharacterBody2D = dungeon.get_node(^"Player")
	await walk("east", 0.4)
	await press(&"ui_cancel")
	await frames(2)
	expect_equal([Dungeon.floor_seed, player.position], [13, SIZE / 2.0])
	expect_equal(dungeon.get_node(^"Rooms").get_child_count(), Dungeon.cells.size())
	expect_equal(Dungeon.cells.keys(), (Dungeon.lay_out(13, 6, EXTRAS, true)["cells"] as Dictionary).keys())


func test_what_the_script_of_the_page_does() -> void:
	await play_floor()
	if compiled == null:
		compiled = GDScript.new()
		compiled.source_code = all_of(r"```gdscript\n([\s\S]+?)```")[0]
		expect_equal(compiled.reload(), OK)
	var player: Node2D = dungeon.get_node(^"Player")
	for cell: Vector2i in Dungeon.cells:
		player.position = (Vector2(cell) + Vector2(0.5, 0.5)) * SIZE
		expect_equal(compiled.new().call(&"is_in_the_boss_room", player), Dungeon.kind_of(cell) == "boss")


func test_what_the_page_names_is_there() -> void:
	for named: String in all_of(r"\b(SC[A-Z]\w+)"):
		expect(ClassDB.class_exists(named) or named == "SCMinimap", named)
	var map := SCMinimap.new()
	for setting: String in ["shows", "cell_size", "gap"]:
		expect(setting in shown_settings(map), setting)
	expect(map.has_signal(&"room_entered"))
	map.free()


func walk(side: String, seconds: float) -> void:
	Input.action_press(INPUTS[side])
	await advance(seconds)
	Input.action_release(INPUTS[side])
	await frames(2)


func press(input: StringName) -> void:
	Input.action_press(input)
	await frames(3)
	Input.action_release(input)
	await frames(3)


## The machine of the door in the first of two rooms that leads to the second.
func door_between(cell: Vector2i, to: Vector2i) -> SCMachine:
	var side: String = Dungeon.SIDES.find_key(to - cell)
	return Dungeon.room_in(cell).get_node(NodePath("Door%s/Machine" % side.capitalize()))


## As a game would.
func play_floor() -> void:
	make_all()
	var packed := PackedScene.new()
	packed.pack(dungeon)
	dungeon.free()
	tree.change_scene_to_packed(packed)
	await tree.scene_changed
	dungeon = tree.current_scene
	await physics_frames(2)


## What the page makes. Saved, it is the demo.
func make_all() -> void:
	for file in TEMPLATES:
		var design := SCMachineTemplate.new()
		put_in(design, tables(TEMPLATES[file][0] as String)[TEMPLATES[file][1]])
		design.initial_state = design.states[0]
		made[file] = design
	var door := StaticBody2D.new()
	door.name = "Door"
	keep_scene("door.tscn", door, tables("1. A door")[0])
	machine_of(door).template = made["door.tres"]
	var room := Node2D.new()
	room.name = "Room"
	keep_scene("room.tscn", room, tables("2. A room")[0])
	machine_of(room).template = made["room.tres"]
	for row: Array in tables("3. More rooms")[0].slice(1):
		var file: String = row[0].trim_prefix("`").trim_suffix("`")
		var inherited: Node = (load(FOLDER + "room.tscn") as PackedScene).instantiate(PackedScene.GEN_EDIT_STATE_MAIN_INHERITED)
		set_as_typed(inherited.get_node(^"Floor"), "Color", row[1] as String)
		if file == "start.tscn":
			var spot := Marker2D.new()
			spot.name = "PlayerStart"
			spot.position = Vector2(240, 144)
			inherited.add_child(spot)
			spot.owner = inherited
		keep_scene(file, inherited)
	dungeon = Node2D.new()
	dungeon.name = "Dungeon"
	build(dungeon, tables("4. The floor")[0])
	machine_of(dungeon).template = made["floor.tres"]
	machine_of(dungeon.get_node(^"Player")).template = made["player.tres"]


func keep_scene(file: String, root: Node, table: Array = []) -> void:
	if not table.is_empty():
		build(root, table)
	if scenes.has(file):
		scenes[file].free()
	scenes[file] = root


func machine_of(node: Node) -> SCMachine:
	return node.get_node(^"Machine")


## All that the page makes of scenes, by the names of their files.
func all_scenes() -> Dictionary[String, Node]:
	return scenes.merged({"first_dungeon.tscn": dungeon} as Dictionary[String, Node])


func _instantiated(of: String) -> Object:
	if of.ends_with(".tscn"):
		return (load(FOLDER + of) as PackedScene).instantiate()
	return SCMinimap.new() if of == "SCMinimap" else super(of)


func _meant(on: Object, shown: Dictionary, typed: String) -> Variant:
	if shown["name"] == "fight_rooms":
		return Array(Array(typed.split(", ")).map(func(file: String) -> PackedScene: return load(FOLDER + file)), TYPE_OBJECT, &"PackedScene", null)
	if typed.ends_with(".tscn"):
		return load(FOLDER + typed)
	return super(on, shown, typed)
