#include "kinds/data/find_row.hpp"

#include "action/contents.hpp"
#include "action/words.hpp"
#include "inventory/records.hpp"

void SCFindRowAction::describe(KindTable<Self> &kind) {
	kind.about("data", "find_row", "Pick a row of a Data Table and keep it in a variable, for Get Data, Set Data and the Data check to read.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<How>();
	kind.setting<&Self::table>("table", hint::DATA_TABLE, "The Data Table to look in.");
	kind.setting<&Self::how>("how",
			"Which row: the one of a name, the one at a place, any by chance, the first whose field is so, or the one whose field is the highest or the "
			"lowest.");
	kind.setting<&Self::row_name>("row_name", "The name of the row, as its Record Name says it.").only_if<&Self::how, NAMED>();
	kind.setting<&Self::row_name_variable>("row_name_variable", "Read the name from this variable, such as the weapon the player holds.")
			.only_if<&Self::how, NAMED>()
			.optional();
	kind.setting<&Self::place>("place", hint::HOW_MANY, "Which row, counted from the top. 1 is the first.").only_if<&Self::how, AT_PLACE>();
	kind.setting<&Self::place_variable>("place_variable", "Read the place from this variable, such as the number of the level.")
			.only_if<&Self::how, AT_PLACE>()
			.optional();
	kind.setting<&Self::field>("field", "The field that is looked at. Texts go by the alphabet, and choices by their order in the Data Definition.")
			.only_if<&Self::how, WHERE_FIELD_IS, HIGHEST, LOWEST>();
	kind.setting<&Self::equals>("equals", "What the field has to hold. 1 and 1.0 are the same.").only_if<&Self::how, WHERE_FIELD_IS>();
	kind.setting<&Self::equals_variable>("equals_variable", "Read that value from this variable.").only_if<&Self::how, WHERE_FIELD_IS>().optional();
	kind.setting<&Self::store_in>("store_in", "The variable that the row goes into. When no row is found it lets go of the one it held.")
			.optional_if<&Self::found_event>();
	kind.setting<&Self::found_event>("found_event", "Sent when a row was found. It carries the row. Empty sends nothing.").optional();
	kind.setting<&Self::not_found_event>("not_found_event", "Sent when no row was found. Empty sends nothing.").optional();
}

String SCFindRowAction::summary_default() {
	const String of = records::name_in_line(table);
	String line;
	switch (how) {
		case NAMED:
			line = vformat("Find the row %s of %s", words::variable_or(row_name_variable, words::picked(row_name)), of);
			break;
		case AT_PLACE:
			line = vformat("Find row %s of %s", words::variable_or(place_variable, String::num_int64(place)), of);
			break;
		case WHERE_FIELD_IS:
			line = vformat(
					"Find the row of %s where %s is %s", of, words::picked(field), words::variable_or(equals_variable, contents::shown_or(equals, "a value")));
			break;
		case HIGHEST:
		case LOWEST:
			line = vformat("Find the row of %s with the %s %s", of, how == HIGHEST ? "highest" : "lowest", words::picked(field));
			break;
		default:
			line = vformat("Find a random row of %s", of);
			break;
	}
	return line + contents::into(store_in);
}
