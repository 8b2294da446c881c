extends "res://tests/stories/files/rooms_story.gd"
## Arriving in another scene: who stands at which spot, and what they have with them.


func test_whoever_is_carried_over_stands_at_the_spot() -> void:
	for row: Array in [[Vector2(10, 20), Vector2(300, 40), Vector2(5, 5)], [Vector3(1, 2, 3), Vector3(30, 0, -4), Vector3(5, 0, 5)]]:
		var design := hero_design()
		var at: Variant = row[1]
		var door := spot("CaveDoor", at)
		var shelf: Node = Node3D.new() if at is Vector3 else Node2D.new()
		shelf.name = "Shelf"
		shelf.set(&"position", row[2])
		shelf.add_child(door)
		var stranger := hero(template([state("Idle")]), row[0])
		stranger.name = "Stranger"
		stranger.add_to_group(&"player", true)
		var cave := room("Cave", [stranger, hero(design, row[0]), shelf])
		await begin_in(room("Town", [hero(design, row[0])]))
		machine_here().set_value("hp", 3)
		await go_and_wait({"scene_path": cave, "arrive_at": &"CaveDoor"})
		expect_near(hero_here().get(&"global_position"), at + row[2])
		expect_near(tree.current_scene.get_node(^"Stranger").get(&"global_position"), row[0])
		expect_equal(machine_here().get_value("hp"), 3)
		await go_and_wait(FOLDER + "town.tscn")
		expect_near(hero_here().get(&"global_position"), row[0], 0.0001, "no spot is named")


func test_the_players_own_of_the_new_scene_stands_there_else() -> void:
	var cave := room("Cave", [hero(template([state("Idle")]), Vector2(10, 0)), spot("Door", Vector2(200, 0))])
	var design := hero_design()
	var hut := room("Hut", [hero(design, Vector2(10, 0)), spot("Door", Vector2(200, 0))])
	await begin_in(room("Title"))
	await go_and_wait({"scene_path": cave, "arrive_at": &"Door"})
	expect_warning("Change Scene on Guide: there is nobody in cave.tscn to stand at Door. Put its player into the group player.")
	expect_equal(hero_here().get(&"position"), Vector2(10, 0))
	var guide := play(kind(SCChangeSceneAction, {"scene_path": hut, "arrive_at_variable": &"door", "arrive_at": &"Nowhere"}), {}, {"variables": {"door": "Door"}})
	await frames(2)
	guide.free()
	expect_equal(hero_here().get(&"position"), Vector2(200, 0), "who would carry over is the player")


func test_in_3d_the_player_faces_the_way_the_spot_does() -> void:
	var design := hero_design()
	for row: Array in [[Vector3(0, 90, 0), -90.0], [Vector3(20, -45, 10), 0.0], [Vector3(90, 0, 0), 30.0]]:
		var door := spot("Door", Vector3(3, 0, 0)) as Node3D
		door.rotation_degrees = row[0]
		var walker := hero(design, Vector3.ZERO) as CharacterBody3D
		walker.rotation_degrees.y = row[1]
		walker.scale = Vector3(2, 2, 2)
		walker.velocity = Vector3(0, -9, 0)
		await begin_in(room("Title"))
		await go_and_wait({"scene_path": room("Cave", [walker, door], Node3D.new()), "arrive_at": &"Door"})
		var here := hero_here() as CharacterBody3D
		var way := -(tree.current_scene.get_node(^"Door") as Node3D).global_basis.z.slide(Vector3.UP)
		if way.length() > 0.01:
			expect_near(-here.global_basis.z.normalized(), way.normalized(), 0.001)
		else:
			expect_near(here.rotation_degrees.y, row[1], 0.01, "up is no way to face")
		expect_near(here.global_basis.y, Vector3(0, 2, 0), 0.001, "it stays upright and as large")
		expect_equal(here.velocity, Vector3.ZERO)


func test_in_2d_the_player_stays_turned_as_it_is() -> void:
	var design := hero_design()
	var door := spot("Door", Vector2(3, 0)) as Node2D
	door.rotation = 1.0
	var walker := hero(design, Vector2.ZERO, RigidBody2D.new()) as RigidBody2D
	walker.rotation = 0.5
	walker.gravity_scale = 0.0
	await begin_in(room("Town", [hero(design)]))
	await go_and_wait({"scene_path": room("Cave", [walker, door]), "arrive_at": &"Door"})
	await physics_frames(4)
	expect_near(hero_here().get(&"rotation"), 0.5)
	expect_near(hero_here().get(&"position"), Vector2(3, 0), 0.01, "it stays there as physics runs")


func test_no_door_notices_a_player_who_stood_in_it_before() -> void:
	var design := hero_design()
	for is_3d: bool in [false, true]:
		var far: Variant = Vector3(50, 0, 0) if is_3d else Vector2(500, 0)
		var start_at: Variant = Vector3.ZERO if is_3d else Vector2.ZERO
		var size: Variant = Vector3.ONE if is_3d else Vector2(20, 20)
		var door := boxed(Area3D.new() if is_3d else Area2D.new(), size)
		door.name = "Door"
		var other := boxed(Area3D.new() if is_3d else Area2D.new(), size)
		other.name = "Other"
		other.set(&"position", far)
		await begin_in(room("Title"))
		door.set_script(preload("res://tests/stories/files/counts_visitors.gd"))
		other.set_script(preload("res://tests/stories/files/counts_visitors.gd"))
		var cave := room("Cave", [boxed(hero(design, start_at), size), door, other, spot("Spot", far)], Node3D.new() if is_3d else Node2D.new())
		await go_and_wait({"scene_path": cave, "arrive_at": &"Spot"})
		await physics_frames(6)
		expect_equal([tree.current_scene.get_node(^"Door").get(&"came"), tree.current_scene.get_node(^"Other").get(&"came")], [0, 1], "3D" if is_3d else "2D")


func test_spots_that_cannot_be_stood_at() -> void:
	var design := hero_design()
	var flat := room("Flat", [hero(design), spot("Post", Vector3(1, 1, 1)), spot("Door*", Vector2(7, 7))])
	await begin_in(room("Town", [hero(design)]))
	await go_and_wait({"scene_path": flat, "arrive_at": &"Door"})
	expect_warning("there is no spot called Door in flat.tscn, so the player stands where that scene has it. Give a Marker2D or a Marker3D there that name.")
	await go_and_wait({"scene_path": flat, "arrive_at": &"Post"})
	expect_warning("Post is a Marker3D, and Hero in flat.tscn is a CharacterBody2D, so the player stands where that scene has it. Make both 2D, or both 3D.")
	await go_and_wait({"scene_path": flat, "arrive_at": &"Door*"})
	expect_equal(hero_here().get(&"position"), Vector2(7, 7))


func test_a_spot_that_the_scene_makes_for_itself() -> void:
	var scene := Node2D.new()
	scene.set_script(preload("res://tests/stories/files/builds_a_door.gd"))
	await begin_in(room("Title"))
	await go_and_wait({"scene_path": room("Built", [hero(hero_design())], scene), "arrive_at": &"Door"})
	expect_equal(hero_here().get(&"position"), Vector2(80, 8))


func test_back_and_forth_ten_times() -> void:
	var design := hero_design({"coins": 0})
	var rooms := {"Town": room("Town", [hero(design), spot("Gate", Vector2(40, 0))]), "Cave": room("Cave", [hero(design), spot("Gate", Vector2(90, 0))])}
	await begin_in(rooms["Town"] as String)
	for i in 20:
		machine_here().set_value("coins", machine_here().get_value("coins") + 1)
		var next: String = "Cave" if i % 2 == 0 else "Town"
		go({"scene_path": rooms[next], "arrive_at": &"Gate", "fade_seconds": 0.02 if i % 3 == 0 else 0.0})
		await arrive_and_see()
		expect_room(next)
		expect_equal([machine_here().get_value("coins"), hero_here().get(&"position").x], [i + 1, 90.0 if next == "Cave" else 40.0])
	expect_equal(SCMachine.machines_in_the_scene().filter(tree.current_scene.is_ancestor_of).size(), 1)


func test_a_room_is_as_it_was_left_while_somebody_goes_along() -> void:
	var design := hero_design()
	var crate := Node2D.new()
	crate.name = "Crate"
	var town := room("Town", [hero(design, Vector2(9, 9)), crate, spot("Gate", Vector2(60, 0))])
	var cave := room("Cave", [hero(design)])
	var crate_at := func() -> float: return (tree.current_scene.get_node(^"Crate") as Node2D).position.x
	await begin_in(town)
	(tree.current_scene.get_node(^"Crate") as Node2D).position.x = 300.0
	(hero_here() as Node2D).position = Vector2(500, 500)
	machine_here().set_value("hp", 4)
	await go_and_wait(cave)
	machine_here().set_value("hp", 3)
	await go_and_wait(town)
	expect_equal(crate_at.call(), 300.0)
	expect_equal([hero_here().get(&"position"), machine_here().get_value("hp")], [Vector2(9, 9), 3], "whoever comes is not who left")
	await go_and_wait(cave)
	await go_and_wait({"scene_path": town, "arrive_at": &"Gate"})
	expect_equal([crate_at.call(), hero_here().get(&"position")], [300.0, Vector2(60, 0)])
	await go_and_wait({"go_to": SCChangeSceneAction.RELOAD_CURRENT_SCENE})
	expect_equal(crate_at.call(), 0.0, "started again")
	(tree.current_scene.get_node(^"Crate") as Node2D).position.x = 200.0
	await go_and_wait(room("Title"))
	await go_and_wait(town)
	expect_equal([crate_at.call(), machine_here().get_value("hp")], [0.0, 10], "a new game")


func test_what_was_left_without_those_who_come() -> void:
	var design := hero_design()
	var old := hero(design)
	stage.add_child(old)
	CarryOver.gather(stage)
	old.free()
	var scene := Node2D.new()
	scene.add_child(hero(design))
	var others := {"nodes": {"Heron": {}}, "gone": ["Coin"], "newcomers": [{"parent": ".", "at": "Bush"}]}
	var with_hero := {"nodes": {"Heron": {}, "Hero": {}, "Hero/Pack": {}}, "gone": ["Coin", "Hero/Hat"],
		"newcomers": [{"parent": ".", "at": "Bush"}, {"parent": "Hero", "at": "Hero/Sword"}]}
	var rows: Array[Array] = [
		[{"top": with_hero, "machines": [{"at": "Hero/Machine"}, {"at": "Bush/Machine"}]}, {"top": others, "machines": [{"at": "Bush/Machine"}]}],
		[{}, {}],
		[{"top": 3, "machines": "none"}, {"top": 3, "machines": []}],
		[{"top": {"nodes": [], "gone": {}, "newcomers": [4]}, "machines": [null]}, {"top": {"nodes": [], "gone": {}, "newcomers": []}, "machines": []}],
	]
	for row in rows:
		expect_equal(Arrival.without_those_who_come(scene, row[0] as Dictionary), row[1])
	expect_equal((with_hero["nodes"] as Dictionary).size(), 3, "the record itself stays as it is")
	CarryOver.forget()
	expect_equal(Arrival.without_those_who_come(scene, rows[0][0] as Dictionary), rows[0][0], "nobody comes")
	scene.free()
