#pragma once

// Kinds of the data category that read and write the fields of a record.

#include "action/kind_table.hpp"
#include "inventory/records.hpp"

class SCGetDataAction : public SCMachineAction {
	SC_KIND(SCGetDataAction, SCMachineAction)

public:
	SCDataReach::From from = SCDataReach::A_DATA_FILE;
	Ref<Resource> data;
	StringName data_variable;
	NodePath node_path;
	StringName field;
	StringName store_in;

	String summary_default() override;
};

class SCSetDataAction : public SCMachineAction {
	SC_KIND(SCSetDataAction, SCMachineAction)

public:
	SC_ENUM(Operation, SET, ADD)

	enum Wrong {
		NO_NUMBER,
		NOT_CHANGED,
	};

	SCDataReach::From from = SCDataReach::A_DATA_FILE;
	Ref<Resource> data;
	StringName data_variable;
	NodePath node_path;
	StringName field;
	Operation operation = SET;
	Variant value;

	String summary_default() override;
};
