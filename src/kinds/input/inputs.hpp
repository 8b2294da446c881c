#pragma once

// Kinds of the input category: what the player does.

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
	String holds_its_state_default() override;
	void warn_input(SCMachineBase *machine, int index);
	// Whether the player stands inside the area that is asked for.
	bool inside_check(SCMachineBase *machine, int index);
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
	void warn_no_directions(SCMachineBase *machine, int index);
	void warn_nowhere_to_store(SCMachineBase *machine, int index);
};
