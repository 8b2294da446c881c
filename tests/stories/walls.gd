extends PhysicsStory


func move(settings: Dictionary = {}) -> Resource:
	return kind(SCMoveCharacterAction, {"speed": far(5.0), "direction_variable": &"stick"}.merged(settings, true))


func cling(settings: Dictionary = {}) -> Resource:
	return kind(SCWallClingAction, {"slide_speed": far(1.5), "clinging_event": &"holds", "let_go_event": &"lets_go"}.merged(settings, true))


## A hero in the air, pressed against a high wall on its right.
func climber(clings: Resource, walks: Dictionary = {}, clings_first: bool = true) -> SCMachine:
	block(2.0, 20.0, 1.0, 40.0, "Wall")
	var hero := character(1.09, 20.0)
	var list := [clings, move(walks)]
	if not clings_first:
		list.reverse()
	return walk(hero, list, {"variables": {"stick": Vector2(1, 0)}})


func test_it_slides_and_no_faster() -> void:
	await on_both_sides(func() -> void:
		for row: Array in [
			[1.5, {}, true], [1.5, {"falls_faster_than_it_rises": 2.0}, true], [1.5, {}, false], [0.0, {"floats_at_the_top": 0.5}, true], [0.0, {}, false],
		]:
			var owner := climber(cling({"slide_speed": far(row[0])}), row[1], row[2])
			var hero := owner.get_parent()
			await physics_frames(40)
			var before := where(hero).y
			await physics_frames(60)
			expect_near(where(hero).y - before, -float(row[0]), 0.02, str(row))
			expect_events(owner, ["holds"])
			hero.free())


func test_a_slower_fall_is_left_alone() -> void:
	await on_both_sides(func() -> void:
		var owner := climber(cling({"slide_speed": far(30.0)}))
		var hero := owner.get_parent()
		await physics_frames(31)
		var gravity := 9.8 if in_3d else 980.0 / PX
		expect_near(speed_of(hero).y, -gravity / 2.0, 0.03 * gravity)
		hero.set(&"velocity", at(0.0, 4.0))
		await physics_frames(2)
		expect_events(owner, ["holds", "lets_go"])
		expect(speed_of(hero).y > 2.5, "a rise is held"))


func test_it_lets_go_and_takes_hold_again() -> void:
	await on_both_sides(func() -> void:
		var owner := climber(cling({"lets_go_after": 0.5}))
		var hero := owner.get_parent()
		await physics_frames(28)
		expect_events(owner, ["holds"])
		await physics_frames(30)
		expect_events(owner, ["lets_go"])
		expect(speed_of(hero).y < -4.0, "it does not fall")
		# Only off the wall and back.
		for stick: float in [-1.0, 1.0]:
			expect_events(owner, [])
			owner.set_value(&"stick", Vector2(stick, 0))
			await physics_frames(4)
		await physics_frames(4)
		expect_events(owner, ["holds"])
		owner.set_value(&"stick", Vector2(-1, 0))
		await physics_frames(3)
		expect_events(owner, ["lets_go"]))


func test_it_holds_only_while_told_and_not_on_the_floor() -> void:
	await on_both_sides(func() -> void:
		var owner := climber(cling({"only_while_held": &"ui_accept"}))
		await physics_frames(10)
		expect_events(owner, [])
		Input.action_press(&"ui_accept")
		await physics_frames(3)
		expect_events(owner, ["holds"])
		Input.action_release(&"ui_accept")
		await physics_frames(3)
		expect_events(owner, ["lets_go"])
		owner.free()
		ground()
		block(2.0, 20.0, 1.0, 40.0, "Wall")
		var standing := walk(character(1.09, 0.0), [cling(), move()], {"variables": {"stick": Vector2(1, 0)}})
		await physics_frames(5)
		events_of(standing).clear()
		await physics_frames(10)
		expect_events(standing, []))


func test_who_cannot_cling_is_told() -> void:
	await expect_warns_in_physics(
		cling(), "Wall Cling on Machine: Stage is not a character body, and only a CharacterBody2D or CharacterBody3D can cling to a wall.")
	await expect_warns_in_physics(cling({"body_path": ^"../Nobody"}), "Wall Cling on Machine: there is no node at ../Nobody, so nothing clings.")
	expect_lines(SCWallClingAction, {
		"Cling to walls, sliding 1.5": {}, "Cling to walls": {"slide_speed": 0.0},
		"Cling to walls, sliding [slip] while ui_accept is held": {"slide_speed_variable": &"slip", "only_while_held": &"ui_accept"},
	})
