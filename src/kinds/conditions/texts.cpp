#include "kinds/conditions/texts.hpp"

#include "action/words.hpp"
#include "settings/plumbing.hpp"

void SCFileExistsCondition::describe(KindTable<SCFileExistsCondition> &kind) {
	kind.about("conditions", "file_exists", "Is there a file or a folder at a place on the computer?");
	kind.constants_of<What>();
	kind.setting<&SCFileExistsCondition::path>("path", { PROPERTY_HINT_FILE_PATH, "*" }, "Where to look: inside the game (res://levels/level_2.tscn), where it keeps its own files (user://photo.png), or anywhere on the computer (/home/ann/photo.png). A variable's name in braces is replaced by its value, as in user://photo_{number}.png.");
	kind.setting<&SCFileExistsCondition::what>("what", "What must be there for the answer to be yes.");
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

void SCStringCompareCondition::describe(KindTable<SCStringCompareCondition> &kind) {
	kind.about("conditions", "text", "Compare a variable's text with something, such as a name, a password or a state reported by another system.");
	kind.constants_of<Test>();
	kind.setting<&SCStringCompareCondition::variable_name>("variable_name", "The variable whose text is looked at. A number counts as it is written, a node as its name.");
	kind.setting<&SCStringCompareCondition::test>("test", "What must be so. Matches takes * for any letters and ? for any one letter: \"level_?\" matches level_1, and \"*.png\" every name that ends in .png.").relists();
	kind.setting<&SCStringCompareCondition::text>("text", "What to compare it with.");
	kind.setting<&SCStringCompareCondition::ignore_case>("ignore_case", "Take small and capital letters for the same, so that \"anna\" is \"Anna\".");
}

String SCStringCompareCondition::summary_default() {
	switch (test) {
		case EQUALS:
			return vformat("%s is \"%s\"", variable_name, text);
		case NOT_EQUALS:
			return vformat("%s is not \"%s\"", variable_name, text);
		case CONTAINS:
			return vformat("%s contains \"%s\"", variable_name, text);
		case BEGINS_WITH:
			return vformat("%s begins with \"%s\"", variable_name, text);
		case ENDS_WITH:
			return vformat("%s ends with \"%s\"", variable_name, text);
		case MATCHES:
			return vformat("%s matches \"%s\"", variable_name, text);
		case IS_EMPTY:
			break;
	}
	return vformat("%s is empty", variable_name);
}

void SCStringCompareCondition::_validate_property(PropertyInfo &property) const {
	if (test == IS_EMPTY && (property.name == StringName("text") || property.name == StringName("ignore_case"))) {
		hide_from_inspector(property);
	}
}
