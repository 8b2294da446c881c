#pragma once

// Conditions about what variables hold.

#include "action/kind_table.hpp"

class SCVariableCondition : public SCMachineCondition {
	SC_KIND(SCVariableCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL, IS_TRUE, IS_FALSE)

	StringName variable_name;
	Test test = EQUALS;
	Variant value = 0.0;

	String summary_default() override;
};

class SCCompareCondition : public SCMachineCondition {
	SC_KIND(SCCompareCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL)

	double first = 0.0;
	Test test = EQUALS;
	double second = 0.0;

	String summary_default() override;
};
