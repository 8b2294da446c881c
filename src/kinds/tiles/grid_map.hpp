#pragma once

// The kind that looks at and changes a cell of a GridMap.

#include "action/kind_table.hpp"

class SCGridMapCellAction : public SCMachineAction {
	SC_KIND(SCGridMapCellAction, SCMachineAction)

public:
	SC_ENUM(Change, SET, CLEAR, GET)
	SC_ENUM(At, A_NODE, THE_MOUSE)
	SC_ENUM_LABELLED(Turn, "Rotate 0,Rotate 90,Rotate 180,Rotate 270", ROTATE_0, ROTATE_90, ROTATE_180, ROTATE_270)

	NodePath grid_path;
	Change change = SET;
	At at = A_NODE;
	NodePath at_node_path;
	Vector3i cell_offset;
	int64_t piece = 0;
	Turn turn = ROTATE_0;
	StringName store_name_in;
	StringName store_has_piece_in;
	StringName found_event;
	StringName empty_event;

	String summary_default() override;
};
