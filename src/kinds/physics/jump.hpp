#pragma once

// The kind that makes a character jump.

#include "action/kind_table.hpp"

class SCJumpAction : public SCMachineAction {
	SC_KIND(SCJumpAction, SCMachineAction)

public:
	NodePath body_path;
	double height = 2.0;
	StringName height_variable;
	bool only_from_the_floor = true;
	double still_allowed_after_a_ledge = 0.1;
	double waits_to_land_for = 0.1;
	StringName cut_short_input;
	bool off_walls = false;
	double away_from_wall = 6.0;
	StringName jumped_event;
	StringName refused_event;
	bool falls = true;
	double gravity = 0.0;

	void warn_jump(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
