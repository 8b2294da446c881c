#pragma once

// The directions that a node faces: its front and its sides in the world, whatever its size. In 2D what is mirrored, and a
// character that has turned to its left side, has its front there.

#include <godot_cpp/classes/canvas_item.hpp>
#include <godot_cpp/classes/node3d.hpp>
#include <godot_cpp/variant/quaternion.hpp>
#include <godot_cpp/variant/transform2d.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace own_ways {

// With columns of length 1, which may be mirrored.
Transform2D turn_of(const CanvasItem *item);
Transform2D turn_of(const Transform2D &world);
Quaternion turn_of(const Node3D *node_3d);
// Of a mirrored turn the one that keeps what stands upright.
double upright(const Transform2D &turn);
// A vector in the directions of a 2D or 3D node as one in the world.
Variant to_world(const Node *placed, const Variant &vector);

} // namespace own_ways
