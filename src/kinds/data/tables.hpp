#pragma once

// The kind of the data category that works with a table held in a variable.

#include "action/kind_table.hpp"

class SCDictionaryAction : public SCMachineAction {
	SC_KIND(SCDictionaryAction, SCMachineAction)

public:
	SC_ENUM(Operation, SET_ENTRY, ADD_TO_ENTRY, ADD_ALL, GET_ENTRY, HAS_KEY, FIND_KEY, REMOVE_ENTRY, CLEAR, COUNT, KEYS, VALUES, GET_RANDOM_KEY)

	StringName table_variable = "table";
	Operation operation = SET_ENTRY;
	String key;
	Variant value;
	StringName store_in;
	StringName found_event;
	StringName not_found_event;

	String summary_default() override;
};
