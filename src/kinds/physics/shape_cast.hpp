#pragma once

// The kind that feels about with a circle or a box.

#include "action/kind_table.hpp"

class SCShapeCastAction : public SCMachineAction {
	SC_KIND(SCShapeCastAction, SCMachineAction)

public:
	SC_ENUM(Shape, CIRCLE, BOX)
	SC_ENUM(Aim, A_DIRECTION, TOWARD_A_NODE)
	SC_ENUM(Space, GLOBAL, LOCAL)

	NodePath from_path;
	StringName from_variable;
	Shape shape = CIRCLE;
	double radius = 1.0;
	Variant size = Vector3(1, 1, 1);
	Space space = GLOBAL;
	double distance = 0.0;
	Aim aim = A_DIRECTION;
	Variant direction = Vector3(0, -1, 0);
	NodePath toward_path;
	StringName toward_variable;
	int64_t collision_mask = 0xFFFFFFFF;
	bool collide_with_bodies = true;
	bool collide_with_areas = false;
	bool exclude_self = true;
	StringName exclude_group;
	StringName only_group;
	bool stopped_by_others = false;
	int64_t most = 0;
	StringName store_list_in;
	StringName store_count_in;
	StringName store_node_in;
	StringName store_place_in;
	StringName store_normal_in;
	StringName store_distance_in;
	StringName hit_event;
	StringName nothing_event;

	bool turns() const { return shape == BOX || (has_some<&Self::distance>() && aim == A_DIRECTION); }

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return false; }
};
