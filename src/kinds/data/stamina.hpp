#pragma once

// The kind that keeps a meter which empties and fills.

#include "action/kind_table.hpp"

class SCStaminaAction : public SCMachineAction {
	SC_KIND(SCStaminaAction, SCMachineAction)

public:
	StringName variable_name = "stamina";
	double most = 100.0;
	bool spends_here = true;
	StringName drains_while_held;
	double drain_rate = 25.0;
	double recover_rate = 15.0;
	double rests_first = 0.5;
	StringName empty_event;
	StringName full_event;

	void warn_stamina(SCMachineBase *machine, int64_t index, int64_t what, const Variant &held);

	String summary_default() override;
};
