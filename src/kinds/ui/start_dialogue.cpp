#include "kinds/ui/start_dialogue.hpp"

#include "action/action_shared.hpp"
#include "action/shared_verbs.hpp"
#include "action/told_path.hpp"
#include "action/words.hpp"

namespace {

// " has no dialogue to play" and why.
String why_none(const Ref<Resource> &conversation) {
	if (conversation.is_null()) {
		return ". Pick one under Conversation";
	}
	return vformat(", because %s has no lines in it. Give it some, or pick another under Conversation", words::text_of(conversation));
}

String why_no_box(const NodePath &path, const Variant &about) {
	if (const Node *node = about.get_type() == Variant::OBJECT ? Object::cast_to<Node>(about.get_validated_object()) : nullptr) {
		return vformat("%s is not a Dialogue Box", node->get_name());
	}
	return vformat("there is no node at %s", words::told_path(path));
}

} // namespace

void SCStartDialogueAction::describe(KindTable<Self> &kind) {
	kind.about("ui", "have_conversation", "Play a dialogue in a Dialogue Box. Its state is finished when the last line has been said.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.setting<&Self::box_path>("box_path", "The Dialogue Box that shows it. Empty finds the one in the scene.").optional();
	kind.setting<&Self::conversation>("conversation", hint::DIALOGUE, "The dialogue that is played.");
	kind.setting<&Self::finished_event>(
				"finished_event", "The event sent when the dialogue has ended. Not sent when another dialogue took the box. Empty sends nothing.")
			.optional();
	kind.setting<&Self::hold_the_player_still>("hold_the_player_still",
			"Stop the first node in the group player while they talk, and show a hidden mouse pointer for the answers. Both are put back at the end.");
	kind.warns<&Self::warn_dialogue>("_warn_dialogue", "m", "index", "what", "about");
}

String SCStartDialogueAction::summary_default() {
	return vformat("Have dialogue %s", conversation.is_valid() ? words::text_of(conversation) : ActionShared::get().not_picked);
}

void SCStartDialogueAction::warn_dialogue(SCMachineBase *machine, int64_t, int64_t what, const Variant &about) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	switch (what) {
		case NO_DIALOGUE:
			verbs::warn_whole(machine, this, int(what), vformat("Start Dialogue on %s has no dialogue to play%s.", name, why_none(conversation)));
			break;
		case NO_BOX_THERE:
			verbs::warn_whole(machine, this, int(what),
					vformat("Start Dialogue on %s: %s, so there is nowhere to show the dialogue. Pick a Dialogue Box under Box, or leave it empty for the one "
							"in the scene.",
							name, why_no_box(box_path, about)));
			break;
		case NO_BOX_ANYWHERE:
			verbs::warn_whole(machine, this, int(what),
					vformat("Start Dialogue on %s: there is no Dialogue Box in the scene to show it in. Right-click the level in the Scene dock and pick "
							"QuillStead > Add To Screen > Dialogue Box.",
							name));
			break;
		case NO_SUCH_LINE:
			verbs::warn(machine, this,
					vformat("%s has no line called %s, so it ended there. Add the line, or pick another as To Line or Next Line.", words::text_of(conversation),
							words::text_of(about)));
			break;
		case NO_END:
			verbs::warn(machine, this,
					vformat("%s went from line to line without anybody pressing anything, so it was ended at %s. Look for lines that lead back to one another.",
							words::text_of(conversation), words::text_of(about)));
			break;
		default:
			break;
	}
}
