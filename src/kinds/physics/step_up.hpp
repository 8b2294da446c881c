#pragma once

// The kind that helps a walking character up a step.

#include "action/kind_table.hpp"

class SCStepUpAction : public SCMachineAction {
	SC_KIND(SCStepUpAction, SCMachineAction)

public:
	NodePath body_path;
	double tallest_step = 0.3;
	StringName tallest_step_variable;
	StringName stepped_event;

	void warn_step_up(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
