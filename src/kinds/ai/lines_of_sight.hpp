#pragma once

// Whether something solid stands between two things.

#include <godot_cpp/classes/node.hpp>

#include <cstdint>

using namespace godot;

namespace lines_of_sight {

// From one's eyes to where the other's would be, through everything but `but_for` and the one who looks. In 3D eyes are so high
// above their places; in 2D height says nothing. Two that are not on one side, or not in one world, never see each other.
bool is_blocked(const Node *from, const Node *to, const Node *but_for, int64_t mask, double eye_height);

} // namespace lines_of_sight
