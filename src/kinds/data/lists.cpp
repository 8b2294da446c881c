#include "kinds/data/lists.hpp"

#include "action/contents.hpp"
#include "action/words.hpp"

void SCArrayAction::describe(KindTable<Self> &kind) {
	kind.about("data", "list",
			"Work with a list held in a variable. Add what was picked up, take the top card off a deck, pick one of several spawn points, or put scores in "
			"order.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::list_variable>("list_variable", "The variable holding the list. Adding to one that does not exist yet makes it.")
			.written_if<&Self::operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, SET_ITEM, REMOVE_ITEM, REMOVE_AT, CLEAR, TAKE_FIRST, TAKE_LAST, TAKE_RANDOM,
					SHUFFLE, SORT, REVERSE>();
	kind.setting<&Self::operation>("operation",
			"What to do. Get leaves the item in the list and Take removes it, so Take Random never deals the same card twice. Has and Find look for Item, "
			"Count says how many there are, and Add All adds each item of another list.");
	kind.setting<&Self::item>("item", "The item to add, to remove or to look for, of any type. For Add All, a variable that holds another list.")
			.only_if<&Self::operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, SET_ITEM, REMOVE_ITEM, HAS, FIND>();
	kind.setting<&Self::index>("index",
				"Which place in the list. 0 is the first, 1 the second, and -1 the last, whatever the length. Insert puts the item before the one that stands "
				"there, and -1 puts it at the end.")
			.only_if<&Self::operation, INSERT, SET_ITEM, REMOVE_AT, GET_ITEM>();
	kind.setting<&Self::sort_by>("sort_by",
				"For a list of tables, nodes or resources: what to compare them by, such as score or health. Empty compares the items themselves, numbers by "
				"size and words by the alphabet.")
			.only_if<&Self::operation, SORT, GET_SMALLEST, GET_LARGEST>();
	kind.setting<&Self::largest_first>("largest_first", "Sort from the largest to the smallest, and words from Z to A.").only_if<&Self::operation, SORT>();
	kind.setting<&Self::store_in>("store_in",
				"The variable the answer goes into: the item for Get and Take, a number for Count and Find (-1 when it is not there), true or false for Has. A "
				"node or resource kept there is let go of when there is no such item.")
			.only_if<&Self::operation, GET_ITEM, GET_FIRST, GET_LAST, GET_RANDOM, GET_SMALLEST, GET_LARGEST, TAKE_FIRST, TAKE_LAST, TAKE_RANDOM, COUNT, HAS,
					FIND>()
			.optional_if<&Self::operation, TAKE_FIRST, TAKE_LAST, TAKE_RANDOM, HAS, FIND>();
	kind.setting<&Self::found_event>("found_event", "Sent when the item was there. It carries the item. Empty sends nothing.")
			.unless<&Self::operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, CLEAR, COUNT, SHUFFLE, SORT, REVERSE>()
			.optional();
	kind.setting<&Self::not_found_event>("not_found_event", "Sent when the item was not there, such as a deck that is empty. Empty sends nothing.")
			.unless<&Self::operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, CLEAR, COUNT, SHUFFLE, SORT, REVERSE>()
			.optional();
}

String SCArrayAction::summary_default() {
	const String list = words::picked(list_variable);
	const String what = contents::shown_or(item, operation == ADD_ALL ? "another list" : "an item");
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
			return vformat("Take the first off %s%s", list, contents::into(store_in));
		case TAKE_LAST:
			return vformat("Take the last off %s%s", list, contents::into(store_in));
		case TAKE_RANDOM:
			return vformat("Take a random one off %s%s", list, contents::into(store_in));
		case COUNT:
			return vformat("Keep how many are in %s in %s", list, store_in);
		case HAS:
			return vformat("Is %s in %s?%s", what, list, contents::into(store_in));
		case FIND:
			return vformat("Find %s in %s%s", what, list, contents::into(store_in));
		case SHUFFLE:
			return vformat("Shuffle %s", list);
		case SORT:
			return vformat("Sort %s%s%s", list, sort_by.is_empty() ? String() : vformat(" by %s", sort_by), largest_first ? ", largest first" : "");
		case REVERSE:
			break;
	}
	return vformat("Turn %s round", list);
}
