#pragma once

// The kind that changes what a thing collides with.

#include "action/kind_table.hpp"

class SCSetCollisionAction : public SCMachineAction {
	SC_KIND(SCSetCollisionAction, SCMachineAction)

public:
	SC_ENUM(Collision, LEAVE_AS_IT_IS, ON, OFF)
	SC_ENUM(Change, LEAVE_THEM, SET, ADD, REMOVE)

	NodePath node_path;
	Collision collision = OFF;
	Change change_layers = LEAVE_THEM;
	int64_t collision_layer = 0;
	String layer_names;
	Change change_mask = LEAVE_THEM;
	int64_t collision_mask = 0;
	String mask_names;
	bool put_back_when_left = false;

	String summary_default() override;
};
