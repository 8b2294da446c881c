// Compiled runtimes of the kinds that look at one tile and change it.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/tiles/cells.hpp"
#include "space/tiles.hpp"

#include <godot_cpp/classes/tile_set.hpp>
#include <godot_cpp/classes/tile_set_atlas_source.hpp>

namespace {

// A turned or mirrored tile is told by bits above the number of the alternative.
constexpr int32_t TURNED = TileSetAtlasSource::TRANSFORM_FLIP_H | TileSetAtlasSource::TRANSFORM_FLIP_V | TileSetAtlasSource::TRANSFORM_TRANSPOSE;

// The cell that the action's settings tell. Null when there is none.
template <class Kind>
TileMapLayer *find_cell(SCMachineBase *machine, SCMachineAction *action, int index, const char *instead, Vector2i &cell) {
	TileMapLayer *layer = tiles::layer_or_warn<&Kind::layer_path>(machine, action, machine->slot(index), instead);
	if (layer == nullptr) {
		return nullptr;
	}
	const bool found = setting_of<&Kind::at>(action) == Kind::THE_MOUSE ? tiles::cell_under_mouse(layer, cell)
																		: tiles::cell_under<&Kind::at_node_path>(machine, action, layer, cell);
	cell = tiles::moved(cell, setting_of<&Kind::cell_offset>(action));
	return found ? layer : nullptr;
}

class GetCell : public OnceOrRepeating<GetCell> {
	using Kind = SCGetCellAction;

	static Variant data_of(SCMachineBase *machine, SCMachineAction *action, const TileMapLayer *layer, const Vector2i &cell) {
		const String data_name = setting_of<&Kind::data_name>(action);
		if (!data_name.is_empty()) {
			return tiles::has_data_or_warn(machine, action, layer, data_name, "so nothing was stored", verbs::name_of<&Kind::data_name>())
					? tiles::data_at(layer, cell, data_name)
					: Variant();
		}
		const StringName store_in = setting_of<&Kind::store_in>(action);
		if (!store_in.is_empty()) {
			verbs::warn(machine, action,
					vformat("Data Name is empty, so nothing was put into %s. Write the name of the tile set's custom data there, or empty Store In.",
							store_in));
		}
		return Variant();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Vector2i cell;
		const TileMapLayer *layer = find_cell<Kind>(machine, action, index, "so it looked at no tile", cell);
		if (layer == nullptr) {
			return;
		}
		const bool has_tile = layer->get_cell_source_id(cell) >= 0;
		const Variant data = data_of(machine, action, layer, cell);
		const StillHere here(machine);
		verbs::keep_each<&Kind::store_has_tile_in, &Kind::store_cell_in>(machine, action, { has_tile, cell });
		if (here && data.get_type() != Variant::NIL) {
			verbs::keep<&Kind::store_in>(machine, action, data, "what the tile is like");
		}
		if (here) {
			verbs::send_either<&Kind::found_event, &Kind::empty_event>(machine, action, has_tile);
		}
	}
};

class SetCell : public OnceOrRepeating<SetCell> {
	using Kind = SCSetCellAction;

	// Why the tile set has no such tile; empty when it has.
	static String why_not(const TileMapLayer *layer, int32_t source, const Vector2i &tile, int32_t alternative) {
		const Ref<TileSet> tile_set = layer->get_tile_set();
		if (!tile_set->has_source(source)) {
			return vformat("%s's tile set has no source %d. Set Source to one that it lists", layer->get_name(), source);
		}
		const Ref<TileSetSource> tiles = tile_set->get_source(source);
		if (tiles.is_null() || !tiles->has_tile(tile)) {
			return vformat(
					"source %d of %s's tile set has no tile at %d, %d. Set Tile In The Sheet to one that it has", source, layer->get_name(), tile.x, tile.y);
		}
		if (!tiles->has_alternative_tile(tile, alternative & ~TURNED)) {
			return vformat("the tile at %d, %d of source %d has no alternative %d. Set Alternative to one that it has", tile.x, tile.y, source, alternative);
		}
		return String();
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		Vector2i cell;
		TileMapLayer *layer = find_cell<Kind>(machine, action, index, "so no tile was changed", cell);
		if (layer == nullptr) {
			return;
		}
		if (setting_of<&Kind::erase>(action)) {
			layer->erase_cell(cell);
			return;
		}
		const int32_t source = int32_t(CLAMP(setting_of<&Kind::source>(action), int64_t(-1), int64_t(INT32_MAX)));
		const Vector2i tile = setting_of<&Kind::tile_in_the_sheet>(action);
		const int32_t alternative = int32_t(CLAMP(setting_of<&Kind::alternative>(action), int64_t(0), int64_t(INT32_MAX)));
		const String why = why_not(layer, source, tile, alternative);
		if (why.is_empty()) {
			layer->set_cell(cell, source, tile, alternative);
		} else {
			verbs::warn(machine, action, vformat("%s. The cell was left as it is.", why));
		}
	}
};

const AddKinds added = {
	add_kind<SCGetCellAction, GetCell>(),
	add_kind<SCSetCellAction, SetCell>(),
};

} // namespace
