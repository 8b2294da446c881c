#ifndef GODOT_CPP_VARIANT_STRING_FUNCTIONS_HPP
#define GODOT_CPP_VARIANT_STRING_FUNCTIONS_HPP

// What goes with String but is not a member: operators with a C string on the left, and numbers as text. string.hpp
// includes this.

#include <godot_cpp/variant/string.hpp>

namespace godot {

inline bool operator==(const char *p_text, const String &p_string) {
	return p_string == p_text;
}

inline bool operator==(const wchar_t *p_text, const String &p_string) {
	return p_string == p_text;
}

inline bool operator!=(const char *p_text, const String &p_string) {
	return p_string != p_text;
}

inline bool operator!=(const wchar_t *p_text, const String &p_string) {
	return p_string != p_text;
}

String operator+(const char *p_text, const String &p_string);
String operator+(const wchar_t *p_text, const String &p_string);
String operator+(char32_t p_char, const String &p_string);

String itos(int64_t p_number);
String uitos(uint64_t p_number);
// The shortest text that names the number, and one with an exponent.
String rtos(double p_number);
String rtoss(double p_number);

} // namespace godot

#endif // GODOT_CPP_VARIANT_STRING_FUNCTIONS_HPP
