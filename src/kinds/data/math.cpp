#include "kinds/data/math.hpp"

#include "action/settings_in_use.hpp"

void SCMathAction::describe(KindTable<Self> &kind) {
	kind.about("data", "math", "Arithmetic on numbers, into a variable.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::operation>("operation", "What to do. Angles are in degrees.");
	kind.setting<&Self::first>("first", "Left side, typed in. For Angle Of Direction it is x.").unless<&Self::first_variable>();
	kind.setting<&Self::first_variable>("first_variable", "Left side, from a variable.");
	kind.setting<&Self::second>(
				"second", "Right side, typed in. Ignored by Abs, Round, Floor, Ceil, Sqrt, Sign, Sine, Cosine and Tangent. For Angle Of Direction it is y.")
			.unless<&Self::second_variable>()
			.unless<&Self::operation, ABS, ROUND, FLOOR, CEIL, SQRT, SIGN, SINE, COSINE, TANGENT>();
	kind.setting<&Self::second_variable>(
				"second_variable", "Right side, from a variable. Ignored by Abs, Round, Floor, Ceil, Sqrt, Sign, Sine, Cosine and Tangent.")
			.unless<&Self::operation, ABS, ROUND, FLOOR, CEIL, SQRT, SIGN, SINE, COSINE, TANGENT>();
	kind.setting<&Self::amount>("amount", "How far, for Lerp (0 to 1) and Move Toward (a step).").only_if<&Self::operation, LERP, MOVE_TOWARD>();
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into.");
	kind.setting<&Self::per_second>("per_second",
				"On Every Frame: Add and Subtract add Second each second, Move Toward steps Amount each second, Lerp closes that share of the gap each second.")
			.only_if<&Self::operation, ADD, SUBTRACT, LERP, MOVE_TOWARD>()
			.only_if<&Self::run_mode, EVERY_FRAME>();
	kind.warns<&Self::warn_nowhere_to_store>("_warn_nowhere_to_store", "m", "index");
	kind.warns<&Self::by_zero>("_by_zero", "m", "first");
}

String SCMathAction::summary_default() {
	const String left = words::number(first);
	const String right = words::number(second);
	const String step = words::number(amount);
	String sum;
	switch (operation) {
		case ADD:
			sum = vformat("%s plus %s", left, right);
			break;
		case SUBTRACT:
			sum = vformat("%s minus %s", left, right);
			break;
		case MULTIPLY:
			sum = vformat("%s times %s", left, right);
			break;
		case DIVIDE:
			sum = vformat("%s divided by %s", left, right);
			break;
		case MIN:
			sum = vformat("the smaller of %s and %s", left, right);
			break;
		case MAX:
			sum = vformat("the larger of %s and %s", left, right);
			break;
		case POW:
			sum = vformat("%s to the power of %s", left, right);
			break;
		case ABS:
			sum = vformat("%s without its sign", left);
			break;
		case ROUND:
			sum = vformat("%s rounded", left);
			break;
		case FLOOR:
			sum = vformat("%s rounded down", left);
			break;
		case CEIL:
			sum = vformat("%s rounded up", left);
			break;
		case MODULO:
			sum = vformat("what is left of %s divided by %s", left, right);
			break;
		case SQRT:
			sum = vformat("the square root of %s", left);
			break;
		case SIGN:
			sum = vformat("the sign of %s", left);
			break;
		case LERP:
			sum = vformat("%s and %s of the way to %s", left, step, right);
			break;
		case MOVE_TOWARD:
			sum = vformat("%s moved toward %s by %s", left, right, step);
			break;
		case WRAP:
			sum = vformat("%s wrapped round at %s", left, right);
			break;
		case ANGLE_DIFFERENCE:
			sum = vformat("the turn from %s to %s degrees", left, right);
			break;
		case SINE:
			sum = vformat("the sine of %s degrees", left);
			break;
		case COSINE:
			sum = vformat("the cosine of %s degrees", left);
			break;
		case TANGENT:
			sum = vformat("the tangent of %s degrees", left);
			break;
		case ANGLE_OF_DIRECTION:
			sum = vformat("the angle of the direction %s, %s", left, right);
			break;
	}
	const String pace = per_second && repeats() && verbs::applies<&Self::per_second>(this) ? " each second" : "";
	return vformat("Set %s to %s%s", store_in, sum, pace);
}

void SCMathAction::warn_nowhere_to_store(SCMachineBase *machine, int) {
	verbs::warn(machine, this, "it has no variable for its answer, so it worked nothing out. Pick one under Store In.");
}

double SCMathAction::by_zero(SCMachineBase *machine, double divided) {
	const bool is_typed = second_variable.is_empty();
	const String by = is_typed ? words::number(second) : String(second_variable);
	const String remedy = is_typed ? String("Type a number other than 0 beside Second.") : vformat("Check what %s holds before dividing.", by);
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0,
				vformat("Math on %s divided %s by %s, which is zero, so %s was set to 0. %s", machine->name_in_messages(), words::number(divided), by, store_in,
						remedy));
	}
	return 0.0;
}
