extends PhysicsStory

const SCALE: StringName = &"quillstead_gravity_scale"
const WEIGHT: StringName = &"quillstead_weight_out_of_water"


func move(settings: Dictionary = {}) -> Resource:
	return kind(SCMoveCharacterAction, {"speed": far(5.0)}.merged(settings, true))


func swim(settings: Dictionary = {}) -> Resource:
	return kind(SCSwimAction, {
		"water_path": ^"../../Lake", "settles_at": far(0.4), "swim_speed": far(2.0), "up_input": &"ui_up", "down_input": &"ui_down",
		"entered_event": &"wet", "left_event": &"dry",
	}.merged(settings, true))


## Water from 0 down to 10 metres below.
func lake() -> Node:
	return zone(0.0, -5.0, 40.0, 10.0, "Lake")


## A machine of a hero with its feet at that height, which swims in Swim and on "out" is elsewhere.
func swimmer(feet: float, swims: Resource = null) -> SCMachine:
	var hero := character(0.0, feet)
	return start(machine([
		state("Swim", [swim() if swims == null else swims, move()], {"out": "Out"}), state("Out", [move()]),
	], {"under": hero}))


func test_it_sinks_slowly_and_swims_up_and_down() -> void:
	await on_both_sides(func() -> void:
		lake()
		var owner := swimmer(-4.0)
		var hero := owner.get_parent()
		hero.set_meta(SCALE, 1.5)
		await physics_frames(10)
		expect_events(owner, ["wet"])
		expect_equal([hero.get_meta(SCALE), hero.get_meta(WEIGHT)], [0.0, 1.5])
		for row: Array in [[[], -0.4], [[&"ui_up"], 2.0], [[&"ui_down"], -2.0], [[&"ui_up", &"ui_down"], -0.4]]:
			for input: StringName in row[0]:
				Input.action_press(input)
			var before := where(hero).y
			await physics_frames(30)
			expect_near(where(hero).y - before, float(row[1]) / 2.0, 0.05, str(row))
			for input: StringName in row[0]:
				Input.action_release(input))


func test_the_weight_comes_back_however_it_leaves() -> void:
	var ways: Dictionary[String, Callable] = {
		"state left": func(owner: SCMachine, _lake: Node) -> void: owner.send_event(&"out"),
		"carried out": func(owner: SCMachine, _lake: Node) -> void: owner.get_parent().set(&"position", at(0.0, 50.0)),
		"drained": func(_owner: SCMachine, water: Node) -> void: water.free(),
		"water carried away": func(_owner: SCMachine, water: Node) -> void: water.get_parent().remove_child(water),
		"water deaf": func(_owner: SCMachine, water: Node) -> void: water.set(&"monitoring", false),
		"stopped": func(owner: SCMachine, _lake: Node) -> void: owner.stop(),
		"machine freed": func(owner: SCMachine, _lake: Node) -> void: owner.free(),
	}
	await on_both_sides(func() -> void:
		for way in ways:
			var water := lake()
			var owner := swimmer(-4.0)
			var hero := owner.get_parent()
			await physics_frames(10)
			expect_equal([hero.get_meta(SCALE), hero.get_meta(WEIGHT)], [0.0, 1.0], way)
			ways[way].call(owner, water)
			await physics_frames(5)
			expect_equal([hero.get_meta(SCALE), hero.has_meta(WEIGHT)], [1.0, false], way)
			if way in ["carried out", "drained", "water carried away", "water deaf"]:
				expect_events(owner, ["wet", "dry"])
				expect(speed_of(hero).y < -0.5, "it does not fall: %s" % way)
			if way == "water deaf":
				expect_warning("Swim on Machine: Lake has Monitoring off, so it cannot tell who is in the water. Tick Monitoring on it.")
			hero.free()
			if is_instance_valid(water):
				water.free())


func test_two_that_hold_it_weightless_end_where_they_began() -> void:
	await on_both_sides(func() -> void:
		lake()
		var first := swimmer(-4.0)
		var hero := first.get_parent()
		var second := start(machine([state("Swim", [swim()], {"out": "Out"}), state("Out")], {"under": hero, "name": "Second"}))
		await physics_frames(10)
		for leaving: Array in [[first, 0.0], [second, 1.0]]:
			(leaving[0] as SCMachine).send_event(&"out")
			await physics_frames(3)
			expect_equal(hero.get_meta(SCALE), leaving[1])
			expect_equal(hero.has_meta(WEIGHT), leaving[1] == 0.0))


func test_a_jump_gets_it_out_of_the_water() -> void:
	await on_both_sides(func() -> void:
		lake()
		var hero := character(0.0, -1.0)
		var leap: Resource = kind(SCJumpAction, {"height": far(2.0), "only_from_the_floor": false})
		var owner := start(machine([
			state("Swim", [swim()], {}, {"sub_states": [
				state("Float", [move()], {"go": "Leap"}), state("Leap", [leap, move()]),
			]}),
		], {"under": hero}))
		await physics_frames(10)
		owner.send_event(&"go")
		var highest := -10.0
		for i in 60:
			await physics_frames(1)
			highest = maxf(highest, where(hero).y - TALL / 2.0)
		expect(highest > 0.3 and highest < 2.0, "its feet get as high as %s" % highest))


func test_what_is_set_up_wrong_is_told() -> void:
	await expect_warns_in_physics(swim(), "Swim on Machine: Stage is not a character body, and only a CharacterBody2D or CharacterBody3D can swim.")
	await expect_warns_in_physics(swim({"body_path": ^"../Nobody"}), "Swim on Machine: there is no node at ../Nobody, so nothing swims.")
	var hero := character(0.0, 5.0)
	var no_water := (
		"Swim on Machine: Water is not an Area and holds none, and without one there is nothing to say where the water is. Pick an Area2D or an Area3D "
		+ "with a collision shape, or a Terrain with a lake or sea.")
	for path: NodePath in [^"", ^"../../Gone", ^".."]:
		await expect_warns_in_physics(swim({"water_path": path}), no_water, {"under": hero})
	expect_warns(
		kind(SCGetWaterDepthAction, {"store_in": &"deep"}),
		"there is no Area2D at Self, so the depth is 0. Pick an Area2D with a collision shape under Water Path",
		{"under": hero, "variables": {"deep": 0.0}})
	var dry := Area2D.new()
	dry.name = "Dry"
	stage.add_child(dry)
	expect_warns(kind(SCInWaterCondition, {"water_path": ^"../../Dry"}), "Dry has no collision shape, so the answer is no. Give it one", {"under": hero})
	expect_warns(kind(SCInWaterCondition, {"node_path": ^"../.."}), "Stage is a Node, which has no place in the world", {"under": hero})
	expect_lines(SCSwimAction, {"Swim in the water": {"water_path": ^""}, "Swim in Lake": {"water_path": ^"../Lake"}})
	expect_lines(SCGetWaterDepthAction, {"Put the depth of Self in Lake into deep": {"water_path": ^"../Lake", "store_in": &"deep"}})
	expect_lines(SCInWaterCondition, {"Self is in the water": {}, "Self is 1.2 deep in Lake": {"water_path": ^"../Lake", "how_deep": 1.2}})


func test_how_deep_someone_is() -> void:
	await on_both_sides(func() -> void:
		lake()
		var hero := character()
		var owner := asker(hero, {"variables": {"deep": 0.0}})
		var depth: Resource = kind(SCGetWaterDepthAction, {"water_path": ^"../../Lake", "store_in": &"deep"})
		# Feet at a height and x, and what is measured: above, wading, diving, in a cave below, beside it.
		for row: Array in [[0.2, 0.0, 0.0], [-0.5, 0.0, 0.5], [-3.0, 0.0, 3.0], [-12.5, 0.0, 0.0], [-1.0, 30.0, 0.0]]:
			hero.set(&"position", at(row[1], float(row[0]) + TALL / 2.0))
			var measured := play(depth, {}, {"under": hero, "name": "Measuring", "variables": {"deep": -1.0}})
			expect_near(measured.get_value(&"deep"), far(row[2]), far(0.02), str(row))
			measured.free()
			for how_deep: float in [0.0, 0.4, 1.0]:
				var asked: SCMachineCondition = kind(SCInWaterCondition, {"water_path": ^"../../Lake", "how_deep": far(how_deep)})
				expect_equal(ask(owner, asked), row[2] > how_deep, "%s, %s deep" % [row, how_deep])
		var fish := spot(0.0, -2.0, "Fish")
		var fished := play(depth, {}, {"under": fish, "variables": {"deep": 0.0}})
		expect_near(fished.get_value(&"deep"), far(2.0), far(0.02), "a node without a shape"))


func test_water_of_any_shape() -> void:
	var outline: PackedVector2Array = [Vector2(-64, 0), Vector2(64, 0), Vector2(0, 96)]
	var polygon := CollisionPolygon2D.new()
	polygon.polygon = outline
	var circle := CollisionShape2D.new()
	circle.shape = CircleShape2D.new()
	(circle.shape as CircleShape2D).radius = 64.0
	var tilted := CollisionShape2D.new()
	tilted.shape = RectangleShape2D.new()
	(tilted.shape as RectangleShape2D).size = Vector2(200, 200)
	tilted.rotation = PI / 4.0
	var ball := CollisionShape3D.new()
	ball.shape = SphereShape3D.new()
	(ball.shape as SphereShape3D).radius = 2.0
	var tank := CollisionShape3D.new()
	tank.shape = CylinderShape3D.new()
	(tank.shape as CylinderShape3D).height = 4.0
	# Where somebody is, and how deep.
	for row: Array in [
		[polygon, Vector2(0, 48), 48.0], [polygon, Vector2(40, 48), 0.0], [circle, Vector2(0, 10), 74.0], [circle, Vector2(60, 0), sqrt(64.0 * 64.0 - 3600.0)],
		[tilted, Vector2(0, 0), 100.0 * sqrt(2.0)], [tilted, Vector2(100, 0), 100.0 * sqrt(2.0) - 100.0],
		[ball, Vector3(0, 1, 0), 1.0], [ball, Vector3(0, 0, 1.5), sqrt(4.0 - 2.25)], [ball, Vector3(3, 0, 0), 0.0], [tank, Vector3(0, -1, 0), 3.0],
	]:
		var area: Node = Area2D.new() if row[1] is Vector2 else Area3D.new()
		area.name = "Pond"
		stage.add_child(area)
		if (row[0] as Node).get_parent() != null:
			(row[0] as Node).get_parent().remove_child(row[0])
		area.add_child(row[0])
		var someone := body_at(row[1], "Someone")
		var made := play(kind(SCGetWaterDepthAction, {"water_path": ^"../../Pond", "store_in": &"deep"}), {}, {"under": someone, "variables": {"deep": -1.0}})
		expect_near(made.get_value(&"deep"), row[2], 0.001, str(row))
		area.remove_child(row[0])
		area.free()
		someone.free()
	for shape: Node in [polygon, circle, tilted, ball, tank]:
		shape.free()


func test_gravity_of_one_body() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 50.0)
		var other := character(4.0, 50.0, "Other")
		var lighter: Resource = kind(SCSetGravityAction, {"scale": 0.5, "put_back_when_left": true})
		var owner := start(machine([state("Light", [lighter, move()], {"go": "Heavy"}), state("Heavy", [move()])], {"under": hero}))
		walk(other, [move()])
		await physics_frames(31)
		expect_near(speed_of(hero).y / speed_of(other).y, 0.5, 0.03)
		expect_near(hero.get_meta(SCALE), 0.5)
		owner.send_event(&"go")
		expect_equal(hero.get_meta(SCALE), 1.0)
		var box := crate(10.0, 50.0)
		play(kind(SCSetGravityAction, {"scale": 0.0}), {}, {"under": box})
		await physics_frames(20)
		expect_near(where(box).y, 50.0, 0.01)
		await expect_warns_in_physics(kind(SCSetGravityAction), "is a Node, not a CharacterBody or a RigidBody.")
		expect_lines(SCSetGravityAction, {
			"Pull at Self with 0.5 times its gravity": {},
			"Pull at Self with -1 times its gravity while the state runs": {"scale": -1.0, "put_back_when_left": true},
		}))


func test_walking_on_the_ceiling() -> void:
	await on_both_sides(func() -> void:
		block(0.0, 6.0, 20.0, 2.0, "Ceiling")
		var hero := character(0.0, 2.0)
		var picture := Sprite2D.new()
		hero.add_child(picture)
		var turned: Resource = kind(SCSetGravityAction, {"scale": -1.0, "put_back_when_left": true})
		var leap: Resource = kind(SCJumpAction, {"height": far(1.0)})
		var owner := start(machine([
			state("Above", [turned], {"back": "Below"}, {"sub_states": [state("Walk", [move()], {"go": "Leap"}), state("Leap", [leap, move()])]}),
			state("Below", [move()]),
		], {"under": hero}))
		await physics_frames(60)
		expect_near(where(hero).y, 5.0 - TALL / 2.0, 0.05)
		expect(hero.call(&"is_on_floor"), "the ceiling is no floor")
		expect_equal(picture.flip_v, not in_3d)
		owner.send_event(&"go")
		var lowest := 10.0
		for i in 40:
			await physics_frames(1)
			lowest = minf(lowest, where(hero).y)
		expect_near(5.0 - TALL / 2.0 - lowest, 1.0, 0.05, "it jumps down from it")
		owner.send_event(&"back")
		await physics_frames(40)
		expect_equal([hero.get_meta(SCALE), picture.flip_v], [1.0, false])
		expect(speed_of(hero).y < 0.0 and not hero.call(&"is_on_floor"), "it falls down"))
