#include "kinds/node/destroying.hpp"

#include "action/words.hpp"
#include "settings/hints.hpp"

void SCQueueFreeAction::describe(KindTable<Self> &kind) {
	kind.about("node", "destroy",
			"Remove a node from the game, or every node in a group, such as all the pickups left on a floor or every bullet when a boss dies.");
	kind.runs_for_a_while<&Self::delay>();
	kind.setting<&Self::node_path>("node_path", "The node to remove, with everything under it. Empty is Self.").unless<&Self::group>();
	kind.setting<&Self::group>("group", "Remove every node in this group instead, such as bullets. Empty removes the one under Node.").optional();
	kind.setting<&Self::delay>("delay", hint::SECONDS,
			"Seconds of game time until it goes. Nothing goes when the state is left before that. Zero removes it at once, with the end of the frame.");
}

String SCQueueFreeAction::summary_default() {
	const String what = group.is_empty() ? words::name_in_line(node_path) : vformat("everything in %s", group);
	return vformat("Destroy %s%s", what, delay > 0.0 ? vformat(" after %s s", words::number(delay)) : String());
}
