#pragma once

// The kind that shows an item's picture, name and line.

#include "action/kind_table.hpp"

class SCShowItemAction : public SCMachineAction {
	SC_KIND(SCShowItemAction, SCMachineAction)

public:
	// What can be wrong.
	enum Wrong : int64_t {
		NO_PICTURE,
		NO_NAME,
		NO_LINE,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath picture_path;
	NodePath name_path;
	NodePath line_path;
	StringName store_price_in;
	StringName store_charge_in;
	StringName store_active_in;

	void warn(SCMachineBase *machine, int64_t index, int64_t what, const String &why);

	String summary_default() override;
};
