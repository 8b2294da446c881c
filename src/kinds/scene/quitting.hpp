#pragma once

// Quit Game of the scene category.

#include "action/kind_table.hpp"

class SCQuitGameAction : public SCMachineAction {
	SC_KIND(SCQuitGameAction, SCMachineAction)

public:
	bool tell_everybody_first = true;
	int64_t exit_code = 0;
	StringName failed_event;

	String summary_default() override;
};
