#include "kinds/conditions/dialogue.hpp"

#include "action/action_shared.hpp"
#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCDialogueLineSaidCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "dialogue_line_said", "Has a line of a dialogue been said this game?");
	kind.setting<&Self::dialogue>("dialogue", hint::DIALOGUE, "The dialogue that the line belongs to.");
	kind.setting<&Self::line>("line", "The Id of the line.");
	kind.warns<&Self::warn_said>("_warn_said", "m", "index", "what");
}

String SCDialogueLineSaidCondition::summary_default() {
	return vformat("%s of %s has been said", words::picked(line), dialogue.is_valid() ? words::text_of(dialogue) : ActionShared::get().not_picked);
}

void SCDialogueLineSaidCondition::warn_said(SCMachineBase *machine, int64_t index, int64_t what) {
	if (machine == nullptr) {
		return;
	}
	const char *has = what == NO_DIALOGUE ? "no dialogue, so pick one under Dialogue" : "a line the dialogue does not have, so pick one under Line";
	MakerWarnings::once_for(machine, vformat("dialogue_line_said:%d", index),
			vformat("Dialogue Line Said on %s has %s, so the answer is always no.", machine->name_in_messages(), has));
}
