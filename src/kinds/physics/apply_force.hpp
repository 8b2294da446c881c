#pragma once

// The kind that pushes a body.

#include "action/kind_table.hpp"

class SCApplyForceAction : public SCMachineAction {
	SC_KIND(SCApplyForceAction, SCMachineAction)

public:
	SC_ENUM(Push, A_SHOVE, A_STEADY_PUSH)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath body_path;
	Push push = A_SHOVE;
	Variant force = Vector3(0, 5, 0);
	Space space = GLOBAL;
	bool whatever_its_mass = false;
	NodePath at_path;
	Vector3 at_offset;
	double twist = 0.0;
	Vector3 twist_axis = Vector3(0, 1, 0);

	bool twists() const { return twist != 0.0 || has_some<&Self::twist>(); }

	String summary_default() override;
	// A steady push goes on until its state is left.
	bool uses_run_mode_default() override { return push == A_SHOVE; }
};
