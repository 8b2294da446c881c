#pragma once

// The kind by which a player uses what is in reach.

#include "action/kind_table.hpp"

class SCInteractionAction : public SCMachineAction {
	SC_KIND(SCInteractionAction, SCMachineAction)

public:
	StringName usable_group = "usable";
	double reach = 2.0;
	StringName input_action = "Key: E or Pad: Top Button (Y / Triangle)";
	StringName used_event = "USED";
	String prompt = "to use";
	NodePath prompt_path;
	StringName store_in;

	enum Wrong {
		NO_GROUP,
		NO_LABEL,
		NO_PLACE,
	};

	String summary_default() override;
	void warn_interaction(SCMachineBase *machine, int64_t index, int64_t what);
	void warn_no_machine(SCMachineBase *machine, int64_t index, Node *thing);
};
