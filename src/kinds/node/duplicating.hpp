#pragma once

// The kind of the node category that copies a node of the running game.

#include "action/kind_table.hpp"

class SCDuplicateAction : public SCMachineAction {
	SC_KIND(SCDuplicateAction, SCMachineAction)

public:
	// What is told once each.
	enum Wrong {
		NO_NODE,
		THE_TOP,
		TOO_MANY,
	};

	NodePath node_path;
	Variant offset;
	StringName store_in;

	String summary_default() override;
};
