#pragma once

// Kinds of the loop category: each visit to their state moves one step on, so they stand in a ring of
// two states, and keep their place in a variable, which outlives the visit.

#include "action/kind_table.hpp"

class SCForEachAction : public SCMachineAction {
	SC_KIND(SCForEachAction, SCMachineAction)

public:
	static constexpr char PROGRESS[] = "for each step";

	StringName list_variable = "list";
	StringName store_item_in = "item";
	StringName store_index_in;
	StringName next_event = "Next";
	StringName done_event = "Done";
	StringName progress_variable = PROGRESS;
	bool start_again_when_done = true;

	String summary_default() override;
	// `which` is 1 when the machine has the variable, and 0 when it does not.
	void warn_for_each(SCMachineBase *machine, int index, int which, const Variant &held);
};

class SCRepeatAction : public SCMachineAction {
	SC_KIND(SCRepeatAction, SCMachineAction)

public:
	static constexpr char PROGRESS[] = "repeat step";

	int64_t times = 3;
	StringName times_variable;
	StringName again_event = "Again";
	StringName done_event = "Done";
	StringName progress_variable = PROGRESS;
	bool start_again_when_done = true;

	String summary_default() override;
};

class SCSequenceAction : public SCMachineAction {
	SC_KIND(SCSequenceAction, SCMachineAction)

public:
	static constexpr char PROGRESS[] = "sequence step";

	TypedArray<StringName> events;
	bool loop = true;
	StringName done_event = "Done";
	StringName progress_variable = PROGRESS;

	String summary_default() override;
	void warn_no_events(SCMachineBase *machine, int index);
};
