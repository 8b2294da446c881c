#include "kinds/ai/look_for_target.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCLookForTargetAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "look_for_target",
			"Keep watch. The character's Perception node is set to look for a group, and what comes into its view, comes back into view or is given up sends "
			"an "
			"event, for as long as the state runs.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::body_path>("body_path", "The character that keeps watch, with the Perception node right under it. Empty is Self.");
	kind.setting<&Self::look_for>("look_for", "The group of those to look for. Empty leaves it at the Watch Group of the Perception node.").optional();
	kind.setting<&Self::spotted_event>("spotted_event", "The event to send when one of them is in view, with who it is. It is sent on entering too.")
			.optional();
	kind.setting<&Self::lost_event>("lost_event", "The event to send when it gives up on somebody who has been out of view for too long, or is gone.")
			.optional();
	kind.setting<&Self::store_target_in>("store_target_in", "Keep who was found in this variable, for Chase and others to work with.").optional();
	kind.setting<&Self::look_at_once>("look_at_once", "Look on entering the state. Off waits for the next look of the Perception node.");
	kind.warns<&Self::warn_look>("_warn_look", "m");
}

String SCLookForTargetAction::summary_default() {
	const String whom = look_for.is_empty() ? String("what its Perception watches for") : String(look_for);
	return spotted_event.is_empty() ? vformat("Look for %s", whom) : vformat("Look for %s, %s when found", whom, spotted_event);
}

void SCLookForTargetAction::warn_look(SCMachineBase *machine) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0, vformat("Look For Target on %s has no Perception node under the character.", machine->name_in_messages()));
	}
}
