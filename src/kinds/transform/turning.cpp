#include "kinds/transform/turning.hpp"

#include "action/action_shared.hpp"
#include "action/inspector.hpp"
#include "action/showing.hpp"

namespace {

constexpr Hint DEGREES_A_SECOND = { PROPERTY_HINT_RANGE, "-360,360,0.1,or_less,or_greater,suffix:°/s" };
constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "0,720,0.1,or_greater,suffix:°/s" };

bool surely_on_2d(const Object *action) {
	return inspector::shown_on_2d_known(action) && inspector::shown_on_2d(action);
}

// In 2D there is only one way to turn round.
template <class Axis>
String round_axis(const Object *action, Axis axis) {
	return surely_on_2d(action) ? String() : vformat(" round %s", axis == Axis(0) ? "x" : (axis == Axis(1) ? "y" : "z"));
}

} // namespace

void SCLookAtAction::describe(KindTable<SCLookAtAction> &kind) {
	kind.about("transform", "look_at", "Turn a node to face another node, the mouse pointer, a place, or a direction, at once or over time. A turret, a head that follows the player, a sign that always faces the camera. In 2D it is the right side that faces, in 3D the front.");
	kind.constants_of<Face>();
	kind.constants_of<Space>();
	kind.setting<&SCLookAtAction::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&SCLookAtAction::face>("face", "What it faces. In 3D the mouse pointer means the spot under it that is as high as the node, as in a game seen from above.").relists();
	kind.setting<&SCLookAtAction::at_path>("at_path", "The node it faces.");
	kind.setting<&SCLookAtAction::place>("place", "The place in the world it faces. A variable holding a node stands for where that node is.").in_2d(Vector2(0, 0));
	kind.setting<&SCLookAtAction::direction>("direction", "The way it faces. No direction at all, such as a stick at rest, leaves it as it is.");
	kind.setting<&SCLookAtAction::space>("space", "Global is a direction in the world, Local one of its parent's.");
	kind.setting<&SCLookAtAction::turned_by>("turned_by", hint::DEGREES, "Degrees it is turned on from there, for a picture whose front is not its right side or a model whose front is its back. 90 suits a picture drawn facing up, 180 a model drawn facing you.");
	kind.setting<&SCLookAtAction::keep_level>("keep_level", "Turn only round the upright axis, so that a guard does not lean back to look at a bird. 3D only.");
	kind.setting<&SCLookAtAction::duration>("duration", hint::SECONDS, "Seconds the turn takes when it is done once. Zero faces it at once. It turns to where the other was at the start.").relists();
	Easings::describe<&SCLookAtAction::curve, &SCLookAtAction::easing>(kind);
	kind.setting<&SCLookAtAction::turn_speed>("turn_speed", TURN_SPEED, "On Every Frame, the most degrees it turns in a second, so that a slow turret can be outrun. Zero faces it at once.");
}

String SCLookAtAction::summary_default() {
	String at;
	switch (face) {
		case A_NODE:
			at = words::name_in_line(at_path, "Self", ActionShared::get().not_picked);
			break;
		case THE_MOUSE:
			at = "the mouse pointer";
			break;
		case A_PLACE:
			at = words::text_of(place);
			break;
		case A_DIRECTION:
			at = vformat("the way of %s", words::text_of(direction));
			break;
	}
	const String name = words::name_in_line(node_path);
	if (repeats()) {
		return vformat("Keep %s facing %s%s", name, at, turn_speed > 0.0 ? vformat(U", turning %s° a second", words::number(turn_speed)) : String());
	}
	return vformat("Turn %s to face %s%s", name, at, duration > 0.0 ? vformat(" in %s s", words::number(duration)) : String());
}

bool SCLookAtAction::finishes_as_it_starts_default() {
	return !repeats() && duration <= 0.0 && is_typed_in("duration");
}

void SCLookAtAction::_validate_property(PropertyInfo &property) const {
	const bool takes_time = run_mode == ONCE && (duration > 0.0 || !is_typed_in("duration"));
	showing::only_if(face == A_NODE, property, { "at_path" });
	showing::only_if(face == A_PLACE, property, { "place" });
	showing::only_if(face == A_DIRECTION, property, { "direction", "space" });
	showing::only_if(!surely_on_2d(this), property, { "keep_level" });
	showing::only_if(run_mode == ONCE, property, { "duration" });
	showing::only_if(takes_time, property, { "curve", "easing" });
	showing::only_if(run_mode == EVERY_FRAME, property, { "turn_speed" });
}

void SCRotateAction::describe(KindTable<SCRotateAction> &kind) {
	kind.about("transform", "keep_turning", "Keep a node turning at a steady speed, in degrees per second, for as long as the state runs. A coin, a fan, the hand of a clock. It does not hold the state up: what else the state does decides when it is finished.");
	kind.constants_of<Axis>();
	kind.constants_of<Space>();
	kind.setting<&SCRotateAction::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&SCRotateAction::speed>("speed", DEGREES_A_SECOND, "Degrees per second; 360 is once round each second. In 2D it turns clockwise, and below zero the other way.");
	kind.setting<&SCRotateAction::axis>("axis", "In 3D, the axis it turns round. Y stands upright, so a coin spins and a door swings; X tips it over forward and back, Z rolls it to the side.");
	kind.setting<&SCRotateAction::space>("space", "In 3D, whether the axis is the world's or its own, which leans when it leans.");
}

String SCRotateAction::summary_default() {
	return vformat(U"Keep %s turning%s at %s° a second", words::name_in_line(node_path), round_axis(this, axis), words::number(speed));
}

void SCRotateAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(!surely_on_2d(this), property, { "axis", "space" });
}

void SCRotateToAction::describe(KindTable<SCRotateToAction> &kind) {
	kind.about("transform", "rotate_to", "Turn a node to an angle, in degrees. A door that swings open, a lever that is thrown, a card that is turned over. It finishes when it is there.");
	kind.constants_of<Axis>();
	kind.constants_of<Space>();
	kind.constants_of<Way>();
	kind.setting<&SCRotateToAction::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&SCRotateToAction::degrees>("degrees", hint::DEGREES, "The angle it turns to. From Where It Is turns it by that much, so 360 is once round.");
	kind.setting<&SCRotateToAction::axis>("axis", "In 3D, which of its three angles, as the inspector shows them under Rotation. Y stands upright, so a door swings.");
	kind.setting<&SCRotateToAction::space>("space", "How the angle is meant. Global is its angle in the world, Local the one that the inspector shows under Rotation. From Where It Is turns it on by that much.").relists();
	kind.setting<&SCRotateToAction::way>("way", "The Short Way never turns more than half round. As Typed counts the angle on from where it stands, so from 0 to 720 is twice round.");
	kind.setting<&SCRotateToAction::duration>("duration", hint::SECONDS, "Seconds the turn takes. Zero turns it at once.");
	kind.setting<&SCRotateToAction::speed>("speed", TURN_SPEED, "How fast it turns, in degrees a second, so that a longer turn takes longer. Zero goes by Duration.").relists();
	Easings::describe<&SCRotateToAction::curve, &SCRotateToAction::easing>(kind);
}

String SCRotateToAction::summary_default() {
	const String pace = speed > 0.0 ? vformat(U"at %s° a second", words::number(speed)) : vformat("in %s s", words::number(duration));
	return vformat(U"Turn %s %s %s°%s %s", words::name_in_line(node_path), space == FROM_WHERE_IT_IS ? "by" : "to", words::number(degrees), round_axis(this, axis), pace);
}

bool SCRotateToAction::finishes_as_it_starts_default() {
	return duration <= 0.0 && speed <= 0.0 && is_typed_in("duration") && is_typed_in("speed");
}

void SCRotateToAction::_validate_property(PropertyInfo &property) const {
	showing::only_if(!surely_on_2d(this), property, { "axis" });
	showing::only_if(space != FROM_WHERE_IT_IS, property, { "way" });
	showing::only_if(speed <= 0.0 && is_typed_in("speed"), property, { "duration" });
}
