#pragma once

// Kinds of the files category about text files: what is in one, putting something in, and changing some of it.

#include "action/kind_table.hpp"

class SCChangeTextInFileAction : public SCMachineAction {
	SC_KIND(SCChangeTextInFileAction, SCMachineAction)

public:
	SC_ENUM(Which, ALL, FIRST, LAST)

	String path;
	String find;
	String replace_with;
	Which which = ALL;
	bool ignore_case = false;
	StringName store_count_in;
	StringName done_event;
	StringName not_found_event;
	StringName failed_event;
	bool anywhere = false;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};

class SCReadFileAction : public SCMachineAction {
	SC_KIND(SCReadFileAction, SCMachineAction)

public:
	String path;
	StringName store_in;
	StringName store_lines_in;
	StringName store_line_count_in;
	StringName done_event;
	StringName failed_event;
	bool anywhere = false;

	bool keeps_lines() const { return has_some<&Self::store_lines_in>() || has_some<&Self::store_line_count_in>(); }

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};

class SCWriteFileAction : public SCMachineAction {
	SC_KIND(SCWriteFileAction, SCMachineAction)

public:
	SC_ENUM(How, REPLACE, ADD_TO_END)

	String path;
	String text;
	How how = REPLACE;
	bool on_a_new_line = true;
	StringName done_event;
	StringName failed_event;
	bool anywhere = false;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};
