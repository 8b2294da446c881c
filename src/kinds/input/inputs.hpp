#pragma once

// Kinds of the input category: what the player does, and what other nodes signal.

#include "action/kind_table.hpp"

class SCEventOnInputAction : public SCMachineAction {
	SC_KIND(SCEventOnInputAction, SCMachineAction)

public:
	SC_ENUM(When, JUST_PRESSED, JUST_RELEASED, PRESSED, DOUBLE_TAPPED, HELD_FOR)

	StringName input_action = "ui_accept";
	When when = JUST_PRESSED;
	double seconds = 0.3;
	NodePath only_while_inside;
	StringName event_name;
	Variant data;
	StringName store_held_seconds_in;

	SCEventOnInputAction() { run_mode = EVERY_FRAME; }

	String summary_default() override;
	// Once it has finished it goes on listening.
	bool works_after_finishing_default() override { return true; }
	TypedArray<StringName> optional_names_default() override;
	void warn_input(SCMachineBase *machine, int index);
	// Whether the player stands inside the area that is asked for.
	bool inside_check(SCMachineBase *machine, int index);

protected:
	void _validate_property(PropertyInfo &property) const;
};

class SCEventOnSignalAction : public SCMachineAction {
	SC_KIND(SCEventOnSignalAction, SCMachineAction)

public:
	NodePath node_path;
	StringName signal_name;
	StringName event_name;
	StringName store_argument_in;
	int64_t argument = 1;

	enum WhatIsWrong {
		NO_NODE,
		NO_SUCH_SIGNAL,
	};

	String summary_default() override;
	bool uses_run_mode_default() override { return false; }
	bool finishes_as_it_starts_default() override { return true; }
	bool works_after_finishing_default() override { return false; }
	TypedArray<StringName> optional_names_default() override;
	void warn_signal(SCMachineBase *machine, int index, int what, Node *node);

protected:
	void _validate_property(PropertyInfo &property) const;
};

class SCGetInputVectorAction : public SCMachineAction {
	SC_KIND(SCGetInputVectorAction, SCMachineAction)

public:
	StringName left_action = "ui_left";
	StringName right_action = "ui_right";
	StringName up_action = "ui_up";
	StringName down_action = "ui_down";
	StringName store_in = "move";
	StringName store_strength_in;
	bool keep_last_direction = false;

	SCGetInputVectorAction() { run_mode = EVERY_FRAME; }

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
	TypedArray<StringName> optional_names_default() override;
	void warn_no_directions(SCMachineBase *machine, int index);
	void warn_nowhere_to_store(SCMachineBase *machine, int index);
};
