#pragma once

// The kind that tells of touches.

#include "action/kind_table.hpp"

class SCEventOnCollisionAction : public SCMachineAction {
	SC_KIND(SCEventOnCollisionAction, SCMachineAction)

public:
	SC_ENUM(When, STARTS_TOUCHING, STOPS_TOUCHING)

	NodePath node_path;
	When when = STARTS_TOUCHING;
	StringName only_group;
	bool include_areas = false;
	bool count_those_already_there = false;
	StringName event_name;
	StringName store_node_in;

	String summary_default() override;
};
