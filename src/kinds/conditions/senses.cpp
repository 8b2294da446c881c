#include "kinds/conditions/senses.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

namespace {

constexpr Hint OUT_OF_SIGHT = { PROPERTY_HINT_RANGE, "0,10,0.001,or_greater,suffix:s,hide_slider" };

void warn_no_perception(SCMachineBase *machine, const Object *condition) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, condition, 0,
				vformat("%s on %s has no Perception node under the character, so the answer is no. Right-click the character > Give It > Perception.",
						verbs::kind_in_palette(condition), machine->name_in_messages()));
	}
}

} // namespace

void SCCanSeeCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "can_see", "True while the character can actually see what it is dealing with, according to its Perception node.");
	kind.setting<&Self::body_path>("body_path", "The character, with the Perception node right under it. Empty is Self.");
	kind.setting<&Self::group>("group", "What it sees has to be in this group, such as player. Empty takes whatever its Perception node has found.").optional();
	kind.setting<&Self::store_seen_in>("store_seen_in", "Keep whom it sees in this variable. It stays there when they go out of sight.");
	kind.warns<&Self::warn_can_see>("_warn_can_see", "m");
}

String SCCanSeeCondition::summary_default() {
	return group.is_empty() ? String("Can see something") : vformat("Can see a %s", group);
}

void SCCanSeeCondition::warn_can_see(SCMachineBase *machine) {
	warn_no_perception(machine, this);
}

void SCTargetLostCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "target_lost",
			"True when the character had something and cannot see it any more, and has not been able to for a moment. It stays true until something comes into "
			"view again.");
	kind.setting<&Self::body_path>("body_path", "The character, with the Perception node right under it. Empty is Self.");
	kind.setting<&Self::out_of_sight_for>(
				"out_of_sight_for", OUT_OF_SIGHT, "For how many seconds it has to be out of sight, so that a tree passed by on the run does not count.")
			.unless<&Self::only_when_forgotten>();
	kind.setting<&Self::only_when_forgotten>(
			"only_when_forgotten", "Wait until the Perception node has given up, when its Remember For has run out. Off asks only about its sight.");
	kind.warns<&Self::warn_target_lost>("_warn_target_lost", "m");
}

String SCTargetLostCondition::summary_default() {
	return only_when_forgotten ? String("It has given up") : vformat("Lost sight for %s s", words::number(out_of_sight_for));
}

void SCTargetLostCondition::warn_target_lost(SCMachineBase *machine) {
	warn_no_perception(machine, this);
}
