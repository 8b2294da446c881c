#pragma once

// Conditions about texts and about files.

#include "action/kind_table.hpp"

class SCFileExistsCondition : public SCMachineCondition {
	SC_KIND(SCFileExistsCondition, SCMachineCondition)

public:
	SC_ENUM_LABELLED(What, "A File,A Folder,Either", A_FILE, A_FOLDER, EITHER)

	String path;
	What what = A_FILE;

	String summary_default() override;
	PackedStringArray variables_read_default() override;
};

class SCStringCompareCondition : public SCMachineCondition {
	SC_KIND(SCStringCompareCondition, SCMachineCondition)

public:
	SC_ENUM(Test, EQUALS, NOT_EQUALS, CONTAINS, BEGINS_WITH, ENDS_WITH, MATCHES, IS_EMPTY)

	StringName variable_name;
	Test test = EQUALS;
	String text;
	bool ignore_case = false;

	String summary_default() override;
};
