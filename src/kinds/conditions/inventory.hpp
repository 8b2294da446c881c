#pragma once

// The condition about what an inventory holds.

#include "action/kind_table.hpp"
#include "settings/hints.hpp"

class SCInventoryHasCondition : public SCMachineCondition {
	SC_KIND(SCInventoryHasCondition, SCMachineCondition)

public:
	SC_ENUM(Test, HAS, IS_FULL, IS_EMPTY)
	enum Wrong : int64_t {
		NO_BAG,
		NO_ITEM,
	};

	Test test = HAS;
	Ref<Resource> item;
	StringName item_variable;
	int64_t at_least = 1;
	NodePath bag_path;

	void warn(SCMachineBase *machine, int64_t what, const String &missing);

	String summary_default() override;
};
