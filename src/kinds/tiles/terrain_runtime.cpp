// The compiled runtime of Paint Terrain.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/tiles/terrain.hpp"
#include "space/tiles.hpp"

#include <godot_cpp/classes/tile_set.hpp>

namespace {

using Kind = SCPaintTerrainAction;

constexpr int32_t NO_TERRAIN = -1;

class PaintTerrain : public OnceOrRepeating<PaintTerrain> {
	// The cells to paint, none when none can be told.
	static TypedArray<Vector2i> wanted(SCMachineBase *machine, SCMachineAction *action, const TileMapLayer *layer) {
		TypedArray<Vector2i> list;
		Vector2i cell;
		bool found = false;
		switch (checked::choice<&Kind::at>(machine, action, Kind::CELLS)) {
			case Kind::A_CELL:
				list.push_back(setting_of<&Kind::cell>(action));
				return list;
			case Kind::CELLS: {
				const Array told = setting_of<&Kind::cells>(action);
				list = tiles::cells_of(layer, told);
				if (list.size() < told.size()) {
					verbs::warn(machine, action,
							vformat("%d of the %d entries of Cells mean no cell, so they were left out. Write each as a Vector2i or as a text such as 3, 4, or "
									"pick a "
									"node.",
									told.size() - list.size(), told.size()));
				} else if (told.is_empty()) {
					verbs::warn(machine, action,
							"Cells is empty, so nothing was painted. Write the cells there, or press Var and pick a variable that holds them.");
				}
				return list;
			}
			case Kind::THE_MOUSE:
				found = tiles::cell_under_mouse(layer, cell);
				break;
			case Kind::A_NODE:
				found = tiles::cell_under<&Kind::at_node_path>(machine, action, layer, cell);
				break;
		}
		if (found) {
			list.push_back(tiles::moved(cell, setting_of<&Kind::cell_offset>(action)));
		}
		return list;
	}

	static bool has_terrain(SCMachineBase *machine, SCMachineAction *action, const TileMapLayer *layer, int64_t terrain_set, int64_t terrain) {
		const Ref<TileSet> tile_set = layer->get_tile_set();
		if (terrain_set < 0 || terrain_set >= tile_set->get_terrain_sets_count()) {
			verbs::warn(machine, action,
					vformat("%s's tile set has no terrain set %d, so nothing was painted. Set Terrain Set to one that it has, counted from 0.",
							layer->get_name(), terrain_set));
			return false;
		}
		if (terrain < NO_TERRAIN || terrain >= tile_set->get_terrains_count(int32_t(terrain_set))) {
			verbs::warn(machine, action,
					vformat("terrain set %d of %s's tile set has no terrain %d, so nothing was painted. Set Terrain to one that it has, counted from 0.",
							terrain_set, layer->get_name(), terrain));
			return false;
		}
		return true;
	}

	// Cells that touch by a side or a corner; one after the other in the list of a path.
	static bool touch(TileMapLayer *layer, const Vector2i &first, const Vector2i &second) {
		if (layer->get_tile_set()->get_tile_shape() == TileSet::TILE_SHAPE_SQUARE) {
			return first != second && Math::abs(int64_t(first.x) - second.x) <= 1 && Math::abs(int64_t(first.y) - second.y) <= 1;
		}
		return layer->get_surrounding_cells(first).has(second);
	}

	// False when the list is no path, of which the game maker is told.
	static bool is_path(SCMachineBase *machine, SCMachineAction *action, TileMapLayer *layer, const TypedArray<Vector2i> &list) {
		for (int64_t i = 1; i < list.size(); i++) {
			if (!touch(layer, list[i - 1], list[i])) {
				verbs::warn(machine, action,
						vformat("cell %s and cell %s, which follow each other in the path, do not touch, so nothing was painted. List every cell on the way, "
								"or set "
								"Mode to Connect.",
								list[i - 1], list[i]));
				return false;
			}
		}
		return true;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		TileMapLayer *layer = tiles::layer_or_warn<&Kind::layer_path>(machine, action, machine->slot(index), "so nothing was painted");
		if (layer == nullptr) {
			return;
		}
		const bool erase = setting_of<&Kind::erase>(action);
		const int64_t terrain_set = setting_of<&Kind::terrain_set>(action);
		const int64_t terrain = erase ? NO_TERRAIN : setting_of<&Kind::terrain>(action);
		const TypedArray<Vector2i> list = wanted(machine, action, layer);
		if (list.is_empty() || !has_terrain(machine, action, layer, terrain_set, terrain)) {
			return;
		}
		if (setting_of<&Kind::mode>(action) != Kind::PATH || terrain == NO_TERRAIN) {
			layer->set_cells_terrain_connect(list, int32_t(terrain_set), int32_t(terrain));
		} else if (is_path(machine, action, layer, list)) {
			layer->set_cells_terrain_path(list, int32_t(terrain_set), int32_t(terrain));
		}
	}
};

const AddKinds added = {
	add_kind<SCPaintTerrainAction, PaintTerrain>(),
};

} // namespace
