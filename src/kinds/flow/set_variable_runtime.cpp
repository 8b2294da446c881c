// The compiled runtime of Set Variable.

#include "action/add_kind.hpp"
#include "action/own_value.hpp"
#include "action/shared_verbs.hpp"
#include "kinds/flow/set_variable.hpp"
#include "machine/value_kinds.hpp"

#include <godot_cpp/variant/builtin_types.hpp>

namespace {

class SetVariable : public SCNativeAction {
	using Kind = SCSetVariableAction;
	using Operation = Kind::Operation;

	static bool steps_each_second(SCMachineAction *action) {
		const Operation operation = setting_of<&Kind::operation>(action);
		return setting_of<&Kind::per_second>(action) && (operation == Kind::ADD || operation == Kind::SUBTRACT) && action->repeats();
	}

	static bool combine(Variant::Operator operation, const Variant &left, const Variant &right, Variant &answer) {
		// The answer may go where an operand is.
		Variant result;
		bool valid = false;
		Variant::evaluate(operation, left, right, result, valid);
		answer = result;
		return valid;
	}

	// Places of whole numbers are worked on as places, and rounded when all is done.
	static Variant with_fractions(const Variant &value) {
		switch (value.get_type()) {
			case Variant::VECTOR2I:
				return Vector2(Vector2i(value));
			case Variant::VECTOR3I:
				return Vector3(Vector3i(value));
			default:
				return value;
		}
	}

	static bool set(const Variant &now, const Variant &value, Variant &answer) {
		if (ValueKinds::is_nothing(now) || (now.get_type() == Variant::OBJECT && ValueKinds::is_nothing(value))) {
			answer = value;
			return true;
		}
		if (!values::can_fit(now, value)) {
			return false;
		}
		// The rounding of a fraction is left to the storing, which tells of it.
		const bool loses_fraction = now.get_type() == Variant::INT && value.get_type() == Variant::FLOAT;
		answer = loses_fraction ? value : values::fitted_to(now, value);
		return true;
	}

	static bool toggle(const Variant &now, Variant &answer) {
		if (!ValueKinds::is_nothing(now) && now.get_type() != Variant::BOOL && !values::is_number(now)) {
			return false;
		}
		answer = values::fitted_to(now, !values::as_truth(now));
		return true;
	}

	static bool calculate(Variant::Operator operation, const Variant &now, const Variant &value, double factor, Variant &answer) {
		Variant amount = with_fractions(value);
		if (factor != 1.0 && !combine(Variant::OP_MULTIPLY, amount, factor, amount)) {
			return false;
		}
		// A variable that holds nothing yet counts as zero.
		Variant base = with_fractions(now);
		if (ValueKinds::is_nothing(now) && !combine(Variant::OP_MULTIPLY, amount, 0, base)) {
			return false;
		}
		const bool to_a_place = base.get_type() == Variant::VECTOR2 || base.get_type() == Variant::VECTOR3;
		if (to_a_place && !values::is_number(amount)) {
			if (!values::can_fit(base, amount)) {
				return false;
			}
			amount = values::fitted_to(base, amount);
		}
		if (!combine(operation, base, amount, answer)) {
			return false;
		}
		if (with_fractions(now).get_type() != now.get_type()) {
			answer = values::fitted_to(now, answer);
		}
		return true;
	}

	static bool outcome(Operation operation, const Variant &now, const Variant &value, double factor, Variant &answer) {
		switch (operation) {
			case Kind::SET:
				return set(now, value, answer);
			case Kind::ADD:
				return calculate(Variant::OP_ADD, now, value, factor, answer);
			case Kind::SUBTRACT:
				return calculate(Variant::OP_SUBTRACT, now, value, factor, answer);
			case Kind::MULTIPLY:
				return calculate(Variant::OP_MULTIPLY, now, value, 1.0, answer);
			case Kind::TOGGLE:
				return toggle(now, answer);
		}
		return false;
	}

	static bool is_plain_number(const Variant &value) { return value.get_type() == Variant::INT || value.get_type() == Variant::FLOAT; }

	// Nearly all that is set every frame are numbers that stay the kind of number they are: those take a short way, without
	// the engine's table of operators. False when this is something else.
	static bool count(SCMachineBase *machine, const SCSetVariableAction &kind, double factor) {
		MachineRun &run = machine->run();
		Variant *now = run.unguarded_value(kind.variable_name);
		if (now == nullptr || !is_plain_number(*now) || !is_plain_number(kind.value) || kind.operation == Kind::TOGGLE || kind.operation == Kind::SET) {
			return false;
		}
		const bool whole = now->get_type() == Variant::INT;
		if (whole && (kind.value.get_type() != Variant::INT || factor != 1.0)) {
			return false;
		}
		if (whole) {
			// Unsigned, as what is too big wraps around.
			const uint64_t base = uint64_t(int64_t(*now));
			const uint64_t amount = uint64_t(int64_t(kind.value));
			const uint64_t answer = kind.operation == Kind::ADD ? base + amount : kind.operation == Kind::SUBTRACT ? base - amount : base * amount;
			*now = int64_t(answer);
			run.mark_values_changed();
			return true;
		}
		const double base = *now;
		const double amount = kind.operation == Kind::MULTIPLY ? double(kind.value) : double(kind.value) * factor;
		const double answer = kind.operation == Kind::ADD ? base + amount : kind.operation == Kind::SUBTRACT ? base - amount : base * amount;
		*now = answer;
		run.mark_values_changed();
		return true;
	}

	static void work(SCMachineBase *machine, SCMachineAction *action, const StringName &name, double factor) {
		const Variant now = machine->get_value(name);
		Variant answer;
		if (outcome(setting_of<&Kind::operation>(action), now, contents::own_value<&Kind::value>(action), factor, answer)) {
			verbs::keep<&Kind::variable_name>(machine, action, answer, "it");
		} else if (const SCSetVariableAction *kind = Object::cast_to<SCSetVariableAction>(action)) {
			kind->warn_cannot(machine, now);
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const SCSetVariableAction *kind = as_kind<SCSetVariableAction>(action);
		if (kind != nullptr && !kind->per_second && count(machine, *kind, 1.0)) {
			verbs::finish_unless_repeating(machine, action, index, here);
			return;
		}
		const StringName name = setting_of<&Kind::variable_name>(action);
		if (name.is_empty()) {
			verbs::say<&Kind::warn_nothing_picked>(action, machine, index);
		} else if (!steps_each_second(action)) {
			work(machine, action, name, 1.0);
		}
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		SCSetVariableAction *kind = as_kind<SCSetVariableAction>(action);
		// Asked of the kind itself where it can be, which the compiler then knows the answer of.
		if (!(kind != nullptr ? kind->repeats() : action->repeats())) {
			return;
		}
		if (kind != nullptr && count(machine, *kind, kind->per_second ? delta : 1.0)) {
			return;
		}
		const StringName name = setting_of<&Kind::variable_name>(action);
		if (!name.is_empty()) {
			work(machine, action, name, steps_each_second(action) ? delta : 1.0);
		}
	}
};

const AddKinds added = {
	add_kind<SCSetVariableAction, SetVariable>(),
};

} // namespace
