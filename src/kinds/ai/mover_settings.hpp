#pragma once

// The settings that the kinds walking a character about have in common, described once, and how they become a pace. Each kind
// declares them as fields of its own: `body_path`, `speed`, `speed_variable`, `turn_to_face`, `turn_speed`, `falls`, and
// `target_variable` when it deals with somebody.

#include "action/checked.hpp"
#include "action/kind_table.hpp"
#include "action/shared_verbs.hpp"
#include "steering/walking.hpp"

namespace movers {

inline constexpr Hint SECONDS = { PROPERTY_HINT_RANGE, "0,10,0.001,or_greater,suffix:s,hide_slider" };

template <class Kind>
void describe_body(KindTable<Kind> &kind) {
	kind.template setting<&Kind::body_path>("body_path", "The character that moves. Empty is Self.");
}

template <class Kind>
void describe_target(KindTable<Kind> &kind) {
	kind.template setting<&Kind::target_variable>("target_variable",
				"The variable holding who it is about, such as the one that Look For Target stores. Empty is whatever the character's Perception node has "
				"found.")
			.optional();
}

template <class Kind>
void describe_speed(KindTable<Kind> &kind) {
	kind.template setting<&Kind::speed>("speed", hint::SPEED, "How fast it goes, in metres a second in 3D and pixels a second in 2D.").px_in_2d();
	kind.template setting<&Kind::speed_variable>("speed_variable", "Read the speed from this variable, so that it can change while it goes.").optional();
}

template <class Kind>
void describe_turning(KindTable<Kind> &kind) {
	kind.template setting<&Kind::turn_to_face>("turn_to_face",
			"Turn the character to face where it goes, or whom it deals with. A 2D character that falls is seen from the side: its pictures flip instead.");
	kind.template setting<&Kind::turn_speed>("turn_speed", walking::TURN_SPEED, "How fast it turns. 10 has it round in about a fifth of a second.")
			.template only_if<&Kind::turn_to_face>();
}

template <class Kind>
void describe_falls(KindTable<Kind> &kind) {
	kind.template setting<&Kind::falls>(
			"falls", "Gravity pulls it down while it is off the ground. Off for a game seen from above, and for what flies or swims.");
}

template <class Kind>
double speed_of(SCMachineBase *machine, const Kind *kind) {
	const double speed = values::number_of(machine, kind->speed, kind->speed_variable);
	return checked::is_sound(speed) ? speed : checked::number_in_place_of(speed, machine, kind, verbs::name_of<&Kind::speed>());
}

template <class Kind>
walking::Pace pace_of(SCMachineBase *machine, const Kind *kind, bool falls, double stop_within) {
	walking::Pace pace;
	pace.speed = speed_of(machine, kind);
	pace.stop_within = stop_within;
	pace.turns = kind->turn_to_face;
	pace.turn_speed = checked::number<&Kind::turn_speed>(machine, kind);
	pace.falls = falls;
	return pace;
}

} // namespace movers
