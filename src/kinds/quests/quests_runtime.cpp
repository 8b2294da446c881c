// The compiled runtimes of the quests category. The quest book does the work; here is what has to hold before it is asked to.

#include "action/add_kind.hpp"
#include "action/shared_verbs.hpp"
#include "inventory/quest_book.hpp"
#include "kinds/quests/quests.hpp"

namespace {

// Does one thing with a quest, and is finished. The derived class has
// `static bool work(SCMachineBase *, SCMachineAction *, const Ref<Resource> &quest)`, which answers false when the quest is not in
// the right status for it.
template <class Derived, class Kind>
class WithAQuest : public SCNativeAction {
public:
	void enter(SCMachineBase *machine, SCMachineAction *action, int index) override {
		const StillHere here(machine);
		const Ref<Resource> quest = setting_of<&Kind::quest>(action);
		if (!quest_book::is_quest(quest)) {
			warn(machine, action, index, QuestWarning::NO_QUEST);
		} else if (!Derived::work(machine, action, quest)) {
			warn(machine, action, index, QuestWarning::WRONG_STATUS);
		}
		if (here) {
			machine->finish(index);
		}
	}

private:
	static void warn(SCMachineBase *machine, SCMachineAction *action, int index, QuestWarning what) {
		verbs::say<&Kind::warn_quest>(action, machine, index, int64_t(what));
	}
};

class StartQuest : public WithAQuest<StartQuest, SCStartQuestAction> {
public:
	static bool work(SCMachineBase *machine, SCMachineAction *, const Ref<Resource> &quest) {
		quest_book::start(machine, quest);
		return true;
	}
};

class CompleteQuest : public WithAQuest<CompleteQuest, SCCompleteQuestAction> {
public:
	static bool work(SCMachineBase *machine, SCMachineAction *, const Ref<Resource> &quest) {
		quest_book::complete(machine, quest);
		return true;
	}
};

class FailQuest : public WithAQuest<FailQuest, SCFailQuestAction> {
public:
	static bool work(SCMachineBase *, SCMachineAction *, const Ref<Resource> &quest) {
		const bool is_active = quest_book::status_of(quest) == quest_book::ACTIVE;
		if (is_active) {
			quest_book::fail(quest);
		}
		return is_active;
	}
};

class AbandonQuest : public WithAQuest<AbandonQuest, SCAbandonQuestAction> {
public:
	static bool work(SCMachineBase *, SCMachineAction *, const Ref<Resource> &quest) {
		const bool is_active = quest_book::status_of(quest) == quest_book::ACTIVE;
		if (is_active) {
			quest_book::abandon(quest);
		}
		return is_active;
	}
};

class TrackQuest : public WithAQuest<TrackQuest, SCTrackQuestAction> {
public:
	static bool work(SCMachineBase *, SCMachineAction *action, const Ref<Resource> &quest) {
		const bool has_begun = quest_book::status_of(quest) != quest_book::NOT_STARTED;
		if (has_begun) {
			quest_book::track(quest, setting_of<&SCTrackQuestAction::tracked>(action));
		}
		return has_begun;
	}
};

const AddKinds added = {
	add_kind<SCStartQuestAction, StartQuest>(),
	add_kind<SCCompleteQuestAction, CompleteQuest>(),
	add_kind<SCFailQuestAction, FailQuest>(),
	add_kind<SCAbandonQuestAction, AbandonQuest>(),
	add_kind<SCTrackQuestAction, TrackQuest>(),
};

} // namespace
