#include "kinds/ai/wander.hpp"

#include "action/words.hpp"
#include "character/body_sides.hpp"
#include "kinds/ai/mover_settings.hpp"
#include "kinds/ai/random_places.hpp"
#include "settings/object_arguments.hpp"

void SCWanderAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "wander",
			"Amble about near a spot, with a pause between each stroll. Each stroll leads to another place within the radius, on the navigation mesh if there "
			"is "
			"one. A walker turns back where its floor ends.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	movers::describe_body(kind);
	kind.setting<&Self::home_path>(
				"home_path", "The node to stay near, by where it stands as the state is entered. Empty is where the character itself stands then.")
			.optional();
	kind.setting<&Self::radius>("radius", hint::DISTANCE, "How far from home it strays, in metres in 3D and pixels in 2D.").px_in_2d();
	movers::describe_speed(kind);
	kind.setting<&Self::arrive_within>("arrive_within", hint::DISTANCE, "How close to a place counts as being there, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::pause_for>("pause_for", movers::SECONDS, "How many seconds it stands after each stroll, and before the first.");
	kind.setting<&Self::random_extra_pause>("random_extra_pause", movers::SECONDS, "Up to so many seconds more, another number each time.");
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	kind.warns<&Self::warn_no_home>("_warn_no_home", "m");
	ClassDB::bind_method(D_METHOD("_somewhere", "body", "home"), &Self::somewhere);
}

String SCWanderAction::summary_default() {
	return vformat("Wander within %s", words::number(radius));
}

String SCWanderAction::holds_its_state_default() {
	return "Move on with an event sent after a Delay";
}

Variant SCWanderAction::somewhere(const Variant &body, const Variant &home) {
	bool fits = true;
	Node *node = object_arguments::taken<Node>(body, "_somewhere", 1, fits);
	const auto *walker = falls ? Object::cast_to<CharacterBody2D>(node) : nullptr;
	const bool on_a_line = walker != nullptr && walker->get_motion_mode() != CharacterBody2D::MOTION_MODE_FLOATING;
	return fits ? random_places::near(node, home, checked::is_sound(radius) ? radius : 0.0, on_a_line) : Variant();
}

void SCWanderAction::warn_no_home(SCMachineBase *machine) {
	if (machine != nullptr) {
		const bool no_body = values::node_of(machine, body_path) == nullptr;
		verbs::warn_whole(machine, this, 0,
				vformat("Wander on %s: %s, so there is nowhere to wander around and the character stands still.", machine->name_in_messages(),
						no_body ? "there is no body to wander around" : "the node named in Home was not found"));
	}
}
