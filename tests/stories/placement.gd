extends Story
## Trees, rocks and crates scattered over an area. The numbers drawn for a seed are drawn again here, in the order that makes a
## saved seed mean the same forest in every version.

const PINE: String = "res://tests/stories/files/placement/pine.tscn"
const ROCK: String = "res://tests/stories/files/placement/rock.tscn"
const SIGN: String = "res://tests/stories/files/placement/sign.tscn"
const MOST: int = 5000


func shaped(of: Variant, settings: Dictionary) -> Resource:
	var made: Resource = of.new()
	for name: String in settings:
		made.set(name, settings[name])
	return made


## A node with a collision shape below it, and a node called Wood for what is put down.
func field(shape: Resource, at: Variant = Vector2.ZERO, wood_at: Variant = null) -> Node:
	for old in stage.get_children():
		old.free()
	var area := body_at(at, "Field")
	body_at(at * 0.0 if wood_at == null else wood_at, "Wood")
	var marking: Node = CollisionShape3D.new() if shape is Shape3D else CollisionShape2D.new()
	marking.set(&"shape", shape)
	area.add_child(marking)
	return area


func planting(settings: Dictionary = {}) -> SCProceduralPlacementAction:
	return kind(SCProceduralPlacementAction, {"scene_path": PINE, "parent_path": ^"../../Wood"}.merged(settings, true))


func plant(area: Node, settings: Dictionary = {}, variables: Dictionary = {}) -> SCMachine:
	var made := play(planting(settings), {"FINISHED": "Done"}, {"under": area, "variables": variables})
	expect_state(made, "Done")
	return made


func standing() -> Array[Node]:
	return stage.get_node("Wood").get_children().filter(func(node: Node) -> bool: return not node.is_queued_for_deletion())


## Where they stand in the world, in the order they were put down.
func places() -> Array:
	return standing().map(func(node: Node) -> Variant: return node.get(&"global_position"))


func expect_places(wanted: Array, what: String = "") -> void:
	var got := places()
	expect_equal(got.size(), wanted.size(), what)
	for i in mini(got.size(), wanted.size()):
		expect_near(got[i], wanted[i], 0.001, "%s %d" % [what, i])


func dice(with_seed: int) -> RandomNumberGenerator:
	var made := RandomNumberGenerator.new()
	made.seed = with_seed
	return made


func drawn(random: RandomNumberGenerator, half: Vector2, is_round: bool) -> Vector2:
	if is_round:
		var angle := random.randf() * TAU
		var out := sqrt(random.randf())
		return Vector2(cos(angle) * out, sin(angle) * out) * half
	var x := random.randf_range(-half.x, half.x)
	return Vector2(x, random.randf_range(-half.y, half.y))


func test_a_seed_means_the_same_places_for_ever() -> void:
	var rectangle := shaped(RectangleShape2D, {"size": Vector2(200, 100)})
	var golden := {
		1: [[Vector2(-34.08818, -22.34052), Vector2(1.961922, 24.20217), Vector2(4.774078, -45.25464)], [4.229204, 4.616115, 0.468045]],
		7: [[Vector2(-13.69861, 20.707), Vector2(80.08057, 17.05743), Vector2(60.0639, 25.56834)], [0.301806, 1.234452, 5.421795]],
		424242: [[Vector2(-30.89028, 32.15078), Vector2(-14.20071, 43.29934), Vector2(81.16708, -42.68286)], [3.890737, 0.808522, 4.232227]],
	}
	for from: int in golden:
		plant(field(rectangle), {"count": 3, "placement_seed": from, "random_rotation": true})
		expect_places(golden[from][0], "seed %d" % from)
		for i in 3:
			expect_near(angle_difference(standing()[i].get(&"rotation"), golden[from][1][i]), 0.0)
	plant(field(shaped(CylinderShape3D, {"radius": 10.0}), Vector3(0, 3, 0)), {"scene_path": ROCK, "count": 3, "placement_seed": 7, "random_rotation": true})
	expect_places([Vector3(-7.642019, 3.0, 3.50807), Vector3(6.637089, 3.0, -4.796507), Vector3(2.70288, 3.0, -8.262129)])
	for i in 3:
		expect_near(angle_difference((standing()[i] as Node3D).rotation.y, golden[7][1][i]), 0.0)


func test_they_lie_all_over_the_area() -> void:
	for row: Array in [
		[shaped(RectangleShape2D, {"size": Vector2(60, 20)}), Vector2(30, 10), false],
		[shaped(CircleShape2D, {"radius": 25.0}), Vector2(25, 25), true],
		[shaped(CapsuleShape2D, {"radius": 8.0, "height": 90.0}), Vector2(8, 8), true],
		[shaped(BoxShape3D, {"size": Vector3(8, 50, 4)}), Vector2(4, 2), false],
		[shaped(SphereShape3D, {"radius": 3.0}), Vector2(3, 3), true],
		[shaped(CapsuleShape3D, {"radius": 2.0, "height": 9.0}), Vector2(2, 2), true],
		[shaped(CylinderShape3D, {"radius": 5.0, "height": 9.0}), Vector2(5, 5), true],
	]:
		var in_3d := row[0] is Shape3D
		var area := field(row[0], Vector3(100, 7, -50) if in_3d else Vector2(100, -50), Vector3(3, 3, 3) if in_3d else Vector2(3, 3))
		area.set(&"scale", Vector3(2, 2, 1) if in_3d else Vector2(2, 1))
		area.set(&"rotation", Vector3(0, 0.5, 0) if in_3d else 0.5)
		stage.get_node("Wood").set(&"scale", Vector3(1, 4, 2) if in_3d else Vector2(1, 4))
		plant(area, {"scene_path": ROCK if in_3d else PINE, "count": 40, "placement_seed": 5})
		var random := dice(5)
		var wanted := []
		for i in 40:
			var point := drawn(random, row[1], row[2])
			wanted.append(area.to_global(Vector3(point.x, 0, point.y) if in_3d else point))
		expect_places(wanted, row[0].get_class())


func test_noise_gathers_them_in_clumps() -> void:
	for in_3d: bool in [false, true]:
		for threshold: float in [0.2, 0.45]:
			var shape := shaped(BoxShape3D, {"size": Vector3(60, 1, 40)}) if in_3d else shaped(RectangleShape2D, {"size": Vector2(60, 40)})
			plant(field(shape, Vector3(9, 2, 5) if in_3d else Vector2(9, 5)), {
				"scene_path": ROCK if in_3d else PINE, "count": 50, "by": SCProceduralPlacementAction.NOISE, "frequency": 0.08, "threshold": threshold,
				"placement_seed": 3,
			})
			var noise := FastNoiseLite.new()
			noise.seed = 3
			noise.frequency = 0.08
			var random := dice(3)
			var wanted := []
			for i in 50 * 30:
				var point := drawn(random, Vector2(30, 20), false) + Vector2(9, 5)
				if wanted.size() < 50 and noise.get_noise_2dv(point) > threshold:
					wanted.append(Vector3(point.x, 2, point.y) if in_3d else point)
			expect(not wanted.is_empty())
			expect_places(wanted, "above %s" % threshold)
	plant(field(shaped(CircleShape2D, {"radius": 30.0})), {"by": SCProceduralPlacementAction.NOISE, "threshold": 1.0})
	expect_places([])


## The cells have their size in the world, whatever the scale of the area.
func test_a_grid_fills_the_area() -> void:
	var grid := {"layout": SCProceduralPlacementAction.GRID, "cell_size": 4.0, "placement_seed": 11}
	var area := field(shaped(RectangleShape2D, {"size": Vector2(7, 5)}))
	area.set(&"scale", Vector2(2, -2))
	plant(area, grid)
	expect_places([Vector2(-4, 2), Vector2(0, 2), Vector2(4, 2), Vector2(-4, -2), Vector2(0, -2), Vector2(4, -2)])
	plant(field(shaped(CylinderShape3D, {"radius": 4.0}), Vector3(0, 6, 0)), {"scene_path": ROCK}.merged(grid, true).merged({"cell_size": 2.0}, true))
	expect_equal(places().size(), 12)
	expect(not places().has(Vector3(-3, 6, -3)) and places().has(Vector3(-3, 6, -1)))
	plant(field(shaped(RectangleShape2D, {"size": Vector2(1, 2)}), Vector2(8, 8)), grid)
	expect_places([Vector2(8, 8)], "smaller than a cell")
	var random := dice(11)
	var wanted := []
	for i in 100:
		var off := Vector2(random.randf_range(-0.5, 0.5), 0)
		off.y = random.randf_range(-0.5, 0.5)
		var at := Vector2(-18 + i % 10 * 4, -18 + i / 10 * 4) + off * 4.0 * 0.5
		if at.length() <= 20.0 and random.randf() < 0.7:
			wanted.append(at)
	plant(field(shaped(CircleShape2D, {"radius": 20.0})), grid.merged({"jitter": 0.5, "chance": 0.7}, true))
	expect_places(wanted, "off the middle")
	plant(field(shaped(RectangleShape2D, {"size": Vector2(40, 40)})), grid.merged({"by": SCProceduralPlacementAction.NOISE, "chance": 0.0}, true))
	var noise := FastNoiseLite.new()
	noise.seed = 11
	noise.frequency = 0.1
	wanted = range(100).map(func(i: int) -> Vector2: return Vector2(-18 + i % 10 * 4, -18 + i / 10 * 4))
	expect_places(wanted.filter(func(at: Vector2) -> bool: return noise.get_noise_2dv(at) > 0.0), "by noise")


func test_a_seed_that_was_picked_can_be_had_again() -> void:
	var circle := shaped(CircleShape2D, {"radius": 100.0})
	var first := plant(field(circle), {"store_seed_in": &"forest"}, {"forest": 0})
	var picked: int = first.get_value(&"forest")
	expect(picked >= 1 and picked <= 999999)
	var before := places()
	first = plant(field(circle), {"from_variables": {&"placement_seed": &"forest"}}, {"forest": picked})
	expect_equal(places(), before)
	plant(field(circle))
	expect(places() != before, "it picks another seed each time")


func test_no_more_than_fit_at_once() -> void:
	var rectangle := shaped(RectangleShape2D, {"size": Vector2(100, 100)})
	plant(field(rectangle), {"count": 6000})
	expect_warning("Count is 6000, and 5000 is the most at once, so 5000 are placed.")
	expect_equal(standing().size(), MOST)
	var names := {}
	for copy in standing():
		names[copy.name] = true
		expect(not "@" in copy.name, copy.name)
	expect_equal(names.size(), MOST)
	plant(field(rectangle), {"layout": SCProceduralPlacementAction.GRID, "cell_size": 1.0})
	expect_warning("Procedural Placement on Machine: a grid of 1 cells across Field has 10000 cells, and 5000 is the most at once, so nothing is placed. "
			+ "Make the cells bigger or the area smaller.")
	expect_places([])


func test_what_was_placed_before_goes() -> void:
	var area := field(shaped(CircleShape2D, {"radius": 50.0}))
	var other := Node2D.new()
	stage.get_node("Wood").add_child(other)
	plant(area, {"count": 5})
	plant(area, {"count": 3})
	expect_equal(standing().size(), 9)
	for copy: Node in standing().slice(1):
		expect_equal(copy.get_meta(&"quillstead_placed_by"), PINE)
		expect(copy.has_meta(&"quillstead_made_by"))
	plant(area, {"count": 4, "clear_first": true})
	expect_equal(standing().size(), 5)
	expect(is_instance_valid(other) and not other.is_queued_for_deletion())
	await frames(1)
	expect_equal(stage.get_node("Wood").get_child_count(), 5)


func test_where_they_go_without_a_parent() -> void:
	var area := field(shaped(CircleShape2D, {"radius": 50.0}))
	var before := tree.root.get_child_count()
	plant(area, {"count": 2, "parent_path": ^"../Nobody"})
	expect_warning("Parent points at nothing, so they are added under the current scene instead.")
	expect_equal(tree.root.get_child_count(), before + 2)
	for made: Node in tree.root.get_children().slice(before):
		made.free()
	var scene := add(Node2D.new(), "Level", {"under": tree.root})
	tree.current_scene = scene
	plant(area, {"count": 2, "parent_path": ^""})
	expect_equal(scene.get_child_count(), 2)
	scene.free()


## The parent is still being set up when its machine starts.
func test_a_level_is_planted_as_it_begins() -> void:
	var level := Node2D.new()
	level.name = "Level"
	var area := boxed(Node2D.new(), Vector2(64, 64))
	level.add_child(area)
	area.add_child(doing(planting({"count": 3, "parent_path": ^"../.."})))
	add(level)
	expect_equal(level.get_child_count(), 1)
	await frames(1)
	expect_equal(level.get_child_count(), 4)


func test_a_scene_of_the_other_side() -> void:
	var circle := shaped(CircleShape2D, {"radius": 5.0})
	var sphere := shaped(SphereShape3D, {"radius": 5.0})
	for row: Array in [
		[sphere, Vector3(), PINE, "pine.tscn is a 2D scene and the area is 3D, so it cannot be put in place. Use a 3D scene, or an area of its kind."],
		[circle, Vector2(), ROCK, "rock.tscn is a 3D scene and the area is 2D, so it cannot be put in place. Use a 2D scene, or an area of its kind."],
		[circle, Vector2(), SIGN, "sign.tscn is a UI scene and the area is 2D"],
	]:
		plant(field(row[0], row[1]), {"scene_path": row[2], "count": 3})
		for i in 3:
			expect_warning(row[3])
		expect_places([])


func test_what_is_missing_is_told() -> void:
	var circle := shaped(CircleShape2D, {"radius": 5.0})
	var rows := {
		"no scene is picked, so nothing is placed. Pick the scene under Scene Path.": {"scene_path": ""},
		"res://nowhere.tscn could not be loaded, so nothing is placed.": {"scene_path": "res://nowhere.tscn"},
		"res://tests/stories/placement.gd could not be loaded": {"scene_path": "res://tests/stories/placement.gd"},
		"Wood has no box, sphere, cylinder, capsule, rectangle or circle collision shape marking out the area, so nothing is placed. "
				+ "Pick one under Area, or add a CollisionShape under it.": {"area_path": ^"../../Wood"},
		"Nobody has no box": {"area_path": ^"../Nobody"},
		"Count is 0, so nothing is placed. Set how many to put down.": {"count": 0},
		"Cell Size is 0, and a grid needs cells of some size, so nothing is placed.": {"layout": SCProceduralPlacementAction.GRID, "cell_size": 0.0},
	}
	for text: String in rows:
		plant(field(circle), rows[text])
		expect_warning("Procedural Placement on Machine: " + text)
		expect_places([])
	for shape: Resource in [null, shaped(SegmentShape2D, {}), shaped(CircleShape2D, {"radius": INF})]:
		plant(field(shape))
		expect_warning("Field has no box")
		expect_places([])


func test_numbers_that_are_none() -> void:
	var rectangle := shaped(RectangleShape2D, {"size": Vector2(20, 20)})
	var grid := {"layout": SCProceduralPlacementAction.GRID, "cell_size": 5.0}
	var noisy := {"by": SCProceduralPlacementAction.NOISE}
	for row: Array in [
		[grid, "cell_size", NAN], [grid, "cell_size", INF], [grid, "jitter", NAN], [grid, "chance", -INF], [noisy, "frequency", INF], [noisy, "threshold", NAN],
	]:
		plant(field(rectangle), row[0].merged({row[1]: row[2]}, true))
		expect_warning("its %s is %s" % [(row[1] as String).capitalize(), "no number" if is_nan(row[2]) else "too large"])
	expect_warning("Cell Size is 0, and a grid needs cells of some size")
	plant(field(rectangle), grid.merged({"cell_size": 1e-300}, true))
	expect_warning("cells, and 5000 is the most at once")
	expect_places([])
	plant(field(rectangle), {"count": 9223372036854775807, "placement_seed": -9223372036854775807})
	expect_warning("Count is 9223372036854775807")
	expect_equal(standing().size(), MOST)
	for size: Vector2 in [Vector2(0, 0), Vector2(1, 0)]:
		var area := field(rectangle)
		area.set(&"scale", size)
		plant(area, grid)
		expect_equal(standing().size(), 1 if size.x == 0.0 else 4)
		area = field(rectangle, Vector2(3, 4))
		stage.get_node("Wood").set(&"scale", size)
		plant(area, {"count": 2})
		expect_equal(standing().size(), 2)
	plant(field(rectangle, Vector2(INF, 0)))
	expect_warning("Field has no box")


## Without an end, were it let.
func test_a_scene_that_puts_down_itself() -> void:
	var path := "user://placed_self.tscn"
	var root := boxed(Node2D.new(), Vector2(64, 64))
	var inner := doing(planting({"scene_path": path, "count": 2, "parent_path": ^"../.."}))
	inner.remove_meta(&"trail")
	root.add_child(inner)
	for made in root.get_children():
		made.owner = root
	var packed := PackedScene.new()
	packed.pack(root)
	ResourceSaver.save(packed, path)
	root.free()
	plant(field(shaped(CircleShape2D, {"radius": 5.0})), {"scene_path": path, "count": 2})
	for i in 2:
		expect_warning("placed_self.tscn asks for more of itself while it is being placed")
	expect_equal(standing().size(), 2)
	DirAccess.remove_absolute(path)


func test_its_lines_and_what_shows() -> void:
	expect_lines(SCProceduralPlacementAction, {
		"Scatter 20 pine over Self": {"scene_path": PINE},
		"Scatter 5 pine over Field in clumps": {"scene_path": PINE, "count": 5, "area_path": ^"../Field", "by": SCProceduralPlacementAction.NOISE},
		"Fill Self with pine, 2 apart": {"scene_path": PINE, "layout": SCProceduralPlacementAction.GRID},
		"Fill Self with pine, 0.5 apart, 25% chance each": {"scene_path": PINE, "layout": SCProceduralPlacementAction.GRID, "cell_size": 0.5, "chance": 0.25},
		"Fill Self with pine, 2 apart in clumps": {
			"scene_path": PINE, "layout": SCProceduralPlacementAction.GRID, "by": SCProceduralPlacementAction.NOISE, "chance": 0.25,
		},
	})
	var made := planting()
	expect_shown(made, ["count"])
	expect_hidden(made, ["cell_size", "jitter", "chance", "frequency", "threshold"])
	made.layout = SCProceduralPlacementAction.GRID
	expect_shown(made, ["cell_size", "jitter", "chance"])
	expect_hidden(made, ["count", "frequency"])
	made.by = SCProceduralPlacementAction.NOISE
	expect_shown(made, ["frequency", "threshold"])
	expect_hidden(made, ["chance"])
