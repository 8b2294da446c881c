// Compiled runtimes of the kinds that look at what variables hold.

#include "action/add_kind.hpp"
#include "action/native_names.hpp"
#include "action/answering.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/logic/switching.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

// Numbers this near to one another, relative to their size, are the same to a game maker.
constexpr double NEAR = 0.00001;

struct SwitchNames {
	StringName last = "last";
};

class BoolOperator : public OnceOrRepeating<BoolOperator> {
	static bool answer_of(const SCMachineAction *action) {
		const bool first = setting_of<&SCBoolOperatorAction::first>(action);
		const bool second = setting_of<&SCBoolOperatorAction::second>(action);
		switch (setting_of<&SCBoolOperatorAction::operation>(action)) {
			case SCBoolOperatorAction::BOTH:
				return first && second;
			case SCBoolOperatorAction::EITHER:
				return first || second;
			case SCBoolOperatorAction::NOT_THIS:
				return !first;
			case SCBoolOperatorAction::ONE_BUT_NOT_BOTH:
				break;
		}
		return first != second;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		const StringName variable = setting_of<&SCBoolOperatorAction::store_in>(action);
		if (variable.is_empty()) {
			verbs::warn(machine, action, "no variable is picked, so its answer goes nowhere. Pick one beside Store In.");
		} else {
			verbs::store(machine, variable, answer_of(action));
		}
	}
};

class Switch : public OnceOrRepeating<Switch> {
	enum Wrong {
		NOTHING_PICKED,
		NO_SUCH_VARIABLE,
		NO_NUMBER,
		NO_NUMBER_IN_CASE,
		NO_EVENT,
	};

	static void warn(SCMachineBase *machine, SCMachineAction *action, int index, Wrong which, const String &what) {
		action->call("_warn_switch", machine, index, int64_t(which), what);
	}

	static bool counts(const Variant &held) {
		return values::is_number(held) || held.get_type() == Variant::BOOL;
	}

	static bool equals(const Variant &held, const String &text) {
		if (counts(held) && text.is_valid_float()) {
			const double value = values::as_number(held);
			const double wanted = text.to_float();
			return value == wanted || Math::abs(value - wanted) <= MAX(NEAR, NEAR * Math::abs(value));
		}
		return words::text_of(held) == text;
	}

	// The place of the first case that matches, -1 for none.
	static int64_t match(SCMachineBase *machine, SCMachineAction *action, int index, const Variant &held, const Array &cases) {
		if (setting_of<&SCSwitchAction::test>(action) == SCSwitchAction::IS_EQUAL_TO) {
			for (int64_t i = 0; i < cases.size(); i++) {
				if (equals(held, SCSwitchAction::case_text(cases[i]))) {
					return i;
				}
			}
			return -1;
		}
		const String name = machine->name_in_messages();
		if (!counts(held)) {
			const String shown = vformat("%s is not a number, and Is Below compares numbers", setting_of<&SCSwitchAction::variable_name>(action));
			warn(machine, action, index, NO_NUMBER, vformat("Switch on %s: %s", name, shown));
			return -1;
		}
		for (int64_t i = 0; i < cases.size(); i++) {
			const String text = SCSwitchAction::case_text(cases[i]);
			if (!text.is_valid_float()) {
				warn(machine, action, index, NO_NUMBER_IN_CASE, vformat("Switch on %s: its case %s is not a number, and Is Below compares numbers, so the case was passed over. Type a number in its place beside Cases.", name, text));
			} else if (values::as_number(held) < text.to_float()) {
				return i;
			}
		}
		return -1;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		StillHere here(machine);
		// 1.
		const StringName variable = setting_of<&SCSwitchAction::variable_name>(action);
		if (variable.is_empty()) {
			warn(machine, action, index, NOTHING_PICKED, vformat("Switch on %s has no variable picked to look at, so it sends nothing. Pick one beside Variable Name.", machine->name_in_messages()));
			return;
		}
		if (!machine->has_value(variable)) {
			warn(machine, action, index, NO_SUCH_VARIABLE, vformat("Switch on %s: this machine has no variable called %s, so it takes it as holding nothing. Add %s in its Variables tab, or pick another beside Variable Name.", machine->name_in_messages(), variable, variable));
		}
		if (!here) {
			return;
		}
		// 2. to 4.
		const Variant held = machine->get_value(variable);
		const Array cases = setting_of<&SCSwitchAction::cases>(action);
		const TypedArray<StringName> events = setting_of<&SCSwitchAction::events>(action);
		const int64_t found = match(machine, action, index, held, cases);
		if (!here) {
			return;
		}
		// 5. and 6.
		StringName event;
		if (found < 0) {
			event = setting_of<&SCSwitchAction::otherwise_event>(action);
		} else if (found < events.size()) {
			event = events[found];
		}
		if (found >= 0 && event.is_empty()) {
			warn(machine, action, index, NO_EVENT, vformat("Switch on %s: %s holds %s, which matches case %s, but that case has no event beside it, so nothing was sent. Give each case its event.", machine->name_in_messages(), variable, words::text_of(held), SCSwitchAction::case_text(cases[found])));
			if (!here) {
				return;
			}
		}
		// 7.
		const StringName &last = NativeNames::of<SwitchNames>().last;
		Dictionary memory = machine->slot(index);
		const bool same = memory.has(last) && StringName(memory[last]) == event;
		memory[last] = event;
		if (same && action->repeats() && setting_of<&SCSwitchAction::only_when_it_changes>(action)) {
			return;
		}
		machine->send_event(event);
	}
};

const AddKinds added = {
	add_kind<SCBoolOperatorAction, BoolOperator>(),
	add_kind<SCSwitchAction, Switch>(),
};

} // namespace
