#pragma once

// Kinds of the data category that hold many values in one variable: lists and tables.

#include "action/kind_table.hpp"

class SCArrayAction : public SCMachineAction {
	SC_KIND(SCArrayAction, SCMachineAction)

public:
	SC_ENUM(Operation, ADD, ADD_IF_MISSING, ADD_ALL, INSERT, SET_ITEM, REMOVE_ITEM, REMOVE_AT, CLEAR, GET_ITEM, GET_FIRST, GET_LAST, GET_RANDOM, GET_SMALLEST, GET_LARGEST, TAKE_FIRST, TAKE_LAST, TAKE_RANDOM, COUNT, HAS, FIND, SHUFFLE, SORT, REVERSE)

	StringName list_variable = "list";
	Operation operation = ADD;
	Variant item;
	int64_t index = 0;
	String sort_by;
	bool largest_first = false;
	StringName store_in;
	StringName found_event;
	StringName not_found_event;

	static bool takes_item(Operation operation);
	static bool takes_index(Operation operation);
	static bool compares(Operation operation);
	// Something may not be there, which is what the two events tell.
	static bool looks(Operation operation);
	static bool answers(Operation operation);
	// Worth doing without the answer being kept.
	static bool may_forget_the_answer(Operation operation);
	// Brings the list into being when there is none yet.
	static bool makes_the_list(Operation operation);

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
	PackedStringArray variables_written_default() override;
	TypedArray<StringName> optional_names_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;
};

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

	static bool takes_key(Operation operation);
	static bool takes_value(Operation operation);
	static bool looks(Operation operation);
	static bool answers(Operation operation);
	static bool may_forget_the_answer(Operation operation);
	static bool changes_the_table(Operation operation);

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return !repeats(); }
	PackedStringArray variables_written_default() override;
	TypedArray<StringName> optional_names_default() override;

protected:
	void _validate_property(PropertyInfo &property) const;
};
