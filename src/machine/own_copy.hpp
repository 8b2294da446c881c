#pragma once

// A list or a table that belongs to a design is copied before a game gets it: what the game does to its own must never reach
// the design, nor another machine of it. Any other value is answered as it is.

#include <godot_cpp/variant/variant.hpp>

godot::Variant own_copy(const godot::Variant &value);
