#include "design_check/design_check.hpp"

#include "design/sc_machine_template.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/variant/typed_array.hpp>

namespace design_check {

namespace {

LocalVector<DesignFinding> checked(CheckedDesign design, const Object *of, SCMachine *machine) {
	if (machine != nullptr) {
		check_machine(design, *machine);
	}
	check_starts(design);
	check_state_names(design);
	check_transitions(design);
	check_ways_out(design);
	check_regions(design);
	check_variables(design);
	check_limits(design);
	check_globals(design, of);
	check_events(design);
	check_ways_in(design);
	LocalVector<DesignFinding> in_order;
	for (const DesignFinding::Severity severity : { DesignFinding::WARNING, DesignFinding::HINT }) {
		for (const DesignFinding &finding : design.findings) {
			if (finding.severity == severity) {
				in_order.push_back(finding);
			}
		}
	}
	return in_order;
}

TypedArray<Dictionary> findings_for_scripts(Object *design) {
	TypedArray<Dictionary> listed;
	for (const DesignFinding &finding : findings_in(design)) {
		listed.push_back(finding.as_dictionary());
	}
	return listed;
}

} // namespace

LocalVector<DesignFinding> findings_in(Object *design) {
	SCMachine *machine = Object::cast_to<SCMachine>(design);
	const Ref<SCMachineTemplate> its_template(machine != nullptr ? machine->machine_template.ptr() : Object::cast_to<SCMachineTemplate>(design));
	if (its_template.is_valid()) {
		return checked(CheckedDesign(*its_template.ptr()), its_template.ptr(), machine);
	}
	if (machine == nullptr) {
		ERR_PRINT("Parameter \"design\" is neither a machine nor a template.");
		return LocalVector<DesignFinding>();
	}
	return checked(CheckedDesign(*machine), machine, machine);
}

void register_check() {
	ClassDB::bind_static_method("SCMachineTemplate", D_METHOD("findings_in", "design"), &findings_for_scripts);
#ifdef DEBUG_ENABLED
	offer_to_machines();
#endif
}

} // namespace design_check
