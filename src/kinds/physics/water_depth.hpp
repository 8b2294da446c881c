#pragma once

// The kind that tells how deep somebody is in the water.

#include "action/kind_table.hpp"

class SCGetWaterDepthAction : public SCMachineAction {
	SC_KIND(SCGetWaterDepthAction, SCMachineAction)

public:
	NodePath node_path;
	NodePath water_path;
	StringName store_in;

	String summary_default() override;
};
