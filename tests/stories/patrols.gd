extends PhysicsStory
## A round of markers, and how far somebody has got on it.


func patrol(settings: Dictionary = {}) -> Resource:
	var points: Array[NodePath] = [^"../../A", ^"../../B", ^"../../C"]
	var sized := {"points": points, "speed": far(6.0), "arrive_within": far(0.2), "wait_at_each": 0.1, "reached_event": &"here"}
	return kind(SCPatrolAction, sized.merged(settings, true))


## Markers one metre apart from 1 on.
func markers(group: String = "") -> void:
	for i in 3:
		var made := spot(1.0 + i, 0.0, "ABC"[i])
		if group:
			made.add_to_group(group)


## The names of the markers as they are reached.
func rounds_of(owner: SCMachine) -> Array[String]:
	var seen: Array[String] = []
	owner.event_sent.connect(func(event: StringName, data: Variant) -> void:
		if event == &"here":
			seen.append((data as Node).name))
	return seen


func test_each_order_walks_its_own_round() -> void:
	var orders := {
		SCPatrolAction.LOOP: "ABCABCA",
		SCPatrolAction.PING_PONG: "ABCBABC",
		SCPatrolAction.ONCE: "ABC",
	}
	await on_both_sides(func() -> void:
		ground()
		markers()
		for order: int in orders:
			var hero := character()
			var owner := start(machine([state("Walk", [patrol({"order": order})], {"FINISHED": "Home"}), state("Home")], {"under": hero}))
			var seen := rounds_of(owner)
			for i in 400:
				await physics_frames(1)
				if seen.size() == (orders[order] as String).length():
					break
			expect_equal("".join(seen), orders[order])
			await physics_frames(12)
			expect_state(owner, "Home" if order == SCPatrolAction.ONCE else "Walk")
			expect_equal(events_of(owner).has("PatrolDone"), order == SCPatrolAction.ONCE)
			owner.stop()
			hero.free())


func test_it_waits_and_walks_at_its_pace() -> void:
	await on_both_sides(func() -> void:
		ground()
		markers()
		var hero := character()
		var owner := walk(hero, [patrol({"wait_at_each": 0.5, "speed": far(3.0)})])
		await physics_frames(19)
		expect_near(where(hero).x, 0.85, 0.1)
		expect_events(owner, ["here"])
		var stood := where(hero).x
		await physics_frames(25)
		expect_near(where(hero).x, stood, 0.001)
		await physics_frames(20)
		expect(where(hero).x > stood + 0.4))


func test_progress_outlives_the_state() -> void:
	await on_both_sides(func() -> void:
		ground()
		markers()
		var owner := start(machine([
			state("Walk", [patrol()], {"alarm": "Look"}),
			state("Look", [], {"calm": "Walk"}),
		], {"under": character()}))
		var seen := rounds_of(owner)
		for i in 120:
			await physics_frames(1)
			if seen.size() == 2 and owner.get_value(&"patrol point") == 2:
				break
		expect_equal("".join(seen), "AB")
		owner.send_event(&"alarm")
		await physics_frames(5)
		owner.send_event(&"calm")
		await physics_frames(30)
		expect_equal("".join(seen), "ABC"))


func test_a_marker_that_goes_ends_the_round_with_its_number() -> void:
	await on_both_sides(func() -> void:
		ground()
		markers()
		var owner := start(machine([state("Walk", [patrol()], {"FINISHED": "Lost"}), state("Lost")], {"under": character()}))
		await physics_frames(5)
		stage.get_node(^"B").free()
		await physics_frames(40)
		expect_warning("Patrol on Machine: marker 2 of its round is missing, so the patrol stops here.")
		expect_state(owner, "Lost"))
	await expect_warns_in_physics(kind(SCPatrolAction), "Patrol on Machine has no round to walk. Name the markers in Points,", {"under": character()})
	await expect_warns_in_physics(kind(SCPatrolAction, {"route_group": &"nobody"}), "has no round to walk", {"under": character(5.0)})


func test_a_group_is_walked_in_the_order_of_the_scene() -> void:
	await on_both_sides(func() -> void:
		ground()
		markers("round")
		stage.move_child(stage.get_node(^"C"), 0)
		var by_group := {"points": [] as Array[NodePath], "route_group_variable": &"mine", "route_group": &"other"}
		var owner := walk(character(), [patrol(by_group)], {"variables": {"mine": "round"}})
		var seen := rounds_of(owner)
		await physics_frames(150)
		expect_equal("".join(seen).left(4), "CABC")
		stage.get_node(^"A").free()
		await physics_frames(150)
		expect(not "A" in "".join(seen.slice(-3)) and seen.size() > 6, "".join(seen)))


func test_a_walker_turns_back_at_the_edge() -> void:
	await on_both_sides(func() -> void:
		block(0.0, -1.0, 6.0, 2.0)
		spot(-6.0, 0.0, "A")
		spot(6.0, 0.0, "B")
		var hero := character()
		var points: Array[NodePath] = [^"../../A", ^"../../B"]
		var owner := walk(hero, [patrol({"points": points, "speed": far(4.0)})])
		var seen := rounds_of(owner)
		await physics_frames(5)
		for i in 400:
			await physics_frames(1)
			if not hero.call(&"is_on_floor"):
				_fail("it stepped off at %s" % where(hero))
				return
		expect_equal("".join(seen).left(4), "ABAB"))


func test_odd_progress_harms_nobody() -> void:
	ground()
	markers()
	for odd: Variant in [99, -5, 1.4, NAN, INF, "two", null, Vector2.ONE]:
		for order: int in 3:
			var hero := character()
			var quick := patrol({"order": order, "arrive_within": 1000.0, "wait_at_each": 0.0, "progress_variable": &"p"})
			var owner := walk(hero, [quick], {"variables": {"p": odd, "p_step": odd}})
			await physics_frames(8)
			expect(where(hero).is_finite())
			owner.stop()
			hero.free()
	var hero := character()
	var owner := walk(hero, [patrol({"progress_variable": &""})])
	var seen := rounds_of(owner)
	await physics_frames(150)
	expect_equal("".join(seen).left(4), "ABCA", "without a variable it still goes round")


func test_a_float_keeps_its_kind() -> void:
	ground()
	markers()
	var owner := walk(character(), [patrol()], {"variables": {"patrol point": 0.0}})
	await physics_frames(40)
	expect_equal(typeof(owner.get_value(&"patrol point")), TYPE_FLOAT)
	expect(owner.get_value(&"patrol point") > 0.5)


func test_lines() -> void:
	var points: Array[NodePath] = [^"../Gate", ^"../Tower", ^"../Well"]
	expect_lines(SCPatrolAction, {
		"No markers to patrol yet": {},
		"Patrol the markers in round": {"route_group": &"round"},
		"Patrol Gate, Tower and Well": {"points": points},
		"Patrol Gate, Tower and Well and back": {"points": points, "order": SCPatrolAction.PING_PONG},
		"Patrol Gate and Tower once": {"points": points.slice(0, 2), "order": SCPatrolAction.ONCE},
	})
	expect_equal(kind(SCPatrolAction, {"route_group_variable": &"mine"}).summary(), "Patrol the markers in [mine]")
	expect_equal(kind(SCPatrolAction).holds_its_state(), "Set Order to Once, move on with an event sent after a Delay")
	expect_equal(kind(SCPatrolAction, {"order": SCPatrolAction.ONCE}).holds_its_state(), "")
