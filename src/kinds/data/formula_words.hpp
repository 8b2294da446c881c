#pragma once

// The words that a formula may use besides the names of variables. What is not granted here is refused before the engine reads
// the formula: a name on these lists works on numbers, places, colours and texts alone, changes nothing, and reaches nothing
// outside the formula.

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace formula_words {

// A function of the engine's own, which takes any values and answers one.
bool is_function(const String &name);
// A method of a place, a colour, a text, a list or a table.
bool is_method(const String &name);
// A kind of value that a formula may make: Vector2(1, 2).
bool is_made(const String &name);
// PI, TAU, INF, NAN, true, false and null.
bool is_constant(const String &name, Variant &value);

} // namespace formula_words
