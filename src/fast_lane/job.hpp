#pragma once

// One job of the fast lane, whichever kind it is: all of them lie in one array, so that a pass reads
// memory from front to back. Nodes are held by id and looked up when the job's turn comes.

#include "fast_lane/spots.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/string_name.hpp>

#include <cstdint>

using namespace godot;

struct FastLaneJob {
	enum Kind : uint8_t {
		DISTANCE_CHECK,
		CHASE,
		WANDER,
	};
	enum Stage : uint8_t {
		// The place in the array is for the next job.
		UNUSED,
		RUNNING,
		// Its body has gone while its machine still knows the job by its number, which therefore
		// nobody else gets before the machine has taken it back: it would take back another's job.
		OVER,
	};
	static constexpr int NOT_YET_KNOWN = -1;

	Kind kind = DISTANCE_CHECK;
	Stage stage = UNUSED;
	bool physics = false;
	// The step of its kind that was next, or under way, when the job was made.
	uint64_t made_at = 0;

	ObjectID machine;
	// What kinds of object the two ids stand for, which never changes.
	bool machine_is_node = false;
	bool machine_has_values = false;
	bool body_is_node = false;
	spots::Side body_side = spots::NOWHERE;
	ObjectID body;

	StringName group;
	bool has_to_node = false;
	spots::Side to_side = spots::NOWHERE;
	ObjectID to_node;
	bool ignore_height = false;
	double distance = 0.0;
	StringName true_event;
	StringName false_event;
	int last = NOT_YET_KNOWN;

	StringName target_variable;
	double speed = 0.0;
	double stop_within = 0.0;
	StringName reached_event;
	bool there = false;

	Vector3 home;
	double radius = 0.0;
	double arrive_within = 0.0;
	double pause_for = 0.0;
	double extra_pause = 0.0;
	bool walking = false;
	double waited = 0.0;
	double pause = 0.0;
	Vector3 place;
};
