#pragma once

// How big things are: the box around the shapes right below a node, which is measured only now and then.

#include <godot_cpp/classes/node.hpp>
#include <godot_cpp/variant/aabb.hpp>

using namespace godot;

namespace outlines {

// In the node's own space, with no depth in 2D. It has no size for a node without shapes. `frame` is the physics frame.
AABB of(const Node *node, uint64_t frame);

} // namespace outlines
