extends Story
## The map in the corner shows the floor as the player finds its rooms.

const Dungeon := preload("res://addons/quillstead/runtime/quillstead_dungeon.gd")

const SIZE: Vector2 = Vector2(100, 60)
## A start with a fight on each side, a boss behind the one in the east, and a secret room in the corner.
const CELLS: Dictionary = {
	Vector2i(0, 0): "start", Vector2i(1, 0): "fight", Vector2i(0, 1): "fight", Vector2i(2, 0): "boss", Vector2i(1, 1): "secret",
}
const JOINS: Array = [[Vector2i(0, 0), Vector2i(1, 0)], [Vector2i(0, 0), Vector2i(0, 1)], [Vector2i(1, 0), Vector2i(2, 0)]]
const SECRET: Array = [[Vector2i(1, 1), Vector2i(1, 0)], [Vector2i(1, 1), Vector2i(0, 1)]]


func close() -> void:
	Dungeon.forget()
	await super()


## The floor above, with its corner at [param corner].
func lay(corner: Vector2 = Vector2.ZERO) -> void:
	var rooms: Dictionary[Vector2i, Node] = {}
	for cell: Vector2i in CELLS:
		rooms[cell] = body("Room", corner + Vector2(cell) * SIZE)
	Dungeon.remember({"cells": CELLS, "joins": JOINS, "secret": SECRET}, rooms, SIZE, 1)


func player(cell: Vector2i) -> Node2D:
	var hero := body("Hero", middle_of(cell))
	hero.add_to_group(&"player")
	return hero


func middle_of(cell: Vector2i) -> Vector2:
	return (Vector2(cell) + Vector2(0.5, 0.5)) * SIZE


func map(settings: Dictionary = {}) -> SCMinimap:
	return add(SCMinimap.new(), "Map", {"size": Vector2(200, 100), "cell_size": Vector2(20, 10), "gap": 5.0}.merged(settings, true))


## What is shown, row by row: the first letter of a kind, "u" for a room nobody has been in, "." for nothing.
func drawn(of: SCMinimap) -> Array[String]:
	var lines: Array[String] = []
	for y in 2:
		var line := ""
		for x in 3:
			var shown := of.kind_shown(Vector2i(x, y))
			line += "." if shown.is_empty() else shown[1] if shown == "start" else shown[0]
		lines.append(line)
	return lines


func test_rooms_are_shown_as_the_player_finds_them() -> void:
	lay()
	var hero := player(Vector2i(0, 0))
	var made := map()
	var entered: Array = []
	made.room_entered.connect(func(cell: Vector2i, kind_of_room: String) -> void: entered.append([cell, kind_of_room]))
	expect_equal(drawn(made), ["tu.", "u.."])
	expect_equal(made.ways_shown().size(), 2)
	hero.position = middle_of(Vector2i(1, 0))
	await frames(2)
	expect_equal(drawn(made), ["tfu", "u.."])
	expect_equal(entered, [[Vector2i(1, 0), "fight"]])
	# Between rooms, or where no room is, it stays where it was.
	hero.position = middle_of(Vector2i(7, 7))
	await frames(2)
	expect_equal([made.player_cell, made.has_player], [Vector2i(1, 0), true])
	hero.position = middle_of(Vector2i(1, 1))
	await frames(2)
	expect_equal(drawn(made), ["tfu", "us."])
	expect_equal(made.ways_shown().size(), 5)
	hero.position = middle_of(Vector2i(1, 0))
	await frames(2)
	expect_equal(entered.map(func(row: Array) -> String: return row[1]), ["fight", "secret", "fight"])


func test_how_much_it_shows_can_be_chosen() -> void:
	lay()
	player(Vector2i(1, 0))
	var rows := {SCMinimap.Shows.SEEN: [".f.", "..."], SCMinimap.Shows.SEEN_AND_NEXT: ["ufu", "..."], SCMinimap.Shows.ALL: ["tfb", "fs."]}
	var ways := {SCMinimap.Shows.SEEN: 0, SCMinimap.Shows.SEEN_AND_NEXT: 2, SCMinimap.Shows.ALL: 5}
	var made := map()
	for shows: SCMinimap.Shows in rows:
		made.shows = shows
		expect_equal(drawn(made), rows[shows])
		expect_equal(made.ways_shown().size(), ways[shows])


## The map of another scene, or one that is shown later, knows what has been seen. A new floor begins anew.
func test_what_was_seen_stays_seen_until_the_next_floor() -> void:
	var made := map()
	var hero := player(Vector2i(0, 0))
	await frames(2)
	expect_equal([drawn(made), made.has_player], [["...", "..."], false])
	lay()
	await frames(2)
	expect_equal(drawn(made), ["tu.", "u.."])
	made.free()
	hero.position = middle_of(Vector2i(0, 1))
	made = map({"shows": SCMinimap.Shows.SEEN})
	expect_equal(drawn(made), ["t..", "f.."])
	lay(Vector2(1000, 0))
	hero.position += Vector2(1000, 0)
	await frames(2)
	expect_equal(drawn(made), ["...", "f.."])


func test_the_players_room_is_in_the_middle_or_the_whole_floor_is() -> void:
	lay()
	player(Vector2i(1, 0))
	var made := map()
	expect_equal(made.rect_of(Vector2i(1, 0)), Rect2(90, 45, 20, 10))
	expect_equal(made.rect_of(Vector2i(2, 1)), Rect2(115, 60, 20, 10))
	made.set(&"cell_size", Vector2(NAN, 4))
	made.set(&"gap", -INF)
	expect_equal(made.get_minimum_size(), Vector2(70, 40))
	made.follows_player = false
	# Three by two rooms, 70 wide and 25 high.
	expect_equal(made.rect_of(Vector2i(0, 0)), Rect2(65, 37.5, 20, 10))
	expect_equal(made.rect_of(Vector2i(2, 1)).end, Vector2(135, 62.5))


## Nothing of it holds on to rooms or players that go, and it draws what is left.
func test_rooms_and_players_may_go() -> void:
	lay()
	var hero := player(Vector2i(0, 0))
	var made := map()
	var theme := Theme.new()
	theme.set_color(&"boss", SCMinimap.THEME_TYPE, Color.BLACK)
	made.theme = theme
	var draws := [0]
	made.draw.connect(func() -> void: draws[0] += 1)
	await frames(2)
	expect_equal(draws, [1])
	hero.free()
	await frames(2)
	expect(made.has_player)
	hero = player(Vector2i(1, 0))
	Dungeon.room_in(Vector2i(0, 0)).free()
	await frames(2)
	expect_equal(made.player_cell, Vector2i(1, 0))
	for cell: Vector2i in CELLS:
		if Dungeon.room_in(cell) != null:
			Dungeon.room_in(cell).free()
	hero.position = middle_of(Vector2i(0, 1))
	await frames(2)
	expect_equal(made.player_cell, Vector2i(1, 0))


func test_a_player_that_is_none_is_told_of() -> void:
	lay()
	var made := map({"player_path": ^"../Nobody"})
	await frames(3)
	expect_warning("Minimap Map: there is no node at ../Nobody, so the player's room is not marked. Pick the player under Player Path.")
	body_3d("Deep")
	made.player_path = ^"../Deep"
	await frames(3)
	expect_warning("Minimap Map: Deep is not a 2D node, so its room is not marked.")
	player(Vector2i(0, 1))
	made.player_path = ^"../Hero"
	await frames(2)
	expect_equal(drawn(made), ["u..", "f.."])


## A floor that Build Dungeon built, from the player's first room on.
func test_it_shows_a_floor_that_was_built() -> void:
	var root := Node2D.new()
	root.name = "Drawn"
	var scene := PackedScene.new()
	scene.pack(root)
	root.free()
	player(Vector2i(40, 40))
	var made := map({"shows": SCMinimap.Shows.SEEN})
	var parent := body("Floor")
	play(kind(SCBuildDungeonAction, {
		"start_room": scene, "fight_rooms": [scene], "fight_room_count": 2, "room_size": SIZE, "parent_path": ^"..", "floor_seed": 12, "player_path": ^"../../Hero",
	}), {}, {"under": parent})
	await frames(2)
	expect_equal([made.player_cell, made.has_player, made.kind_shown(Vector2i(0, 0))], [Vector2i(0, 0), true, "start"])
