#include "kinds/physics/ledge_grab.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCLedgeGrabAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "ledge_grab",
			"Catch the top of a wall the character has jumped at, and pull it up onto it. Go to its state while the character is pressed against the wall. It "
			"moves the body by itself, so no Move Character goes beside it.");
	kind.runs_for_a_while<&Self::seconds>();
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that climbs: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::reach_up>(
				"reach_up", hint::DISTANCE, "How far above its feet the top may be, in metres in 3D and pixels in 2D. Anything higher is out of reach.")
			.px_in_2d();
	kind.setting<&Self::reach_up_variable>("reach_up_variable", "Read how far up it reaches from this variable.").optional();
	kind.setting<&Self::over_the_edge>(
				"over_the_edge", hint::DISTANCE, "How far past the edge it is set down, in metres in 3D and pixels in 2D. On a thin wall it goes less far.")
			.px_in_2d();
	kind.setting<&Self::seconds>("seconds", hint::SECONDS, "How long the climb takes. Zero does it at once.");
	kind.setting<&Self::grabbed_event>("grabbed_event", "The event to send when there is a ledge and the climb begins.");
	kind.setting<&Self::no_ledge_event>("no_ledge_event", "The event to send when there is nothing within reach to climb onto.");
	kind.warns<&Self::warn_ledge_grab>("_warn_ledge_grab", "m", "index", "what", "body");
}

String SCLedgeGrabAction::summary_default() {
	return vformat("Climb a ledge up to %s higher", words::variable_or(reach_up_variable, words::number(reach_up)));
}

void SCLedgeGrabAction::warn_ledge_grab(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == 0 && body != nullptr) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Ledge Grab on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can climb a ledge.", name,
						body->get_name()));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Ledge Grab on %s: there is no node at %s, so nothing climbs. Pick the character body under Body.", name,
						body_path.is_empty() ? String("Self") : String(body_path)));
	}
}
