#pragma once

// The kind that plays a dialogue in a Dialogue Box.

#include "action/kind_table.hpp"

class SCStartDialogueAction : public SCMachineAction {
	SC_KIND(SCStartDialogueAction, SCMachineAction)

public:
	NodePath box_path;
	Ref<Resource> conversation;
	StringName finished_event;
	bool hold_the_player_still = true;

	enum Wrong {
		NO_DIALOGUE,
		NO_BOX_THERE,
		NO_BOX_ANYWHERE,
		NO_SUCH_LINE,
		NO_END,
	};

	String summary_default() override;
	// What `about` is depends on what is wrong: the node at Box, or null; the id of a line.
	void warn_dialogue(SCMachineBase *machine, int64_t index, int64_t what, const Variant &about);
};
