#include "kinds/flow/set_variable.hpp"

#include "action/shared_verbs.hpp"

void SCSetVariableAction::describe(KindTable<Self> &kind) {
	kind.about("flow", "set_variable", "Set, add to, take away from, multiply or toggle one of the machine's variables.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::variable_name>("variable_name", "The variable to change.").written();
	kind.setting<&Self::operation>(
			"operation", "What to do with it. Add, Subtract and Multiply work on numbers, places and colours. Toggle flips true and false.");
	kind.setting<&Self::value>("value", "Value used by Set, Add, Subtract, Multiply.").unless<&Self::operation, TOGGLE>();
	kind.setting<&Self::per_second>("per_second", "On Every Frame, add or take away this much each second. Add and Subtract only.")
			.only_if<&Self::operation, ADD, SUBTRACT>()
			.only_if<&Self::run_mode, EVERY_FRAME>();
	kind.warns<&Self::warn_nothing_picked>("_warn_nothing_picked", "m", "index");
}

String SCSetVariableAction::summary_default() {
	const String shown = words::text_of(value);
	const String pace = per_second && repeats() ? " each second" : "";
	switch (operation) {
		case ADD:
			return vformat("Add %s to %s%s", shown, variable_name, pace);
		case SUBTRACT:
			return vformat("Take %s from %s%s", shown, variable_name, pace);
		case MULTIPLY:
			return vformat("Multiply %s by %s", variable_name, shown);
		case TOGGLE:
			return vformat("Toggle %s", variable_name);
		case SET:
			break;
	}
	return vformat("Set %s to %s", variable_name, shown);
}

// Set does not look at what the variable held before.
PackedStringArray SCSetVariableAction::variables_read_default() {
	return operation == SET ? PackedStringArray() : SCMachineAction::variables_read_default();
}

void SCSetVariableAction::warn_nothing_picked(SCMachineBase *machine, int index) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, index,
				vformat("Set Variable on %s has no variable picked, so it changed nothing. Pick one in its Variable Name.", machine->name_in_messages()));
	}
}

void SCSetVariableAction::warn_cannot(SCMachineBase *machine, const Variant &held) const {
	const String holds = values::kind_in_words(held);
	const String given = values::kind_in_words(value);
	String what;
	switch (operation) {
		case SET:
			what = vformat("%s holds %s and cannot be set to %s", variable_name, holds, given);
			break;
		case ADD:
			what = vformat("%s cannot be added to %s, which holds %s", given, variable_name, holds);
			break;
		case SUBTRACT:
			what = vformat("%s cannot be taken from %s, which holds %s", given, variable_name, holds);
			break;
		case MULTIPLY:
			what = vformat("%s holds %s, which cannot be multiplied by %s", variable_name, holds, given);
			break;
		case TOGGLE:
			verbs::warn(machine, this,
					vformat("%s holds %s, which is neither true nor false, so it changed nothing. Pick a bool under Variable Name.", variable_name, holds));
			return;
	}
	verbs::warn(machine, this, vformat("%s, so it changed nothing. Give Value the right kind of value, or pick another variable under Variable Name.", what));
}
