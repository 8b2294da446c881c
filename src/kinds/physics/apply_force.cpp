#include "kinds/physics/apply_force.hpp"

#include "action/words.hpp"

namespace {

constexpr Hint TWIST = { PROPERTY_HINT_RANGE, "-100,100,0.01,or_less,or_greater,hide_slider" };

} // namespace

void SCApplyForceAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "apply_force",
			"Push a physics body with a shove, a jump, a wind or an explosion. A shove is a blow, done at once. A steady push goes on for as long as the state "
			"runs, and holds nothing up.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<Push>();
	kind.constants_of<Space>();
	kind.setting<&Self::body_path>(
			"body_path", "The body that is pushed: a RigidBody, or a character body, which has no mass and takes the push as speed. Empty is Self.");
	kind.setting<&Self::push>("push", "A Shove is a blow: kicked, thrown, hit. A Steady Push is a force that goes on: a wind, an engine, a magnet.").relists();
	kind.setting<&Self::force>("force",
				"Which way and how hard. A shove of 5 gives a body of 1 kg a speed of 5 metres a second, a steady push of 5 that much in each second; in 2D it "
				"is "
				"pixels, with y downward.")
			.in_2d(Vector2(0, -160));
	kind.setting<&Self::space>("space",
			"Global is along the axes of the world. Local is along the body's own, so that it is pushed the way it points: (0, 0, -1) is the front in 3D, (1, "
			"0) "
			"in 2D.");
	kind.setting<&Self::whatever_its_mass>("whatever_its_mass", "A heavy body is pushed so much harder, so that each gets the same speed, as gravity does it.");
	kind.setting<&Self::at_path>("at_path",
			"The node at whose place the push takes hold, such as a Marker at the tip of a rudder, so that it turns the body too. Empty is the middle of its "
			"weight.");
	kind.setting<&Self::at_offset>("at_offset",
			"How far from there it takes hold, along the axes that Space says, in metres in 3D and pixels in 2D, where z says nothing. Zero is right there.");
	kind.setting<&Self::twist>("twist", TWIST,
			"A torque beside the push, which spins a RigidBody: clockwise in 2D, anticlockwise round the axis in 3D. In 2D it takes thousands. A shove of 0 "
			"spins "
			"nothing.");
	kind.setting<&Self::twist_axis>("twist_axis", "The axis it is spun round, in 3D. (0, 1, 0) is upright.").only_if<&Self::twists>();
}

String SCApplyForceAction::summary_default() {
	String line = vformat(push == A_STEADY_PUSH ? "Push %s steadily by %s" : "Shove %s by %s", words::name_in_line(body_path), words::text_of(force));
	if (space == LOCAL) {
		line += ", its own way";
	}
	if (!at_path.is_empty()) {
		line += vformat(", at %s", words::name_in_line(at_path));
	}
	return twist != 0.0 ? line + vformat(", with a twist of %s", words::number(twist)) : line;
}
