#pragma once

// Kinds of the quests category: beginning a quest, ending it in one way or another, and tracking it.

#include "action/kind_table.hpp"

class SCStartQuestAction : public SCMachineAction {
	SC_KIND(SCStartQuestAction, SCMachineAction)

public:
	Ref<Resource> quest;

	String summary_default() override;
	void warn_quest(SCMachineBase *machine, int64_t index, int64_t code);
};

class SCCompleteQuestAction : public SCMachineAction {
	SC_KIND(SCCompleteQuestAction, SCMachineAction)

public:
	Ref<Resource> quest;

	String summary_default() override;
	void warn_quest(SCMachineBase *machine, int64_t index, int64_t code);
};

class SCFailQuestAction : public SCMachineAction {
	SC_KIND(SCFailQuestAction, SCMachineAction)

public:
	Ref<Resource> quest;

	String summary_default() override;
	void warn_quest(SCMachineBase *machine, int64_t index, int64_t code);
};

class SCAbandonQuestAction : public SCMachineAction {
	SC_KIND(SCAbandonQuestAction, SCMachineAction)

public:
	Ref<Resource> quest;

	String summary_default() override;
	void warn_quest(SCMachineBase *machine, int64_t index, int64_t code);
};

class SCTrackQuestAction : public SCMachineAction {
	SC_KIND(SCTrackQuestAction, SCMachineAction)

public:
	Ref<Resource> quest;
	bool tracked = true;

	String summary_default() override;
	void warn_quest(SCMachineBase *machine, int64_t index, int64_t code);
};

// What a quest kind says with _warn_quest.
enum class QuestWarning : int64_t {
	NO_QUEST,
	WRONG_STATUS,
};
