#include "kinds/physics/contacts.hpp"

#include "action/words.hpp"

namespace {

constexpr Hint IMPULSE = { PROPERTY_HINT_RANGE, "0,100,0.01,or_greater,hide_slider" };

} // namespace

void SCGetLastCollisionAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "get_last_collision",
			"Find out what a character last bumped into as it moved, with the node, the point where they met and the way that surface faces. On Every Frame "
			"the events are sent only when the answer changes.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.constants_of<Surface>();
	kind.setting<&Self::body_path>("body_path", "The character body that moves: a CharacterBody2D or a CharacterBody3D. Empty is Self.");
	kind.setting<&Self::surface>(
			"surface", "What counts: anything it met on its last move, or only the ground, walls or ceilings, told apart by how steep they are.");
	kind.setting<&Self::only_group>("only_group", "Only what is in this group counts, such as crates. Empty counts everything.");
	kind.setting<&Self::store_hit_in>("store_hit_in", "Store whether it bumped into anything: true or false.");
	kind.setting<&Self::store_node_in>(
			"store_node_in", "Store what it bumped into in this variable, the last of several. It is emptied when there is nothing.");
	kind.setting<&Self::store_place_in>("store_place_in", "Store the place where they met.");
	kind.setting<&Self::store_normal_in>("store_normal_in", "Store which way the surface faces there, as a direction as long as 1.");
	kind.setting<&Self::hit_event>("hit_event", "The event to send when it bumped into something. It carries the node.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when it did not.");
}

String SCGetLastCollisionAction::summary_default() {
	const char *const surfaces[] = { "what", "what ground", "what wall", "what ceiling" };
	const String which = only_group.is_empty() ? String() : vformat(" in %s", only_group);
	return vformat("Find %s%s %s bumped into", surfaces[CLAMP(int(surface), 0, 3)], which, words::name_in_line(body_path));
}

void SCGetContactAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "get_contact",
			"Find out where a rigid body is touching something and how hard. For a vase that breaks when it lands hard, or sparks where a car scrapes along a "
			"wall. On Every Frame the events are sent only when the answer changes.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "The rigid body: a RigidBody2D or a RigidBody3D whose Max Contacts Reported is above 0. Empty is Self.");
	kind.setting<&Self::only_group>("only_group", "Only what is in this group counts, such as floors. Empty counts everything.");
	kind.setting<&Self::at_least>("at_least", IMPULSE,
			"Only what it touches this hard counts, as an impulse: the mass times the speed that the hit took away. Zero counts every touch.");
	kind.setting<&Self::store_hit_in>("store_hit_in", "Store whether there is such a contact: true or false.");
	kind.setting<&Self::store_node_in>("store_node_in", "Store what it touches hardest in this variable. It is emptied when there is nothing.");
	kind.setting<&Self::store_place_in>("store_place_in", "Store the place where they touch.");
	kind.setting<&Self::store_normal_in>("store_normal_in", "Store which way the other surface faces there, as a direction as long as 1.");
	kind.setting<&Self::store_impulse_in>("store_impulse_in", "Store how hard it is, as an impulse. It is 0 when there is no contact.");
	kind.setting<&Self::store_count_in>("store_count_in", "Store how many points of contact there are with what counts.");
	kind.setting<&Self::hit_event>("hit_event", "The event to send when there is such a contact. It carries the node.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when there is none.");
}

String SCGetContactAction::summary_default() {
	const String what = only_group.is_empty() ? String("something") : vformat("any of %s", only_group);
	return vformat("Find where %s touches %s%s", words::name_in_line(body_path), what,
			at_least > 0.0 ? vformat(" with an impulse of %s or more", words::number(at_least)) : String());
}
