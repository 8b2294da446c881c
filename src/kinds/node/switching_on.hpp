#pragma once

// Kinds of the node category that decide whether nodes run, and whether they are there at all.

#include "action/kind_table.hpp"

class SCEnableNodeAction : public SCMachineAction {
	SC_KIND(SCEnableNodeAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Turn, "On,Off,The Other Way", TURN_ON, TURN_OFF, TURN_OTHER_WAY)

	NodePath node_path;
	StringName group;
	Turn turn = TURN_ON;

	String summary_default() override;
};

class SCSetProcessModeAction : public SCMachineAction {
	SC_KIND(SCSetProcessModeAction, SCMachineAction)

public:
	// In the engine's own order.
	SC_ENUM_LABELLED(
			Mode, "As Its Parent,Stops While Paused,Only While Paused,Always,Never", AS_ITS_PARENT, STOPS_WHILE_PAUSED, ONLY_WHILE_PAUSED, ALWAYS, NEVER)

	NodePath node_path;
	Mode mode = ALWAYS;
	bool put_back_when_left = false;

	String summary_default() override;
};
