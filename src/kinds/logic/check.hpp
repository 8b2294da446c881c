#pragma once

// Kinds of the logic category: Check, which asks a condition in a state.

#include "action/kind_table.hpp"

class SCCheckAction : public SCMachineAction {
	SC_KIND(SCCheckAction, SCMachineAction)

public:
	Ref<SCMachineCondition> condition;
	StringName true_event;
	StringName false_event;
	StringName store_in;
	bool only_when_it_changes = false;

	String summary_default() override;
	bool wants_physics_default() override;
	bool finishes_as_it_starts_default() override;
	bool needs_every_tick_default() override { return !waits_for_variables(); }
	PackedStringArray variables_to_watch_default() override;
	PackedStringArray variables_read_default() override;
	PackedStringArray variables_written_default() override;
	void suit_2d_default() override;
	void warn_no_question(SCMachineBase *machine, int index);

private:
	// The answer is of interest only when it changes, and nothing but a variable's change can change it.
	bool waits_for_variables() const;
};
