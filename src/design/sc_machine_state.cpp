#include "design/sc_machine_state.hpp"

#include "action/sc_action.hpp"
#include "design/sc_machine_parallel_state.hpp"
#include "design/sc_machine_transition.hpp"
#include "machine/compiled_design.hpp"
#include "settings/shown_names.hpp"

SCMachineState::SCMachineState() = default;

SCMachineState::~SCMachineState() {
	CompiledDesign::forget_state(get_instance_id());
}

bool SCMachineState::contains(const Ref<Resource> &state) const {
	HashSet<uint64_t> visited;
	return contains_within(state, visited);
}

// Each state is searched once: states nested in rings would be searched for ever.
bool SCMachineState::contains_within(const Ref<Resource> &state, HashSet<uint64_t> &visited) const {
	if (state.is_null()) {
		return false;
	}
	if (state.ptr() == this) {
		return true;
	}
	if (visited.has(get_instance_id())) {
		return false;
	}
	visited.insert(get_instance_id());
	for (int64_t i = 0; i < sub_states.size(); i++) {
		const Ref<SCMachineState> sub_state = sub_states[i];
		if (sub_state.is_valid() && sub_state->contains_within(state, visited)) {
			return true;
		}
	}
	for (int64_t i = 0; i < parallel_states.size(); i++) {
		const Ref<SCMachineParallelState> region = parallel_states[i];
		for (int64_t s = 0; region.is_valid() && s < region->states.size(); s++) {
			const Ref<SCMachineState> inside = region->states[s];
			if (inside.is_valid() && inside->contains_within(state, visited)) {
				return true;
			}
		}
	}
	return false;
}

Ref<SCMachineState> SCMachineState::start_among(const Array &states, const Ref<SCMachineState> &wanted) {
	if (wanted.is_valid() && states.has(wanted)) {
		return wanted;
	}
	for (int64_t i = 0; i < states.size(); i++) {
		const Ref<SCMachineState> state = states[i];
		if (state.is_valid()) {
			return state;
		}
	}
	return Ref<SCMachineState>();
}

Ref<SCMachineState> SCMachineState::first_sub_state() const {
	return start_among(sub_states, start_sub_state);
}

TypedArray<SCMachineState> SCMachineState::inner_starts() const {
	TypedArray<SCMachineState> starts;
	for (int64_t i = 0; i < parallel_states.size(); i++) {
		const Ref<SCMachineParallelState> region = parallel_states[i];
		if (region.is_valid()) {
			starts.push_back(region->first_state());
		}
	}
	if (!parallel_states.is_empty()) {
		return starts;
	}
	const Ref<SCMachineState> first = first_sub_state();
	if (first.is_valid()) {
		starts.push_back(first);
	}
	return starts;
}

int64_t SCMachineState::inner_slot_of(const Ref<Resource> &state) const {
	int64_t slot = 0;
	for (int64_t i = 0; i < parallel_states.size(); i++) {
		const Ref<SCMachineParallelState> region = parallel_states[i];
		if (region.is_null()) {
			continue;
		}
		if (region->contains(state)) {
			return slot;
		}
		slot++;
	}
	if (!parallel_states.is_empty()) {
		return -1;
	}
	for (int64_t i = 0; i < sub_states.size(); i++) {
		const Ref<SCMachineState> sub_state = sub_states[i];
		if (sub_state.is_valid() && sub_state->contains(state)) {
			return 0;
		}
	}
	return -1;
}

void SCMachineState::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
}

void SCMachineState::_bind_methods() {
	ClassTable<SCMachineState> table(
			"One state of a machine, with the actions it runs while active, the transitions that leave it, and any states nested inside it.");
	table.setting<&SCMachineState::state_name>(
			"state_name", "The state's name. Transitions name their destination, so every state in a machine needs its own.");
	table.setting<&SCMachineState::actions>("actions", "What the state does while active, run top to bottom on their own intervals.");
	table.setting<&SCMachineState::transitions>("transitions", "Ways out of the state, asked in order. The first one that fires wins.");
	table.setting<&SCMachineState::sub_states>("sub_states",
			"States nested inside this one. One of them runs underneath it and gets each event first; this state takes an event only when the one inside did "
			"not.");
	table.setting<&SCMachineState::parallel_states>(
			"parallel_states", "Sets of states running side by side inside this state, each with its own current state. All stop when this state is left.");
	table.setting<&SCMachineState::start_sub_state>("start_sub_state", "The nested state entered first. Empty uses the first in the list.");
	table.setting<&SCMachineState::is_end_state>(
			"is_end_state", "Marks a nested state as the end of its parent's work. Reaching it with its actions done tells the parent its work has completed.");
	table.setting<&SCMachineState::pause_here>(
			"pause_here", "While testing from the editor, hold the machine the moment it arrives here. Does nothing in a finished game.");
	table.setting<&SCMachineState::graph_position>("graph_position", "Where the state's box sits in the graph.");
	table.setting<&SCMachineState::graph_color>("graph_color", "Colour of the box's title band and its arrows. Transparent uses the default.");
	table.setting<&SCMachineState::run_facts>("run_facts", hint::NEITHER_STORED_NOR_SHOWN,
			"What a running machine found out about this state's actions the first time it entered it, shared by every machine running the state. Not saved.");
	ClassDB::bind_method(D_METHOD("contains", "state"), &SCMachineState::contains);
	ClassDB::bind_method(D_METHOD("first_sub_state"), &SCMachineState::first_sub_state);
	ClassDB::bind_method(D_METHOD("inner_starts"), &SCMachineState::inner_starts);
	ClassDB::bind_method(D_METHOD("inner_slot_of", "state"), &SCMachineState::inner_slot_of);
}
