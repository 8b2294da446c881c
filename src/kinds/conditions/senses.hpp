#pragma once

// Conditions about what a character's Perception node sees and has lost.

#include "action/kind_table.hpp"

class SCCanSeeCondition : public SCMachineCondition {
	SC_KIND(SCCanSeeCondition, SCMachineCondition)

public:
	NodePath body_path;
	StringName group;
	StringName store_seen_in;

	void warn_can_see(SCMachineBase *machine);

	String summary_default() override;
};

class SCTargetLostCondition : public SCMachineCondition {
	SC_KIND(SCTargetLostCondition, SCMachineCondition)

public:
	NodePath body_path;
	double out_of_sight_for = 0.5;
	bool only_when_forgotten = false;

	void warn_target_lost(SCMachineBase *machine);

	String summary_default() override;
};
