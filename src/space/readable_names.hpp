#pragma once

// Names for what joins a parent that has such a child already: Ghost, Ghost2, Ghost3, as the engine gives them. The engine tries
// them all from the beginning, which for the thousandth of a kind takes longer than everything else about it.

#include <godot_cpp/classes/node.hpp>

using namespace godot;

namespace readable_names {

// Before it is added.
void give(const Node *parent, Node *made);

} // namespace readable_names
