extends Story
## Words for stories that go from room to room: scenes in files, with a hero who carries over.

const Arrival := preload("res://addons/quillstead/runtime/quillstead_arrival.gd")
const CarryOver := preload("res://addons/quillstead/runtime/quillstead_carry_over.gd")
const SceneChanger := preload("res://addons/quillstead/runtime/quillstead_scene_changer.gd")
const ScreenFade := preload("res://addons/quillstead/runtime/quillstead_screen_fade.gd")
const FOLDER := "user://story_rooms/"


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	DirAccess.make_dir_recursive_absolute(FOLDER)


func close() -> void:
	await super()
	for file in DirAccess.get_files_at(FOLDER):
		DirAccess.remove_absolute(FOLDER + file)
	DirAccess.remove_absolute(FOLDER)


## A template in a file of its own, whose machines carry over unless the options say otherwise.
func hero_design(variables: Dictionary = {"hp": 10}, options: Dictionary = {}) -> SCMachineTemplate:
	var design := template([state("Idle")], {"variables": variables, "carries_over": true}.merged(options, true))
	ResourceSaver.save(design, FOLDER + "%s.tres" % options.get("resource_name", "hero"))
	return load(FOLDER + "%s.tres" % options.get("resource_name", "hero"))


## Somebody with a machine of that design.
func hero(design: SCMachineTemplate, at: Variant = Vector2.ZERO, as_a: Node = null) -> Node:
	var body: Node = as_a
	if body == null:
		body = CharacterBody3D.new() if at is Vector3 else CharacterBody2D.new()
	body.name = "Hero"
	body.set(&"position", at)
	var made := SCMachine.new()
	made.name = "Machine"
	made.template = design
	body.add_child(made)
	return body


func spot(name: String, at: Variant) -> Node:
	var made: Node = Marker3D.new() if at is Vector3 else Marker2D.new()
	made.name = name
	made.set(&"position", at)
	return made


## Saves a scene of that name with these nodes in it, and answers its path.
func room(name: String, nodes: Array = [], root: Node = null) -> String:
	var scene := root if root != null else Node2D.new()
	scene.name = name
	for node: Node in nodes:
		scene.add_child(node)
	_own(scene, scene)
	var packed := PackedScene.new()
	packed.pack(scene)
	scene.free()
	var path := FOLDER + "%s.tscn" % name.to_snake_case()
	expect_equal(ResourceSaver.save(packed, path), OK)
	return path


## A scene whose file breaks off.
func broken_room(name: String) -> String:
	var path := FOLDER + "%s.tscn" % name.to_snake_case()
	var file := FileAccess.open(path, FileAccess.WRITE)
	file.store_string('[gd_scene format=3]\n\n[node name="%s" type="Node2D"]\n\n[node name=' % name)
	file.close()
	return path


## Begins in a room, as a game does.
func begin_in(path: String) -> Node:
	tree.change_scene_to_file(path)
	await tree.scene_changed
	await frames(1)
	return tree.current_scene


## A machine that is in no room goes there. Its states are Work, Done and, when it cannot, Failed.
func go(settings: Variant) -> SCMachine:
	var wanted: Dictionary = settings if settings is Dictionary else {"scene_path": settings}
	return play(kind(SCChangeSceneAction, wanted), {"FINISHED": "Done", "LoadFailed": "Failed"}, {"name": "Guide"})


func go_and_wait(settings: Variant) -> Node:
	go(settings)
	await frames(2)
	return tree.current_scene


## Until the change that was asked for has come to the new scene, or failed.
func arrive() -> void:
	while SceneChanger.is_leaving():
		await frames(1)


## Until nothing of it is left.
func arrive_and_see() -> void:
	while tree.root.has_node(^"QuillSteadScreenFade") or tree.root.has_node(^"QuillSteadSceneChanger") or SceneChanger.is_leaving():
		await frames(1)


func hero_here() -> Node:
	return tree.current_scene.get_node(^"Hero")


func machine_here() -> SCMachine:
	return hero_here().get_node(^"Machine")


func expect_room(name: String) -> void:
	expect_equal(tree.current_scene.name if tree.current_scene != null else &"", name, "the room")


## Nothing of a change is left: nothing covers the screen, and clicks pass.
func expect_clear() -> void:
	for node in tree.root.get_children():
		expect(node in [stage, tree.current_scene] or node.name == &"QuillsteadDevices", "%s is left under the root" % node.name)


func _own(node: Node, scene: Node) -> void:
	for child in node.get_children():
		child.owner = scene
		_own(child, scene)
