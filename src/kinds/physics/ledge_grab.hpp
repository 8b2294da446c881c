#pragma once

// The kind that pulls a character up onto a ledge.

#include "action/kind_table.hpp"

class SCLedgeGrabAction : public SCMachineAction {
	SC_KIND(SCLedgeGrabAction, SCMachineAction)

public:
	NodePath body_path;
	double reach_up = 1.2;
	StringName reach_up_variable;
	double over_the_edge = 0.6;
	double seconds = 0.35;
	StringName grabbed_event;
	StringName no_ledge_event;

	void warn_ledge_grab(SCMachineBase *machine, int64_t index, int64_t what, Node *body);

	String summary_default() override;
};
