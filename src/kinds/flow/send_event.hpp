#pragma once

// Send Event.

#include "action/kind_table.hpp"

class SCSendEventAction : public SCMachineAction {
	SC_KIND(SCSendEventAction, SCMachineAction)

public:
	SC_ENUM(Reach, THIS_MACHINE, A_GROUP, EVERY_MACHINE, A_NODE)

	StringName event_name;
	Reach reach = THIS_MACHINE;
	StringName to_group;
	NodePath to_node_path;
	Variant data;
	double delay = 0.0;

	String summary_default() override;
	StringName delayed_event() const override { return event_name; }
	void warn_send(SCMachineBase *machine, int index);
};
