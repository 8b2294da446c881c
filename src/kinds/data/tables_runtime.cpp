// The compiled runtime of the kind that works with tables.

#include "action/add_kind.hpp"
#include "action/changes_contents.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/tables.hpp"

#include <godot_cpp/variant/utility_functions.hpp>

namespace {

using contents::Outcome;
using contents::Takes;

class DictionaryWork : public ChangesContents<DictionaryWork, SCDictionaryAction, Dictionary, &SCDictionaryAction::table_variable> {
	using Kind = SCDictionaryAction;

	// A table with a type cannot even be asked for a key of another.
	static bool holds(const Dictionary &table, Variant key) { return Takes::keys_of(table).fit(key) && table.has(key); }

	// A key is typed in as a word; a table made by a script may go by numbers.
	static Variant key_in(const Dictionary &table, const String &key) {
		const Takes keys = Takes::keys_of(table);
		const Variant spellings[] = { key, key.is_valid_int() ? Variant(key.to_int()) : Variant(key),
			key.is_valid_float() ? Variant(key.to_float()) : Variant(key) };
		Variant fresh;
		for (Variant spelling : spellings) {
			if (!keys.fit(spelling)) {
				continue;
			}
			if (table.has(spelling)) {
				return spelling;
			}
			fresh = fresh.get_type() == Variant::NIL ? spelling : fresh;
		}
		return fresh.get_type() == Variant::NIL ? Variant(key) : fresh;
	}

	static bool put(Dictionary &table, Variant key, Variant value, Outcome &outcome) {
		const Takes keys = Takes::keys_of(table);
		const Takes held = Takes::values_of(table);
		if (!keys.fit(key)) {
			outcome.problem =
					vformat("this table takes only %s as a key, so %s was left out. Change the key, or make the variable a Dictionary that takes anything.",
							keys.in_words(), words::text_of(key));
		} else if (!held.fit(value)) {
			outcome.problem = vformat("%s cannot go into this table, which takes only %s, so it was left out. Change the value, or make the variable a "
									  "Dictionary that takes anything.",
					values::kind_in_words(value), held.in_words());
		} else {
			table[key] = value;
			outcome.changed = true;
		}
		return outcome.changed;
	}

	static Outcome add_to(Dictionary &table, const Variant &key, const Variant &value) {
		Outcome outcome;
		const Variant before = holds(table, key) ? table.get(key, Variant()) : Variant();
		Variant sum;
		bool valid = true;
		if (ValueKinds::is_nothing(before)) {
			sum = value;
		} else {
			Variant::evaluate(Variant::OP_ADD, before, value, sum, valid);
		}
		if (!valid || !(values::is_number(sum) || sum.get_type() == Variant::VECTOR2 || sum.get_type() == Variant::VECTOR3)) {
			outcome.problem = vformat("%s cannot be added to %s, so the entry %s was left as it is. Add a number to a number.", values::kind_in_words(value),
					values::kind_in_words(before), words::text_of(key));
			return outcome;
		}
		put(table, key, sum, outcome);
		return outcome;
	}

public:
	static constexpr const char *NOUN = "table";
	static constexpr const char *A_TYPE = "a Dictionary";
	static constexpr const char *ITEM = "entry";

	static bool is_one(const Variant &held) { return held.get_type() == Variant::DICTIONARY; }
	static Dictionary copy_of(const Variant &held) { return Dictionary(held).duplicate(); }
	static Variant as_held(const Dictionary &table, const Variant &) { return table; }

	static bool is_set_up(SCMachineBase *machine, const SCMachineAction *action) {
		if (verbs::applies<&Kind::key>(action) && setting_of<&Kind::key>(action).is_empty()) {
			verbs::warn(machine, action, "it has no Key, so it did nothing. Type in the word that the value is kept under beside Key.");
			return false;
		}
		if (verbs::applies<&Kind::value>(action) && !contents::is_given<&Kind::value>(action)) {
			verbs::warn(machine, action, "it has no Value, so it did nothing. Pick a type and a value beside Value, or a variable to read it from.");
			return false;
		}
		return true;
	}

	static bool makes_one(const SCMachineAction *action) {
		const auto operation = setting_of<&Kind::operation>(action);
		return operation <= Kind::ADD_ALL || operation == Kind::CLEAR;
	}

	static Outcome changed(const SCMachineAction *action, const Variant &held, Dictionary &table) {
		const auto operation = setting_of<&Kind::operation>(action);
		const Variant key = key_in(table, setting_of<&Kind::key>(action));
		const Variant value = contents::own_value<&Kind::value>(action);
		Outcome outcome;
		switch (operation) {
			case Kind::SET_ENTRY:
				put(table, key, value, outcome);
				break;
			case Kind::ADD_TO_ENTRY:
				return add_to(table, key, value);
			case Kind::ADD_ALL: {
				if (value.get_type() != Variant::DICTIONARY) {
					outcome.problem = vformat("Value holds %s, not a table, so there was nothing to add. Pick a variable that holds a table beside Value.",
							values::kind_in_words(value));
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
				outcome.found = holds(table, key);
				outcome.answer = outcome.found ? table.get(key, Variant()) : Variant();
				break;
			case Kind::HAS_KEY:
				outcome.tell_whether(holds(table, key), setting_of<&Kind::key>(action), holds(table, key));
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
				outcome.found = holds(table, key);
				outcome.answer = outcome.found ? table.get(key, Variant()) : Variant();
				outcome.changed = outcome.found && table.erase(key);
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
};

const AddKinds added = {
	add_kind<SCDictionaryAction, DictionaryWork>(),
};

} // namespace
