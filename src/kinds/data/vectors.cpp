#include "kinds/data/vectors.hpp"

#include "action/answering.hpp"
#include "action/showing.hpp"
#include "action/words.hpp"

void SCGetVectorComponentsAction::describe(KindTable<SCGetVectorComponentsAction> &kind) {
	kind.about("data", "get_vector_parts", "Take a Vector apart into Numbers, such as how high something is or how fast it moves sideways.");
	kind.setting<&SCGetVectorComponentsAction::vector>("vector", "The direction or place to take apart, typed in or from a variable. A variable holding a node stands for where that node is.").in_2d(Vector2());
	kind.setting<&SCGetVectorComponentsAction::store_x_in>("store_x_in", "The variable that x goes into. Empty keeps it nowhere.");
	kind.setting<&SCGetVectorComponentsAction::store_y_in>("store_y_in", "The variable that y goes into. Empty keeps it nowhere.");
	kind.setting<&SCGetVectorComponentsAction::store_z_in>("store_z_in", "The variable that z goes into, which is 0 for something in 2D. Empty keeps it nowhere.");
	kind.setting<&SCGetVectorComponentsAction::store_length_in>("store_length_in", "The variable that its length goes into, such as the speed of a velocity. Empty keeps it nowhere.");
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

TypedArray<StringName> SCGetVectorComponentsAction::optional_names_default() {
	return Array::make(StringName("store_x_in"), StringName("store_y_in"), StringName("store_z_in"), StringName("store_length_in"));
}

void SCRandomVectorAction::describe(KindTable<SCRandomVectorAction> &kind) {
	kind.about("data", "random_vector", "Put a random direction, or a random place, into a Vector variable. Use it for where the next coin appears, which way a spark flies or where a sheep wanders to.");
	kind.constants_of<What>();
	kind.setting<&SCRandomVectorAction::what>("what", "What to make. A direction is 1 long. In A Circle means anywhere within it, in 3D within a ball unless Keep Level is on, and On A Circle means only on its rim.").relists();
	kind.setting<&SCRandomVectorAction::center>("center", "The middle of the circle or box. A variable holding a node stands for where that node is.").in_2d(Vector2());
	kind.setting<&SCRandomVectorAction::radius>("radius", hint::DISTANCE, "How far from the middle, in metres in 3D and pixels in 2D.").px_in_2d();
	kind.setting<&SCRandomVectorAction::size>("size", "The whole width, height and depth of the box, with Center in its middle.").in_2d(Vector2(320, 320));
	kind.setting<&SCRandomVectorAction::keep_level>("keep_level", "In 3D, leave the height alone, so a direction is level and a place is as high as Center. It has no say in 2D or for a box.");
	kind.setting<&SCRandomVectorAction::store_in>("store_in", "The variable the answer goes into. A Vector2 variable gets one in 2D, a Vector3 variable one in 3D.");
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

void SCRandomVectorAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(what != DIRECTION, property, { "center" });
	showing::only_if(what == IN_A_CIRCLE || what == ON_A_CIRCLE, property, { "radius" });
	showing::only_if(what == IN_A_BOX, property, { "size" });
	showing::only_if(what != IN_A_BOX, property, { "keep_level" });
}

void SCSetVectorComponentsAction::describe(KindTable<SCSetVectorComponentsAction> &kind) {
	kind.about("data", "set_vector_parts", "Change one part of a Vector variable and leave the rest as they are, such as the height of a place.");
	kind.constants_of<Part>();
	kind.constants_of<Operation>();
	kind.setting<&SCSetVectorComponentsAction::variable_name>("variable_name", "The Vector variable to change.");
	kind.setting<&SCSetVectorComponentsAction::part>("part", "Which part. Z is there in 3D only.");
	kind.setting<&SCSetVectorComponentsAction::operation>("operation", "Whether that part becomes Value, has Value added to it, or is multiplied by it. Multiply by -1 to turn it round.").relists();
	kind.setting<&SCSetVectorComponentsAction::value>("value", "The number it becomes, or what is added or multiplied by. Type a minus to take away.");
	kind.setting<&SCSetVectorComponentsAction::per_second>("per_second", "On Every Frame, add this much each second. Add only.");
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

PackedStringArray SCSetVectorComponentsAction::variables_written_default() {
	return answering::written_with(this, variable_name);
}

void SCSetVectorComponentsAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(operation == ADD && run_mode == EVERY_FRAME, property, { "per_second" });
}

void SCVectorAction::describe(KindTable<SCVectorAction> &kind) {
	kind.about("data", "vector", "Sums with directions and places. How far it is to the door, which way the player is, a point halfway between two others, or a velocity that bounces off a wall.");
	kind.constants_of<Operation>();
	kind.setting<&SCVectorAction::operation>("operation", "What to do. Distance and Direction To go from First to Second. Scale multiplies all of First by Amount, while Multiply and Divide go part by part, x with x. Turn turns First by Amount degrees, in 3D round the upright axis. Bounce and Slide throw First off a wall that faces the way of Second. Snap puts it on a grid as wide as Second. Length, Distance, Angle Between (in degrees) and Dot give a number, and so does Cross in 2D.").relists();
	kind.setting<&SCVectorAction::first>("first", "The direction or place to work with. A variable holding a node stands for where that node is.").in_2d(Vector2());
	kind.setting<&SCVectorAction::second>("second", "The other direction or place. A single number stands for one with every part the same.").in_2d(Vector2());
	kind.setting<&SCVectorAction::amount>("amount", "How much. A number to multiply by for Scale, the length for Set Length and Limit Length, how far for Lerp (0 is First, 1 is Second) and Move Toward (a step), degrees for Turn.");
	kind.setting<&SCVectorAction::per_second>("per_second", "On Every Frame: Add and Subtract add Second each second, Move Toward steps Amount each second, Turn turns Amount degrees each second, and Lerp closes that share of the gap each second.");
	kind.setting<&SCVectorAction::store_in>("store_in", "The variable the answer goes into.");
}

bool SCVectorAction::takes_second(Operation operation) {
	switch (operation) {
		case SCALE:
		case LENGTH:
		case NORMALIZE:
		case SET_LENGTH:
		case LIMIT_LENGTH:
		case TURN:
			return false;
		default:
			return true;
	}
}

bool SCVectorAction::takes_amount(Operation operation) {
	return operation == SCALE || operation == SET_LENGTH || operation == LIMIT_LENGTH || operation == LERP || operation == MOVE_TOWARD || operation == TURN;
}

bool SCVectorAction::goes_by_seconds(Operation operation) {
	return operation == ADD || operation == SUBTRACT || operation == LERP || operation == MOVE_TOWARD || operation == TURN;
}

String SCVectorAction::summary_default() {
	const String a = words::text_of(first);
	const String b = words::text_of(second);
	const String much = words::number(amount);
	const String pace = per_second && repeats() && goes_by_seconds(operation) ? " each second" : "";
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

void SCVectorAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(takes_second(operation), property, { "second" });
	showing::only_if(takes_amount(operation), property, { "amount" });
	showing::only_if(goes_by_seconds(operation) && run_mode == EVERY_FRAME, property, { "per_second" });
}
