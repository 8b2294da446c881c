#pragma once

// Kinds of the data category that work with text: changing it, putting it together, reading numbers out of it.

#include "action/kind_table.hpp"

class SCFormatStringAction : public SCMachineAction {
	SC_KIND(SCFormatStringAction, SCMachineAction)

public:
	String text;
	StringName store_in;

	String summary_default() override;
	bool needs_every_tick_default() override { return !follows_variables(); }
	PackedStringArray variables_to_watch_default() override;
	PackedStringArray variables_read_default() override;

private:
	// Repeating, it is built anew when one of its variables changes instead of on every frame.
	bool follows_variables();
};

class SCStringAction : public SCMachineAction {
	SC_KIND(SCStringAction, SCMachineAction)

public:
	SC_ENUM(Operation, UPPER_CASE, LOWER_CASE, TITLE_CASE, TRIM, LENGTH, PART, FIND, COUNT, CONTAINS, BEGINS_WITH, ENDS_WITH, REPLACE, INSERT, REPEAT, REVERSE,
			PAD_START, PAD_END, SPLIT, JOIN)

	String text;
	Operation operation = UPPER_CASE;
	String look_for;
	String new_text;
	bool ignore_case = false;
	int64_t position = 0;
	int64_t length = 0;
	int64_t times = 2;
	String fill_with = " ";
	String separator = ", ";
	StringName list_variable = "list";
	StringName store_in;
	StringName true_event;
	StringName false_event;

	String summary_default() override;
};

class SCStringToNumberAction : public SCMachineAction {
	SC_KIND(SCStringToNumberAction, SCMachineAction)

public:
	String text;
	StringName store_in;
	double if_there_is_none = 0.0;
	StringName found_event;
	StringName not_found_event;

	String summary_default() override;
};
