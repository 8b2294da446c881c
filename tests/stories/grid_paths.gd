extends PhysicsStory
## Ways across a map of tiles, over maps drawn as text: a blank is no tile, a dot a floor, a # a wall.

const Tiles := preload("res://addons/quillstead/runtime/quillstead_tiles.gd")
const SIZE: int = 16
const FLOOR := Vector2i(0, 0)
const WALL := Vector2i(1, 0)
const BOARD: Array = [
	".....",
	".###.",
	".....",
]


static func tile_set() -> TileSet:
	var made := TileSet.new()
	made.tile_size = Vector2i(SIZE, SIZE)
	made.add_physics_layer()
	made.add_custom_data_layer()
	made.set_custom_data_layer_name(0, "wall")
	made.set_custom_data_layer_type(0, TYPE_BOOL)
	var sheet := TileSetAtlasSource.new()
	sheet.texture = ImageTexture.create_from_image(Image.create_empty(SIZE * 2, SIZE, false, Image.FORMAT_RGBA8))
	sheet.texture_region_size = Vector2i(SIZE, SIZE)
	made.add_source(sheet)
	for at: Vector2i in [FLOOR, WALL]:
		sheet.create_tile(at)
	var wall := sheet.get_tile_data(WALL, 0)
	wall.add_collision_polygon(0)
	wall.set_collision_polygon_points(0, 0, PackedVector2Array([Vector2(-8, -8), Vector2(8, -8), Vector2(8, 8), Vector2(-8, 8)]))
	wall.set_custom_data("wall", true)
	return made


func board(rows: Array = BOARD, tiles: TileSet = tile_set()) -> TileMapLayer:
	var layer := TileMapLayer.new()
	layer.tile_set = tiles
	for y in rows.size():
		for x in str(rows[y]).length():
			if str(rows[y])[x] != " ":
				layer.set_cell(Vector2i(x, y), 0, WALL if str(rows[y])[x] == "#" else FLOOR)
	return add(layer, "Board")


func unit(layer: TileMapLayer, cell: Vector2i, name: String = "Unit") -> Node2D:
	return body(name, layer.to_global(layer.map_to_local(cell)))


func find(settings: Dictionary, under: Node, variables: Dictionary = {}) -> Array:
	var looked: Array = result_of(kind(SCGridPathAction, {"move_along": false, "store_path_in": &"answer"}.merged(settings, true)), variables, {"under": under})
	return looked


func test_it_walks_round_the_wall_cell_by_cell() -> void:
	var layer := board()
	layer.position = Vector2(100, 50)
	layer.scale = Vector2(2, 2)
	var hero := unit(layer, Vector2i(2, 0))
	var walk := kind(SCGridPathAction, {"to_cell": Vector2i(2, 2), "cells_per_second": 10.0, "store_path_in": &"way"})
	var owner := play(walk, {"FINISHED": "Done"}, {"under": hero, "variables": {"way": []}})
	expect_state(owner, "Work")
	var way: Array = owner.get_value(&"way")
	expect_equal(way.size(), 7)
	expect_equal([way.front(), way.back()], [Vector2i(2, 0), Vector2i(2, 2)])
	await advance(0.3)
	expect_near(hero.global_position, layer.to_global(layer.map_to_local(way[3])), 8.0, "it is at the third cell")
	await expect_later(owner, 0.35, "Done")
	expect_near(hero.global_position, layer.to_global(layer.map_to_local(Vector2i(2, 2))))


func test_where_it_is_already_and_at_once() -> void:
	var layer := board()
	var hero := unit(layer, Vector2i(0, 0))
	expect_state(play(kind(SCGridPathAction), {"FINISHED": "Done"}, {"under": hero}), "Done")
	expect_equal(find({}, hero), [Vector2i(0, 0)])
	expect_state(play(kind(SCGridPathAction, {"to_cell": Vector2i(4, 2), "cells_per_second": 0.0}), {"FINISHED": "Done"}, {"under": hero}), "Done")
	expect_equal(hero.position, layer.map_to_local(Vector2i(4, 2)))
	hero.position += Vector2(5, 3)
	var owner := play(kind(SCGridPathAction, {"to_cell": Vector2i(4, 2)}), {"FINISHED": "Done"}, {"under": hero})
	await expect_later(owner, 0.35, "Done")
	expect_near(hero.position, layer.map_to_local(Vector2i(4, 2)), 0.001, "it ends in the middle of its cell")


func test_what_is_a_wall() -> void:
	var rows := {
		"tiles with collision": [{}, BOARD, 7],
		"custom data": [{"solid": SCGridPathAction.CUSTOM_DATA, "data_name": "wall"}, BOARD, 7],
		"off the map": [{}, [".....", ".####", "....."], 7],
		"no way": [{}, [".....", "#####", "....."], 0],
		"any tile": [{"solid": SCGridPathAction.ANY_TILE}, ["     ", "#####", "     "], 9],
		"empty cells": [{"solid": SCGridPathAction.EMPTY_CELLS}, [".....", "    .", "....."], 7],
		"corners": [{"diagonal_mode": SCGridPathAction.ALWAYS}, BOARD, 5],
		"free corners": [{"diagonal_mode": SCGridPathAction.ONLY_IF_NO_OBSTACLES}, BOARD, 7],
		"a goal in a wall": [{"to_cell": Vector2i(2, 1)}, BOARD, 0],
	}
	for row: String in rows:
		var layer := board(rows[row][1])
		var way := find({"to_cell": Vector2i(2, 2), "no_path_event": &"stuck"}.merged(rows[row][0], true), unit(layer, Vector2i(2, 0)))
		expect_equal(way.size(), rows[row][2], row)
		layer.free()


func test_others_are_in_the_way_and_nobody_blocks_itself() -> void:
	var layer := board(["...", "..."])
	var hero := unit(layer, Vector2i(0, 0))
	var other := unit(layer, Vector2i(1, 0), "Other")
	var blocked := {"to_cell": Vector2i(2, 0), "solid_cells_variable": &"units"}
	expect_equal(find(blocked, hero, {"units": [hero, other, null, 7]}).size(), 5)
	expect_equal(find(blocked, hero, {"units": [Vector2i(0, 0)]}).size(), 3, "a unit on a blocked cell gets out")
	expect_equal(find(blocked.merged({"to": SCGridPathAction.A_NODE, "to_node_path": ^"../../Other"}), hero, {"units": [Vector2i(0, 1)]}).size(), 2)
	expect_equal(find(blocked, hero, {"units": 5}).size(), 3)
	expect_warning("Grid Path on Machine: units holds an int, not a list of cells, so it blocks nothing. Give it an Array, or empty Solid Cells Variable.")


func test_no_way_is_told_or_sent() -> void:
	var layer := board([".#."])
	var hero := unit(layer, Vector2i(0, 0))
	var going := {"to_cell": Vector2i(2, 0), "layer_path": ^"../../Board"}
	var owner := play(kind(SCGridPathAction, going.merged({"no_path_event": &"stuck"})), {"FINISHED": "Done", "stuck": "Stuck"}, {"under": hero})
	expect_state(owner, "Stuck")
	var sentence := "Grid Path on Teller: there is no way from cell (0, 0) to cell (2, 0) on Board: set No Path Event to hear of it and choose what to do"
	expect_warns(kind(SCGridPathAction, going), sentence, {"under": hero, "name": "Teller"})
	hero.position = layer.map_to_local(Vector2i(1, 0))
	layer.set_cell(Vector2i(0, 0))
	layer.set_cell(Vector2i(2, 0))
	expect_warns(kind(SCGridPathAction, going), "the cell it stands on counts as a wall, so check Solid is right for this layer.", {"under": hero})
	expect_warns(kind(SCGridPathAction, {"to_cell": Vector2i(2147483647, -2147483648), "solid": SCGridPathAction.ANY_TILE}),
		["there are more cells than can be searched", "there is no way from cell (1, 0)"], {"under": hero})
	hero.position = Vector2(INF, NAN)
	expect_warns(kind(SCGridPathAction, going), "no cell of Board can be told for Unit", {"under": hero})


func test_what_is_set_up_wrong_is_told() -> void:
	expect_warns(kind(SCGridPathAction), "there is no TileMapLayer with a tile set here to find a way across. Pick one under Layer.", {"under": body()})
	var layer := board()
	var hero := unit(layer, Vector2i(0, 0))
	var rows := {
		"there is no 2D node to go to. Pick one under To Node.": {"to": SCGridPathAction.A_NODE, "to_node_path": ^"../Nobody"},
		"no custom data called ice, so it cannot tell a wall from a floor. Set Data Name": {"solid": SCGridPathAction.CUSTOM_DATA, "data_name": "ice"},
		"Solid is Custom Data, and Data Name is empty, so": {"solid": SCGridPathAction.CUSTOM_DATA},
		"there is no node at ../Nobody": {"node_path": ^"../Nobody"},
	}
	for text: String in rows:
		expect_warns(kind(SCGridPathAction, rows[text]), text, {"under": hero, "name": "Wrong"})
	layer.tile_set.tile_shape = TileSet.TILE_SHAPE_HEXAGON
	expect_warns(kind(SCGridPathAction), "Board's tiles are not laid out in rows and columns", {"under": hero})
	layer.tile_set.tile_shape = TileSet.TILE_SHAPE_ISOMETRIC
	expect_warns(kind(SCGridPathAction), "do not join up the way a grid does. Set its tile set's Tile Shape or Tile Layout.", {"under": hero})
	layer.tile_set.tile_layout = TileSet.TILE_LAYOUT_DIAMOND_DOWN
	hero.position = layer.map_to_local(Vector2i(0, 0))
	expect_equal(find({"to_cell": Vector2i(2, 0)}, hero).size(), 3)


func test_those_who_are_gone_or_called_away_harm_nobody() -> void:
	var layer := board()
	var hero := unit(layer, Vector2i(0, 0))
	var walk := kind(SCGridPathAction, {"to_cell": Vector2i(4, 0), "node_path": ^"../Unit", "cells_per_second": 10.0})
	var owner := play(walk, {"FINISHED": "Done", "away": "Away"})
	await advance(0.15)
	owner.send_event(&"away")
	var left := hero.position
	await advance(0.2)
	expect_equal(hero.position, left, "it walks on in another state")
	var again := play(walk)
	await expect_later(again, 0.2, "Work")
	await expect_later(again, 0.15, "Done")
	var last := play(kind(SCGridPathAction, {"to_cell": Vector2i(0, 0), "node_path": ^"../Unit", "cells_per_second": 10.0}))
	await advance(0.1)
	hero.free()
	await expect_later(last, 0.5, "Done")


func test_the_way_over_a_large_map_is_the_engine_s() -> void:
	var layer := TileMapLayer.new()
	layer.tile_set = tile_set()
	for y in 256:
		for x in 256:
			layer.set_cell(Vector2i(x, y), 0, WALL if x % 4 == 2 and y != (0 if x % 8 == 2 else 255) else FLOOR)
	add(layer, "Board")
	var hero := unit(layer, Vector2i(0, 0))
	var engine := AStarGrid2D.new()
	engine.region = Rect2i(-1, -1, 258, 258)
	engine.diagonal_mode = AStarGrid2D.DIAGONAL_MODE_NEVER
	engine.update()
	engine.fill_solid_region(engine.region)
	for y in 256:
		for x in 256:
			engine.set_point_solid(Vector2i(x, y), x % 4 == 2 and y != (0 if x % 8 == 2 else 255))
	expect_equal(find({"to_cell": Vector2i(255, 255)}, hero), engine.get_id_path(Vector2i(0, 0), Vector2i(255, 255)))


func test_the_lines() -> void:
	expect_lines(SCGridPathAction, {
		"Walk to cell (3, 4) on the grid": {"to_cell": Vector2i(3, 4)},
		"Walk Rat to Cheese's cell on the grid": {"node_path": ^"../Rat", "to": SCGridPathAction.A_NODE, "to_node_path": ^"../Cheese"},
		"Find a grid path from Rat to the cell under the mouse, into way":
		{"node_path": ^"../Rat", "to": SCGridPathAction.THE_MOUSE, "move_along": false, "store_path_in": &"way"},
	})
	expect_hidden(kind(SCGridPathAction), ["to_node_path", "data_name"])
	expect_equal(property_of(kind(SCGridPathAction), "solid")["hint_string"], "Tiles With Collision:0,Custom Data:1,Any Tile:2,Empty Cells:3")
	expect_equal(property_of(kind(SCGridPathAction), "diagonal_mode")["hint_string"], "Always:0,Never:1,At Least One Walkable:2,Only If No Obstacles:3")
