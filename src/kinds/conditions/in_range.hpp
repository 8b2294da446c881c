#pragma once

// The condition about how near the one is that a character deals with.

#include "action/kind_table.hpp"

class SCInRangeCondition : public SCMachineCondition {
	SC_KIND(SCInRangeCondition, SCMachineCondition)

public:
	NodePath body_path;
	StringName target_variable;
	double closer_than = 2.0;
	StringName closer_than_variable;
	double but_further_than = 0.0;
	StringName store_distance_in;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
};
