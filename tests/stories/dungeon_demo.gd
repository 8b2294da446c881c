extends Story
## The dungeon, played by its recording: what is found, fought, bought and saved, and a second play from the file that comes to the
## same end. Then its seeds, its way with a gamepad, and what comes of being beaten.

const Title := preload("res://demo/dungeon/dungeon.gd")
const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")
const FOLDER: String = "res://demo/dungeon/"
const FILES: PackedStringArray = ["user://quillstead/dungeon.scene.json", "user://quillstead/dungeon_seed.json"]
const GLOBALS: PackedStringArray = ["seed", "floor", "gold", "rooms cleared", "kings beaten"]

## What each machine has gone through, by the name of the node it is on.
var gone_through: Dictionary[String, Array] = {}
## What was held whenever a machine came into a state: "Menu Saved" and the like.
var held_at: Dictionary[String, Array] = {}
var most_bullets: int = 0
var _size_before := Vector2i.ZERO
var _scenes: Array[PackedScene] = []


func most_frames() -> int:
	return 300 * FPS


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	_size_before = tree.root.size
	tree.root.size = Vector2i(1152, 648)
	gone_through.clear()
	held_at.clear()
	most_bullets = 0
	_forget_files()
	# What is loaded already takes no frames to be changed to.
	for path in Title.SCENES:
		_scenes.append(load(path))
	tree.node_added.connect(_on_node_added)


func close() -> void:
	tree.node_added.disconnect(_on_node_added)
	_scenes.clear()
	tree.root.size = _size_before
	_forget_files()
	await super()


func _forget_files() -> void:
	for file in FILES:
		DirAccess.remove_absolute(ProjectSettings.globalize_path(file))


func _on_node_added(node: Node) -> void:
	if node is SCMachine:
		(node as SCMachine).state_changed.connect(_on_changed.bind(node))


func _on_changed(before: SCMachineState, now: SCMachineState, of: SCMachine) -> void:
	var who := String(of.get_parent().name).rstrip("0123456789,- ") if of.is_inside_tree() else ""
	# Without one before, it begins, or goes on as it was saved.
	if now == null or who.is_empty() or (before == null and now.state_name != &"Building"):
		return
	var states: Array = gone_through.get_or_add(who, [])
	states.append(now.state_name)
	if who in ["Menu", "Floor", "Dungeon"]:
		var kept: Array = held_at.get_or_add("%s %s" % [who, now.state_name], [])
		kept.append(held())


## Everything that counts at the end: the globals, and what the player has.
func held() -> Dictionary:
	var all := {}
	for name in GLOBALS:
		all[name] = SCMachine.global_value(StringName(name))
	for player in tree.get_nodes_in_group(&"player"):
		all["health"] = SCMachine.machine_of(player).get_value(&"health")
		for bag: SCInventory in player.find_children("*", "SCInventory", true, false):
			all[String(bag.name)] = bag.held.map(func(stack: SCItemStack) -> String: return "%d %s" % [stack.how_many, stack.item.item_name])
	return all


func scene() -> Node:
	return tree.current_scene


func on(thing: String) -> SCMachine:
	return scene().get_node(thing + "/Machine")


func times(who: String, state_name: StringName) -> int:
	return (gone_through.get(who, []) as Array).count(state_name)


func go_to(path: String) -> void:
	tree.change_scene_to_file(path)
	await tree.scene_changed
	await physics_frames(3)


func until_scene(name: String) -> void:
	for frame in 5 * FPS:
		await physics_frames(1)
		if scene() != null and scene().name == name:
			break
	expect(scene() != null and scene().name == name, "%s never came" % name)
	await physics_frames(40)


## From the title, wherever that is.
func begin(typed: String) -> void:
	if scene() == null:
		await go_to(Title.SCENES[0])
	(scene().get_node("Column/Row/Seed") as LineEdit).text = typed
	(scene().get_node("Column/Start") as Button).pressed.emit()
	await until_scene("Floor")


## The rooms that stand, by their names, with the scenes that they are made of.
func rooms() -> Dictionary:
	var found := {}
	for room in scene().get_node("Rooms").get_children():
		if not room.is_queued_for_deletion():
			found[String(room.name)] = room.scene_file_path
	return found


func wares() -> Array:
	return scene().find_children("Ware*", "", true, false).map(
		func(ware: Node) -> String: return "%s %s" % [(ware.get_node("Name") as Label).text, (ware.get_node("Price") as Label).text])


func pad(button: JoyButton, for_frames: int = 3) -> void:
	for is_down: bool in [true, false]:
		var event := InputEventJoypadButton.new()
		event.button_index = button
		event.pressed = is_down
		Input.parse_input_event(event)
		await physics_frames(for_frames)


func test_the_recording_saves_in_the_middle_and_comes_to_the_same_end_twice() -> void:
	await go_to(Title.SCENES[0])
	var recording := Title.play_by_itself(stage)
	var rooms_at_save := {}
	var seen_at_save := {}
	var rooms_loaded := {}
	while recording.is_playing():
		await physics_frames(1)
		most_bullets = maxi(most_bullets, tree.root.find_children("*", "Area2D", true, false).filter(
			func(area: Node) -> bool: return area.scene_file_path.begins_with(FOLDER + "bullets/")).size())
		if times("Menu", &"Saved") == 1 and rooms_at_save.is_empty():
			rooms_at_save = rooms()
			seen_at_save = Dungeon.seen.duplicate()
		elif times("Dungeon", &"Continuing") == 1 and rooms_loaded.is_empty() and scene() != null and scene().name == "Floor":
			rooms_loaded = rooms()
			expect_equal(held(), held_at["Menu Saved"][0], "what was saved is there again")
			expect_equal(Dungeon.seen, seen_at_save, "the map knows where the player has been")
	expect_equal(rooms_loaded, rooms_at_save)
	# The seed was typed, a wall crumbled, and a chest was opened, each in the first half alone.
	expect_equal(held_at["Floor Building"][0]["seed"], 12)
	expect_equal([times("DoorNorth", &"Crumbling"), times("Chest", &"Opening")], [1, 1])
	# Two fights before the file and three after it, those twice. Doors shut for each.
	expect_equal(held_at["Menu Saved"][0]["rooms cleared"], 2)
	expect_equal([times("Room", &"Fighting"), times("Room", &"Cleared")], [2 + 3 + 3, 2 + 3 + 3])
	expect(times("DoorSouth", &"Shut") > 0 and times("DoorSouth", &"Shut") <= times("DoorSouth", &"Open"), "%s" % [gone_through["DoorSouth"]])
	for state_name: StringName in [&"Rings", &"Fans", &"Dying"]:
		expect(times("King", state_name) >= 2, "the king came to %s %d times" % [state_name, times("King", state_name)])
	expect(most_bullets >= 24, "there were never more than %d bullets" % most_bullets)
	expect(times("Ware", &"Sold") >= 2, "nothing was bought")
	expect_equal(times("Player", &"Beaten"), 0)
	# The end, and the end of what went on from the file.
	var deeper := (held_at["Floor Building"] as Array).filter(func(kept: Dictionary) -> bool: return kept["floor"] == 2)
	expect_equal(deeper.size(), 2, "floors that were come to")
	expect_equal(deeper.front(), deeper.back())
	expect_equal([deeper[0]["kings beaten"], deeper[0]["rooms cleared"]], [1, 5])
	expect((deeper[0]["Worn"] as Array).size() >= 4, "it wears %s" % [deeper[0]["Worn"]])
	expect_equal(held(), deeper.back())
	expect_equal((scene().get_node("Screen/Where") as Label).text, "Floor 2     Seed 12")
	expect_equal((scene().get_node("Screen/Meters/Gold") as Label).text, str(held()["gold"]))


func test_the_same_seed_brings_back_the_same_floor() -> void:
	await begin("12")
	var first := [rooms(), wares()]
	expect_equal((first[0] as Dictionary).size(), 10)
	SCMachine.set_global_value(&"gold", 30)
	(scene().get_node("Player/Pack") as SCInventory).add(load(FOLDER + "items/ring.tres") as SCItem)
	# From the menu.
	on("Menu").send_event(&"menu")
	expect(tree.paused, "the game goes on behind the menu")
	on("Menu").send_event(&"again")
	await physics_frames(60)
	expect_state(on("Menu"), "Closed")
	expect_equal([rooms(), wares()], first)
	expect_equal([held()["gold"], held()["Pack"], held()["Worn"]], [0, ["1 Potion"], ["1 Old Sword"]])
	# From the title, which keeps it in a file.
	on("Menu").send_event(&"menu")
	on("Menu").send_event(&"leave")
	await until_scene("Dungeon")
	var again: Button = scene().get_node("Column/Again")
	expect_equal([again.disabled, again.text], [false, "Same Seed Again:  12"])
	expect((scene().get_node("Column/Continue") as Button).disabled, "there is nothing to go on with")
	again.pressed.emit()
	await until_scene("Floor")
	expect_equal([rooms(), wares()], first)


func test_a_fight_that_was_saved_goes_on() -> void:
	await begin("12")
	(scene().get_node("Player") as Node2D).global_position = Vector2(852, 0)
	await physics_frames(90)
	on("Menu").send_event(&"menu")
	on("Menu").send_event(&"save")
	var saved := foes()
	expect_equal(saved.size(), 3)
	on("Menu").send_event(&"resume")
	_beat_all()
	await physics_frames(60)
	expect_state(on("Rooms/Room 1,0/DoorNorth"), "Open")
	on("Menu").send_event(&"menu")
	on("Menu").send_event(&"load")
	await physics_frames(3)
	expect_equal(foes(), saved)
	expect_state(on("Rooms/Room 1,0/DoorNorth"), "Shut")
	expect_equal(held()["rooms cleared"], 0)
	expect(tree.paused and (scene().get_node("Menu/Window") as Control).visible, "it was saved from the menu, and goes on there")
	on("Menu").send_event(&"resume")
	var stood := foes()
	await physics_frames(60)
	expect(foes() != stood, "nobody moves")
	_beat_all()
	await physics_frames(60)
	expect_state(on("Rooms/Room 1,0/DoorNorth"), "Open")
	expect_equal(held()["rooms cleared"], 1)


## Those that are awake, with where they are and how they fare.
func foes() -> Dictionary:
	var found := {}
	for foe in tree.get_nodes_in_group(&"foes"):
		if (foe as Node2D).is_visible_in_tree():
			found[String(foe.name)] = [(foe as Node2D).global_position.snappedf(0.01), SCMachine.machine_of(foe).get_value(&"health")]
	return found


func _beat_all() -> void:
	for foe in tree.get_nodes_in_group(&"foes"):
		if (foe as Node2D).is_visible_in_tree():
			(foe.get_node("HurtBox") as SCHurtBox).take_hit(99.0, null, 1.0)


func test_without_a_seed_one_is_drawn() -> void:
	await begin("")
	var drawn: int = SCMachine.global_value(&"seed")
	expect(drawn >= 1 and drawn <= 999999 and drawn != 12, "%d" % drawn)
	expect_equal(Dungeon.floor_seed, drawn)


func test_a_gamepad_will_do() -> void:
	await go_to(Title.SCENES[0])
	await pad(JOY_BUTTON_A)
	await until_scene("Floor")
	var player: Node2D = scene().get_node("Player")
	var motion := InputEventJoypadMotion.new()
	motion.axis = JOY_AXIS_LEFT_X
	for value: float in [1.0, 0.0]:
		motion.axis_value = value
		Input.parse_input_event(motion)
		await physics_frames(30)
	expect(player.position.x > 60.0, "it is at %s" % player.position)
	await pad(JOY_BUTTON_X)
	expect(gone_through["Player"].has(&"Swinging"), "it does not swing: %s" % [gone_through["Player"]])
	await physics_frames(30)
	var before := player.position
	await pad(JOY_BUTTON_B, 20)
	expect_near(player.position.distance_to(before), 150.0, 20.0)
	await pad(JOY_BUTTON_START)
	expect(tree.paused, "no menu")
	await pad(JOY_BUTTON_DPAD_DOWN)
	await pad(JOY_BUTTON_A)
	expect_equal((scene().get_node("Menu/Window/Panel/Column/Note") as Label).text, "The game is saved.")
	await pad(JOY_BUTTON_B)
	expect(not tree.paused, "it is still paused")


func test_whoever_is_beaten_begins_anew() -> void:
	await begin("12")
	on("Menu").send_event(&"menu")
	on("Menu").send_event(&"save")
	on("Menu").send_event(&"resume")
	SCMachine.set_global_value(&"gold", 9)
	(scene().get_node("Player/HurtBox") as SCHurtBox).take_hit(99.0, null, 1.0)
	await until_scene("Dungeon")
	expect(gone_through["Player"].has(&"Beaten"))
	var go_on: Button = scene().get_node("Column/Continue")
	expect(not go_on.disabled, "what was saved is lost")
	await begin("12")
	expect_equal([held()["gold"], held()["Pack"]], [0, ["1 Potion"]])
	expect_equal(on("Player").get_value(&"health"), 14)


func test_what_is_too_dear_stays_on_the_table() -> void:
	await go_to(Title.SCENES[2])
	var ware: SCMachine = on("Ware1")
	SCMachine.set_global_value(&"gold", int(ware.get_value(&"price")) - 1)
	ware.send_event(&"USED", scene().get_node("Player"))
	expect_state(ware, "Refusing")
	await physics_frames(30)
	SCMachine.set_global_value(&"gold", int(ware.get_value(&"price")) + 2)
	ware.send_event(&"USED", scene().get_node("Player"))
	await physics_frames(3)
	expect_state(ware, "Sold")
	expect_equal(held()["gold"], 2)
	expect_equal((held()["Pack"] as Array).size() + (held()["Worn"] as Array).size(), 3)


func test_the_designs_hold_no_mistake_and_no_script() -> void:
	var designs := 0
	for file in _files_in(FOLDER):
		var design := load(file) as SCMachineTemplate if file.ends_with(".tres") else null
		if design == null:
			continue
		designs += 1
		expect_equal(SCMachineTemplate.findings_in(design), [], file)
		for one: SCMachineState in design.all_states():
			for action: SCMachineAction in one.actions:
				expect(action.get_script() == null, "%s has an action made from a script" % file)
	expect_equal(designs, 21)


func _files_in(folder: String) -> PackedStringArray:
	var found: PackedStringArray = []
	for file in DirAccess.get_files_at(folder):
		found.append(folder + file)
	for inner in DirAccess.get_directories_at(folder):
		found.append_array(_files_in(folder + inner + "/"))
	return found
