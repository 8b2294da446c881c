#include "kinds/physics/wall_cling.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCWallClingAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "wall_cling",
			"Catch a character falling past a wall. While it is pressed against one, off the floor and not rising, it slides down slowly or not at all. It "
			"never "
			"holds a state up and stands beside the Move Character that presses it there; a Jump with Off Walls takes it off again.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The character body that clings: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::slide_speed>(
				"slide_speed", hint::SPEED, "How fast it slides down at most, in metres a second in 3D and pixels a second in 2D. Zero sticks to where it is.")
			.px_in_2d();
	kind.setting<&Self::slide_speed_variable>("slide_speed_variable", "Read the speed from this variable.").optional();
	kind.setting<&Self::only_while_held>("only_while_held", hint::INPUT, "It clings only while this input is held. Empty clings by itself.").optional();
	kind.setting<&Self::lets_go_after>("lets_go_after", hint::SECONDS,
			"So many seconds on one wall and it lets go. It takes hold again once it has been off the wall or on the floor. Zero never tires.");
	kind.setting<&Self::clinging_event>("clinging_event", "The event to send as it takes hold.");
	kind.setting<&Self::let_go_event>("let_go_event", "The event to send as it lets go, for whatever reason.");
	kind.warns<&Self::warn_wall_cling>("_warn_wall_cling", "m", "index", "what", "body");
}

String SCWallClingAction::summary_default() {
	const String held = only_while_held.is_empty() ? String() : vformat(" while %s is held", only_while_held);
	if (slide_speed_variable.is_empty() && !(slide_speed > 0.0)) {
		return vformat("Cling to walls%s", held);
	}
	return vformat("Cling to walls, sliding %s%s", words::number(slide_speed), held);
}

void SCWallClingAction::warn_wall_cling(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (body != nullptr) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Wall Cling on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can cling to a wall.", name,
						body->get_name()));
	} else {
		verbs::warn_whole(machine, this, int(what),
				vformat("Wall Cling on %s: there is no node at %s, so nothing clings. Pick the character body under Body.", name,
						body_path.is_empty() ? String("Self") : String(body_path)));
	}
}
