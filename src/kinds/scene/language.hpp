#pragma once

// Set Language of the scene category.

#include "action/kind_table.hpp"

class SCSetLanguageAction : public SCMachineAction {
	SC_KIND(SCSetLanguageAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(What, "A Language,The Next One,The One Before,The Computer's", A_LANGUAGE, THE_NEXT_ONE, THE_ONE_BEFORE, THE_COMPUTERS)

	What what = A_LANGUAGE;
	String language = "en";
	StringName store_in;
	StringName store_name_in;
	StringName changed_event;
	StringName failed_event;

	String summary_default() override;
};
