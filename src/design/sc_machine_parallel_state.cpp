#include "design/sc_machine_parallel_state.hpp"

#include "design/sc_machine_state.hpp"
#include "settings/shown_names.hpp"

SCMachineParallelState::SCMachineParallelState() = default;
SCMachineParallelState::~SCMachineParallelState() = default;

Ref<SCMachineState> SCMachineParallelState::first_state() const {
	return SCMachineState::start_among(states, start_state);
}

bool SCMachineParallelState::contains(const Ref<Resource> &state) const {
	for (int64_t i = 0; i < states.size(); i++) {
		const Ref<SCMachineState> inside = states[i];
		if (inside.is_valid() && inside->contains(state)) {
			return true;
		}
	}
	return false;
}

String SCMachineParallelState::_to_string() const {
	return parallel_name;
}

void SCMachineParallelState::_validate_property(PropertyInfo &property) const {
	shown_names::leave_out_of_files(this, property);
}

void SCMachineParallelState::_bind_methods() {
	ClassTable<SCMachineParallelState> table("A set of states running side by side with others inside one state.");
	table.setting<&SCMachineParallelState::parallel_name>("parallel_name", "Name shown in the graph, for example Blinking or Spinning.");
	table.setting<&SCMachineParallelState::states>("states", "The states in this parallel state. They are separate from the other parallel states' states.");
	table.setting<&SCMachineParallelState::start_state>("start_state", "The state this parallel state starts in. Empty uses the first in the list.");
	ClassDB::bind_method(D_METHOD("first_state"), &SCMachineParallelState::first_state);
	ClassDB::bind_method(D_METHOD("contains", "state"), &SCMachineParallelState::contains);
}
