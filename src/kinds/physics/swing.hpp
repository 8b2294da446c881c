#pragma once

// The kind that swings a character from a point.

#include "action/kind_table.hpp"

class SCSwingAction : public SCMachineAction {
	SC_KIND(SCSwingAction, SCMachineAction)

public:
	NodePath body_path;
	NodePath point_path;
	StringName point_variable;
	double rope_length = 0.0;
	StringName rope_length_variable;
	Variant direction = Vector2(0, 0);
	StringName direction_variable;
	double pump = 6.0;
	double climb_speed = 0.0;
	double shortest = 0.5;
	double longest = 0.0;
	bool stiff = false;
	double top_speed = 0.0;
	double slows_down = 0.05;
	double gravity = 0.0;
	NodePath rope_line_path;

	// What can be wrong with it.
	enum Fault { NO_CHARACTER, NOTHING_PICKED, NO_NODE, NO_NODE_IN_VARIABLE, OTHER_SIDE, NO_BODY, NO_LINE, LINE_IN_3D };
	void warn_swing(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
	String holds_its_state_default() override;
};
