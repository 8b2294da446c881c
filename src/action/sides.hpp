#pragma once

// For runtimes that relate two nodes: whether both are in 2D, or both in 3D.

#include "action/shared_verbs.hpp"

namespace sides {

// False when one is in 2D and the other in 3D, of which the game maker is told, with what was done instead: "so the answer is no".
bool same_or_warn(SCMachineBase *machine, const Object *kind, const Node *node, const Node *other, const char *instead, const StringName &setting);

} // namespace sides
