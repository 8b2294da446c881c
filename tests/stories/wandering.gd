extends PhysicsStory
## Ambling about: where to, with which pauses, and never off the edge of the floor.


func wander(settings: Dictionary = {}) -> Resource:
	var sized := {"radius": far(4.0), "speed": far(4.0), "arrive_within": far(0.2), "pause_for": 0.0, "random_extra_pause": 0.0}
	return kind(SCWanderAction, sized.merged(settings, true))


func most_frames() -> int:
	return 100 * FPS


func open(in_tree: SceneTree, catcher: OutputCatcher) -> void:
	super(in_tree, catcher)
	seed(4)


func test_it_strays_about_its_home_and_pauses() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character(10.0)
		walk(hero, [wander({"pause_for": 0.5})])
		var seen := Vector2(10.0, 10.0)
		var starts := 0
		var went := false
		await physics_frames(28)
		expect_near(where(hero).x, 10.0, 0.001, "it does not wait before the first stroll")
		for i in 600:
			await physics_frames(1)
			var goes := speed_of(hero).length() > 0.5
			starts += int(goes and not went)
			went = goes
			seen = Vector2(minf(seen.x, where(hero).x), maxf(seen.y, where(hero).x))
		expect(seen.x >= 5.99 and seen.y <= 14.01 and seen.y - seen.x > 2.0, "it has been from %s to %s" % [seen.x, seen.y])
		expect(starts >= 4 and starts <= 20, "%d strolls" % starts))


func test_a_home_is_where_it_stood() -> void:
	await on_both_sides(func() -> void:
		ground()
		var hero := character()
		var home := spot(6.0, 0.0, "Home")
		walk(hero, [wander({"home_path": ^"../../Home", "radius": far(1.0)})])
		home.set(&"position", at(-50.0, 0.0))
		await physics_frames(300)
		expect(where(hero).x > 4.7 and where(hero).x < 7.3, "it is at %s" % where(hero)))


func test_it_turns_back_at_the_edge_of_its_floor() -> void:
	await on_both_sides(func() -> void:
		block(0.0, -1.0, 6.0, 2.0)
		var hero := character()
		walk(hero, [wander({"radius": far(12.0)})])
		await physics_frames(5)
		var reach := Vector2.ZERO
		for i in 900:
			await physics_frames(1)
			reach = Vector2(minf(reach.x, where(hero).x), maxf(reach.y, where(hero).x))
			if not hero.call(&"is_on_floor") or where(hero).y < TALL / 2.0 - 0.05:
				_fail("it stepped off at %s" % where(hero))
				return
		expect(reach.x < -1.5 and reach.y > 1.5, "it has been no farther than %s" % reach))


func test_steps_that_it_can_take_are_no_edge() -> void:
	await on_both_sides(func() -> void:
		block(0.0, -1.0, 6.0, 2.0)
		block(13.0, -1.5, 20.0, 2.0)
		var hero := character()
		spot(6.0, 0.0, "Home")
		walk(hero, [wander({"home_path": ^"../../Home", "radius": 0.0})])
		await physics_frames(150)
		expect_near(where(hero).x, 6.0, 0.3))


func test_one_that_is_stuck_tries_another_place() -> void:
	await on_both_sides(func() -> void:
		ground()
		for x: float in [-1.5, 2.5]:
			block(x, 1.0, 1.0, 6.0, "Wall")
		var hero := character()
		spot(60.0, 0.0, "Home")
		var owner := walk(hero, [wander({"home_path": ^"../../Home", "radius": far(1.0)})])
		var places: Dictionary[String, bool] = {}
		for i in 300:
			await physics_frames(1)
			places[str(owner.slot(0)["place"])] = true
		expect(places.size() >= 3, "it leans on the wall")
		expect(where(hero).x > 1.5, "%s" % where(hero)))


func test_the_lane_walks_what_is_plain() -> void:
	await on_both_sides(func() -> void:
		for in_lane: bool in [true, false]:
			var ghost := spot(3.0, 2.0, "Ghost")
			var owner := walk(ghost, [wander({"turn_to_face": not in_lane, "random_extra_pause": 0.1})])
			expect_equal(owner.is_resting(0), in_lane)
			var farthest := 0.0
			for i in 300:
				await physics_frames(1)
				farthest = maxf(farthest, (where(ghost) - Vector3(3, 2, 0)).length())
			expect(farthest > 0.5 and farthest <= 4.01, "it strayed %s" % farthest)
			ghost.free())


func test_places_lie_on_the_mesh_and_within_the_radius() -> void:
	await on_both_sides(func() -> void:
		var hero := character()
		var region := _meadow()
		var map: RID = region.call(&"get_navigation_map")
		var server: Object = NavigationServer3D if in_3d else NavigationServer2D
		# The map is made ready on a thread of its own.
		for i in 2000:
			await physics_frames(1)
			if server.call(&"map_get_iteration_id", map) > 0 and server.call(&"map_get_closest_point", map, at(3.0, 1.0)) != at(0.0, 0.0):
				break
		var action := wander({"falls": false, "radius": far(5.0)})
		var home: Variant = at(0.5, 0.0)
		var farthest := 0.0
		for i in 60:
			var place: Variant = action._somewhere(hero, home)
			var x: float = place.x / far(1.0)
			expect(x >= -0.05, "%s lies off the mesh" % place)
			var away: float = Vector2(place.x - home.x, place.z - home.z).length() if in_3d else (place - home).length()
			expect(away <= far(5.01), "%s lies too far off" % place)
			farthest = maxf(farthest, away / far(1.0))
		expect(farthest > 3.0, "it stays near")
		var ghost := spot(1.0, 0.0, "Ghost")
		expect(not walk(ghost, [wander({"turn_to_face": false})]).is_resting(0), "the lane knows no mesh"))


func test_what_is_set_up_wrong_is_told() -> void:
	await expect_warns_in_physics(
		wander({"home_path": ^"../Nobody"}),
		["there is no node at ../Nobody", "Wander on Machine: the node named in Home was not found, so there is nowhere to wander around"], {"under": character()})
	await expect_warns_in_physics(
		wander({"body_path": ^"../Nobody"}),
		["there is no node at ../Nobody", "there is no body to wander around, so there is nowhere to wander around and the character stands still."])
	var hero := character(0.0, 20.0)
	for odd: Dictionary in [{"radius": NAN}, {"radius": INF}, {"arrive_within": NAN}, {"pause_for": -1.0}]:
		var owner := walk(hero, [wander(odd.merged({"falls": false}))])
		await physics_frames(5)
		expect(where(hero).is_finite(), str(odd))
		owner.free()
	expect_equal(wander()._somewhere(null, Vector2.ZERO), null)
	expect_equal(wander()._somewhere(hero, null), null)
	expect_lines(SCWanderAction, {"Wander within 8": {}})
	expect_equal(kind(SCWanderAction).holds_its_state(), "Move on with an event sent after a Delay")


# From x 0 on.
func _meadow() -> Node:
	if in_3d:
		var mesh := NavigationMesh.new()
		mesh.vertices = PackedVector3Array([Vector3(0, 0, -20), Vector3(20, 0, -20), Vector3(20, 0, 20), Vector3(0, 0, 20)])
		mesh.add_polygon(PackedInt32Array([0, 1, 2, 3]))
		return add(NavigationRegion3D.new(), "Meadow", {"navigation_mesh": mesh})
	var flat := NavigationPolygon.new()
	flat.vertices = PackedVector2Array([Vector2(0, -640), Vector2(640, -640), Vector2(640, 640), Vector2(0, 640)])
	flat.add_polygon(PackedInt32Array([0, 1, 2, 3]))
	return add(NavigationRegion2D.new(), "Meadow", {"navigation_polygon": flat})
