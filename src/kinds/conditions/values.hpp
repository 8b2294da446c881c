#pragma once

// The questions about variables and about what the player holds.

#include "action/kind_table.hpp"

class SCVariableCondition : public SCMachineCondition {
	SC_KIND(SCVariableCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL, IS_TRUE, IS_FALSE)

	StringName variable_name;
	Test test = EQUALS;
	Variant value = 0.0;

	String summary_default() override;
	bool depends_only_on_variables_default() override { return true; }

protected:
	void _validate_property(PropertyInfo &property) const;
};

class SCCompareCondition : public SCMachineCondition {
	SC_KIND(SCCompareCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL)

	double first = 0.0;
	Test test = EQUALS;
	double second = 0.0;

	String summary_default() override;
	bool depends_only_on_variables_default() override { return true; }
};

class SCInputCondition : public SCMachineCondition {
	SC_KIND(SCInputCondition, SCMachineCondition)

public:
	SC_ENUM(When, HELD, JUST_PRESSED, JUST_RELEASED)

	StringName input_action = "ui_accept";
	When when = HELD;
	double remembered_for = 0.0;

	String summary_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;
};
