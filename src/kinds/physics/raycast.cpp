#include "kinds/physics/raycast.hpp"

#include "action/words.hpp"
#include "kinds/physics/raycast_aim.hpp"

namespace {

template <class Kind>
void describe_line(KindTable<Kind> &kind) {
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.template constants_of<typename Kind::Aim>();
	kind.template constants_of<typename Kind::Space>();
	aim::describe_start(kind, "The node the line starts at, such as the tip of a gun. Empty is Self.",
			"The variable holding the node or the place the line starts at. It wins over From Path.");
	kind.template setting<&Kind::aim>("aim", "Whether the line goes in a direction or toward a node.");
	kind.template setting<&Kind::direction>("direction", "Which way the line goes. How long it is here does not matter: see Distance.")
			.in_2d(Vector2(0, 1))
			.template only_if<&Kind::aim, Kind::A_DIRECTION>();
	kind.template setting<&Kind::space>("space", "Global is a direction in the world. Local is one of the node it starts at, and turns with it.")
			.template only_if<&Kind::aim, Kind::A_DIRECTION>();
	kind.template setting<&Kind::toward_path>("toward_path", "The node it goes toward.").template only_if<&Kind::aim, Kind::TOWARD_A_NODE>();
	kind.template setting<&Kind::toward_variable>("toward_variable", "The variable holding the node or the place it goes toward. It wins over Toward Path.")
			.optional()
			.template only_if<&Kind::aim, Kind::TOWARD_A_NODE>();
	kind.template setting<&Kind::distance>(
				"distance", hint::DISTANCE, "How far it looks, in metres in 3D and pixels in 2D. Zero toward a node looks just as far as that node.")
			.px_in_2d();
	aim::describe_filter(kind);
	kind.template setting<&Kind::hit_from_inside>(
			"hit_from_inside", "A line that starts inside something hits it there, with a normal of zero. Off, it looks out of it.");
	aim::describe_groups(kind);
}

template <class Kind>
void describe_first(KindTable<Kind> &kind) {
	kind.template setting<&Kind::store_node_in>("store_node_in", "Store the node that was hit first in this variable. It is emptied when nothing is hit.");
	kind.template setting<&Kind::store_place_in>("store_place_in", "Store the place where it was hit.");
	kind.template setting<&Kind::store_normal_in>("store_normal_in", "Store which way the surface faces there, as a direction as long as 1.");
	kind.template setting<&Kind::store_distance_in>("store_distance_in", "Store how far from the start that is, in metres in 3D and pixels in 2D.");
}

template <class Kind>
String line_of(const Kind *kind) {
	const String from = words::variable_or(kind->from_variable, words::name_in_line(kind->from_path));
	const bool toward = kind->aim == Kind::TOWARD_A_NODE;
	const String way = toward ? vformat("toward %s", words::variable_or(kind->toward_variable, words::name_in_line(kind->toward_path, "Self", "nothing yet")))
							  : aim::in_words(kind->direction, kind->space == Kind::LOCAL);
	const String within = toward && kind->distance <= 0.0 ? String() : vformat(" within %s", words::number(kind->distance));
	return vformat("%s from %s%s", way, from, within);
}

} // namespace

void SCRaycastAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "raycast",
			"Look along a line and see what is there, such as the ground under a foot, a wall ahead, or the thing a gun is pointing at. On Every Frame the "
			"events are sent only when the answer changes. Right after a scene has begun it waits a frame for the physics: tick Wait For Previous on what uses "
			"the answer.");
	describe_line(kind);
	kind.setting<&Self::stopped_by_others>(
				"stopped_by_others", "Anything else in the way ends the line, as a wall does that stands before an enemy. Off, the line goes through it.")
			.only_if<&Self::only_group>();
	kind.setting<&Self::store_hit_in>("store_hit_in", "Store whether anything was hit: true or false.");
	describe_first(kind);
	kind.setting<&Self::hit_event>("hit_event", "The event to send when something is hit. It carries the node.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when nothing is hit.");
}

String SCRaycastAction::summary_default() {
	return vformat("Look %s%s", line_of(this), only_group.is_empty() ? String() : vformat(" for %s", only_group));
}

void SCRaycastAllAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "raycast_all",
			"Look along a line and find everything on it, not only the first thing. For a shot that goes through several enemies, or all the lamps along a "
			"beam. On Every Frame the events are sent only when the answer changes. Right after a scene has begun it waits a frame for the physics: tick Wait "
			"For Previous on what uses the answer.");
	describe_line(kind);
	kind.constants_of<Order>();
	kind.setting<&Self::stopped_by_others>(
				"stopped_by_others", "Anything else in the way ends the line, so that a shot goes through enemies and not through walls.")
			.only_if<&Self::only_group>();
	kind.setting<&Self::most>("most", aim::MOST, "Find at most so many, the nearest. Zero finds all.");
	kind.setting<&Self::order>("order", "Which comes first in the lists, the nearest to the start or the farthest from it.");
	kind.setting<&Self::store_list_in>("store_list_in", "Store the nodes that were hit as a list, each once.");
	kind.setting<&Self::store_count_in>("store_count_in", "Store how many there are.");
	kind.setting<&Self::store_places_in>("store_places_in", "Store the places where they were hit as a list in the same order.");
	describe_first(kind);
	kind.setting<&Self::hit_event>("hit_event", "The event to send when anything is hit. It carries the list of nodes.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when nothing is hit.");
}

String SCRaycastAllAction::summary_default() {
	return vformat("Find %s %s", only_group.is_empty() ? String("everything") : vformat("all %s", only_group), line_of(this));
}
