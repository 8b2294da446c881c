// Checks of Variant and the built-in values that need no script's help. The test calls it once and lists what it returns.

#pragma once

#include <godot_cpp/variant/packed_string_array.hpp>

namespace bindings_test {

// One line for each check that failed.
godot::PackedStringArray check_variants();

} // namespace bindings_test
