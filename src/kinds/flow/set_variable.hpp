#pragma once

// Set Variable.

#include "action/kind_table.hpp"

class SCSetVariableAction final : public SCMachineAction {
	SC_KIND(SCSetVariableAction, SCMachineAction)

public:
	SC_ENUM(Operation, SET, ADD, MULTIPLY, TOGGLE, SUBTRACT)

	StringName variable_name;
	Operation operation = SET;
	Variant value = 0.0;
	bool per_second = false;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
	void warn_nothing_picked(SCMachineBase *machine, int index);
	void warn_cannot(SCMachineBase *machine, const Variant &held) const;
};
