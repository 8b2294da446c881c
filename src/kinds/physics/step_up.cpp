#include "kinds/physics/step_up.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCStepUpAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "step_up",
			"Let a walking character climb a step that would otherwise stop it dead. Put it above the Move Character of the state: it lifts the body and "
			"Move Character walks it on.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that is helped up: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::tallest_step>("tallest_step", hint::DISTANCE, "How tall a step may be, in metres in 3D and pixels in 2D. Anything taller stays a wall.")
			.px_in_2d();
	kind.setting<&Self::tallest_step_variable>("tallest_step_variable", "Read how tall a step may be from this variable.").optional();
	kind.setting<&Self::stepped_event>("stepped_event", "The event to send each time the body is lifted onto a step.");
	kind.warns<&Self::warn_step_up>("_warn_step_up", "m", "index", "what", "body");
}

String SCStepUpAction::summary_default() {
	return vformat("Step up onto anything %s or lower", words::variable_or(tallest_step_variable, words::number(tallest_step)));
}

void SCStepUpAction::warn_step_up(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0 && body != nullptr) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Step Up on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can be helped up a step.", name,
						body->get_name()));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Step Up on %s: there is no node at %s, so nothing is helped up a step. Pick the character body under Body.", name,
						body_path.is_empty() ? String("Self") : String(body_path)));
	}
}
