extends RefCounted
## The small scene that a machine works in: a node of one side with children called alike on each side.

const GameResources := preload("res://tests/fuzz/game_resources.gd")

enum Dimension { NONE, IN_2D, IN_3D }

const ENDINGS: Array[String] = ["", "2D", "3D"]
## Classes that end in a star are those of the side.
const NODES: Dictionary[String, String] = {
	"Plain": "Node", "Sprite": "Sprite*", "Label": "Label", "Button": "Button",
	"Area": "Area*", "Body": "CharacterBody*", "Rigid": "RigidBody*", "Sound": "AudioStreamPlayer*", "Track": "Path*",
	"Track/Rider": "PathFollow*", "Eye": "Camera*", "Animations": "AnimationPlayer", "Ticker": "Timer", "Box": "HBoxContainer",
	"Box/Inside": "LineEdit",
}
## So many of them stand for all where there are thousands of machines.
const FEW: int = 2
const MATE: NodePath = ^"../Mate"


static func paths(few: bool) -> Array[NodePath]:
	var listed: Array[NodePath] = []
	for path: String in NODES.keys().slice(0, FEW if few else NODES.size()):
		listed.append(NodePath("../" + path))
	return listed


static func host(side: Dimension, few: bool) -> Node:
	var made: Node = _of_side("CharacterBody*", side)
	if side != Dimension.NONE:
		_make_solid(made, side)
	for path: String in NODES.keys().slice(0, FEW if few else NODES.size()):
		var child := _of_side(NODES[path], side)
		child.name = path.get_file()
		child.add_to_group(&"things")
		(made.get_node(path.get_base_dir()) if "/" in path else made).add_child(child)
	for owner: Node in [made, made.get_node("Sprite")]:
		for belonging in GameResources.belongings():
			owner.add_child(belonging)
	if few or side == Dimension.NONE:
		return made
	for path: String in ["Area", "Body", "Rigid"]:
		_give_shape(made.get_node(path), CircleShape2D.new() if side == Dimension.IN_2D else SphereShape3D.new() as Resource, side)
	# Set free, it would fall out of the world as soon as a design makes time run fast.
	made.get_node("Rigid").set(&"freeze", true)
	var line: Resource = Curve2D.new() if side == Dimension.IN_2D else Curve3D.new() as Resource
	for x: float in [0.0, 100.0]:
		line.call(&"add_point", Vector2(x, x / 2.0) if side == Dimension.IN_2D else Vector3(x, x / 2.0, 2.0) as Variant)
	made.get_node("Track").set(&"curve", line)
	var library := AnimationLibrary.new()
	library.add_animation(&"walk", Animation.new())
	(made.get_node("Animations") as AnimationPlayer).add_animation_library(&"", library)
	return made


# It meets nobody: thousands of them stand in one place.
static func _make_solid(body: Node, side: Dimension) -> void:
	body.set(&"collision_layer", 0)
	body.set(&"collision_mask", 0)
	_give_shape(body, RectangleShape2D.new() if side == Dimension.IN_2D else BoxShape3D.new() as Resource, side)


static func _give_shape(body: Node, of: Resource, side: Dimension) -> void:
	var shape := _of_side("CollisionShape*", side)
	shape.set(&"shape", of)
	body.add_child(shape)


static func _of_side(name: String, side: Dimension) -> Node:
	return ClassDB.instantiate("Node" if side == Dimension.NONE and name.ends_with("*") else name.replace("*", ENDINGS[side]))
