#pragma once

// Turning a node to face a way: its right side in 2D, its front (its own -z) in 3D, as the engine's
// look_at does. Its size and, in 2D, whether it is flipped stay as they are.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <limits>

using namespace godot;

namespace facing {

struct Stance {
	// Turned on from there: clockwise in 2D, to the left in 3D.
	double degrees = 0.0;
	// Only round the upright axis. 3D alone.
	bool level = false;
};

// What its rotation, or in 3D its quaternion, has to become to face that way in the world. Nil when the
// direction leads nowhere.
Variant goal(const Node *placed, const Variant &direction, const Stance &stance = Stance());
// The property that the goal is for.
NodePath property_of(const Node *placed);
// How far it still is, in radians.
double angle_to(const Node *placed, const Variant &goal);
// Turns it there, by at most so many radians.
void turn(Node *placed, const Variant &goal, double most = std::numeric_limits<double>::infinity());

} // namespace facing
