extends Bench
## A whole scene saved and loaded, beside what a script writes down that knows what it wants, and beside the engine packing the scene.

const SceneSave := preload("res://addons/quillstead/runtime/quillstead_scene_save.gd")

const NODES: int = 2000
const SCENE: String = "res://build/bench_scene.tscn"
const FILE: String = "user://quillstead/bench.scene.json"
const BY_HAND: String = "user://bench_scene_by_hand.json"
const PACKED: String = "user://bench_scene.tscn"


func number() -> int:
	return 16


func title() -> String:
	return "World: a scene saved"


func measure() -> void:
	await _open()
	var turns := BenchTurns.new()
	turns.add_loop("save", _save, 1)
	turns.add_loop("save_by_hand", _save_by_hand, 1)
	turns.add_loop("save_packed", _save_packed, 1)
	turns.add_loop("load_by_hand", _load_by_hand, 1)
	await turns.play(tree)
	figure("world.save_scene", "2,000 nodes with a machine each saved", "ms", each(turns.samples("save"), 1e6))
	figure("world.save_scene_by_hand", "their places and values by hand in GDScript", "ms", each(turns.samples("save_by_hand"), 1e6))
	figure("world.save_scene_packed", "the engine packs the scene and saves it", "ms", each(turns.samples("save_packed"), 1e6))
	ratio("world.save_scene", "world.save_scene_by_hand")
	ratio("world.save_scene", "world.save_scene_packed")
	var loads: PackedFloat64Array = []
	var packed: PackedScene = load(SCENE)
	var fresh: PackedFloat64Array = []
	for i in 5:
		assert(SceneSave.load_into(tree.current_scene.get_child(0), FILE))
		var before := Time.get_ticks_usec()
		await tree.process_frame
		loads.append((Time.get_ticks_usec() - before) / 1000.0)
		await tree.process_frame
		before = Time.get_ticks_usec()
		tree.change_scene_to_packed(packed)
		await tree.scene_changed
		fresh.append((Time.get_ticks_usec() - before) / 1000.0)
		await tree.process_frame
	figure("world.load_scene", "2,000 nodes with a machine each loaded", "ms", loads)
	figure("world.load_scene_fresh", "the scene itself opened anew by the engine", "ms", fresh)
	figure("world.load_scene_by_hand", "places and values put back by hand", "ms", each(turns.samples("load_by_hand"), 1e6))
	ratio("world.load_scene", "world.load_scene_fresh")


func close() -> void:
	if tree.current_scene != null:
		tree.current_scene.free()
	for file: String in [FILE, BY_HAND, PACKED, SCENE]:
		DirAccess.remove_absolute(ProjectSettings.globalize_path(file))
	super()


func _open() -> void:
	var design := BenchDesigns.template([
		BenchDesigns.state(&"Rest", [BenchDesigns.wait(1.0)], {&"FINISHED": &"Walk"}), BenchDesigns.state(&"Walk", [BenchDesigns.wait(2.0)], {&"FINISHED": &"Rest"})])
	var top := Node2D.new()
	for i in NODES:
		var place := Node2D.new()
		place.name = "Place%d" % i
		top.add_child(place)
		place.owner = top
		var machine := SCMachine.new()
		machine.name = "Machine"
		machine.template = design
		place.add_child(machine)
		machine.owner = top
	var packed := PackedScene.new()
	packed.pack(top)
	top.free()
	ResourceSaver.save(packed, SCENE)
	tree.change_scene_to_packed(load(SCENE) as PackedScene)
	await tree.scene_changed
	for place: Node2D in tree.current_scene.get_children():
		place.position = Vector2(place.get_index(), 1)
		(place.get_child(0) as SCMachine).set_value("gold", place.get_index())


func _save(count: int) -> void:
	for i in count:
		assert(SceneSave.save(tree.current_scene.get_child(0), FILE))


func _save_by_hand(count: int) -> void:
	for i in count:
		var held := {}
		for place: Node2D in tree.current_scene.get_children():
			var machine: SCMachine = place.get_child(0)
			held[str(place.name)] = {
				"place": JSON.from_native(place.position), "state": machine.current_state.state_name, "time": machine.state_time(),
				"values": JSON.from_native(machine.values),
			}
		var file := FileAccess.open(BY_HAND, FileAccess.WRITE)
		file.store_string(JSON.stringify(held, "\t"))
		file.close()


func _load_by_hand(count: int) -> void:
	for i in count:
		var held: Dictionary = JSON.parse_string(FileAccess.get_file_as_string(BY_HAND))
		for place: Node2D in tree.current_scene.get_children():
			var row: Dictionary = held[str(place.name)]
			place.position = JSON.to_native(row["place"])
			var machine: SCMachine = place.get_child(0)
			machine.go_to(StringName(row["state"] as String))
			var values: Dictionary = JSON.to_native(row["values"])
			for name: StringName in values:
				machine.set_value(name, values[name])


func _save_packed(count: int) -> void:
	for i in count:
		var packed := PackedScene.new()
		packed.pack(tree.current_scene)
		ResourceSaver.save(packed, PACKED)
