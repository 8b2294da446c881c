// Telling what the check has found: to Output as a machine starts, and to the scene tree. A released game is told nothing.

#include "design/sc_machine_template.hpp"
#include "design_check/design_check.hpp"
#include "machine_node/design_hooks.hpp"
#include "machine_node/sc_machine.hpp"

#include <godot_cpp/classes/project_settings.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <utility>

namespace design_check {

#ifdef DEBUG_ENABLED

namespace {

// More than these are shown by the list, not in Output.
constexpr int64_t MOST_TOLD = 12;
// What has been told is forgotten when so many designs have come and gone.
constexpr int64_t MOST_REMEMBERED = 4096;
constexpr const char *SETTING = "quillstead/debug/check_designs";

HashSet<uint64_t> *told = nullptr;

// What belongs to this one machine, not to the design that others may run as well.
LocalVector<DesignFinding> findings_on(SCMachine &machine) {
	CheckedDesign nothing(machine.name_in_messages());
	check_machine(nothing, machine);
	return std::move(nothing.findings);
}

PackedStringArray warnings_of(SCMachine *machine) {
	PackedStringArray sentences;
	for (const DesignFinding &finding : findings_in(machine)) {
		sentences.push_back(finding.sentence());
	}
	return sentences;
}

// The design, whichever machine runs it.
uint64_t identity_of(const SCMachine *machine) {
	if (machine->machine_template.is_valid()) {
		return machine->machine_template->get_instance_id();
	}
	return machine->initial_state.is_valid() ? machine->initial_state->get_instance_id() : machine->get_instance_id();
}

void tell_at_start(SCMachine *machine) {
	if (!ProjectSettings::get_singleton()->get_setting(SETTING, true).booleanize()) {
		return;
	}
	// Each machine has its own, whichever of them was the first to run the design.
	for (const DesignFinding &finding : findings_on(*machine)) {
		UtilityFunctions::push_warning(finding.sentence());
	}
	if (told == nullptr) {
		told = memnew(HashSet<uint64_t>);
	}
	if (told->size() >= MOST_REMEMBERED) {
		told->clear();
	}
	const uint64_t identity = identity_of(machine);
	if (told->has(identity)) {
		return;
	}
	told->insert(identity);
	const String name = machine->name_in_messages();
	PackedStringArray lines;
	int64_t further = 0;
	for (const DesignFinding &finding : findings_in(machine)) {
		if (finding.about.get_validated_object() == machine) {
			continue;
		}
		// A machine that has nowhere to start says so itself.
		const String rule = finding.rule;
		if (finding.severity != DesignFinding::WARNING || rule == "no_start" || rule == "no_states") {
			continue;
		}
		if (lines.size() < MOST_TOLD) {
			lines.push_back(finding.sentence());
		} else {
			further++;
		}
	}
	if (lines.is_empty()) {
		return;
	}
	if (further > 0) {
		lines.push_back(vformat("And %d more, which SCMachineTemplate.findings_in() lists.", further));
	}
	UtilityFunctions::push_warning(vformat("The design that %s runs cannot work as it stands:\n%s", name, String("\n").join(lines)));
}

} // namespace

void offer_to_machines() {
	design_hooks::tell_at_start = &tell_at_start;
	design_hooks::warnings_of = &warnings_of;
}

void forget_what_was_told() {
	if (told != nullptr) {
		memdelete(told);
		told = nullptr;
	}
}

#endif

} // namespace design_check
