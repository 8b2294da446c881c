#pragma once

// Kinds of the items category that hand items to machines.

#include "action/kind_table.hpp"

class SCGiveItemAction : public SCMachineAction {
	SC_KIND(SCGiveItemAction, SCMachineAction)

public:
	SC_ENUM(What, GIVE, REMOVE)
	// What can be wrong.
	enum Wrong : int64_t {
		NO_MACHINE,
		NO_ITEM,
	};

	Ref<Resource> item;
	StringName item_variable;
	What what = GIVE;
	NodePath machine_path;
	StringName item_event;

	void warn(SCMachineBase *machine, int64_t index, int64_t wrong, const String &why);

	String summary_default() override;
};

class SCNewRunAction : public SCMachineAction {
	SC_KIND(SCNewRunAction, SCMachineAction)

public:
	String summary_default() override;
};
