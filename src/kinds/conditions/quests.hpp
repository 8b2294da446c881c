#pragma once

// Conditions about quests and their steps.

#include "action/kind_table.hpp"

class SCQuestIsCondition : public SCMachineCondition {
	SC_KIND(SCQuestIsCondition, SCMachineCondition)

public:
	Ref<Resource> quest;
	// SCQuests.Status, which a script declares.
	int64_t status = 1;

	String summary_default() override;
	void warn_quest_is(SCMachineBase *machine, int64_t index);
};

class SCQuestStepIsCondition : public SCMachineCondition {
	SC_KIND(SCQuestStepIsCondition, SCMachineCondition)

public:
	SC_ENUM(StepStatus, DONE, NOT_DONE, TO_DO_NOW)

	Ref<Resource> quest;
	int64_t step = 0;
	StepStatus status = DONE;

	String summary_default() override;
	void warn_quest_step_is(SCMachineBase *machine, int64_t index);

protected:
	// The inspector offers the steps of the quest.
	void _validate_property(PropertyInfo &property) const;
};
