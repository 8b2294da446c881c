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
	bool finishes_as_it_starts_default() override { return !repeats(); }
	TypedArray<StringName> optional_names_default() override;
};

class SCGoToStateAction : public SCMachineAction {
	SC_KIND(SCGoToStateAction, SCMachineAction)

public:
	StringName state_name;
	StringName state_name_variable;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override { return true; }
	bool works_after_finishing_default() override { return false; }
	TypedArray<StringName> optional_names_default() override;
};

class SCNextFrameEventAction : public SCMachineAction {
	SC_KIND(SCNextFrameEventAction, SCMachineAction)

public:
	StringName event_name = "FINISHED";

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool works_after_finishing_default() override { return false; }
	void warn_next_frame(SCMachineBase *machine, int index);
};

class SCRandomEventAction : public SCMachineAction {
	SC_KIND(SCRandomEventAction, SCMachineAction)

public:
	TypedArray<StringName> events;
	Array weights;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override { return true; }
	bool works_after_finishing_default() override { return false; }
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
	bool uses_run_mode_default() override { return false; }
	bool works_after_finishing_default() override { return false; }
	PackedStringArray variables_written_default() override;
	TypedArray<StringName> optional_names_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;
};
