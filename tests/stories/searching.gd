extends PhysicsStory
## Going where something was last seen, and looking about there.

const Senses := preload("res://addons/quillstead/runtime/senses.gd")


func search(settings: Dictionary = {}) -> Resource:
	var sized := {"speed": far(3.0), "arrive_within": far(0.5), "look_around_for": 1.0, "arrived_event": &"here"}
	return kind(SCSearchLastKnownAction, sized.merged(settings, true))


## A character that remembers a place, searching.
func searcher(place: Variant, action: Resource, lost: Variant = null) -> SCMachine:
	var hero := character(0.0, 0.0 if action.falls else 20.0)
	var senses: Node = Senses.new()
	senses.name = "Perception"
	hero.add_child(senses)
	senses.last_known_position = place
	senses.last_lost_position = lost
	return start(machine([state("Search", [action], {"FINISHED": "Home"}), state("Home")], {"under": hero}))


func test_it_goes_there_looks_about_and_gives_up() -> void:
	await on_both_sides(func() -> void:
		ground()
		for places: Array in [[at(3.0, 0.0), null], [null, at(3.0, 0.0)]]:
			var owner := searcher(places[0], search(), places[1])
			var hero := owner.get_parent()
			await physics_frames(48)
			expect_events(owner, [])
			await physics_frames(10)
			expect_near(where(hero).x, 2.5, 0.06)
			expect_events(owner, ["here"])
			expect_state(owner, "Search")
			await physics_frames(58)
			expect_state(owner, "Home")
			expect_events(owner, ["GaveUp"])
			hero.free())


func test_it_looks_to_both_sides() -> void:
	await on_both_sides(func() -> void:
		var owner := searcher(at(0.0, 20.0) if in_3d else at(0.0, 20.81), search({"falls": false}))
		var hero := owner.get_parent()
		await physics_frames(2)
		expect_events(owner, ["here"])
		var turned := Vector2.ZERO
		for i in 55:
			await physics_frames(1)
			var angle: float = hero.global_rotation.y if in_3d else hero.rotation
			turned = Vector2(minf(turned.x, angle), maxf(turned.y, angle))
		expect_near(turned, Vector2(-PI / 3.0, PI / 3.0), 0.01))


func test_seen_from_the_side_it_looks_left_and_right() -> void:
	ground()
	var owner := searcher(at(-3.0, 0.0), search())
	var hero := owner.get_parent()
	await physics_frames(60)
	expect_equal(hero.get_meta(&"quillstead_faces_left"), true)
	var seen: Array[bool] = []
	for i in 40:
		await physics_frames(1)
		var left: bool = hero.get_meta(&"quillstead_faces_left")
		if seen.is_empty() or seen.back() != left:
			seen.append(left)
	expect_equal(seen, [true, false] as Array[bool])
	expect_equal((hero as Node2D).rotation, 0.0)


func test_one_that_is_stuck_looks_about_where_it_stands() -> void:
	await on_both_sides(func() -> void:
		ground()
		block(2.0, 1.0, 1.0, 6.0, "Wall")
		var owner := searcher(at(6.0, 0.0), search())
		var hero := owner.get_parent()
		await physics_frames(70)
		expect_events(owner, [])
		await physics_frames(60)
		expect_events(owner, ["here"])
		expect(where(hero).x > 0.85 and where(hero).x < 1.15, "it stands at %s" % where(hero))
		await physics_frames(60)
		expect_state(owner, "Home"))


func test_without_a_memory_it_gives_up_at_once() -> void:
	await on_both_sides(func() -> void:
		var owner := searcher(null, search({"falls": false}))
		await physics_frames(2)
		expect_state(owner, "Home")
		expect_events(owner, ["GaveUp"])
		expect_warning("Search Last Known on Machine: its Perception has never seen anything, so there is no last known place"))
	await expect_warns_in_physics(search(), "Search Last Known on Machine has no Perception node under the character", {"under": character()})
	expect_lines(SCSearchLastKnownAction, {"Search where it was last seen": {}})
