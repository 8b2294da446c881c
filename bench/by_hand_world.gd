class_name BenchByHandWorld
extends RefCounted
## A world as one fills it by a script: copies over an area, plants on a grid of heights, rooms of a floor, and one after another.

## Where it was put down from, so that it can be taken away again.
const PLACED_BY: StringName = &"placed_by"


class Spawner extends Node:
	var scene: PackedScene
	var parent: Node
	var place: Vector2
	var every: float

	var _waited: float = 0.0


	func _process(delta: float) -> void:
		_waited += delta
		while _waited >= every:
			_waited -= every
			BenchByHandWorld.bring(scene, parent, place)


static func bring(scene: PackedScene, parent: Node, place: Vector2) -> Node:
	var made: Node2D = scene.instantiate()
	made.position = place
	parent.add_child(made)
	return made


static func place_2d(scene: PackedScene, parent: Node, half: Vector2, count: int, from_seed: int) -> void:
	var random := RandomNumberGenerator.new()
	random.seed = from_seed
	for i in count:
		var made: Node2D = scene.instantiate()
		made.position = Vector2(random.randf_range(-half.x, half.x), random.randf_range(-half.y, half.y))
		made.set_meta(PLACED_BY, scene.resource_path)
		parent.add_child(made)


static func place_3d(scene: PackedScene, parent: Node, half: Vector2, count: int, from_seed: int) -> void:
	var random := RandomNumberGenerator.new()
	random.seed = from_seed
	for i in count:
		var made: Node3D = scene.instantiate()
		made.position = Vector3(random.randf_range(-half.x, half.x), 0.0, random.randf_range(-half.y, half.y))
		made.set_meta(PLACED_BY, scene.resource_path)
		parent.add_child(made)


## As place_things of [SCTerrainWork] answers them, six numbers for each.
static func plant(ground: PackedFloat32Array, side: int, step: float, count: int, from_seed: int, steepest: float) -> PackedFloat32Array:
	var random := RandomNumberGenerator.new()
	random.seed = from_seed
	var places := PackedFloat32Array()
	places.resize(count * 6)
	var half := (side - 1) * step / 2.0
	var placed := 0
	while placed < count:
		var x := random.randf_range(1.0 - half, half - 1.0)
		var z := random.randf_range(1.0 - half, half - 1.0)
		var across := (x + half) / step
		var along := (z + half) / step
		var column := int(across)
		var row := int(along)
		var corner := row * side + column
		var h00 := ground[corner]
		var h10 := ground[corner + 1]
		var h01 := ground[corner + side]
		var h11 := ground[corner + side + 1]
		if Vector2(maxf(absf(h10 - h00), absf(h11 - h01)), maxf(absf(h01 - h00), absf(h11 - h10))).length() / step > steepest:
			continue
		var at := placed * 6
		places[at] = x
		places[at + 1] = lerpf(lerpf(h00, h10, across - column), lerpf(h01, h11, across - column), along - row)
		places[at + 2] = z
		places[at + 3] = random.randf() * 0.6 + 0.75
		places[at + 4] = random.randf() * TAU
		places[at + 5] = random.randf()
		placed += 1
	return places


## As pack_things of [SCTerrainWork] answers them, but for the pieces of the ground: one buffer for all of them.
static func pack(places: PackedFloat32Array) -> PackedFloat32Array:
	var packed := PackedFloat32Array()
	var count := floori(places.size() / 6.0)
	packed.resize(count * 16)
	for i in count:
		var from := i * 6
		var to := i * 16
		var size := places[from + 3]
		var cosine := cos(places[from + 4]) * size
		var sine := sin(places[from + 4]) * size
		packed[to] = cosine
		packed[to + 2] = sine
		packed[to + 3] = places[from]
		packed[to + 5] = size
		packed[to + 7] = places[from + 1]
		packed[to + 8] = -sine
		packed[to + 10] = cosine
		packed[to + 11] = places[from + 2]
		packed[to + 12] = places[from + 5]
		packed[to + 13] = places[from + 5]
		packed[to + 14] = places[from + 5]
		packed[to + 15] = places[from + 5]
	return packed


## The rooms of a layout, and their doors told where they lead.
static func build_floor(layout: Dictionary, room: PackedScene, parent: Node, size: Vector2) -> void:
	var cells: Dictionary = layout["cells"]
	var open: Dictionary[Vector4i, bool] = {}
	for way: Array in (layout["joins"] as Array) + (layout["secret"] as Array):
		var a: Vector2i = way[0]
		var b: Vector2i = way[1]
		open[Vector4i(a.x, a.y, b.x, b.y)] = true
		open[Vector4i(b.x, b.y, a.x, a.y)] = true
	for cell: Vector2i in cells:
		var made: Node2D = room.instantiate()
		made.name = "Room %d,%d" % [cell.x, cell.y]
		made.position = Vector2(cell) * size
		for side: Array in [["North", 0, -1], ["South", 0, 1], ["East", 1, 0], ["West", -1, 0]]:
			var door: SCMachine = made.get_node(NodePath("Door%s/Machine" % side[0]))
			door.handed_values[&"connected"] = open.has(Vector4i(cell.x, cell.y, cell.x + (side[1] as int), cell.y + (side[2] as int)))
		parent.add_child(made)
