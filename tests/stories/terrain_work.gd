extends Story
## A forest for a terrain tool: planted, packed for drawing and made solid. The figures for the seeds were worked out apart from
## the library, and hold for every machine down to the last bit.


## A tool of somebody's own may build on it.
class OwnTool:
	extends SCTerrainWork


func hills(side: int) -> PackedFloat32Array:
	var made: PackedFloat32Array = []
	for row in side:
		for column in side:
			made.append(absi((column * 37) % 64 - 32) * 0.125 + (row % 16) * 0.25)
	return made


func flat(side: int, height: float = 0.0) -> PackedFloat32Array:
	var made: PackedFloat32Array = []
	made.resize(side * side)
	made.fill(height)
	return made


## Settings by their names, over a meadow of 64 metres.
func planted(settings: Dictionary = {}) -> PackedFloat32Array:
	var all: Dictionary = {
		"ground": flat(33), "side": 33, "step": 2.0, "per_m2": 0.05, "seed": 1, "keep": 0.0, "lowest": -100.0, "steepest": 100.0, "clustered": false,
	}.merged(settings, true)
	return ClassDB.class_call_static.callv([&"SCTerrainWork", &"place_things"] + all.values())


func row_of(places: PackedFloat32Array, index: int) -> Array:
	return Array(places.slice(index * 6, index * 6 + 6))


func print_of(places: PackedFloat32Array) -> String:
	return places.to_byte_array().hex_encode().md5_text()


func expect_row(got: Array, wanted: Array, what: String = "") -> void:
	expect_equal(got.size(), wanted.size(), what)
	for i in mini(got.size(), wanted.size()):
		expect_near(got[i], wanted[i], 0.0001, "%s number %d" % [what, i])


func test_a_seed_means_the_same_forest_everywhere() -> void:
	for row: Array in [
		[{"seed": 7, "keep": 5.0, "lowest": 1.5, "steepest": 3.0}, 204, "d1923918a7e2c97818b7cf86d75554f1", [-13.0239, 4.931, 30.6043, 0.9959, 5.5755, 0.1465]],
		[{"seed": -3}, 204, "d55a8ff6ee1c3d603f0d4f2568214dcf", [18.1491, 1.2364, 4.8786, 1.2462, 0.7459, 0.642]],
		[
			{"seed": 7, "per_m2": 0.1, "keep": 5.0, "lowest": 1.5, "steepest": 3.0, "clustered": true}, 409, "cc111aec40ee4206276ca37a5bbccf6b",
			[-0.3908, 3.03, -22.7832, 1.0366, 4.7103, 0.3786],
		],
		[{"seed": 99, "clustered": true}, 204, "8b955788ae03a06ed01ceb4c3b00e050", [0.2019, 4.1622, 16.7931, 0.9563, 0.6717, 0.8423]],
		[
			{"ground": PackedFloat32Array([0, 1, 2, 3]), "side": 2, "step": 10.0}, 5, "5244bc69958d351e9ce20f87689e123d",
			[-1.7106, 1.163, -0.8298, 0.7674, 2.8799, 0.2516],
		],
	]:
		var settings: Dictionary = row[0]
		var places := planted({"ground": hills(33)}.merged(settings, true))
		expect_equal(places.size(), row[1] * 6, "%s" % settings)
		expect_row(row_of(places, 0), row[3], "%s" % settings)
		expect_equal(print_of(places), row[2], "%s" % settings)


func test_nothing_stands_where_it_may_not() -> void:
	var ground := hills(33)
	var places := planted({"ground": ground, "keep": 12.0, "lowest": 2.0, "steepest": 1.0, "per_m2": 0.3})
	expect(places.size() > 60)
	for i in places.size() / 6:
		var at := row_of(places, i)
		expect(absf(at[0]) <= 31.0 and absf(at[2]) <= 31.0, "%s is on the rim" % [at])
		expect(Vector2(at[0], at[2]).length() >= 12.0 - 0.0001 and at[1] >= 2.0 - 0.0001, "%s is too near or too low" % [at])
		expect(at[3] >= 0.75 and at[3] <= 1.35 and at[4] >= 0.0 and at[4] <= TAU + 0.00001 and at[5] >= 0.0 and at[5] <= 1.0, "%s" % [at])
		var column := floori((at[0] + 32.0) / 2.0)
		var row := floori((at[2] + 32.0) / 2.0)
		var corners: Array = [0, 1, 33, 34].map(func(by: int) -> float: return ground[row * 33 + column + by])
		var slope := Vector2(maxf(absf(corners[1] - corners[0]), absf(corners[3] - corners[2])), maxf(absf(corners[2] - corners[0]), absf(corners[3] - corners[1])))
		expect(slope.length() / 2.0 <= 1.0, "%s is too steep" % [at])
	# Two of the four heights of a cell on one side are higher: halfway up stands who is halfway across.
	for i in 5:
		var at := row_of(planted({"ground": PackedFloat32Array([0, 8, 0, 8]), "side": 2, "step": 10.0}), i)
		expect_near(at[1], (at[0] + 5.0) / 10.0 * 8.0)
	expect_equal(planted({"keep": 50.0}), PackedFloat32Array())
	expect_equal(planted({"ground": flat(33, NAN)}), PackedFloat32Array())


func test_clumps_are_clumps() -> void:
	var even := planted({"per_m2": 0.1})
	var clustered := planted({"per_m2": 0.1, "clustered": true})
	var empty := func(places: PackedFloat32Array) -> int:
		var seen := {}
		for i in places.size() / 6:
			seen[Vector2i(floori(places[i * 6] / 4.0), floori(places[i * 6 + 2] / 4.0))] = true
		return 256 - seen.size()
	expect(empty.call(clustered) > empty.call(even) * 1.5, "%d squares are empty, and %d" % [empty.call(clustered), empty.call(even)])


func test_what_makes_no_forest() -> void:
	for settings: Dictionary in [
		{"per_m2": 0.0}, {"per_m2": -1.0}, {"per_m2": NAN}, {"side": 1}, {"side": -4}, {"side": 34}, {"side": 9223372036854775807}, {"step": 0.0}, {"step": -2.0},
		{"step": NAN}, {"step": INF}, {"step": 1e200}, {"ground": PackedFloat32Array()}, {"step": 0.01}, {"lowest": 1.0}, {"steepest": -1.0},
	]:
		expect_equal(planted(settings), PackedFloat32Array(), "%s" % settings)
	expect_equal(SCTerrainWork.pack_things([], 1.0, 0.0, Color.WHITE, 1.0, 0.0, [], 8.0), {})
	expect_equal(SCTerrainWork.pack_things(planted(), 1.0, 0.0, Color.WHITE, 1.0, 0.0, [], 0.0), {})
	expect_equal(SCTerrainWork.solid_faces([], 1.0, 2.0, 0.0), PackedVector3Array())
	var nowhere := PackedFloat32Array([NAN, 0, 0, 1, 0, 0, 1, INF, 0, 1, 0, 0, 3, 0])
	expect_equal(SCTerrainWork.pack_things(nowhere, 1.0, 0.0, Color.WHITE, 1.0, 0.0, [], 8.0), {})
	expect_equal(SCTerrainWork.solid_faces(nowhere, 1.0, 2.0, 0.0), PackedVector3Array())


func test_things_are_packed_by_the_piece() -> void:
	var places := PackedFloat32Array([
		9.0, 2.0, -3.0, 1.0, 0.5, 0.25, -1.0, 4.0, 5.0, 0.8, 3.0, 1.0, 10.0, 1.0, -0.5, 1.2, 6.0, 0.6,
	])
	var packed := SCTerrainWork.pack_things(places, 2.0, -0.25, Color(0.5, 1.0, 0.2), 0.6, 0.4, [], 8.0)
	expect_equal(packed.keys(), [Vector2i(1, -1), Vector2i(-1, 0)])
	for row: Array in [[Vector2i(1, -1), 0, 0], [Vector2i(1, -1), 16, 2], [Vector2i(-1, 0), 0, 1]]:
		var thing := row_of(places, row[2])
		var size: float = thing[3] * 2.0
		var across := cos(thing[4]) * size
		var along := sin(thing[4]) * size
		var dimmed: float = thing[5] * 0.4 + 0.6
		expect_row(Array((packed[row[0]] as PackedFloat32Array).slice(row[1], row[1] + 16)), [
			across, 0.0, along, thing[0], 0.0, size, 0.0, thing[1] - size * 0.25, -along, 0.0, across, thing[2], 0.5 * dimmed, dimmed, 0.2 * dimmed, thing[5],
		], "thing %d" % row[2])
	# As a MultiMesh takes it.
	var forest := MultiMesh.new()
	forest.transform_format = MultiMesh.TRANSFORM_3D
	forest.use_colors = true
	forest.instance_count = 2
	forest.buffer = packed[Vector2i(1, -1)]
	expect_near(forest.buffer[16 + 3], 10.0)
	var colours := PackedColorArray([Color.RED, Color.GREEN, Color.BLUE])
	var of := func(dimmest: float, palette: PackedColorArray) -> Array:
		var all := SCTerrainWork.pack_things(places, 1.0, 0.0, Color(1, 0.5, 0), dimmest, 0.5, palette, 1000.0)
		return all.values().reduce(func(list: Array, one: PackedFloat32Array) -> Array: return list + range(0, one.size(), 16).map(func(i: int) -> Color:
			return Color(one[i + 12], one[i + 13], one[i + 14], one[i + 15])), [])
	# In the order of the pieces: east and north, then west and south.
	expect_equal(of.call(-1.0, colours), [Color(1, 0, 0, 0.25), Color(0, 1, 0, 0.6), Color(1, 0, 0, 1)])
	expect_near(of.call(-1.0, PackedColorArray())[0], Color(-0.875, -0.4375, 0, 0.25))
	expect_near(of.call(0.5, colours)[0], Color(0.625, 0.3125, 0, 0.25))


func test_trunks_and_boulders_stop_a_ray() -> void:
	var places := PackedFloat32Array([10.0, 3.0, 4.0, 2.0, 1.0, 0.5])
	var trunk := SCTerrainWork.solid_faces(places, 0.5, 6.0, 1.0)
	var boulder := SCTerrainWork.solid_faces(places, 0.0, 6.0, 1.5)
	expect_equal(trunk.size() % 3 + boulder.size() % 3, 0)
	var bounds := func(corners: PackedVector3Array) -> AABB:
		var all := AABB(corners[0], Vector3.ZERO)
		for corner in corners:
			all = all.expand(corner)
		return all
	var half := sqrt(0.75)
	expect_near((bounds.call(trunk) as AABB).position, Vector3(9.5, 3.0, 4.0 - 0.5 * half))
	expect_near((bounds.call(trunk) as AABB).end, Vector3(10.5, 9.0, 4.0 + 0.5 * half))
	var wide := 0.7 * 3.0 * 0.95
	expect_near((bounds.call(boulder) as AABB).position, Vector3(10.0 - wide, 3.6 - 0.55 * 3.0 * 0.6, 4.0 - wide * half))
	expect_near((bounds.call(boulder) as AABB).end, Vector3(10.0 + wide, 3.6 + 0.55 * 3.0, 4.0 + wide * half))
	for row: Array in [[trunk, 9.0, Vector3(10.0, 6.0, 4.0)], [boulder, 3.6 + 0.55 * 3.0, Vector3(10.0, 3.5, 4.0)]]:
		var shape := ConcavePolygonShape3D.new()
		shape.set_faces(row[0])
		var marking := CollisionShape3D.new()
		marking.shape = shape
		var solid := add(StaticBody3D.new(), "Solid")
		solid.add_child(marking)
		await physics_frames(2)
		var space := (solid as StaticBody3D).get_world_3d().direct_space_state
		for from: Vector3 in [
			Vector3(8, 0, 0), Vector3(-8, 0, 0.1), Vector3(0.1, 0, 8), Vector3(0, 0, -8), Vector3(5, 0, 5), Vector3(-5, 0, 5), Vector3(0.01, 20, 0.02),
		]:
			var ray := PhysicsRayQueryParameters3D.create(row[2] + from, row[2])
			ray.hit_back_faces = false
			var hit := space.intersect_ray(ray)
			expect(not hit.is_empty(), "a ray from %s goes through" % from)
			if not hit.is_empty():
				expect((hit["normal"] as Vector3).dot(from) > 0.0, "from %s it faces inward" % from)
				if from.y > 0.0:
					expect_near((hit["position"] as Vector3).y, row[1], 0.05)
		solid.free()


func test_it_works_beside_the_game() -> void:
	var settings := {"per_m2": 2.0, "clustered": true}
	var threads: Array[Thread] = []
	for i in 3:
		threads.append(Thread.new())
		threads[i].start(planted.bind(settings))
	var here := planted(settings)
	for thread in threads:
		expect_equal(print_of(thread.wait_to_finish()), print_of(here))
	var own := OwnTool.new()
	expect_equal(ClassDB.get_parent_class(&"SCTerrainWork"), &"Object")
	expect(own is SCTerrainWork)
	own.free()


func test_too_many_are_told_of() -> void:
	var places := planted({"per_m2": 1e6, "steepest": -1.0})
	expect_equal(places, PackedFloat32Array())
	expect_warning("Planting 4096000000 things is too many, so 4000000 are planted. Plant fewer on a square metre.")
