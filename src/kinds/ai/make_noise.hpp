#pragma once

// The kind that characters hear.

#include "action/kind_table.hpp"

class SCMakeNoiseAction : public SCMachineAction {
	SC_KIND(SCMakeNoiseAction, SCMachineAction)

public:
	SC_ENUM(At, A_NODE, A_PLACE)

	At at = A_NODE;
	NodePath at_node_path;
	Variant place = Vector3(0, 0, 0);
	double max_distance = 15.0;
	StringName only_group;
	StringName heard_event = "HEARD";
	StringName store_count_in;

	enum WhatIsWrong {
		NO_NODE,
		NO_DISTANCE,
		ALL_DEAF,
	};

	void warn_noise(SCMachineBase *machine, int64_t index, int64_t what, const PackedStringArray &names);
	void warn_deaf(SCMachineBase *machine, int64_t index, const PackedStringArray &names);

	String summary_default() override;
};
