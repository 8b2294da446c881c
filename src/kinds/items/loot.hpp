#pragma once

// The kind that drops loot onto the ground.

#include "action/kind_table.hpp"
#include "inventory/items.hpp"

#include <godot_cpp/classes/audio_stream.hpp>

class SCDropLootAction : public SCMachineAction {
	SC_KIND(SCDropLootAction, SCMachineAction)

public:
	Array items = items::none();
	double item_chance = 50.0;
	double common_chance = 60.0;
	double uncommon_chance = 25.0;
	double rare_chance = 12.0;
	double legendary_chance = 3.0;
	bool drops_what_it_carries = true;
	double varies_by = 20.0;
	int64_t gold_least = 0;
	int64_t gold_most = 0;
	StringName gold_goes_into = "gold";
	Ref<AudioStream> item_sound;
	Ref<AudioStream> gold_sound;
	StringName dropped_event;

	void warn(SCMachineBase *machine, int64_t index, Node *body);

	String summary_default() override;
};
