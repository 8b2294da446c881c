extends PhysicsStory
## Getting behind something.

const WALLS: int = 2


func cover(settings: Dictionary = {}) -> Resource:
	var sized := {"target_variable": &"prey", "speed": far(6.0), "arrive_within": far(0.3), "within": far(25.0), "blocked_by": WALLS, "store_cover_in": &"behind"}
	return kind(SCTakeCoverAction, sized.merged(settings, true))


## A threat at 10, a spot in its sight, and a farther one behind a wall that only eyes stop at.
func field() -> Node:
	ground()
	for row: Array in [[1.5, "Open"], [-4.0, "Hidden"]]:
		spot(row[0], 0.5, row[1]).add_to_group("cover")
	block(-3.0, 1.5, 0.5, 3.0, "Wall").set(&"collision_layer", WALLS)
	return spot(10.0, 0.5, "Threat")


func hide_from(threat: Node, body: Node, action: Resource, more: Dictionary = {}) -> SCMachine:
	var variables := {"prey": threat, "behind": null}
	return start(machine([state("Hide", [action], {"FINISHED": "Done"}), state("Done")], {"under": body, "variables": variables.merged(more)}))


func test_it_goes_where_it_is_not_seen() -> void:
	await on_both_sides(func() -> void:
		var threat := field()
		var hero := character()
		var owner := hide_from(threat, hero, cover())
		await physics_frames(2)
		expect_equal(owner.get_value(&"behind"), stage.get_node(^"Hidden"))
		expect_state(owner, "Hide")
		await physics_frames(60)
		expect_near(where(hero).x, -3.7, 0.12)
		expect_state(owner, "Done")
		expect_events(owner, ["InCover"]))


func test_which_spot_is_taken() -> void:
	var rows := {
		"the nearest of those unseen": [{}, "Hidden"],
		"the nearest": [{"must_be_out_of_sight": false}, "Open"],
		"walls that eyes pass": [{"blocked_by": 1 << 5}, ""],
		"too far": [{"within": 3.0}, ""],
		"within reach of all": [{"within": 0.0}, "Hidden"],
		"another group": [{"cover_group": &"elsewhere"}, ""],
		"no group": [{"cover_group": &""}, ""],
	}
	await on_both_sides(func() -> void:
		var threat := field()
		for row: String in rows:
			var hero := character()
			var settings: Dictionary = rows[row][0].duplicate()
			if settings.has("within"):
				settings["within"] = far(settings["within"])
			var owner := hide_from(threat, hero, cover(settings))
			await physics_frames(3)
			var wanted: String = rows[row][1]
			var taken: Variant = owner.get_value(&"behind")
			expect_equal((taken as Node).name if taken is Node else &"", StringName(wanted), row)
			expect_events(owner, [] if wanted else ["NoCover"])
			expect_state(owner, "Hide" if wanted else "Done")
			owner.stop()
			hero.free())


func test_without_a_threat_the_nearest_will_do() -> void:
	await on_both_sides(func() -> void:
		field()
		var owner := hide_from(null, character(), cover())
		await physics_frames(2)
		expect_equal(owner.get_value(&"behind"), stage.get_node(^"Open")))


func test_a_spot_that_goes_ends_it() -> void:
	await on_both_sides(func() -> void:
		var threat := field()
		var owner := hide_from(threat, character(), cover())
		await physics_frames(3)
		stage.get_node(^"Hidden").free()
		await physics_frames(3)
		expect_state(owner, "Done")
		expect_events(owner, []))


func test_whether_a_spot_hides_can_be_asked() -> void:
	await on_both_sides(func() -> void:
		var threat := field()
		var hero := character()
		await physics_frames(2)
		var action := cover()
		var asker := start(machine([state("Idle")]))
		for row: Array in [["Open", false], ["Hidden", true]]:
			var spot_there := stage.get_node(NodePath(row[0] as String))
			expect_equal(action._hidden_at(spot_there, threat, hero), row[1], row[0])
			expect_equal(asker.native_helper(&"take_cover_hidden_at", [action, spot_there, threat, hero]), row[1], row[0])
		expect_equal(action._hidden_at(null, threat, hero), true)
		expect_equal(action._hidden_at(body_3d() if not in_3d else body(), threat, hero), true))


func test_lines_and_warnings() -> void:
	expect_lines(SCTakeCoverAction, {"Get behind the nearest cover": {}})
	var blind := cover({"target_variable": &""})
	await expect_warns_in_physics(blind, "Take Cover on Machine: Hero has no Perception node", {"under": character(), "variables": {"behind": null}})
