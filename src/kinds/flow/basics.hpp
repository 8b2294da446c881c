#pragma once

// Kinds of the flow category: waiting, sending events, setting variables, telling.

#include "action/kind_table.hpp"

class SCWaitAction : public SCMachineAction {
	SC_KIND(SCWaitAction, SCMachineAction)

public:
	double seconds = 1.0;
	double random_extra = 0.0;
	bool real_time = false;

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return false; }
};

class SCSetVariableAction final : public SCMachineAction {
	SC_KIND(SCSetVariableAction, SCMachineAction)

public:
	SC_ENUM(Operation, SET, ADD, MULTIPLY, TOGGLE, SUBTRACT)

	StringName variable_name;
	Operation operation = SET;
	Variant value = 0.0;
	bool per_second = false;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
	PackedStringArray variables_read_default() override;
	PackedStringArray variables_written_default() override;
	void warn_nothing_picked(SCMachineBase *machine, int index);
	void warn_cannot(SCMachineBase *machine, const Variant &held) const;

protected:
	void _validate_property(PropertyInfo &property) const;
};

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
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override;
	bool works_after_finishing_default() override { return false; }
	void warn_send(SCMachineBase *machine, int index);

protected:
	void _validate_property(PropertyInfo &property) const;
};

class SCPrintAction : public SCMachineAction {
	SC_KIND(SCPrintAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Loudness, "Line,Warning,Error", AS_LINE, AS_WARNING, AS_ERROR)

	String text;
	Loudness loudness = AS_LINE;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
};
