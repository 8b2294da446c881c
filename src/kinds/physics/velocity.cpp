#include "kinds/physics/velocity.hpp"

#include "action/places.hpp"
#include "action/words.hpp"

namespace {

constexpr Hint ANY_SPEED = { PROPERTY_HINT_RANGE, "0,100,0.01,or_less,or_greater,hide_slider" };
constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "-720,720,0.1,or_less,or_greater,suffix:°/s" };

} // namespace

void SCGetVelocityAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "get_velocity",
			"Read how fast a body is moving, and which way. Pick a variable for each thing that is to be known: a speedometer takes the speed, a check for "
			"falling the rise.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<Space>();
	kind.setting<&Self::body_path>("body_path", "The body that is asked: a RigidBody or a character body. Empty is Self.");
	kind.setting<&Self::space>("space",
			"How Velocity and Direction are told. Global is along the axes of the world. Local is as the body sees it: in 3D its front is (0, 0, -1), in 2D "
			"(1, 0).");
	kind.setting<&Self::store_velocity_in>("store_velocity_in", "The variable for its velocity: a Vector3 in metres a second, or in 2D a Vector2 in pixels.")
			.optional();
	kind.setting<&Self::store_speed_in>("store_speed_in", "The variable for how fast it moves, in metres a second in 3D and pixels a second in 2D.").optional();
	kind.setting<&Self::store_direction_in>("store_direction_in", "The variable for which way it moves, as long as 1. Zero for one that stands still.")
			.optional();
	kind.setting<&Self::store_flat_speed_in>(
				"store_flat_speed_in", "The variable for how fast it moves along the ground, whatever it rises or falls. For walking and running.")
			.optional();
	kind.setting<&Self::store_rising_in>("store_rising_in", "The variable for how fast it rises. Below zero it falls.").optional();
	kind.setting<&Self::store_forward_in>("store_forward_in", "The variable for how fast it moves the way it faces. Below zero it goes backward.").optional();
	kind.setting<&Self::store_turning_in>("store_turning_in",
				"The variable for how fast it spins, in degrees a second: clockwise in 2D, and in 3D a Vector3 with the turn round each axis. A character body "
				"does "
				"not spin.")
			.optional();
}

String SCGetVelocityAction::summary_default() {
	PackedStringArray told;
	const auto tell = [&told](const char *what, const StringName &variable) {
		if (!variable.is_empty()) {
			told.push_back(vformat("%s as %s", what, variable));
		}
	};
	tell("velocity", store_velocity_in);
	tell("speed", store_speed_in);
	tell("direction", store_direction_in);
	tell("flat speed", store_flat_speed_in);
	tell("rise", store_rising_in);
	tell("forward speed", store_forward_in);
	tell("spin", store_turning_in);
	const String what = told.is_empty() ? String("velocity as ") + words::picked(StringName()) : String(", ").join(told);
	return vformat("Keep the %s of %s", what, words::name_in_line(body_path));
}

void SCSetVelocityAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "set_velocity",
			"Set how fast a body is moving, on a RigidBody or a CharacterBody, in 2D or 3D. A ball that is served, a bullet, a trampoline. A character body "
			"only "
			"goes once something moves it, such as Move Character.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<What>();
	kind.constants_of<How>();
	kind.constants_of<Space>();
	kind.setting<&Self::body_path>("body_path", "The body that gets it: a RigidBody or a character body. Empty is Self.");
	kind.setting<&Self::what>("what", "What is set: the velocity as it is, a speed in a direction, or how fast a RigidBody turns.");
	kind.setting<&Self::how>("how", "Set puts it in place of what there is. Add comes on top of it.");
	kind.setting<&Self::velocity>("velocity",
				"How far it moves in a second, in metres in 3D and pixels in 2D. With a speed and a direction it only says which way, and zero is the way it "
				"is "
				"moving already.")
			.in_2d(Vector2(0, 0))
			.unless<&Self::what, HOW_FAST_IT_TURNS>();
	kind.setting<&Self::speed>("speed", ANY_SPEED, "How fast, in metres a second in 3D and pixels a second in 2D. Below zero it goes the other way.")
			.only_if<&Self::what, A_SPEED_AND_A_DIRECTION>();
	kind.setting<&Self::set_x>("set_x", "Off leaves its speed along x as it is.").only_if<&Self::what, THE_VELOCITY>();
	kind.setting<&Self::set_y>("set_y", "Off leaves its speed along y as it is: the fall of a body that only its walk is set of.")
			.only_if<&Self::what, THE_VELOCITY>();
	kind.setting<&Self::set_z>("set_z", "Off leaves its speed along z as it is. In 3D alone.").only_if<&Self::what, THE_VELOCITY>();
	kind.setting<&Self::space>("space",
			"Global is along the axes of the world. Local is along the body's own, so that it moves the way it points: (0, 0, -1) is the front in 3D, (1, 0) "
			"in "
			"2D.");
	kind.setting<&Self::turn_speed>("turn_speed", TURN_SPEED, "How far it turns in a second, in degrees: clockwise in 2D, anticlockwise round the axis in 3D.")
			.only_if<&Self::what, HOW_FAST_IT_TURNS>();
	kind.setting<&Self::turn_axis>("turn_axis", "The axis it turns round, in 3D. (0, 1, 0) is upright.").only_if<&Self::what, HOW_FAST_IT_TURNS>();
}

String SCSetVelocityAction::summary_default() {
	const String name = words::name_in_line(body_path);
	const char *end = space == LOCAL ? ", its own way" : "";
	const char *verb = how == ADD ? "Add to" : "Set";
	const char *to = how == ADD ? "," : " to";
	if (what == HOW_FAST_IT_TURNS) {
		return vformat("%s the spin of %s%s %s degrees a second", verb, name, to, words::number(turn_speed));
	}
	if (what == A_SPEED_AND_A_DIRECTION) {
		const Variant still = places::as_vector3(velocity) == Vector3() ? Variant("the way it goes") : Variant(words::text_of(velocity));
		return vformat("%s the speed of %s%s %s along %s%s", verb, name, to, words::number(speed), still, end);
	}
	String axes;
	if (!(set_x && set_y && set_z)) {
		axes = String(set_x ? "x" : "") + (set_y ? "y" : "") + (set_z ? "z" : "") + " ";
	}
	return vformat("%s the %svelocity of %s%s %s%s", verb, axes, name, to, words::text_of(velocity), end);
}
