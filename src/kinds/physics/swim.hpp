#pragma once

// The kind that lets a character move through water.

#include "action/kind_table.hpp"

class SCSwimAction : public SCMachineAction {
	SC_KIND(SCSwimAction, SCMachineAction)

public:
	NodePath body_path;
	NodePath water_path;
	double settles_at = 0.4;
	StringName up_input;
	StringName down_input;
	double swim_speed = 2.0;
	StringName entered_event;
	StringName left_event;

	enum Wrong { NO_CHARACTER, NOBODY, NO_WATER, NOT_MONITORING };
	void warn_swim(SCMachineBase *machine, int64_t index, int64_t what, Node *node);

	String summary_default() override;
};
