#pragma once

// The kind that keeps a crowd from standing in each other.

#include "action/kind_table.hpp"

class SCKeepApartAction : public SCMachineAction {
	SC_KIND(SCKeepApartAction, SCMachineAction)

public:
	NodePath body_path;
	StringName crowd_group;
	double personal_space = 1.6;
	double push = 2.0;
	bool falls = true;

	String summary_default() override;
};
