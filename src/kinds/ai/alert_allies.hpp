#pragma once

// The kind that raises the alarm.

#include "action/kind_table.hpp"

class SCAlertAlliesAction : public SCMachineAction {
	SC_KIND(SCAlertAlliesAction, SCMachineAction)

public:
	NodePath body_path;
	StringName ally_group = "guards";
	double within = 20.0;
	StringName within_variable;
	StringName target_variable;
	StringName event_name = "Alerted";
	bool give_them_the_target = true;
	StringName store_count_in;
	StringName nobody_event;

	void warn_dealing(SCMachineBase *machine, int64_t index, Node *body);
	void warn_deaf(SCMachineBase *machine, int64_t index, const PackedStringArray &names);

	String summary_default() override;
};
