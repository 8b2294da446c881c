#pragma once

// The kind of the node category that removes nodes from the game.

#include "action/kind_table.hpp"

class SCQueueFreeAction : public SCMachineAction {
	SC_KIND(SCQueueFreeAction, SCMachineAction)

public:
	NodePath node_path;
	StringName group;
	double delay = 0.0;

	String summary_default() override;
};
