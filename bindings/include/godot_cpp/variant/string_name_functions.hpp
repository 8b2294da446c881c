#ifndef GODOT_CPP_VARIANT_STRING_NAME_FUNCTIONS_HPP
#define GODOT_CPP_VARIANT_STRING_NAME_FUNCTIONS_HPP

// Operators of StringName with a C string on the left. string_name.hpp includes this.

#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>

namespace godot {

inline bool operator==(const char *p_text, const StringName &p_name) {
	return p_name == p_text;
}

inline bool operator!=(const char *p_text, const StringName &p_name) {
	return p_name != p_text;
}

} // namespace godot

#endif // GODOT_CPP_VARIANT_STRING_NAME_FUNCTIONS_HPP
