#pragma once

// Copies of items with numbers of their own, so that no two dropped swords are alike.

#include <godot_cpp/classes/resource.hpp>
#include <godot_cpp/variant/dictionary.hpp>

using namespace godot;

namespace varied_items {

// Each number up to so many percent more or less.
Ref<Resource> varied(const Ref<Resource> &item, double by_percent);
// For files: the numbers of such a copy, and such a copy anew.
Dictionary numbers_of(const Ref<Resource> &item);
Ref<Resource> with_numbers(const Ref<Resource> &item, const Dictionary &numbers);

} // namespace varied_items
