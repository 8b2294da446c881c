#pragma once

// Kinds that take health and give it back without anything touching anything. The health lies in a variable of the target's
// machine, and a Hurt Box right under the target guards it.

#include "action/kind_table.hpp"

class SCHurtAction : public SCMachineAction {
	SC_KIND(SCHurtAction, SCMachineAction)

public:
	NodePath target_path;
	double damage = 1.0;
	NodePath attacker_path;
	double knockback = 1.0;

	enum Wrong {
		NO_TARGET,
		NO_DAMAGE,
		NO_HURT_BOX,
	};

	String summary_default() override;
	void warn_hurt(SCMachineBase *machine, int64_t index, int64_t what, Node *node);
	Node *hurt_box_of(const Variant &node);
};

class SCHealAction : public SCMachineAction {
	SC_KIND(SCHealAction, SCMachineAction)

public:
	NodePath target_path;
	double amount = 1.0;
	StringName healed_event = "HEALED";
	bool revives = false;

	enum Wrong {
		NO_TARGET,
		NO_AMOUNT,
		NO_HURT_BOX,
		NO_HEALTH,
		NO_MAX,
		BEATEN,
		NOTHING_WRONG,
	};

	String summary_default() override;
	void warn_heal(SCMachineBase *machine, int64_t index, int64_t what, Node *node);
	Node *hurt_box_of(const Variant &node);
};
