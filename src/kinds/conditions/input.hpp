#pragma once

// The condition about what the player holds or has pressed.

#include "action/kind_table.hpp"

class SCInputCondition : public SCMachineCondition {
	SC_KIND(SCInputCondition, SCMachineCondition)

public:
	SC_ENUM(When, HELD, JUST_PRESSED, JUST_RELEASED)

	StringName input_action = "ui_accept";
	When when = HELD;
	double remembered_for = 0.0;

	String summary_default() override;
};
