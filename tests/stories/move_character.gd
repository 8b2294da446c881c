extends PhysicsStory

const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")


func move(settings: Dictionary = {}) -> Resource:
	return kind(SCMoveCharacterAction, {"speed": far(5.0)}.merged(settings, true))


func test_it_walks_on_the_ground_and_stops_on_the_spot() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character(0.0, 1.0)
		var owner := walk(hero, [move({"direction_variable": &"stick"})], {"variables": {"stick": Vector2()}})
		expect_state(owner, "Walk")
		await physics_frames(60)
		expect_near(where(hero).y, TALL / 2.0, 0.02, "it does not stand on the ground")
		owner.set_value(&"stick", Vector2(1, 0))
		await physics_frames(60)
		expect_near(where(hero).x, 5.0, 0.15, "a second at 5 metres a second")
		owner.set_value(&"stick", Vector2(3, 0))
		await physics_frames(2)
		expect_near(speed_of(hero).x, 5.0, 0.01, "a longer direction is no faster")
		owner.set_value(&"stick", Vector2())
		await physics_frames(2)
		expect_near(speed_of(hero).x, 0.0, 0.001, "it slides on")
		expect(Move._driven.has(hero.get_instance_id()) and Move._grounded.has(hero.get_instance_id()), "nothing is noted of it"))


func test_it_gathers_speed_and_falls_no_faster_than_it_may() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 50.0)
		walk(hero, [move({"direction": Vector2(1, 0), "acceleration": far(4.0), "acceleration_in_the_air": far(2.0), "fastest_fall": far(6.0), "gravity": far(10.0)})])
		await physics_frames(31)
		expect_near(speed_of(hero).x, 1.0, 0.08, "half a second at 2 metres a second each second")
		expect_near(speed_of(hero).y, -5.0, 0.4, "half a second of gravity 10")
		await physics_frames(30)
		expect_near(speed_of(hero).y, -6.0, 0.01, "it falls faster than it may"))


func test_the_shape_of_a_fall() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 50.0)
		var doubled := move({"gravity": far(10.0), "falls_faster_than_it_rises": 2.0, "floats_at_the_top": 0.5})
		walk(hero, [doubled])
		await physics_frames(2)
		# Around the top: twice for falling, half for floating.
		hero.set(&"velocity", at(0.0, -1.0))
		var before := speed_of(hero).y
		await physics_frames(1)
		expect_near(speed_of(hero).y - before, -10.0 / 60.0, 0.01, "around the top")
		hero.set(&"velocity", at(0.0, -5.0))
		before = speed_of(hero).y
		await physics_frames(1)
		expect_near(speed_of(hero).y - before, -20.0 / 60.0, 0.01, "falling")
		hero.set(&"velocity", at(0.0, 5.0))
		before = speed_of(hero).y
		await physics_frames(1)
		expect_near(speed_of(hero).y - before, -10.0 / 60.0, 0.01, "rising"))


func test_it_arrives_once_and_says_so_once() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		spot(3.0, 0.0, "Flag")
		var owner := walk(hero, [move({"heading": SCMoveCharacterAction.TOWARD_A_NODE, "toward_path": ^"../../Flag", "stop_within": far(0.5), "arrived_event": &"there"})])
		await physics_frames(60)
		expect_near(where(hero).x, 2.5, 0.1)
		expect_events(owner, ["there"])
		hero.set(&"position", at(0.0, TALL / 2.0 + 0.01))
		await physics_frames(60)
		expect_events(owner, []))


func test_a_body_is_moved_once_a_frame_by_one_machine() -> void:
	await on_both_sides(func() -> void:
		var twice := character(0.0, 5.0, "Twice")
		walk(twice, [move({"direction": Vector2(1, 0), "falls": false}), move({"direction": Vector2(1, 0), "falls": false})])
		var once := character(0.0, 9.0, "Once")
		walk(once, [move({"direction": Vector2(1, 0), "falls": false})])
		var both := character(0.0, 13.0, "Both")
		for i in 2:
			walk(both, [move({"direction": Vector2(1, 0), "falls": false})])
		await physics_frames(30)
		expect_near(where(twice).x, where(once).x, 0.01)
		expect_near(where(both).x, where(once).x * 2.0, 0.2, "two machines move it twice"))


func test_feels_write_and_let_go() -> void:
	var walking: SCMoveCharacterAction = kind(SCMoveCharacterAction)
	walking.feel = SCMoveCharacterAction.TIGHT
	expect_equal(walking.feel, SCMoveCharacterAction.CUSTOM)
	expect_equal([walking.acceleration, walking.acceleration_in_the_air, walking.fastest_fall], [60.0, 40.0, 20.0])
	expect_equal([walking.falls_faster_than_it_rises, walking.floats_at_the_top], [2.0, 0.5])
	walking.speed = 100.0
	walking.feel = SCMoveCharacterAction.CUSTOM
	expect_equal(walking.acceleration, 60.0, "Custom writes nothing, nor does a later speed")
	walking.feel = SCMoveCharacterAction.ARCADE
	expect_equal([walking.acceleration, walking.acceleration_in_the_air, walking.fastest_fall], [0.0, 0.0, 0.0])
	expect_equal(SCMoveCharacterAction.feels().keys(), [1, 2, 3, 4])
	expect_equal(SCMoveCharacterAction.the_top_lasts(), 0.15)


func test_which_way_is_ahead_in_3d() -> void:
	in_3d = true
	var camera := Camera3D.new()
	camera.rotation_degrees = Vector3(-30, 90, 0)
	stage.add_child(camera)
	camera.make_current()
	var ways := {
		"camera": [{"space": SCMoveCharacterAction.CAMERA, "direction": Vector2(0, -1)}, Vector3(-1, 0, 0)],
		"global": [{"direction": Vector2(0, -1)}, Vector3(0, 0, -1)],
		"side on": [{"space": SCMoveCharacterAction.SIDE_ON, "direction": Vector2(0, -1)}, Vector3(0, 1, 0)],
		"with height": [{"direction": Vector3(0, 1, 0)}, Vector3(0, 1, 0)],
		"local": [{"space": SCMoveCharacterAction.LOCAL, "direction": Vector2(0, -1)}, Vector3(-1, 0, 0)],
		"a velocity": [{"heading": SCMoveCharacterAction.A_VELOCITY, "direction": Vector3(3, 0, 4)}, Vector3(0.6, 0, 0.8)],
	}
	for way: String in ways:
		var hero: CharacterBody3D = character(0.0, 20.0)
		hero.rotation_degrees.y = 90.0
		walk(hero, [move((ways[way][0] as Dictionary).merged({"falls": false}))])
		await physics_frames(2)
		expect_near((hero.velocity.normalized() - (ways[way][1] as Vector3)).length(), 0.0, 0.001, way)
		expect_near(hero.velocity.length(), 5.0, 0.001, way)
		hero.free()
	camera.rotation_degrees = Vector3(-90, 0, 0)
	var below: CharacterBody3D = character(0.0, 20.0)
	walk(below, [move({"space": SCMoveCharacterAction.CAMERA, "direction": Vector2(0, -1), "falls": false})])
	await physics_frames(2)
	expect_near((below.velocity - Vector3(0, 0, -5)).length(), 0.0, 0.01, "a camera that looks straight down has no ahead")


func test_pictures_flip_where_bodies_seen_from_above_turn() -> void:
	ground()
	var hero: CharacterBody2D = character()
	var picture := Sprite2D.new()
	var drawn_left := Sprite2D.new()
	drawn_left.set_meta(&"quillstead_art_faces_left", true)
	var drawn := Polygon2D.new()
	for child: Node in [picture, drawn_left, drawn]:
		hero.add_child(child)
	var owner := walk(hero, [move({"direction_variable": &"stick", "turn_to_face": true})], {"variables": {"stick": Vector2(-1, 0)}})
	await physics_frames(3)
	expect_equal([picture.flip_h, drawn_left.flip_h, drawn.scale, hero.rotation], [true, false, Vector2(-1, 1), 0.0])
	owner.set_value(&"stick", Vector2(1, 0))
	await physics_frames(3)
	expect_equal([picture.flip_h, drawn_left.flip_h, drawn.scale, hero.rotation], [false, true, Vector2(1, 1), 0.0])
	var above: CharacterBody2D = character(10.0, 20.0)
	walk(above, [move({"direction": Vector2(0, 1), "turn_to_face": true, "falls": false})])
	await physics_frames(60)
	expect_near(above.rotation, PI / 2.0, 0.02)


func test_what_is_set_up_wrong_is_told() -> void:
	var above: CharacterBody2D = character()
	above.motion_mode = CharacterBody2D.MOTION_MODE_FLOATING
	walk(above, [move({"direction": Vector2(1, 0)})])
	await physics_frames(5)
	expect_warning("Move Character on Machine has Falls ticked, but Hero has its Motion Mode set to Floating, which is for games seen from above")
	expect_near(speed_of(above).y, 0.0, 0.001)
	await expect_warns_in_physics(move({"body_path": ^"../Nobody"}), "there is no node at ../Nobody, so nothing walks. Pick the character body under Body.")
	await expect_warns_in_physics(move({"body_path": ^"../.."}), "is not a character body (CharacterBody2D or CharacterBody3D), so it cannot walk.")
	await expect_warns_in_physics(move({"heading": SCMoveCharacterAction.TOWARD_A_NODE}), "no node is picked, so it stands still", {"under": character(5.0)})
	await expect_warns_in_physics(
		move({"heading": SCMoveCharacterAction.TOWARD_A_NODE, "toward_path": ^"../Gone"}),
		"it is set to head toward ../Gone, but there is no node there", {"under": character(9.0)})


func test_what_can_go_wrong_under_way_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		ground()
		var flag := spot(5.0, 0.0, "Flag")
		var hero := character()
		var owner := walk(hero, [move({"heading": SCMoveCharacterAction.TOWARD_A_NODE, "toward_variable": &"prey"})], {"variables": {"prey": flag}})
		await physics_frames(2)
		flag.free()
		await physics_frames(2)
		expect_near(speed_of(hero).x, 0.0, 0.001, "it goes on after what is gone")
		hero.set(&"velocity", at(NAN, NAN))
		await physics_frames(2)
		expect((hero.get(&"velocity") as Variant).is_finite(), "a speed that is no number stays one")
		expect(not owner.move_character(null, true, 0.0, 0.1) and not owner.move_character(stage, true, 0.0, 0.1))
		var id := hero.get_instance_id()
		hero.free()
		await frames(2)
		expect(not Move._driven.has(id) and not Move._grounded.has(id) and not Move._heading.has(id), "something is left of a body that is gone"))
