#pragma once

// The kind that holds a rigid body still.

#include "action/kind_table.hpp"

class SCFreezeAction : public SCMachineAction {
	SC_KIND(SCFreezeAction, SCMachineAction)

public:
	SC_ENUM(What, FREEZE, LET_GO, GRAVITY_OFF, GRAVITY_ON)
	SC_ENUM_LABELLED(While, "As A Wall,As A Mover", AS_A_WALL, AS_A_MOVER)

	NodePath body_path;
	What what = FREEZE;
	While while_frozen = AS_A_WALL;
	bool put_back_when_left = false;

	String summary_default() override;
};
