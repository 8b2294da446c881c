// Compiled runtimes of the kinds that work with numbers and chance. Everything random follows the engine's
// own random numbers, so that one seed holds for all of it.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "action/words.hpp"
#include "kinds/data/numbers.hpp"
#include "machine/native_names.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/core/math.hpp>
#include <godot_cpp/variant/utility_functions.hpp>

namespace {

struct Range {
	double lowest = 0.0;
	double highest = 0.0;

	// Ends that are the wrong way round still enclose a range.
	Range(SCMachineBase *machine, const SCMachineAction *action, double low, double high) : lowest(MIN(low, high)), highest(MAX(low, high)) {
		if (low > high) {
			verbs::warn(machine, action,
					vformat("Lowest is %s, which is more than Highest, %s, so the two were taken the other way round. Swap them.", words::number(low),
							words::number(high)));
		}
	}
	// The whole numbers inside; a range without one has the nearest there is.
	int64_t lowest_whole() const {
		const double low = Math::ceil(lowest);
		return ValueKinds::whole_part(low > highest ? Math::round(lowest) : low);
	}
	int64_t highest_whole() const { return MAX(lowest_whole(), ValueKinds::whole_part(Math::floor(highest))); }
};

struct ClampNames {
	StringName at_end = "at_end";
};

class Clamp : public OnceOrRepeating<Clamp> {
	using Kind = SCClampAction;

	enum End {
		INSIDE,
		AT_LOWEST,
		AT_HIGHEST,
	};

	static Variant clamped(const Variant &held, const Range &range, End &end) {
		if (held.get_type() == Variant::INT) {
			const int64_t low = range.lowest_whole();
			const int64_t high = range.highest_whole();
			const int64_t number = CLAMP(int64_t(held), low, high);
			end = number == low ? AT_LOWEST : (number == high ? AT_HIGHEST : INSIDE);
			return number;
		}
		const double number = CLAMP(double(held), range.lowest, range.highest);
		end = number <= range.lowest ? AT_LOWEST : (number >= range.highest ? AT_HIGHEST : INSIDE);
		return number;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StringName name = verbs::variable_or_warn<&Kind::variable_name>(machine, action, "it changed nothing");
		if (name.is_empty()) {
			return;
		}
		const Variant held = machine->get_value(name);
		if (!values::is_number(held)) {
			if (machine->has_value(name)) {
				verbs::warn(machine, action,
						vformat("%s holds %s, which is not a number, so it was left alone. Make it a float or an int under Variables, or pick another "
								"under Variable Name.",
								name, values::kind_in_words(held)));
			} else {
				verbs::warn_no_such_variable<&Kind::variable_name>(machine, action, "there was nothing to keep inside the range");
			}
			return;
		}
		const Range range(machine, action, setting_of<&Kind::lowest>(action), setting_of<&Kind::highest>(action));
		End end = INSIDE;
		const Variant number = clamped(held, range, end);
		const StringName event =
				end == INSIDE ? StringName() : (end == AT_LOWEST ? setting_of<&Kind::lowest_event>(action) : setting_of<&Kind::highest_event>(action));
		// Noted before anything is written: a watcher may be this very action.
		Dictionary slot = machine->slot(index);
		const StringName &at_end = NativeNames::of<ClampNames>().at_end;
		const bool is_new = int(slot.get(at_end, int(INSIDE))) != end;
		slot[at_end] = int(end);
		const StillHere here(machine);
		if (number != held) {
			machine->set_value(name, number);
		}
		if (here && is_new) {
			verbs::send(machine, event, number);
		}
	}
};

class RandomNumber : public OnceOrRepeating<RandomNumber> {
	using Kind = SCRandomNumberAction;

	static int64_t whole(const Range &range, const Variant &but) {
		const int64_t low = range.lowest_whole();
		const int64_t high = range.highest_whole();
		const bool avoids = values::is_number(but) && double(but) >= double(low) && double(but) <= double(high) && high > low;
		if (!avoids) {
			return UtilityFunctions::randi_range(low, high);
		}
		// One fewer to choose from, and those from the avoided one on move up by one.
		const int64_t number = UtilityFunctions::randi_range(low, high - 1);
		return number < ValueKinds::whole_part(but) ? number : number + 1;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName store_in = setting_of<&Kind::store_in>(action);
		const Range range(machine, action, setting_of<&Kind::lowest>(action), setting_of<&Kind::highest>(action));
		const Variant held = store_in.is_empty() ? Variant() : machine->get_value(store_in);
		const bool asked_for_whole = setting_of<&Kind::whole_number>(action);
		const bool avoids = asked_for_whole && setting_of<&Kind::never_twice_the_same>(action);
		const bool is_whole = asked_for_whole || held.get_type() == Variant::INT;
		const Variant number =
				is_whole ? Variant(whole(range, avoids ? held : Variant())) : Variant(UtilityFunctions::randf_range(range.lowest, range.highest));
		verbs::keep<&Kind::store_in>(machine, action, number, "the number");
	}
};

class RandomSeed : public OnceOrRepeating<RandomSeed> {
	using Kind = SCRandomSeedAction;

	static int64_t seed_of(SCMachineBase *machine, const SCMachineAction *action) {
		switch (setting_of<&Kind::from>(action)) {
			case Kind::A_TEXT: {
				const String text = setting_of<&Kind::text>(action);
				if (text.is_empty()) {
					verbs::warn(machine, action, "it has no Text, so every game gets the same seed. Type some words in beside Text, or pick The Clock.");
				}
				return text.hash();
			}
			case Kind::THE_CLOCK:
				UtilityFunctions::randomize();
				return UtilityFunctions::randi();
			case Kind::A_NUMBER:
				break;
		}
		return setting_of<&Kind::number>(action);
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const int64_t number = seed_of(machine, action);
		UtilityFunctions::seed(number);
		verbs::keep_if_named<&Kind::store_in>(machine, action, number);
	}
};

const AddKinds added = {
	add_kind<SCClampAction, Clamp>(),
	add_kind<SCRandomNumberAction, RandomNumber>(),
	add_kind<SCRandomSeedAction, RandomSeed>(),
};

} // namespace
