#pragma once

// The condition about being in the water.

#include "action/kind_table.hpp"

class SCInWaterCondition : public SCMachineCondition {
	SC_KIND(SCInWaterCondition, SCMachineCondition)

public:
	NodePath node_path;
	NodePath water_path;
	double how_deep = 0.0;

	bool check_default(SCMachineBase *machine, const Dictionary &slot) override;
	String summary_default() override;
};
