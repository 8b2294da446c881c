#include "kinds/physics/body_properties.hpp"

#include "action/words.hpp"

namespace {

constexpr Hint VALUE = { PROPERTY_HINT_RANGE, "0,100,0.001,or_less,or_greater,hide_slider" };

} // namespace

bool SCSetBodyPropertiesAction::is_a_switch() const {
	switch (property) {
		case LOCK_ROTATION:
		case CAN_SLEEP:
		case CONTINUOUS_COLLISION:
		case CONTACT_MONITOR:
		case STOP_ON_SLOPES:
		case SAME_SPEED_ON_SLOPES:
		case BLOCK_ON_WALLS:
		case SLIDE_ON_CEILINGS:
			return true;
		default:
			return false;
	}
}

void SCSetBodyPropertiesAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "set_body_properties",
			"Change how a physics body behaves while the game runs, one property at a time, picked by name. A crate that gets heavy, a floor that turns to "
			"ice, a "
			"hero who walks on the ceiling.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<Property>();
	kind.constants_of<Mode>();
	kind.setting<&Self::body_path>("body_path",
			"The body that changes. Empty is Self. Mass to Max Contacts are for a RigidBody, of which a StaticBody has Friction and Bounce; Up Direction and "
			"what "
			"follows is for a character body.");
	kind.setting<&Self::property>("property",
			"What is changed. Mass is in kilograms, an angle in degrees, Floor Snap and Safe Margin in metres in 3D and pixels in 2D. Friction and Bounce go "
			"from "
			"0 to 1, and are this body's alone, whoever shares its material.");
	kind.setting<&Self::value>("value", VALUE, "What it becomes.").only_if<&Self::is_a_number>();
	kind.setting<&Self::on>("on", "Whether it is switched on.").only_if<&Self::is_a_switch>();
	kind.setting<&Self::direction>("direction", "Which way is up for it. In 2D the screen's top is (0, -1, 0), and z says nothing.")
			.only_if<&Self::property, UP_DIRECTION>();
	kind.setting<&Self::mode>("mode", "Grounded has floors, walls and ceilings. Floating has only walls, for a game seen from above and for what flies.")
			.only_if<&Self::property, MOTION_MODE>();
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "When the state is left, it becomes again what it was before.");
}

String SCSetBodyPropertiesAction::summary_default() {
	const String names = enum_words_of(Property()).constants;
	const PackedStringArray each = names.split(",");
	const String name = int64_t(property) >= 0 && int64_t(property) < each.size() ? each[int64_t(property)].strip_edges().capitalize() : String("nothing");
	String to = words::number(value);
	if (is_a_switch()) {
		to = on ? "on" : "off";
	} else if (property == UP_DIRECTION) {
		to = words::text_of(direction);
	} else if (property == MOTION_MODE) {
		to = mode == FLOATING ? "Floating" : "Grounded";
	}
	return vformat("Set the %s of %s to %s%s", name, words::name_in_line(body_path), to, put_back_when_left ? " while here" : "");
}
