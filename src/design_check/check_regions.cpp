// States within a state: parallel states that hold nothing or start elsewhere, and what lies inside itself.

#include "design/sc_machine_parallel_state.hpp"
#include "design_check/design_check.hpp"

namespace design_check {

namespace {

void check_region(CheckedDesign &design, const CheckedState &checked, const Ref<SCMachineParallelState> &region) {
	if (region->first_state().is_null()) {
		design.find(DesignFinding::WARNING, "empty_region", checked.place, region,
				vformat("its parallel state %s has no states, so nothing runs there", region->parallel_name), "Add states to it, or take it away.");
	} else if (region->start_state.is_valid() && region->first_state() != region->start_state) {
		design.find(DesignFinding::WARNING, "foreign_start", checked.place, region,
				vformat("its parallel state %s starts in %s, which is not one of its states, so the first of them is taken", region->parallel_name,
						region->start_state->state_name),
				"Pick one of its own under Start State.");
	}
}

} // namespace

void check_regions(CheckedDesign &design) {
	for (const CheckedState &checked : design.states) {
		const Ref<SCMachineState> state = checked.state;
		for (int64_t i = 0; i < state->parallel_states.size(); i++) {
			const Ref<SCMachineParallelState> region = state->parallel_states[i];
			if (region.is_valid()) {
				check_region(design, checked, region);
			}
		}
		if (!state->parallel_states.is_empty() && !state->sub_states.is_empty()) {
			design.find(DesignFinding::WARNING, "unused_sub_states", checked.place, state, "it has parallel states, so its sub-states are not entered with it",
					"Put them into a parallel state of their own.");
		}
		for (int64_t i = 0; i < state->sub_states.size(); i++) {
			const Ref<SCMachineState> inner = state->sub_states[i];
			if (inner.is_valid() && inner->contains(state)) {
				design.find(DesignFinding::WARNING, "inside_itself", checked.place, state, "it is one of its own sub-states, or lies inside one of them",
						"Take that row away, or make a new state in it.");
			}
		}
	}
}

} // namespace design_check
