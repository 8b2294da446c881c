#include "kinds/conditions/input.hpp"

#include "action/words.hpp"

void SCInputCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "input", "True while a key, a mouse button or a gamepad input is held, or on the frame it is pressed or released.");
	kind.constants_of<When>();
	kind.setting<&Self::input_action>(
			"input_action", hint::INPUT, "What to ask about: a key, a button, a gamepad input, an input action, or \"Any Key or Button\".");
	kind.setting<&Self::when>("when", "Held is true for as long as it is down. Just Pressed and Just Released are true on that frame only.");
	kind.setting<&Self::remembered_for>("remembered_for", hint::SECONDS,
				"How many seconds a press or a release goes on counting, so that jump pressed a moment before landing still jumps. Zero counts it on its own "
				"frame only.")
			.unless<&Self::when, HELD>();
}

String SCInputCondition::summary_default() {
	const String remembered = remembered_for > 0.0 ? vformat(" in the last %s s", words::number(remembered_for)) : String();
	switch (when) {
		case HELD:
			break;
		case JUST_PRESSED:
			return vformat("%s was pressed%s", input_action, remembered);
		case JUST_RELEASED:
			return vformat("%s was let go%s", input_action, remembered);
	}
	return vformat("%s is held", input_action);
}
