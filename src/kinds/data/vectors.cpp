#include "kinds/data/vectors.hpp"

#include "action/settings_in_use.hpp"

void SCGetVectorComponentsAction::describe(KindTable<Self> &kind) {
	kind.about("data", "get_vector_parts", "Take a Vector apart into Numbers. How high something is, for one, or how fast it moves sideways.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::vector>(
				"vector", "The direction or place to take apart, typed in or from a variable. A variable holding a node stands for where that node is.")
			.in_2d(Vector2());
	kind.setting<&Self::store_x_in>("store_x_in", "The variable that x goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_y_in>("store_y_in", "The variable that y goes into. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_z_in>("store_z_in", "The variable that z goes into, which is 0 for something in 2D. Empty keeps it nowhere.").optional();
	kind.setting<&Self::store_length_in>("store_length_in", "The variable that its length goes into, such as the speed of a velocity. Empty keeps it nowhere.")
			.optional();
}

String SCGetVectorComponentsAction::summary_default() {
	const StringName names[] = { store_x_in, store_y_in, store_z_in, store_length_in };
	const char *parts[] = { "x", "y", "z", "length" };
	PackedStringArray kept;
	for (int i = 0; i < 4; i++) {
		if (!names[i].is_empty()) {
			kept.push_back(vformat("%s into %s", parts[i], names[i]));
		}
	}
	return vformat("Take %s apart: %s", words::text_of(vector), kept.is_empty() ? String("nothing kept") : String(", ").join(kept));
}

void SCRandomVectorAction::describe(KindTable<Self> &kind) {
	kind.about("data", "random_vector",
			"Put a random direction, or a random place, into a Vector variable. Use it for where the next coin appears, which way a spark flies or where a "
			"sheep wanders to.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<What>();
	kind.setting<&Self::what>("what",
			"What to make. A direction is 1 long. In A Circle means anywhere within it, in 3D within a ball unless Keep Level is on, and On A Circle means "
			"only on its rim.");
	kind.setting<&Self::center>("center", "The middle of the circle or box. A variable holding a node stands for where that node is.")
			.in_2d(Vector2())
			.unless<&Self::what, DIRECTION>();
	kind.setting<&Self::radius>("radius", hint::DISTANCE, "How far from the middle, in metres in 3D and pixels in 2D.")
			.px_in_2d()
			.only_if<&Self::what, IN_A_CIRCLE, ON_A_CIRCLE>();
	kind.setting<&Self::size>("size", "The whole width, height and depth of the box, with Center in its middle.")
			.in_2d(Vector2(320, 320))
			.only_if<&Self::what, IN_A_BOX>();
	kind.setting<&Self::keep_level>(
				"keep_level", "In 3D, leave the height alone, so a direction is level and a place is as high as Center. It has no say in 2D or for a box.")
			.unless<&Self::what, IN_A_BOX>();
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into. A Vector2 variable gets one in 2D, a Vector3 variable one in 3D.");
}

String SCRandomVectorAction::summary_default() {
	switch (what) {
		case IN_A_CIRCLE:
			return vformat("Keep a random place within %s of %s in %s", words::number(radius), words::text_of(center), store_in);
		case ON_A_CIRCLE:
			return vformat("Keep a random place %s from %s in %s", words::number(radius), words::text_of(center), store_in);
		case IN_A_BOX:
			return vformat("Keep a random place in a box of %s around %s in %s", words::text_of(size), words::text_of(center), store_in);
		case DIRECTION:
			break;
	}
	return vformat("Keep a random direction in %s", store_in);
}

void SCSetVectorComponentsAction::describe(KindTable<Self> &kind) {
	kind.about("data", "set_vector_parts", "Change one part of a Vector variable and leave the rest as they are. The height of a place, for one.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Part>();
	kind.constants_of<Operation>();
	kind.setting<&Self::variable_name>("variable_name", "The Vector variable to change.").written();
	kind.setting<&Self::part>("part", "Which part. Z is there in 3D only.");
	kind.setting<&Self::operation>(
			"operation", "Whether that part becomes Value, has Value added to it, or is multiplied by it. Multiply by -1 to turn it round.");
	kind.setting<&Self::value>("value", "The number it becomes, or what is added or multiplied by. Type a minus to take away.");
	kind.setting<&Self::per_second>("per_second", "On Every Frame, add this much each second. Add only.")
			.only_if<&Self::operation, ADD>()
			.only_if<&Self::run_mode, EVERY_FRAME>();
}

String SCSetVectorComponentsAction::summary_default() {
	const String letter = part == X ? "x" : (part == Y ? "y" : "z");
	switch (operation) {
		case ADD:
			return vformat("Add %s to %s of %s%s", words::number(value), letter, variable_name, per_second && repeats() ? " each second" : "");
		case MULTIPLY:
			return vformat("Multiply %s of %s by %s", letter, variable_name, words::number(value));
		case SET:
			break;
	}
	return vformat("Set %s of %s to %s", letter, variable_name, words::number(value));
}

void SCVectorAction::describe(KindTable<Self> &kind) {
	kind.about("data", "vector",
			"Sums with directions and places. How far it is to the door, which way the player is, a point halfway between two others, or a velocity that "
			"bounces off a wall.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::operation>("operation",
			"What to do. Distance and Direction To go from First to Second. Scale multiplies all of First by Amount, while Multiply and Divide go part by "
			"part, x with x. Turn turns First by Amount degrees, in 3D round the upright axis. Bounce and Slide throw First off a wall that faces the way of "
			"Second. Snap puts it on a grid as wide as Second. Length, Distance, Angle Between (in degrees) and Dot give a number, and so does Cross in 2D.");
	kind.setting<&Self::first>("first", "The direction or place to work with. A variable holding a node stands for where that node is.").in_2d(Vector2());
	kind.setting<&Self::second>("second", "The other direction or place. A single number stands for one with every part the same.")
			.in_2d(Vector2())
			.unless<&Self::operation, SCALE, LENGTH, NORMALIZE, SET_LENGTH, LIMIT_LENGTH, TURN>();
	kind.setting<&Self::amount>("amount",
				"How much. A number to multiply by for Scale, the length for Set Length and Limit Length, how far for Lerp (0 is First, 1 is Second) and Move "
				"Toward (a step), degrees for Turn.")
			.only_if<&Self::operation, SCALE, SET_LENGTH, LIMIT_LENGTH, LERP, MOVE_TOWARD, TURN>();
	kind.setting<&Self::per_second>("per_second",
				"On Every Frame: Add and Subtract add Second each second, Move Toward steps Amount each second, Turn turns Amount degrees each second, and "
				"Lerp closes that share of the gap each second.")
			.only_if<&Self::operation, ADD, SUBTRACT, LERP, MOVE_TOWARD, TURN>()
			.only_if<&Self::run_mode, EVERY_FRAME>();
	kind.setting<&Self::store_in>("store_in", "The variable the answer goes into.");
}

String SCVectorAction::summary_default() {
	const String a = words::text_of(first);
	const String b = words::text_of(second);
	const String much = words::number(amount);
	const String pace = per_second && repeats() && verbs::applies<&Self::per_second>(this) ? " each second" : "";
	switch (operation) {
		case ADD:
			return vformat("Set %s to %s + %s%s", store_in, a, b, pace);
		case SUBTRACT:
			return vformat("Set %s to %s - %s%s", store_in, a, b, pace);
		case MULTIPLY:
			return vformat("Set %s to %s times %s", store_in, a, b);
		case DIVIDE:
			return vformat("Set %s to %s divided by %s", store_in, a, b);
		case SCALE:
			return vformat("Set %s to %s times %s", store_in, a, much);
		case LENGTH:
			return vformat("Set %s to the length of %s", store_in, a);
		case DISTANCE:
			return vformat("Set %s to the distance from %s to %s", store_in, a, b);
		case DIRECTION_TO:
			return vformat("Set %s to the direction from %s to %s", store_in, a, b);
		case NORMALIZE:
			return vformat("Set %s to %s made 1 long", store_in, a);
		case SET_LENGTH:
			return vformat("Set %s to %s made %s long", store_in, a, much);
		case LIMIT_LENGTH:
			return vformat("Set %s to %s, at most %s long", store_in, a, much);
		case LERP:
			return vformat("Set %s to %s moved %s of the way to %s%s", store_in, a, much, b, pace);
		case MOVE_TOWARD:
			return vformat("Set %s to %s moved %s toward %s%s", store_in, a, much, b, pace);
		case TURN:
			return vformat("Set %s to %s turned by %s degrees%s", store_in, a, much, pace);
		case ANGLE_BETWEEN:
			return vformat("Set %s to the angle between %s and %s", store_in, a, b);
		case DOT:
			return vformat("Set %s to the dot product of %s and %s", store_in, a, b);
		case CROSS:
			return vformat("Set %s to the cross product of %s and %s", store_in, a, b);
		case BOUNCE:
			return vformat("Set %s to %s bounced off %s", store_in, a, b);
		case SLIDE:
			return vformat("Set %s to %s sliding along %s", store_in, a, b);
		case SNAP:
			break;
	}
	return vformat("Set %s to %s snapped to %s", store_in, a, b);
}
