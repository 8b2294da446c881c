#pragma once

// The condition about what touches: in an area, under a character's feet, against a rigid body.

#include "action/kind_table.hpp"

class SCTouchingCondition : public SCMachineCondition {
	SC_KIND(SCTouchingCondition, SCMachineCondition)

public:
	SC_ENUM_LABELLED(Test, "Anything,The Ground,A Wall,A Ceiling", ANYTHING, THE_GROUND, A_WALL, A_CEILING)

	NodePath node_path;
	Test test = ANYTHING;
	StringName only_group;
	bool include_areas = false;
	StringName store_touching_in;

	SCTouchingCondition() { can_rest = true; }
	bool check_default(SCMachineBase *machine, const Dictionary &slot) override;
	String summary_default() override;
	Array rest_signals_default(SCMachineBase *machine, const Dictionary &slot) override;
};
