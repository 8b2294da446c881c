#pragma once

// What a kind says of its settings in describe(), asked by its runtime: which of them have a say as it is set up now, and which may
// stay empty. Also the variable that a setting names, for a runtime that changes it.

#include "action/shared_verbs.hpp"

namespace verbs {

// Unlike the inspector's, this look takes a setting that is read from a variable as it stands now.
template <class Kind>
bool all_hold_now(const LocalVector<SettingRule> &rules, const SCMachineAction *action) {
	const Kind *kind = as_kind<Kind>(const_cast<SCMachineAction *>(action));
	for (const SettingRule &rule : rules) {
		if (kind != nullptr && !rule.holds(kind)) {
			return false;
		}
	}
	return true;
}

// Whether the setting means anything now, which is when the inspector shows it.
template <auto Field>
bool applies(const SCMachineAction *action) {
	return all_hold_now<typename FieldOf<Field>::Owner>(FieldOf<Field>::row->shown_if, action);
}
template <auto Field>
bool may_stay_empty(const SCMachineAction *action) {
	return FieldOf<Field>::row->optional && all_hold_now<typename FieldOf<Field>::Owner>(FieldOf<Field>::row->optional_if, action);
}

// Empty, and the game maker told, when none is picked. `so` says what came of it: "it changed nothing".
template <auto Field>
StringName variable_or_warn(SCMachineBase *machine, const SCMachineAction *action, const String &so) {
	const StringName variable = setting_of<Field>(action);
	if (variable.is_empty()) {
		warn(machine, action, vformat("no variable is picked, so %s. Pick one under %s.", so, setting_in_inspector(name_of<Field>())));
	}
	return variable;
}
template <auto Field>
void warn_no_such_variable(SCMachineBase *machine, const SCMachineAction *action, const String &so) {
	const StringName variable = setting_of<Field>(action);
	warn(machine, action,
			vformat("this machine has no variable called %s, so %s. Add it under Variables, or pick another under %s.", variable, so,
					setting_in_inspector(name_of<Field>())));
}

// Keeps an answer that one of two events may tell as well: with either of them named, no variable need be.
template <auto Store, auto Yes, auto No>
void keep_or_tell(SCMachineBase *machine, const SCMachineAction *action, const Variant &answer) {
	if (setting_of<Yes>(action).is_empty() && setting_of<No>(action).is_empty()) {
		keep<Store>(machine, action, answer, "the answer");
	} else {
		keep_if_named<Store>(machine, action, answer);
	}
}

} // namespace verbs
