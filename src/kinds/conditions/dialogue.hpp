#pragma once

// The condition about what was said.

#include "action/kind_table.hpp"

class SCDialogueLineSaidCondition : public SCMachineCondition {
	SC_KIND(SCDialogueLineSaidCondition, SCMachineCondition)

public:
	Ref<Resource> dialogue;
	StringName line;

	enum Wrong {
		NO_DIALOGUE,
		NO_SUCH_LINE,
	};

	String summary_default() override;
	void warn_said(SCMachineBase *machine, int64_t index, int64_t what);
};
