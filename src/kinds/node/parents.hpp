#pragma once

// The kind that puts a node under another parent.

#include "action/kind_table.hpp"

class SCReparentAction : public SCMachineAction {
	SC_KIND(SCReparentAction, SCMachineAction)

public:
	NodePath node_path;
	NodePath parent_path;
	bool keep_place = true;

	String summary_default() override;
};
