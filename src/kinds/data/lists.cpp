#include "kinds/data/lists.hpp"

#include "action/action_shared.hpp"
#include "action/answering.hpp"
#include "action/showing.hpp"
#include "action/words.hpp"

namespace {

// Nothing typed in reads as what is meant by it, not as a gap.
String shown_or(const Variant &value, const char *otherwise) {
	const String text = words::text_of(value);
	return text.is_empty() ? String(otherwise) : text;
}

// A setting that ends in "variable" is no gap to the framework, since most of those may stay empty.
String picked(const StringName &variable) {
	return variable.is_empty() ? ActionShared::get().not_picked : String(variable);
}

String into(const StringName &variable) {
	return variable.is_empty() ? String() : vformat(" into %s", variable);
}

} // namespace

void SCArrayAction::describe(KindTable<SCArrayAction> &kind) {
	kind.about("data", "list", "Work with a list held in a variable. Add what was picked up, take the top card off a deck, pick one of several spawn points, or put scores in order.");
	kind.constants_of<Operation>();
	kind.setting<&SCArrayAction::list_variable>("list_variable", "The variable holding the list. Adding to one that does not exist yet makes it.");
	kind.setting<&SCArrayAction::operation>("operation", "What to do. Get leaves the item in the list and Take removes it, so Take Random never deals the same card twice. Has and Find look for Item, Count says how many there are, and Add All adds each item of another list.").relists();
	kind.setting<&SCArrayAction::item>("item", "The item to add, to remove or to look for, of any type. For Add All, a variable that holds another list.");
	kind.setting<&SCArrayAction::index>("index", "Which place in the list. 0 is the first, 1 the second, and -1 the last, whatever the length. Insert puts the item before the one that stands there, and -1 puts it at the end.");
	kind.setting<&SCArrayAction::sort_by>("sort_by", "For a list of tables, nodes or resources: what to compare them by, such as score or health. Empty compares the items themselves, numbers by size and words by the alphabet.");
	kind.setting<&SCArrayAction::largest_first>("largest_first", "Sort from the largest to the smallest, and words from Z to A.");
	kind.setting<&SCArrayAction::store_in>("store_in", "The variable the answer goes into: the item for Get and Take, a number for Count and Find (-1 when it is not there), true or false for Has. A node or resource kept there is let go of when there is no such item.");
	kind.setting<&SCArrayAction::found_event>("found_event", "Sent when the item was there. It carries the item. Empty sends nothing.");
	kind.setting<&SCArrayAction::not_found_event>("not_found_event", "Sent when the item was not there, such as a deck that is empty. Empty sends nothing.");
}

bool SCArrayAction::takes_item(Operation operation) {
	switch (operation) {
		case ADD:
		case ADD_IF_MISSING:
		case ADD_ALL:
		case INSERT:
		case SET_ITEM:
		case REMOVE_ITEM:
		case HAS:
		case FIND:
			return true;
		default:
			return false;
	}
}

bool SCArrayAction::takes_index(Operation operation) {
	return operation == INSERT || operation == SET_ITEM || operation == REMOVE_AT || operation == GET_ITEM;
}

bool SCArrayAction::compares(Operation operation) {
	return operation == SORT || operation == GET_SMALLEST || operation == GET_LARGEST;
}

bool SCArrayAction::looks(Operation operation) {
	switch (operation) {
		case SET_ITEM:
		case REMOVE_ITEM:
		case REMOVE_AT:
		case HAS:
		case FIND:
			return true;
		default:
			return operation >= GET_ITEM && operation <= TAKE_RANDOM;
	}
}

bool SCArrayAction::answers(Operation operation) {
	return operation >= GET_ITEM && operation <= FIND;
}

bool SCArrayAction::may_forget_the_answer(Operation operation) {
	return operation == TAKE_FIRST || operation == TAKE_LAST || operation == TAKE_RANDOM;
}

bool SCArrayAction::makes_the_list(Operation operation) {
	return operation <= INSERT || operation == CLEAR;
}

String SCArrayAction::summary_default() {
	const String list = picked(list_variable);
	const String what = shown_or(item, operation == ADD_ALL ? "another list" : "an item");
	switch (operation) {
		case ADD:
			return vformat("Add %s to %s", what, list);
		case ADD_IF_MISSING:
			return vformat("Add %s to %s if it is not there", what, list);
		case ADD_ALL:
			return vformat("Add all of %s to %s", what, list);
		case INSERT:
			return vformat("Put %s into %s at place %d", what, list, index);
		case SET_ITEM:
			return vformat("Put %s in place %d of %s", what, index, list);
		case REMOVE_ITEM:
			return vformat("Remove %s from %s", what, list);
		case REMOVE_AT:
			return vformat("Remove place %d from %s", index, list);
		case CLEAR:
			return vformat("Empty %s", list);
		case GET_ITEM:
			return vformat("Keep place %d of %s in %s", index, list, store_in);
		case GET_FIRST:
			return vformat("Keep the first of %s in %s", list, store_in);
		case GET_LAST:
			return vformat("Keep the last of %s in %s", list, store_in);
		case GET_RANDOM:
			return vformat("Keep a random one of %s in %s", list, store_in);
		case GET_SMALLEST:
		case GET_LARGEST: {
			const String by = sort_by.is_empty() ? String() : vformat(" %s", sort_by);
			return vformat("Keep the %s%s of %s in %s", operation == GET_LARGEST ? "largest" : "smallest", by, list, store_in);
		}
		case TAKE_FIRST:
			return vformat("Take the first off %s%s", list, into(store_in));
		case TAKE_LAST:
			return vformat("Take the last off %s%s", list, into(store_in));
		case TAKE_RANDOM:
			return vformat("Take a random one off %s%s", list, into(store_in));
		case COUNT:
			return vformat("Keep how many are in %s in %s", list, store_in);
		case HAS:
			return vformat("Is %s in %s?%s", what, list, into(store_in));
		case FIND:
			return vformat("Find %s in %s%s", what, list, into(store_in));
		case SHUFFLE:
			return vformat("Shuffle %s", list);
		case SORT:
			return vformat("Sort %s%s%s", list, sort_by.is_empty() ? String() : vformat(" by %s", sort_by), largest_first ? ", largest first" : "");
		case REVERSE:
			break;
	}
	return vformat("Turn %s round", list);
}

PackedStringArray SCArrayAction::variables_written_default() {
	const bool changes = !answers(operation) || may_forget_the_answer(operation);
	return answering::written_with(this, changes ? list_variable : StringName());
}

TypedArray<StringName> SCArrayAction::optional_names_default() {
	TypedArray<StringName> optional = Array::make(StringName("found_event"), StringName("not_found_event"));
	if (may_forget_the_answer(operation) || operation == HAS || operation == FIND) {
		optional.push_back(StringName("store_in"));
	}
	return optional;
}

void SCArrayAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(takes_item(operation), property, { "item" });
	showing::only_if(takes_index(operation), property, { "index" });
	showing::only_if(compares(operation), property, { "sort_by" });
	showing::only_if(operation == SORT, property, { "largest_first" });
	showing::only_if(answers(operation), property, { "store_in" });
	showing::only_if(looks(operation), property, { "found_event", "not_found_event" });
}

void SCDictionaryAction::describe(KindTable<SCDictionaryAction> &kind) {
	kind.about("data", "table", "Work with a table held in a variable. A table keeps values under keys, such as how many of each ore was mined, the price of everything in a shop, or who owes whom.");
	kind.constants_of<Operation>();
	kind.setting<&SCDictionaryAction::table_variable>("table_variable", "The variable holding the table. Setting an entry of one that does not exist yet makes it.");
	kind.setting<&SCDictionaryAction::operation>("operation", "What to do. Add To Entry adds to the number kept under the key, starting from nothing. Add All copies every entry of another table. Find Key looks for the key that a value is kept under. Keys and Values give a list.").relists();
	kind.setting<&SCDictionaryAction::key>("key", "The word the value is kept under, such as gold.");
	kind.setting<&SCDictionaryAction::value>("value", "The value to keep, to add or to look for, of any type. For Add All, a variable that holds another table.");
	kind.setting<&SCDictionaryAction::store_in>("store_in", "The variable the answer goes into: the value for Get Entry, a key for Find Key and Get Random Key, true or false for Has Key, a number for Count, a list for Keys and Values. A node or resource kept there is let go of when there is no such entry.");
	kind.setting<&SCDictionaryAction::found_event>("found_event", "Sent when the entry was there. It carries the value, or the key for Find Key and Get Random Key. Empty sends nothing.");
	kind.setting<&SCDictionaryAction::not_found_event>("not_found_event", "Sent when there was no such entry. Empty sends nothing.");
}

bool SCDictionaryAction::takes_key(Operation operation) {
	return operation == SET_ENTRY || operation == ADD_TO_ENTRY || operation == GET_ENTRY || operation == HAS_KEY || operation == REMOVE_ENTRY;
}

bool SCDictionaryAction::takes_value(Operation operation) {
	return operation == SET_ENTRY || operation == ADD_TO_ENTRY || operation == ADD_ALL || operation == FIND_KEY;
}

bool SCDictionaryAction::looks(Operation operation) {
	return operation == GET_ENTRY || operation == HAS_KEY || operation == FIND_KEY || operation == REMOVE_ENTRY || operation == GET_RANDOM_KEY;
}

bool SCDictionaryAction::answers(Operation operation) {
	return !changes_the_table(operation);
}

bool SCDictionaryAction::may_forget_the_answer(Operation operation) {
	return operation == HAS_KEY;
}

bool SCDictionaryAction::changes_the_table(Operation operation) {
	return operation == SET_ENTRY || operation == ADD_TO_ENTRY || operation == ADD_ALL || operation == REMOVE_ENTRY || operation == CLEAR;
}

String SCDictionaryAction::summary_default() {
	const String table = picked(table_variable);
	const String at = shown_or(key, "a key");
	const String what = shown_or(value, operation == ADD_ALL ? "another table" : "a value");
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
			return vformat("Is there %s in %s?%s", at, table, into(store_in));
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

PackedStringArray SCDictionaryAction::variables_written_default() {
	return answering::written_with(this, changes_the_table(operation) ? table_variable : StringName());
}

TypedArray<StringName> SCDictionaryAction::optional_names_default() {
	TypedArray<StringName> optional = Array::make(StringName("found_event"), StringName("not_found_event"));
	if (may_forget_the_answer(operation)) {
		optional.push_back(StringName("store_in"));
	}
	return optional;
}

void SCDictionaryAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(takes_key(operation), property, { "key" });
	showing::only_if(takes_value(operation), property, { "value" });
	showing::only_if(answers(operation), property, { "store_in" });
	showing::only_if(looks(operation), property, { "found_event", "not_found_event" });
}
