// The compiled condition about a tile.

#include "action/add_kind.hpp"
#include "action/comparing.hpp"
#include "action/conditions.hpp"
#include "kinds/conditions/tile.hpp"
#include "space/tiles.hpp"

namespace {

using Kind = SCTileCondition;

bool is_such_a_tile(SCMachineBase *machine, SCMachineCondition *condition) {
	const TileMapLayer *layer = tiles::layer_or_warn<&Kind::layer_path>(machine, condition, machine->condition_slot(), "so the answer is no");
	const Node *node = layer != nullptr ? conditions::node<&Kind::at_node_path>(machine, condition) : nullptr;
	Vector2i cell;
	if (node == nullptr || !tiles::cell_under(machine, condition, layer, node, verbs::name_of<&Kind::at_node_path>(), cell)) {
		return false;
	}
	cell = tiles::moved(cell, setting_of<&Kind::cell_offset>(condition));
	if (layer->get_cell_source_id(cell) < 0) {
		return false;
	}
	const Kind::Test test = setting_of<&Kind::test>(condition);
	if (test == Kind::THERE_IS_A_TILE) {
		return true;
	}
	const String data_name = setting_of<&Kind::data_name>(condition);
	if (data_name.is_empty()) {
		verbs::warn(machine, condition, "Data Name is empty, so the answer is no. Write the name of the tile set's custom data there.");
		return false;
	}
	return tiles::has_data_or_warn(machine, condition, layer, data_name, "so the answer is no", verbs::name_of<&Kind::data_name>()) &&
			comparing::passes(tiles::data_at(layer, cell, data_name), comparing::Test(int(test) - int(Kind::EQUALS)), setting_of<&Kind::value>(condition));
}

const AddKinds added = {
	add_condition<SCTileCondition, &is_such_a_tile>(),
};

} // namespace
