extends Story
## A whole scene saved into a file, and brought back from it.

const GameResources := preload("res://tests/fuzz/game_resources.gd")
const ItemFiles := preload("res://addons/quillstead/runtime/item_files.gd")
const Loot := preload("res://addons/quillstead/runtime/ground_loot.gd")
const SceneRecord := preload("res://addons/quillstead/runtime/quillstead_scene_record.gd")
const Values := preload("res://addons/quillstead/runtime/quillstead_saved_values.gd")
const SceneSave := preload("res://addons/quillstead/runtime/quillstead_scene_save.gd")

const FILE: String = "user://quillstead/story.scene.json"
const YARD: String = "res://build/story_yard_%d.tscn"
const PINE: String = "res://tests/stories/files/placement/pine.tscn"

static var _opened: int = 0


func most_frames() -> int:
	return 100_000


func test_a_yard_goes_on_as_the_one_that_was_never_saved() -> void:
	await _expect_goes_on([
		["waits", [state("A", [wait(0.4)], {"FINISHED": "B"}), state("B", [wait(0.25)], {"FINISHED": "A"})]],
		["moves", [
			state("There", [kind(SCMoveToAction, {"node_path": NodePath(".."), "to": Vector2(90, 30), "duration": 0.7})], {"FINISHED": "Back"}),
			state("Back", [kind(SCMoveToAction, {"node_path": NodePath(".."), "to": Vector2(0, 0), "duration": 0.3})], {"FINISHED": "There"}),
		]],
		["counts", [state("Count", [
			kind(SCMathAction, {"store_in": "n", "first_variable": "n", "second": 1.0, "run_mode_saved": 1, "update_interval": 0.05}),
			send("boo", {"delay": 0.33}),
		], {"boo": "Rest"}), state("Rest", [wait(0.11)], {"FINISHED": "Count"})]],
		["beside", [state("Both", [], {"FINISHED": "Alone"}, {"parallel_states": [
			parallel("Left", [state("L1", [wait(0.3)], {"FINISHED": "L2"}), state("L2", [wait(0.6)], {}, {"is_end_state": true})]),
			parallel("Right", [state("R1", [wait(0.8)], {"FINISHED": "R2"}), state("R2", [], {}, {"is_end_state": true})]),
		]}), state("Alone", [wait(0.2)], {"FINISHED": "Both"})]],
		["inside", [state("Runs", [kind(SCRunTemplateAction, {"template": template([
			state("I1", [wait(0.45)], {"FINISHED": "I2"}), state("I2", [wait(0.15)], {"FINISHED": "I1"})])})])]],
	])


func test_what_is_held_and_carried_is_let_go_of_as_before() -> void:
	_open(func(top: Node2D) -> void:
		var thing := RigidBody2D.new()
		boxed(thing, Vector2(10, 10))
		for row: Array in [["Hand", Node2D.new()], ["Thing", thing], ["Clock", Node2D.new()]]:
			(row[1] as Node).name = row[0]
			top.add_child(row[1])
		(top.get_node("Hand") as Node2D).position = Vector2(50, 0)
		_put_machine(top, [
			state("Hold", [
				kind(SCCarryAction, {"node_path": ^"../Thing", "carried_by_path": ^"../Hand"}),
				kind(SCSetProcessModeAction, {"node_path": ^"../Clock", "mode": Node.PROCESS_MODE_DISABLED, "put_back_when_left": true}),
			], {"drop": "Drop"}),
			state("Drop", [kind(SCCarryAction, {"change": SCCarryAction.PUT_DOWN, "node_path": ^"../Thing"})]),
		]))
	await physics_frames(2)
	expect(SceneSave.save(_brain(), FILE))
	for round in 2:
		expect(SceneSave.load_into(_brain(), FILE))
		await physics_frames(2)
		var thing: RigidBody2D = _yard().get_node("Thing")
		expect_equal([_yard().get_node("Clock").process_mode, thing.collision_layer, thing.freeze], [Node.PROCESS_MODE_DISABLED, 0, true])
		(_yard().get_node("Hand") as Node2D).position = Vector2(80, 20)
		await physics_frames(2)
		expect_near(thing.position, Vector2(80, 20))
		_brain().send_event(&"drop")
		await physics_frames(2)
		expect_equal([_yard().get_node("Clock").process_mode, thing.collision_layer, thing.freeze], [Node.PROCESS_MODE_INHERIT, 1, false])
	_leave()


func test_what_was_made_moved_freed_and_changed_comes_back_as_it_was() -> void:
	_open(func(top: Node2D) -> void:
		for name: String in ["Coin", "Door", "Hand", "Lamp", "Box"]:
			var place := Node2D.new()
			place.name = name
			top.add_child(place)
		(top.get_node("Door") as Node2D).modulate = Color.RED
		top.get_node("Door").add_to_group(&"shut")
		_put_machine(top, [state("Idle", [], {"go": "Work", "later": "Later"}), state("Work", [
			kind(SCInstantiateAction, {"scene_path": PINE, "at": SCInstantiateAction.A_PLACE, "place": Vector2(70, 8), "store_in": "pine"}),
			kind(SCDuplicateAction, {"node_path": NodePath("../Lamp"), "offset": Vector2(5, 5), "store_in": "copy"}),
			kind(SCAddNodeAction, {"type": "Marker2D", "node_name": "Spot", "parent_path": NodePath("../Door")}),
			kind(SCQueueFreeAction, {"node_path": NodePath("../Coin")}),
			kind(SCReparentAction, {"node_path": NodePath("../Box"), "parent_path": NodePath("../Hand")}),
		], {"later": "Later"}), state("Later", [
			kind(SCInstantiateAction, {"scene_path": PINE}), kind(SCQueueFreeAction, {"node_path": NodePath("../Door")}),
		])], {"variables": {"pine": null, "copy": null, "n": 0.0}}))
	_brain().send_event(&"go")
	await frames(3)
	var door: Node2D = _yard().get_node("Door")
	door.modulate = Color(0.5, 1.0, 0.25)
	door.remove_from_group(&"shut")
	door.add_to_group(&"open")
	door.set_meta(&"locked", 3)
	_yard().get_node("Hand/Box").add_to_group(&"held")
	(_brain().get_value("copy") as Node2D).name = "Lamp 2"
	expect(SceneSave.save(_brain(), FILE))
	var saved := _tree_of(_yard())
	expect(saved.size() == 9, "%s" % [saved])
	for round in 3:
		_brain().send_event(&"later")
		await frames(3)
		expect(_tree_of(_yard()) != saved)
		expect(SceneSave.load_into(_brain(), FILE))
		await frames(3)
		expect_equal(_tree_of(_yard()), saved, "round %d" % round)
		expect_states(_brain(), ["Work"])
		expect_equal((_brain().get_value("pine") as Node2D).position, Vector2(70, 8))
		expect_equal((_brain().get_value("copy") as Node2D).position, Vector2(5, 5))
	_leave()


func test_what_a_game_keeps_comes_along() -> void:
	_open(func(top: Node2D) -> void:
		var bag := SCInventory.new()
		bag.name = "Bag"
		top.add_child(bag)
		var owned := SCDataNode.new()
		owned.name = "Owned"
		owned.data = GameResources.made("SCData")
		top.add_child(owned)
		_put_machine(top, [
			state("Out", [], {"in": "In"}),
			state("In", [], {"out": "Out"}, {"sub_states": [state("Sit", [wait(0.5)], {"FINISHED": "Stand"}), state("Stand", [])]}),
		], {"variables": [variable("who", null), variable("list", [1, "two", Vector2.ONE]), global_variable("gold", 5)]}))
	var item: SCItem = GameResources.made("SCItem")
	var quest: SCQuest = GameResources.made("SCQuest")
	(_yard().get_node("Bag") as SCInventory).add(item, 3)
	(_yard().get_node("Owned") as SCDataNode).set_field(GameResources.FIELD, 4.0)
	Loot.lay(_brain(), Vector2(12, 0), item, 9, Vector2.ZERO)
	SCQuests.start(quest, tree)
	_brain().set_value("who", _yard().get_node("Bag"))
	_brain().set_value("gold", 77)
	_brain().send_event(&"in")
	await frames(10)
	expect(SceneSave.save(_brain(), FILE))
	(_yard().get_node("Bag") as SCInventory).take(item, 2)
	(_yard().get_node("Owned") as SCDataNode).set_field(GameResources.FIELD, 8.0)
	SCQuests.complete(quest, tree)
	_brain().set_value("gold", 1)
	_brain().set_value("list", [])
	SCMachine.set_global_value(&"since", true)
	_brain().send_event(&"out")
	tree.paused = true
	var old := _yard()
	expect(SceneSave.load_into(_brain(), FILE))
	await frames(1)
	expect(not is_instance_valid(old) and not tree.paused)
	expect_states(_brain(), ["In", "Sit"])
	expect_near(_brain().state_time(), 11.0 / 60.0, 0.001)
	expect_values(_brain(), {"gold": 77, "list": [1, "two", Vector2.ONE], "who": _yard().get_node("Bag")})
	expect_equal(SCMachine.global_value(&"since"), null)
	expect_equal((_yard().get_node("Bag") as SCInventory).count(item), 3)
	expect_equal(SCQuests.status_of(quest), SCQuests.Status.ACTIVE)
	expect_equal((_yard().get_node("Owned") as SCDataNode).get_field(GameResources.FIELD), 4.0)
	var lying := tree.root.find_children("*", "Node2D", true, false).filter(func(node: Node) -> bool: return node is Loot)
	expect_equal(lying.map(func(loot: Loot) -> Array: return [loot.item.key(), loot.gold, loot.get_parent()]), [[item.key(), 9, _yard()]])
	_leave()


func test_a_save_brings_no_code_along() -> void:
	var evil := "user://quillstead_evil.tres"
	var item: SCItem = GameResources.made("SCItem")
	var code := GDScript.new()
	code.source_code = "extends Resource"
	item.set_meta(&"code", code)
	ResourceSaver.save(item, evil)
	for path: String in [evil, "user://../x.tres", "/etc/passwd", "res://../x.tres", "res://nowhere.tres", "uid://nothing"]:
		expect_equal(ItemFiles.from_save({"path": path}), null, path)
		expect_equal(Values.new(stage).decoded({"resource": path}), null, path)
	DirAccess.remove_absolute(ProjectSettings.globalize_path(evil))


func test_a_machine_that_saves_hears_of_it_again_when_that_is_loaded() -> void:
	_open(func(top: Node2D) -> void:
		_put_machine(top, [
			state("Play", [], {"save": "Save"}),
			state("Save", [kind(SCSaveGameAction, {"what": SCSaveGameAction.SAVE_THE_SCENE, "slot": "story", "store_worked_in": "worked",
				"worked_event": "done", "failed_event": "failed"}), set_var("after", true)], {"done": "Saved"}),
			state("Saved", [], {"load": "Load"}),
			state("Load", [kind(SCSaveGameAction, {"what": SCSaveGameAction.LOAD_THE_SCENE, "slot": "story", "store_worked_in": "loaded",
				"worked_event": "done", "failed_event": "failed"})], {"done": "Loaded", "failed": "Play"}),
			state("Loaded"),
		], {"variables": {"worked": false, "loaded": false, "after": false}}))
	_brain().send_event(&"save")
	expect_state(_brain(), "Saved")
	_brain().send_event(&"load")
	await frames(2)
	# What loaded it has gone; the one that saved plays on.
	expect_state(_brain(), "Saved")
	expect_values(_brain(), {"worked": true, "loaded": false, "after": false})
	_leave()


func test_save_and_quit_is_loaded_into_the_menu_that_it_was_pressed_in() -> void:
	var save := kind(SCSaveGameAction, {"what": SCSaveGameAction.SAVE_THE_SCENE, "slot": "story", "worked_event": "done"})
	var gone := kind(SCChangeSceneAction, {"scene_path": "res://nowhere.tscn", "failed_event": "stay"})
	for row: Array in [
		["another action", [state("Out", [save, gone], {"stay": "Stayed"})]],
		["a way on FINISHED", [state("Out", [save], {"FINISHED": "Away"}), state("Away", [gone], {"stay": "Stayed"})]],
		["its own event, and a wait", [state("Out", [save, wait(5.0)], {"done": "Fade"}), state("Fade", [wait(0.1)], {"FINISHED": "Away"}),
			state("Away", [], {"stay": "Stayed"}, {"sub_states": [state("Inner", [gone])]})]],
	]:
		_open(func(top: Node2D) -> void:
			_put_machine(top, [state("Menu", [set_var("n", 7.0)], {"quit": "Out"}), state("Stayed")] + row[1]))
		_brain().send_event(&"quit")
		await advance(0.2)
		expect_state(_brain(), "Stayed")
		expect_warning("there is no scene at")
		_brain().set_value("n", 0.0)
		expect(SceneSave.load_into(_brain(), FILE), row[0])
		await advance(0.2)
		expect_state(_brain(), "Menu")
		expect_values(_brain(), {"n": 7.0})
		_leave()


func test_a_scene_that_is_come_back_to_hears_what_has_changed_meanwhile() -> void:
	_open(func(top: Node2D) -> void:
		_put_machine(top, [state("Poor", [watch(kind(SCVariableCondition, {"variable_name": "gold", "test": SCVariableCondition.GREATER, "value": 10.0}))],
			{"yes": "Rich"}), state("Rich")], {"variables": [global_variable("gold", 5.0)]}))
	await frames(2)
	var record := SceneRecord.of(_yard())
	var file := _yard().scene_file_path
	_yard().free()
	SCMachine.set_global_value(&"gold", 20.0)
	var fresh := (load(file) as PackedScene).instantiate()
	SceneRecord.prepare(fresh, record)
	tree.root.add_child(fresh)
	tree.current_scene = fresh
	SceneRecord.put_back(fresh, record)
	await frames(2)
	expect_state(_brain(), "Rich")
	_leave()


func test_a_scene_that_a_script_put_together_is_brought_back_in_place() -> void:
	var lamp: Node2D = add(Node2D.new(), "Lamp")
	var yard: Node2D = add(Node2D.new(), "Yard")
	var brain := start(running(template([state("Off", [], {"on": "On"}), state("On", [wait(0.4)], {"FINISHED": "Off"})], {"variables": {"n": 1}}), {"under": lamp}))
	var maker := play([kind(SCInstantiateAction, {"scene_path": PINE})], {"FINISHED": "Rest"}, {"under": yard})
	await frames(2)
	brain.send_event(&"on")
	lamp.position = Vector2(3, 4)
	await frames(12)
	expect(SceneSave.save(maker, FILE))
	await advance(0.3)
	lamp.position = Vector2(9, 9)
	lamp.modulate = Color.BLACK
	brain.set_value("n", 5)
	maker.restart_state(maker.find_state(&"Work"))
	await frames(2)
	expect_equal(_pines().size(), 2)
	expect_state(brain, "Off")
	expect(SceneSave.load_into(maker, FILE))
	await frames(2)
	expect_equal([lamp.position, lamp.modulate, brain.get_value("n"), _pines().size()], [Vector2(3, 4), Color.WHITE, 1, 1])
	expect_state(brain, "On")
	await advance(0.25)
	expect_state(brain, "Off")
	for pine in _pines():
		pine.free()


func test_a_file_that_is_broken_changes_nothing() -> void:
	_open(func(top: Node2D) -> void: _put_machine(top, [state("A", [wait(9.0)])]))
	await frames(2)
	expect(SceneSave.save(_brain(), FILE))
	var whole := FileAccess.get_file_as_string(FILE)
	var yard := _yard()
	for row: Array in [
		["nothing in it", ""], ["a list", "[]"], ["cut off", whole.left(whole.length() / 2)], ["of a later form", whole.replace('"quillstead_scene": 1', '"quillstead_scene": 2')],
		["no machines", whole.replace('"machines"', '"others"')], ["a value of no kind", whole.replace('"f:', '"q:')],
		["machines of another kind", whole.replace('"does": {', '"does": 3, "was": {')],
	]:
		FileAccess.open(FILE, FileAccess.WRITE).store_string(row[1])
		expect(not SceneSave.load_into(_brain(), FILE), row[0])
		await frames(1)
		expect(_yard() == yard, row[0])
	FileAccess.open(FILE, FileAccess.WRITE).store_string(whole.replace(_yard().scene_file_path, "user://evil.tscn"))
	expect(not SceneSave.load_into(_brain(), FILE))
	expect_warning("which is not in the game any more, so it cannot be loaded")
	_leave()


func test_no_cut_and_no_flipped_bit_of_a_file_breaks_the_game() -> void:
	_open(func(top: Node2D) -> void:
		var place := Node2D.new()
		place.name = "Place"
		place.position = Vector2(3, 4)
		top.add_child(place)
		_put_machine(top, [state("A", [kind(SCInstantiateAction, {"scene_path": PINE}), wait(9.0)], {"go": "A"})], {"variables": [
			variable("list", [1, Vector2.ONE, {"a": &"b"}]), variable("who", null), global_variable("gold", 2)]}))
	await frames(2)
	_brain().set_value("who", _yard().get_node("Place"))
	(_yard().get_node("Place") as Node2D).position = Vector2(5, 6)
	expect(SceneSave.save(_brain(), FILE))
	var whole := FileAccess.get_file_as_bytes(FILE)
	var loaded := 0
	for at in range(0, whole.size(), 1 if long else 41):
		for cut: bool in [true, false]:
			var bytes := whole.slice(0, at) if cut else whole.duplicate()
			if not cut:
				bytes[at] ^= 1 << (at % 8)
			var file := FileAccess.open(FILE, FileAccess.WRITE)
			file.store_buffer(bytes)
			file.close()
			var brain := _yard().get_node_or_null("Machine") as SCMachine
			loaded += int(SceneSave.load_into(brain if brain != null else _yard(), FILE))
			await frames(1)
			if not expect_calm("%s at %d" % ["cut" if cut else "flipped", at]):
				_leave()
				return
	expect(loaded > 0, "some are harmless")
	var file := FileAccess.open(FILE, FileAccess.WRITE)
	file.store_buffer(whole)
	file.close()
	expect(SceneSave.load_into(_yard(), FILE))
	await frames(1)
	expect_values(_brain(), {"list": [1, Vector2.ONE, {"a": &"b"}], "who": _yard().get_node("Place"), "gold": 2})
	_leave()


# A sentence for the maker is fine, an engine error is not.
func expect_calm(when: String) -> bool:
	for line in output.unclaimed():
		if not line.begins_with("warning"):
			expect(false, "%s: %s" % [when, line])
			return false
	output.forget()
	expect(tree.current_scene != null, when)
	return tree.current_scene != null


func _expect_goes_on(machines: Array, before: int = 37, after: int = 90) -> void:
	_open(func(top: Node2D) -> void:
		for row: Array in machines:
			var place := Node2D.new()
			place.name = str(row[0])
			top.add_child(place)
			_put_machine(place, row[1]))
	await frames(before)
	expect(SceneSave.save(_yard().get_child(0), FILE), "saved")
	seed(1)
	var never_saved := await _trace(after)
	expect(SceneSave.load_into(_yard().get_child(0), FILE), "loaded")
	seed(1)
	var loaded := await _trace(after)
	for frame in after:
		if never_saved[frame] != loaded[frame]:
			expect(false, "frame %d: %s, and loaded %s" % [frame, never_saved[frame], loaded[frame]])
			break
	_leave()


func _put_machine(on: Node, states: Array, options: Dictionary = {"variables": {"n": 0.0}}) -> SCMachine:
	var brain := SCMachine.new()
	brain.name = "Machine"
	brain.template = template(states, options)
	on.add_child(brain)
	return brain


# What can be seen of the yard in each frame.
func _trace(count: int) -> PackedStringArray:
	var lines: PackedStringArray = []
	for i in count:
		await frames(1)
		var line := ""
		for brain: SCMachine in SCMachine.machines_in_the_scene():
			var target := brain.target as Node2D
			line += "%s %s %s %s %s; " % [brain.get_path(), current_states(brain), brain.values, "%.6f" % brain.state_time(), target.position if target != null else Vector2.ZERO]
		lines.append(line)
	return lines


# Every node of the scene, with what was changed about it.
func _tree_of(node: Node, place: String = "") -> PackedStringArray:
	var at := place.path_join(node.name) if not place.is_empty() else str(node.name)
	var line := "%s %s" % [at, node.get_groups()]
	if node is Node2D:
		line += " %s %s %s" % [(node as Node2D).position, (node as Node2D).modulate, node.get_meta(&"locked", 0)]
	var lines: PackedStringArray = [line]
	for child in node.get_children():
		lines.append_array(_tree_of(child, at))
	return lines


func _pines() -> Array[Node]:
	return tree.root.find_children("Pine*", "Node2D", true, false).filter(func(pine: Node) -> bool: return pine.has_meta(&"quillstead_made_by"))


func _brain() -> SCMachine:
	return _yard().get_node("Machine")


func _yard() -> Node:
	return tree.current_scene


func _open(build: Callable) -> void:
	var top := Node2D.new()
	top.name = "Yard"
	build.call(top)
	for node in top.find_children("*", "", true, false):
		if node.owner == null:
			node.owner = top
	var packed := PackedScene.new()
	packed.pack(top)
	top.free()
	_opened += 1
	DirAccess.make_dir_recursive_absolute(ProjectSettings.globalize_path("res://build"))
	ResourceSaver.save(packed, YARD % _opened)
	var fresh: Node = (load(YARD % _opened) as PackedScene).instantiate()
	fresh.tree_entered.connect(tree.set.bind(&"current_scene", fresh), CONNECT_ONE_SHOT)
	tree.root.add_child(fresh)


func _leave() -> void:
	_yard().free()
	DirAccess.remove_absolute(ProjectSettings.globalize_path(YARD % _opened))
	DirAccess.remove_absolute(ProjectSettings.globalize_path(FILE))
