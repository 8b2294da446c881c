#pragma once

// One job of the fast lane, in two halves: what every step reads, so small that a pass over thousands of
// jobs stays within the processor's caches, and the rest. Nodes are held by id and looked up when the job's
// turn comes. What is kept beside an id was found when the id was first seen and is used only after a look-up
// has told that the object is still there: an id is never given to another object.

#include "fast_lane/spots.hpp"

#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <cstdint>

using namespace godot;

class MachineRun;

struct FastLaneJob {
	enum Kind : uint8_t {
		CHECK_OF_NODE,
		CHECK_OF_GROUP,
		CHASE,
		WANDER,
	};
	enum Stage : uint8_t {
		// The place in the array is for the next job.
		UNUSED,
		// Its body has gone while its machine still knows the job by its number, which therefore
		// nobody else gets before the machine has taken it back: it would take back another's job.
		OVER,
		JUST_MADE,
		RUNNING,
	};
	static constexpr int8_t NOT_YET_KNOWN = -1;

	Kind kind = CHASE;
	Stage stage = UNUSED;
	bool physics = false;
	bool ignore_height = false;
	// What the machine knows: whether the check came out true, whether the chase has arrived.
	int8_t told = NOT_YET_KNOWN;
	spots::Side body_side = spots::NOWHERE;
	spots::Side other_side = spots::NOWHERE;
	// Among the groups that are asked for.
	uint32_t group = 0;

	ObjectID machine;
	ObjectID body;
	// Who is measured to, or was chased last.
	ObjectID other;
	// Null when the machine is none of ours.
	const MachineRun *run = nullptr;
	StringName target_variable;
	// How close counts; the square of it in a check.
	double reach = 0.0;
	double speed = 0.0;
};

struct FastLaneJobRest {
	// The step of its kind that was next, or under way, when the job was made.
	uint64_t made_at = 0;

	StringName true_event;
	StringName false_event;
	StringName reached_event;
	// A check's record, in which it keeps its last answer; nil when nobody asks for that.
	Variant slot;
	bool is_turned = false;

	Vector3 home;
	double radius = 0.0;
	double pause_for = 0.0;
	double extra_pause = 0.0;
	bool walking = false;
	double waited = 0.0;
	double pause = 0.0;
	Vector3 place;
};
