#pragma once

// Kinds of the items category that choose an item by chance.

#include "action/kind_table.hpp"
#include "inventory/items.hpp"

class SCOfferItemAction : public SCMachineAction {
	SC_KIND(SCOfferItemAction, SCMachineAction)

public:
	Array items = items::none();
	double common_chance = 60.0;
	double uncommon_chance = 25.0;
	double rare_chance = 12.0;
	double legendary_chance = 3.0;
	bool not_taken_this_run = true;
	StringName store_in = "item";
	StringName none_left_event;

	void warn(SCMachineBase *machine, int64_t index);

	String summary_default() override;
};

class SCPickItemAction : public SCMachineAction {
	SC_KIND(SCPickItemAction, SCMachineAction)

public:
	Array items = items::none();
	double common_chance = 60.0;
	double uncommon_chance = 25.0;
	double rare_chance = 12.0;
	double legendary_chance = 3.0;
	bool not_seen_this_run = true;
	StringName store_in = "item";
	StringName none_left_event;

	void warn(SCMachineBase *machine, int64_t index);

	String summary_default() override;
};
