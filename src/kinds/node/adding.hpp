#pragma once

// The kind that makes a new node.

#include "action/kind_table.hpp"

class SCAddNodeAction : public SCMachineAction {
	SC_KIND(SCAddNodeAction, SCMachineAction)

public:
	String type;
	String node_name;
	NodePath parent_path;
	NodePath at_path;
	StringName group;
	bool remove_when_left = false;
	StringName store_in;

	String summary_default() override;
};
