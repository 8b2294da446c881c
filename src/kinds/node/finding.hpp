#pragma once

// Kinds of the node category that find nodes by where they are in the tree.

#include "action/kind_table.hpp"

class SCFindChildAction : public SCMachineAction {
	SC_KIND(SCFindChildAction, SCMachineAction)

public:
	NodePath node_path;
	String child_name;
	String type;
	StringName only_group;
	bool recursive = true;
	StringName store_in;
	StringName found_event;
	StringName nothing_event;

	String summary_default() override;
};

class SCGetChildrenAction : public SCMachineAction {
	SC_KIND(SCGetChildrenAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Which, "The First,The Last,By Number,At Random", FIRST, LAST, BY_NUMBER, AT_RANDOM)

	NodePath node_path;
	String type;
	StringName only_group;
	StringName store_list_in;
	StringName store_count_in;
	StringName store_node_in;
	Which which = FIRST;
	int64_t number = 1;
	StringName nothing_event;

	String summary_default() override;
};

class SCGetParentAction : public SCMachineAction {
	SC_KIND(SCGetParentAction, SCMachineAction)

public:
	NodePath node_path;
	String type;
	int64_t levels_up = 1;
	StringName store_in;
	StringName nothing_event;

	String summary_default() override;
};
