#pragma once

// Kinds of the files category about other programs.

#include "action/kind_table.hpp"

#include <godot_cpp/variant/typed_array.hpp>

class SCRunProgramAction : public SCMachineAction {
	SC_KIND(SCRunProgramAction, SCMachineAction)

public:
	String program;
	TypedArray<String> arguments;
	bool open_console = false;
	bool wait_for_end = false;
	StringName store_process_id_in;
	StringName store_exit_code_in;
	StringName done_event;
	StringName failed_event;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};
