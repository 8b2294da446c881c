#pragma once

// Kinds of the data category that read what nodes know of themselves.

#include "action/kind_table.hpp"

class SCGetPropertyAction : public SCMachineAction {
	SC_KIND(SCGetPropertyAction, SCMachineAction)

public:
	NodePath node_path;
	String property;
	StringName store_in;

	String summary_default() override;
};
