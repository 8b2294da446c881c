#include "kinds/physics/set_joint.hpp"

#include "action/words.hpp"

void SCSetJointAction::describe(KindTable<Self> &kind) {
	constexpr Hint VALUE = { PROPERTY_HINT_RANGE, "0,100,0.01,or_less,or_greater,hide_slider" };
	kind.about("physics", "set_joint",
			"Connect two bodies with a joint, let them go again, or change one of the joint's values while the game runs. A trailer that is coupled, a rope "
			"that "
			"is cut, a motor that starts.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<What>();
	kind.constants_of<Place>();
	kind.constants_of<Which>();
	kind.constants_of<Axis>();
	kind.setting<&Self::joint_path>("joint_path", "The joint, a node such as a PinJoint2D or a HingeJoint3D. Empty is Self.");
	kind.setting<&Self::what>("what", "Connect holds two bodies together by it, Let Go sets both free, Set A Value changes how it works.");
	kind.setting<&Self::first_path>("first_path", "The first body. Empty is Self.").only_if<&Self::what, CONNECT>();
	kind.setting<&Self::second_path>("second_path", "The second body. In 3D empty ties the first one to the place in the world.")
			.only_if<&Self::what, CONNECT>();
	kind.setting<&Self::place>("place", "Where the joint holds them: at the place it has, at one of the two, or half way between. It is moved there first.")
			.only_if<&Self::what, CONNECT>();
	kind.setting<&Self::bodies_collide>("bodies_collide", "The two bump into each other though they are connected. Off lets them overlap.")
			.only_if<&Self::what, CONNECT>();
	kind.setting<&Self::which>("which",
				"Which value. A length, a distance is in metres in 3D and pixels in 2D, an angle in degrees, Motor Speed in degrees a second. Not every joint "
				"has "
				"each.")
			.only_if<&Self::what, SET_A_VALUE>();
	kind.setting<&Self::value>("value", VALUE, "What it becomes.").only_if<&Self::sets_a_number>();
	kind.setting<&Self::on>("on", "Whether it is switched on.").only_if<&Self::sets_a_switch>();
	kind.setting<&Self::axis>("axis", "Which of its axes, for a Generic6DOFJoint3D alone.").only_if<&Self::what, SET_A_VALUE>();
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "When the state is left, the joint becomes again what it was before.");
}

String SCSetJointAction::summary_default() {
	const String name = words::name_in_line(joint_path);
	const char *end = put_back_when_left ? " while here" : "";
	if (what == LET_GO) {
		return vformat("Let go of what %s connects%s", name, end);
	}
	if (what == SET_A_VALUE) {
		const PackedStringArray names = String(enum_words_of(Which()).constants).split(",");
		const String shown = int64_t(which) >= 0 && int64_t(which) < names.size() ? names[which].strip_edges().capitalize() : String("nothing");
		return vformat("Set the %s of %s to %s%s", shown, name, is_a_switch() ? String(on ? "on" : "off") : words::number(value), end);
	}
	return vformat("Connect %s and %s by %s%s", words::name_in_line(first_path), words::name_in_line(second_path, "Self", "the world"), name, end);
}
