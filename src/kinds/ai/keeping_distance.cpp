#include "kinds/ai/keeping_distance.hpp"

#include "action/words.hpp"
#include "kinds/ai/mover_settings.hpp"
#include "steering/dealing.hpp"

namespace {

void say_not_character(SCMachineBase *machine, const Object *kind, const char *name, const Node *body) {
	if (machine != nullptr) {
		verbs::warn_whole(machine, kind, 0,
				vformat("%s on %s: %s is not a character body, and only a CharacterBody2D or CharacterBody3D can be moved this way. Put the machine on one, or "
						"pick one under Body.",
						name, machine->name_in_messages(), body != nullptr ? body->get_name() : StringName()));
	}
}

} // namespace

void SCKeepDistanceAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "keep_distance",
			"Hold a sensible distance. It comes nearer when it is too far from whatever the Perception node is dealing with, backs off when it is too near, "
			"and "
			"stands in between. It never holds a state up, so it stands beside what else the state does.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	movers::describe_body(kind);
	movers::describe_target(kind);
	kind.setting<&Self::no_closer_than>("no_closer_than", hint::DISTANCE, "It backs off when it is nearer than this, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::no_further_than>(
				"no_further_than", hint::DISTANCE, "It comes nearer when it is farther off than this, in metres in 3D and pixels in 2D.")
			.px_in_2d();
	kind.setting<&Self::spread>("spread", hint::DISTANCE,
				"Up to so much is added to both distances, another number for each character, so that a crowd does not stand on one ring. In metres in 3D and "
				"pixels in 2D.")
			.px_in_2d();
	movers::describe_speed(kind);
	kind.setting<&Self::settled_event>("settled_event", "The event to send each time it comes to stand at the right distance, with the target.").optional();
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	dealing::bind(kind);
	kind.warns<&Self::warn_not_character>("_warn_not_character", "m", "index", "body");
}

String SCKeepDistanceAction::summary_default() {
	return vformat("Keep %s to %s away", words::number(no_closer_than), words::number(no_further_than));
}

void SCKeepDistanceAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}

void SCKeepDistanceAction::warn_not_character(SCMachineBase *machine, int64_t, Node *body) {
	say_not_character(machine, this, "Keep Distance", body);
}

void SCStrafeAroundAction::describe(KindTable<Self> &kind) {
	kind.about("ai", "strafe_around",
			"Keep circling what it is dealing with. With a radius it also holds that distance; without one it works beside Keep Distance or Chase, which do "
			"that. "
			"It never holds a state up.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.constants_of<Way>();
	movers::describe_body(kind);
	movers::describe_target(kind);
	kind.setting<&Self::way>("way", "Which way round it begins, seen from above. Either leaves it to chance each time the state is entered.");
	kind.setting<&Self::radius>(
			"radius", hint::DISTANCE, "How far from the target it circles, in metres in 3D and pixels in 2D. Zero circles at whatever distance it has.");
	movers::describe_speed(kind);
	kind.setting<&Self::change_direction_every>(
			"change_direction_every", movers::SECONDS, "After so many seconds it turns round and circles the other way. Zero never turns round.");
	kind.setting<&Self::random_extra>("random_extra", movers::SECONDS, "Up to so many seconds more before it turns round, another number each time.")
			.only_if<&Self::change_direction_every>();
	movers::describe_turning(kind);
	movers::describe_falls(kind);
	dealing::bind(kind);
	kind.warns<&Self::warn_not_character>("_warn_not_character", "m", "index", "body");
}

String SCStrafeAroundAction::summary_default() {
	return vformat("Circle it at %s", radius > 0.0 ? vformat("%s out", words::number(radius)) : words::number(speed));
}

void SCStrafeAroundAction::warn_dealing(SCMachineBase *machine, int64_t, Node *body) {
	dealing::warn(machine, this, target_variable, body);
}

void SCStrafeAroundAction::warn_not_character(SCMachineBase *machine, int64_t, Node *body) {
	say_not_character(machine, this, "Strafe Around", body);
}
