#include "kinds/node/parents.hpp"

#include "action/words.hpp"

void SCReparentAction::describe(KindTable<Self> &kind) {
	kind.about("node", "reparent",
			"Move a node, and everything under it, to sit under another node, its new parent. A rider climbs onto a horse, a sword goes into a hand, a card "
			"from "
			"the deck to the table. Machines on what is moved go on as if nothing had happened.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::node_path>("node_path", "The node that moves. Empty is Self.");
	kind.setting<&Self::parent_path>("parent_path", "The node it is to sit under. Empty is Self.");
	kind.setting<&Self::keep_place>("keep_place",
			"Keep it where it stands in the world, turned and sized as it is. Off keeps its own Position instead, so that it jumps to the same spot in its new "
			"parent.");
}

String SCReparentAction::summary_default() {
	return vformat("Move %s under %s%s", words::name_in_line(node_path), words::name_in_line(parent_path), keep_place ? "" : ", with its own position");
}
