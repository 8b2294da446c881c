#pragma once

// Shapes that have a height: capsules, cylinders, boxes and rectangles. And the node below a body that holds one, on either side.

#include <godot_cpp/classes/collision_shape2d.hpp>
#include <godot_cpp/classes/collision_shape3d.hpp>
#include <godot_cpp/classes/shape2d.hpp>
#include <godot_cpp/classes/shape3d.hpp>

using namespace godot;

namespace crouch_shapes {

// Below zero for a shape that has none.
double height_of(const Ref<Resource> &shape);
// Only for one that has.
void set_height_of(const Ref<Resource> &shape, double height);

bool is_shape_node(const Node *node);
// The first right below the body, where the engine looks for them. Null for none, and for one that holds no shape.
Node *below(const Node *body);
Ref<Resource> held_by(const Node *shape_node);

// How its place changes within its parent when it loses that much of its height and its feet stay where they are. `down` is a
// direction in the world.
Variant lowered(const Node *shape_node, double lost, const Variant &down);

} // namespace crouch_shapes
