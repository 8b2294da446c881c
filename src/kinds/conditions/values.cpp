#include "kinds/conditions/values.hpp"

#include "action/comparing.hpp"
#include "action/words.hpp"

void SCVariableCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "variable", "Compare one of the machine's variables with a value.");
	kind.depends_only_on_variables();
	kind.constants_of<Test>();
	kind.setting<&Self::variable_name>("variable_name", "The variable to ask about.");
	kind.setting<&Self::test>("test",
			"How the variable is compared with the value. Is True and Is False need no value: a number is true when it is not 0, a text when it is not empty, "
			"a node while it is there.");
	kind.setting<&Self::value>("value", "What the variable is compared with. Greater and Less work on numbers, and on texts by the alphabet.")
			.unless<&Self::test, IS_TRUE, IS_FALSE>();
}

String SCVariableCondition::summary_default() {
	return vformat("%s %s", variable_name, comparing::in_words(comparing::Test(test), value));
}

void SCCompareCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "compare", "Compare two numbers, either of them a variable.");
	kind.depends_only_on_variables();
	kind.constants_of<Test>();
	kind.setting<&Self::first>("first", "The number on the left. Press Var to read it from a variable, such as the coins in a purse.");
	kind.setting<&Self::test>("test", "How the two are compared. Numbers that are as good as equal count as equal.");
	kind.setting<&Self::second>("second", "The number on the right. Press Var to read it from a variable, such as the price of a potion.");
}

String SCCompareCondition::summary_default() {
	return vformat("%s %s", words::number(first), comparing::in_words(comparing::Test(test), second));
}
