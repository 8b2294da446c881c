#pragma once

// The one place where a character body is moved, for every kind that moves one and for scripts that do it by hand. What sets a
// speed elsewhere only writes the body's velocity.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/templates/local_vector.hpp>

using namespace godot;

class SCMachineBase;

// The bodies that one machine has moved in one physics frame.
struct MovedBodies {
	int64_t frame = -1;
	LocalVector<uint64_t> ids;

	// False when that body was moved in this frame already.
	bool may_move(uint64_t id, int64_t now);
};

namespace move_step {

// True when the body was moved, or handed to its agent to be moved; false for no character body, and for one that this machine has
// moved in this physics frame already. `own_gravity` of 0 is the project's; a fastest fall of 0 is no bound.
bool move(SCMachineBase *machine, Node *body, bool falls, double own_gravity, double delta, double fastest_fall);

} // namespace move_step
