#pragma once

// Kinds of the physics category about what a body has just run into.

#include "action/kind_table.hpp"

class SCGetLastCollisionAction : public SCMachineAction {
	SC_KIND(SCGetLastCollisionAction, SCMachineAction)

public:
	SC_ENUM_LABELLED(Surface, "Anything,The Ground,A Wall,A Ceiling", ANYTHING, THE_GROUND, A_WALL, A_CEILING)

	NodePath body_path;
	Surface surface = ANYTHING;
	StringName only_group;
	StringName store_hit_in;
	StringName store_node_in;
	StringName store_place_in;
	StringName store_normal_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
};

class SCGetContactAction : public SCMachineAction {
	SC_KIND(SCGetContactAction, SCMachineAction)

public:
	NodePath body_path;
	StringName only_group;
	double at_least = 0.0;
	StringName store_hit_in;
	StringName store_node_in;
	StringName store_place_in;
	StringName store_normal_in;
	StringName store_impulse_in;
	StringName store_count_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
	// The contacts may be told between physics frames only where the physics have no thread of their own.
	bool finishes_as_it_starts_default() override { return false; }
};
