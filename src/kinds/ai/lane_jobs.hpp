#pragma once

// When a kind that walks a character about hands its work to the fast lane: when it is so simple that the lane can do it alone.

#include "fast_lane/sc_fast_lane.hpp"
#include "kinds/ai/ground.hpp"
#include "kinds/ai/mover_step.hpp"

namespace lane_jobs {

template <class Kind>
bool are_simple_enough(const MoverStep<Kind> &step) {
	const Kind *kind = step.kind;
	return kind->speed_variable.is_empty() && !kind->reads_variables() && kind->update_interval <= 0.0 && !kind->turn_to_face &&
			checked::is_sound(kind->speed) && ground::is_plain(step.body);
}

// `add` makes the job on the lane and answers its number.
template <class Kind, class Add>
void hand_over(const MoverStep<Kind> &step, Add add) {
	SCFastLane *lane = SCFastLane::lane_for(step.machine);
	if (lane == nullptr || !step.goes_on()) {
		return;
	}
	SCFastLane::note_moved_by_position(step.body);
	const int32_t job = add(lane);
	if (job != SCFastLane::NO_JOB) {
		step.machine->rest_in_lane(step.index, lane, job);
	}
}

} // namespace lane_jobs
