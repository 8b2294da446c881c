extends RefCounted
## A small scene for a machine to work in: a node of one side with children of many classes, called alike on both sides.

const CLASSES: Dictionary[String, Array] = {
	"Area": ["Area2D", "Area3D"],
	"Body": ["CharacterBody2D", "CharacterBody3D"],
	"Rigid": ["RigidBody2D", "RigidBody3D"],
	"Sprite": ["Sprite2D", "Sprite3D"],
	"Sound": ["AudioStreamPlayer2D", "AudioStreamPlayer3D"],
	"Track": ["Path2D", "Path3D"],
	"Track/Rider": ["PathFollow2D", "PathFollow3D"],
	"Eye": ["Camera2D", "Camera3D"],
	"Plain": ["Node", "Node"],
	"Animations": ["AnimationPlayer", "AnimationPlayer"],
	"Ticker": ["Timer", "Timer"],
	"Label": ["Label", "Label"],
	"Button": ["Button", "Button"],
	"Box": ["HBoxContainer", "HBoxContainer"],
	"Box/Inside": ["LineEdit", "LineEdit"],
}


static func host(flat: bool) -> Node:
	var made: Node = Node2D.new() if flat else Node3D.new()
	made.name = "Flat" if flat else "Deep"
	for path in CLASSES:
		var child: Node = ClassDB.instantiate(CLASSES[path][0 if flat else 1])
		child.name = path.get_file()
		(made.get_node(path.get_base_dir()) if "/" in path else made).add_child(child)
		child.add_to_group(&"things")
	for path: String in ["Area", "Body", "Rigid"]:
		var shape: Node = ClassDB.instantiate("CollisionShape2D" if flat else "CollisionShape3D")
		shape.set(&"shape", CircleShape2D.new() if flat else SphereShape3D.new() as Resource)
		made.get_node(path).add_child(shape)
	# Set free, it would fall out of the world as soon as a design makes time run fast.
	made.get_node("Rigid").set(&"freeze", true)
	var track := made.get_node("Track")
	if flat:
		var line := Curve2D.new()
		line.add_point(Vector2.ZERO)
		line.add_point(Vector2(100, 50))
		track.set(&"curve", line)
	else:
		var line := Curve3D.new()
		line.add_point(Vector3.ZERO)
		line.add_point(Vector3(5, 1, 2))
		track.set(&"curve", line)
	var library := AnimationLibrary.new()
	library.add_animation(&"walk", Animation.new())
	(made.get_node("Animations") as AnimationPlayer).add_animation_library(&"", library)
	return made
