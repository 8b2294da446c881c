#pragma once

// Kinds of the flow category that move a machine on, and the one that reads what an event brought.

#include "action/kind_table.hpp"

class SCGetEventDataAction : public SCMachineAction {
	SC_KIND(SCGetEventDataAction, SCMachineAction)

public:
	StringName event;
	StringName store_in;
	Variant if_it_carried_nothing;
	StringName store_sender_in;

	String summary_default() override;
};

class SCGoToStateAction : public SCMachineAction {
	SC_KIND(SCGoToStateAction, SCMachineAction)

public:
	StringName state_name;
	StringName state_name_variable;

	String summary_default() override;
};

class SCNextFrameEventAction : public SCMachineAction {
	SC_KIND(SCNextFrameEventAction, SCMachineAction)

public:
	StringName event_name = "FINISHED";

	String summary_default() override;
	void warn_next_frame(SCMachineBase *machine, int index);
};

class SCRandomEventAction : public SCMachineAction {
	SC_KIND(SCRandomEventAction, SCMachineAction)

public:
	TypedArray<StringName> events;
	Array weights;

	String summary_default() override;
	// `which` is 0 for an empty list, and 1 for a picked row without a name.
	void warn_random(SCMachineBase *machine, int index, int which);
};

class SCTimerAction : public SCMachineAction {
	SC_KIND(SCTimerAction, SCMachineAction)

public:
	StringName variable_name;
	bool start_over = true;
	double seconds = 10.0;
	StringName event_name = "Time Up";

	String summary_default() override;
};
