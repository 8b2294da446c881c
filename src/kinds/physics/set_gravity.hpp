#pragma once

// The kind that changes gravity for one body.

#include "action/kind_table.hpp"

class SCSetGravityAction : public SCMachineAction {
	SC_KIND(SCSetGravityAction, SCMachineAction)

public:
	NodePath body_path;
	double scale = 0.5;
	bool turn_picture = true;
	bool put_back_when_left = false;

	String summary_default() override;
};
