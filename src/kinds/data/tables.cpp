#include "kinds/data/tables.hpp"

#include "action/contents.hpp"
#include "action/words.hpp"

void SCDictionaryAction::describe(KindTable<Self> &kind) {
	kind.about("data", "table",
			"Work with a table held in a variable. A table keeps values under keys, such as how many of each ore was mined, the price of everything in a shop, "
			"or who owes whom.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::table_variable>("table_variable", "The variable holding the table. Setting an entry of one that does not exist yet makes it.")
			.written_if<&Self::operation, SET_ENTRY, ADD_TO_ENTRY, ADD_ALL, REMOVE_ENTRY, CLEAR>();
	kind.setting<&Self::operation>("operation",
			"What to do. Add To Entry adds to the number kept under the key, starting from nothing. Add All copies every entry of another table. Find Key "
			"looks for the key that a value is kept under. Keys and Values give a list.");
	kind.setting<&Self::key>("key", "The word the value is kept under, such as gold.")
			.only_if<&Self::operation, SET_ENTRY, ADD_TO_ENTRY, GET_ENTRY, HAS_KEY, REMOVE_ENTRY>();
	kind.setting<&Self::value>("value", "The value to keep, to add or to look for, of any type. For Add All, a variable that holds another table.")
			.only_if<&Self::operation, SET_ENTRY, ADD_TO_ENTRY, ADD_ALL, FIND_KEY>();
	kind.setting<&Self::store_in>("store_in",
				"The variable the answer goes into: the value for Get Entry, a key for Find Key and Get Random Key, true or false for Has Key, a number for "
				"Count, a list for Keys and Values. A node or resource kept there is let go of when there is no such entry.")
			.only_if<&Self::operation, GET_ENTRY, HAS_KEY, FIND_KEY, COUNT, KEYS, VALUES, GET_RANDOM_KEY>()
			.optional_if<&Self::operation, HAS_KEY>();
	kind.setting<&Self::found_event>(
				"found_event", "Sent when the entry was there. It carries the value, or the key for Find Key and Get Random Key. Empty sends nothing.")
			.only_if<&Self::operation, GET_ENTRY, HAS_KEY, FIND_KEY, REMOVE_ENTRY, GET_RANDOM_KEY>()
			.optional();
	kind.setting<&Self::not_found_event>("not_found_event", "Sent when there was no such entry. Empty sends nothing.")
			.only_if<&Self::operation, GET_ENTRY, HAS_KEY, FIND_KEY, REMOVE_ENTRY, GET_RANDOM_KEY>()
			.optional();
}

String SCDictionaryAction::summary_default() {
	const String table = words::picked(table_variable);
	const String at = contents::shown_or(key, "a key");
	const String what = contents::shown_or(value, operation == ADD_ALL ? "another table" : "a value");
	switch (operation) {
		case SET_ENTRY:
			return vformat("Set %s of %s to %s", at, table, what);
		case ADD_TO_ENTRY:
			return vformat("Add %s to %s of %s", what, at, table);
		case ADD_ALL:
			return vformat("Add all of %s to %s", what, table);
		case GET_ENTRY:
			return vformat("Keep %s of %s in %s", at, table, store_in);
		case HAS_KEY:
			return vformat("Is there %s in %s?%s", at, table, contents::into(store_in));
		case FIND_KEY:
			return vformat("Keep the key of %s in %s in %s", what, table, store_in);
		case REMOVE_ENTRY:
			return vformat("Remove %s from %s", at, table);
		case CLEAR:
			return vformat("Empty %s", table);
		case COUNT:
			return vformat("Keep how many are in %s in %s", table, store_in);
		case KEYS:
			return vformat("Keep the keys of %s in %s", table, store_in);
		case VALUES:
			return vformat("Keep the values of %s in %s", table, store_in);
		case GET_RANDOM_KEY:
			break;
	}
	return vformat("Keep a random key of %s in %s", table, store_in);
}
