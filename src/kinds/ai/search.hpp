#pragma once

// The kind that goes and looks where something was last seen.

#include "action/kind_table.hpp"

class SCSearchLastKnownAction : public SCMachineAction {
	SC_KIND(SCSearchLastKnownAction, SCMachineAction)

public:
	NodePath body_path;
	double speed = 3.0;
	StringName speed_variable;
	double arrive_within = 1.0;
	double look_around_for = 2.0;
	StringName gave_up_event = "GaveUp";
	StringName arrived_event;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	// `what` is 0 for no Perception node, 1 for one that remembers nothing.
	void warn_search(SCMachineBase *machine, int64_t index, int64_t what);

	String summary_default() override;
};
