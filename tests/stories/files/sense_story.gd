extends PhysicsStory
## Words for characters that see and hear.

const Senses := preload("res://addons/quillstead/runtime/senses.gd")


## A guard who looks toward where the story's x grows, with a Perception node that looks in every frame.
func guard(settings: Dictionary = {}, x: float = 0.0, name: String = "Guard") -> Node:
	var body := character(x, 0.0, name)
	if in_3d:
		(body as Node3D).rotation.y = -PI / 2.0
	return _sharpen(body, settings)


func _sharpen(body: Node, settings: Dictionary) -> Node:
	var senses := Senses.new()
	senses.name = "Perception"
	senses.look_every = 0.0
	for setting: StringName in settings:
		senses.set(setting, settings[setting])
	body.add_child(senses)
	return body


func senses_of(of: Node) -> Senses:
	return of.get_node(^"Perception")


func player(x: float, feet: float = 0.0, z: float = 0.0, name: String = "Player") -> Node:
	var body := character(x, feet, name, z)
	body.add_to_group(&"player")
	return body


## Which of the signals came since, with the names of whom they are about.
func heed(of: Senses) -> Array[String]:
	var told: Array[String] = []
	for signal_name: StringName in [&"spotted", &"seen_again", &"lost"]:
		of.connect(signal_name, func(whom: Node) -> void: told.append("%s %s" % [signal_name, whom.name if whom != null else &"nobody"]))
	return told
