#include "kinds/conditions/data.hpp"

#include "action/comparing.hpp"
#include "action/words.hpp"

void SCDataCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "data",
			"Ask about a field of a Data record, for example is this enemy's Health below 1, is the weapon's Rarity Legendary, or is the level's Unlocked on.");
	kind.constants_of<Test>();
	SCDataReach::describe<&Self::from, &Self::data, &Self::data_variable, &Self::node_path, &Self::field>(kind);
	kind.setting<&Self::test>("test",
			"How the field is compared with the value. Is True and Is False need no value. Of choices, one is greater when it stands later in the Data "
			"Definition.");
	kind.setting<&Self::value>("value", "What the field is compared with. Greater and Less work on numbers, on choices, and on texts by the alphabet.")
			.unless<&Self::test, IS_TRUE, IS_FALSE>();
	kind.warns<&Self::warn_data>("_warn_data", "m", "why");
}

String SCDataCondition::summary_default() {
	return vformat(
			"%s of %s %s", words::picked(field), records::in_line(from, data, data_variable, node_path), comparing::in_words(comparing::Test(test), value));
}

void SCDataCondition::warn_data(SCMachineBase *machine, const String &why) {
	verbs::warn(machine, this, vformat("the answer is no, because %s.", why));
}
