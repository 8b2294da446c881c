#include "kinds/physics/event_on_collision.hpp"

#include "action/words.hpp"

void SCEventOnCollisionAction::describe(KindTable<Self> &kind) {
	kind.about("physics", "event_on_collision",
			"Send an event when something touches this node, or stops touching it, as when the player walks into a trigger, a bullet hits a wall or a coin is "
			"picked up. It listens as long as the state runs and does not hold it up.");
	kind.runs(Runs::ON_AND_ON);
	kind.wants_physics();
	kind.constants_of<When>();
	kind.setting<&Self::node_path>(
			"node_path", "What is touched or touches: an area, a character body, or a rigid body whose Contact Monitor is on. Empty is Self.");
	kind.setting<&Self::when>("when", "Whether to tell when the touch begins or when it ends.");
	kind.setting<&Self::only_group>("only_group", "Only what is in this group counts, such as players. Empty counts everything.").optional();
	kind.setting<&Self::include_areas>("include_areas", "For an area or a character body, count areas too, and not bodies alone.");
	kind.setting<&Self::count_those_already_there>("count_those_already_there", "Tell also of what touches it already as the state begins.")
			.only_if<&Self::when, STARTS_TOUCHING>();
	kind.setting<&Self::event_name>("event_name", "The event to send, once for each that touches. It carries the node.").optional_if<&Self::store_node_in>();
	kind.setting<&Self::store_node_in>("store_node_in", "Store the node that touches, or touched, in this variable.").optional();
}

String SCEventOnCollisionAction::summary_default() {
	const String what = only_group.is_empty() ? String("something") : vformat("one of %s", only_group);
	const String touches = vformat("When %s %s %s", what, when == STOPS_TOUCHING ? "stops touching" : "touches", words::name_in_line(node_path));
	const String kept = store_node_in.is_empty() ? String() : vformat(", keep it in %s", store_node_in);
	return event_name.is_empty() && !kept.is_empty() ? touches + kept : vformat("%s, send %s%s", touches, event_name, kept);
}
