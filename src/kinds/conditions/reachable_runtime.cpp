// The compiled condition about the ways of a navigation agent.

#include "action/add_kind.hpp"
#include "action/conditions.hpp"
#include "action/sides.hpp"
#include "action/spaces.hpp"
#include "character/body_notes.hpp"
#include "kinds/conditions/reachable.hpp"
#include "steering/reaching.hpp"

namespace {

using Kind = SCNavigationReachableCondition;

bool is_agent(const Node *node) {
	return Object::cast_to<NavigationAgent2D>(node) != nullptr || Object::cast_to<NavigationAgent3D>(node) != nullptr;
}

// The node itself or the first one right below it. Null when there is none, of which the game maker is told.
Node *agent_or_warn(SCMachineBase *machine, SCMachineCondition *condition) {
	Node *node = conditions::node<&Kind::agent_path>(machine, condition);
	if (node == nullptr || is_agent(node)) {
		return node;
	}
	Node *agent = body_notes::agent_of(node);
	if (agent == nullptr) {
		verbs::warn(machine, condition,
				vformat("%s has no NavigationAgent2D or NavigationAgent3D under it, so the answer is no. Add one under it, or pick one under Agent Path.",
						node->get_name()));
	}
	return agent;
}

// Where it asks for; nil when that is nowhere, of which the game maker is told.
Variant goal_or_warn(SCMachineBase *machine, SCMachineCondition *condition, const Node *agent, const Variant &headed_for) {
	if (setting_of<&Kind::to_node_path>(condition).is_empty()) {
		const Variant to = setting_of<&Kind::to>(condition);
		if (values::is_vector(to) && places::as_vector3(to) == Vector3()) {
			return headed_for;
		}
		return spaces::place_or_warn(machine, condition, to, verbs::name_of<&Kind::to>()) ? to : Variant();
	}
	const Node *node = conditions::node<&Kind::to_node_path>(machine, condition);
	const StringName &setting = verbs::name_of<&Kind::to_node_path>();
	if (node == nullptr) {
		return Variant();
	}
	if (!places::has_a_place(node)) {
		verbs::warn(machine, condition, vformat("%s.", places::no_place_words(node, verbs::setting_in_inspector(setting))));
		return Variant();
	}
	return sides::same_or_warn(machine, condition, agent, node, "so the answer is no", setting) ? places::position_of(node) : Variant();
}

bool is_reachable(SCMachineBase *machine, SCMachineCondition *condition) {
	const Node *agent = agent_or_warn(machine, condition);
	if (agent == nullptr || !agent->is_inside_tree()) {
		return false;
	}
	const bool arrived = setting_of<&Kind::it_has_arrived>(condition);
	if (const NavigationAgent2D *agent_2d = Object::cast_to<NavigationAgent2D>(agent)) {
		const Variant goal = goal_or_warn(machine, condition, agent, agent_2d->get_target_position());
		const Vector2 place = places::as_vector2(goal);
		return goal.get_type() != Variant::NIL && (arrived ? reaching::is_at(agent_2d, place) : reaching::is_reachable(agent_2d, place));
	}
	const NavigationAgent3D *agent_3d = Object::cast_to<NavigationAgent3D>(agent);
	const Variant goal = goal_or_warn(machine, condition, agent, agent_3d->get_target_position());
	const Vector3 place = places::as_vector3(goal);
	return goal.get_type() != Variant::NIL && (arrived ? reaching::is_at(agent_3d, place) : reaching::is_reachable(agent_3d, place));
}

const AddKinds added = {
	add_condition<SCNavigationReachableCondition, &is_reachable>(),
};

} // namespace
