#ifndef GODOT_CPP_VARIANT_VFORMAT_HPP
#define GODOT_CPP_VARIANT_VFORMAT_HPP

// Text with its % placeholders filled in, as GDScript's % does. variant.hpp brings this along.

#include <godot_cpp/variant/variant.hpp>

namespace godot {

template <typename... Args>
String vformat(const String &p_text, const Args &...p_values) {
	return p_text % Variant(Array::make(p_values...));
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_VFORMAT_HPP
