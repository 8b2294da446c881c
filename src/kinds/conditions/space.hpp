#pragma once

// Conditions about where things are: near, on the screen, under the pointer.

#include "action/kind_table.hpp"

class SCDistanceCondition : public SCMachineCondition {
	SC_KIND(SCDistanceCondition, SCMachineCondition)

public:
	NodePath to_node_path;
	StringName group;
	double distance = 5.0;
	bool ignore_height = false;
	StringName store_in;

	String summary_default() override;

private:
	// Else to a group.
	bool measures_to_a_node() const;
};

class SCOnScreenCondition : public SCMachineCondition {
	SC_KIND(SCOnScreenCondition, SCMachineCondition)

public:
	NodePath node_path;
	double margin = 0.0;

	String summary_default() override;
};

class SCPointerOverUiCondition : public SCMachineCondition {
	SC_KIND(SCPointerOverUiCondition, SCMachineCondition)

public:
	String summary_default() override;
};
