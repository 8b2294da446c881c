#pragma once

// The kind of the data category that works with a list held in a variable.

#include "action/kind_table.hpp"

class SCArrayAction : public SCMachineAction {
	SC_KIND(SCArrayAction, SCMachineAction)

public:
	SC_ENUM(Operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, SET_ITEM, REMOVE_ITEM, REMOVE_AT, CLEAR, GET_ITEM, GET_FIRST, GET_LAST, GET_RANDOM, GET_SMALLEST,
			GET_LARGEST, TAKE_FIRST, TAKE_LAST, TAKE_RANDOM, COUNT, HAS, FIND, SHUFFLE, SORT, REVERSE)

	StringName list_variable = "list";
	Operation operation = ADD;
	Variant item;
	int64_t index = 0;
	String sort_by;
	bool largest_first = false;
	StringName store_in;
	StringName found_event;
	StringName not_found_event;

	String summary_default() override;
};
