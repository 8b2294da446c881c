#pragma once

// The kind that keeps watch.

#include "action/kind_table.hpp"

class SCLookForTargetAction : public SCMachineAction {
	SC_KIND(SCLookForTargetAction, SCMachineAction)

public:
	NodePath body_path;
	StringName look_for = "player";
	StringName spotted_event = "Spotted";
	StringName lost_event = "Lost";
	StringName store_target_in = "target";
	bool look_at_once = true;

	void warn_look(SCMachineBase *machine);

	String summary_default() override;
};
