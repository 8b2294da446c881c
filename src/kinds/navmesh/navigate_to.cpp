#include "kinds/navmesh/navigate_to.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"
#include "steering/walking.hpp"

void SCNavigateToAction::describe(KindTable<Self> &kind) {
	kind.about("navmesh", "navmesh_move",
			"Walk to somewhere along the navigation mesh, finding a way round walls. The character has a NavigationAgent2D or NavigationAgent3D under it, and "
			"the level a NavigationRegion with a baked mesh.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.wants_physics();
	kind.setting<&Self::body_path>("body_path", "Who walks: a character body, or any other 2D or 3D node, which is moved by its position. Empty is Self.");
	kind.setting<&Self::agent_path>("agent_path", "The NavigationAgent2D or NavigationAgent3D that finds the way. Empty is the first one under the body.");
	kind.setting<&Self::to>("to", "The place to go to, in the world.").in_2d(Vector2(0, 0)).unless<&Self::goes_to_a_node>();
	kind.setting<&Self::to_variable>("to_variable", "Read the place from this variable, such as the one that Get Navigation Point fills.")
			.optional()
			.unless<&Self::goes_to_a_node>();
	kind.setting<&Self::to_node_path>("to_node_path", "The node to go to, followed as it moves. It wins over To.").optional();
	kind.setting<&Self::to_node_variable>("to_node_variable", "The variable holding the node to go to. It wins over To Node Path.").optional();
	kind.setting<&Self::speed>("speed", hint::SPEED, "How fast it walks, in metres a second in 3D and pixels a second in 2D.");
	kind.setting<&Self::speed_variable>("speed_variable", "Read the speed from this variable.").optional();
	kind.setting<&Self::turn_to_face>("turn_to_face", "Turn it to face the way it goes. A 2D body that falls is seen from the side: its sprites flip instead.");
	kind.setting<&Self::turn_speed>("turn_speed", walking::TURN_SPEED, "How fast it turns. 10 has it round in about a fifth of a second.")
			.only_if<&Self::turn_to_face>();
	kind.setting<&Self::falls>("falls", "Pulled down by gravity while it is off the ground. Untick it for what flies, and for games seen from above.");
	kind.setting<&Self::finish_on_arrival>("finish_on_arrival",
			"Finish once it is as near as the agent's Target Desired Distance, so that the state can complete. Off, it stays there, and follows a node that "
			"walks off.");
	kind.setting<&Self::arrived_event>("arrived_event", "Sent each time it gets there. Empty sends nothing.").optional();
	kind.setting<&Self::no_path_event>("no_path_event",
				"Sent when there has been no way to the goal for a quarter of a second. It goes as near as it can meanwhile. Empty sends nothing.")
			.optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "body");
}

bool SCNavigateToAction::goes_to_a_node() const {
	return !to_node_variable.is_empty() || !to_node_path.is_empty() || from_variables.has(verbs::name_of<&Self::to_node_path>());
}

String SCNavigateToAction::summary_default() {
	if (!to_node_variable.is_empty()) {
		return vformat("Find a way to [%s]", to_node_variable);
	}
	if (goes_to_a_node()) {
		return vformat("Find a way to %s", words::name_in_line(to_node_path));
	}
	return vformat("Find a way to %s", words::text_of(to));
}

String SCNavigateToAction::holds_its_state_default() {
	return finish_on_arrival ? "" : "Tick Finish On Arrival, move on with an event sent after a Delay";
}

void SCNavigateToAction::warn(SCMachineBase *machine, int64_t, int64_t what, Node *body) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	const String walker = body != nullptr ? String(body->get_name()) : String("the body");
	const auto say = [&](const String &sentence) { verbs::warn_whole(machine, this, int(what), sentence); };
	switch (what) {
		case NO_BODY:
			say(vformat("Navigate To on %s: there is no body at Body to walk. Pick one, or leave it empty for Self.", name));
			break;
		case NO_AGENT:
			say(vformat(
					"Navigate To on %s: %s has no NavigationAgent2D or NavigationAgent3D under it to find the way, so it does not move. Add one under it, or "
					"pick one under Agent.",
					name, walker));
			break;
		case NOT_AN_AGENT:
			say(vformat(
					"Navigate To on %s: Agent does not point at a NavigationAgent2D or NavigationAgent3D, so it cannot find a way. Pick the agent, or leave "
					"Agent empty to use the one under %s.",
					name, walker));
			break;
		case NO_NODE_TO_GO_TO: {
			const String where = to_node_variable.is_empty() ? String("To Node") : vformat("To Node Variable %s", to_node_variable);
			say(vformat("Navigate To on %s: %s holds no node to go to (it may have been removed), so it stands still.", name, where));
			break;
		}
		default:
			break;
	}
}
