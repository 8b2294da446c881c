#include "kinds/node/finding.hpp"

#include "action/words.hpp"

namespace {

constexpr Hint NODE_CLASS = { PROPERTY_HINT_TYPE_STRING, "Node" };

} // namespace

void SCFindChildAction::describe(KindTable<Self> &kind) {
	kind.about("node", "find_node", "Find a node by its name and put it in a variable, so other actions can work on it.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node to look under. Empty is Self.");
	kind.setting<&Self::child_name>("child_name",
			"The name of the node to find. A * stands for any letters and a ? for one, so Enemy* finds Enemy, Enemy2 and EnemyBoss. {names} of variables are "
			"filled in. Empty takes any name.");
	kind.setting<&Self::type>("type", NODE_CLASS, "Find only nodes of this kind, such as Camera3D or a class_name of your own. Empty takes any kind.");
	kind.setting<&Self::only_group>("only_group", "Find only nodes in this group. Empty takes any node.").optional();
	kind.setting<&Self::recursive>("recursive", "Look at any depth. Off, only the nodes right under it count.");
	kind.setting<&Self::store_in>("store_in", "The variable that takes the node. It is emptied when there is none.").optional_if<&Self::found_event>();
	kind.setting<&Self::found_event>("found_event", "The event to send when it is found. It carries the node.").optional();
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when there is none. With no event, you are warned instead.").optional();
}

String SCFindChildAction::summary_default() {
	String what = child_name;
	if (what.is_empty()) {
		what = !type.is_empty() ? "a " + type : !only_group.is_empty() ? vformat("one of %s", only_group) : words::picked(StringName());
	}
	return vformat("Find %s under %s%s", what, words::name_in_line(node_path),
			found_event.is_empty() || !store_in.is_empty() ? vformat(", keep it in %s", store_in) : String());
}

void SCGetChildrenAction::describe(KindTable<Self> &kind) {
	kind.about(
			"node", "get_children", "Look at the nodes directly under a node, its children. Keep all of them as a list, how many there are, or one of them.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.constants_of<Which>();
	kind.setting<&Self::node_path>("node_path", "The node whose children are looked at. Empty is Self.");
	kind.setting<&Self::type>("type", NODE_CLASS, "Look only at children of this kind, such as Sprite2D or a class_name of your own. Empty takes every kind.");
	kind.setting<&Self::only_group>("only_group", "Look only at children in this group. Empty takes every child.").optional();
	kind.setting<&Self::store_list_in>("store_list_in", "The variable that takes all of them as a list, in the order of the scene.").optional();
	kind.setting<&Self::store_count_in>("store_count_in", "The variable that takes how many there are.").optional();
	kind.setting<&Self::store_node_in>("store_node_in", "The variable that takes one of them. It is emptied when there is no such child.").optional();
	kind.setting<&Self::which>("which", "Which one goes into Store Node In.").only_if<&Self::store_node_in>();
	kind.setting<&Self::number>("number", { PROPERTY_HINT_RANGE, "-20,20,1,or_less,or_greater,hide_slider" },
				"Its number, where 1 is the first. Below zero it counts from the end: -1 is the last.")
			.only_if<&Self::store_node_in>()
			.only_if<&Self::which, BY_NUMBER>();
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when there are no such children.").optional();
}

String SCGetChildrenAction::summary_default() {
	String line = vformat("Look at the children of %s", words::name_in_line(node_path));
	if (!only_group.is_empty()) {
		line += vformat(" in %s", only_group);
	}
	if (!type.is_empty()) {
		line += vformat(" that are a %s", type);
	}
	if (!store_list_in.is_empty()) {
		line += vformat(", keep them in %s", store_list_in);
	}
	if (!store_count_in.is_empty()) {
		line += vformat(", how many in %s", store_count_in);
	}
	if (!store_node_in.is_empty()) {
		switch (which) {
			case FIRST:
				line += vformat(", the first in %s", store_node_in);
				break;
			case LAST:
				line += vformat(", the last in %s", store_node_in);
				break;
			case BY_NUMBER:
				line += vformat(", number %d in %s", number, store_node_in);
				break;
			case AT_RANDOM:
				line += vformat(", one at random in %s", store_node_in);
				break;
		}
	}
	return line;
}

void SCGetParentAction::describe(KindTable<Self> &kind) {
	kind.about("node", "get_parent",
			"Put the node a node sits directly under, its parent, into a Node variable. Or the nearest node above it that is of a kind, such as the Enemy that "
			"a hit box belongs to.");
	kind.runs(Runs::ONCE_OR_REPEATING);
	kind.setting<&Self::node_path>("node_path", "The node whose parent is wanted. Empty is Self.");
	kind.setting<&Self::type>("type", NODE_CLASS,
			"Go up until there is a node of this kind, such as CharacterBody2D or a class_name of your own. Empty takes the parent, whatever it is.");
	kind.setting<&Self::levels_up>("levels_up", { PROPERTY_HINT_RANGE, "1,10,1,or_greater" }, "How far up: 1 is the parent, 2 the parent's parent.")
			.unless<&Self::type>();
	kind.setting<&Self::store_in>("store_in", "The variable that takes the node. It is emptied when there is none.");
	kind.setting<&Self::nothing_event>("nothing_event", "The event to send when there is none. With no event, you are warned instead.").optional();
}

String SCGetParentAction::summary_default() {
	const String name = words::name_in_line(node_path);
	String what = vformat("the parent of %s", name);
	if (!type.is_empty()) {
		what = vformat("the %s that %s is under", type, name);
	} else if (levels_up > 1) {
		what = vformat("the node %d up from %s", levels_up, name);
	}
	return vformat("Keep %s in %s", what, store_in);
}
