#pragma once

// The kind that asks an area what is inside it.

#include "action/kind_table.hpp"

class SCGetOverlappingAction : public SCMachineAction {
	SC_KIND(SCGetOverlappingAction, SCMachineAction)

public:
	NodePath area_path;
	bool collide_with_bodies = true;
	bool collide_with_areas = false;
	bool exclude_self = true;
	StringName exclude_group;
	StringName only_group;
	StringName store_list_in;
	StringName store_count_in;
	StringName store_node_in;
	StringName hit_event;
	StringName nothing_event;

	String summary_default() override;
	bool finishes_as_it_starts_default() override { return false; }
};
