extends Bench

const METRE: float = 32.0
const ROWS: int = 50
const IN_A_ROW: int = 100
## Metres from one bullet to the next, and from row to row.
const APART: float = 1.25
const SPEED: float = 3.75
const LIFETIME: float = 10_000.0
const TARGETS: StringName = &"bench_targets"
## Walls lie between the rows in pieces as long as this.
const PIECE: float = 6.0
const AHEAD: float = 100.0
const MADE: StringName = &"bench_bullets"


func number() -> int:
	return 14


func title() -> String:
	return "World: a step of one of 5,000 bullets"


func measure() -> void:
	await _measure(false)
	await _measure(true)


func _measure(in_3d: bool) -> void:
	var suffix := "_3d" if in_3d else ""
	var where := " in 3D" if in_3d else " in 2D"
	var turns := BenchTurns.new()
	for walls: bool in [false, true]:
		var place := ("_walls" if walls else "") + suffix
		turns.add("pattern" + place, _nsec.bind(in_3d, walls, _fire))
		turns.add("ray" + place, _nsec.bind(in_3d, walls, _add_by_hand.bind(_by_hand(in_3d))))
		if not in_3d:
			turns.add("area" + place, _nsec.bind(in_3d, walls, _add_by_hand.bind(_by_hand_area())))
	await turns.play(tree)
	for walls: bool in [false, true]:
		var place := ("_walls" if walls else "") + suffix
		var among := (" between walls" if walls else " in the open") + where
		figure("bullets.pattern" + place, "Bullet Pattern" + among, "ns a step", turns.samples("pattern" + place))
		figure("bullets.ray" + place, "nodes in GDScript, each with a ray" + among, "ns a step", turns.samples("ray" + place))
		ratio("bullets.pattern" + place, "bullets.ray" + place, INF if walls else 1.0 / 3.0, not walls and not in_3d)
		if not in_3d:
			figure("bullets.area" + place, "areas in GDScript, each with its signals" + among, "ns a step", turns.samples("area" + place))
			ratio("bullets.pattern" + place, "bullets.area" + place)


## What each bullet adds to a step over the same field without any.
func _nsec(in_3d: bool, walls: bool, fill: Callable) -> float:
	var field: Node = Node3D.new() if in_3d else Node2D.new()
	stage.add_child(field)
	_furnish(field, in_3d, walls)
	await frames(3)
	var bare := await frame_nsec()
	await fill.call(field, in_3d)
	assert(_count() == ROWS * IN_A_ROW)
	var full := await frame_nsec()
	assert(_count() == ROWS * IN_A_ROW)
	_clear()
	field.free()
	await frames(2)
	return (full - bare) / (ROWS * IN_A_ROW)


func _count() -> int:
	return tree.get_node_count_in_group(MADE)


func _clear() -> void:
	for one in tree.get_nodes_in_group(MADE):
		one.free()


func _at(in_3d: bool, x: float, row: float) -> Variant:
	return Vector3(x, 1, row) if in_3d else Vector2(x, row) * METRE


## A ground in 3D, a few targets far ahead, and walls between the rows.
func _furnish(field: Node, in_3d: bool, walls: bool) -> void:
	var long := IN_A_ROW * APART + AHEAD
	if in_3d:
		_block(field, true, Vector3(0, -1, 0), Vector3(4.0 * long, 1, 4.0 * long))
	for i in 20:
		_block(field, in_3d, _at(in_3d, 2.0 * long, i * 3.0), Vector3.ONE if in_3d else Vector2.ONE * METRE as Variant).add_to_group(TARGETS)
	if not walls:
		return
	for row in ROWS + 1:
		for piece in ceili(long / PIECE):
			var thin := 0.2
			_block(field, in_3d, _at(in_3d, piece * PIECE, (row - 0.5) * APART), Vector3(PIECE, 2, thin) if in_3d else Vector2(PIECE, thin) * METRE as Variant)


func _block(field: Node, in_3d: bool, place: Variant, size: Variant) -> Node:
	var made: Node = StaticBody3D.new() if in_3d else StaticBody2D.new()
	var box: Resource = BoxShape3D.new() if in_3d else RectangleShape2D.new()
	box.set(&"size", size)
	var shape: Node = CollisionShape3D.new() if in_3d else CollisionShape2D.new()
	shape.set(&"shape", box)
	made.add_child(shape)
	made.set(&"position", place)
	field.add_child(made)
	return made


## The bullet as a game maker builds it: an area with a round shape and a picture.
func _scene(top: Node) -> PackedScene:
	var in_3d := top is Node3D
	if top is CollisionObject2D or top is CollisionObject3D:
		var round: Resource = SphereShape3D.new() if in_3d else CircleShape2D.new()
		round.set(&"radius", 0.125 if in_3d else 4.0)
		var shape: Node = CollisionShape3D.new() if in_3d else CollisionShape2D.new()
		shape.set(&"shape", round)
		top.add_child(shape)
		shape.owner = top
	var picture: Node = MeshInstance3D.new() if in_3d else Sprite2D.new()
	top.add_child(picture)
	picture.owner = top
	top.name = "Pebble"
	top.add_to_group(MADE, true)
	var made := PackedScene.new()
	made.pack(top)
	top.free()
	return made


func _by_hand(in_3d: bool) -> PackedScene:
	return _scene(BenchByHandBullet3D.new() as Node if in_3d else BenchByHandBullet2D.new())


## They notice the walls and the targets, and not one another.
func _by_hand_area() -> PackedScene:
	var area := BenchByHandBulletArea.new()
	area.collision_layer = 0
	area.monitorable = false
	return _scene(area)


func _each_place(in_3d: bool, each: Callable) -> void:
	for row in ROWS:
		for i in IN_A_ROW:
			each.call(_at(in_3d, i * APART, row * APART))


func _fire(field: Node, in_3d: bool) -> void:
	var fire := SCBulletPatternAction.new()
	fire.scene = _scene(Area3D.new() as Node if in_3d else Area2D.new())
	fire.aim = SCBulletPatternAction.ALONG_A_DIRECTION
	fire.speed = SPEED if in_3d else SPEED * METRE
	fire.lifetime = LIFETIME
	fire.hits_group = TARGETS
	var gun: Node = Node3D.new() if in_3d else Node2D.new()
	field.add_child(gun)
	add_machines(gun, 1, BenchDesigns.template([BenchDesigns.state(&"Fire", [fire])]))
	var machine: SCMachine = gun.get_child(0)
	_clear()
	var places: Array = []
	_each_place(in_3d, func(place: Variant) -> void: places.append(place))
	for i in places.size():
		gun.set(&"position", places[i])
		machine.restart_state(machine.current_state)
		# The machine's guard against circles begins anew with each frame.
		if i % 50 == 49:
			await frames(1)
	await frames(1)


func _add_by_hand(field: Node, in_3d: bool, scene: PackedScene) -> void:
	var velocity: Variant = Vector3(SPEED, 0, 0) if in_3d else Vector2(SPEED * METRE, 0) as Variant
	_each_place(in_3d, func(place: Variant) -> void:
		var made := scene.instantiate()
		made.set(&"position", place)
		made.set(&"velocity", velocity)
		made.set(&"life", LIFETIME)
		made.set(&"hits_group", TARGETS)
		field.add_child(made))
	await frames(1)
