#pragma once

// The kind by which a character swings what it has in hand.

#include "action/kind_table.hpp"

class SCAttackAction : public SCMachineAction {
	SC_KIND(SCAttackAction, SCMachineAction)

public:
	StringName slot = "Weapon";
	StringName strength_variable = "strength";
	StringName hurts_group = "enemies";
	double unarmed_damage = 1.0;
	double unarmed_reach = 0.8;
	StringName hit_event;
	bool show_weapon = true;
	StringName aim_at_variable;

	enum Wrong {
		NO_SWINGER,
		NO_STRENGTH,
		NO_AIM,
	};

	String summary_default() override;
	void warn_attack(SCMachineBase *machine, int64_t index, int64_t what, Node *node);
};
