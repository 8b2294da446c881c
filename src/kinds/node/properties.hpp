#pragma once

// Kinds of the node category: working on nodes and their properties.

#include "action/kind_table.hpp"

class SCSetPropertyAction : public SCMachineAction {
	SC_KIND(SCSetPropertyAction, SCMachineAction)

public:
	NodePath node_path;
	String property;
	Variant value;

	String summary_default() override;
	void read_variables_default(SCMachineBase *machine) override;
	void warn_set(SCMachineBase *machine, int index);
	// The property is there and does not take the value, or is not there.
	void say_cannot(SCMachineBase *machine, const Node *node, const String &why);
};
