// Compiled runtimes of the kinds that work with lists and tables.
//
// A list or a table is changed as a copy and written back: the value a variable starts with is shared by
// every machine of the design, and a watcher of the variable only hears of a value that is another one.

#include "action/answering.hpp"
#include "action/repeating_native.hpp"
#include "action/shared_verbs.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data_lists.hpp"
#include "machine/value_kinds.hpp"
#include "native_files.hpp"

#include <godot_cpp/classes/script.hpp>
#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

#include <algorithm>

namespace {

// What a typed list, a packed one or a typed table takes. NIL takes anything.
struct Takes {
	int64_t type = Variant::NIL;
	StringName class_name;
	Variant script;

	static Takes items_of(const Variant &list) {
		Takes takes;
		switch (list.get_type()) {
			case Variant::ARRAY: {
				const Array typed = list;
				if (typed.is_typed()) {
					return Takes{ typed.get_typed_builtin(), typed.get_typed_class_name(), typed.get_typed_script() };
				}
				break;
			}
			case Variant::PACKED_BYTE_ARRAY:
			case Variant::PACKED_INT32_ARRAY:
			case Variant::PACKED_INT64_ARRAY:
				takes.type = Variant::INT;
				break;
			case Variant::PACKED_FLOAT32_ARRAY:
			case Variant::PACKED_FLOAT64_ARRAY:
				takes.type = Variant::FLOAT;
				break;
			case Variant::PACKED_STRING_ARRAY:
				takes.type = Variant::STRING;
				break;
			case Variant::PACKED_VECTOR2_ARRAY:
				takes.type = Variant::VECTOR2;
				break;
			case Variant::PACKED_VECTOR3_ARRAY:
				takes.type = Variant::VECTOR3;
				break;
			case Variant::PACKED_COLOR_ARRAY:
				takes.type = Variant::COLOR;
				break;
			case Variant::PACKED_VECTOR4_ARRAY:
				takes.type = Variant::VECTOR4;
				break;
			default:
				break;
		}
		return takes;
	}
	static Takes keys_of(const Dictionary &table) {
		return Takes{ table.get_typed_key_builtin(), table.get_typed_key_class_name(), table.get_typed_key_script() };
	}
	static Takes values_of(const Dictionary &table) {
		return Takes{ table.get_typed_value_builtin(), table.get_typed_value_class_name(), table.get_typed_value_script() };
	}

	// Makes the value one that goes in; false when it cannot be.
	bool fit(Variant &value) const {
		if (type == Variant::NIL) {
			return true;
		}
		if (type == Variant::OBJECT) {
			return fits_object(value);
		}
		const Variant sample = UtilityFunctions::type_convert(Variant(), type);
		if (!values::can_fit(sample, value)) {
			return false;
		}
		value = values::fitted_to(sample, value);
		return value.get_type() == type;
	}

	String in_words() const {
		return type == Variant::OBJECT && !class_name.is_empty() ? String(class_name) : values::kind_in_words(UtilityFunctions::type_convert(Variant(), type));
	}

private:
	bool fits_object(Variant &value) const {
		if (ValueKinds::is_nothing(value)) {
			value = Variant();
			return true;
		}
		const Object *object = value.get_type() == Variant::OBJECT ? value.get_validated_object() : nullptr;
		if (object == nullptr || (!class_name.is_empty() && !object->is_class(class_name))) {
			return false;
		}
		const Ref<Script> wanted = script;
		if (wanted.is_null()) {
			return true;
		}
		for (Ref<Script> at = object->get_script(); at.is_valid(); at = at->get_base_script()) {
			if (at == wanted) {
				return true;
			}
		}
		return false;
	}
};

// What sorting goes by: nothing first, then numbers, words and places, then all that has no order.
struct SortKey {
	enum Rank {
		NOTHING,
		NUMBER,
		TEXT,
		PLACE,
		NO_ORDER,
	};
	Rank rank = NO_ORDER;
	double number = 0.0;
	String text;
	Variant item;

	SortKey() = default;
	SortKey(const Variant &compared, const Variant &of_item) :
			item(of_item) {
		switch (compared.get_type()) {
			case Variant::BOOL:
			case Variant::INT:
			case Variant::FLOAT:
				number = values::as_number(compared);
				// What is no number compares as neither smaller nor larger, which no sorting can work with.
				rank = Math::is_nan(number) ? NO_ORDER : NUMBER;
				break;
			case Variant::STRING:
			case Variant::STRING_NAME:
				rank = TEXT;
				text = compared;
				break;
			case Variant::VECTOR2:
			case Variant::VECTOR2I:
			case Variant::VECTOR3:
			case Variant::VECTOR3I:
				rank = PLACE;
				number = places::as_vector3(compared).length();
				break;
			default:
				if (ValueKinds::is_nothing(compared)) {
					rank = NOTHING;
				} else if (compared.get_type() == Variant::OBJECT) {
					rank = TEXT;
					text = words::text_of(compared);
				}
				break;
		}
	}

	bool operator<(const SortKey &other) const {
		if (rank != other.rank) {
			return rank < other.rank;
		}
		return rank == TEXT ? text.naturalnocasecmp_to(other.text) < 0 : number < other.number;
	}
};

using SortKeys = LocalVector<SortKey>;

// Reading a node's or a resource's property may run a game's code.
SortKeys sort_keys(const Array &list, const String &by) {
	SortKeys keys;
	for (int64_t i = 0; i < list.size(); i++) {
		const Variant item = list[i];
		Variant compared = item;
		if (!by.is_empty() && item.get_type() == Variant::DICTIONARY) {
			compared = Dictionary(item).get(by, Variant());
		} else if (!by.is_empty() && item.get_type() == Variant::OBJECT) {
			const Object *object = item.get_validated_object();
			compared = object != nullptr ? object->get(by) : Variant();
		}
		keys.push_back(SortKey(compared, item));
	}
	return keys;
}

// What one operation on a list or a table comes to.
struct Outcome {
	bool changed = false;
	bool found = true;
	Variant answer;
	// Set when it could not be done at all.
	String problem;
};

Array as_array(const Variant &held) {
	return held.get_type() == Variant::ARRAY ? Array(held).duplicate() : Array(UtilityFunctions::type_convert(held, Variant::ARRAY));
}

// A list that is a packed one stays one.
Variant as_held(const Array &list, const Variant &held) {
	return held.get_type() > Variant::ARRAY ? UtilityFunctions::type_convert(list, held.get_type()) : Variant(list);
}

class List : public RepeatingNative {
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
		const SortKeys keys = sort_keys(list, by);
		const SortKey *best = nullptr;
		for (const SortKey &key : keys) {
			if (best == nullptr || (largest ? *best < key : key < *best)) {
				best = &key;
			}
		}
		outcome.found = best != nullptr;
		if (best != nullptr) {
			outcome.answer = best->item;
		}
		return outcome;
	}

	static void sort(Array &list, const String &by, bool largest_first) {
		SortKeys keys = sort_keys(list, by);
		const auto before = [largest_first](const SortKey &a, const SortKey &b) { return largest_first ? b < a : a < b; };
		if (keys.size() > 1) {
			std::stable_sort(keys.ptr(), keys.ptr() + keys.size(), before);
		}
		list.clear();
		for (const SortKey &key : keys) {
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

protected:
	void work(SCMachineBase *machine, SCMachineAction *action, int) override {
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

class Table : public RepeatingNative {
	using Kind = SCDictionaryAction;

	// A key is typed in as a word; a table made by a script may go by numbers.
	static Variant key_in(const Dictionary &table, const String &key) {
		if (!table.has(key)) {
			if (key.is_valid_int() && table.has(key.to_int())) {
				return key.to_int();
			}
			if (key.is_valid_float() && table.has(key.to_float())) {
				return key.to_float();
			}
			if (key.is_valid_int() && table.get_typed_key_builtin() == Variant::INT) {
				return key.to_int();
			}
		}
		return key;
	}

	static bool put(Dictionary &table, Variant key, Variant value, Outcome &outcome) {
		const Takes keys = Takes::keys_of(table);
		const Takes held = Takes::values_of(table);
		if (!keys.fit(key)) {
			outcome.problem = vformat("this table takes only %s as a key, so %s was left out. Change the key, or make the variable a Dictionary that takes anything.", keys.in_words(), words::text_of(key));
		} else if (!held.fit(value)) {
			outcome.problem = vformat("%s cannot go into this table, which takes only %s, so it was left out. Change the value, or make the variable a Dictionary that takes anything.", values::kind_in_words(value), held.in_words());
		} else {
			table[key] = value;
			outcome.changed = true;
		}
		return outcome.changed;
	}

	static Outcome add_to(Dictionary &table, const Variant &key, const Variant &value) {
		Outcome outcome;
		const Variant before = table.get(key, Variant());
		Variant sum = value;
		bool valid = true;
		if (!ValueKinds::is_nothing(before)) {
			Variant::evaluate(Variant::OP_ADD, before, value, sum, valid);
		}
		if (!valid || !(values::is_number(sum) || sum.get_type() == Variant::VECTOR2 || sum.get_type() == Variant::VECTOR3)) {
			outcome.problem = vformat("%s cannot be added to %s, so the entry %s was left as it is. Add a number to a number.", values::kind_in_words(value), values::kind_in_words(before), words::text_of(key));
			return outcome;
		}
		put(table, key, sum, outcome);
		return outcome;
	}

	static Outcome do_it(const SCMachineAction *action, const Variant &held, Dictionary &table) {
		const auto operation = setting_of<&Kind::operation>(action);
		const Variant key = key_in(table, setting_of<&Kind::key>(action));
		const Variant value = Kind::takes_value(operation) ? setting_of<&Kind::value>(action) : Variant();
		Outcome outcome;
		switch (operation) {
			case Kind::SET_ENTRY:
				put(table, key, value, outcome);
				break;
			case Kind::ADD_TO_ENTRY:
				return add_to(table, key, value);
			case Kind::ADD_ALL: {
				if (value.get_type() != Variant::DICTIONARY) {
					outcome.problem = vformat("Value holds %s, not a table, so there was nothing to add. Pick a variable that holds a table beside Value.", values::kind_in_words(value));
					return outcome;
				}
				const Dictionary added = value;
				const Array keys = added.keys();
				for (int64_t i = 0; i < keys.size() && outcome.problem.is_empty(); i++) {
					put(table, keys[i], added[keys[i]], outcome);
				}
				break;
			}
			case Kind::GET_ENTRY:
				outcome.found = table.has(key);
				outcome.answer = table.get(key, Variant());
				break;
			case Kind::HAS_KEY:
				outcome.found = table.has(key);
				outcome.answer = outcome.found;
				break;
			case Kind::FIND_KEY: {
				outcome.found = false;
				const Array keys = table.keys();
				for (int64_t i = 0; i < keys.size() && !outcome.found; i++) {
					outcome.found = values::same_value(table[keys[i]], value);
					outcome.answer = outcome.found ? Variant(keys[i]) : Variant();
				}
				break;
			}
			case Kind::REMOVE_ENTRY:
				outcome.found = table.has(key);
				outcome.answer = table.get(key, Variant());
				outcome.changed = table.erase(key);
				break;
			case Kind::CLEAR:
				outcome.changed = !table.is_empty() || ValueKinds::is_nothing(held);
				table.clear();
				break;
			case Kind::COUNT:
				outcome.answer = table.size();
				break;
			case Kind::KEYS:
				outcome.answer = table.keys();
				break;
			case Kind::VALUES:
				outcome.answer = table.values();
				break;
			case Kind::GET_RANDOM_KEY:
				outcome.found = !table.is_empty();
				if (outcome.found) {
					outcome.answer = table.keys()[UtilityFunctions::randi_range(0, table.size() - 1)];
				}
				break;
		}
		return outcome;
	}

	static bool is_set_up(SCMachineBase *machine, const SCMachineAction *action, Kind::Operation operation) {
		if (Kind::takes_key(operation) && setting_of<&Kind::key>(action).is_empty()) {
			verbs::warn(machine, action, "it has no Key, so it did nothing. Type in the word that the value is kept under beside Key.");
			return false;
		}
		if (Kind::takes_value(operation) && setting_of<&Kind::value>(action).get_type() == Variant::NIL && action->is_typed_in("value")) {
			verbs::warn(machine, action, "it has no Value, so it did nothing. Pick a type and a value beside Value, or a variable to read it from.");
			return false;
		}
		return true;
	}

	static void tell(SCMachineBase *machine, const SCMachineAction *action, const Outcome &outcome) {
		const StillHere here(machine);
		const auto operation = setting_of<&Kind::operation>(action);
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const StringName found_event = setting_of<&Kind::found_event>(action);
		const StringName not_found_event = setting_of<&Kind::not_found_event>(action);
		const bool is_a_question = operation == Kind::HAS_KEY;
		if (Kind::answers(operation)) {
			if (!outcome.found && !is_a_question) {
				answering::let_go(machine, store_in);
			} else if (is_a_question && !(found_event.is_empty() && not_found_event.is_empty())) {
				answering::keep_if_named(machine, action, store_in, outcome.answer);
			} else {
				answering::keep(machine, action, store_in, outcome.answer, "the answer");
			}
		}
		if (!here || !Kind::looks(operation)) {
			return;
		}
		if (outcome.found) {
			const Variant carried = is_a_question ? Variant(setting_of<&Kind::key>(action)) : outcome.answer;
			verbs::send(machine, found_event, carried);
			return;
		}
		if (not_found_event.is_empty() && !is_a_question) {
			verbs::warn(machine, action, vformat("there is no such entry in %s, so nothing came of it. Name an event under Not Found Event to do something about it.", setting_of<&Kind::table_variable>(action)));
		}
		verbs::send(machine, not_found_event);
	}

protected:
	void work(SCMachineBase *machine, SCMachineAction *action, int) override {
		const auto operation = setting_of<&Kind::operation>(action);
		const StringName name = setting_of<&Kind::table_variable>(action);
		if (name.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so there was no table to work with. Pick the variable holding the table beside Table Variable.");
			return;
		}
		const Variant held = machine->get_value(name);
		if (!ValueKinds::is_nothing(held) && held.get_type() != Variant::DICTIONARY) {
			verbs::warn(machine, action, vformat("%s holds %s, which is not a table, so it was left alone. Make it a Dictionary in the Variables tab, or pick another under Table Variable.", name, values::kind_in_words(held)));
			return;
		}
		if (!is_set_up(machine, action, operation)) {
			return;
		}
		const bool makes_the_table = Kind::changes_the_table(operation) && operation != Kind::REMOVE_ENTRY;
		if (!machine->has_value(name) && !makes_the_table) {
			verbs::warn(machine, action, vformat("this machine has no variable called %s, so the table counts as empty. Add it in the Variables tab, or pick another under Table Variable.", name));
		}
		const StillHere here(machine);
		Dictionary table = ValueKinds::is_nothing(held) ? Dictionary() : Dictionary(held).duplicate();
		const Outcome outcome = do_it(action, held, table);
		if (!outcome.problem.is_empty()) {
			verbs::warn(machine, action, outcome.problem);
		}
		if (outcome.changed) {
			machine->set_value(name, table);
		}
		if (here && outcome.problem.is_empty()) {
			tell(machine, action, outcome);
		}
	}
};

} // namespace

void register_data_list_natives() {
	add_native<SCArrayAction, List>();
	add_native<SCDictionaryAction, Table>();
}
