#include "kinds/node/switching_on.hpp"

#include "action/words.hpp"

void SCEnableNodeAction::describe(KindTable<Self> &kind) {
	kind.about("node", "enable_node",
			"Switch a node off completely, or on again, for an enemy waiting in a room the player has not reached, a trap that is not armed yet, a door that "
			"is "
			"not there at all until a lever is pulled, or a whole group of pickups that only appear in the second half of a level. What is off is not seen, "
			"touches nothing and does nothing, with all that is under it, and goes on as it was once it is on.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Turn>();
	kind.setting<&Self::node_path>("node_path", "The node to switch. Empty is Self.").unless<&Self::group>();
	kind.setting<&Self::group>("group", "Switch every node in this group instead. Empty switches the one node.").optional();
	kind.setting<&Self::turn>("turn",
			"Whether to switch it on or off, or to whichever it is not now. A node that is hidden and has its Process Mode on Disabled in the editor is off "
			"from "
			"the start.");
}

String SCEnableNodeAction::summary_default() {
	const String what = group.is_empty() ? words::name_in_line(node_path) : vformat("every node in %s", group);
	switch (turn) {
		case TURN_ON:
			return vformat("Switch on %s", what);
		case TURN_OFF:
			return vformat("Switch off %s", what);
		case TURN_OTHER_WAY:
			break;
	}
	return vformat("Switch %s on or off, whichever it is not", what);
}

void SCSetProcessModeAction::describe(KindTable<Self> &kind) {
	kind.about("node", "set_process_mode",
			"Choose whether a node keeps running while the game is paused. A pause menu and its music run on, the level stands still.");
	kind.runs(Runs::AT_ONCE);
	kind.constants_of<Mode>();
	kind.setting<&Self::node_path>("node_path", "The node, and all under it that go by their parent. Empty is Self.");
	kind.setting<&Self::mode>("mode",
			"When it runs. As Its Parent (Inherit) goes by the node above, Stops While Paused (Pausable) is how a game's nodes start out, Only While Paused "
			"(When "
			"Paused) is for a pause menu, Always runs on through a pause, and Never (Disabled) does not run at all.");
	kind.setting<&Self::put_back_when_left>("put_back_when_left", "Put it back as it was when this state is left.");
}

String SCSetProcessModeAction::summary_default() {
	const String name = words::name_in_line(node_path);
	switch (mode) {
		case AS_ITS_PARENT:
			return vformat("Let %s run when its parent does", name);
		case STOPS_WHILE_PAUSED:
			return vformat("Let %s stop while paused", name);
		case ONLY_WHILE_PAUSED:
			return vformat("Let %s run only while paused", name);
		case ALWAYS:
			return vformat("Let %s always run", name);
		case NEVER:
			break;
	}
	return vformat("Let %s never run", name);
}
