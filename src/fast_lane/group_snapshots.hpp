#pragma once

// Who is in a group and where, read from the engine once a step however many jobs ask for it. A job keeps
// the number of its group, since looking one up by name for each job costs as much as the rest of a check.

#include "fast_lane/spots.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/templates/hash_map.hpp>
#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

class GroupSnapshots {
public:
	struct Member {
		ObjectID id;
		spots::Side side;
		Vector3 spot;
	};
	using Members = LocalVector<Member>;

	uint32_t number_of(const StringName &group);

	// `clock` is never 0, and another number in each step. Good until the next call.
	const Members &members(uint32_t group, const Node *asked_by, uint64_t clock) {
		Snapshot &snapshot = snapshots[group];
		if (snapshot.built_at != clock) {
			snapshot.built_at = clock;
			read(snapshot, asked_by);
		}
		return snapshot.members;
	}

private:
	struct Snapshot {
		StringName group;
		uint64_t built_at = 0;
		Members members;
	};

	static void read(Snapshot &snapshot, const Node *asked_by);

	LocalVector<Snapshot> snapshots;
	HashMap<StringName, uint32_t> numbers;
};
