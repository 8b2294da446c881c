#pragma once

// The kind that moves items from one inventory to another.

#include "action/kind_table.hpp"
#include "settings/hints.hpp"

class SCMoveItemAction : public SCMachineAction {
	SC_KIND(SCMoveItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		NO_BAG,
		NO_ITEM,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath from_path;
	NodePath to_path;
	int64_t how_many = 1;
	StringName how_many_variable;
	StringName store_moved_in;
	StringName moved_event;
	StringName no_room_event;

	// `about` is the setting of the inventory that is missing, or why there is no item.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, const String &about);

	String summary_default() override;

private:
	bool moves_everything() const { return item.is_null() && item_variable.is_empty(); }
};
