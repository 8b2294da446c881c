// The compiled runtime of Grid Path: the map becomes a grid of walls and floors, which the engine searches.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/shared_verbs.hpp"
#include "action/weak.hpp"
#include "kinds/navmesh/grid_path.hpp"
#include "space/tiles.hpp"

#include <godot_cpp/classes/a_star_grid2d.hpp>
#include <godot_cpp/classes/property_tweener.hpp>
#include <godot_cpp/classes/tile_set.hpp>
#include <godot_cpp/templates/hash_map.hpp>

namespace {

using Kind = SCGridPathAction;

// As many as a map of 2048 by 2048; the engine takes some 70 bytes for each.
constexpr int64_t MOST_CELLS = int64_t(2048) * 2048;

constexpr double LEAST_STEP = 0.001;

// A rectangle of cells that cannot run over the end of the numbers.
struct Cells {
	int64_t left;
	int64_t top;
	int64_t right;
	int64_t bottom;

	explicit Cells(const Vector2i &cell) : left(cell.x), top(cell.y), right(int64_t(cell.x) + 1), bottom(int64_t(cell.y) + 1) {}
	void add(const Rect2i &cells) {
		if (cells.size.x > 0 && cells.size.y > 0) {
			left = MIN(left, int64_t(cells.position.x));
			top = MIN(top, int64_t(cells.position.y));
			right = MAX(right, int64_t(cells.position.x) + cells.size.x);
			bottom = MAX(bottom, int64_t(cells.position.y) + cells.size.y);
		}
	}
	void grow() {
		left--;
		top--;
		right++;
		bottom++;
	}
	int64_t wide() const { return right - left; }
	int64_t tall() const { return bottom - top; }
	// Too many to search, or where the numbers of a cell end.
	bool are_too_many() const {
		return wide() > MOST_CELLS || tall() > MOST_CELLS || wide() * tall() > MOST_CELLS || left < INT32_MIN || top < INT32_MIN || right > INT32_MAX ||
				bottom > INT32_MAX;
	}
	Rect2i rect() const { return Rect2i(int32_t(left), int32_t(top), int32_t(wide()), int32_t(tall())); }
};

// Whether a tile is a wall. Asked once for each tile of the tile set, however many cells hold it.
class Walls {
	Kind::Solid solid;
	String data_name;
	int physics_layers;
	HashMap<const TileData *, bool> known;

	bool looks_solid(const TileData *tile) const {
		if (solid == Kind::CUSTOM_DATA) {
			return tile->get_custom_data(data_name).booleanize();
		}
		for (int i = 0; i < physics_layers; i++) {
			if (tile->get_collision_polygons_count(i) > 0) {
				return true;
			}
		}
		return false;
	}

public:
	Walls(Kind::Solid of_solid, const String &of_data_name, const TileMapLayer *layer) :
			solid(of_solid), data_name(of_data_name), physics_layers(layer->get_tile_set()->get_physics_layers_count()) {}

	bool are_where_no_tile_is() const { return solid != Kind::ANY_TILE; }
	bool are_at(const TileMapLayer *layer, const Vector2i &cell) {
		if (solid == Kind::ANY_TILE || solid == Kind::EMPTY_CELLS) {
			return (layer->get_cell_source_id(cell) >= 0) == (solid == Kind::ANY_TILE);
		}
		const TileData *tile = layer->get_cell_tile_data(cell);
		// A scene that stands for a tile carries nothing to tell by.
		if (tile == nullptr) {
			return layer->get_cell_source_id(cell) < 0;
		}
		const bool *answer = known.getptr(tile);
		return answer != nullptr ? *answer : (known[tile] = looks_solid(tile));
	}
};

struct Search {
	SCMachineBase *machine;
	Kind *kind;
	int index;
	TileMapLayer *layer = nullptr;
	Node2D *walker = nullptr;
	Vector2i start;
	Vector2i goal;
	bool starts_in_a_wall = false;
	TypedArray<Vector2i> path;

	Search(SCMachineBase *of_machine, Kind *of_kind, int of_index) : machine(of_machine), kind(of_kind), index(of_index) {}

	void say(int64_t what) { verbs::say<&Kind::warn>(kind, machine, index, what, layer, start, goal); }

	// False when it lacks something to search with, of which the game maker is told.
	bool find_ends() {
		TileMapLayer *found = tiles::layer_of(machine, kind->layer_path, machine->slot(index));
		if (found == nullptr) {
			say(Kind::NO_LAYER);
			return false;
		}
		layer = found;
		if (!tiles::is_square_grid(layer)) {
			say(Kind::NO_GRID);
			return false;
		}
		walker = verbs::node_or_warn_as<&Kind::node_path, Node2D>(machine, kind, "a 2D node");
		return walker != nullptr && tiles::cell_under(machine, kind, layer, walker, verbs::name_of<&Kind::node_path>(), start) && find_goal();
	}

	bool find_goal() {
		switch (kind->to) {
			case Kind::A_NODE: {
				const Node *node = kind->to_node_path.is_empty() ? nullptr : values::node_of(machine, kind->to_node_path);
				if (Object::cast_to<CanvasItem>(node) == nullptr) {
					say(Kind::NO_GOAL);
					return false;
				}
				return tiles::cell_under(machine, kind, layer, node, verbs::name_of<&Kind::to_node_path>(), goal);
			}
			case Kind::THE_MOUSE:
				return tiles::cell_under_mouse(layer, goal);
			case Kind::A_CELL:
				break;
		}
		goal = kind->to_cell;
		return true;
	}

	// What is in the way beside the walls of the map.
	Array blocked() {
		if (kind->solid_cells_variable.is_empty()) {
			return Array();
		}
		const Variant list = machine->get_value(kind->solid_cells_variable);
		if (list.get_type() != Variant::ARRAY) {
			verbs::say<&Kind::warn_blocked>(kind, machine, index, list);
			return Array();
		}
		return list;
	}

	// False when the walls cannot be told.
	bool look(const Array &also_blocked) {
		if (kind->solid == Kind::CUSTOM_DATA && (kind->data_name.is_empty() || !layer->get_tile_set()->has_custom_data_layer_by_name(kind->data_name))) {
			say(Kind::NO_CUSTOM_DATA);
			return false;
		}
		const Rect2i used = layer->get_used_rect();
		Cells cells(start);
		cells.add(Rect2i(goal, Vector2i(1, 1)));
		cells.add(used);
		cells.grow();
		if (cells.are_too_many()) {
			verbs::warn(machine, kind,
					vformat("from cell %s to cell %s and over all of %s there are more cells than can be searched, so it found no way. Check where the two "
							"are, "
							"and whether a stray tile lies far outside the map.",
							start, goal, layer->get_name()));
			return true;
		}
		Ref<AStarGrid2D> grid;
		grid.instantiate();
		grid->set_region(cells.rect());
		grid->set_diagonal_mode(AStarGrid2D::DiagonalMode(checked::choice<&Kind::diagonal_mode>(machine, kind, Kind::NEVER)));
		grid->update();
		mark_walls(grid.ptr(), used);
		const TypedArray<Vector2i> further = tiles::cells_of(layer, also_blocked);
		for (int64_t i = 0; i < further.size(); i++) {
			const Vector2i cell = further[i];
			if (grid->is_in_boundsv(cell)) {
				grid->set_point_solid(cell);
			}
		}
		starts_in_a_wall = grid->is_point_solid(start);
		grid->set_point_solid(start, false);
		path = grid->get_id_path(start, goal);
		return true;
	}

	void mark_walls(AStarGrid2D *grid, const Rect2i &used) {
		Walls walls(checked::choice<&Kind::solid>(machine, kind, Kind::TILES_WITH_COLLISION), kind->data_name, layer);
		const bool off_the_map = walls.are_where_no_tile_is();
		if (off_the_map) {
			grid->fill_solid_region(grid->get_region());
		}
		const Vector2i end = used.get_end();
		for (int32_t y = used.position.y; y < end.y; y++) {
			for (int32_t x = used.position.x; x < end.x; x++) {
				const Vector2i cell(x, y);
				if (walls.are_at(layer, cell) != off_the_map) {
					grid->set_point_solid(cell, !off_the_map);
				}
			}
		}
	}

	void tell_no_way() {
		if (!kind->no_path_event.is_empty()) {
			verbs::send(machine, kind->no_path_event);
		} else {
			say(starts_in_a_wall ? Kind::NO_WAY_OUT_OF_A_WALL : Kind::NO_WAY);
		}
	}

	Vector2 place_of(int64_t step) const { return layer->get_global_transform().xform(layer->map_to_local(path[step])); }

	// The tween that takes it from cell to cell; null when it is there at once.
	Ref<Tween> walk() {
		const int64_t last = path.size() - 1;
		const double pace = kind->cells_per_second;
		const bool stands_there = last == 0 && walker->get_global_position().is_equal_approx(place_of(0));
		if (stands_there || !(pace > 0.0) || !checked::is_sound(pace) || !machine->is_inside_tree()) {
			walker->set_global_position(place_of(last));
			return Ref<Tween>();
		}
		const Ref<Tween> tween = machine->create_tween();
		const NodePath property("global_position");
		const int64_t first = MIN(last, int64_t(1));
		for (int64_t step = first; step <= last; step++) {
			const Vector2 place = place_of(step);
			double seconds = 1.0 / pace;
			// It may have been called away from another walk between two cells, and is as fast on what is left of that.
			if (step == first && step > 0) {
				seconds *= MIN(1.0, double(walker->get_global_position().distance_to(place)) / MAX(double(place_of(0).distance_to(place)), LEAST_STEP));
			}
			const Ref<PropertyTweener> leg = tween->tween_property(walker, property, place, seconds);
		}
		return tween;
	}
};

class GridPath : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const Ref<Tween> walk = begin(machine, action, index, here);
		if (!here) {
			return;
		}
		if (walk.is_valid()) {
			machine->finish_with_tween(index, walk);
		} else {
			machine->finish(index);
		}
	}

private:
	static Ref<Tween> begin(SCMachineBase *machine, SCMachineAction *action, int index, const StillHere &here) {
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr) {
			return Ref<Tween>();
		}
		const Ref<Kind> held(kind);
		Search search(machine, kind, index);
		const Array also_blocked = search.blocked();
		if (!here || !search.find_ends() || !search.look(also_blocked)) {
			return Ref<Tween>();
		}
		const Weak<TileMapLayer> layer(search.layer);
		const Weak<Node2D> walker(search.walker);
		// A list of its own, which takes whatever a game adds to it.
		verbs::keep_if_named<&Kind::store_path_in>(machine, action, Array(search.path).duplicate());
		search.layer = layer.get();
		search.walker = walker.get();
		if (!here || search.layer == nullptr || search.walker == nullptr) {
			return Ref<Tween>();
		}
		if (search.path.is_empty()) {
			search.tell_no_way();
			return Ref<Tween>();
		}
		return kind->move_along ? search.walk() : Ref<Tween>();
	}
};

const AddKinds added = {
	add_kind<SCGridPathAction, GridPath>(),
};

} // namespace
