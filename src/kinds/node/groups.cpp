#include "kinds/node/groups.hpp"

#include "action/words.hpp"

void SCGroupAction::describe(KindTable<Self> &kind) {
	kind.about("node", "group",
			"Work with a group, the way Godot sorts nodes into named sets. Put a node into one or take it out, or find who is in it: all of them, the nearest, "
			"one at random, or how many.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Operation>();
	kind.setting<&Self::operation>("operation", "What to do with the group.");
	kind.setting<&Self::group>("group", "The group's name, such as enemies. A group is there as soon as a node is in it.");
	kind.setting<&Self::node_path>("node_path", "The node that is put in or taken out, or that the nearest is sought from. Empty is Self.");
	kind.setting<&Self::exclude_self>("exclude_self", "Leave out that node itself, should it be in the group.").unless<&Self::changes_it>();
	kind.setting<&Self::store_in>("store_in", "The variable that takes the answer: a list, a node or a number. A node variable is emptied when there is none.")
			.unless<&Self::changes_it>();
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when nobody is in the group.").unless<&Self::changes_it>().optional();
}

String SCGroupAction::summary_default() {
	const String name = words::name_in_line(node_path);
	switch (operation) {
		case ADD_A_NODE:
			return vformat("Put %s into the group %s", name, words::picked(group));
		case TAKE_A_NODE_OUT:
			return vformat("Take %s out of the group %s", name, words::picked(group));
		case GET_ALL:
			return vformat("Keep all of the group %s in %s", words::picked(group), store_in);
		case GET_THE_NEAREST:
			return vformat("Keep the one of the group %s nearest to %s in %s", words::picked(group), name, store_in);
		case GET_ONE_AT_RANDOM:
			return vformat("Keep a random one of the group %s in %s", words::picked(group), store_in);
		case COUNT:
			break;
	}
	return vformat("Keep how many are in the group %s in %s", words::picked(group), store_in);
}

void SCGroupSwitchAction::describe(KindTable<Self> &kind) {
	kind.about("node", "group_switch",
			"Send one of several events, picked by which group a node is in. What a bullet hit, what stepped on the plate, who was spoken to.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node to look at. Empty is Self. Read it from a Node variable for what was hit or touched.");
	kind.setting<&Self::groups>("groups", "The groups to look for, the first that the node is in counts.");
	kind.setting<&Self::events>("events", "The event each group sends, in the same order as the groups.");
	kind.setting<&Self::otherwise_event>("otherwise_event", "Sent when the node is in none of them. Empty sends nothing.").optional();
	kind.setting<&Self::only_when_it_changes>(
				"only_when_it_changes", "While it runs every frame, send an event only when the group that counts changes, not every frame it stays the same.")
			.only_if<&Self::run_mode, EVERY_FRAME>();
}

String SCGroupSwitchAction::summary_default() {
	String line = vformat("Switch on the group of %s", words::name_in_line(node_path));
	for (int64_t i = 0; i < groups.size(); i++) {
		const StringName event = i < events.size() ? StringName(events[i]) : StringName();
		line += vformat(", %s sends %s", words::picked(groups[i]), words::event_in_words(event));
	}
	if (!otherwise_event.is_empty()) {
		line += vformat(", any other %s", otherwise_event);
	}
	return line;
}
