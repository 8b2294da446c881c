#include "kinds/transform/turning.hpp"

#include "action/action_shared.hpp"
#include "action/inspector.hpp"

namespace {

constexpr Hint DEGREES_A_SECOND = { PROPERTY_HINT_RANGE, "-360,360,0.1,or_less,or_greater,suffix:°/s" };
constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "0,720,0.1,or_greater,suffix:°/s" };

template <class Axis>
String round_axis(const Object *action, Axis axis) {
	return !turning::may_be_in_3d(action) ? String() : vformat(" round %s", axis == Axis(0) ? "x" : (axis == Axis(1) ? "y" : "z"));
}

} // namespace

bool turning::may_be_in_3d(const Object *action) {
	return !inspector::shown_on_2d_known(action) || !inspector::shown_on_2d(action);
}

void SCLookAtAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "look_at",
			"Turn a node to face another node, the mouse pointer, a place, or a direction, at once or over time. A turret, a head that follows the player, a "
			"sign that always faces the camera. In 2D it is the right side that faces, in 3D the front.");
	kind.constants_of<Face>();
	kind.constants_of<Space>();
	kind.setting<&Self::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::face>(
			"face", "What it faces. In 3D the mouse pointer means the spot under it that is as high as the node, as in a game seen from above.");
	kind.setting<&Self::at_path>("at_path", "The node it faces.").only_if<&Self::face, A_NODE>();
	kind.setting<&Self::place>("place", "The place in the world it faces. A variable holding a node stands for where that node is.")
			.in_2d(Vector2(0, 0))
			.only_if<&Self::face, A_PLACE>();
	kind.setting<&Self::direction>("direction", "The way it faces. No direction at all, such as a stick at rest, leaves it as it is.")
			.only_if<&Self::face, A_DIRECTION>();
	kind.setting<&Self::space>("space", "Global is a direction in the world, Local one of its parent's.").only_if<&Self::face, A_DIRECTION>();
	kind.setting<&Self::turned_by>("turned_by", hint::DEGREES,
			"Degrees it is turned on from there, for a picture whose front is not its right side or a model whose front is its back. 90 suits a picture drawn "
			"facing up, 180 a model drawn facing you.");
	kind.setting<&Self::keep_level>("keep_level", "Turn only round the upright axis, so that a guard does not lean back to look at a bird. 3D only.")
			.only_if<&Self::may_be_in_3d>();
	kind.setting<&Self::duration>(
				"duration", hint::SECONDS, "Seconds the turn takes when it is done once. Zero faces it at once. It turns to where the other was at the start.")
			.only_if<&Self::run_mode, ONCE>();
	Easings::describe<&Self::curve, &Self::easing>(kind).only_if<&Self::run_mode, ONCE>().only_if<&Self::duration>();
	kind.setting<&Self::turn_speed>(
				"turn_speed", TURN_SPEED, "On Every Frame, the most degrees it turns in a second, so that a slow turret can be outrun. Zero faces it at once.")
			.only_if<&Self::run_mode, EVERY_FRAME>();
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

void SCRotateAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "keep_turning",
			"Keep a node turning at a steady speed, in degrees per second, for as long as the state runs. A coin, a fan, the hand of a clock. It does not hold "
			"the state up: what else the state does decides when it is finished.");
	kind.runs(Runs::ON_AND_ON);
	kind.constants_of<Axis>();
	kind.constants_of<Space>();
	kind.setting<&Self::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::speed>(
			"speed", DEGREES_A_SECOND, "Degrees per second; 360 is once round each second. In 2D it turns clockwise, and below zero the other way.");
	kind.setting<&Self::axis>("axis",
				"In 3D, the axis it turns round. Y stands upright, so a coin spins and a door swings; X tips it over forward and back, Z rolls it to the side.")
			.only_if<&Self::may_be_in_3d>();
	kind.setting<&Self::space>("space", "In 3D, whether the axis is the world's or its own, which leans when it leans.").only_if<&Self::may_be_in_3d>();
}

String SCRotateAction::summary_default() {
	return vformat(U"Keep %s turning%s at %s° a second", words::name_in_line(node_path), round_axis(this, axis), words::number(speed));
}

void SCRotateToAction::describe(KindTable<Self> &kind) {
	kind.about("transform", "rotate_to",
			"Turn a node to an angle, in degrees. A door that swings open, a lever that is thrown, a card that is turned over. It finishes when it is there.");
	kind.runs_for_a_while<&Self::duration, &Self::speed>();
	kind.constants_of<Axis>();
	kind.constants_of<Space>();
	kind.constants_of<Way>();
	kind.setting<&Self::node_path>("node_path", "The node that turns: a 2D node, a 3D node or a Control. Empty is Self.");
	kind.setting<&Self::degrees>("degrees", hint::DEGREES, "The angle it turns to. From Where It Is turns it by that much, so 360 is once round.");
	kind.setting<&Self::axis>("axis", "In 3D, which of its three angles, as the inspector shows them under Rotation. Y stands upright, so a door swings.")
			.only_if<&Self::may_be_in_3d>();
	kind.setting<&Self::space>("space",
			"How the angle is meant. Global is its angle in the world, Local the one that the inspector shows under Rotation. From Where It Is turns it on by "
			"that much.");
	kind.setting<&Self::way>(
				"way", "The Short Way never turns more than half round. As Typed counts the angle on from where it stands, so from 0 to 720 is twice round.")
			.unless<&Self::space, FROM_WHERE_IT_IS>();
	kind.setting<&Self::duration>("duration", hint::SECONDS, "Seconds the turn takes. Zero turns it at once.").unless<&Self::speed>();
	kind.setting<&Self::speed>("speed", TURN_SPEED, "How fast it turns, in degrees a second, so that a longer turn takes longer. Zero goes by Duration.");
	Easings::describe<&Self::curve, &Self::easing>(kind);
}

String SCRotateToAction::summary_default() {
	const String pace = speed > 0.0 ? vformat(U"at %s° a second", words::number(speed)) : vformat("in %s s", words::number(duration));
	return vformat(U"Turn %s %s %s°%s %s", words::name_in_line(node_path), space == FROM_WHERE_IT_IS ? "by" : "to", words::number(degrees),
			round_axis(this, axis), pace);
}
