#include "action/storing.hpp"

#include "action/values.hpp"
#include "machine/value_kinds.hpp"
#include "machine_node/sc_machine_base.hpp"

namespace storing {

bool fits(SCMachineBase *machine, const StringName &variable, const Variant &value) {
	const Variant now = machine->get_value(variable);
	return now.get_type() == Variant::NIL || ValueKinds::is_nothing(value) || values::can_fit(now, value);
}

bool put(SCMachineBase *machine, const StringName &variable, const Variant &value) {
	if (variable.is_empty() || !fits(machine, variable, value)) {
		return false;
	}
	const Variant now = machine->get_value(variable);
	machine->set_value(variable, now.get_type() == Variant::NIL || ValueKinds::is_nothing(value) ? value : values::fitted_to(now, value));
	return true;
}

} // namespace storing
