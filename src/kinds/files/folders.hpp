#pragma once

// Kinds of the files category about folders: copying one, throwing away what is no longer wanted, and asking the player for one.

#include "action/kind_table.hpp"

class SCChooseFolderAction : public SCMachineAction {
	SC_KIND(SCChooseFolderAction, SCMachineAction)

public:
	String title = "Choose a Folder";
	String start_in;
	StringName store_in;
	StringName chosen_event;
	StringName canceled_event;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};

class SCCopyFolderAction : public SCMachineAction {
	SC_KIND(SCCopyFolderAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(IfThere, "Replace Files,Keep Files,Do Not Copy", REPLACE_FILES, KEEP_FILES, DO_NOT_COPY)

	String from;
	String to;
	IfThere if_there = REPLACE_FILES;
	StringName store_count_in;
	StringName done_event;
	StringName failed_event;
	bool anywhere = false;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};

class SCMoveToBinAction : public SCMachineAction {
	SC_KIND(SCMoveToBinAction, SCMachineAction)

public:
	String path;
	StringName done_event;
	StringName failed_event;
	bool anywhere = false;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};
