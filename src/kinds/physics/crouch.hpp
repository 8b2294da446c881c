#pragma once

// The kind that makes a character shorter for a while.

#include "action/kind_table.hpp"

class SCCrouchAction : public SCMachineAction {
	SC_KIND(SCCrouchAction, SCMachineAction)

public:
	NodePath body_path;
	NodePath shape_path;
	double crouched_height = 1.0;
	StringName crouched_height_variable;
	StringName room_above_event;
	StringName no_room_above_event;
	StringName stays_while_held;
	StringName stood_up_event;

	void warn_crouch(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
