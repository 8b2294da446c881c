#include "kinds/ai/interaction.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCInteractionAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "interaction", "Use things by walking up to them and pressing a key, to open a chest, pull a lever, talk to a shopkeeper or read a sign.");
	kind.runs(Runs::ON_AND_ON);
	kind.setting<&Self::usable_group>("usable_group",
			"The group of the things that can be used. Each needs a machine with a way out on Used Event, and is offered only while it has one.");
	kind.setting<&Self::reach>("reach", hint::DISTANCE,
				"How near a thing has to be, from the middle of the player to the middle of the thing, in metres in 3D and pixels in 2D. The nearest one is "
				"offered.")
			.px_in_2d();
	kind.setting<&Self::input_action>("input_action", hint::INPUT, "What the player presses to use it: a key, a button, a gamepad input or an input action.");
	kind.setting<&Self::used_event>("used_event", "The event sent to the machine of the thing that is used. It carries the player's node.");
	kind.setting<&Self::prompt>("prompt",
			"The words shown behind the name of the key. A thing whose machine has a text variable called prompt, such as \"to open\", shows its own instead.");
	kind.setting<&Self::prompt_path>(
				"prompt_path", "The Label to show the prompt in. It is hidden while nothing is in reach. Empty floats the words over the thing itself.")
			.optional();
	kind.setting<&Self::store_in>("store_in", "Keep the thing in reach in this variable. It holds nothing while there is none.").optional();
	kind.warns<&Self::warn_interaction>("_warn_interaction", "m", "index", "what");
	kind.warns<&Self::warn_no_machine>("_warn_no_machine", "m", "index", "thing");
}

String SCInteractionAction::summary_default() {
	if (usable_group.is_empty()) {
		return "Pick what can be used";
	}
	return vformat("Use the nearest %s in reach with %s, sending %s", usable_group, input_action, used_event);
}

void SCInteractionAction::warn_interaction(SCMachineBase *machine, int64_t, int64_t what) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const Node *player = machine->target_node();
	switch (what) {
		case NO_GROUP:
			verbs::warn_whole(machine, this, int(what),
					vformat("Interaction on %s: nothing is picked under Usable Group, so there is nothing to use. Pick the things that can be used, such as "
							"the "
							"chests.",
							name));
			break;
		case NO_LABEL:
			verbs::warn_whole(machine, this, int(what),
					vformat("Interaction on %s: there is no Label at Prompt to show the prompt in. Pick a Label, or leave Prompt empty for words floating over "
							"what is in reach.",
							name));
			break;
		case NO_PLACE:
			verbs::warn_whole(machine, this, int(what),
					vformat("Interaction on %s needs a 2D or 3D character to reach from, and %s is neither.", name,
							player != nullptr ? String(player->get_name()) : String("nothing")));
			break;
		default:
			break;
	}
}

void SCInteractionAction::warn_no_machine(SCMachineBase *machine, int64_t, Node *thing) {
	if (machine == nullptr || thing == nullptr) {
		return;
	}
	MakerWarnings::once_for(machine, vformat("used without a machine:%d", thing->get_instance_id()),
			vformat("Interaction on %s: %s is in %s but has no machine, so pressing %s cannot tell it it was used. Give it a machine with a way out on %s.",
					machine->name_in_messages(), thing->get_name(), usable_group, input_action, used_event));
}
