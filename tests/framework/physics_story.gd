@abstract
class_name PhysicsStory
extends Story
## A story on solid ground: words for floors, walls and characters, the same in 2D and in 3D. Places are in metres with up
## as y in both, and [method at] turns them into what the engine takes.

## Pixels to a metre in 2D.
const PX: float = 32.0
## A character is so wide and so tall, in metres.
const WIDE: float = 0.8
const TALL: float = 1.6

## On which side the words make things.
var in_3d: bool = false


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	in_3d = false


## Plays [param part] once in 2D and once in 3D, each on an empty stage.
func on_both_sides(part: Callable) -> void:
	for side: bool in [false, true]:
		in_3d = side
		await part.call()
		for child in stage.get_children():
			child.free()
		await frames(1)


func at(x: float, y: float, z: float = 0.0) -> Variant:
	return Vector3(x, y, z) if in_3d else Vector2(x, -y) * PX


## A length of so many metres.
func far(metres: float) -> float:
	return metres if in_3d else metres * PX


## Where it is, in metres with up as y.
func where(of: Node) -> Vector3:
	if of is Node3D:
		return (of as Node3D).global_position
	var flat := (of as Node2D).global_position / PX
	return Vector3(flat.x, -flat.y, 0.0)


func speed_of(of: Node) -> Vector3:
	var velocity: Variant = of.get(&"velocity")
	return velocity if velocity is Vector3 else Vector3(velocity.x, -velocity.y, 0.0) / PX


## A solid box with its middle there.
func block(x: float, y: float, wide: float, tall: float, name: String = "Block") -> Node:
	return _solid(StaticBody3D.new() if in_3d else StaticBody2D.new(), at(x, y), wide, tall, name)


## Ground that is level with 0 as far as a story goes.
func ground() -> Node:
	return block(0.0, -1.0, 200.0, 2.0, "Ground")


## A character body whose feet stand at that height.
func character(x: float = 0.0, feet: float = 0.0, name: String = "Hero", z: float = 0.0) -> Node:
	var body: Node = CharacterBody3D.new() if in_3d else CharacterBody2D.new()
	return _solid(body, at(x, feet + TALL / 2.0 + 0.01, z), WIDE, TALL, name)


## An area of that size with its middle there.
func zone(x: float, y: float, wide: float, tall: float, name: String = "Zone") -> Node:
	return _solid(Area3D.new() if in_3d else Area2D.new(), at(x, y), wide, tall, name)


## A rigid box with its middle there.
func crate(x: float, y: float, size: float = 0.8, name: String = "Crate") -> Node:
	return _solid(RigidBody3D.new() if in_3d else RigidBody2D.new(), at(x, y), size, size, name)


## A node that is only a place.
func spot(x: float, y: float, name: String = "Spot") -> Node:
	var made: Node = Marker3D.new() if in_3d else Marker2D.new()
	made.name = name
	made.set(&"position", at(x, y))
	stage.add_child(made)
	return made


## A machine on [param body] that does these actions as long as it runs, started.
func walk(body: Node, actions: Array, options: Dictionary = {}) -> SCMachine:
	return start(machine([state("Walk", actions)], {"under": body}.merged(options, true)))


## As [method Story.expect_warns], for what is noticed in the physics frame.
func expect_warns_in_physics(of: SCMachineAction, texts: Variant, options: Dictionary = {}) -> void:
	var made := play(of, {}, options)
	await physics_frames(3)
	for text: String in texts if texts is Array else [texts]:
		expect_warning(text)
	made.free()


func _solid(body: Node, place: Variant, wide: float, tall: float, name: String) -> Node:
	body.name = name
	var shape: Node
	if in_3d:
		var box := BoxShape3D.new()
		box.size = Vector3(wide, tall, wide)
		shape = CollisionShape3D.new()
		shape.set(&"shape", box)
	else:
		var box := RectangleShape2D.new()
		box.size = Vector2(wide, tall) * PX
		shape = CollisionShape2D.new()
		shape.set(&"shape", box)
	shape.name = "Shape"
	body.add_child(shape)
	body.set(&"position", place)
	stage.add_child(body)
	return body
