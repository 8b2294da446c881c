extends RefCounted
## What the kinds about tiles, and whoever edits their settings, need to know of a [TileMapLayer] and of a [GridMap]: what can be
## worked with, and which cell is meant.

const Mouse := preload("res://addons/quillstead/runtime/quillstead_mouse.gd")

## So many cells of a grid of pieces are looked through along the line of sight.
const CELLS_IN_SIGHT: int = 1024


## Whether there are tiles to work with: a layer that has a tile set.
static func is_tile_map(node: Node) -> bool:
	return node is TileMapLayer and (node as TileMapLayer).tile_set != null


## Whether cells join up in rows and columns, as squares do and diamonds that are laid out along their sides.
static func is_square_grid_helper(tiles: TileSet) -> bool:
	if tiles == null:
		return false
	if tiles.tile_shape == TileSet.TILE_SHAPE_SQUARE:
		return true
	return tiles.tile_shape == TileSet.TILE_SHAPE_ISOMETRIC and tiles.tile_layout in [TileSet.TILE_LAYOUT_DIAMOND_RIGHT, TileSet.TILE_LAYOUT_DIAMOND_DOWN]


## The cell that [param what] means: a cell or a place in it written down as a vector or as text such as "3, 4", or a node that
## stands in it. Null for anything else.
static func cell_of(layer: TileMapLayer, what: Variant) -> Variant:
	match typeof(what):
		TYPE_VECTOR2I:
			return what
		TYPE_VECTOR2:
			var place: Vector2 = what
			return Vector2i(place.floor()) if place.is_finite() else null
		TYPE_STRING, TYPE_STRING_NAME:
			return _cell_in_text(str(what))
		TYPE_OBJECT:
			return _cell_under(layer, what) if is_instance_valid(what) else null
	return null


## The cells of a list, each told as [method cell_of] takes it. What means no cell is left out.
static func cells_of(layer: TileMapLayer, list: Array) -> Array[Vector2i]:
	var cells: Array[Vector2i] = []
	for entry: Variant in list:
		var cell: Variant = cell_of(layer, entry)
		if cell != null:
			cells.append(cell)
	return cells


## The cell under the pointer, null where no pointer is.
static func cell_under_mouse(layer: TileMapLayer) -> Variant:
	var place: Variant = Mouse.in_2d(layer)
	return null if place == null or is_zero_approx(layer.global_transform.determinant()) else layer.local_to_map(layer.to_local(place))


## The cell of the first piece under the pointer, or the cell of the grid's lowest floor, at height 0, where no piece is in the
## way. Null where the pointer is over neither.
static func piece_under_mouse(grid: GridMap) -> Variant:
	var sight: Variant = Mouse.line_of_sight(grid)
	if sight == null or is_zero_approx(grid.global_basis.determinant()):
		return null
	var into := grid.global_transform.affine_inverse()
	var from: Vector3 = into * (sight[0] as Vector3) / grid.cell_size
	var way: Vector3 = into.basis * (sight[1] as Vector3) / grid.cell_size
	var cell: Variant = _first_piece(grid, from, way)
	if cell != null:
		return cell
	var floor_place: Variant = Plane(Vector3.UP, 0.0).intersects_ray(from, way)
	if floor_place == null:
		return null
	var on_floor: Vector3 = floor_place
	return Vector3i(floori(on_floor.x), 0, floori(on_floor.z))


# Goes from cell to cell along a line, told in cells.
static func _first_piece(grid: GridMap, from: Vector3, way: Vector3) -> Variant:
	var cell := Vector3i(from.floor())
	var step := Vector3i(way.sign())
	var ahead := Vector3.INF
	var between := Vector3.INF
	for axis in 3:
		if not is_zero_approx(way[axis]):
			between[axis] = absf(1.0 / way[axis])
			ahead[axis] = (cell[axis] + (1 if step[axis] > 0 else 0) - from[axis]) / way[axis]
	for i in CELLS_IN_SIGHT:
		if grid.get_cell_item(cell) != GridMap.INVALID_CELL_ITEM:
			return cell
		var axis := ahead.min_axis_index()
		cell[axis] += step[axis]
		ahead[axis] += between[axis]
	return null


static func _cell_under(layer: TileMapLayer, node: Object) -> Variant:
	var place: Variant = null
	if node is Node2D:
		place = (node as Node2D).global_position
	elif node is Control:
		place = (node as Control).global_position
	if place == null or is_zero_approx(layer.global_transform.determinant()):
		return null
	return layer.local_to_map(layer.to_local(place))


static func _cell_in_text(text: String) -> Variant:
	var parts := text.replace("(", "").replace(")", "").split(",")
	if parts.size() != 2 or not parts[0].strip_edges().is_valid_int() or not parts[1].strip_edges().is_valid_int():
		return null
	return Vector2i(parts[0].strip_edges().to_int(), parts[1].strip_edges().to_int())
