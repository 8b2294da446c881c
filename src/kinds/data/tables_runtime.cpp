// The compiled runtime of the kind that works with tables. A table is changed as a copy and written back, as
// lists are.

#include "action/add_kind.hpp"
#include "action/answering.hpp"
#include "action/contents.hpp"
#include "action/shared_verbs.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/lists.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using contents::Outcome;
using contents::Takes;

class DictionaryWork : public OnceOrRepeating<DictionaryWork> {
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
		Variant sum;
		bool valid = true;
		if (ValueKinds::is_nothing(before)) {
			sum = value;
		} else {
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

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
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

const AddKinds added = {
	add_kind<SCDictionaryAction, DictionaryWork>(),
};

} // namespace
