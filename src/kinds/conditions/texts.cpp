#include "kinds/conditions/texts.hpp"

#include "action/words.hpp"

void SCFileExistsCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "file_exists", "Is there a file or a folder at a place on the computer?");
	kind.constants_of<What>();
	kind.setting<&Self::path>("path", { PROPERTY_HINT_FILE_PATH, "*" },
			"Where to look: inside the game (res://levels/level_2.tscn), where it keeps its own files (user://photo.png), or anywhere on the computer "
			"(/home/ann/photo.png). A variable's name in braces is replaced by its value, as in user://photo_{number}.png.");
	kind.setting<&Self::what>("what", "What must be there for the answer to be yes.");
}

String SCFileExistsCondition::summary_default() {
	switch (what) {
		case A_FILE:
			return vformat("there is a file %s", path);
		case A_FOLDER:
			return vformat("there is a folder %s", path);
		case EITHER:
			break;
	}
	return vformat("there is a file or folder %s", path);
}

PackedStringArray SCFileExistsCondition::variables_read_default() {
	PackedStringArray names = SCMachineCondition::variables_read_default();
	for (const String &name : words::names_in(path)) {
		if (!names.has(name)) {
			names.push_back(name);
		}
	}
	return names;
}

void SCStringCompareCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "text", "Compare a variable's text with something, such as a name, a password or a state reported by another system.");
	kind.depends_only_on_variables();
	kind.constants_of<Test>();
	kind.setting<&Self::variable_name>("variable_name", "The variable whose text is looked at. A number counts as it is written, a node as its name.");
	kind.setting<&Self::test>("test",
			"What must be so. Matches takes * for any letters and ? for any one letter: \"level_?\" matches level_1, and \"*.png\" every name that ends in "
			".png.");
	kind.setting<&Self::text>("text", "What to compare it with.").unless<&Self::test, IS_EMPTY>();
	kind.setting<&Self::ignore_case>("ignore_case", "Take small and capital letters for the same, so that \"anna\" is \"Anna\".")
			.unless<&Self::test, IS_EMPTY>();
}

String SCStringCompareCondition::summary_default() {
	const char *const before_text[] = { "is", "is not", "contains", "begins with", "ends with", "matches" };
	if (test >= EQUALS && test < IS_EMPTY) {
		return vformat("%s %s \"%s\"", variable_name, before_text[test], text);
	}
	return vformat("%s is empty", variable_name);
}
