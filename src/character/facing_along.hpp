#pragma once

// Which way a character faces as it goes. Seen from the side its pictures flip; from above it turns; in 3D it turns round its
// upright axis.

#include <godot_cpp/classes/node2d.hpp>
#include <godot_cpp/classes/node3d.hpp>

using namespace godot;

namespace facing_along {

// The share of the way to be turned in one step, for a speed of which 10 has it round in about a fifth of a second.
double weight(double turn_speed, double delta);

// Notes it on the body and flips the pictures right below it. The body itself keeps its size.
void face_side(Node2D *body, bool left);
bool faces_left(const Node *body);

// Turns a share of the way toward a direction in the world. Nothing is done for one that leads nowhere.
void turn(Node3D *node_3d, const Vector3 &direction, double weight);
void turn(Node2D *node_2d, const Vector2 &direction, double weight);
// The same in 2D, left to the addon's move script where the node is not seen from the side.
void turn_by_script(Node2D *node_2d, const Vector2 &direction, double weight);

} // namespace facing_along
