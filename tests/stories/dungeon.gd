extends PhysicsStory
## A floor is built from rooms drawn by hand, with doors that know where they lead, and the player is put into it.

const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")

## The rooms by their file, so to say: drawn once for all.
static var _scenes: Dictionary[String, PackedScene] = {}


func close() -> void:
	_scenes.clear()
	Dungeon.forget()
	await super()


## A room that is called [param drawn], with a Machine that learns what room it is, and one in each door but the west, which knows
## only what no door is: closed, and a secret.
func room(drawn: String, root: Node = Node2D.new()) -> PackedScene:
	if _scenes.has(drawn):
		root.free()
		return _scenes[drawn]
	root.name = drawn.to_pascal_case()
	root.set_meta(&"drawn", drawn)
	root.add_child(machine([state("Quiet")], {"variables": {"room_kind": "", "room_cell": Vector2i(99, 99)}}))
	for side: String in ["North", "South", "East", "West"]:
		var door := Node2D.new()
		door.name = "Door" + side
		root.add_child(door)
		if side != "West":
			door.add_child(machine([state("Still")], {"name": "Lock", "variables": {"connected": false, "secret": true}}))
	var spot_to_stand := Node2D.new()
	spot_to_stand.name = "PlayerStart"
	spot_to_stand.position = Vector2(40, 30)
	root.get_child(1).add_child(spot_to_stand)
	_scenes[drawn] = packed(root)
	return _scenes[drawn]


func packed(root: Node) -> PackedScene:
	for node: Node in root.find_children("*", "", true, false):
		node.owner = root
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	return scene


func build(settings: Dictionary = {}) -> SCBuildDungeonAction:
	return kind(SCBuildDungeonAction, {
		"start_room": room("start"), "fight_rooms": [room("cellar"), room("hall"), room("cave")], "room_size": Vector2(200, 100), "parent_path": ^"..",
		"floor_seed": 12,
	}.merged(settings, true))


func everything() -> Dictionary:
	return {"boss_room": room("boss"), "treasure_room": room("treasure"), "shop_room": room("shop"), "secret_room": room("secret")}


## The rooms that stand under the node, by their names, with what was drawn.
func rooms_under(parent: Node) -> Dictionary:
	var found := {}
	for child in parent.get_children():
		if child.has_meta(&"drawn") and not child.is_queued_for_deletion():
			found[String(child.name)] = child.get_meta(&"drawn")
	return found


func value_of(node: Node, name: StringName) -> Variant:
	return SCMachine.machine_of(node).get_value(name)


func test_a_floor_stands_where_the_layout_says() -> void:
	var floor_node := body("Floor", Vector2(10, 20))
	var action := build(everything().merged({"store_seed_in": &"from", "built_event": &"built"}))
	var made := play(action, {"FINISHED": "Done", "built": "Built"}, {"under": floor_node, "variables": {"from": 0}})
	expect_events(made, ["built"])
	expect_values(made, {"from": 12})
	var layout := Dungeon.lay_out(12, 6, ["boss", "treasure", "shop"], true)
	var cells: Dictionary = layout["cells"]
	expect_equal(rooms_under(floor_node).size(), cells.size())
	for cell: Vector2i in cells:
		var standing: Node2D = floor_node.get_node("Room %d,%d" % [cell.x, cell.y])
		var drawn: String = standing.get_meta(&"drawn")
		expect(drawn in ["cellar", "hall", "cave"] if cells[cell] == "fight" else drawn == cells[cell], "%s at %s is drawn as %s" % [cells[cell], cell, drawn])
		expect_equal(standing.position, Vector2(cell) * Vector2(200, 100))
		expect_equal([value_of(standing, &"room_kind"), value_of(standing, &"room_cell")], [cells[cell], cell])
		for side: String in Dungeon.SIDES:
			var beyond := cell + Dungeon.SIDES[side]
			var is_way := func(way: Array) -> bool: return cell in way and beyond in way
			var is_secret: bool = (layout["secret"] as Array).any(is_way)
			var door := standing.get_node("Door" + side.capitalize())
			if side != "west":
				var wanted := [is_secret or (layout["joins"] as Array).any(is_way), is_secret]
				expect_equal([value_of(door, &"connected"), value_of(door, &"secret")], wanted, "the %s door at %s" % [side, cell])
		expect_equal(Dungeon.room_in(cell), standing)
	var fights := cells.keys().filter(func(cell: Vector2i) -> bool: return cells[cell] == "fight")
	var drawn_for_fights := fights.map(func(cell: Vector2i) -> String: return Dungeon.room_in(cell).get_meta(&"drawn"))
	var dice := RandomNumberGenerator.new()
	dice.seed = 12 + 7919
	expect_equal(drawn_for_fights, range(6).map(func(_count: int) -> String: return ["cellar", "hall", "cave"][dice.randi_range(0, 2)]))


func test_the_same_seed_builds_the_same_floor_and_the_next_replaces_it() -> void:
	var first_parent := body("First")
	play(build(everything()), {}, {"under": first_parent})
	var first := rooms_under(first_parent)
	var start_before := first_parent.get_node(^"Room 0,0")
	var heard := [0]
	start_before.renamed.connect(func() -> void: heard[0] += 1)
	play(build(everything()), {}, {"under": first_parent, "name": "Again"})
	expect_equal(rooms_under(first_parent), first)
	expect(first_parent.get_node(^"Room 0,0") != start_before and String(start_before.name) == "Leaving %d" % start_before.get_instance_id())
	expect_equal(heard, [1])
	# A build frees what is remembered, whatever the parent.
	var second_parent := body("Second")
	play(build({"floor_seed": 13}), {}, {"under": second_parent})
	expect_equal(rooms_under(first_parent), {})
	expect_equal(rooms_under(second_parent).size(), 7)
	expect(rooms_under(second_parent) != first)
	await frames(1)
	expect_equal(first_parent.get_children().filter(func(node: Node) -> bool: return node.has_meta(&"drawn")), [])


func test_without_a_seed_each_floor_is_another_and_can_be_built_again() -> void:
	var parent := body("Floor")
	var seeds_used := {}
	var seen := {}
	for times in 8:
		var made := play(build({"floor_seed": 0, "store_seed_in": &"from"}), {}, {"under": parent, "variables": {"from": 0}})
		var used: int = made.get_value(&"from")
		expect(used >= 1 and used <= 999999)
		seeds_used[used] = true
		var drawn := rooms_under(parent)
		seen[drawn] = true
		made.free()
		play(build({"floor_seed_variable": &"from"}), {}, {"under": parent, "variables": {"from": used}}).free()
		expect_equal(rooms_under(parent), drawn)
	expect(seeds_used.size() == 8 and seen.size() > 4)


func test_the_player_stands_in_the_start_room_and_is_not_pulled_back() -> void:
	var parent := body("Floor", Vector2(500, 100))
	block(20.0, 0.0, 1.0, 1.0)
	var hero := character(100.0, 100.0) as CharacterBody2D
	await physics_frames(2)
	play(build({"player_path": ^"../../Hero"}), {}, {"under": parent})
	expect_equal(hero.global_position, Vector2(540, 130))
	await physics_frames(3)
	expect_equal(hero.global_position, Vector2(540, 130))
	expect_equal(PhysicsServer2D.body_get_state(hero.get_rid(), PhysicsServer2D.BODY_STATE_TRANSFORM), Transform2D(0.0, Vector2(540, 130)))
	expect_equal(PhysicsServer2D.body_get_mode(hero.get_rid()), PhysicsServer2D.BODY_MODE_KINEMATIC)


## Stairs: an area hears the player step on it, in the middle of the physics, where the engine takes no new walls.
func test_the_stairs_lead_to_the_next_floor() -> void:
	var parent := body("Floor")
	var walls := StaticBody2D.new()
	walls.set_meta(&"drawn", "walls")
	walls.add_child(_shape(Vector2(20, 20)))
	var walled := packed(walls)
	var stairs := zone(0.0, 0.0, 2.0, 2.0, "Stairs") as Area2D
	var hero := character(0.0, 20.0) as CharacterBody2D
	var action := build({"start_room": walled, "fight_rooms": [walled], "player_path": ^"../../Hero", "built_event": &"built"})
	var states := [state("Here", [], {"down": "Build"}), state("Build", [action], {"built": "There"}), state("There")]
	var made := start(machine(states, {"under": parent}))
	var told: Array[Node] = []
	stairs.body_entered.connect(func(who: Node) -> void:
		told.append(who)
		made.send_event(&"down"))
	await physics_frames(2)
	expect_equal(told, [])
	hero.global_position = Vector2(0, 0)
	for times in 2:
		hero.global_position += Vector2(1, 0)
		await physics_frames(3)
	expect_equal(told, [hero])
	expect_state(made, "There")
	expect_equal(rooms_under(parent).size(), 7)
	expect_equal(hero.global_position.distance_to((parent.get_node(^"Room 0,0") as Node2D).global_position) < 2.0, true)


## A machine that builds as the level opens, before the engine takes any more children of the level.
func test_a_level_builds_itself_as_it_opens() -> void:
	for twice: bool in [false, true]:
		var level := Node2D.new()
		level.name = "Level"
		level.position = Vector2(5, 5)
		var hero := Node2D.new()
		hero.name = "Hero"
		var actions := [build({"player_path": ^"../Hero", "floor_seed": 9})]
		if twice:
			actions.append(build({"player_path": ^"../Hero"}))
		var made := machine([state("Build", actions, {"FINISHED": "Play"}), state("Play")])
		level.add_child(hero)
		level.add_child(made)
		stage.add_child(level)
		expect_state(made, "Play")
		expect_equal(hero.global_position, Vector2(45, 35))
		await frames(1)
		expect_equal(rooms_under(level).size(), 7)
		expect_equal(value_of(level.get_node(^"Room 0,0"), &"room_kind"), "start")
		level.free()


## A room without a machine, one that is no 2D scene, and doors of which none is there.
func test_rooms_need_not_have_everything() -> void:
	var parent := body("Floor")
	var bare := packed(Node2D.new())
	play(build({"start_room": room("plain", Node.new()), "fight_rooms": [bare], "fight_room_count": 2}), {}, {"under": parent})
	expect_equal(rooms_under(parent), {"Room 0,0": "plain"})
	expect_equal(parent.get_children().filter(func(node: Node) -> bool: return String(node.name).begins_with("Room ")).size(), 3)
	expect_equal(value_of(parent.get_node(^"Room 0,0"), &"room_kind"), "start")


func test_what_is_missing_is_told_and_nothing_is_built() -> void:
	var parent := body("Floor")
	body_3d("Deep")
	var rows := [
		[{"start_room": null}, "Build Dungeon on Machine has no Start Room, so no floor is built. Pick the room the player starts in."],
		[{"fight_rooms": []}, "Build Dungeon on Machine: Fight Rooms is empty, so no floor is built. Add the rooms to fight in under Fight Rooms."],
		[
			{"fight_rooms": [room("hall"), null]},
			"Build Dungeon on Machine: one of the Fight Rooms is empty, so no floor is built. Add the rooms to fight in under Fight Rooms.",
		],
		[{"parent_path": ^""}, "Build Dungeon on Machine: the game has no current scene, so there is nowhere to put the rooms and no floor is built."],
		[{"parent_path": ^"../Nobody"}, "Build Dungeon on Machine: Parent points at nothing, so there is nowhere to put the rooms and no floor is built."],
	]
	for row: Array in rows:
		expect_warns(build(row[0] as Dictionary), row[1], {"under": parent})
		expect_equal(parent.get_child_count(), 0)
	for path: NodePath in [^"../Nobody", ^"../../Deep"]:
		var what := "Player points at nothing" if path == ^"../Nobody" else "Deep is not a 2D node, and the floor is laid out in 2D"
		expect_warns(build({"player_path": path}), "Build Dungeon on Machine: %s, so the player is not moved to the start room." % what, {"under": parent})
	expect_equal(rooms_under(parent).size(), 7)


func test_odd_settings_are_told_of() -> void:
	var parent := body("Floor")
	expect_warns(build({"room_size": Vector2(0, NAN)}), "so it is taken as (480.0, 288.0). Type in how wide and high your rooms are.", {"under": parent})
	expect_equal((parent.get_node(^"Room 1,0") as Node2D).position if parent.has_node(^"Room 1,0") else Vector2(480, 0), Vector2(480, 0))
	expect_warns(build({"fight_room_count": -4}), "Fight Room Count is -4, so the floor has 1.", {"under": parent})
	expect_equal(rooms_under(parent).size(), 2)
	expect_warns(build({"boss_room": PackedScene.new()}), "nothing can be made of a scene for a boss room, so its place stays empty.", {"under": parent})
	expect_equal(rooms_under(parent).size(), 7)
	expect_warns(build({"parent_path": ^"../Room 0,0"}), "lies in a room of the floor that would be replaced", {"under": parent})
	expect_equal(rooms_under(parent).size(), 7)


## What rooms do as they come in: one asks for a floor of its own, one ends its builder's state, one frees the machine, and one goes.
func test_rooms_that_act_at_once_leave_the_floor_whole() -> void:
	var parent := body("Floor")
	var asks := Node2D.new()
	asks.set_meta(&"drawn", "asks")
	asks.add_child(machine([state("Build", [build({"parent_path": ^"../.."})])]))
	play(build({"start_room": packed(asks)}), {}, {"under": parent}).free()
	expect_warning("another floor is being built at this moment")
	expect_equal(rooms_under(parent).size(), 7)
	var hero := body("Hero")
	for what: String in ["ends", "frees", "goes"]:
		hero.position = Vector2.ZERO
		var made := doing(build({"player_path": ^"../../Hero", "built_event": &"built"}), {"stop": "Stopped", "built": "Built"}, {"under": parent})
		var came := [0]
		var held := [made]
		var answer := func(_node: Node) -> void:
			came[0] += 1
			if came[0] != 3:
				return
			match what:
				"ends":
					(held[0] as SCMachine).send_event(&"stop")
				"frees":
					(held[0] as SCMachine).free()
				"goes":
					parent.get_child(parent.get_child_count() - 1).queue_free()
		parent.child_entered_tree.connect(answer)
		parent.add_child(made)
		parent.child_entered_tree.disconnect(answer)
		expect_equal(hero.position, Vector2.ZERO if what == "frees" else Vector2(40, 30), what)
		expect_equal(came[0] >= 8 or what == "frees", true, what)
		expect_equal(rooms_under(parent).size(), 6 if what == "goes" else 7, what)
		if what == "frees":
			expect(not is_instance_valid(made))
		else:
			expect_state(made, "Stopped" if what == "ends" else "Built")
			made.free()


func test_its_line_and_its_settings() -> void:
	var all := {"start_room": room("start"), "fight_rooms": [room("hall")]}.merged(everything())
	expect_lines(SCBuildDungeonAction, {
		"Build a floor of 6 fight rooms": {"start_room": room("start"), "fight_rooms": [room("hall")]},
		"Build a floor of 6 fight rooms with a boss, treasure, a shop, a secret room from seed 12": all.merged({"floor_seed": 12}),
		"Build a floor of 3 fight rooms with a shop, Hero starting in it": {
			"start_room": room("start"), "fight_rooms": [room("hall")], "fight_room_count": 3, "shop_room": room("shop"), "player_path": ^"../../Hero",
		},
	})
	var made := SCBuildDungeonAction.new()
	expect_equal(made.room_size, Vector2(480, 288))
	expect_equal(property_of(made, "fight_rooms")["hint_string"], "24/17:PackedScene")
	expect_equal(property_of(made, "fight_room_count")["hint_string"], "1,100,1,or_greater,hide_slider")


func _shape(size: Vector2) -> CollisionShape2D:
	var box := RectangleShape2D.new()
	box.size = size
	var made := CollisionShape2D.new()
	made.name = "Shape"
	made.shape = box
	return made
