#include "kinds/data/math.hpp"

#include "action/shared_verbs.hpp"
#include "settings/plumbing.hpp"

void SCMathAction::describe(KindTable<SCMathAction> &kind) {
	kind.about("data", "math", "Arithmetic on numbers, into a variable.");
	kind.constants_of<Operation>();
	kind.setting<&SCMathAction::operation>("operation", "What to do. Angles are in degrees.").relists();
	kind.setting<&SCMathAction::first>("first", "Left side, typed in. For Angle Of Direction it is x.");
	kind.setting<&SCMathAction::first_variable>("first_variable", "Left side, from a variable.").relists();
	kind.setting<&SCMathAction::second>("second", "Right side, typed in. Ignored by Abs, Round, Floor, Ceil, Sqrt, Sign, Sine, Cosine and Tangent. For Angle Of Direction it is y.");
	kind.setting<&SCMathAction::second_variable>("second_variable", "Right side, from a variable. Ignored by Abs, Round, Floor, Ceil, Sqrt, Sign, Sine, Cosine and Tangent.").relists();
	kind.setting<&SCMathAction::amount>("amount", "How far, for Lerp (0 to 1) and Move Toward (a step).");
	kind.setting<&SCMathAction::store_in>("store_in", "The variable the answer goes into.");
	kind.setting<&SCMathAction::per_second>("per_second", "On Every Frame: Add and Subtract add Second each second, Move Toward steps Amount each second, Lerp closes that share of the gap each second.");
	ClassDB::bind_method(D_METHOD("_warn_nowhere_to_store", "m", "index"), &SCMathAction::warn_nowhere_to_store);
	ClassDB::bind_method(D_METHOD("_by_zero", "m", "first"), &SCMathAction::by_zero);
}

bool SCMathAction::goes_on_in_time(Operation operation) {
	return operation == ADD || operation == SUBTRACT || operation == LERP || operation == MOVE_TOWARD;
}

bool SCMathAction::needs_second(Operation operation) {
	switch (operation) {
		case ABS:
		case ROUND:
		case FLOOR:
		case CEIL:
		case SQRT:
		case SIGN:
		case SINE:
		case COSINE:
		case TANGENT:
			return false;
		default:
			return true;
	}
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
	const String pace = per_second && goes_on_in_time(operation) && repeats() ? " each second" : "";
	return vformat("Set %s to %s%s", store_in, sum, pace);
}

void SCMathAction::warn_nowhere_to_store(SCMachineBase *machine, int index) {
	(void)index;
	verbs::warn(machine, this, "it has no variable for its answer, so it worked nothing out. Pick one under Store In.");
}

double SCMathAction::by_zero(SCMachineBase *machine, double divided) {
	if (machine != nullptr) {
		const String remedy = second_variable.is_empty() ? String("Type a number other than 0 beside Second.") : vformat("Check what %s holds before dividing.", second_variable);
		const String by = second_variable.is_empty() ? words::number(second) : String(second_variable);
		MakerWarnings::once_for(machine, vformat("by_zero:%d", get_instance_id()), vformat("Math on %s divided %s by %s, which is zero, so %s was set to 0. %s", machine->name_in_messages(), words::number(divided), by, store_in, remedy));
	}
	return 0.0;
}

void SCMathAction::_validate_property(PropertyInfo &property) const {
	const StringName &name = property.name;
	const bool about_second = name == StringName("second") || name == StringName("second_variable");
	const bool typed_in_beside = (name == StringName("first") && !first_variable.is_empty()) || (name == StringName("second") && !second_variable.is_empty());
	const bool is_unused_amount = name == StringName("amount") && operation != LERP && operation != MOVE_TOWARD;
	const bool is_unused_pace = name == StringName("per_second") && (!goes_on_in_time(operation) || run_mode != EVERY_FRAME);
	if ((about_second && !needs_second(operation)) || typed_in_beside || is_unused_amount || is_unused_pace) {
		hide_from_inspector(property);
	}
}
