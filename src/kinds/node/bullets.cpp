#include "kinds/node/bullets.hpp"

#include "action/action_shared.hpp"
#include "action/shared_verbs.hpp"

namespace {

constexpr Hint NONE_OR_MORE = { PROPERTY_HINT_RANGE, "0,100,1,or_greater,hide_slider" };
constexpr Hint AROUND = { PROPERTY_HINT_RANGE, "0,360,0.1,suffix:°" };
constexpr Hint TURN_SPEED = { PROPERTY_HINT_RANGE, "0,720,0.1,or_greater,hide_slider,suffix:°/s" };
constexpr Hint BULLET_SPEED = { PROPERTY_HINT_RANGE, "0,2000,0.01,or_greater,hide_slider" };

} // namespace

void SCBulletPatternAction::describe(KindTable<Self> &kind) {
	kind.about("node", "bullet_pattern",
			"Fire a pattern of bullets, from one aimed shot to a shotgun fan, a ring, a spiral that turns with each shot, or a wall with a gap to slip "
			"through.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Aim>();
	kind.setting<&Self::scene>("scene",
			"The bullet: a scene with an Area2D or an Area3D at its top, its shape and its picture, and no script. Its collision mask says which layers it "
			"can meet, and its shape how near is a touch. It is turned to the way it flies.");
	kind.setting<&Self::from_path>("from_path",
			"The 2D or 3D node that it fires from, such as the muzzle of a gun. Empty is Self. Whoever that node belongs to "
			"is never hit by its own bullets.");
	kind.setting<&Self::aim>("aim",
			"Where the middle of the pattern goes: the way the node it fires from faces, at another node, along a direction in the world, or at an angle in "
			"the "
			"world.");
	kind.setting<&Self::target_path>("target_path", "Who to fire at, such as the player.").only_if<&Self::aim, AT_A_NODE>().optional();
	kind.setting<&Self::direction>("direction",
				"The direction in the world. (1, 0) is to the right and (0, 1) is down. In 3D, right and down are as a camera sees them that looks down from "
				"above.")
			.only_if<&Self::aim, ALONG_A_DIRECTION>();
	kind.setting<&Self::angle>("angle", hint::DEGREES, "The angle in the world, in degrees. 0 is to the right, and 90 is down, in 3D as seen from above.")
			.only_if<&Self::aim, AN_ANGLE>();
	kind.setting<&Self::count>("count", hint::HOW_MANY, "How many bullets each shot fires.");
	kind.setting<&Self::spread>(
				"spread", AROUND, "Over how many degrees they are spread, evenly from the first to the last. 30 makes a shotgun fan, and 360 a whole ring.")
			.only_if<&Self::is_a_pattern>();
	kind.setting<&Self::turn_each_shot>("turn_each_shot", hint::DEGREES,
			"By how many degrees each shot is turned on from the one before. A ring that is fired again and again becomes a spiral. Shots of Every Seconds "
			"begin unturned each time that the state is entered; without it they go on from where the last one was.");
	kind.setting<&Self::wobble>("wobble", AROUND, "By up to how many degrees to either side each bullet strays at random.");
	kind.setting<&Self::gap>(
				"gap", NONE_OR_MORE, "How many bullets, side by side, are left out, at another place with each shot, so that there is a way through.")
			.only_if<&Self::is_a_pattern>();
	kind.setting<&Self::start_out>(
			"start_out", hint::DISTANCE, "How far from the node that it fires from bullets start, each along its own way. In pixels in 2D and metres in 3D.");
	kind.setting<&Self::homing>(
				"homing", TURN_SPEED, "By up to how many degrees a second a bullet turns toward the nearest of Hits Group. Zero flies straight on.")
			.only_if<&Self::hits_group>();
	kind.setting<&Self::bounces>("bounces", NONE_OR_MORE, "How many times a bullet bounces off something solid before the next stops it.");
	kind.setting<&Self::pierce>("pierce", NONE_OR_MORE, "How many more things it passes through, and hits, after its first.").only_if<&Self::hits_group>();
	kind.setting<&Self::speed>("speed", BULLET_SPEED,
			"How fast bullets fly, in pixels a second in 2D and metres a second in 3D, where it wants a smaller number. Below zero they fly the other way.");
	kind.setting<&Self::lifetime>("lifetime", hint::SECONDS, "After how many seconds a bullet that has met nothing is gone.");
	kind.setting<&Self::hits_group>("hits_group",
				"The group of what they hit, such as the player. All else that is solid stops them, and areas that are not in it do not. Empty hurts nothing.")
			.optional();
	kind.setting<&Self::hit_event>(
				"hit_event", "Sent to the machine of what was hit, with the damage. What has a Hurt Box is hurt by that instead. The sender is the bullet.")
			.only_if<&Self::hits_group>()
			.optional();
	kind.setting<&Self::damage>("damage", hint::HEALTH, "How much a hit takes.").only_if<&Self::hits_group>();
	kind.setting<&Self::every_seconds>("every_seconds", hint::SECONDS,
			"Fire again every so many seconds, for as long as the state is active. The first shot comes at once. Zero fires one alone.");
	kind.setting<&Self::sound>("sound", "Played where it fires, with each shot. When many fire at the same time, no more than a few of them are heard.");
	kind.setting<&Self::sound_bus>("sound_bus", "The mixer bus that it plays on. Master when there is no bus of that name.").only_if<&Self::sound>().optional();
}

bool SCBulletPatternAction::keeps_firing() const {
	return every_seconds > 0.0 || from_variables.has(verbs::name_of<&Self::every_seconds>());
}

bool SCBulletPatternAction::works_after_finishing_default() {
	return keeps_firing();
}

bool SCBulletPatternAction::is_a_pattern() const {
	return count > 1 || from_variables.has(verbs::name_of<&Self::count>());
}

String SCBulletPatternAction::aim_in_line() const {
	switch (aim) {
		case AT_A_NODE:
			return "at " + words::name_in_line(target_path, "Self", ActionShared::get().not_picked);
		case ALONG_A_DIRECTION:
			return "along " + words::text_of(direction);
		case AN_ANGLE:
			return vformat(U"at %s°", words::number(angle));
		default:
			return vformat("the way %s faces", words::name_in_line(from_path));
	}
}

String SCBulletPatternAction::summary_default() {
	String named = ActionShared::get().not_picked;
	if (scene.is_valid()) {
		named = scene->get_path().is_empty() ? String("a scene") : scene->get_path().get_file().get_basename();
	}
	const String many = count != 1 ? vformat("%d of ", count) : String();
	const String over = is_a_pattern() && spread != 0.0 ? vformat(U" over %s°", words::number(spread)) : String();
	const String again = every_seconds > 0.0 ? vformat(" every %s s", words::number(every_seconds)) : String();
	return vformat("Fire %s%s %s%s%s", many, named, aim_in_line(), over, again);
}
