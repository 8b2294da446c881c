#pragma once

// Conditions about a node: where in the tree it is, what is under it, how it stands, what its properties are.

#include "action/kind_table.hpp"

class SCHasChildOfTypeCondition : public SCMachineCondition {
	SC_KIND(SCHasChildOfTypeCondition, SCMachineCondition)

public:
	NodePath node_path;
	String type;
	bool recursive = true;

	String summary_default() override;
};

class SCIsChildOfCondition : public SCMachineCondition {
	SC_KIND(SCIsChildOfCondition, SCMachineCondition)

public:
	NodePath node_path;
	NodePath parent_path;
	bool recursive = true;

	String summary_default() override;
};

class SCNodeCondition : public SCMachineCondition {
	SC_KIND(SCNodeCondition, SCMachineCondition)

public:
	SC_ENUM_LABELLED(Test, "Is There,Is In A Group,Is Visible,Is Enabled", IS_THERE, IS_IN_A_GROUP, IS_VISIBLE, IS_ENABLED)

	NodePath node_path;
	Test test = IS_THERE;
	StringName group;

	String summary_default() override;
};

class SCPropertyCondition : public SCMachineCondition {
	SC_KIND(SCPropertyCondition, SCMachineCondition)

public:
	// In the order of comparing::Test.
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL, IS_TRUE, IS_FALSE)

	NodePath node_path;
	String property;
	Test test = EQUALS;
	Variant value = 0.0;

	String summary_default() override;
};
