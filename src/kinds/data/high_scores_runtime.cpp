// The compiled runtime of High Score Table.

#include "action/add_kind.hpp"
#include "action/checked.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/high_scores.hpp"
#include "machine/native_names.hpp"
#include "machine/own_copy.hpp"

#include <godot_cpp/variant/packed_string_array.hpp>

#include <cmath>

namespace {

using Kind = SCHighScoreTableAction;

enum Told {
	NOWHERE_TO_WRITE,
};

// A row's keys are texts, as a table typed in by hand and one out of a saved file have them.
struct Names {
	String place = "place";
	String name = "name";
	String score = "score";
};

const Names &names() {
	return NativeNames::of<Names>();
}

bool is_row(const Variant &held) {
	if (held.get_type() != Variant::DICTIONARY) {
		return false;
	}
	const Dictionary row = held;
	return row.has(names().name) && row.has(names().score);
}

// A list of its own, without what is no row. It stays a typed list if it was one that rows go into.
Array rows_of(const Variant &held) {
	if (held.get_type() != Variant::ARRAY) {
		return Array();
	}
	const Array list = held;
	const auto type = Variant::Type(list.get_typed_builtin());
	if (type != Variant::NIL && type != Variant::DICTIONARY) {
		return Array();
	}
	Array rows = own_copy(list);
	for (int64_t i = rows.size() - 1; i >= 0; i--) {
		if (!is_row(rows[i])) {
			rows.remove_at(i);
		}
	}
	return rows;
}

double score_of(const Variant &held) {
	return values::as_number(Dictionary(held)[names().score]);
}

// Behind those that are as good.
int64_t place_for(const Array &rows, double score, bool smallest_is_best) {
	for (int64_t i = 0; i < rows.size(); i++) {
		const double there = score_of(rows[i]);
		if (smallest_is_best ? there > score : there < score) {
			return i;
		}
	}
	return rows.size();
}

class HighScoreTable : public OnceOrRepeating<HighScoreTable> {
	static bool is_a_score(SCMachineBase *machine, const SCMachineAction *action, double score) {
		if (std::isfinite(score)) {
			return true;
		}
		verbs::warn(machine, action,
				"Score holds a number that is none or is endless, as after a division by zero, so it is in no place. Look at the variable that it reads.");
		return false;
	}

	static void enter_score(SCMachineBase *machine, SCMachineAction *action, const StringName &variable, bool puts_it_in) {
		const double score = setting_of<&Kind::score>(action);
		const int64_t keep = MAX(setting_of<&Kind::keep>(action), int64_t(1));
		const bool smallest = checked::choice<&Kind::best_is>(machine, action, Kind::LARGEST) == Kind::SMALLEST;
		Array rows = rows_of(machine->get_value(variable));
		const int64_t place = is_a_score(machine, action, score) ? place_for(rows, score, smallest) : keep;
		const bool makes_it = place < keep;
		const StillHere here(machine);
		if (makes_it && puts_it_in) {
			Dictionary row;
			row[names().name] = setting_of<&Kind::player_name>(action);
			row[names().score] = score;
			rows.insert(place, row);
			if (rows.size() > keep) {
				rows.resize(keep);
			}
			machine->set_value(variable, rows);
		}
		const int64_t told = makes_it ? place + 1 : 0;
		if (here) {
			verbs::keep_if_named<&Kind::store_place_in>(machine, action, told);
		}
		if (here) {
			verbs::send_either<&Kind::made_it_event, &Kind::missed_event>(machine, action, makes_it, told);
		}
	}

	// A brace that a name or a score brings along is not filled in once more.
	static String written(SCMachineBase *machine, const SCMachineAction *action, const Array &rows) {
		const String line = setting_of<&Kind::line>(action);
		PackedStringArray lines;
		Dictionary also;
		for (int64_t i = 0; i < rows.size(); i++) {
			const Dictionary row = rows[i];
			also[names().place] = i + 1;
			also[names().name] = row[names().name];
			also[names().score] = row[names().score];
			lines.push_back(words::fill_in(line, machine, nullptr, also));
		}
		return String("\n").join(lines);
	}

	static void write_out(SCMachineBase *machine, const SCMachineAction *action, const StringName &variable) {
		if (setting_of<&Kind::store_text_in>(action).is_empty()) {
			verbs::warn_whole(machine, action, NOWHERE_TO_WRITE,
					vformat("High Score Table on %s: Write Out has nowhere to put the text, so it was lost. Pick a variable under Store Text In.",
							machine->name_in_messages()));
			return;
		}
		const Array rows = rows_of(machine->get_value(variable));
		verbs::keep<&Kind::store_text_in>(
				machine, action, rows.is_empty() ? setting_of<&Kind::when_empty>(action) : written(machine, action, rows), "the text");
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName variable = verbs::variable_or_warn<&Kind::table_variable>(machine, action, "there is no table to work with");
		if (variable.is_empty()) {
			return;
		}
		switch (checked::choice<&Kind::operation>(machine, action, Kind::WOULD_ENTER)) {
			case Kind::ENTER:
				enter_score(machine, action, variable, true);
				break;
			case Kind::WOULD_ENTER:
				enter_score(machine, action, variable, false);
				break;
			case Kind::WRITE_OUT:
				write_out(machine, action, variable);
				break;
			case Kind::CLEAR: {
				Array rows = rows_of(machine->get_value(variable));
				rows.clear();
				machine->set_value(variable, rows);
				break;
			}
		}
	}
};

const AddKinds added = {
	add_kind<SCHighScoreTableAction, HighScoreTable>(),
};

} // namespace
