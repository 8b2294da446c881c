// The compiled runtime of the kind that works with lists.

#include "action/add_kind.hpp"
#include "action/changes_contents.hpp"
#include "action/sorting.hpp"
#include "action/values.hpp"
#include "kinds/data/lists.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using contents::Outcome;
using contents::Takes;

Array as_array(const Variant &held) {
	return held.get_type() == Variant::ARRAY ? Array(held).duplicate() : Array(UtilityFunctions::type_convert(held, Variant::ARRAY));
}

class ArrayWork : public ChangesContents<ArrayWork, SCArrayAction, Array, &SCArrayAction::list_variable> {
	using Kind = SCArrayAction;

	static int64_t find_in(const Array &list, const Variant &item) {
		for (int64_t i = 0; i < list.size(); i++) {
			if (values::same_value(list[i], item)) {
				return i;
			}
		}
		return -1;
	}

	static Outcome refused(const Variant &held, const Variant &item) {
		Outcome outcome;
		outcome.problem = vformat(
				"%s cannot go into this list, which takes only %s, so it was left out. Change the item, or make the variable an Array that takes anything.",
				values::kind_in_words(item), Takes::items_of(held).in_words());
		return outcome;
	}

	// Takes or only gets the item at a place.
	static Outcome item_at(Array &list, int64_t place, bool take) {
		Outcome outcome;
		outcome.found = place >= 0 && place < list.size();
		if (outcome.found) {
			outcome.answer = list[place];
			outcome.changed = take;
			if (take) {
				list.remove_at(place);
			}
		}
		return outcome;
	}

	static int64_t random_place(const Array &list) { return list.is_empty() ? -1 : UtilityFunctions::randi_range(0, list.size() - 1); }

	static Outcome extreme(const Array &list, const String &by, bool largest) {
		Outcome outcome;
		const LocalVector<sorting::Key> keys = sorting::keys_of(list, by);
		const sorting::Key *best = sorting::extreme(keys, largest);
		outcome.found = best != nullptr;
		outcome.answer = best != nullptr ? best->item : Variant();
		return outcome;
	}

	static void sort(Array &list, const String &by, bool largest_first) {
		LocalVector<sorting::Key> keys = sorting::keys_of(list, by);
		sorting::sort(keys, largest_first);
		list.clear();
		for (const sorting::Key &key : keys) {
			list.push_back(key.item);
		}
	}

public:
	static constexpr const char *NOUN = "list";
	static constexpr const char *A_TYPE = "an Array";
	static constexpr const char *ITEM = "item";

	static bool is_one(const Variant &held) { return values::is_list(held); }
	static Array copy_of(const Variant &held) { return as_array(held); }
	// A list that is a packed one stays one.
	static Variant as_held(const Array &list, const Variant &held) {
		return held.get_type() > Variant::ARRAY ? UtilityFunctions::type_convert(list, held.get_type()) : Variant(list);
	}

	static bool is_set_up(SCMachineBase *machine, const SCMachineAction *action) {
		if (!verbs::applies<&Kind::item>(action) || contents::is_given<&Kind::item>(action)) {
			return true;
		}
		verbs::warn(machine, action, "it has no Item, so it did nothing. Pick a type and a value beside Item, or a variable to read it from.");
		return false;
	}

	static bool makes_one(const SCMachineAction *action) {
		const auto operation = setting_of<&Kind::operation>(action);
		return operation <= Kind::INSERT || operation == Kind::CLEAR;
	}

	static Outcome changed(const SCMachineAction *action, const Variant &held, Array &list) {
		const auto operation = setting_of<&Kind::operation>(action);
		Variant item = contents::own_value<&Kind::item>(action);
		const Takes takes = Takes::items_of(held);
		int64_t place = setting_of<&Kind::index>(action);
		if (place < 0) {
			place += list.size() + (operation == Kind::INSERT ? 1 : 0);
		}
		Outcome outcome;
		switch (operation) {
			case Kind::ADD_IF_MISSING:
				if (find_in(list, item) >= 0) {
					return outcome;
				}
				[[fallthrough]];
			case Kind::ADD:
				if (!takes.fit(item)) {
					return refused(held, item);
				}
				list.push_back(item);
				outcome.changed = true;
				break;
			case Kind::ADD_ALL: {
				if (!values::is_list(item)) {
					outcome.problem = vformat("Item holds %s, not a list, so there was nothing to add. Pick a variable that holds a list beside Item, or use "
											  "Add for a single item.",
							values::kind_in_words(item));
					return outcome;
				}
				const Array added = as_array(item);
				for (int64_t i = 0; i < added.size(); i++) {
					Variant one = added[i];
					if (!takes.fit(one)) {
						return refused(held, one);
					}
					list.push_back(one);
				}
				outcome.changed = !added.is_empty();
				break;
			}
			case Kind::INSERT:
				if (!takes.fit(item)) {
					return refused(held, item);
				}
				list.insert(CLAMP(place, int64_t(0), list.size()), item);
				outcome.changed = true;
				break;
			case Kind::SET_ITEM:
				outcome.found = place >= 0 && place < list.size();
				if (outcome.found) {
					if (!takes.fit(item)) {
						return refused(held, item);
					}
					list[place] = item;
					outcome.changed = true;
					outcome.answer = item;
				}
				break;
			case Kind::REMOVE_ITEM:
				return item_at(list, find_in(list, item), true);
			case Kind::REMOVE_AT:
				return item_at(list, place, true);
			case Kind::CLEAR:
				outcome.changed = !list.is_empty() || ValueKinds::is_nothing(held);
				list.clear();
				break;
			case Kind::GET_ITEM:
				return item_at(list, place, false);
			case Kind::GET_FIRST:
				return item_at(list, 0, false);
			case Kind::GET_LAST:
				return item_at(list, list.size() - 1, false);
			case Kind::GET_RANDOM:
				return item_at(list, random_place(list), false);
			case Kind::GET_SMALLEST:
			case Kind::GET_LARGEST:
				return extreme(list, setting_of<&Kind::sort_by>(action), operation == Kind::GET_LARGEST);
			case Kind::TAKE_FIRST:
				return item_at(list, 0, true);
			case Kind::TAKE_LAST:
				return item_at(list, list.size() - 1, true);
			case Kind::TAKE_RANDOM:
				return item_at(list, random_place(list), true);
			case Kind::COUNT:
				outcome.answer = list.size();
				break;
			case Kind::HAS:
			case Kind::FIND:
				place = find_in(list, item);
				outcome.tell_whether(place >= 0, item, operation == Kind::HAS ? Variant(place >= 0) : Variant(place));
				break;
			case Kind::SHUFFLE:
				list.shuffle();
				outcome.changed = true;
				break;
			case Kind::SORT:
				sort(list, setting_of<&Kind::sort_by>(action), setting_of<&Kind::largest_first>(action));
				outcome.changed = true;
				break;
			case Kind::REVERSE:
				list.reverse();
				outcome.changed = true;
				break;
		}
		return outcome;
	}
};

const AddKinds added = {
	add_kind<SCArrayAction, ArrayWork>(),
};

} // namespace
