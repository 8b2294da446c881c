#pragma once

// Kinds that look at one tile of a tile map and change it.

#include "action/kind_table.hpp"

class SCGetCellAction : public SCMachineAction {
	SC_KIND(SCGetCellAction, SCMachineAction)

public:
	SC_ENUM(At, A_NODE, THE_MOUSE)

	NodePath layer_path;
	At at = A_NODE;
	NodePath at_node_path;
	Vector2i cell_offset;
	String data_name;
	StringName store_in;
	StringName store_has_tile_in;
	StringName store_cell_in;
	StringName found_event;
	StringName empty_event;

	String summary_default() override;

private:
	bool asks_for_no_data() const;
};

class SCSetCellAction : public SCMachineAction {
	SC_KIND(SCSetCellAction, SCMachineAction)

public:
	SC_ENUM(At, A_NODE, THE_MOUSE)

	NodePath layer_path;
	At at = A_NODE;
	NodePath at_node_path;
	Vector2i cell_offset;
	bool erase = false;
	int64_t source = 0;
	Vector2i tile_in_the_sheet;
	int64_t alternative = 0;

	String summary_default() override;
};
