#pragma once

// Kinds of the items category that work on one inventory: fill it, take out of it, count and sort what is in it.

#include "action/kind_table.hpp"
#include "settings/hints.hpp"

class SCAddItemAction : public SCMachineAction {
	SC_KIND(SCAddItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		HOW_MANY,
		NO_BAG,
		NO_ITEM,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath bag_path;
	int64_t how_many = 1;
	StringName how_many_variable;
	StringName added_event;
	StringName no_room_event;

	// `about` is how many, or why there is no item.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, const Variant &about);

	String summary_default() override;
};

class SCRemoveItemAction : public SCMachineAction {
	SC_KIND(SCRemoveItemAction, SCMachineAction)

public:
	enum Wrong : int64_t {
		HOW_MANY,
		NO_BAG,
		NO_ITEM,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath bag_path;
	int64_t how_many = 1;
	StringName how_many_variable;
	StringName removed_event;
	StringName not_enough_event;

	// `about` is how many, or why there is no item.
	void warn(SCMachineBase *machine, int64_t index, int64_t what, const Variant &about);

	String summary_default() override;
};

class SCCountItemAction : public SCMachineAction {
	SC_KIND(SCCountItemAction, SCMachineAction)

public:
	SC_ENUM(Counts, ONE_ITEM, STACKS_USED, SLOTS_FREE)
	enum Wrong : int64_t {
		NO_BAG,
		NO_ITEM,
	};

	Ref<Resource> item;
	StringName item_variable;
	NodePath bag_path;
	Counts counts = ONE_ITEM;
	StringName store_in = "how many";

	void warn(SCMachineBase *machine, int64_t index, int64_t what, const String &missing);

	String summary_default() override;
};

class SCSortInventoryAction : public SCMachineAction {
	SC_KIND(SCSortInventoryAction, SCMachineAction)

public:
	// As the inventories' script counts them.
	SC_ENUM(SortBy, NAME, TYPE, RARITY)

	NodePath bag_path;
	SortBy order = NAME;

	void warn(SCMachineBase *machine, int64_t index);

	String summary_default() override;
};
