#pragma once

// What it takes for one value to stand in for another: asked when variables are written and compared.

#include <godot_cpp/variant/variant.hpp>

using namespace godot;

namespace ValueKinds {

// Nil, or an object that is not there or has been freed.
bool is_nothing(const Variant &value);
bool is_number(const Variant &value);
// Whether the destructor of such a value can call user code.
inline bool may_call_out(Variant::Type type) {
	return type >= Variant::OBJECT && type <= Variant::ARRAY;
}
// Equal in type as well: 1 and 1.0 differ.
bool is_same(const Variant &first, const Variant &second);
// The fraction is cut off; what no whole number can hold becomes the nearest that there is.
int64_t whole_part(double number);

} // namespace ValueKinds
