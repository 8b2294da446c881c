#include "kinds/navmesh/navigation_point.hpp"

#include "action/shared_verbs.hpp"
#include "action/words.hpp"

void SCGetNavigationPointAction::describe(KindTable<Self> &kind) {
	kind.about("navmesh", "navmesh_point",
			"Pick a place on the navigation mesh and put it in a variable. Somewhere for Navigate To to stroll to, a spot where an enemy can appear, the "
			"nearest "
			"firm ground. A level that has only just been loaded gets a moment to build its mesh.");
	kind.runs(Runs::FOR_A_WHILE);
	kind.constants_of<Pick>();
	kind.setting<&Self::pick>("pick",
			"Somewhere Random is any place on the mesh that can be walked to and lies within the distance. The Nearest Spot is the place on the mesh that is "
			"nearest.");
	kind.setting<&Self::from_path>("from_path", "A 2D or 3D node of the world whose mesh it is, and around which it looks. Empty is Self.");
	kind.setting<&Self::within>("within", hint::DISTANCE, "How far away the place may be, in metres in 3D and pixels in 2D.")
			.only_if<&Self::pick, SOMEWHERE_RANDOM>();
	kind.setting<&Self::within_variable>("within_variable", "Read the distance from this variable.").optional().only_if<&Self::pick, SOMEWHERE_RANDOM>();
	kind.setting<&Self::near>("near", "Look around this place instead of around the node. As long as it is zero, the node's own place is used.")
			.in_2d(Vector2(0, 0));
	kind.setting<&Self::near_variable>("near_variable", "Read that place from this variable. A node in it counts as where it is.").optional();
	kind.setting<&Self::store_in>(
			"store_in", "The variable that the place goes into, a Vector2 in 2D and a Vector3 in 3D. It stays as it is when there is none.");
	kind.setting<&Self::nothing_event>("nothing_event", "Sent when there is no such place, or no mesh at all. Empty sends nothing.").optional();
	kind.warns<&Self::warn>("_warn", "m", "index", "what", "node");
}

bool SCGetNavigationPointAction::finishes_as_it_starts_default() {
	return false;
}

String SCGetNavigationPointAction::summary_default() {
	if (pick == THE_NEAREST_SPOT) {
		return vformat("%s = the nearest spot it can stand", store_in);
	}
	return vformat("%s = somewhere within %s", store_in, words::number(within));
}

void SCGetNavigationPointAction::warn(SCMachineBase *machine, int64_t, int64_t what, Node *node) {
	if (machine == nullptr) {
		return;
	}
	const String name = machine->name_in_messages();
	if (what == NOWHERE_TO_PUT_IT) {
		verbs::warn_whole(machine, this, int(what),
				vformat("Get Navigation Point on %s: Store In is empty, so the place it picks has nowhere to go. Name a variable there.", name));
		return;
	}
	const String why =
			node != nullptr ? vformat("%s is a %s, which has no place in the world", node->get_name(), node->get_class()) : String("there is no node at From");
	verbs::warn_whole(machine, this, int(what),
			vformat("Get Navigation Point on %s: %s, so there is no navigation map to pick from. Pick a 2D or 3D node under From, or leave it empty for Self.",
					name, why));
}
