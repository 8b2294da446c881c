#pragma once

// Settings of any type whose value is fitted to what it is meant for, and not to what happens to be typed in beside the variable.

#include "action/sc_action.hpp"

#include <initializer_list>

namespace free_values {

struct Free {
	const StringName &setting;
	Variant &value;
};

// For a kind's read_variables_default(): these as the variables hold them, all others as ever.
void read(SCMachineAction *action, SCMachineBase *machine, std::initializer_list<Free> free);

} // namespace free_values
