#include "action/machines.hpp"

#include "action/values.hpp"
#include "design/sc_machine_state.hpp"
#include "machine/names.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/object.hpp>

namespace machines {

SCMachine *at(SCMachineBase *machine, const NodePath &path) {
	return path.is_empty() ? nullptr : SCMachine::machine_of_or_above(values::node_of(machine, path));
}

StringName name_of_state(const Ref<Resource> &state) {
	if (const SCMachineState *compiled = Object::cast_to<SCMachineState>(state.ptr())) {
		return compiled->state_name;
	}
	return state.is_valid() ? StringName(state->get(MachineNames::shared().state_name)) : StringName();
}

} // namespace machines
