#pragma once

// The kind of the data category that picks a row of a table.

#include "action/kind_table.hpp"

class SCFindRowAction : public SCMachineAction {
	SC_KIND(SCFindRowAction, SCMachineAction)

public:
	SC_ENUM(How, NAMED, AT_PLACE, RANDOM, WHERE_FIELD_IS, HIGHEST, LOWEST)

	enum Wrong {
		NO_TABLE,
		NO_ROWS,
		NO_FIELD,
	};

	Ref<Resource> table;
	How how = NAMED;
	StringName row_name;
	StringName row_name_variable;
	int64_t place = 1;
	StringName place_variable;
	StringName field;
	Variant equals;
	StringName equals_variable;
	StringName store_in = "row";
	StringName found_event;
	StringName not_found_event;

	String summary_default() override;
};
