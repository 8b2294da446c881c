#pragma once

// The list of registered kinds, for scripts that work on all of them: the tool that writes the
// addon's scripts and the sweep that holds every kind to the rules. Bound by static_facilities.

#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/dictionary.hpp>
#include <godot_cpp/variant/typed_array.hpp>

using namespace godot;

namespace kind_list {

// A row per kind in the order of registration: class, category, word, script, about.
TypedArray<Dictionary> rows();
// Whether an action or a condition has a compiled half, found the way a machine finds it.
bool has_runtime(Object *action_or_condition);

} // namespace kind_list
