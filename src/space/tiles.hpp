#pragma once

// What actions and conditions about tiles share: which layer of tiles or grid of pieces is meant, and which cell of it. Only for
// runtimes; nothing here is bound.

#include "action/shared_verbs.hpp"

#include <godot_cpp/classes/grid_map.hpp>
#include <godot_cpp/classes/tile_data.hpp>
#include <godot_cpp/classes/tile_map_layer.hpp>

using namespace godot;

namespace tiles {

// The layer, or the grid of pieces, that the path leads to. An empty path is Self when that is one, and otherwise the first in the
// scene, which is remembered in the slot so that it is not looked for again. A layer without a tile set is none. Null, without a
// word, when there is none.
TileMapLayer *layer_of(SCMachineBase *machine, const NodePath &path, Dictionary slot);
GridMap *grid_of(SCMachineBase *machine, const NodePath &path, Dictionary slot);
// The same, and the game maker is told what is missing and what was done instead: "so nothing was painted".
TileMapLayer *layer_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, Dictionary slot, const char *instead, const StringName &setting);
GridMap *grid_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, Dictionary slot, const char *instead, const StringName &setting);
template <auto Field, class Kind>
TileMapLayer *layer_or_warn(SCMachineBase *machine, const Kind *kind, Dictionary slot, const char *instead) {
	return layer_or_warn(machine, kind, setting_of<Field>(kind), slot, instead, verbs::name_of<Field>());
}
template <auto Field, class Kind>
GridMap *grid_or_warn(SCMachineBase *machine, const Kind *kind, Dictionary slot, const char *instead) {
	return grid_or_warn(machine, kind, setting_of<Field>(kind), slot, instead, verbs::name_of<Field>());
}

// The cell that a node stands in. False when it has no place there, of which the game maker is told.
bool cell_under(SCMachineBase *machine, const Object *kind, const TileMapLayer *layer, const Node *node, const StringName &setting, Vector2i &cell);
bool cell_under(SCMachineBase *machine, const Object *kind, const GridMap *grid, const Node *node, const StringName &setting, Vector3i &cell);
template <auto NodeField, class Kind, class Grid, class Cell>
bool cell_under(SCMachineBase *machine, const Kind *kind, const Grid *grid, Cell &cell) {
	const Node *node = verbs::node_or_warn<NodeField>(machine, kind);
	return node != nullptr && cell_under(machine, kind, grid, node, verbs::name_of<NodeField>(), cell);
}
// The cell under the pointer. False, without a word, where no pointer is over it.
bool cell_under_mouse(const TileMapLayer *layer, Vector2i &cell);
bool cell_under_mouse(const GridMap *grid, Vector3i &cell);
// Without running over the end of the numbers.
Vector2i moved(const Vector2i &cell, const Vector2i &by);
Vector3i moved(const Vector3i &cell, const Vector3i &by);

// Every cell that a list means: cells, texts such as "3, 4", nodes that stand in them.
TypedArray<Vector2i> cells_of(const TileMapLayer *layer, const Array &list);
// Whether the cells join up in rows and columns.
bool is_square_grid(const TileMapLayer *layer);

// False when the tile set has no custom data of this name, of which the game maker is told.
bool has_data_or_warn(
		SCMachineBase *machine, const Object *kind, const TileMapLayer *layer, const String &data_name, const char *instead, const StringName &setting);
// What the tile of a cell carries under this name, which the tile set must have. Nil without a tile.
Variant data_at(const TileMapLayer *layer, const Vector2i &cell, const String &data_name);

} // namespace tiles
