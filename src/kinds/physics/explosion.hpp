#pragma once

// The kind that throws whatever is near away from a place.

#include "action/kind_table.hpp"

class SCExplosionAction : public SCMachineAction {
	SC_KIND(SCExplosionAction, SCMachineAction)

public:
	NodePath center_path;
	double radius = 5.0;
	double strength = 10.0;
	double at_the_edge = 0.0;
	double lift = 0.3;
	bool whatever_its_mass = false;
	StringName only_group;
	int64_t mask = 0xFFFFFFFF;
	bool spares_self = true;
	NodePath spares_path;
	bool walls_shield = false;
	int64_t walls_mask = 0xFFFFFFFF;
	StringName reached_event;
	StringName store_count_in;
	StringName store_bodies_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
	// One that goes off before the physics can be asked waits for them.
	bool finishes_as_it_starts_default() override { return false; }
};
