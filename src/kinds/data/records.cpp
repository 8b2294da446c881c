#include "kinds/data/records.hpp"

#include "action/contents.hpp"
#include "action/words.hpp"

void SCGetDataAction::describe(KindTable<Self> &kind) {
	kind.about("data", "get_data",
			"Read one field of a Data record into a variable, such as the Damage of the sword the player holds, the Speed of the enemy type Find Row picked, "
			"or this enemy's own Health from its Data node.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	SCDataReach::describe<&Self::from, &Self::data, &Self::data_variable, &Self::node_path, &Self::field>(kind);
	kind.setting<&Self::store_in>("store_in", "The variable that the field goes into. A list or a table goes in as a copy.");
}

String SCGetDataAction::summary_default() {
	return vformat("Keep %s of %s in %s", words::picked(field), records::in_line(from, data, data_variable, node_path), store_in);
}

void SCSetDataAction::describe(KindTable<Self> &kind) {
	kind.about("data", "set_data",
			"Change one field of a Data record while the game runs, such as this enemy's own Health on its Data node, or the sword's Damage once it is "
			"sharpened. A file's record is changed for everything that uses it until the game stops, and is not saved into the file.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	SCDataReach::describe<&Self::from, &Self::data, &Self::data_variable, &Self::node_path, &Self::field>(kind);
	kind.setting<&Self::operation>("operation", "Set puts the value in the place of what the field held. Add adds it to the number that is there.");
	kind.setting<&Self::value>("value",
			"What the field becomes, or what is added to it; a number below zero takes away. It goes in as the kind of value that the field holds, and within "
			"its limits.");
}

String SCSetDataAction::summary_default() {
	const String record = records::in_line(from, data, data_variable, node_path);
	const String what = contents::shown_or(value, "a value");
	return operation == ADD ? vformat("Add %s to %s of %s", what, words::picked(field), record)
							: vformat("Set %s of %s to %s", words::picked(field), record, what);
}
