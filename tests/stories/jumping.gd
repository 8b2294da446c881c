extends PhysicsStory

const Move := preload("res://addons/quillstead/runtime/quillstead_move.gd")
const GRAVITY: float = 9.8


## Both sides fall with the same gravity, in metres.
func move(settings: Dictionary = {}) -> Resource:
	return kind(SCMoveCharacterAction, {"speed": far(5.0), "gravity": far(GRAVITY)}.merged(settings, true))


func jump(settings: Dictionary = {}) -> Resource:
	return kind(SCJumpAction, {"height": far(2.0), "jumped_event": &"up", "refused_event": &"no"}.merged(settings, true))


## A machine that jumps from Stand on "go" and is in Air from there on, walking as told all the while.
func jumper(body: Node, jumps: Resource, walks: Resource = null, options: Dictionary = {}) -> SCMachine:
	var walking: Resource = move() if walks == null else walks
	var list: Array = [walking, jumps] if options.get("walks_first", false) else [jumps, walking]
	return start(machine([
		state("Stand", [walking], {"go": "Jump"}),
		state("Jump", list, {"up": "Air", "no": "Air"}),
		state("Air", [walking], {"go": "Jump"}),
	], {"under": body, "variables": {"stick": Vector2()}}))


func peak_of(body: Node, over: int = 90) -> float:
	var feet := where(body).y
	var highest := feet
	for i in over:
		await physics_frames(1)
		highest = maxf(highest, where(body).y)
	return highest - feet


func test_it_gets_as_high_as_it_says() -> void:
	var shaped := {"floats_at_the_top": 0.5, "falls_faster_than_it_rises": 2.0}
	var rows: Array = [
		[2.0, {}, {}], [2.0, shaped, {}], [2.0, shaped, {"walks_first": true}], [0.5, {}, {}], [0.5, shaped, {}], [0.06, shaped, {}],
		[3.3, {"floats_at_the_top": 0.25}, {}],
	]
	await on_both_sides(func() -> void:
		ground()
		for row: Array in rows:
			var hero := character()
			var owner := jumper(hero, jump({"height": far(row[0])}), move(row[1]), row[2])
			await physics_frames(5)
			owner.send_event(&"go")
			expect_near(await peak_of(hero) / float(row[0]), 1.0, 0.02, str(row))
			expect_events(owner, ["go", "up"])
			expect_state(owner, "Air")
			hero.free())


func test_the_speed_it_leaves_with() -> void:
	# With h of the gravity left below 0.15 g, v² = 2 g H - (1 / h - 1) (0.15 g)², and h 2 g H where that is too little.
	var top := 0.15 * GRAVITY
	var rows: Array = [
		[1.0, 2.0, sqrt(2.0 * GRAVITY * 2.0)], [0.5, 2.0, sqrt(2.0 * GRAVITY * 2.0 - top * top)], [0.5, 0.1, sqrt(0.5 * 2.0 * GRAVITY * 0.1)], [1.0, -1.0, 0.0],
	]
	await on_both_sides(func() -> void:
		for row: Array in rows:
			var hero := character(0.0, 9.0)
			hero.set_meta(&"quillstead_hangs_at_top", row[0])
			hero.set_meta(&"quillstead_walk_gravity", far(GRAVITY))
			hero.set(&"velocity", at(3.0, -7.0))
			play(jump({"height": far(row[1]), "only_from_the_floor": false}), {}, {"under": hero})
			await physics_frames(2)
			expect_near(speed_of(hero), Vector3(3.0, row[2], 0.0), 0.001, str(row))
			hero.free())


func test_a_ledge_forgives_to_the_frame() -> void:
	await on_both_sides(func() -> void:
		for late in 2:
			var ledge := ground()
			var hero := character()
			var owner := jumper(hero, jump({"waits_to_land_for": 0.0}))
			await physics_frames(5)
			ledge.free()
			await physics_frames(3)
			var last: int = Move._grounded[hero.get_instance_id()]
			while Engine.get_physics_frames() < last + 6 + late:
				await physics_frames(1)
			owner.send_event(&"go")
			await physics_frames(3)
			expect_events(owner, ["go", "no" if late else "up"])
			expect_equal(speed_of(hero).y > 0.0, late == 0)
			hero.free())


func test_a_jump_uses_up_its_grace() -> void:
	await on_both_sides(func() -> void:
		for walks_first: bool in [false, true]:
			for between in range(1, 8):
				var floor_below := ground()
				var hero := character()
				var owner := jumper(hero, jump({"waits_to_land_for": 0.0}), null, {"walks_first": walks_first})
				await physics_frames(5)
				owner.send_event(&"go")
				await physics_frames(between)
				owner.send_event(&"go")
				await physics_frames(2)
				expect_events(owner, ["go", "up", "go", "no"])
				hero.free()
				floor_below.free())


func test_a_press_before_landing_is_remembered() -> void:
	await on_both_sides(func() -> void:
		ground()
		# It takes 27 frames to fall a metre.
		for early: bool in [false, true]:
			var hero := character(0.0, 1.0)
			var owner := jumper(hero, jump())
			await physics_frames(12 if early else 24)
			owner.send_event(&"go")
			await physics_frames(2)
			expect_events(owner, ["go"])
			await physics_frames(14)
			expect_events(owner, ["no" if early else "up"])
			expect_equal(speed_of(hero).y > 0.0, not early)
			hero.free())


func test_letting_go_makes_it_lower() -> void:
	await on_both_sides(func() -> void:
		ground()
		var peaks: Array[float] = []
		for held: bool in [true, false]:
			var hero := character()
			var owner := jumper(hero, jump({"cut_short_input": &"ui_accept"}))
			await physics_frames(5)
			Input.action_press(&"ui_accept")
			owner.send_event(&"go")
			await physics_frames(6)
			if not held:
				Input.action_release(&"ui_accept")
				await physics_frames(2)
				expect_near(speed_of(hero).y, 0.4 * sqrt(2.0 * GRAVITY * 2.0), 0.35)
			peaks.append(await peak_of(hero))
			Input.action_release(&"ui_accept")
			expect(not hero.has_meta(&"quillstead_cut_short") and not hero.has_meta(&"quillstead_cut_from"))
			hero.free()
		expect(peaks[1] < peaks[0] * 0.6, "it rose on by %s" % [peaks]))


func test_off_a_wall_and_not_off_one_beside_the_floor() -> void:
	await on_both_sides(func() -> void:
		ground()
		block(2.0, 10.0, 1.0, 20.0, "Wall")
		for in_the_air: bool in [true, false]:
			var hero := character(1.09, 6.0 if in_the_air else 0.0)
			var walls := {"off_walls": true, "away_from_wall": far(6.0), "waits_to_land_for": 0.0}
			var owner := jumper(hero, jump(walls), move({"direction_variable": &"stick"}))
			owner.set_value(&"stick", Vector2(1, 0))
			await physics_frames(6)
			var before := where(hero)
			owner.send_event(&"go")
			await physics_frames(9)
			expect_events(owner, ["go", "up"])
			expect(where(hero).y > before.y + 0.6, "it does not jump")
			# The stick still presses against the wall.
			expect_equal(where(hero).x < before.x - 0.4, in_the_air, "in the air: %s" % in_the_air)
			hero.free()
		var off := character(1.09, 6.0)
		var refused := jumper(off, jump({"waits_to_land_for": 0.0}), move({"direction": Vector2(1, 0)}))
		await physics_frames(6)
		refused.send_event(&"go")
		await physics_frames(3)
		expect_events(refused, ["go", "no"]))


func test_it_lasts_a_step_longer_than_its_push() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var owner := start(machine([
			state("Stand", [move()], {"go": "Jump"}), state("Jump", [move(), jump()], {"FINISHED": "Air"}), state("Air", [move()]),
		], {"under": hero}))
		await physics_frames(5)
		owner.send_event(&"go")
		await physics_frames(1)
		expect_state(owner, "Jump")
		await physics_frames(1)
		expect_state(owner, "Air"))


func test_who_cannot_jump_is_told() -> void:
	await expect_warns_in_physics(
		jump(), "Jump on Machine: Stage is a Node, so nothing jumps. Only a CharacterBody2D or CharacterBody3D can jump, so pick one under Body.")
	await expect_warns_in_physics(jump({"body_path": ^"../Nobody"}), "Jump on Machine: there is no node at ../Nobody, so nothing jumps.")
	var hero := character(0.0, 5.0)
	await expect_warns_in_physics(jump({"height": NAN, "only_from_the_floor": false}), [], {"under": hero})
	await expect_warns_in_physics(jump({"height": INF, "only_from_the_floor": false}), "Height holds a number that is none", {"under": hero})
	hero.set(&"motion_mode", CharacterBody2D.MOTION_MODE_FLOATING)
	var floating := "Jump on Machine has Falls ticked, but Hero has its Motion Mode set to Floating"
	await expect_warns_in_physics(jump({"only_from_the_floor": false}), floating, {"under": hero})
	expect_lines(SCJumpAction, {
		"Jump 2 high": {}, "Jump [leap] high, off walls too": {"height_variable": &"leap", "off_walls": true},
	})
