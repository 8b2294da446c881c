#pragma once

// The condition about a field of a record.

#include "action/kind_table.hpp"
#include "inventory/records.hpp"

class SCDataCondition : public SCMachineCondition {
	SC_KIND(SCDataCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, GREATER, GREATER_OR_EQUAL, LESS, LESS_OR_EQUAL, IS_TRUE, IS_FALSE)

	SCDataReach::From from = SCDataReach::A_DATA_FILE;
	Ref<Resource> data;
	StringName data_variable;
	NodePath node_path;
	StringName field;
	Test test = EQUALS;
	Variant value;

	void warn_data(SCMachineBase *machine, const String &why);

	String summary_default() override;
};
