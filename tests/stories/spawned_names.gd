extends Story
## What is brought into the game many times over gets the names that the engine would give, without trying them all.


func scene_of(name: String) -> PackedScene:
	var root := Node2D.new()
	if not name.is_empty():
		root.name = name
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	return scene


func bring(name: String, under: Node) -> SCMachine:
	return play(kind(SCInstantiateAction, {"scene": scene_of(name), "parent_path": under.get_path(), "at": SCInstantiateAction.WHERE_THE_SCENE_SAYS}), {"again": "Work"})


func names_under(node: Node) -> Array:
	return node.get_children().filter(func(child: Node) -> bool: return child is Node2D).map(func(child: Node) -> String: return child.name)


func test_they_are_numbered_as_by_the_engine() -> void:
	for name: String in ["Ghost", "Room9", "7", "", "Rat007"]:
		var brought := body("Brought")
		var by_engine := body("ByEngine")
		var scene := scene_of(name)
		var spawner := bring(name, brought)
		for i in 4:
			by_engine.add_child(scene.instantiate(), true)
			if i > 0:
				spawner.send_event(&"again")
		expect_equal(names_under(brought), names_under(by_engine), "\"%s\"" % name)
		for made: Node in [spawner, brought, by_engine]:
			made.free()


func test_a_name_that_is_free_again_is_given_again() -> void:
	var field := body("Field")
	add(Node2D.new(), "Ghost3", {"under": field})
	var spawner := bring("Ghost", field)
	var other := bring("Ghost", field)
	expect_equal(names_under(field), ["Ghost3", "Ghost", "Ghost2"])
	field.get_node(^"Ghost").free()
	spawner.send_event(&"again")
	other.send_event(&"again")
	expect_equal(names_under(field), ["Ghost3", "Ghost2", "Ghost", "Ghost4"])


func test_a_thousand_and_parents_that_have_gone() -> void:
	for i in 200:
		var field := body("Field")
		bring("Ghost", field).send_event(&"again")
		field.free()
	var field := body("Field")
	var spawner := bring("Ghost", field)
	for i in 999:
		spawner.send_event(&"again")
	expect_equal([field.get_child_count(), field.get_child(-1).name], [1000, &"Ghost1000"])
