#pragma once

// The condition about the ways of a navigation agent.

#include "action/kind_table.hpp"

class SCNavigationReachableCondition : public SCMachineCondition {
	SC_KIND(SCNavigationReachableCondition, SCMachineCondition)

public:
	NodePath agent_path;
	NodePath to_node_path;
	Variant to = Vector3(0, 0, 0);
	bool it_has_arrived = false;

	String summary_default() override;

private:
	bool asks_for_a_node() const;
};
