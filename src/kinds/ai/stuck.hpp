#pragma once

// Whether a walker gets no farther. A slot remembers where it last got on, and for how long it has not.

#include "kinds/ai/mover_step.hpp"

namespace stuck {

struct Names {
	StringName anchor = "anchor";
	StringName stuck_for = "stuck_for";

	static const Names &shared() { return NativeNames::of<Names>(); }
};

// Coming no farther than this share of its speed, or of how near it has to get, is not getting on.
inline constexpr double SHARE_OF_SPEED = 0.25;
inline constexpr double SHARE_OF_NEARNESS = 0.1;
inline constexpr double SECONDS = 1.0;

template <class Kind>
void start_here(const MoverStep<Kind> &step) {
	step.note(Names::shared().anchor, places::position_of(step.body));
	step.note(Names::shared().stuck_for, 0.0);
}

// Asked in each update in which it walks.
template <class Kind>
bool is_so(const MoverStep<Kind> &step) {
	const Variant anchor = step.slot().get(Names::shared().anchor, Variant());
	const double least = MAX(movers::speed_of(step.machine, step.kind) * SHARE_OF_SPEED, step.kind->arrive_within * SHARE_OF_NEARNESS);
	if (anchor.get_type() == Variant::NIL || walking::distance(step.body, anchor, step.falls) > least) {
		start_here(step);
		return false;
	}
	const double stuck_for = step.number(Names::shared().stuck_for) + step.delta;
	step.note(Names::shared().stuck_for, stuck_for);
	return stuck_for >= SECONDS;
}

} // namespace stuck
