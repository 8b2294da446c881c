#pragma once

// The kind of the node category that carries things about.

#include "action/kind_table.hpp"

class SCCarryAction : public SCMachineAction {
	SC_KIND(SCCarryAction, SCMachineAction)

public:
	SC_ENUM(Change, PICK_UP, PUT_DOWN, THROW)

	// What is told once each.
	enum Wrong {
		NO_THING,
		NO_HAND,
		ITSELF,
		CANNOT_FLY,
	};

	Change change = PICK_UP;
	NodePath node_path;
	NodePath carried_by_path;
	bool snap_to_the_hand = true;
	// The setting is called "throw".
	Variant throw_at = Vector3(0, 2, -8);

	String summary_default() override;
};
