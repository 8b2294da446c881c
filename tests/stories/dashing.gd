extends PhysicsStory


func move(settings: Dictionary = {}) -> Resource:
	return kind(SCMoveCharacterAction, {"speed": far(5.0)}.merged(settings, true))


func dash(settings: Dictionary = {}) -> Resource:
	return kind(SCDashAction, {
		"way": SCDashAction.A_DIRECTION, "direction": Vector2(1, 0), "distance": far(4.0), "dashed_event": &"off", "refused_event": &"no",
	}.merged(settings, true))


## A machine that stands still in Stand and dashes on "go", once round.
func dasher(body: Node, dashes: Resource, options: Dictionary = {}) -> SCMachine:
	return start(machine([
		state("Stand", [move({"direction_variable": &"stick"}.merged(options.get("walks", {})))], {"go": "Dash"}),
		state("Dash", [dashes], {"FINISHED": "Stand"}),
	], {"under": body, "variables": {"stick": options.get("stick", Vector2()), "prey": null}}))


func test_a_dash_covers_its_distance() -> void:
	# As long as steps, between them, shorter than one and no time at all.
	await on_both_sides(func() -> void:
		ground()
		for seconds: float in [0.2, 0.11, 1.0 / 60.0, 0.01, 0.0]:
			var hero := character()
			var owner := dasher(hero, dash({"seconds": seconds}))
			await physics_frames(5)
			var before := where(hero).x
			owner.send_event(&"go")
			await physics_frames(int(ceilf(seconds * 60.0 - 0.001)) + 2)
			expect_state(owner, "Stand")
			expect_near(where(hero).x - before, 4.0, 0.08, "in %s s" % seconds)
			expect_near(speed_of(hero).x, 0.0, 0.001, "it flies on")
			expect_events(owner, ["go", "off"])
			hero.free())


func test_a_wall_stops_it_and_the_state_still_ends() -> void:
	await on_both_sides(func() -> void:
		ground()
		block(3.0, 2.0, 1.0, 4.0, "Wall")
		var hero := character()
		var owner := dasher(hero, dash({"direction": at(1.0, 0.0)}))
		await physics_frames(5)
		owner.send_event(&"go")
		await physics_frames(10)
		expect_state(owner, "Dash")
		await physics_frames(6)
		expect_state(owner, "Stand")
		expect_near(where(hero).x, 2.1, 0.05))


func test_where_it_goes() -> void:
	var rows: Array = [
		["moving", {"way": SCDashAction.THE_WAY_IT_IS_MOVING}, Vector2(-1, 0), Vector3(-1, 0, 0), Vector3(-1, 0, 0)],
		["facing", {"way": SCDashAction.THE_WAY_IT_IS_FACING}, Vector2(-1, 0), Vector3(-1, 0, 0), Vector3(0, 0, -1)],
		["at a node", {"way": SCDashAction.TOWARD_A_NODE, "toward_path": ^"../../Flag"}, Vector2(), Vector3(1, 0, 0), Vector3(1, 0, 0)],
		["at one in a variable", {"way": SCDashAction.TOWARD_A_NODE, "toward_variable": &"prey"}, Vector2(), Vector3(1, 0, 0), Vector3(1, 0, 0)],
		["up", {"direction_variable": &"stick"}, Vector2(0, -1), Vector3(0, 1, 0), Vector3(0, 0, -1)],
	]
	await on_both_sides(func() -> void:
		ground()
		var flag := spot(60.0, TALL / 2.0, "Flag")
		for row: Array in rows:
			var hero := character()
			var walks := {"turn_to_face": true} if row[0] == "facing" and not in_3d else {}
			var owner := dasher(hero, dash(row[1]), {"stick": row[2], "walks": walks})
			owner.set_value(&"prey", flag)
			await physics_frames(5)
			var before := where(hero)
			owner.send_event(&"go")
			await physics_frames(13)
			expect_near((where(hero) - before) / 4.0, row[4] if in_3d else row[3], 0.03, row[0])
			hero.free())


func test_gravity_has_no_say_unless_it_is_asked() -> void:
	await on_both_sides(func() -> void:
		for ignores: bool in [true, false]:
			var hero := character(0.0, 20.0)
			var owner := dasher(hero, dash({"ignores_gravity": ignores, "seconds": 0.5}))
			await physics_frames(20)
			var before := where(hero)
			var fell := speed_of(hero).y
			owner.send_event(&"go")
			await physics_frames(29)
			var gravity := 9.8 if in_3d else 980.0 / PX
			var falls := 0.0 if ignores else fell * 29.0 / 60.0 - gravity * 29.0 * 30.0 / 2.0 / 3600.0
			expect_near(where(hero).y - before.y, falls, 0.02 + absf(falls) * 0.01)
			hero.free())


func test_when_it_is_refused() -> void:
	await on_both_sides(func() -> void:
		var floor_below := ground()
		var hero := character()
		var owner := dasher(hero, dash({"wait_between": 0.5, "seconds": 0.1}))
		await physics_frames(5)
		for wanted: Array in [["go", "off"], ["go", "no"]]:
			owner.send_event(&"go")
			await physics_frames(8)
			expect_events(owner, wanted)
		await physics_frames(20)
		owner.send_event(&"go")
		expect_events(owner, ["go", "off"])
		hero.free()
		# One in the air, and another once it has landed.
		floor_below.free()
		hero = character(0.0, 10.0)
		owner = dasher(hero, dash({"one_until_it_lands": true, "seconds": 0.1}))
		for wanted: Array in [["go", "off"], ["go", "no"]]:
			await physics_frames(8)
			owner.send_event(&"go")
			await physics_frames(8)
			expect_events(owner, wanted)
		ground()
		await physics_frames(120)
		for wanted: Array in [["go", "off"], ["go", "off"]]:
			owner.send_event(&"go")
			await physics_frames(8)
			expect_events(owner, wanted))


func test_it_goes_on_as_fast_as_it_came() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var left := state("Left", [act("nothing")])
		var owner := start(machine([
			state("Run", [move({"direction": Vector2(1, 0)})], {"go": "Dash"}), state("Dash", [dash()], {"out": "Left"}), left,
		], {"under": hero}))
		await physics_frames(5)
		owner.send_event(&"go")
		await physics_frames(4)
		expect_near(speed_of(hero).x, 20.0, 0.01)
		owner.send_event(&"out")
		expect_near(speed_of(hero).x, 5.0, 0.01, "left half way"))


func test_who_cannot_dash_is_told() -> void:
	expect_warns(dash(), "Dash on Machine: Stage is not a character body, and only a CharacterBody2D or CharacterBody3D can dash.")
	expect_warns(dash({"body_path": ^"../Nobody"}), "Dash on Machine: there is no node at ../Nobody, so nothing dashes. Pick the character body under Body.")
	var nowhere := "Dash on Machine: there is nowhere to dash. It is set to go %s, and that works out to no direction at all."
	var hero := character(0.0, 5.0)
	for row: Array in [
		[{"way": SCDashAction.THE_WAY_IT_IS_MOVING}, "the way it is moving"], [{"direction": Vector3()}, "along a direction"],
		[{"way": SCDashAction.TOWARD_A_NODE, "toward_path": ^"../../Flag"}, "toward Flag"],
	]:
		var made := play(dash(row[0]), {"no": "Stayed"}, {"under": hero})
		expect_warning(nowhere % row[1])
		expect_state(made, "Stayed")
		made.free()
	expect_lines(SCDashAction, {
		"Dash 4 the way it is going": {}, "Dash 4 ahead": {"way": SCDashAction.THE_WAY_IT_IS_FACING},
		"Dash [far] along a direction": {"way": SCDashAction.A_DIRECTION, "distance_variable": &"far"},
		"Dash 4 along [stick]": {"way": SCDashAction.A_DIRECTION, "direction_variable": &"stick"},
		"Dash 4 at Flag": {"way": SCDashAction.TOWARD_A_NODE, "toward_path": ^"../Flag"},
	})


func test_what_goes_missing_ends_it() -> void:
	await on_both_sides(func() -> void:
		var hero := character(0.0, 5.0)
		var made := play(dash({"body_path": ^"../Hero"}))
		await physics_frames(3)
		expect_state(made, "Work")
		hero.free()
		await physics_frames(2)
		expect_state(made, "Done"))
