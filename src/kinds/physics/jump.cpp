#include "kinds/physics/jump.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCJumpAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "jump",
			"Make a character body jump. It gives the body its speed upward and no more, so a Move Character has to be running beside it, in this state or in "
			"one "
			"around it, to carry the body up and bring it down again.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that jumps: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::height>(
				"height", hint::DISTANCE, "How high it gets, in metres in 3D and pixels in 2D. It is the same height whether or not it was falling before.")
			.px_in_2d();
	kind.setting<&Self::height_variable>("height_variable", "Read the height from this variable.").optional();
	kind.setting<&Self::only_from_the_floor>(
			"only_from_the_floor", "It has to stand on the floor to jump. Off lets it jump in the air too, for a double jump or a flap of wings.");
	kind.setting<&Self::still_allowed_after_a_ledge>("still_allowed_after_a_ledge", hint::SECONDS,
				"So long after walking off an edge it may still jump, which forgives a press that came a little late. A jump uses it up. Zero is off.")
			.only_if<&Self::only_from_the_floor>();
	kind.setting<&Self::waits_to_land_for>("waits_to_land_for", hint::SECONDS,
				"When it may not jump yet, it goes on trying for so long, which forgives a press just before landing. Zero refuses at once.")
			.only_if<&Self::only_from_the_floor>();
	kind.setting<&Self::cut_short_input>("cut_short_input", hint::INPUT,
				"The input that the jump is made with. Letting go of it on the way up makes the jump lower. Empty always jumps the full height.")
			.optional();
	kind.setting<&Self::off_walls>("off_walls", "In the air it may push itself off a wall that it is pressed against.").only_if<&Self::only_from_the_floor>();
	kind.setting<&Self::away_from_wall>(
				"away_from_wall", hint::SPEED, "How fast a wall pushes it away for a moment, in metres a second in 3D and pixels a second in 2D.")
			.px_in_2d()
			.only_if<&Self::only_from_the_floor>()
			.only_if<&Self::off_walls>();
	kind.setting<&Self::jumped_event>("jumped_event", "The event to send as it takes off.");
	kind.setting<&Self::refused_event>("refused_event", "The event to send when it may not jump, once it has waited in vain for the floor.");
	kind.setting<&Self::falls>("falls",
			"Move Character is what brings it down again, so the height is worked out for how that falls. Off for a body that a script of its own brings "
			"down.");
	kind.setting<&Self::gravity>("gravity", hint::SPEED,
			"The gravity that the height is worked out for: the speed it gains in each second of a fall, in metres in 3D and pixels in 2D. Zero is what Move "
			"Character walks this body with, or else the project's.");
	kind.warns<&Self::warn_jump>("_warn_jump", "m", "index", "what", "body");
}

String SCJumpAction::summary_default() {
	return vformat("Jump %s high%s", words::number(height), only_from_the_floor && off_walls ? String(", off walls too") : String());
}

void SCJumpAction::warn_jump(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String path = body_path.is_empty() ? String("Self") : String(body_path);
	const String why = body != nullptr ? vformat("%s is a %s", body->get_name(), body->get_class()) : vformat("there is no node at %s", path);
	verbs::warn_whole(machine, this, int(what),
			vformat("Jump on %s: %s, so nothing jumps. Only a CharacterBody2D or CharacterBody3D can jump, so pick one under Body.",
					machine->name_in_messages(), why));
}
