#pragma once

// The kind that lets a character cling to walls.

#include "action/kind_table.hpp"

class SCWallClingAction : public SCMachineAction {
	SC_KIND(SCWallClingAction, SCMachineAction)

public:
	NodePath body_path;
	double slide_speed = 1.5;
	StringName slide_speed_variable;
	StringName only_while_held;
	double lets_go_after = 0.0;
	StringName clinging_event;
	StringName let_go_event;

	void warn_wall_cling(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
