#pragma once

// Wait.

#include "action/kind_table.hpp"

class SCWaitAction : public SCMachineAction {
	SC_KIND(SCWaitAction, SCMachineAction)

public:
	double seconds = 1.0;
	double random_extra = 0.0;
	bool real_time = false;

	String summary_default() override;
};
