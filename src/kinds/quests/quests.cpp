#include "kinds/quests/quests.hpp"

#include "action/shared_verbs.hpp"
#include "inventory/quest_book.hpp"

namespace {

void warn(SCMachineBase *machine, const Object *kind, int64_t code, const String &sentence) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, kind, int(code), sentence);
	} else {
		MakerWarnings::say(sentence);
	}
}

String name_of(SCMachineBase *machine) {
	return machine != nullptr ? machine->name_in_messages() : String("a machine");
}

bool is_no_quest(int64_t code) {
	return code == int64_t(QuestWarning::NO_QUEST);
}

template <class Kind>
void describe_quest(KindTable<Kind> &kind, const char *word, const char *about, const char *which) {
	kind.about("quests", word, about);
	kind.runs(Runs::AT_ONCE);
	kind.template setting<&Kind::quest>("quest", hint::QUEST, which);
	kind.template warns<&Kind::warn_quest>("_warn_quest", "machine", "index", "code");
}

} // namespace

void SCStartQuestAction::describe(KindTable<Self> &kind) {
	describe_quest(kind, "start_quest",
			"Begin a quest. One that is under way or done is left as it is, and one that failed or was given up begins again from its first step.",
			"The quest that begins.");
}

String SCStartQuestAction::summary_default() {
	return vformat("Start quest %s", quest_book::in_line(quest));
}

void SCStartQuestAction::warn_quest(SCMachineBase *machine, int64_t, int64_t code) {
	warn(machine, this, code, vformat("Start Quest on %s has no quest to begin.", name_of(machine)));
}

void SCCompleteQuestAction::describe(KindTable<Self> &kind) {
	describe_quest(kind, "complete_quest",
			"Mark a quest done now and give its reward, whatever its steps say. One that has not begun begins and is done in one go.",
			"The quest that is done.");
}

String SCCompleteQuestAction::summary_default() {
	return vformat("Complete quest %s", quest_book::in_line(quest));
}

void SCCompleteQuestAction::warn_quest(SCMachineBase *machine, int64_t, int64_t code) {
	warn(machine, this, code, vformat("Complete Quest on %s has no quest to complete.", name_of(machine)));
}

void SCFailQuestAction::describe(KindTable<Self> &kind) {
	describe_quest(kind, "fail_quest",
			"Fail a quest that is under way, for example when the prisoner was not saved in time or the cart was lost. Its steps stop counting, and its Failed "
			"Event is sent.",
			"The quest that fails.");
}

String SCFailQuestAction::summary_default() {
	return vformat("Fail quest %s", quest_book::in_line(quest));
}

void SCFailQuestAction::warn_quest(SCMachineBase *machine, int64_t, int64_t code) {
	warn(machine, this, code,
			is_no_quest(code)
					? vformat("Fail Quest on %s has no quest to fail.", name_of(machine))
					: vformat("Fail Quest on %s: the quest \"%s\" is %s, not under way, so it was not failed. Only a quest started with Start Quest, and "
							  "not done yet, can fail.",
							  name_of(machine), quest_book::title_of(quest), quest_book::status_in_words(quest_book::status_of(quest))));
}

void SCAbandonQuestAction::describe(KindTable<Self> &kind) {
	describe_quest(kind, "abandon_quest",
			"The player gives a quest up, from a journal or by answering 'never mind'. Its steps stop counting, and its Abandoned Event is sent.",
			"The quest that is given up.");
}

String SCAbandonQuestAction::summary_default() {
	return vformat("Abandon quest %s", quest_book::in_line(quest));
}

void SCAbandonQuestAction::warn_quest(SCMachineBase *machine, int64_t, int64_t code) {
	warn(machine, this, code,
			is_no_quest(code) ? vformat("Abandon Quest on %s has no quest to give up. Pick one under Quest.", name_of(machine))
							  : vformat("Abandon Quest on %s: the quest \"%s\" is not under way, so there was nothing to give up. Only a quest begun and not "
										"finished can be abandoned.",
										name_of(machine), quest_book::title_of(quest)));
}

void SCTrackQuestAction::describe(KindTable<Self> &kind) {
	describe_quest(kind, "track_quest",
			"Track a quest, or stop tracking it. Tracked quests are those that a Quest Tracker shows. Every quest is tracked from the moment it begins, and "
			"it counts either way.",
			"The quest that is tracked.");
	kind.setting<&Self::tracked>("tracked", "Track it. Off stops tracking it.");
}

String SCTrackQuestAction::summary_default() {
	return vformat("%s quest %s", tracked ? "Track" : "Stop tracking", quest_book::in_line(quest));
}

void SCTrackQuestAction::warn_quest(SCMachineBase *machine, int64_t, int64_t code) {
	warn(machine, this, code,
			is_no_quest(code) ? vformat("Track Quest on %s has no quest to track. Pick one under Quest.", name_of(machine))
							  : vformat("Track Quest on %s: the quest \"%s\" has not begun, so it cannot be tracked yet. Start it with Start Quest first.",
										name_of(machine), quest_book::title_of(quest)));
}
