// The compiled runtime of Grid Map Cell.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "kinds/tiles/grid_map.hpp"
#include "space/tiles.hpp"

#include <godot_cpp/classes/mesh_library.hpp>
#include <godot_cpp/core/math.hpp>

namespace {

using Kind = SCGridMapCellAction;

// Cells further from the middle than this the engine has no room for.
constexpr int32_t FURTHEST_CELL = (1 << 20) - 1;

bool is_within(const Vector3i &cell) {
	for (const int32_t part : { cell.x, cell.y, cell.z }) {
		if (part < -FURTHEST_CELL || part > FURTHEST_CELL) {
			return false;
		}
	}
	return true;
}

class GridMapCell : public OnceOrRepeating<GridMapCell> {
	static void set(SCMachineBase *machine, SCMachineAction *action, GridMap *grid, const Vector3i &cell) {
		const int64_t piece = setting_of<&Kind::piece>(action);
		const Ref<MeshLibrary> library = grid->get_mesh_library();
		if (library.is_null()) {
			verbs::warn(
					machine, action, vformat("%s has no mesh library, so there is no piece to put down. Give it one under Mesh Library.", grid->get_name()));
			return;
		}
		if (!library->get_item_list().has(int32_t(piece)) || piece > INT32_MAX) {
			verbs::warn(machine, action,
					vformat("%s's mesh library has no piece %d, so the cell was left as it is. Set Piece to one that it has.", grid->get_name(), piece));
			return;
		}
		const int quarters = checked::choice<&Kind::turn>(machine, action, Kind::ROTATE_0);
		const Basis turned(Vector3(0, 1, 0), real_t(Math::PI / 2.0 * quarters));
		grid->set_cell_item(cell, int32_t(piece), grid->get_orthogonal_index_from_basis(turned));
	}

	static void get(SCMachineBase *machine, SCMachineAction *action, const GridMap *grid, const Vector3i &cell) {
		const int32_t piece = grid->get_cell_item(cell);
		const bool has_piece = piece != GridMap::INVALID_CELL_ITEM;
		const Ref<MeshLibrary> library = grid->get_mesh_library();
		const bool is_known = has_piece && library.is_valid() && library->get_item_list().has(piece);
		const String name = is_known ? library->get_item_name(piece) : String();
		const StillHere here(machine);
		verbs::keep_each<&Kind::store_name_in, &Kind::store_has_piece_in>(machine, action, { name, has_piece });
		if (here) {
			verbs::send_either<&Kind::found_event, &Kind::empty_event>(machine, action, has_piece);
		}
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		GridMap *grid = tiles::grid_or_warn<&Kind::grid_path>(machine, action, machine->slot(index), "so it did nothing");
		Vector3i cell;
		if (grid == nullptr ||
				!(setting_of<&Kind::at>(action) == Kind::THE_MOUSE ? tiles::cell_under_mouse(grid, cell)
																   : tiles::cell_under<&Kind::at_node_path>(machine, action, grid, cell))) {
			return;
		}
		cell = tiles::moved(cell, setting_of<&Kind::cell_offset>(action));
		if (!is_within(cell)) {
			verbs::warn(machine, action,
					vformat("%s has no room for a cell at %d, %d, %d, so it did nothing. Check where the node is, and Cell Offset.", grid->get_name(), cell.x,
							cell.y, cell.z));
			return;
		}
		switch (checked::choice<&Kind::change>(machine, action, Kind::GET)) {
			case Kind::SET:
				set(machine, action, grid, cell);
				break;
			case Kind::CLEAR:
				grid->set_cell_item(cell, GridMap::INVALID_CELL_ITEM);
				break;
			case Kind::GET:
				get(machine, action, grid, cell);
				break;
		}
	}
};

const AddKinds added = {
	add_kind<SCGridMapCellAction, GridMapCell>(),
};

} // namespace
