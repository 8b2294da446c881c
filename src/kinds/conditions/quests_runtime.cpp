// Compiled conditions about quests, which the quest book answers.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "inventory/quest_book.hpp"
#include "kinds/conditions/quests.hpp"

namespace {

template <auto Warning>
bool no_because(SCMachineBase *machine, SCMachineCondition *condition) {
	condition->call(*WarningOf<Warning>::name, machine, machine->run().action_asking());
	return false;
}

bool is_quest_in_status(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCQuestIsCondition;
	const Ref<Resource> quest = setting_of<&Kind::quest>(condition);
	if (!quest_book::is_quest(quest)) {
		return no_because<&Kind::warn_quest_is>(machine, condition);
	}
	return int64_t(quest_book::status_of(quest)) == setting_of<&Kind::status>(condition);
}

bool is_step_in_status(SCMachineBase *machine, SCMachineCondition *condition) {
	using Kind = SCQuestStepIsCondition;
	const Ref<Resource> quest = setting_of<&Kind::quest>(condition);
	const int64_t step = setting_of<&Kind::step>(condition);
	if (!quest_book::is_quest(quest) || step < 0 || step >= quest_book::step_count(quest)) {
		return no_because<&Kind::warn_quest_step_is>(machine, condition);
	}
	switch (setting_of<&Kind::status>(condition)) {
		case Kind::DONE:
			return quest_book::step_done(quest, step);
		case Kind::NOT_DONE:
			return !quest_book::step_done(quest, step);
		case Kind::TO_DO_NOW:
			return quest_book::step_counts_now(quest, step);
	}
	return false;
}

const AddKinds added = {
	add_condition<SCQuestIsCondition, &is_quest_in_status>(),
	add_condition<SCQuestStepIsCondition, &is_step_in_status>(),
};

} // namespace
