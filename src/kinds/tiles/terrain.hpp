#pragma once

// The kind that paints a tile map with a terrain.

#include "action/kind_table.hpp"

class SCPaintTerrainAction : public SCMachineAction {
	SC_KIND(SCPaintTerrainAction, SCMachineAction)

public:
	SC_ENUM(At, A_NODE, THE_MOUSE, A_CELL, CELLS)
	SC_ENUM(Mode, CONNECT, PATH)

	NodePath layer_path;
	At at = A_NODE;
	NodePath at_node_path;
	Vector2i cell_offset;
	Vector2i cell;
	Array cells;
	Mode mode = CONNECT;
	int64_t terrain_set = 0;
	int64_t terrain = 0;
	bool erase = false;

	String summary_default() override;
};
