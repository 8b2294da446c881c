#pragma once

// The kind that changes a number of the machine so that it can be changed back.

#include "action/kind_table.hpp"

class SCModifyStatAction : public SCMachineAction {
	SC_KIND(SCModifyStatAction, SCMachineAction)

public:
	SC_ENUM(Change, ADD, MULTIPLY, REMOVE)
	// What can be wrong.
	enum Wrong : int64_t {
		NO_STAT,
		NO_SOURCE,
	};

	StringName variable_name;
	Change change = ADD;
	double amount = 1.0;
	String source;
	bool stack = false;
	double for_seconds = 0.0;

	void warn(SCMachineBase *machine, int64_t index, int64_t what);

	String summary_default() override;
};
