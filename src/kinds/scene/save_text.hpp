#pragma once

// Looking at the text of a saved game before the engine reads it, which prints an error for some of what it refuses, or takes it
// with a warning. What comes through is UTF-8, one JSON object as far as its brackets tell, and not nested too deep; whether the rest
// of it is in order is left to the engine's parser.

#include <godot_cpp/variant/packed_byte_array.hpp>

using namespace godot;

namespace save_text {

// Objects and lists in one another, as many as the engine both writes and reads.
inline constexpr int MOST_LEVELS = 1024;
// Of a number, its exponent taken as so many more. The engine warns beyond 511, and writes 310 at most.
inline constexpr int64_t MOST_PLACES = 500;

bool is_sound(const PackedByteArray &text);
// The engine writes a vertical tab in a way that it does not read. Any other text comes back as it is.
PackedByteArray readable(const PackedByteArray &text);

} // namespace save_text
