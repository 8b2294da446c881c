extends PhysicsStory
## A character swings from a point as a pendulum does, and flies on when it lets go.

const LENGTH: float = 2.0
const PULL: float = 10.0


func swing(settings: Dictionary = {}) -> SCSwingAction:
	return kind(SCSwingAction, {
		"point_path": ^"../../Hook", "gravity": far(PULL), "slows_down": 0.0, "pump": far(6.0), "shortest": far(0.5),
	}.merged(settings, true))


## Hanging from a hook at (0, 10), so many degrees out to the right.
func hanging(degrees: float, length: float = LENGTH) -> Node:
	if stage.get_node_or_null(^"Hook") == null:
		spot(0.0, 10.0, "Hook")
	var hero := character()
	hero.set(&"position", at(length * sin(deg_to_rad(degrees)), 10.0 - length * cos(deg_to_rad(degrees))))
	return hero


func rope_of(hero: Node) -> float:
	return (where(hero) - Vector3(0, 10, 0)).length()


func test_it_swings_as_long_as_a_pendulum_does_and_loses_nothing() -> void:
	for length: float in [2.0, 5.0]:
		await on_both_sides(func() -> void:
			var hero := hanging(5.0, length)
			walk(hero, [swing()])
			var crossings: Array[int] = []
			var side := 1.0
			var farthest := 0.0
			for frame in 60 * 20:
				await physics_frames(1)
				var x := where(hero).x
				if x * side < 0.0:
					crossings.append(frame)
					side = -side
				if crossings.size() > 3:
					farthest = maxf(farthest, absf(x))
				expect_near(rope_of(hero), length, 0.01)
				if crossings.size() == 5:
					break
			var period := (crossings[4] - crossings[0]) / 2.0 / 60.0
			expect_near(period, TAU * sqrt(length / PULL), TAU * sqrt(length / PULL) * 0.02, "the period")
			expect_near(farthest, length * sin(deg_to_rad(5.0)), 0.02 * length * sin(deg_to_rad(5.0)), "how far it swings"))


func test_its_speed_at_the_bottom_and_what_is_lost_on_the_way() -> void:
	await on_both_sides(func() -> void:
		# The loss in a second, the highest speed at the bottom of a fall from the side.
		for row: Array in [[0.0, sqrt(2.0 * PULL * LENGTH), 0.1], [0.5, 4.7, 0.4]]:
			var hero := hanging(90.0)
			walk(hero, [swing({"slows_down": row[0]})])
			var fastest := 0.0
			for frame in 60:
				await physics_frames(1)
				fastest = maxf(fastest, speed_of(hero).length())
			expect_near(fastest, row[1], row[2], str(row))
			hero.free()
		var held := hanging(90.0)
		walk(held, [swing({"top_speed": far(3.0)})])
		await physics_frames(40)
		expect(speed_of(held).length() <= 3.001))


func test_ropes_go_slack_and_poles_do_not() -> void:
	await on_both_sides(func() -> void:
		for stiff: bool in [false, true]:
			# Straight up over the hook, tipped a little: a rope lets it fall, a pole carries it round.
			var hero := hanging(178.0)
			hero.set(&"velocity", at(0.2, 0.0))
			walk(hero, [swing({"stiff": stiff})])
			var nearest := LENGTH
			for frame in 60:
				await physics_frames(1)
				nearest = minf(nearest, rope_of(hero))
				expect(rope_of(hero) < LENGTH + 0.02, "the rope stretches to %s" % rope_of(hero))
			expect_equal(nearest > LENGTH - 0.02, stiff, "nearest %s" % nearest)
			hero.free())


func test_pumping_and_climbing_and_letting_go() -> void:
	await on_both_sides(func() -> void:
		var hero := hanging(0.0)
		var owner := start(machine([
			state("Hang", [swing({"direction_variable": &"stick", "climb_speed": far(1.0)})], {"jump": "Fly"}), state("Fly"),
		], {"under": hero, "variables": {"stick": Vector2(1, 0)}}))
		await physics_frames(31)
		# Half a second of 6 metres a second each second, with gravity against it.
		expect_near(where(hero).x, LENGTH * sin(0.6 * (1.0 - cos(0.5 * sqrt(PULL / LENGTH)))), 0.03)
		owner.set_value(&"stick", Vector2(0, -1))
		await physics_frames(60)
		expect_near(rope_of(hero), LENGTH if in_3d else LENGTH - 1.0, 0.05)
		owner.set_value(&"stick", Vector2(0, 1))
		await physics_frames(120)
		expect_near(rope_of(hero), LENGTH, 0.05, "no longer than it was")
		var speed := speed_of(hero)
		owner.send_event("jump")
		expect_near(speed_of(hero), speed, 0.001)
		await physics_frames(3))


func test_a_rope_that_is_too_short_is_reeled_in_and_a_long_one_catches() -> void:
	await on_both_sides(func() -> void:
		var far_off := hanging(0.0, 5.0)
		walk(far_off, [swing({"rope_length": far(2.0)})])
		await physics_frames(30)
		expect_near(rope_of(far_off), 2.0, 0.02)
		far_off.free()
		var near := hanging(0.0, 1.0)
		walk(near, [swing({"rope_length": far(2.0)})])
		await physics_frames(12)
		expect(rope_of(near) < 1.3, "it was torn down to the end of its rope")
		await physics_frames(60)
		expect_near(rope_of(near), 2.0, 0.02))


func test_a_wall_in_the_way_and_a_hook_that_goes() -> void:
	await on_both_sides(func() -> void:
		block(-2.0, 8.0, 2.0, 10.0, "Wall")
		var hero := hanging(80.0)
		var owner := start(machine([state("Hang", [swing()], {"FINISHED": "Fly"}), state("Fly")], {"under": hero}))
		var least := 9.0
		for frame in 120:
			await physics_frames(1)
			least = minf(least, where(hero).x)
		expect(least > -1.0 + WIDE / 2.0 - 0.02, "it is in the wall at %s" % least)
		stage.get_node(^"Hook").free()
		await physics_frames(2)
		expect_state(owner, "Fly"))


func test_the_rope_is_drawn() -> void:
	var hero := hanging(30.0)
	var line := Line2D.new()
	line.name = "Rope"
	line.position = Vector2(7, 7)
	stage.add_child(line)
	var owner := walk(hero, [swing({"rope_line_path": ^"../../Rope"})])
	await physics_frames(5)
	expect_near(line.to_global(line.points[0]), hero.get(&"position"), 0.01)
	expect_near(line.to_global(line.points[1]), Vector2(0, -320), 0.01)
	owner.free()
	expect_equal(line.points.size(), 0)


func test_numbers_that_are_none_harm_nobody() -> void:
	await on_both_sides(func() -> void:
		for setting: String in ["rope_length", "pump", "slows_down", "gravity", "top_speed", "climb_speed", "shortest", "longest"]:
			for number: float in [NAN, INF, -1.0, 1.0e30]:
				var hero := hanging(40.0)
				walk(hero, [swing({"climb_speed": far(1.0), "direction": Vector2(1, 1), setting: number})])
				await physics_frames(4)
				expect((hero.get(&"position") as Variant).is_finite() and (hero.get(&"velocity") as Variant).is_finite(), "%s %s" % [setting, number])
				hero.free()
		var odd := hanging(0.0, 0.0)
		walk(odd, [swing({"direction": Vector2(NAN, 1)})])
		await physics_frames(4)
		expect((odd.get(&"position") as Variant).is_finite()))


func test_what_it_says() -> void:
	expect_lines(SCSwingAction, {
		"Swing from (pick one)": {},
		"Swing from Hook on a rope 3 long": {"point_path": ^"../Hook", "rope_length": 3.0},
		"Swing from [ring] on a pole, climbing the rope": {"point_variable": &"ring", "stiff": true, "climb_speed": 1.0},
	})
	var hero := hanging(0.0)
	var wrong := {
		"Swing on Machine: no point is picked, so there is nothing to swing from. Pick a node under Point, or hold one in its variable.": {"point_path": ^""},
		"Swing on Machine: there is no node with a place at ../Gone, so": {"point_path": ^"../Gone"},
		"Swing on Machine: ring holds nothing, so": {"point_variable": &"ring"},
		"are not both in 2D or both in 3D, so": {"point_variable": &"other"},
		"there is no Line2D at ../..": {"rope_line_path": ^"../.."},
		"is not a character body, and only a CharacterBody2D or CharacterBody3D can swing.": {"body_path": ^"../.."},
		"there is no node at ../Nobody": {"body_path": ^"../Nobody"},
	}
	for sentence: String in wrong:
		expect_warns(swing(wrong[sentence]), sentence, {"under": hero, "variables": {"ring": null, "other": Vector3()}})
