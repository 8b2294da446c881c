extends PhysicsStory
## Walkers that find their way along a navigation mesh, made of squares 4 metres wide.

const SIDE: float = 4.0
## A yard open to the south: from one arm to the other it is a walk round.
const YARD: Array = [Vector2i(0, 0), Vector2i(0, 1), Vector2i(0, 2), Vector2i(1, 2), Vector2i(2, 2), Vector2i(2, 1), Vector2i(2, 0)]


## Meshes are built on threads, as in a game, and not at once.
var takes_its_time: bool = false


## The middle of a square, on the ground; y is the second of the square's two numbers in 2D, z in 3D.
func spot_in(square: Vector2i, height: float = 0.0) -> Variant:
	var place := (Vector2(square) + Vector2(0.5, 0.5)) * SIDE
	return Vector3(place.x, height, place.y) if in_3d else place * PX


func corner(at: Vector2i) -> Variant:
	return Vector3(at.x, 0.0, at.y) * SIDE if in_3d else Vector2(at) * SIDE * PX


## A mesh to walk on, of these squares.
func ground_of(squares: Array, name: String = "Region") -> Node:
	var corners: Array[Vector2i] = []
	var polygons: Array[PackedInt32Array] = []
	for square: Vector2i in squares:
		var polygon: PackedInt32Array = []
		for step: Vector2i in [Vector2i(0, 0), Vector2i(1, 0), Vector2i(1, 1), Vector2i(0, 1)]:
			if square + step not in corners:
				corners.append(square + step)
			polygon.append(corners.find(square + step))
		polygons.append(polygon)
	var mesh: Resource = NavigationMesh.new() if in_3d else NavigationPolygon.new()
	mesh.set(&"vertices", _packed(corners))
	for polygon in polygons:
		mesh.call(&"add_polygon", polygon)
	var region: Node = NavigationRegion3D.new() if in_3d else NavigationRegion2D.new()
	region.set(&"navigation_mesh" if in_3d else &"navigation_polygon", mesh)
	if not takes_its_time:
		var server: Object = NavigationServer3D if in_3d else NavigationServer2D
		server.call(&"map_set_use_async_iterations", tree.root.find_world_3d().navigation_map if in_3d else tree.root.find_world_2d().navigation_map, false)
		server.call(&"region_set_use_async_iterations", region.call(&"get_rid"), false)
	return add(region, name)


func _packed(corners: Array[Vector2i]) -> Variant:
	var flat: PackedVector2Array = []
	var deep: PackedVector3Array = []
	for at: Vector2i in corners:
		if in_3d:
			deep.append(corner(at))
		else:
			flat.append(corner(at))
	return deep if in_3d else flat


## A walker with an agent under it. In 3D its middle is a metre above the ground.
func hiker(square: Vector2i = Vector2i(0, 0), is_body: bool = true) -> Node:
	var made: Node
	if is_body:
		made = CharacterBody3D.new() if in_3d else CharacterBody2D.new()
	else:
		made = Node3D.new() if in_3d else Node2D.new()
	add(NavigationAgent3D.new() if in_3d else NavigationAgent2D.new(), "Agent", {"under": made})
	return add(made, "Hiker", {"position": spot_in(square, 1.0 if in_3d else 0.0)})


func flag(square: Vector2i, name: String = "Flag") -> Node:
	return add(Marker3D.new() if in_3d else Marker2D.new(), name, {"position": spot_in(square)})


func go(settings: Dictionary = {}) -> Resource:
	var usual := {"falls": false, "speed": far(8.0), "to_node_path": ^"../../Flag", "arrived_event": &"there", "no_path_event": &"stuck"}
	return kind(SCNavigateToAction, usual.merged(settings, true))


func away(walker: Node, square: Vector2i) -> float:
	var offset: Variant = walker.get(&"global_position") - spot_in(square, 1.0)
	return offset.length() / (1.0 if in_3d else PX)


func test_it_goes_round_the_wall_and_arrives() -> void:
	await on_both_sides(func() -> void:
		for is_body: bool in [true, false]:
			ground_of(YARD)
			flag(Vector2i(2, 0))
			var walker := hiker(Vector2i(0, 0), is_body)
			var owner := play(go(), {"FINISHED": "Done", "stuck": "Stuck"}, {"under": walker})
			await physics_frames(60)
			expect_state(owner, "Work")
			expect(away(walker, Vector2i(0, 0)) > 4.0 and away(walker, Vector2i(1, 0)) > 3.0, "it cuts across the wall")
			await physics_frames(120)
			expect_state(owner, "Done")
			expect_events(owner, ["there"])
			expect(away(walker, Vector2i(2, 0)) < 1.1, "it is %s away" % away(walker, Vector2i(2, 0)))
			for child in stage.get_children():
				child.free()
			await frames(1))


func test_a_place_a_variable_or_a_node_in_one() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		var goal: Variant = spot_in(Vector2i(0, 1))
		var near := flag(Vector2i(0, 1))
		var ways := [
			[{"to": goal}, {}], [{"to_variable": &"place"}, {"place": goal}], [{"to_variable": &"place"}, {"place": near}],
			[{"to_node_path": ^"../../Flag", "to": spot_in(Vector2i(2, 0))}, {}],
			[{"to_node_variable": &"node", "to_node_path": ^"../../Nobody"}, {"node": near}],
		]
		for way: Array in ways:
			var walker := hiker()
			var owner := play(go({"to_node_path": ^""}.merged(way[0], true)), {"FINISHED": "Done"}, {"under": walker, "variables": way[1]})
			await physics_frames(45)
			expect_state(owner, "Done")
			walker.free())


func test_who_is_walled_off_is_told_once_and_goes_when_a_door_opens() -> void:
	await on_both_sides(func() -> void:
		ground_of([Vector2i(0, 0), Vector2i(1, 0)])
		ground_of([Vector2i(3, 0)], "Island")
		flag(Vector2i(3, 0))
		var walker := hiker()
		var owner := play(go({"finish_on_arrival": false}), {}, {"under": walker})
		await physics_frames(13)
		expect_events(owner, [])
		await physics_frames(8)
		expect_events(owner, ["stuck"])
		await physics_frames(90)
		expect_near(where_on(walker).x, 2.0 * SIDE, 1.1, "it goes as near as it can")
		events_of(owner).clear()
		ground_of([Vector2i(2, 0)], "Door")
		await physics_frames(120)
		expect_events(owner, ["there"])
		expect(away(walker, Vector2i(3, 0)) < 1.1))


func where_on(walker: Node) -> Vector3:
	var place: Variant = walker.get(&"global_position")
	return place if place is Vector3 else Vector3(place.x, 0.0, place.y) / PX


func test_a_mesh_that_comes_late_is_no_wall() -> void:
	await on_both_sides(func() -> void:
		takes_its_time = true
		flag(Vector2i(1, 0))
		var owner := play(go(), {"FINISHED": "Done", "stuck": "Stuck"}, {"under": hiker()})
		await physics_frames(8)
		ground_of([Vector2i(0, 0), Vector2i(1, 0)])
		# Frames here are far shorter than the threads that build it reckon with.
		for i in 1500:
			if current(owner) == &"Work":
				await physics_frames(1)
		expect_state(owner, "Done")
		expect_events(owner, ["there"]))


func test_it_follows_who_walks_off() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		var prey := flag(Vector2i(0, 1))
		var walker := hiker()
		var owner := play(go({"finish_on_arrival": false}), {}, {"under": walker})
		await physics_frames(60)
		expect_events(owner, ["there"])
		await physics_frames(60)
		expect_events(owner, [])
		prey.set(&"position", spot_in(Vector2i(0, 2)))
		await physics_frames(60)
		expect_events(owner, ["there"])
		expect(away(walker, Vector2i(0, 2)) < 1.1)
		prey.free()
		await physics_frames(2)
		expect_warning("Navigate To on Machine: To Node holds no node to go to (it may have been removed), so it stands still."))


func test_a_fast_one_does_not_run_past_the_corner() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		flag(Vector2i(2, 0))
		var walker := hiker()
		var owner := play(go({"speed": far(200.0), "turn_to_face": false}), {"FINISHED": "Done"}, {"under": walker})
		await physics_frames(20)
		expect_state(owner, "Done")
		expect(away(walker, Vector2i(2, 0)) < 1.1))


func test_what_is_set_up_wrong_is_told() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		flag(Vector2i(2, 0))
		var walker := hiker()
		var other: Node = body("Other") if in_3d else body_3d("Other")
		var rows := [
			[{"body_path": ^"../Nobody"}, "there is no body at Body to walk. Pick one, or leave it empty for Self."],
			[{"body_path": ^"../../Flag"}, "Flag has no NavigationAgent2D or NavigationAgent3D under it to find the way, so it does not move."],
			[
				{"agent_path": ^"../../Flag"},
				"so it cannot find a way. Pick the agent, or leave Agent empty to use the one under Hiker.",
			],
			[{"to_node_variable": &"prey"}, "To Node Variable prey holds no node to go to (it may have been removed), so it stands still."],
			[{"to_node_path": ^"../../Other"}, "where places mean something else, so it stands still."],
			[{"to_node_path": ^"", "to": "there"}, "To holds a String, which is no place"],
		]
		for row: Array in rows:
			await expect_warns_in_physics(go(row[0]), row[1], {"under": walker})
		add(NavigationAgent2D.new() if in_3d else NavigationAgent3D.new(), "Agent", {"under": other})
		await expect_warns_in_physics(go({"agent_path": ^"../../Other/Agent"}), "which finds no way for Hiker, so it does not move.", {"under": walker}))


func test_what_can_go_wrong_under_way_harms_nobody() -> void:
	await on_both_sides(func() -> void:
		var region := ground_of(YARD)
		flag(Vector2i(2, 0)).set(&"position", spot_in(Vector2i(2, 0)) * NAN)
		var walker := hiker()
		var owner := play(go({"speed": INF}), {}, {"under": walker})
		await physics_frames(2)
		stage.get_node(^"Flag").set(&"position", spot_in(Vector2i(2, 0)))
		await physics_frames(2)
		expect((walker.get(&"position") as Variant).is_finite())
		region.free()
		await physics_frames(3)
		walker.get_node(^"Agent").connect(&"path_changed", owner.stop)
		ground_of(YARD)
		await physics_frames(8)
		expect(not owner.is_running(), "the agent told nobody of its way")
		walker.get_node(^"Agent").disconnect(&"path_changed", owner.stop)
		owner.start()
		walker.get_node(^"Agent").free()
		await physics_frames(2)
		expect_warning("has no NavigationAgent2D or NavigationAgent3D under it")
		stage.remove_child(walker)
		await physics_frames(2)
		stage.add_child(walker)
		walker.queue_free()
		await physics_frames(2))


func test_places_on_the_mesh() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		ground_of([Vector2i(4, 0)], "Island")
		var walker := hiker()
		var far_off: Variant = spot_in(Vector2i(6, 0))
		var picks := func(settings: Dictionary) -> Variant:
			var picking := kind(SCGetNavigationPointAction, settings.merged({"nothing_event": &"none"}))
			var made := play(picking, {"FINISHED": "Done", "none": "None"}, {"under": walker, "variables": {"somewhere": null}})
			await frames(10)
			var found: Variant = made.get_value(&"somewhere") if current(made) == &"Done" else null
			made.free()
			return found
		for i in 12:
			var place: Variant = await picks.call({"within": far(6.0)})
			expect(place.distance_to(walker.get(&"global_position")) <= far(6.0), "it is too far away")
			expect(_stands_in(place, YARD), "%s is not on the ground that it can walk to" % place)
			place = await picks.call({"within": far(100.0)})
			expect(_stands_in(place, YARD), "%s is on the island" % place)
		var edge: Variant = corner(Vector2i(5, 0)) + (spot_in(Vector2i(0, 0)) - corner(Vector2i(0, 0))) * _down()
		expect_near(await picks.call({"pick": SCGetNavigationPointAction.THE_NEAREST_SPOT, "near": far_off}), edge, 0.01)
		expect_near(await picks.call({"pick": SCGetNavigationPointAction.THE_NEAREST_SPOT, "near": far_off * 0.0}), spot_in(Vector2i(0, 0)), 0.01, "none given")
		expect(_stands_in(await picks.call({"near": spot_in(Vector2i(4, 0)), "within": far(1.0)}), [Vector2i(4, 0)]), "near another place")
		expect_equal(await picks.call({"near": far_off, "within": far(1.0)}), null))


func _down() -> Variant:
	return Vector3(0, 0, 1) if in_3d else Vector2(0, 1)


func _stands_in(place: Variant, squares: Array) -> bool:
	var level: Vector2 = (Vector2(place.x, place.z) if place is Vector3 else Vector2(place) / PX) / SIDE
	return squares.any(func(square: Vector2i) -> bool: return Rect2(square, Vector2.ONE).grow(0.01).has_point(level))


func test_where_there_is_no_mesh() -> void:
	await on_both_sides(func() -> void:
		var walker := hiker()
		var picking := kind(SCGetNavigationPointAction, {"nothing_event": &"none"})
		var owner := play(picking, {"FINISHED": "Done", "none": "None"}, {"under": walker, "variables": {"somewhere": 5}})
		expect_state(owner, "None")
		expect_values(owner, {"somewhere": 5})
		flag(Vector2i(1, 0))
		await physics_frames(3)
		owner = play(go(), {"FINISHED": "Done", "stuck": "Stuck"}, {"under": walker})
		await physics_frames(30)
		expect_events(owner, ["stuck"])
		var rows := {
			"Store In is empty, so the place it picks has nowhere to go. Name a variable there.": {"store_in": &""},
			"there is no node at From, so there is no navigation map to pick from.": {"from_path": ^"../Nobody"},
			"which has no place in the world, so there is no navigation map": {"from_path": ^"../Agent"},
		}
		for text: String in rows:
			expect_warns(kind(SCGetNavigationPointAction, rows[text]), text, {"under": walker}))


func test_asking_whether_it_can_get_there() -> void:
	await on_both_sides(func() -> void:
		ground_of(YARD)
		ground_of([Vector2i(4, 0)], "Island")
		var walker := hiker()
		var owner := asker(walker)
		flag(Vector2i(2, 0))
		flag(Vector2i(4, 0), "Far")
		expect_answers(owner, [[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Flag"}), false]], "before there is a map")
		await physics_frames(4)
		expect_answers(owner, [
			[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Flag"}), true],
			[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Far"}), false],
			[kind(SCNavigationReachableCondition, {"to": spot_in(Vector2i(2, 1)), "agent_path": ^"../Agent"}), true],
			[kind(SCNavigationReachableCondition, {"to": spot_in(Vector2i(4, 0)), "invert": true}), true],
			[kind(SCNavigationReachableCondition, {"to": spot_in(Vector2i(0, 0)), "it_has_arrived": true}), true],
			[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Flag", "it_has_arrived": true}), false],
		])
		walker.get_node(^"Agent").set(&"target_position", spot_in(Vector2i(4, 0)))
		expect_answers(owner, [[kind(SCNavigationReachableCondition), false]])
		walker.get_node(^"Agent").set(&"target_position", spot_in(Vector2i(2, 2)))
		expect_answers(owner, [[kind(SCNavigationReachableCondition), true], [kind(SCNavigationReachableCondition, {"it_has_arrived": true}), false]])
		var nobody := kind(SCNavigationReachableCondition, {"agent_path": ^"../../Flag"})
		expect_warns(nobody, "Flag has no NavigationAgent2D or NavigationAgent3D under it", {"under": walker})
		expect_warns(kind(SCNavigationReachableCondition, {"to_node_path": ^"../Nobody"}), "there is no node at ../Nobody", {"under": walker})
		expect_warns(kind(SCNavigationReachableCondition, {"to": "far"}), "To holds a String", {"under": walker}))


func test_the_height_of_a_walker_is_no_way_missing() -> void:
	in_3d = true
	ground_of([Vector2i(0, 0), Vector2i(1, 0)])
	var walker := hiker()
	(walker as Node3D).position.y = 1.5
	var target: Node3D = flag(Vector2i(1, 0))
	target.position.y = 1.5
	var owner := play(go(), {"FINISHED": "Done", "stuck": "Stuck"}, {"under": walker})
	await physics_frames(60)
	expect_state(owner, "Done")
	expect_answers(owner, [[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Flag"}), true]])
	target.position.y = 6.0
	expect_answers(owner, [[kind(SCNavigationReachableCondition, {"to_node_path": ^"../../Flag"}), false]], "on a ledge")


func test_the_lines() -> void:
	expect_lines(SCNavigateToAction, {
		"Find a way to (1, 2, 3)": {"to": Vector3(1, 2, 3)},
		"Find a way to [spot]": {"to_variable": &"spot"},
		"Find a way to Player": {"to_node_path": ^"../Player"},
		"Find a way to [prey]": {"to_node_variable": &"prey", "to_node_path": ^"../Player"},
	})
	expect_equal(kind(SCNavigateToAction, {"finish_on_arrival": false}).holds_its_state(), "Tick Finish On Arrival, move on with an event sent after a Delay")
	expect_lines(SCGetNavigationPointAction, {
		"somewhere = somewhere within 10": {},
		"here = the nearest spot it can stand": {"pick": SCGetNavigationPointAction.THE_NEAREST_SPOT, "store_in": &"here"},
	})
	expect_lines(SCNavigationReachableCondition, {
		"Self can get to where it is headed": {},
		"Guard has arrived at Player": {"agent_path": ^"../Guard", "to_node_path": ^"../Player", "it_has_arrived": true},
	})
