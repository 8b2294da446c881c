#include "kinds/conditions/reachable.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCNavigationReachableCondition::describe(KindTable<Self> &kind) {
	kind.about("conditions", "navmesh_reachable",
			"Can it actually get there? True while the navigation mesh has a way all the way to a node or a place, so that an enemy does not set out after "
			"somebody behind a locked door.");
	kind.setting<&Self::agent_path>("agent_path",
			"The NavigationAgent2D or NavigationAgent3D that would walk, or the body it is under. Its Target Desired Distance is how near counts as there. "
			"Empty "
			"is Self.");
	kind.setting<&Self::to_node_path>("to_node_path", "The node to get to. It wins over To.").optional();
	kind.setting<&Self::to>("to", "The place to get to, in the world. As long as it is zero, where the agent is headed just now.")
			.unless<&Self::asks_for_a_node>();
	kind.setting<&Self::it_has_arrived>("it_has_arrived", "Ask whether it is there already instead of whether it can get there.");
}

bool SCNavigationReachableCondition::asks_for_a_node() const {
	return !to_node_path.is_empty() || from_variables.has(verbs::name_of<&Self::to_node_path>());
}

String SCNavigationReachableCondition::summary_default() {
	const String who = words::name_in_line(agent_path);
	String goal = "where it is headed";
	if (asks_for_a_node()) {
		goal = words::name_in_line(to_node_path);
	} else if (!values::is_vector(to) || places::as_vector3(to) != Vector3()) {
		goal = words::text_of(to);
	}
	return vformat(it_has_arrived ? "%s has arrived at %s" : "%s can get to %s", who, goal);
}
