#pragma once

// Shoves that turn a rigid body as well. How hard it is to turn is known to the physics only once they have stepped it, and what
// turns it before that is lost, so such a shove waits for it on the body.

#include <godot_cpp/classes/rigid_body2d.hpp>
#include <godot_cpp/classes/rigid_body3d.hpp>

using namespace godot;

namespace levers {

template <class Vector, class Turn>
struct Shove {
	Vector impulse;
	// From the body's own place, along the axes of the world.
	Vector at;
	bool at_its_middle = true;
	Turn twist = Turn();
};
using Shove2D = Shove<Vector2, float>;
using Shove3D = Shove<Vector3, Vector3>;

void give(RigidBody2D *body, const Shove2D &shove);
void give(RigidBody3D *body, const Shove3D &shove);

} // namespace levers
