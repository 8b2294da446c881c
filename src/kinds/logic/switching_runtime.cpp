// Compiled runtimes of the kinds that look at what variables hold.

#include "action/add_kind.hpp"
#include "action/runtime_shapes.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/logic/switching.hpp"
#include "machine/native_names.hpp"

#include <godot_cpp/core/math.hpp>

namespace {

// Numbers this near to one another, relative to their size, are the same to a game maker.
constexpr double NEAR = 0.00001;

struct SwitchNames {
	StringName last = "last";
};

class BoolOperator : public OnceOrRepeating<BoolOperator> {
	using Kind = SCBoolOperatorAction;

	static bool answer_of(const SCMachineAction *action) {
		const bool first = setting_of<&Kind::first>(action);
		const bool second = setting_of<&Kind::second>(action);
		switch (setting_of<&Kind::operation>(action)) {
			case Kind::BOTH:
				return first && second;
			case Kind::EITHER:
				return first || second;
			case Kind::NOT_THIS:
				return !first;
			case Kind::ONE_BUT_NOT_BOTH:
				break;
		}
		return first != second;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int, double) {
		verbs::keep<&Kind::store_in>(machine, action, answer_of(action), "the answer");
	}
};

class Switch : public OnceOrRepeating<Switch> {
	using Kind = SCSwitchAction;

	enum Wrong {
		NOTHING_PICKED,
		NO_SUCH_VARIABLE,
		NO_NUMBER,
		NO_NUMBER_IN_CASE,
		NO_EVENT,
	};

	// `what` goes on from "Switch on Machine".
	static void warn(SCMachineBase *machine, SCMachineAction *action, int index, Wrong which, const String &what) {
		verbs::say<&Kind::warn_switch>(action, machine, index, int(which), vformat("Switch on %s%s", machine->name_in_messages(), what));
	}

	static bool counts(const Variant &held) { return values::is_number(held) || held.get_type() == Variant::BOOL; }

	static bool equals(const Variant &held, const String &text) {
		if (counts(held) && text.is_valid_float()) {
			const double value = values::as_number(held);
			const double wanted = text.to_float();
			return value == wanted || Math::abs(value - wanted) <= MAX(NEAR, NEAR * Math::abs(value));
		}
		return words::text_of(held) == text;
	}

	static int64_t equal_case(const Variant &held, const Array &cases) {
		for (int64_t i = 0; i < cases.size(); i++) {
			if (equals(held, Kind::case_text(cases[i]))) {
				return i;
			}
		}
		return -1;
	}

	static int64_t case_above(SCMachineBase *machine, SCMachineAction *action, int index, const Variant &held, const Array &cases, const StillHere &here) {
		if (!counts(held)) {
			warn(machine, action, index, NO_NUMBER, vformat(": %s is not a number, and Is Below compares numbers", setting_of<&Kind::variable_name>(action)));
			return -1;
		}
		for (int64_t i = 0; i < cases.size() && here; i++) {
			const String text = Kind::case_text(cases[i]);
			if (!text.is_valid_float()) {
				warn(machine, action, index, NO_NUMBER_IN_CASE,
						vformat(": its case %s is not a number, and Is Below compares numbers, so the case was passed over. Type a number in its place beside "
								"Cases.",
								text));
			} else if (values::as_number(held) < text.to_float()) {
				return i;
			}
		}
		return -1;
	}

public:
	static void work(SCMachineBase *machine, SCMachineAction *action, int index, double) {
		const StillHere here(machine);
		const StringName variable = setting_of<&Kind::variable_name>(action);
		if (variable.is_empty()) {
			warn(machine, action, index, NOTHING_PICKED, " has no variable picked to look at, so it sends nothing. Pick one beside Variable Name.");
			return;
		}
		if (!machine->has_value(variable)) {
			warn(machine, action, index, NO_SUCH_VARIABLE,
					vformat(": this machine has no variable called %s, so it takes it as holding nothing. Add %s under its Variables, or pick another beside "
							"Variable Name.",
							variable, variable));
		}
		if (!here) {
			return;
		}
		const Variant held = machine->get_value(variable);
		const Array cases = setting_of<&Kind::cases>(action);
		const TypedArray<StringName> events = setting_of<&Kind::events>(action);
		const bool by_equal = setting_of<&Kind::test>(action) == Kind::IS_EQUAL_TO;
		const int64_t found = by_equal ? equal_case(held, cases) : case_above(machine, action, index, held, cases, here);
		if (!here) {
			return;
		}
		StringName event;
		if (found < 0) {
			event = setting_of<&Kind::otherwise_event>(action);
		} else if (found < events.size()) {
			event = events[found];
		}
		if (found >= 0 && event.is_empty()) {
			warn(machine, action, index, NO_EVENT,
					vformat(": %s holds %s, which matches case %s, but that case has no event beside it, so nothing was sent. Give each case its event.",
							variable, words::text_of(held), Kind::case_text(cases[found])));
			if (!here) {
				return;
			}
		}
		const StringName &last = NativeNames::of<SwitchNames>().last;
		Dictionary memory = machine->slot(index);
		const bool same = memory.has(last) && StringName(memory[last]) == event;
		memory[last] = event;
		if (!same || !action->repeats() || !setting_of<&Kind::only_when_it_changes>(action)) {
			verbs::send(machine, event);
		}
	}
};

const AddKinds added = {
	add_kind<SCBoolOperatorAction, BoolOperator>(),
	add_kind<SCSwitchAction, Switch>(),
};

} // namespace
