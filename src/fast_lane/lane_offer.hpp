#pragma once

// What the fast lane can measure for a condition, so that it is asked for many machines in one loop instead of by its own check.
// The file of the condition's runtime offers it, beside its check:
//
//	const LaneOffer offered(&is_near, &asked_of_the_lane);

#include "action/sc_condition.hpp"
#include "action/sc_native_actions.hpp"

struct LaneDistance {
	Node *body = nullptr;
	// Null measures to the nearest of the group.
	Node *to_node = nullptr;
	StringName group;
	double distance = 0.0;
	bool ignore_height = false;
};

class LaneOffer {
	// False when the condition is one that only its check can tell.
	using Fill = bool (*)(SCMachineBase *machine, SCMachineCondition *condition, LaneDistance &asked);

	inline static const LaneOffer *first = nullptr;

	NativeCondition check;
	Fill fill_for;
	const LaneOffer *next;

public:
	// Runs as the library is loaded, before the engine may be called.
	LaneOffer(NativeCondition own_check, Fill own_fill) noexcept : check(own_check), fill_for(own_fill), next(first) { first = this; }

	// False without an offer, as for a script of a game's own that asks in another way.
	static bool fill(SCMachineBase *machine, SCMachineCondition *condition, LaneDistance &asked) {
		const NativeCondition own_check = SCNativeActions::of_condition(condition);
		for (const LaneOffer *offer = first; offer != nullptr; offer = offer->next) {
			if (offer->check == own_check) {
				return offer->fill_for(machine, condition, asked);
			}
		}
		return false;
	}
};
