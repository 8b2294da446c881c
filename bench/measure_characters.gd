extends Bench

const Walker2D := preload("res://bench/by_hand_walker_2d.gd")
const Walker3D := preload("res://bench/by_hand_walker_3d.gd")
const Senses := preload("res://addons/quillstead/runtime/senses.gd")
const Sight := preload("res://addons/quillstead/runtime/quillstead_sight.gd")

const METRE: float = 32.0
const CHARACTERS: int = 500
const SPEED: float = 1.0
## What they stand on, and what they are: they never meet each other.
const FLOOR: int = 1
const BODIES: int = 2

const IN_A_ROW: int = 25

const CROWDS: PackedInt32Array = [100, 500, 2000]
const CROWD: StringName = &"bench_crowd"
const SPACE: float = 1.0

const CELLS: int = 256

const THINGS: int = 200
const PLAYERS: int = 10

var _fields: Array[Field] = []


func number() -> int:
	return 10


func title() -> String:
	return "Characters: a step of one of 500"


func measure() -> void:
	await _measure_walking()
	await _measure_chasing()
	await _measure_crowds()
	await _measure_grid_paths()
	await _measure_interaction()


func close() -> void:
	_fields.clear()
	# Move Character has switched it on.
	tree.physics_interpolation = false
	tree.root.physics_interpolation_mode = Node.PHYSICS_INTERPOLATION_MODE_INHERIT
	super()


## A floor and as many bodies on it, in rows, all of which can be walked by one or the other.
class Field:
	extends RefCounted

	var in_3d: bool
	var bodies: Array[Node] = []
	var player: Node
	var bare: Node

	func _init(under: Node, count: int, is_in_3d: bool) -> void:
		in_3d = is_in_3d
		_solid(under, StaticBody3D.new() if in_3d else StaticBody2D.new(), Vector3(0, -1, 0), Vector3(20000, 2, 20000), FLOOR)
		for i in count:
			var place := Vector3(3 * (i % IN_A_ROW), 0.5, 3 * floori(float(i) / IN_A_ROW)) if in_3d else Vector3(3 * i, 0.5, 0)
			bodies.append(_solid(under, CharacterBody3D.new() if in_3d else CharacterBody2D.new(), place, Vector3.ONE, BODIES))
		player = Node3D.new() if in_3d else Node2D.new()
		# High up, so that no view of it leads along a row of bodies.
		player.set("position", at(Vector3(9000, 4500, 0)))
		under.add_child(player)
		bare = ClassDB.instantiate(&"BenchBareCharacters")
		bare.call(&"set_speed", far(SPEED))
		under.add_child(bare)

	## Metres with up as y, as the engine takes them on this side.
	func at(place: Vector3) -> Variant:
		return place if in_3d else Vector2(place.x, -place.y) * METRE

	func far(metres: float) -> float:
		return metres if in_3d else metres * METRE

	func _solid(under: Node, made: Node, place: Vector3, size: Vector3, layer: int) -> Node:
		var box: Resource = BoxShape3D.new() if in_3d else RectangleShape2D.new()
		box.set("size", size if in_3d else Vector2(size.x, size.y) * METRE)
		var shape: Node = CollisionShape3D.new() if in_3d else CollisionShape2D.new()
		shape.set("shape", box)
		made.add_child(shape)
		made.set("position", at(place))
		made.set("collision_layer", layer)
		made.set("collision_mask", FLOOR if layer == BODIES else 0)
		under.add_child(made)
		return made


# What each of the field's bodies adds to a step while they are walked.
func _nsec_walked(field: Field, begin: Callable, end: Callable) -> float:
	var empty := await frame_nsec()
	begin.call(field)
	# To the floor, and to the first look of everybody who looks.
	await frames(30)
	var full := await frame_nsec()
	end.call(field)
	await frames(1)
	return (full - empty) / field.bodies.size()


func _field(in_3d: bool) -> Field:
	var made := Field.new(stage, CHARACTERS, in_3d)
	_fields.append(made)
	# The library smooths what it moves, which the engine then does for whoever moves it.
	_begin_machines(made, _walking(made))
	await frames(3)
	_end_machines(made)
	return made


func _measure_walking() -> void:
	var turns := BenchTurns.new()
	for in_3d: bool in [false, true]:
		var field := await _field(in_3d)
		var suffix := "_3d" if in_3d else ""
		turns.add("bare" + suffix, _nsec_walked.bind(field, _begin_bare, _end_bare))
		turns.add("machine" + suffix, _nsec_walked.bind(field, _begin_machines.bind(_walking(field)), _end_machines))
		turns.add("gdscript" + suffix, _nsec_walked.bind(field, _begin_scripts, _end_scripts))
	await turns.play(tree)
	for suffix: String in ["", "_3d"]:
		var where := " in 3D" if suffix == "_3d" else " in 2D"
		figure("characters.walk" + suffix, "Move Character" + where, "ns a step", turns.samples("machine" + suffix))
		figure("characters.walk_bare" + suffix, "its engine calls alone" + where, "ns a step", turns.samples("bare" + suffix))
		figure("characters.walk_gdscript" + suffix, "the same character in GDScript" + where, "ns a step", turns.samples("gdscript" + suffix))
		ratio("characters.walk" + suffix, "characters.walk_bare" + suffix, 1.1)
		ratio("characters.walk" + suffix, "characters.walk_gdscript" + suffix, 0.7)


func _walking(field: Field) -> SCMachineTemplate:
	var move := SCMoveCharacterAction.new()
	move.direction_variable = &"way"
	move.speed = field.far(SPEED)
	return BenchDesigns.template([BenchDesigns.state(&"Walk", [move])], [BenchDesigns.variable(&"way", Vector2.RIGHT)])


func _begin_machines(field: Field, design: SCMachineTemplate) -> void:
	for body in field.bodies:
		add_machines(body, 1, design)


func _end_machines(field: Field) -> void:
	for body in field.bodies:
		body.get_child(body.get_child_count() - 1).free()


func _begin_bare(field: Field) -> void:
	for body in field.bodies:
		field.bare.call(&"add_walker", body)


func _end_bare(field: Field) -> void:
	field.bare.call(&"clear")


func _begin_scripts(field: Field) -> void:
	for body in field.bodies:
		body.set_script(Walker3D if field.in_3d else Walker2D)
		body.set_physics_process(true)


func _end_scripts(field: Field) -> void:
	for body in field.bodies:
		body.set_physics_process(false)
		body.set_script(null)


## Guards who all see the player and never get there. What they cost over sliding along and casting as many rays is the machines'
## and the senses' share.
func _measure_chasing() -> void:
	var turns := BenchTurns.new()
	for in_3d: bool in [false, true]:
		var field := await _field(in_3d)
		field.player.add_to_group(&"player")
		var suffix := "_3d" if in_3d else ""
		turns.add("guard" + suffix, _nsec_walked.bind(field, _begin_guards, _end_guards))
		turns.add("bare" + suffix, _nsec_bare_guards.bind(field))
		turns.add("chaser" + suffix, _nsec_walked.bind(field, _begin_chasers, _end_machines))
		turns.add("slide" + suffix, _nsec_walked.bind(field, _begin_sliding.bind(0), _end_bare))
		turns.add("eyes" + suffix, _nsec_walked.bind(field, _begin_eyes, _end_machines))
	await turns.play(tree)
	for suffix: String in ["", "_3d"]:
		var where := " in 3D" if suffix == "_3d" else " in 2D"
		figure("characters.guard_bare" + suffix, "a guard's slide and rays" + where, "ns a step", turns.samples("bare" + suffix))
		figure("characters.guard" + suffix, "what Chase and a Perception add to them" + where, "us a step", _share(turns, "guard" + suffix, "bare" + suffix), 3.0)
		figure("characters.chase" + suffix, "what Chase after a variable adds to the slide" + where, "us a step", _share(turns, "chaser" + suffix, "slide" + suffix))
		figure("characters.eyes" + suffix, "a Perception of one who stands" + where, "ns a step", turns.samples("eyes" + suffix))


# In microseconds, in each round.
func _share(turns: BenchTurns, with_it: String, without: String) -> PackedFloat64Array:
	var more := PackedFloat64Array()
	for i in turns.samples(with_it).size():
		more.append((turns.samples(with_it)[i] - turns.samples(without)[i]) / 1000.0)
	return more


func _begin_guards(field: Field) -> void:
	_begin_eyes(field)
	_begin_machines(field, _chasing(field, &""))


func _begin_eyes(field: Field) -> void:
	for body in field.bodies:
		var eyes := Senses.new()
		eyes.see_range = field.far(100_000.0)
		eyes.view_angle = 360.0
		body.add_child(eyes)


func _begin_chasers(field: Field) -> void:
	_begin_machines(field, _chasing(field, &"prey"))
	for body in field.bodies:
		var machine: SCMachine = body.get_child(body.get_child_count() - 1)
		machine.set_value(&"prey", field.player)


func _chasing(field: Field, target_variable: StringName) -> SCMachineTemplate:
	var chase := SCChaseAction.new()
	chase.speed = field.far(SPEED)
	chase.target_variable = target_variable
	return BenchDesigns.template([BenchDesigns.state(&"Chase", [chase])], [BenchDesigns.variable(&"prey", null)])


func _end_guards(field: Field) -> void:
	_end_machines(field)
	_end_machines(field)


func _nsec_bare_guards(field: Field) -> float:
	_begin_guards(field)
	await frames(30)
	var rays := 0
	const LOOKED_AT: int = 30
	for i in LOOKED_AT:
		await frames(1)
		rays += _rays_of_a_step()
	_end_guards(field)
	await frames(1)
	return await _nsec_walked(field, _begin_sliding.bind(roundi(float(rays) / LOOKED_AT)), _end_bare)


func _rays_of_a_step() -> int:
	return Sight._cast if Sight._frame == Engine.get_physics_frames() else 0


func _begin_sliding(field: Field, rays: int) -> void:
	field.bare.call(&"cast_rays", rays, field.player)
	for body in field.bodies:
		field.bare.call(&"add_slider", body)


## One crowd, as dense whatever its size, and pushed so little that it stays as it is.
func _measure_crowds() -> void:
	var turns := BenchTurns.new()
	for count in CROWDS:
		turns.add("crowd%d" % count, nsec_each.bind(_add_crowd, count))
	await turns.play(tree)
	for count in CROWDS:
		figure("characters.crowd_%d" % count, "Keep Apart, one of %d in a crowd" % count, "ns a step", turns.samples("crowd%d" % count))
	for count in CROWDS.slice(1):
		ratio("characters.crowd_%d" % count, "characters.crowd_%d" % CROWDS[0], 1.3)


func _add_crowd(crowd: Node, count: int) -> void:
	var apart := SCKeepApartAction.new()
	apart.crowd_group = CROWD
	apart.personal_space = SPACE * METRE
	apart.push = 0.0001
	var design := BenchDesigns.template([BenchDesigns.state(&"Stand", [apart])])
	var row := ceili(sqrt(count))
	for i in count:
		var member := Node2D.new()
		member.position = Vector2(i % row, floori(float(i) / row)) * 0.7 * METRE
		member.add_to_group(CROWD)
		crowd.add_child(member)
		add_machines(member, 1, design)


## A map that has to be searched from end to end, as the walls lead to and fro.
func _measure_grid_paths() -> void:
	var layer := TileMapLayer.new()
	layer.tile_set = _tiles()
	for y in CELLS:
		for x in CELLS:
			layer.set_cell(Vector2i(x, y), 0, Vector2i(1 if _is_wall(x, y) else 0, 0))
	stage.add_child(layer)
	var far_away := _seeker(layer, Vector2i(CELLS - 1, CELLS - 1))
	var next_door := _seeker(layer, Vector2i(0, 1))
	var grid := _searched_by_hand()
	var wanted := grid.get_id_path(Vector2i.ZERO, Vector2i(CELLS - 1, CELLS - 1)).size()
	assert(wanted > CELLS and (far_away.get_value(&"way") as Array).size() == wanted)
	var turns := BenchTurns.new()
	turns.add_loop("search", _search_by_hand.bind(grid), 1)
	turns.add_loop("whole", _search.bind(far_away), 1)
	turns.add_loop("marking", _search.bind(next_door), 1)
	await turns.play(tree)
	var own := turns.samples("search")
	var ours := PackedFloat64Array()
	for i in own.size():
		ours.append(turns.samples("whole")[i] - turns.samples("marking")[i])
	figure("characters.grid_path", "Grid Path's search over %d x %d cells" % [CELLS, CELLS], "ms", each(ours, 1e6))
	figure("characters.grid_path_engine", "AStarGrid2D's own search", "ms", each(own, 1e6))
	ratio("characters.grid_path", "characters.grid_path_engine", 1.2)
	figure("characters.grid_path_marking", "what it takes to mark the walls before", "ms", each(turns.samples("marking"), 1e6), INF, true)


func _is_wall(x: int, y: int) -> bool:
	return x % 16 == 8 and y != (0 if x % 32 == 8 else CELLS - 1)


func _tiles() -> TileSet:
	var sheet := PlaceholderTexture2D.new()
	sheet.size = Vector2(32, 16)
	var source := TileSetAtlasSource.new()
	source.texture = sheet
	source.texture_region_size = Vector2i(16, 16)
	var made := TileSet.new()
	made.tile_size = Vector2i(16, 16)
	made.add_physics_layer()
	made.add_source(source, 0)
	for x in 2:
		source.create_tile(Vector2i(x, 0))
	var wall := source.get_tile_data(Vector2i(1, 0), 0)
	wall.add_collision_polygon(0)
	wall.set_collision_polygon_points(0, 0, [Vector2(-8, -8), Vector2(8, -8), Vector2(8, 8), Vector2(-8, 8)])
	return made


func _seeker(layer: TileMapLayer, goal: Vector2i) -> SCMachine:
	var walker := Node2D.new()
	walker.position = Vector2(8, 8)
	layer.add_child(walker)
	var path := SCGridPathAction.new()
	path.layer_path = ^"../.."
	path.to_cell = goal
	path.move_along = false
	path.store_path_in = &"way"
	add_machines(walker, 1, BenchDesigns.template([BenchDesigns.state(&"Find", [path])], [BenchDesigns.variable(&"way", null)]))
	return walker.get_child(0)


func _search(count: int, machine: SCMachine) -> void:
	var state := machine.current_state
	for i in count:
		machine.restart_state(state)


func _search_by_hand(count: int, grid: AStarGrid2D) -> void:
	for i in count:
		grid.get_id_path(Vector2i.ZERO, Vector2i(CELLS - 1, CELLS - 1))


## Of the region that Grid Path takes, which has a rim on which a way may lead round the map.
func _searched_by_hand() -> AStarGrid2D:
	var grid := AStarGrid2D.new()
	grid.region = Rect2i(-1, -1, CELLS + 2, CELLS + 2)
	grid.diagonal_mode = AStarGrid2D.DIAGONAL_MODE_NEVER
	grid.update()
	grid.fill_solid_region(grid.region)
	for y in CELLS:
		for x in CELLS:
			if not _is_wall(x, y):
				grid.set_point_solid(Vector2i(x, y), false)
	return grid


## Players who could use two hundred things, one of which is in reach of each.
func _measure_interaction() -> void:
	var things := Node.new()
	stage.add_child(things)
	var design := BenchDesigns.template([BenchDesigns.state(&"Shut", [], {&"USED": &"Open"}), BenchDesigns.state(&"Open")])
	for i in THINGS:
		var thing := Node2D.new()
		thing.position.x = i * 10.0 * METRE
		thing.add_to_group(&"usable")
		things.add_child(thing)
		add_machines(thing, 1, design)
	var turns := BenchTurns.new()
	turns.add("interaction", nsec_each.bind(_add_players, PLAYERS))
	await turns.play(tree)
	figure("characters.interaction", "Interaction among %d things" % THINGS, "ns a frame", turns.samples("interaction"))


func _add_players(crowd: Node, count: int) -> void:
	var use := SCInteractionAction.new()
	use.reach = METRE
	var design := BenchDesigns.template([BenchDesigns.state(&"Walk", [use])])
	for i in count:
		var player := Node2D.new()
		player.position.x = i * 10.0 * METRE
		crowd.add_child(player)
		add_machines(player, 1, design)
