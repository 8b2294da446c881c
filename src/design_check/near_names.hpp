#pragma once

// Which of some names somebody may have meant: "Did you mean score?"

#include <godot_cpp/templates/local_vector.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

using namespace godot;

namespace near_names {

// How many letters have to be typed, left out, changed or swapped to get from one to the other.
int64_t letters_apart(const String &left, const String &right);
// The nearest one, empty when none is near enough to be a slip of the fingers.
StringName nearest(const StringName &name, const LocalVector<StringName> &known);
// "Did you mean score? " with the blank, or nothing.
String did_you_mean(const StringName &nearest);

} // namespace near_names
