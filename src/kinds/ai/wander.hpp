#pragma once

// The kind that ambles about.

#include "action/kind_table.hpp"

class SCWanderAction : public SCMachineAction {
	SC_KIND(SCWanderAction, SCMachineAction)

public:
	NodePath body_path;
	NodePath home_path;
	double radius = 8.0;
	double speed = 1.6;
	StringName speed_variable;
	double arrive_within = 0.8;
	double pause_for = 2.0;
	double random_extra_pause = 2.0;
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	// A place near home that it may stroll to; nil for none. A script may choose otherwise.
	Variant somewhere(const Variant &body, const Variant &home);
	void warn_no_home(SCMachineBase *machine);

	String summary_default() override;
	String holds_its_state_default() override;
};
