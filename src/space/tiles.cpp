#include "space/tiles.hpp"

#include "action/checked.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "action/told_path.hpp"
#include "machine/companion_scripts.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/classes/scene_tree.hpp>
#include <godot_cpp/classes/tile_set.hpp>
#include <godot_cpp/classes/window.hpp>

namespace tiles {

namespace {

struct TileNames {
	StringName script = "quillstead_tiles";
	StringName cells_of = "cells_of";
	StringName is_square_grid = "is_square_grid_helper";
	StringName cell_under_mouse = "cell_under_mouse";
	StringName piece_under_mouse = "piece_under_mouse";
	// In a slot: the id of what was found in the scene.
	StringName found_in_scene = "found_in_scene";
};

const TileNames &names() {
	return NativeNames::of<TileNames>();
}

TileMapLayer *usable(TileMapLayer *layer) {
	return layer != nullptr && layer->get_tile_set().is_valid() ? layer : nullptr;
}
GridMap *usable(GridMap *grid) {
	return grid;
}

template <class Grid>
Grid *first_usable(Node *node) {
	if (Grid *found = usable(Object::cast_to<Grid>(node))) {
		return found;
	}
	for (int i = 0; i < node->get_child_count(); i++) {
		if (Grid *found = first_usable<Grid>(node->get_child(i))) {
			return found;
		}
	}
	return nullptr;
}

// The scene that the machine stands in, and then whatever else is there.
template <class Grid>
Grid *first_in_scene(SCMachineBase *machine) {
	if (!machine->is_inside_tree()) {
		return nullptr;
	}
	Node *root = machine->get_tree()->get_root();
	Node *scene = machine;
	while (scene->get_parent() != nullptr && scene->get_parent() != root) {
		scene = scene->get_parent();
	}
	Grid *found = first_usable<Grid>(scene);
	return found != nullptr ? found : first_usable<Grid>(root);
}

template <class Grid>
Grid *found_at(SCMachineBase *machine, const NodePath &path, Dictionary slot) {
	Grid *picked = usable(Object::cast_to<Grid>(values::node_of(machine, path)));
	if (picked != nullptr || !path.is_empty()) {
		return picked;
	}
	const uint64_t known = slot.get(names().found_in_scene, 0);
	Grid *remembered = known != 0 ? usable(Object::cast_to<Grid>(ObjectDB::get_instance(ObjectID(known)))) : nullptr;
	if (remembered != nullptr && remembered->is_inside_tree()) {
		return remembered;
	}
	Grid *found = first_in_scene<Grid>(machine);
	if (found != nullptr) {
		slot[names().found_in_scene] = found->get_instance_id();
	}
	return found;
}

void warn_none(SCMachineBase *machine, const Object *kind, const NodePath &path, const char *what, const char *instead, const StringName &setting) {
	const String shown = verbs::setting_in_inspector(setting);
	if (path.is_empty()) {
		verbs::warn(machine, kind, vformat("there is no %s in the scene, %s. Add one, or pick one under %s.", what, instead, shown));
		return;
	}
	const Node *node = values::node_of(machine, path);
	const String why = node != nullptr ? vformat("%s is no %s", node->get_name(), what) : vformat("there is no node at %s", words::told_path(path));
	verbs::warn(machine, kind, vformat("%s, %s. Pick one under %s.", why, instead, shown));
}

template <class Grid, class Cell>
bool stands_in(SCMachineBase *machine, const Object *kind, const Grid *grid, const Node *node, const StringName &setting, Cell &cell) {
	if (!places::has_a_place(node)) {
		verbs::warn(machine, kind, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(setting))));
		return false;
	}
	if (!sides::same_or_warn(machine, kind, grid, node, "so no cell was found", setting)) {
		return false;
	}
	const Variant place = places::position_of(node);
	const Variant inside = checked::is_sound(place) ? spaces::to_own(grid, place) : Variant();
	if (!checked::is_sound(inside) || inside.get_type() == Variant::NIL) {
		verbs::warn(machine, kind,
				vformat("no cell of %s can be told for %s, as one of them is nowhere or has a size of 0, so nothing was done. Check their positions and "
						"scales.",
						grid->get_name(), node->get_name()));
		return false;
	}
	cell = grid->local_to_map(inside);
	return true;
}

template <class Grid, class Cell>
bool told_by_mouse(const Grid *grid, const StringName &method, Cell &cell) {
	const Variant found = CompanionScripts::call(names().script, method, Array::make(grid));
	if (found.get_type() == Variant::NIL) {
		return false;
	}
	cell = found;
	return true;
}

int32_t sum(int32_t first, int32_t second) {
	return int32_t(CLAMP(int64_t(first) + int64_t(second), int64_t(INT32_MIN), int64_t(INT32_MAX)));
}

} // namespace

TileMapLayer *layer_of(SCMachineBase *machine, const NodePath &path, Dictionary slot) {
	return found_at<TileMapLayer>(machine, path, slot);
}

GridMap *grid_of(SCMachineBase *machine, const NodePath &path, Dictionary slot) {
	return found_at<GridMap>(machine, path, slot);
}

TileMapLayer *layer_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, Dictionary slot, const char *instead, const StringName &setting) {
	TileMapLayer *layer = layer_of(machine, path, slot);
	if (layer == nullptr) {
		warn_none(machine, kind, path, "TileMapLayer with a tile set", instead, setting);
	}
	return layer;
}

GridMap *grid_or_warn(SCMachineBase *machine, const Object *kind, const NodePath &path, Dictionary slot, const char *instead, const StringName &setting) {
	GridMap *grid = grid_of(machine, path, slot);
	if (grid == nullptr) {
		warn_none(machine, kind, path, "GridMap", instead, setting);
	}
	return grid;
}

bool cell_under(SCMachineBase *machine, const Object *kind, const TileMapLayer *layer, const Node *node, const StringName &setting, Vector2i &cell) {
	return stands_in(machine, kind, layer, node, setting, cell);
}

bool cell_under(SCMachineBase *machine, const Object *kind, const GridMap *grid, const Node *node, const StringName &setting, Vector3i &cell) {
	return stands_in(machine, kind, grid, node, setting, cell);
}

bool cell_under_mouse(const TileMapLayer *layer, Vector2i &cell) {
	return told_by_mouse(layer, names().cell_under_mouse, cell);
}

bool cell_under_mouse(const GridMap *grid, Vector3i &cell) {
	return told_by_mouse(grid, names().piece_under_mouse, cell);
}

Vector2i moved(const Vector2i &cell, const Vector2i &by) {
	return Vector2i(sum(cell.x, by.x), sum(cell.y, by.y));
}

Vector3i moved(const Vector3i &cell, const Vector3i &by) {
	return Vector3i(sum(cell.x, by.x), sum(cell.y, by.y), sum(cell.z, by.z));
}

TypedArray<Vector2i> cells_of(const TileMapLayer *layer, const Array &list) {
	return CompanionScripts::call(names().script, names().cells_of, Array::make(layer, list));
}

bool is_square_grid(const TileMapLayer *layer) {
	return CompanionScripts::call(names().script, names().is_square_grid, Array::make(layer->get_tile_set())).booleanize();
}

bool has_data_or_warn(
		SCMachineBase *machine, const Object *kind, const TileMapLayer *layer, const String &data_name, const char *instead, const StringName &setting) {
	if (layer->get_tile_set()->has_custom_data_layer_by_name(data_name)) {
		return true;
	}
	verbs::warn(machine, kind,
			vformat("%s's tile set has no custom data called %s, %s. Add it to the tile set under Custom Data Layers, or write its name under %s.",
					layer->get_name(), data_name, instead, verbs::setting_in_inspector(setting)));
	return false;
}

Variant data_at(const TileMapLayer *layer, const Vector2i &cell, const String &data_name) {
	const TileData *tile = layer->get_cell_tile_data(cell);
	return tile != nullptr ? tile->get_custom_data(data_name) : Variant();
}

} // namespace tiles
