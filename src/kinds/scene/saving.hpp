#pragma once

// The kind of the scene category that keeps things between one run of the game and the next.

#include "action/kind_table.hpp"

class SCSaveGameAction : public SCMachineAction {
	SC_KIND(SCSaveGameAction, SCMachineAction)

public:
	SC_ENUM(What, SAVE, LOAD, DELETE, EXISTS, SAVE_THE_SCENE, LOAD_THE_SCENE)

	What what = SAVE;
	String slot = "save";
	StringName slot_variable;
	TypedArray<StringName> variables;
	StringName store_worked_in;
	StringName worked_event;
	StringName failed_event;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
	PackedStringArray variables_written_default() override;
};
