#include "action/answering.hpp"

#include "action/naming.hpp"
#include "action/shared_verbs.hpp"
#include "action/storing.hpp"
#include "action/values.hpp"

namespace answering {

bool keep(SCMachineBase *machine, const SCMachineAction *action, const StringName &variable, const Variant &answer, const char *what, const char *setting) {
	if (variable.is_empty()) {
		verbs::warn(machine, action, vformat("there is nowhere to put %s, so it was lost. Pick a variable under %s.", what, setting));
		return false;
	}
	if (storing::put(machine, variable, answer.get_type() == Variant::FLOAT ? values::keep_whole(machine, variable, answer) : answer)) {
		return true;
	}
	verbs::warn(machine, action, vformat("%s holds %s, which cannot become %s, so it was left as it is. Pick another variable under %s, or change its type in the Variables tab.", variable, values::kind_in_words(machine->get_value(variable)), values::kind_in_words(answer), setting));
	return false;
}

void keep_if_named(SCMachineBase *machine, const SCMachineAction *action, const StringName &variable, const Variant &answer, const char *setting) {
	if (!variable.is_empty()) {
		keep(machine, action, variable, answer, "it", setting);
	}
}

void let_go(SCMachineBase *machine, const StringName &variable) {
	if (!variable.is_empty() && machine->get_value(variable).get_type() == Variant::OBJECT) {
		machine->set_value(variable, Variant());
	}
}

PackedStringArray written_with(const SCMachineAction *action, const StringName &worked_on) {
	PackedStringArray names = naming::variables_written(action);
	if (!worked_on.is_empty() && !names.has(worked_on)) {
		names.push_back(worked_on);
	}
	return names;
}

} // namespace answering

namespace verbs {

void store(SCMachineBase *machine, const StringName &variable, const Variant &value) {
	if (variable.is_empty() || machine == nullptr) {
		return;
	}
	const Variant kept = value.get_type() == Variant::FLOAT ? values::keep_whole(machine, variable, value) : value;
	if (!storing::put(machine, variable, kept)) {
		const String text = vformat("%s on %s holds %s, so %s was not kept in it. Pick a variable of the right kind.", variable, machine->name_in_messages(), values::kind_in_words(machine->get_value(variable)), values::kind_in_words(value));
		MakerWarnings::once_for(machine, vformat("not kept:%s", variable), text);
	}
}

void store_and_send(SCMachineBase *machine, const StringName &variable, const Variant &value, const StringName &event, const Variant &data) {
	const StillHere here(machine);
	store(machine, variable, value);
	if (here) {
		send(machine, event, data);
	}
}

} // namespace verbs
