#include "kinds/conditions/values.hpp"

#include "action/comparing.hpp"
#include "action/words.hpp"
#include "settings/plumbing.hpp"

void SCVariableCondition::describe(KindTable<SCVariableCondition> &kind) {
	kind.about("conditions", "variable", "Compare one of the machine's variables with a value.");
	kind.constants_of<Test>();
	kind.setting<&SCVariableCondition::variable_name>("variable_name", "The variable to ask about.");
	kind.setting<&SCVariableCondition::test>("test", "How the variable is compared with the value. Is True and Is False need no value: a number is true when it is not 0, a text when it is not empty, a node while it is there.").relists();
	kind.setting<&SCVariableCondition::value>("value", "What the variable is compared with. Greater and Less work on numbers, and on texts by the alphabet.");
}

String SCVariableCondition::summary_default() {
	return vformat("%s %s", variable_name, comparing::in_words(comparing::Test(test), value));
}

void SCVariableCondition::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("value") && !comparing::needs_value(comparing::Test(test))) {
		hide_from_inspector(property);
	}
}

void SCCompareCondition::describe(KindTable<SCCompareCondition> &kind) {
	kind.about("conditions", "compare", "Compare two numbers, either of them a variable.");
	kind.constants_of<Test>();
	kind.setting<&SCCompareCondition::first>("first", "The number on the left. Press Var to read it from a variable, such as the coins in a purse.");
	kind.setting<&SCCompareCondition::test>("test", "How the two are compared. Numbers that are as good as equal count as equal.");
	kind.setting<&SCCompareCondition::second>("second", "The number on the right. Press Var to read it from a variable, such as the price of a potion.");
}

String SCCompareCondition::summary_default() {
	return vformat("%s %s", words::number(first), comparing::in_words(comparing::Test(test), second));
}

void SCInputCondition::describe(KindTable<SCInputCondition> &kind) {
	kind.about("conditions", "input", "True while a key, a mouse button or a gamepad input is held, or on the frame it is pressed or released.");
	kind.constants_of<When>();
	kind.setting<&SCInputCondition::input_action>("input_action", hint::INPUT, "What to ask about: a key, a button, a gamepad input, an input action, or \"Any Key or Button\".");
	kind.setting<&SCInputCondition::when>("when", "Held is true for as long as it is down. Just Pressed and Just Released are true on that frame only.").relists();
	kind.setting<&SCInputCondition::remembered_for>("remembered_for", hint::SECONDS, "How many seconds a press or a release goes on counting, so that jump pressed a moment before landing still jumps. Zero counts it on its own frame only.");
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

void SCInputCondition::_validate_property(PropertyInfo &property) const {
	if (property.name == StringName("remembered_for") && when == HELD) {
		hide_from_inspector(property);
	}
}
