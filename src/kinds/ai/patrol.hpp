#pragma once

// The kind that walks a round from marker to marker.

#include "action/kind_table.hpp"

#include <godot_cpp/variant/typed_array.hpp>

class SCPatrolAction : public SCMachineAction {
	SC_KIND(SCPatrolAction, SCMachineAction)

public:
	SC_ENUM(Order, LOOP, PING_PONG, ONCE)

	NodePath body_path;
	TypedArray<NodePath> points;
	StringName route_group;
	StringName route_group_variable;
	Order order = LOOP;
	double speed = 2.5;
	StringName speed_variable;
	double arrive_within = 1.0;
	double wait_at_each = 1.0;
	StringName progress_variable = "patrol point";
	StringName reached_event;
	StringName finished_event = "PatrolDone";
	bool turn_to_face = true;
	double turn_speed = 10.0;
	bool falls = true;

	// `what` is 0 for no round at all, 1 for the marker of that number, which is 1 for the first.
	void warn_patrol(SCMachineBase *machine, int64_t index, int64_t what, int64_t number);

	String summary_default() override;
	String holds_its_state_default() override;
};
