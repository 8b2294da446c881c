#pragma once

// The place that a node has in its scene's file, kept on it as metadata once it stands elsewhere, or was copied from there: by it a
// saved game finds the node again.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

namespace place_in_file {

// Before it is moved to another parent.
void note_moving(Node *node);
void note_copied(Node *original, Node *copy);

} // namespace place_in_file
