#pragma once

// Walks states with all that is nested in them, parents before children, each state once: a design
// whose states are nested in a ring ends where it closes.

#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_state.hpp"

#include <godot_cpp/templates/hash_set.hpp>

using namespace godot;

struct StateWalk {
	TypedArray<SCMachineState> found;
	HashSet<uint64_t> visited;

	void skip(const Ref<SCMachineState> &state) {
		if (state.is_valid()) {
			visited.insert(state->get_instance_id());
		}
	}

	void visit(const Ref<SCMachineState> &state) {
		if (state.is_null() || visited.has(state->get_instance_id())) {
			return;
		}
		skip(state);
		found.push_back(state);
		visit_all(state->sub_states);
		for (int64_t i = 0; i < state->parallel_states.size(); i++) {
			const Ref<SCMachineParallelState> region = state->parallel_states[i];
			if (region.is_valid()) {
				visit_all(region->states);
			}
		}
	}

	void visit_all(const Array &states) {
		for (int64_t i = 0; i < states.size(); i++) {
			visit(states[i]);
		}
	}
};
