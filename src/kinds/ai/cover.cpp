#include "kinds/ai/cover.hpp"

#include "action/words.hpp"
#include "kinds/ai/lines_of_sight.hpp"
#include "kinds/ai/mover_settings.hpp"
#include "settings/object_arguments.hpp"
#include "steering/dealing.hpp"

void SCTakeCoverAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "take_cover",
			"Get behind something. It goes to the nearest of the spots that whatever the Perception node is dealing with cannot see, and finishes there.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	movers::describe_body(kind);
	movers::describe_target(kind);
	kind.setting<&Self::cover_group>("cover_group", "The group of the spots to hide at, such as markers set behind walls and crates.");
	kind.setting<&Self::within>("within", hint::DISTANCE, "How far away a spot may be, in metres in 3D and pixels in 2D. Zero is no bound.").px_in_2d();
	kind.setting<&Self::must_be_out_of_sight>("must_be_out_of_sight", "Only spots that the target cannot see. Off takes the nearest, seen or not.");
	kind.setting<&Self::blocked_by>("blocked_by", { PROPERTY_HINT_LAYERS_3D_PHYSICS }, "The physics layers that nobody sees through.")
			.only_if<&Self::must_be_out_of_sight>();
	kind.setting<&Self::eye_height>("eye_height", hint::DISTANCE, "How high above their places eyes are in 3D, in metres, both the target's and its own.")
			.px_in_2d()
			.only_if<&Self::must_be_out_of_sight>();
	movers::describe_speed(kind);
	kind.setting<&Self::arrive_within>("arrive_within", hint::DISTANCE, "How close to the spot counts as being there, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::store_cover_in>("store_cover_in", "The variable that the spot goes into.").optional();
	kind.setting<&Self::in_cover_event>("in_cover_event", "The event to send when it is there, with the spot.").optional();
	kind.setting<&Self::no_cover_event>("no_cover_event", "The event to send when there is no such spot.").optional();
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	dealing::bind(kind);
	ClassDB::bind_method(D_METHOD("_hidden_at", "spot", "threat", "body"), &Self::hidden_at);
}

String SCTakeCoverAction::summary_default() {
	return vformat("Get behind the nearest %s", words::picked(cover_group));
}

bool SCTakeCoverAction::hidden_at(const Variant &spot, const Variant &threat, const Variant &body) {
	bool fits = true;
	Node *place = object_arguments::taken<Node>(spot, "_hidden_at", 1, fits);
	Node *looking = object_arguments::taken<Node>(threat, "_hidden_at", 2, fits);
	Node *hiding = object_arguments::taken<Node>(body, "_hidden_at", 3, fits);
	return fits && lines_of_sight::is_blocked(looking, place, hiding, blocked_by, eye_height);
}

void SCTakeCoverAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}
