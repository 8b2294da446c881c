extends Bench

const ByHand := preload("res://bench/by_hand_world.gd")
const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")

const COPIES: int = 5000
## Half of the area that they are scattered over.
const HALF := Vector2(2000, 1500)

const THINGS: int = 50_000
const SIDE: int = 1024
const STEEPEST: float = 0.8

const FIGHT_ROOMS: int = 100
const EXTRAS: PackedStringArray = ["boss", "treasure", "shop"]
const ROOM_SIZE := Vector2(480, 288)
## So many floors in turn.
const SEEDS: int = 10

const SPAWNED: int = 1000
const FPS: int = 60

# No file has to be there for a scene to be known by it.
const TUFT: String = "res://bench/tuft.tscn"
const ROCK: String = "res://bench/rock.tscn"

# Under this, in the scene, goes what is made.
const FIELD: String = "Field"


func number() -> int:
	return 13


func title() -> String:
	return "World: placing, spawning, dungeons and terrain"


func measure() -> void:
	await _measure_copies()
	await _measure_instantiate()
	await _measure_dungeon()
	await _measure_terrain()


## The kind's work is that of a machine that enters its state anew.
func _entering(actions: Array[SCMachineAction]) -> SCMachine:
	add_machines(stage, 1, BenchDesigns.template([BenchDesigns.state(&"Work", actions)]))
	return stage.get_child(-1)


## Nanoseconds that one of [param count] takes which [param fill] puts under a node that is gone afterwards.
func _nsec_to_fill(in_3d: bool, count: int, fill: Callable) -> float:
	var field: Node = Node3D.new() if in_3d else Node2D.new()
	field.name = FIELD
	stage.add_child(field)
	var began := now_usec()
	fill.call(field)
	var spent := now_usec() - began
	assert(field.get_child_count() == count)
	field.free()
	return spent * 1000.0 / count


func _packed(root: Node, path: String = "") -> PackedScene:
	root.name = "Thing"
	for node: Node in root.find_children("*", "", true, false):
		node.owner = root
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	if not path.is_empty():
		scene.take_over_path(path)
	return scene


func _enter(_field: Node, machine: SCMachine) -> void:
	machine.restart_state(machine.current_state)


func _measure_copies() -> void:
	var tuft := _packed(Sprite2D.new(), TUFT)
	var stone := StaticBody3D.new()
	var solid := CollisionShape3D.new()
	solid.shape = SphereShape3D.new()
	stone.add_child(solid)
	var rock := _packed(stone, ROCK)
	var places := PackedVector2Array()
	var random := RandomNumberGenerator.new()
	for i in COPIES:
		places.append(Vector2(random.randf_range(-HALF.x, HALF.x), random.randf_range(-HALF.y, HALF.y)))
	var bare: RefCounted = ClassDB.instantiate(&"BenchBareSpawner")
	var flat_area := CollisionShape2D.new()
	var rectangle := RectangleShape2D.new()
	rectangle.size = HALF * 2.0
	flat_area.shape = rectangle
	stage.add_child(flat_area)
	var area := CollisionShape3D.new()
	var box := BoxShape3D.new()
	box.size = Vector3(HALF.x * 2.0, 1.0, HALF.y * 2.0)
	area.shape = box
	stage.add_child(area)
	var machines: Array[SCMachine] = [_placing(tuft, flat_area), _placing(rock, area)]
	var turns := BenchTurns.new()
	for in_3d: bool in [false, true]:
		var suffix := "_3d" if in_3d else "_2d"
		var scene := rock if in_3d else tuft
		var by_hand := ByHand.place_3d if in_3d else ByHand.place_2d
		turns.add("kind" + suffix, _nsec_to_fill.bind(in_3d, COPIES, _enter.bind(machines[int(in_3d)])))
		turns.add("by_hand" + suffix, _nsec_to_fill.bind(in_3d, COPIES, func(field: Node) -> void: by_hand.call(scene, field, HALF, COPIES, 7)))
		turns.add("bare" + suffix, _nsec_to_fill.bind(in_3d, COPIES, func(field: Node) -> void: bare.call(&"bring", scene, field, places, 2)))
	await turns.play(tree)
	for suffix: String in ["_2d", "_3d"]:
		var what := "one of 5,000 copies by Procedural Placement, %s" % ("a sprite in 2D" if suffix == "_2d" else "a solid body in 3D")
		_beside("world.copy" + suffix, what, "us", 1000.0, turns, suffix, suffix == "_2d")


func _placing(scene: PackedScene, area: Node) -> SCMachine:
	var action := SCProceduralPlacementAction.new()
	action.scene_path = scene.resource_path
	action.count = COPIES
	action.placement_seed = 7
	action.area_path = NodePath("../" + area.name)
	action.parent_path = NodePath("../" + FIELD)
	var machine := SCMachine.new()
	machine.template = BenchDesigns.template([BenchDesigns.state(&"Wait", [], {&"go": &"Place"}), BenchDesigns.state(&"Place", [action])])
	stage.add_child(machine)
	# Not before there is something to put them under.
	var field: Node = Node3D.new() if area is Node3D else Node2D.new()
	field.name = FIELD
	stage.add_child(field)
	machine.send_event(&"go", null)
	assert(field.get_child_count() == COPIES)
	field.free()
	return machine


func _measure_instantiate() -> void:
	var scene := _packed(Sprite2D.new())
	var place := Vector2(30, 40)
	var places := PackedVector2Array()
	places.resize(SPAWNED)
	places.fill(place)
	var bare: RefCounted = ClassDB.instantiate(&"BenchBareSpawner")
	var spawner := _spawner(scene, place, 0.0)
	var turns := BenchTurns.new()
	turns.add("kind_one", _nsec_to_fill.bind(false, SPAWNED, func(_field: Node) -> void:
		for i in SPAWNED:
			spawner.send_event(&"go", null)))
	turns.add("by_hand_one", _nsec_to_fill.bind(false, SPAWNED, func(field: Node) -> void:
		for i in SPAWNED:
			ByHand.bring(scene, field, place)))
	turns.add("bare_one", _nsec_to_fill.bind(false, SPAWNED, func(field: Node) -> void: bare.call(&"bring", scene, field, places, 1)))
	turns.add("kind_second", _nsec_of_a_second.bind(func(_field: Node) -> Node: return _spawner(scene, place, 1.0 / SPAWNED)))
	turns.add("by_hand_second", _nsec_of_a_second.bind(func(field: Node) -> Node:
		var made := ByHand.Spawner.new()
		made.scene = scene
		made.parent = field
		made.place = place
		made.every = 1.0 / SPAWNED
		stage.add_child(made)
		return made))
	await turns.play(tree)
	_beside("world.instantiate", "one Instantiate as an event enters its state", "us", 1000.0, turns, "_one", true)
	figure("world.instantiate_second", "a second of frames with 1,000 by one that has Every Seconds", "ms", each(turns.samples("kind_second"), 1e6))
	figure("world.instantiate_second_by_hand", "the same by hand", "ms", each(turns.samples("by_hand_second"), 1e6))
	ratio("world.instantiate_second", "world.instantiate_second_by_hand")


## An event makes one more.
func _spawner(scene: PackedScene, place: Vector2, every: float) -> SCMachine:
	var action := SCInstantiateAction.new()
	action.scene = scene
	action.at = SCInstantiateAction.A_PLACE
	action.place = place
	action.parent_path = NodePath("../" + FIELD)
	action.every_seconds = every
	var on := BenchDesigns.state(&"On", [action], {&"go": &"On"})
	var machine := SCMachine.new()
	var states: Array[SCMachineState] = [on]
	if every <= 0.0:
		states.push_front(BenchDesigns.state(&"Wait", [], {&"go": &"On"}))
	machine.template = BenchDesigns.template(states)
	stage.add_child(machine)
	return machine


## What so many a second add to a second of frames.
func _nsec_of_a_second(start: Callable) -> float:
	var began := now_usec()
	await frames(FPS)
	var empty := now_usec() - began
	var field := Node2D.new()
	field.name = FIELD
	stage.add_child(field)
	var spawner: Node = start.call(field)
	began = now_usec()
	await frames(FPS)
	var spent := now_usec() - began
	var count := field.get_child_count()
	assert(absi(count - SPAWNED) < 2 * ceili(SPAWNED / float(FPS)))
	spawner.free()
	field.free()
	return (spent - empty) * 1000.0 * SPAWNED / count


func _measure_dungeon() -> void:
	var room := _room()
	var layouts: Array[Dictionary] = []
	for from_seed in SEEDS:
		layouts.append(Dungeon.lay_out(from_seed + 1, FIGHT_ROOMS, EXTRAS, true))
	var builder := _builder(room)
	var bare: RefCounted = ClassDB.instantiate(&"BenchBareSpawner")
	var count := (layouts[0]["cells"] as Dictionary).size()
	var places := PackedVector2Array()
	places.resize(count)
	var turns := BenchTurns.new()
	turns.add_loop("lay_out", _lay_out, SEEDS)
	turns.add("kind_floor", _nsec_to_fill.bind(false, count, func(_field: Node) -> void: builder.send_event(&"go", null)))
	turns.add("by_hand_floor", _nsec_to_fill.bind(false, count, func(field: Node) -> void:
		ByHand.build_floor(Dungeon.lay_out(1, FIGHT_ROOMS, EXTRAS, true), room, field, ROOM_SIZE)))
	turns.add("bare_floor", _nsec_to_fill.bind(false, count, func(field: Node) -> void: bare.call(&"bring", room, field, places, 0)))
	await turns.play(tree)
	Dungeon.forget()
	figure("world.lay_out", "a floor of 100 fight rooms laid out", "ms", each(turns.samples("lay_out"), 1e6), 5.0)
	# A round's figure is for one room.
	_beside("world.floor", "the same built by Build Dungeon, a room with four doors and their machines", "us", 1000.0, turns, "_floor", true)


func _lay_out(count: int) -> void:
	for i in count:
		Dungeon.lay_out(i % SEEDS + 1, FIGHT_ROOMS, EXTRAS, true)


## Each of its doors has a machine that learns where it leads.
func _room() -> PackedScene:
	var design := BenchDesigns.waiting([BenchDesigns.variable(&"connected", false), BenchDesigns.variable(&"secret", false)])
	var root := Node2D.new()
	for side: String in ["North", "South", "East", "West"]:
		var door := Node2D.new()
		door.name = "Door" + side
		root.add_child(door)
		add_machines(door, 1, design)
		door.get_child(0).name = "Machine"
	return _packed(root)


func _builder(room: PackedScene) -> SCMachine:
	var action := SCBuildDungeonAction.new()
	action.start_room = room
	action.fight_rooms = [room]
	action.fight_room_count = FIGHT_ROOMS
	action.boss_room = room
	action.treasure_room = room
	action.shop_room = room
	action.secret_room = room
	action.room_size = ROOM_SIZE
	action.floor_seed = 1
	action.parent_path = NodePath("../" + FIELD)
	var machine := SCMachine.new()
	machine.template = BenchDesigns.template([BenchDesigns.state(&"Wait", [], {&"go": &"Build"}), BenchDesigns.state(&"Build", [action], {&"go": &"Build"})])
	stage.add_child(machine)
	return machine


func _measure_terrain() -> void:
	var ground := PackedFloat32Array()
	ground.resize(SIDE * SIDE)
	for row in SIDE:
		for column in SIDE:
			ground[row * SIDE + column] = 12.0 * sin(row * 0.02) * cos(column * 0.03)
	var density := (THINGS + 0.5) / ((SIDE - 1.0) * (SIDE - 1.0))
	var places := SCTerrainWork.place_things(ground, SIDE, 1.0, density, 7, 0.0, -100.0, STEEPEST, false)
	assert(places.size() == THINGS * 6)
	var bare: RefCounted = ClassDB.instantiate(&"BenchBareTerrain")
	var turns := BenchTurns.new()
	# The first of them finds the heights far away in memory, which is not to be to anybody's cost who stands beside another.
	var loops: Dictionary[String, Callable] = {
		"clumps": func() -> void: SCTerrainWork.place_things(ground, SIDE, 1.0, density, 7, 0.0, -100.0, STEEPEST, true),
		"kind_plant": func() -> void: SCTerrainWork.place_things(ground, SIDE, 1.0, density, 7, 0.0, -100.0, STEEPEST, false),
		"bare_plant": func() -> void: bare.call(&"plant", ground, SIDE, 1.0, THINGS, 7),
		"by_hand_plant": func() -> void: ByHand.plant(ground, SIDE, 1.0, THINGS, 7, STEEPEST),
		"fill_plant": func() -> void: bare.call(&"fill", THINGS * 6),
		"kind_pack": func() -> void: SCTerrainWork.pack_things(places, 1.0, 0.0, Color.WHITE, 0.6, 0.4, PackedColorArray(), 64.0),
		"bare_pack": func() -> void: bare.call(&"pack", places),
		"by_hand_pack": func() -> void: ByHand.pack(places),
		"fill_pack": func() -> void: bare.call(&"fill", THINGS * 16),
		"kind_solid": func() -> void: SCTerrainWork.solid_faces(places, 0.3, 3.0, 0.0),
		"bare_solid": func() -> void: bare.call(&"make_solid", places, 0.3, 3.0),
		"fill_solid": func() -> void: bare.call(&"fill", THINGS * 48 * 3),
	}
	for name in loops:
		turns.add_loop(name, _repeat.bind(loops[name]), 1)
	await turns.play(tree)
	var what: Dictionary[String, String] = {
		"plant": "50,000 things planted on a grid of 1,024", "pack": "the same packed for MultiMeshes", "solid": "the same made solid, as trunks",
	}
	for part in what:
		figure("world.%s" % part, what[part], "ms", each(turns.samples("kind_" + part), 1e6))
		figure("world.%s_bare" % part, "a bare C++ loop", "ms", each(turns.samples("bare_" + part), 1e6))
		ratio("world.%s" % part, "world.%s_bare" % part, 1.5)
		if part != "solid":
			figure("world.%s_by_hand" % part, "the same by hand", "ms", each(turns.samples("by_hand_" + part), 1e6))
			ratio("world.%s" % part, "world.%s_by_hand" % part)
		figure("world.%s_fill" % part, "as many numbers written and nothing worked out", "ms", each(turns.samples("fill_" + part), 1e6))
	figure("world.plant_clumps", "the same planted in clumps", "ms", each(turns.samples("clumps"), 1e6))


func _repeat(count: int, what: Callable) -> void:
	for i in count:
		what.call()


## A figure with the same by hand and with the engine's calls alone, by the same suffix.
func _beside(name: String, what: String, unit: String, parts: float, turns: BenchTurns, suffix: String, in_readme: bool) -> void:
	figure(name, what, unit, each(turns.samples("kind" + suffix), parts), INF, in_readme)
	figure(name + "_by_hand", "the same by hand", unit, each(turns.samples("by_hand" + suffix), parts))
	ratio(name, name + "_by_hand", INF, in_readme)
	figure(name + "_bare", "its engine calls alone", unit, each(turns.samples("bare" + suffix), parts))
	ratio(name, name + "_bare")
