#pragma once

// Kinds of the data category that work with numbers and chance, besides the sums of Math.

#include "action/kind_table.hpp"

class SCClampAction : public SCMachineAction {
	SC_KIND(SCClampAction, SCMachineAction)

public:
	StringName variable_name;
	double lowest = 0.0;
	double highest = 100.0;
	StringName lowest_event;
	StringName highest_event;

	SCClampAction() { run_mode = EVERY_FRAME; }

	String summary_default() override;
	bool needs_every_tick_default() override { return !follows_variables(); }
	PackedStringArray variables_to_watch_default() override;

private:
	// Repeating, it works when one of its variables changes instead of on every frame.
	bool follows_variables();
};

class SCRandomNumberAction : public SCMachineAction {
	SC_KIND(SCRandomNumberAction, SCMachineAction)

public:
	double lowest = 0.0;
	double highest = 1.0;
	bool whole_number = false;
	bool never_twice_the_same = false;
	StringName store_in;

	String summary_default() override;
};

class SCRandomSeedAction : public SCMachineAction {
	SC_KIND(SCRandomSeedAction, SCMachineAction)

public:
	SC_ENUM(From, A_NUMBER, A_TEXT, THE_CLOCK)

	From from = A_NUMBER;
	int64_t number = 1;
	String text;
	StringName store_in;

	String summary_default() override;
};
