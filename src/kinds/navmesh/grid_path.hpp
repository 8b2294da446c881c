#pragma once

// The kind that finds a way across a tile map, cell by cell.

#include "action/kind_table.hpp"

class SCGridPathAction : public SCMachineAction {
	SC_KIND(SCGridPathAction, SCMachineAction)

public:
	SC_ENUM(To, A_CELL, A_NODE, THE_MOUSE)
	SC_ENUM(Solid, TILES_WITH_COLLISION, CUSTOM_DATA, ANY_TILE, EMPTY_CELLS)
	// The engine's own, by their numbers.
	SC_ENUM(DiagonalMode, ALWAYS, NEVER, AT_LEAST_ONE_WALKABLE, ONLY_IF_NO_OBSTACLES)
	// What can be wrong.
	enum Wrong : int64_t {
		NO_LAYER,
		NO_GRID,
		NO_GOAL,
		NO_CUSTOM_DATA,
		NO_WAY,
		NO_WAY_OUT_OF_A_WALL,
	};

	NodePath layer_path;
	NodePath node_path;
	To to = A_CELL;
	Vector2i to_cell;
	NodePath to_node_path;
	Solid solid = TILES_WITH_COLLISION;
	String data_name;
	StringName solid_cells_variable;
	DiagonalMode diagonal_mode = NEVER;
	bool move_along = true;
	double cells_per_second = 4.0;
	StringName store_path_in;
	StringName no_path_event;

	// `layer` and the two cells are asked for where the sentence names them.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, Node *layer, const Vector2i &from, const Vector2i &goal);
	void warn_blocked(SCMachineBase *machine, int64_t index, const Variant &list);

	String summary_default() override;
	bool finishes_as_it_starts_default() override;
};
