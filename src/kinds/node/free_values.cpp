#include "kinds/node/free_values.hpp"

#include "action/reading.hpp"
#include "action/values.hpp"

namespace free_values {

void read(SCMachineAction *action, SCMachineBase *machine, std::initializer_list<Free> free) {
	Dictionary others = action->from_variables;
	if (machine == nullptr || others.is_empty()) {
		return;
	}
	others = others.duplicate();
	// What was in them goes last: a destructor may run a game's code.
	Array before;
	for (const Free &one : free) {
		const StringName variable = others.get(one.setting, StringName());
		if (variable.is_empty()) {
			continue;
		}
		others.erase(one.setting);
		if (!action->typed_in.has(one.setting)) {
			action->typed_in[one.setting] = one.value;
		}
		before.push_back(one.value);
		one.value = values::value_of(machine, action->typed_in[one.setting], variable);
	}
	if (!others.is_empty()) {
		reading::read_variables_into(action, others, action->typed_in, machine);
	}
}

} // namespace free_values
