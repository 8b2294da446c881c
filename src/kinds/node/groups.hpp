#pragma once

// Kinds of the node category that work with groups.

#include "action/kind_table.hpp"

class SCGroupAction : public SCMachineAction {
	SC_KIND(SCGroupAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Operation, "Add A Node,Take A Node Out,Get All,Get The Nearest,Get One At Random,Count", ADD_A_NODE, TAKE_A_NODE_OUT, GET_ALL,
			GET_THE_NEAREST, GET_ONE_AT_RANDOM, COUNT)

	Operation operation = ADD_A_NODE;
	StringName group;
	NodePath node_path;
	bool exclude_self = true;
	StringName store_in;
	StringName nothing_event;

	String summary_default() override;

private:
	bool changes_it() const { return operation == ADD_A_NODE || operation == TAKE_A_NODE_OUT; }
};

class SCGroupSwitchAction : public SCMachineAction {
	SC_KIND(SCGroupSwitchAction, SCMachineAction)

public:
	NodePath node_path;
	TypedArray<StringName> groups;
	TypedArray<StringName> events;
	StringName otherwise_event;
	bool only_when_it_changes = true;

	String summary_default() override;
};
