#pragma once

// Kinds of the scene category that tell about the scene that runs and the screen that it runs on.

#include "action/kind_table.hpp"

class SCGetSceneAction : public SCMachineAction {
	SC_KIND(SCGetSceneAction, SCMachineAction)

public:
	SC_ENUM(What, NAME, FILE, FILE_NAME)

	What what = NAME;
	StringName store_in;

	String summary_default() override;
};

class SCGetScreenSizeAction : public SCMachineAction {
	SC_KIND(SCGetScreenSizeAction, SCMachineAction)

public:
	StringName store_in;
	StringName store_middle_in;
	StringName store_window_in;
	StringName store_monitor_in;

	bool stores_another() const;

	String summary_default() override;
};
