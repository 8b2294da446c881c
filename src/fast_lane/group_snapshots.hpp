#pragma once

// Who is in a group and where, read from the engine once a step however many jobs ask for it.

#include "fast_lane/spots.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

class GroupSnapshots {
public:
	struct Member {
		uint64_t id;
		spots::Side side;
		Vector3 spot;
	};
	using Members = LocalVector<Member>;

	// `clock` is never 0, and another number in each step. Good until the next call.
	const Members &members(const StringName &group, const Node *asked_by, uint64_t clock);

private:
	struct Snapshot {
		uint64_t built_at = 0;
		Members members;
	};

	HashMap<StringName, Snapshot> snapshots;
};
