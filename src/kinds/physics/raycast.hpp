#pragma once

// Kinds of the physics category that look along a line.

#include "action/kind_table.hpp"

class SCRaycastAction : public SCMachineAction {
	SC_KIND(SCRaycastAction, SCMachineAction)

public:
	SC_ENUM(Aim, A_DIRECTION, TOWARD_A_NODE)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath from_path;
	StringName from_variable;
	Aim aim = A_DIRECTION;
	Variant direction = Vector3(0, -1, 0);
	Space space = GLOBAL;
	NodePath toward_path;
	StringName toward_variable;
	double distance = 10.0;
	int64_t collision_mask = 0xFFFFFFFF;
	bool collide_with_bodies = true;
	bool collide_with_areas = false;
	bool hit_from_inside = false;
	bool exclude_self = true;
	StringName exclude_group;
	StringName only_group;
	bool stopped_by_others = true;
	StringName store_hit_in;
	StringName store_node_in;
	StringName store_place_in;
	StringName store_normal_in;
	StringName store_distance_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
	// It may have to wait for the physics.
	bool finishes_as_it_starts_default() override { return false; }
};

class SCRaycastAllAction : public SCMachineAction {
	SC_KIND(SCRaycastAllAction, SCMachineAction)

public:
	SC_ENUM(Aim, A_DIRECTION, TOWARD_A_NODE)
	SC_ENUM(Space, GLOBAL, LOCAL)
	SC_ENUM(Order, NEAREST_FIRST, FARTHEST_FIRST)

	NodePath from_path;
	StringName from_variable;
	Aim aim = A_DIRECTION;
	Variant direction = Vector3(0, -1, 0);
	Space space = GLOBAL;
	NodePath toward_path;
	StringName toward_variable;
	double distance = 10.0;
	int64_t collision_mask = 0xFFFFFFFF;
	bool collide_with_bodies = true;
	bool collide_with_areas = false;
	bool hit_from_inside = false;
	bool exclude_self = true;
	StringName exclude_group;
	StringName only_group;
	bool stopped_by_others = false;
	int64_t most = 0;
	Order order = NEAREST_FIRST;
	StringName store_list_in;
	StringName store_count_in;
	StringName store_places_in;
	StringName store_node_in;
	StringName store_place_in;
	StringName store_normal_in;
	StringName store_distance_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return false; }
};
