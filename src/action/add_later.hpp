#pragma once

// Adds a node to a parent that may be in the middle of adding its children, where the engine refuses:
// it is done when the frame's calls are, and the node is freed should its parent be gone by then.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

namespace add_later {

void to(Node *parent, Node *child, Node::InternalMode internal = Node::INTERNAL_MODE_DISABLED);

} // namespace add_later
