#pragma once

// Bodies move in the physics frame, which drawn frames do not keep step with, so that what moves there jerks on a fast screen. A
// project that leaves the engine's physics interpolation off gets it for just the nodes that are moved there.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

namespace smoothing {

// Done at every move, and nothing after the first.
void smooth(Node *node);
// Whether it was switched on here and not by the project.
bool is_switched_on_here();

} // namespace smoothing
