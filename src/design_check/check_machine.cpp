// What is set on a machine itself, beside the design that it runs.

#include "action/values.hpp"
#include "design/sc_machine_template.hpp"
#include "design_check/design_check.hpp"
#include "design_check/near_names.hpp"
#include "machine_node/sc_machine.hpp"

namespace design_check {

namespace {

void check_target(CheckedDesign &design, SCMachine &machine) {
	if (!machine.target_path.is_empty() && machine.is_inside_tree() && machine.get_node_or_null(machine.target_path) == nullptr) {
		design.find(DesignFinding::WARNING, "missing_target", machine.name_in_messages(), &machine,
				vformat("its Target Path leads to %s, and there is no node, so it works on none", String(machine.target_path)),
				"Pick a node under Target Path, or leave it empty for the node it is put under.");
	}
}

// A machine that has started shows what its template holds.
void check_own_states(CheckedDesign &design, SCMachine &machine) {
	if (machine.machine_template.is_null() || machine.is_running()) {
		return;
	}
	const TypedArray<SCMachineState> own = machine.get_states();
	if (!own.is_empty() && !machine.machine_template->states.has(own[0])) {
		design.find(DesignFinding::WARNING, "unused_states", machine.name_in_messages(), &machine,
				"it has a template and states of its own, and only the template is run", "Empty its States, or clear its Template.");
	}
}

const SCMachineVariable *declared(const TypedArray<SCMachineVariable> &variables, const StringName &name) {
	for (int64_t i = 0; i < variables.size(); i++) {
		const Ref<SCMachineVariable> variable = variables[i];
		if (variable.is_valid() && variable->name == name) {
			return variable.ptr();
		}
	}
	return nullptr;
}

void check_starting_values(CheckedDesign &design, SCMachine &machine) {
	const Dictionary values = machine.get_starting_values();
	if (values.is_empty()) {
		return;
	}
	const TypedArray<SCMachineVariable> variables = machine.machine_template.is_valid() ? machine.machine_template->variables : machine.get_variables();
	LocalVector<StringName> known;
	for (int64_t i = 0; i < variables.size(); i++) {
		const Ref<SCMachineVariable> variable = variables[i];
		if (variable.is_valid()) {
			known.push_back(variable->name);
		}
	}
	const Array names = values.keys();
	for (int64_t i = 0; i < names.size(); i++) {
		const StringName name = names[i];
		const Variant value = values[names[i]];
		const SCMachineVariable *variable = declared(variables, name);
		const StringName meant = variable == nullptr ? near_names::nearest(name, known) : StringName();
		if (!meant.is_empty()) {
			design.find(DesignFinding::WARNING, "starting_value", machine.name_in_messages(), &machine,
					vformat("its Starting Values name %s, which is not declared", name),
					vformat("%sWrite the name of a variable that it has.", near_names::did_you_mean(meant)));
		} else if (variable != nullptr && !values::can_fit(variable->default_value, value)) {
			design.find(DesignFinding::WARNING, "starting_value", machine.name_in_messages(), &machine,
					vformat("its Starting Values give %s %s, and that variable is %s", name, values::kind_in_words(value),
							values::kind_in_words(variable->default_value)),
					"Give it the right kind of value there.");
		}
	}
}

} // namespace

void check_machine(CheckedDesign &design, SCMachine &machine) {
	check_target(design, machine);
	check_own_states(design, machine);
	check_starting_values(design, machine);
}

} // namespace design_check
