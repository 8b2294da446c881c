// The compiled runtime of the kind that works with lists.
//
// A list is changed as a copy and written back: the value a variable starts with is shared by every machine
// of the design, and a watcher of the variable only hears of a value that is another one.

#include "action/add_kind.hpp"
#include "action/answering.hpp"
#include "action/contents.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "action/sorting.hpp"
#include "action/values.hpp"
#include "kinds/data/lists.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using contents::Outcome;
using contents::Takes;

Array as_array(const Variant &held) {
	return held.get_type() == Variant::ARRAY ? Array(held).duplicate() : Array(UtilityFunctions::type_convert(held, Variant::ARRAY));
}

// A list that is a packed one stays one.
Variant as_held(const Array &list, const Variant &held) {
	return held.get_type() > Variant::ARRAY ? UtilityFunctions::type_convert(list, held.get_type()) : Variant(list);
}

class ArrayWork : public OnceOrRepeating<ArrayWork> {
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
		outcome.problem = vformat("%s cannot go into this list, which takes only %s, so it was left out. Change the item, or make the variable an Array that takes anything.", values::kind_in_words(item), Takes::items_of(held).in_words());
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

	static int64_t random_place(const Array &list) {
		return list.is_empty() ? -1 : UtilityFunctions::randi_range(0, list.size() - 1);
	}

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

	static Outcome do_it(const SCMachineAction *action, const Variant &held, Array &list) {
		const auto operation = setting_of<&Kind::operation>(action);
		Variant item = Kind::takes_item(operation) ? setting_of<&Kind::item>(action) : Variant();
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
					outcome.problem = vformat("Item holds %s, not a list, so there was nothing to add. Pick a variable that holds a list beside Item, or use Add for a single item.", values::kind_in_words(item));
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
				outcome.found = find_in(list, item) >= 0;
				outcome.answer = outcome.found;
				break;
			case Kind::FIND:
				outcome.answer = find_in(list, item);
				outcome.found = int64_t(outcome.answer) >= 0;
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

	static bool has_an_item(SCMachineBase *machine, const SCMachineAction *action, Kind::Operation operation) {
		if (!Kind::takes_item(operation) || setting_of<&Kind::item>(action).get_type() != Variant::NIL || !action->is_typed_in("item")) {
			return true;
		}
		verbs::warn(machine, action, "it has no Item, so it did nothing. Pick a type and a value beside Item, or a variable to read it from.");
		return false;
	}

	// What the game hears of it. May run its code at every step.
	static void tell(SCMachineBase *machine, const SCMachineAction *action, const Outcome &outcome) {
		const StillHere here(machine);
		const auto operation = setting_of<&Kind::operation>(action);
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const StringName found_event = setting_of<&Kind::found_event>(action);
		const StringName not_found_event = setting_of<&Kind::not_found_event>(action);
		const bool is_a_question = operation == Kind::HAS || operation == Kind::FIND;
		const Variant carried = is_a_question ? setting_of<&Kind::item>(action) : outcome.answer;
		if (Kind::answers(operation)) {
			const bool answered_by_event = is_a_question && !(found_event.is_empty() && not_found_event.is_empty());
			if (!outcome.found && !is_a_question) {
				answering::let_go(machine, store_in);
			} else if (Kind::may_forget_the_answer(operation) || answered_by_event) {
				answering::keep_if_named(machine, action, store_in, outcome.answer);
			} else {
				answering::keep(machine, action, store_in, outcome.answer, "the answer");
			}
		}
		if (!here || !Kind::looks(operation)) {
			return;
		}
		if (outcome.found) {
			verbs::send(machine, found_event, carried);
			return;
		}
		if (not_found_event.is_empty() && !is_a_question) {
			verbs::warn(machine, action, vformat("there is no such item in %s, so nothing came of it. Name an event under Not Found Event to do something about it.", setting_of<&Kind::list_variable>(action)));
		}
		verbs::send(machine, not_found_event);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const auto operation = setting_of<&Kind::operation>(action);
		const StringName name = setting_of<&Kind::list_variable>(action);
		if (name.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so there was no list to work with. Pick the variable holding the list beside List Variable.");
			return;
		}
		const Variant held = machine->get_value(name);
		if (!ValueKinds::is_nothing(held) && !values::is_list(held)) {
			verbs::warn(machine, action, vformat("%s holds %s, which is not a list, so it was left alone. Make it an Array in the Variables tab, or pick another under List Variable.", name, values::kind_in_words(held)));
			return;
		}
		if (!has_an_item(machine, action, operation)) {
			return;
		}
		if (!machine->has_value(name) && !Kind::makes_the_list(operation)) {
			verbs::warn(machine, action, vformat("this machine has no variable called %s, so the list counts as empty. Add it in the Variables tab, or pick another under List Variable.", name));
		}
		const StillHere here(machine);
		Array list = ValueKinds::is_nothing(held) ? Array() : as_array(held);
		const Outcome outcome = do_it(action, held, list);
		if (!here) {
			return;
		}
		if (!outcome.problem.is_empty()) {
			verbs::warn(machine, action, outcome.problem);
			return;
		}
		if (outcome.changed) {
			machine->set_value(name, as_held(list, held));
		}
		if (here) {
			tell(machine, action, outcome);
		}
	}
};

const AddKinds added = {
	add_kind<SCArrayAction, ArrayWork>(),
};

} // namespace
