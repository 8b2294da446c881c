#include <godot_cpp/variant/string.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <cmath>
#include <string>

namespace godot {

namespace {

// Compares without making a String.
bool equals_text(const String &p_string, const char *p_text) {
	const int64_t length = p_string.length();
	const char32_t *characters = p_string.ptr();
	for (int64_t index = 0; index < length; index++) {
		const unsigned char byte = static_cast<unsigned char>(p_text[index]);
		// A zero inside the String ends here too, as the text has ended.
		if (byte == 0 || characters[index] != byte) {
			return false;
		}
	}
	return p_text[length] == 0;
}

template <typename T>
CharStringT<T> encode(const String &p_string, GDExtensionInt (*p_convert)(GDExtensionConstStringPtr, T *, GDExtensionInt)) {
	CharStringT<T> result;
	if (!p_convert) {
		return result;
	}
	const int64_t length = p_convert(p_string._native_ptr(), nullptr, 0);
	result.resize(length + 1);
	if (result.size() == length + 1) {
		p_convert(p_string._native_ptr(), result.ptrw(), length);
		result.ptrw()[length] = 0;
	}
	return result;
}

} // namespace

String::String(const char *p_text) : OpaqueValue(internal::Unconstructed()) {
	if (p_text && p_text[0]) {
		gdextension_interface::string_new_with_latin1_chars(_native_ptr(), p_text);
	}
}

String::String(const wchar_t *p_text) : OpaqueValue(internal::Unconstructed()) {
	if (p_text && p_text[0]) {
		gdextension_interface::string_new_with_wide_chars(_native_ptr(), p_text);
	}
}

String::String(const char16_t *p_text) : OpaqueValue(internal::Unconstructed()) {
	if (p_text && p_text[0]) {
		gdextension_interface::string_new_with_utf16_chars(_native_ptr(), p_text);
	}
}

String::String(const char32_t *p_text) : OpaqueValue(internal::Unconstructed()) {
	if (p_text && p_text[0]) {
		gdextension_interface::string_new_with_utf32_chars(_native_ptr(), p_text);
	}
}

String::String(const Char16String &p_text) : String(p_text.get_data()) {}

String::String(const Char32String &p_text) : String(p_text.get_data()) {}

String::String(const CharWideString &p_text) : String(p_text.get_data()) {}

String String::utf8(const char *p_text, int64_t p_length) {
	String result;
	result.parse_utf8(p_text, p_length);
	return result;
}

String String::utf16(const char16_t *p_text, int64_t p_length) {
	String result;
	result.parse_utf16(p_text, p_length);
	return result;
}

Error String::parse_utf8(const char *p_text, int64_t p_length) {
	*this = String();
	if (!p_text || p_length == 0) {
		return OK;
	}
	return Error(gdextension_interface::string_new_with_utf8_chars_and_len2(_native_ptr(), p_text, p_length));
}

Error String::parse_utf16(const char16_t *p_text, int64_t p_length) {
	*this = String();
	if (!p_text || p_length == 0) {
		return OK;
	}
	return Error(gdextension_interface::string_new_with_utf16_chars_and_len2(_native_ptr(), p_text, p_length, true));
}

String String::num_real(double p_number, bool p_trailing) {
	// As many digits as a double is sure of.
	constexpr int DIGITS = 14;
	constexpr double LARGEST_WHOLE = 9007199254740992.0;
	const double magnitude = std::abs(p_number);
	if (magnitude <= LARGEST_WHOLE && p_number == std::trunc(p_number)) {
		const String whole = num_int64(int64_t(p_number));
		return p_trailing ? whole + String(".0") : whole;
	}
	if (!std::isfinite(p_number)) {
		return num(p_number);
	}
	const int before_point = magnitude > 10.0 ? int(std::floor(std::log10(magnitude))) : 0;
	return num(p_number, DIGITS > before_point ? DIGITS - before_point : 0);
}

CharString String::utf8() const {
	return encode<char>(*this, gdextension_interface::string_to_utf8_chars);
}

CharString String::ascii() const {
	return encode<char>(*this, gdextension_interface::string_to_latin1_chars);
}

Char16String String::utf16() const {
	return encode<char16_t>(*this, gdextension_interface::string_to_utf16_chars);
}

Char32String String::utf32() const {
	return encode<char32_t>(*this, gdextension_interface::string_to_utf32_chars);
}

CharWideString String::wide_string() const {
	return encode<wchar_t>(*this, gdextension_interface::string_to_wide_chars);
}

Error String::resize(int64_t p_size) {
	return Error(gdextension_interface::string_resize(_native_ptr(), p_size));
}

const char32_t *String::ptr() const {
	return _is_zero() ? nullptr : gdextension_interface::string_operator_index_const(_native_ptr(), 0);
}

char32_t *String::ptrw() {
	return _is_zero() ? nullptr : gdextension_interface::string_operator_index(_native_ptr(), 0);
}

const char32_t *String::get_data() const {
	static const char32_t empty[1] = {};
	const char32_t *characters = ptr();
	return characters ? characters : empty;
}

const char32_t &String::operator[](int64_t p_index) const {
	const int64_t characters = length();
	if (p_index >= 0 && p_index < characters) {
		return *gdextension_interface::string_operator_index_const(_native_ptr(), p_index);
	}
	// The terminating zero may be read, also where the string is empty and has none.
	if (p_index != characters) {
		internal::report_index_out_of_bounds(GDEXTENSION_VARIANT_TYPE_STRING, p_index, characters);
	}
	return internal::out_of_bounds_value<char32_t>();
}

char32_t &String::operator[](int64_t p_index) {
	const int64_t characters = length();
	if (p_index >= 0 && p_index < characters) {
		return *gdextension_interface::string_operator_index(_native_ptr(), p_index);
	}
	if (p_index != characters) {
		internal::report_index_out_of_bounds(GDEXTENSION_VARIANT_TYPE_STRING, p_index, characters);
	}
	return internal::out_of_bounds_value<char32_t>();
}

bool String::operator==(const char *p_text) const {
	return p_text ? equals_text(*this, p_text) : is_empty();
}

bool String::operator==(const wchar_t *p_text) const {
	return *this == String(p_text);
}

bool String::operator==(const char16_t *p_text) const {
	return *this == String(p_text);
}

bool String::operator==(const char32_t *p_text) const {
	return *this == String(p_text);
}

String String::operator+(const char *p_text) {
	return *this + String(p_text);
}

String String::operator+(const wchar_t *p_text) {
	return *this + String(p_text);
}

String String::operator+(const char32_t *p_text) {
	return *this + String(p_text);
}

String String::operator+(char32_t p_char) {
	String result(*this);
	result += p_char;
	return result;
}

String &String::operator+=(const String &p_text) {
	// Appending a string to itself would read what is being moved.
	const String text(p_text);
	gdextension_interface::string_operator_plus_eq_string(_native_ptr(), text._native_ptr());
	return *this;
}

String &String::operator+=(const char *p_text) {
	return *this += String(p_text);
}

String &String::operator+=(const wchar_t *p_text) {
	return *this += String(p_text);
}

String &String::operator+=(const char32_t *p_text) {
	return *this += String(p_text);
}

String &String::operator+=(char32_t p_char) {
	gdextension_interface::string_operator_plus_eq_char(_native_ptr(), p_char);
	return *this;
}

String String::operator%(const Variant &p_values) const {
	Variant result;
	bool valid = false;
	Variant::evaluate(Variant::OP_MODULE, *this, p_values, result, valid);
	// Where the values do not fit the placeholders, the engine's text says so.
	return result;
}

String operator+(const char *p_text, const String &p_string) {
	return String(p_text) + p_string;
}

String operator+(const wchar_t *p_text, const String &p_string) {
	return String(p_text) + p_string;
}

String operator+(char32_t p_char, const String &p_string) {
	return String::chr(p_char) + p_string;
}

String itos(int64_t p_number) {
	return String::num_int64(p_number);
}

String uitos(uint64_t p_number) {
	return String::num_uint64(int64_t(p_number));
}

String rtos(double p_number) {
	return String::num(p_number);
}

String rtoss(double p_number) {
	return String::num_scientific(p_number);
}

} // namespace godot
