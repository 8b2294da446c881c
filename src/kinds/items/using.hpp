#pragma once

// The kind that uses an item.

#include "action/kind_table.hpp"

class SCUseItemAction : public SCMachineAction {
	SC_KIND(SCUseItemAction, SCMachineAction)

public:
	// What can be wrong.
	enum Wrong : int64_t {
		NO_ITEM,
		NO_BAG,
		CHANGES_NOTHING,
		NO_USER,
	};

	Ref<Resource> item;
	StringName item_variable;
	StringName charge_variable = "charge";
	StringName not_ready_event;
	NodePath bag_path;
	StringName none_left_event;
	NodePath on_path;

	// Words go into the sentence: why there is no item or no user, or what the item is called.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, const String &words);

	// What is used up needs no charge.
	bool may_be_charged() const;
	String summary_default() override;
};
