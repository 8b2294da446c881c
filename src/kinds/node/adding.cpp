#include "kinds/node/adding.hpp"

#include "action/action_shared.hpp"
#include "action/words.hpp"

void SCAddNodeAction::describe(KindTable<Self> &kind) {
	kind.about("node", "add_node",
			"Add a new node of one of Godot's own kinds while the game runs. A Timer, a Marker2D, a Label, a light. Set Property fills it in; Instantiate adds "
			"a "
			"whole scene.");
	kind.runs(Runs::AT_ONCE);
	kind.setting<&Self::type>("type", { PROPERTY_HINT_TYPE_STRING, "Node" }, "The kind of node to add, such as Timer, or a class_name of your own.");
	kind.setting<&Self::node_name>("node_name",
				"What it is called. {names} of variables are filled in. Of two nodes under one parent the second gets a number. Empty calls it by its kind.")
			.optional();
	kind.setting<&Self::parent_path>("parent_path", "The node it is added under. Empty is Self.");
	kind.setting<&Self::at_path>("at_path", "Put it where this node is. Empty puts it where its parent is.").optional();
	kind.setting<&Self::group>("group", "Put it into this group. Empty puts it into none.").optional();
	kind.setting<&Self::remove_when_left>("remove_when_left", "Remove it again when this state is left.");
	kind.setting<&Self::store_in>("store_in", "The variable that takes the node, for other actions to work on.").optional();
}

String SCAddNodeAction::summary_default() {
	const String what = type.is_empty() ? ActionShared::get().not_picked : type;
	const String called = node_name.is_empty() ? String() : vformat(" called %s", node_name);
	const String kept = store_in.is_empty() ? String() : vformat(", keep it in %s", store_in);
	return vformat("Add a %s%s under %s%s", what, called, words::name_in_line(parent_path), kept);
}
