#pragma once

// What there is to do once a jump has really left the ground, which is not before somebody has moved the body: the floor it jumped
// from no longer counts as one it just walked off, and the rise is made as high in steps as it was meant to be.

#include "kinds/physics/jump_arc.hpp"

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/core/object_id.hpp>

using namespace godot;

struct TakeOff {
	ObjectID body;
	int64_t frame = 0;
	double delta = 0.0;
	bool from_the_floor = false;
	// Whether Move Character brings it down again.
	bool falls = true;
	double height = 0.0;
	double speed = 0.0;
	jump_arc::Pull pull;
};

namespace take_offs {

void note(Node *body, const TakeOff &take_off);
// It has jumped and nobody has moved it yet, so that it still seems to stand on the floor.
bool is_under_way(const Node *body);
// Its rise may still be that of a jump.
bool was_lately(const Node *body);

} // namespace take_offs
