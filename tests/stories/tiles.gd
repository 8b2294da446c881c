extends PhysicsStory
## Maps of tiles and grids of pieces that are looked at and changed while the game runs.

const Tiles := preload("res://addons/quillstead/runtime/quillstead_tiles.gd")
const Mouse := preload("res://addons/quillstead/runtime/quillstead_mouse.gd")
const SIZE: int = 16
const GRASS := Vector2i(0, 0)
const ICE := Vector2i(1, 0)

## By the sides that join on to more of it, from right over down and left to up: the tile of the path terrain.
const SIDES: Array = [TileSet.CELL_NEIGHBOR_RIGHT_SIDE, TileSet.CELL_NEIGHBOR_BOTTOM_SIDE, TileSet.CELL_NEIGHBOR_LEFT_SIDE, TileSet.CELL_NEIGHBOR_TOP_SIDE]


## The first row are grass and ice, which carry what they are called and how slippery they are. The second is a terrain.
func tile_set() -> TileSet:
	var made := TileSet.new()
	made.tile_size = Vector2i(SIZE, SIZE)
	for name: String in ["ground", "slip"]:
		made.add_custom_data_layer()
		made.set_custom_data_layer_name(made.get_custom_data_layers_count() - 1, name)
	made.set_custom_data_layer_type(0, TYPE_STRING)
	made.set_custom_data_layer_type(1, TYPE_FLOAT)
	made.add_terrain_set()
	made.set_terrain_set_mode(0, TileSet.TERRAIN_MODE_MATCH_SIDES)
	made.add_terrain(0)
	var sheet := TileSetAtlasSource.new()
	sheet.texture = ImageTexture.create_from_image(Image.create_empty(SIZE * 16, SIZE * 2, false, Image.FORMAT_RGBA8))
	sheet.texture_region_size = Vector2i(SIZE, SIZE)
	made.add_source(sheet)
	for tile: Vector2i in [GRASS, ICE]:
		sheet.create_tile(tile)
		sheet.get_tile_data(tile, 0).set_custom_data("ground", "grass" if tile == GRASS else "ice")
		sheet.get_tile_data(tile, 0).set_custom_data("slip", float(tile.x))
	for pattern in 16:
		sheet.create_tile(Vector2i(pattern, 1))
		var data := sheet.get_tile_data(Vector2i(pattern, 1), 0)
		data.terrain_set = 0
		data.terrain = 0
		for side in SIDES.size():
			data.set_terrain_peering_bit(SIDES[side], 0 if pattern & 1 << side else -1)
	return made


func map() -> TileMapLayer:
	var layer := TileMapLayer.new()
	layer.tile_set = tile_set()
	layer.set_cell(Vector2i(0, 0), 0, GRASS)
	layer.set_cell(Vector2i(1, 0), 0, ICE)
	layer.position = Vector2(40, 40)
	return add(layer, "Map")


func walker(layer: TileMapLayer, cell: Vector2i) -> Node2D:
	return body("Walker", layer.to_global(layer.map_to_local(cell)))


## How the painted cells join, by cell.
func joined(layer: TileMapLayer, cells: Array) -> Array:
	return cells.map(func(cell: Vector2i) -> int: return layer.get_cell_atlas_coords(cell).x if layer.get_cell_atlas_coords(cell).y == 1 else -1)


## Only a viewport of its own has a pointer where no screen is.
func screen() -> SubViewport:
	return add(SubViewport.new(), "Screen", {"size": Vector2i(320, 200), "own_world_3d": true})


func point_at(place: Vector2, on: SubViewport) -> void:
	var motion := InputEventMouseMotion.new()
	motion.position = place
	motion.global_position = place
	on.push_input(motion, true)


func test_a_walker_learns_what_it_stands_on() -> void:
	var layer := map()
	var hero := walker(layer, Vector2i(0, 0))
	var look := {"data_name": "ground", "store_in": &"ground", "store_has_tile_in": &"there", "store_cell_in": &"cell"}
	var rows := [[Vector2i(0, 0), "grass", true], [Vector2i(1, 0), "ice", true], [Vector2i(2, 0), "nothing yet", false]]
	for row: Array in rows:
		var variables := {"ground": "nothing yet", "there": null, "cell": null}
		var held := results_of(kind(SCGetCellAction, look.merged({"cell_offset": row[0]})), variables, {"under": hero})
		expect_equal([held[&"cell"], held[&"ground"], held[&"there"]], row)
	var below := kind(SCGetCellAction, {"found_event": &"full", "empty_event": &"bare", "cell_offset": Vector2i(0, 1)})
	var owner := play(below, {"full": "Full", "bare": "Bare"}, {"under": hero})
	expect_state(owner, "Bare")
	hero.position.x = NAN
	expect_warns(kind(SCGetCellAction), "no cell of Map can be told for Walker", {"under": hero})


func test_tiles_are_put_down_and_taken_away() -> void:
	var layer := map()
	var hero := walker(layer, Vector2i(0, 0))
	play(kind(SCSetCellAction, {"tile_in_the_sheet": ICE}), {"FINISHED": "Done"}, {"under": hero})
	expect_equal(layer.get_cell_atlas_coords(Vector2i(0, 0)), ICE)
	var mirrored := {"tile_in_the_sheet": GRASS, "cell_offset": Vector2i(-3, 2), "alternative": TileSetAtlasSource.TRANSFORM_FLIP_H}
	play(kind(SCSetCellAction, mirrored), {"FINISHED": "Done"}, {"under": hero})
	expect(layer.is_cell_flipped_h(Vector2i(-3, 2)))
	play(kind(SCSetCellAction, {"erase": true, "at_node_path": ^"../../Walker"}), {"FINISHED": "Done"}, {"under": layer})
	expect_equal(layer.get_cell_source_id(Vector2i(0, 0)), -1)
	var digging := play(kind(SCSetCellAction, {"erase": true, "run_mode": SCMachineAction.EVERY_FRAME}), {}, {"under": hero})
	hero.position.x += SIZE
	await frames(2)
	expect_equal(layer.get_cell_source_id(Vector2i(1, 0)), -1)
	digging.free()
	var wrong := {
		"Map's tile set has no source 3. Set Source": {"source": 3},
		"source 0 of Map's tile set has no tile at 9, 0. Set Tile In The Sheet": {"tile_in_the_sheet": Vector2i(9, 0)},
		"has no alternative 5. Set Alternative": {"alternative": 5},
	}
	for text: String in wrong:
		expect_warns(kind(SCSetCellAction, wrong[text]), text, {"under": hero})


func test_a_path_is_painted_and_closes_its_edges() -> void:
	var layer := map()
	var hero := walker(layer, Vector2i(0, 5))
	var cells := [Vector2i(0, 5), Vector2i(1, 5), Vector2i(2, 5)]
	var paint := func(settings: Dictionary) -> void:
		play(kind(SCPaintTerrainAction, settings), {"FINISHED": "Done"}, {"under": hero, "variables": {"way": cells}}).free()
	paint.call({})
	expect_equal(joined(layer, cells), [0, -1, -1])
	paint.call({"cell_offset": Vector2i(1, 0)})
	expect_equal(joined(layer, cells), [1, 4, -1], "it joins its neighbour")
	paint.call({"at": SCPaintTerrainAction.A_CELL, "cell": Vector2i(2, 5)})
	expect_equal(joined(layer, cells), [1, 5, 4])
	paint.call({"at": SCPaintTerrainAction.A_CELL, "cell": Vector2i(1, 5), "erase": true})
	expect_equal(joined(layer, cells), [0, -1, 0], "what is left closes its edges")
	paint.call({"at": SCPaintTerrainAction.CELLS, "cells": ["0, 5", "(1,5)", Vector2(2.0, 5.0)]})
	expect_equal(joined(layer, cells), [1, 5, 4])
	var road := [Vector2i(0, 6), Vector2i(1, 6), Vector2i(2, 6)]
	paint.call({"at": SCPaintTerrainAction.CELLS, "mode": SCPaintTerrainAction.PATH, "cells": road})
	expect_equal(joined(layer, road), [1, 5, 4], "a road of its own")
	expect_equal(joined(layer, cells), [1, 5, 4], "beside the other")
	paint.call({"at": SCPaintTerrainAction.CELLS, "from_variables": {&"cells": &"way"}, "erase": true})
	expect_equal(joined(layer, cells), [-1, -1, -1])


func test_what_cannot_be_painted_is_told() -> void:
	var layer := map()
	var hero := walker(layer, Vector2i(0, 5))
	var rows := {
		"Cells is empty, so nothing was painted": {"at": SCPaintTerrainAction.CELLS},
		"2 of the 3 entries of Cells mean no cell": {"at": SCPaintTerrainAction.CELLS, "cells": ["here", null, "0, 0"]},
		"has no terrain set 1, so nothing was painted": {"terrain_set": 1},
		"terrain set 0 of Map's tile set has no terrain 4": {"terrain": 4},
		"cell (0, 0) and cell (5, 0), which follow each other":
		{"at": SCPaintTerrainAction.CELLS, "mode": SCPaintTerrainAction.PATH, "cells": [Vector2i(), Vector2i(5, 0)]},
		"there is no node at ../Nobody, so nothing was painted. Pick one under Layer Path.": {"layer_path": ^"../Nobody"},
		"Walker is no TileMapLayer with a tile set": {"layer_path": ^".."},
	}
	for text: String in rows:
		expect_warns(kind(SCPaintTerrainAction, rows[text]), text, {"under": hero})
	expect_warns(kind(SCGetCellAction, {"data_name": "depth", "store_in": &"a"}), "has no custom data called depth, so nothing was stored", {"under": hero})
	expect_warns(kind(SCGetCellAction, {"store_in": &"a"}), "Data Name is empty, so nothing was put into a.", {"under": hero})
	expect_warns(kind(SCGetCellAction), "Map is in 2D and Thing in 3D", {"under": body_3d("Thing")})
	layer.free()
	for of: Variant in [SCGetCellAction, SCSetCellAction, SCPaintTerrainAction, SCTileCondition]:
		expect_warns(kind(of), "there is no TileMapLayer with a tile set in the scene", {"under": hero})
	expect_warns(kind(SCGridMapCellAction), "there is no GridMap in the scene", {"under": hero})


func test_asking_about_a_tile() -> void:
	var layer := map()
	var owner := asker(walker(layer, Vector2i(0, 0)))
	var right := Vector2i(1, 0)
	expect_answers(owner, [
		[kind(SCTileCondition), true],
		[kind(SCTileCondition, {"cell_offset": Vector2i(0, 1)}), false],
		[kind(SCTileCondition, {"test": SCTileCondition.EQUALS, "data_name": "ground", "value": "grass"}), true],
		[kind(SCTileCondition, {"test": SCTileCondition.EQUALS, "data_name": "ground", "value": "grass", "cell_offset": right}), false],
		[kind(SCTileCondition, {"test": SCTileCondition.NOT_EQUALS, "data_name": "ground", "value": "grass", "cell_offset": Vector2i(9, 9)}), false],
		[kind(SCTileCondition, {"test": SCTileCondition.GREATER, "data_name": "slip", "value": 0.5, "cell_offset": right}), true],
		[kind(SCTileCondition, {"test": SCTileCondition.IS_TRUE, "data_name": "slip", "cell_offset": right}), true],
		[kind(SCTileCondition, {"test": SCTileCondition.IS_FALSE, "data_name": "slip", "at_node_path": ^"../../Map", "cell_offset": Vector2i(0, 0)}), true],
	])
	expect_warns(kind(SCTileCondition, {"test": SCTileCondition.IS_TRUE}), "Data Name is empty, so the answer is no", {"under": owner.get_parent()})
	var unknown := kind(SCTileCondition, {"test": SCTileCondition.IS_TRUE, "data_name": "x"})
	expect_warns(unknown, "no custom data called x, so the answer is no", {"under": owner.get_parent()})
	expect_lines(SCTileCondition, {
		"there is a tile under it": {},
		"the ground of the tile under Rat is ice": {"at_node_path": ^"../Rat", "test": SCTileCondition.EQUALS, "data_name": "ground", "value": "ice"},
	})
	layer.position = Vector2(NAN, 0)
	expect_warns(kind(SCTileCondition), "no cell of Map can be told", {"under": owner.get_parent()})


func test_pieces_are_put_looked_at_and_taken() -> void:
	var grid := GridMap.new()
	grid.mesh_library = MeshLibrary.new()
	grid.mesh_library.create_item(3)
	grid.mesh_library.set_item_name(3, "Wall")
	grid.position = Vector3(10, 0, 0)
	add(grid, "Grid")
	var hero := body_3d("Builder", Vector3(11, 1, 5))
	var under := {"under": hero, "variables": {"name": null, "there": null}}
	var put := kind(SCGridMapCellAction, {"piece": 3, "turn": SCGridMapCellAction.ROTATE_90, "cell_offset": Vector3i(1, 0, 0)})
	var get_it := kind(SCGridMapCellAction, {
		"change": SCGridMapCellAction.GET, "cell_offset": Vector3i(1, 0, 0), "store_name_in": &"name", "store_has_piece_in": &"there",
		"found_event": &"full", "empty_event": &"bare",
	})
	var clear := kind(SCGridMapCellAction, {"change": SCGridMapCellAction.CLEAR, "cell_offset": Vector3i(1, 0, 0)})
	var owner := play([put, get_it.duplicate(), clear, get_it], {}, under)
	expect_events(owner, ["full", "bare"])
	expect_values(owner, {"name": "", "there": false})
	owner = play([put, get_it], {}, under)
	expect_values(owner, {"name": "Wall", "there": true})
	var cell := grid.local_to_map(grid.to_local(hero.position)) + Vector3i(1, 0, 0)
	expect_near(grid.get_cell_item_basis(cell) * Vector3(1, 0, 0), Vector3(0, 0, -1))
	expect_warns(kind(SCGridMapCellAction, {"piece": 4}), "Grid's mesh library has no piece 4, so the cell was left as it is.", {"under": hero})
	expect_warns(kind(SCGridMapCellAction, {"piece": 3, "cell_offset": Vector3i(1 << 30, 0, 0)}), "Grid has no room for a cell at", {"under": hero})
	grid.mesh_library = null
	expect_warns(kind(SCGridMapCellAction), "Grid has no mesh library", {"under": hero})


func test_what_the_pointer_is_over() -> void:
	var shown := screen()
	var layer := map()
	layer.reparent(shown)
	layer.scale = Vector2(2, 2)
	point_at(layer.to_global(layer.map_to_local(Vector2i(1, 0))), shown)
	expect_equal(result_of(kind(SCGetCellAction, {"at": SCGetCellAction.THE_MOUSE, "data_name": "ground", "store_in": &"answer"})), "ice")
	expect(Mouse.is_2d_game(layer) and Mouse.on_screen(layer) is Vector2 and Mouse.line_of_sight(layer) == null)
	var camera: Camera3D = add(Camera3D.new(), "Camera", {"position": Vector3(1, 20, 1), "rotation_degrees": Vector3(-90, 0, 0), "under": shown})
	camera.make_current()
	var grid: GridMap = add(GridMap.new(), "Grid", {"under": shown})
	grid.mesh_library = MeshLibrary.new()
	grid.mesh_library.create_item(0)
	point_at(camera.unproject_position(Vector3(3, 0, 5)), shown)
	expect_near(Mouse.on_ground(grid), Vector3(3, 0, 5), 0.05)
	expect_equal(Tiles.piece_under_mouse(grid), Vector3i(1, 0, 2))
	grid.set_cell_item(Vector3i(1, 4, 2), 0)
	point_at(camera.unproject_position(Vector3(3, 9.5, 5)), shown)
	expect_equal(Tiles.piece_under_mouse(grid), Vector3i(1, 4, 2))
	play(kind(SCGridMapCellAction, {"change": SCGridMapCellAction.CLEAR, "at": SCGridMapCellAction.THE_MOUSE}))
	expect_equal(grid.get_used_cells(), [] as Array[Vector3i])
	in_3d = true
	var crate_below := block(3.0, 1.0, 2.0, 2.0)
	crate_below.reparent(shown)
	crate_below.set(&"position", Vector3(3, 1, 5))
	await physics_frames(2)
	point_at(camera.unproject_position(Vector3(3, 2, 5)), shown)
	expect_near(Mouse.in_3d(grid), Vector3(3, 2, 5), 0.05)


func test_which_cell_is_meant() -> void:
	var layer := map()
	var hero := walker(layer, Vector2i(4, 2))
	var rows := [
		[Vector2i(1, 2), Vector2i(1, 2)], [Vector2(1.5, -0.5), Vector2i(1, -1)], ["3, 4", Vector2i(3, 4)], [&"(-3,4)", Vector2i(-3, 4)], [hero, Vector2i(4, 2)],
		["3", null], ["a, b", null], [null, null], [7, null], [Vector2(NAN, 0), null], [RefCounted.new(), null], [Node3D.new(), null],
	]
	for row: Array in rows:
		expect_equal(Tiles.cell_of(layer, row[0]), row[1], str(row[0]))
	(rows[-1][0] as Node).free()
	expect(Tiles.is_tile_map(layer) and not Tiles.is_tile_map(hero) and not Tiles.is_square_grid_helper(null))


func test_the_lines() -> void:
	expect_lines(SCGetCellAction, {
		"Look at the tile under it": {},
		"Look at the tile under the mouse": {"at": SCGetCellAction.THE_MOUSE},
		"here = the ground of the tile": {"store_in": &"here", "data_name": "ground"},
	})
	expect_lines(SCSetCellAction, {
		"Take the tile away": {"erase": true},
		"Put tile 2, 1 down under the mouse": {"at": SCSetCellAction.THE_MOUSE, "tile_in_the_sheet": Vector2i(2, 1)},
	})
	expect_lines(SCGridMapCellAction, {
		"Set item 2 in the grid cell under the mouse": {"piece": 2, "at": SCGridMapCellAction.THE_MOUSE},
		"Get the grid cell": {"change": SCGridMapCellAction.GET},
	})
	expect_lines(SCPaintTerrainAction, {
		"Paint terrain 1 of set 2 on Ground at cell 3, 4":
		{"terrain": 1, "terrain_set": 2, "layer_path": ^"../Ground", "at": SCPaintTerrainAction.A_CELL, "cell": Vector2i(3, 4)},
		"Pick the cells to paint": {"at": SCPaintTerrainAction.CELLS},
		"Paint terrain 0 along a path of 2 cells": {"at": SCPaintTerrainAction.CELLS, "cells": [Vector2i(), Vector2i(1, 0)], "mode": SCPaintTerrainAction.PATH},
		"Dig out the terrain at Self": {"erase": true},
	})
	expect_equal(property_of(kind(SCGridMapCellAction), "turn")["hint_string"], "Rotate 0:0,Rotate 90:1,Rotate 180:2,Rotate 270:3")
	expect_equal(property_of(kind(SCPaintTerrainAction), "at")["hint_string"], "A Node:0,The Mouse:1,A Cell:2,Cells:3")
