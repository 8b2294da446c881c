#include "kinds/ai/alert_allies.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "steering/dealing.hpp"
#include "steering/senses.hpp"

void SCAlertAlliesAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "alert_allies",
			"Tell the others. Everybody of a group who is near enough gets an event, and whom the character deals with, so that one guard who saw the player "
			"has "
			"the whole room after them.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::body_path>("body_path", "The character that raises the alarm. Empty is Self.");
	kind.setting<&Self::ally_group>("ally_group", "The group of those who are told, such as guards. The character itself is left out.");
	kind.setting<&Self::within>("within", hint::DISTANCE, "How far the alarm carries, in metres in 3D and pixels in 2D. Zero carries everywhere.").px_in_2d();
	kind.setting<&Self::within_variable>("within_variable", "Read how far the alarm carries from this variable.").optional();
	kind.setting<&Self::target_variable>("target_variable",
				"The variable holding whom it is about, such as the one that Look For Target stores. Empty is whatever the character's Perception node has "
				"found.")
			.optional();
	kind.setting<&Self::event_name>("event_name", "The event that the machine of each of them gets, with whom it is about.");
	kind.setting<&Self::give_them_the_target>(
			"give_them_the_target", "Their Perception nodes take it for their target too, as if they had seen it, so that they can chase it at once.");
	kind.setting<&Self::store_count_in>("store_count_in", "Keep how many were told in this variable.");
	kind.setting<&Self::nobody_event>("nobody_event", "The event to send when nobody was told.").optional();
	kind.warns<&Self::warn_deaf>("_warn_deaf", "m", "index", "names");
	dealing::bind(kind);
}

String SCAlertAlliesAction::summary_default() {
	return vformat("Tell the %s", ally_group);
}

void SCAlertAlliesAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}

void SCAlertAlliesAction::warn_deaf(SCMachineBase *machine, int64_t, const PackedStringArray &names) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, this, 0,
				vformat("Alert Allies on %s: %s in reach, but with no Machine to take %s (and no Perception to hand the target to), so nobody heard.",
						machine->name_in_messages(), senses::listed(names), words::event_in_words(event_name)));
	}
}
