// The compiled runtime of Stamina.

#include "action/add_kind.hpp"
#include "action/input_words.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/data/stamina.hpp"
#include "machine/native_names.hpp"

namespace {

using Kind = SCStaminaAction;

// Smaller changes are gathered up before they are written.
constexpr double LEAST_CHANGE = 0.00001;

struct Names {
	StringName before = "before";
	StringName owed = "owed";
	StringName key = "key";
	StringName key_of = "key_of";
};

const Names &names() {
	return NativeNames::of<Names>();
}

// The time since the last spending stays with the machine, as what spends and what lets it come back are mostly in two states.
StringName rested_key(Dictionary slot, const StringName &variable) {
	if (slot.get(names().key_of, Variant()) != Variant(variable)) {
		slot[names().key_of] = variable;
		slot[names().key] = StringName("quillstead_rested_" + String(variable).md5_text());
	}
	return slot[names().key];
}

class Stamina : public SCNativeAction {
	static double amount_or(double number, double otherwise) { return Math::is_finite(number) ? MAX(number, 0.0) : otherwise; }

	// By how much the meter is to change in this step.
	static double change(SCMachineBase *machine, const Kind *kind, const StringName &key, bool spends, double delta) {
		if (spends) {
			machine->set_meta(key, 0.0);
			return -amount_or(kind->drain_rate, 0.0) * delta;
		}
		double coming_back = delta;
		if (machine->has_meta(key)) {
			const double rested = values::as_number(machine->get_meta(key)) + delta;
			const double over = rested - amount_or(kind->rests_first, 0.0);
			machine->set_meta(key, rested);
			coming_back = CLAMP(over, 0.0, delta);
		}
		return amount_or(kind->recover_rate, 0.0) * coming_back;
	}

	// The meter, made full where there is none. False when there can be none.
	static bool read(SCMachineBase *machine, Kind *kind, int index, double &held) {
		if (kind->variable_name.is_empty()) {
			verbs::say<&Kind::warn_stamina>(kind, machine, index, 0, Variant());
			return false;
		}
		const StillHere here(machine);
		if (!machine->has_value(kind->variable_name)) {
			machine->set_value(kind->variable_name, amount_or(kind->most, 0.0));
			if (!here) {
				return false;
			}
		}
		const Variant now = machine->get_value(kind->variable_name);
		held = values::as_number(now);
		if (!values::is_number(now) || !Math::is_finite(held)) {
			verbs::say<&Kind::warn_stamina>(kind, machine, index, 1, now);
			return false;
		}
		return true;
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		double held = 0.0;
		Kind *kind = as_kind<Kind>(action);
		const bool has_meter = kind != nullptr && read(machine, kind, index, held);
		if (!here) {
			return;
		}
		Dictionary slot = machine->slot(index);
		slot[names().owed] = 0.0;
		slot.erase(names().before);
		// Who begins to spend with nothing left is told so at once.
		if (has_meter && !(kind->spends_here && held < LEAST_CHANGE)) {
			slot[names().before] = held;
		}
		machine->finish(index);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int index, double delta) override {
		const StillHere here(machine);
		double held = 0.0;
		Kind *kind = as_kind<Kind>(action);
		if (kind == nullptr || !read(machine, kind, index, held) || !here) {
			return;
		}
		const double most = amount_or(kind->most, 0.0);
		Dictionary slot = machine->slot(index);
		const bool spends = kind->spends_here && (kind->drains_while_held.is_empty() || input_words::is_held(kind->drains_while_held));
		const StringName key = rested_key(slot, kind->variable_name);
		const double before = slot.has(names().before) ? values::as_number(slot[names().before]) : (spends ? most : held);
		const double owed = values::as_number(slot.get(names().owed, 0.0)) + change(machine, kind, key, spends, delta);
		const bool is_whole = machine->get_value(kind->variable_name).get_type() == Variant::INT;
		double next = CLAMP(held + owed, 0.0, most);
		// Sums of fractions end a little beside the ends.
		next = next < LEAST_CHANGE ? 0.0 : (most - next < LEAST_CHANGE ? most : next);
		const double exact = next;
		next = is_whole ? Math::round(next) : next;
		const bool writes = Math::abs(next - held) >= LEAST_CHANGE;
		// What lies beyond an end is not owed.
		slot[names().owed] = exact - (writes ? next : held);
		slot[names().before] = writes ? next : held;
		const StringName empty_event = kind->empty_event;
		const StringName full_event = kind->full_event;
		if (writes) {
			machine->set_value(kind->variable_name, is_whole ? Variant(int64_t(next)) : Variant(next));
		} else {
			next = held;
		}
		if (here && next < LEAST_CHANGE && before >= LEAST_CHANGE) {
			verbs::send(machine, empty_event);
		} else if (here && most - next < LEAST_CHANGE && most - before >= LEAST_CHANGE) {
			verbs::send(machine, full_event);
		}
	}
};

const AddKinds added = {
	add_kind<SCStaminaAction, Stamina>(),
};

} // namespace
