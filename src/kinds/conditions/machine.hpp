#pragma once

// Conditions about machines and the time they take: where one is, what has been done, what has changed, and leaving it to chance.

#include "action/kind_table.hpp"

class SCChanceCondition : public SCMachineCondition {
	SC_KIND(SCChanceCondition, SCMachineCondition)

public:
	double chance = 50.0;
	bool once_per_visit = false;

	String summary_default() override;
};

class SCInStateCondition : public SCMachineCondition {
	SC_KIND(SCInStateCondition, SCMachineCondition)

public:
	NodePath machine_path;
	StringName state_name;

	String summary_default() override;
};

class SCSubStateFinishedCondition : public SCMachineCondition {
	SC_KIND(SCSubStateFinishedCondition, SCMachineCondition)

public:
	bool require_own_actions = false;

	String summary_default() override;
};

class SCTimeoutCondition : public SCMachineCondition {
	SC_KIND(SCTimeoutCondition, SCMachineCondition)

public:
	double seconds = 1.0;
	double random_extra = 0.0;

	String summary_default() override;
};

class SCVariableChangedCondition : public SCMachineCondition {
	SC_KIND(SCVariableChangedCondition, SCMachineCondition)

public:
	StringName variable_name;

	String summary_default() override;
};
