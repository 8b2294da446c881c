#include "kinds/conditions/machine.hpp"

#include "action/words.hpp"

void SCChanceCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "chance", "A roll of the dice that is true on a percentage of the times it is asked.");
	kind.setting<&Self::chance>(
			"chance", { PROPERTY_HINT_RANGE, "0,100,0.1,suffix:%" }, "How often the answer is yes: 25 is one time in four, 0 never and 100 always.");
	kind.setting<&Self::once_per_visit>("once_per_visit",
			"Roll only the first time it is asked in a visit to the state, and go on giving that answer until the state is left. Without it every asking rolls "
			"anew, which on Every Frame soon comes out yes.");
}

String SCChanceCondition::summary_default() {
	return vformat("%s%% of the time%s", words::number(chance), once_per_visit ? ", one roll a visit" : "");
}

void SCInStateCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "in_state", "Is a machine in a state?");
	kind.setting<&Self::machine_path>(
			"machine_path", "The machine, or the node it works on, such as the door whose machine has the state Open. Empty is this machine.");
	kind.setting<&Self::state_name>("state_name", "The state's name. A state counts while it is entered, at any depth and in any parallel state.");
}

String SCInStateCondition::summary_default() {
	return vformat("%s is in %s", words::name_in_line(machine_path, "Self", "this machine"), state_name);
}

void SCSubStateFinishedCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "sub_state_completed", "True once the work inside this state is done.");
	kind.setting<&Self::require_own_actions>(
			"require_own_actions", "Wait for the state's own actions too, besides its sub-states. The action that asks this does not count.");
}

String SCSubStateFinishedCondition::summary_default() {
	return require_own_actions ? "the sub-states and the state's own actions are done" : "the sub-states are done";
}

void SCTimeoutCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "timeout", "True once the state has been running for this long.");
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long the state runs before the answer is yes.");
	kind.setting<&Self::random_extra>("random_extra", hint::SECONDS, "Up to this many extra seconds, picked at random on each visit to the state.");
}

String SCTimeoutCondition::summary_default() {
	if (random_extra > 0.0) {
		return vformat("%s to %s s have passed", words::number(seconds), words::number(seconds + random_extra));
	}
	return vformat("%s s have passed", words::number(seconds));
}

void SCVariableChangedCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "variable_changed",
			"True on the first check after a variable's value changes, such as a score going up, a target being replaced, or a flag being set by another "
			"machine. It watches only while its state is running, so what changed before the state was entered does not count.");
	kind.setting<&Self::variable_name>("variable_name", "The variable to watch.");
}

String SCVariableChangedCondition::summary_default() {
	return vformat("%s has changed", variable_name);
}
