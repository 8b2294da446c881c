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
