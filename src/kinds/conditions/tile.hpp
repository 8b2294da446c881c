#pragma once

// The condition about a tile of a tile map.

#include "action/kind_table.hpp"

class SCTileCondition : public SCMachineCondition {
	SC_KIND(SCTileCondition, SCMachineCondition)

public:
	// After the first in the order of comparing::Test.
	SC_ENUM(Test, THERE_IS_A_TILE, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL, IS_TRUE, IS_FALSE)

	NodePath layer_path;
	NodePath at_node_path;
	Vector2i cell_offset;
	Test test = THERE_IS_A_TILE;
	String data_name;
	Variant value = 0.0;

	String summary_default() override;
};
