// The compiled runtime of Math. Everything is worked out in double precision, and what counts as near
// enough to zero or to a whole number is the engine's own measure.

#include "action/add_kind.hpp"
#include "action/settings_in_use.hpp"
#include "action/values.hpp"
#include "kinds/data/math.hpp"
#include "machine/value_kinds.hpp"

#include <cmath>

namespace {

using Kind = SCMathAction;
using Operation = Kind::Operation;

constexpr double NEAR_ENOUGH = 0.00001;
constexpr double RADIANS_PER_DEGREE = 0.017453292519943295;
constexpr double DEGREES_PER_RADIAN = 57.29577951308232;

bool is_near(double value, double to, double relative_to) {
	return value == to || std::abs(value - to) < std::fmax(NEAR_ENOUGH, NEAR_ENOUGH * std::abs(relative_to));
}

// With the sign of the divisor.
double remainder_of(double value, double divisor) {
	double left = std::fmod(value, divisor);
	if ((left < 0.0 && divisor > 0.0) || (left > 0.0 && divisor < 0.0)) {
		left += divisor;
	}
	// Turns a negative zero into a plain one.
	return left + 0.0;
}

// Over a longer step the same share of the gap is closed as over many short ones.
double lerped(double from, double to, double amount, double step) {
	double share = amount;
	if (step != 0.0 && !is_near(step, 1.0, step)) {
		share = 1.0 - std::pow(1.0 - std::fmin(std::fmax(amount, 0.0), 1.0), step);
	}
	return from + share * (to - from);
}

double moved_toward(double from, double to, double step) {
	return std::abs(to - from) <= step ? to : from + (to > from ? step : -step);
}

double angle_difference(double from, double to) {
	const double turn = to - from;
	const double wrapped = turn - 360.0 * std::floor((turn + 180.0) / 360.0);
	return is_near(wrapped, 180.0, wrapped) ? -180.0 : wrapped;
}

bool divides(Operation operation) {
	return operation == Kind::DIVIDE || operation == Kind::MODULO || operation == Kind::WRAP;
}

// `step` is 1, or the seconds that have passed for what goes on in time.
double calculated(Operation operation, double first, double second, double amount, double step) {
	switch (operation) {
		case Kind::ADD:
			return first + step * second;
		case Kind::SUBTRACT:
			return first - step * second;
		case Kind::MULTIPLY:
			return first * second;
		case Kind::DIVIDE:
			return first / second;
		case Kind::MIN:
			return second < first ? second : first;
		case Kind::MAX:
			return second > first ? second : first;
		case Kind::POW:
			return std::pow(first, second);
		case Kind::ABS:
			return std::abs(first);
		case Kind::ROUND:
			return std::round(first);
		case Kind::FLOOR:
			return std::floor(first);
		case Kind::CEIL:
			return std::ceil(first);
		case Kind::MODULO:
		case Kind::WRAP:
			return remainder_of(first, second);
		case Kind::SQRT:
			return first > 0.0 ? std::sqrt(first) : 0.0;
		case Kind::SIGN:
			return first > 0.0 ? 1.0 : (first < 0.0 ? -1.0 : 0.0);
		case Kind::LERP:
			return lerped(first, second, amount, step);
		case Kind::MOVE_TOWARD:
			return moved_toward(first, second, std::abs(amount) * step);
		case Kind::ANGLE_DIFFERENCE:
			return angle_difference(first, second);
		case Kind::SINE:
			return std::sin(first * RADIANS_PER_DEGREE);
		case Kind::COSINE:
			return std::cos(first * RADIANS_PER_DEGREE);
		case Kind::TANGENT:
			return std::tan(first * RADIANS_PER_DEGREE);
		case Kind::ANGLE_OF_DIRECTION:
			return std::atan2(second, first) * DEGREES_PER_RADIAN;
	}
	return first;
}

// Whether whole numbers have a whole answer here at all.
bool may_be_whole(Operation operation) {
	switch (operation) {
		case Kind::DIVIDE:
		case Kind::SQRT:
		case Kind::LERP:
		case Kind::SINE:
		case Kind::COSINE:
		case Kind::TANGENT:
		case Kind::ANGLE_OF_DIRECTION:
			return false;
		default:
			return true;
	}
}

class Math_ : public SCNativeAction {
	static double side(SCMachineBase *machine, const SCMachineAction *action, double typed_in, const StringName &variable, bool &is_int) {
		const Variant held = variable.is_empty() ? Variant(typed_in) : machine->get_value(variable);
		is_int = held.get_type() == Variant::INT;
		if (held.get_type() != Variant::NIL && held.get_type() != Variant::BOOL && !values::is_number(held)) {
			verbs::warn(machine, action,
					vformat("%s holds %s, which is no number, so it was taken as 0. Pick a number variable in its place.", variable,
							values::kind_in_words(held)));
		}
		return values::number_of(machine, typed_in, variable);
	}

	static bool runs_in_time(const SCMachineAction *action) { return setting_of<&Kind::per_second>(action) && verbs::applies<&Kind::per_second>(action); }

	static void work(SCMachineBase *machine, SCMachineAction *action, double step) {
		const StringName store_in = setting_of<&Kind::store_in>(action);
		if (store_in.is_empty()) {
			return;
		}
		const Operation operation = setting_of<&Kind::operation>(action);
		bool first_is_int = false;
		bool second_is_int = false;
		const double first = side(machine, action, setting_of<&Kind::first>(action), setting_of<&Kind::first_variable>(action), first_is_int);
		const double second = side(machine, action, setting_of<&Kind::second>(action), setting_of<&Kind::second_variable>(action), second_is_int);
		double answer = 0.0;
		if (divides(operation) && std::abs(second) < NEAR_ENOUGH) {
			const StillHere here(machine);
			answer = values::as_number(action->call(*WarningOf<&Kind::by_zero>::name, machine, first));
			if (!here) {
				return;
			}
		} else {
			answer = calculated(operation, first, second, setting_of<&Kind::amount>(action), step);
		}
		const double rounded = std::round(answer);
		if (first_is_int && second_is_int && may_be_whole(operation) && !machine->has_value(store_in) && is_near(answer, rounded, answer)) {
			machine->set_value(store_in, ValueKinds::whole_part(rounded));
		} else {
			machine->set_value(store_in, values::keep_whole(machine, store_in, answer));
		}
	}

public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		if (setting_of<&Kind::store_in>(action).is_empty()) {
			verbs::say<&Kind::warn_nowhere_to_store>(action, machine, index);
		} else if (!runs_in_time(action)) {
			work(machine, action, 1.0);
		}
		verbs::finish_unless_repeating(machine, action, index, here);
	}

	void update(SCMachineBase *machine, SCMachineAction *action, int, double delta) override {
		if (action->repeats()) {
			work(machine, action, runs_in_time(action) ? delta : 1.0);
		}
	}
};

const AddKinds added = {
	add_kind<SCMathAction, Math_>(),
};

} // namespace
