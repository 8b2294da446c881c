#include <godot_cpp/variant/string_name.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string.hpp>

namespace godot {

namespace {

bool is_ascii(const char *p_text) {
	for (; *p_text; p_text++) {
		if (static_cast<unsigned char>(*p_text) >= 0x80) {
			return false;
		}
	}
	return true;
}

} // namespace

// A static name would let the engine keep the caller's buffer, but this library can be closed, and reloaded, before the
// engine is done with its names: the text is always copied.
StringName::StringName(const char *p_text, bool) :
		OpaqueValue(internal::Unconstructed()) {
	if (!p_text || !p_text[0]) {
		return;
	}
	// The Latin-1 call finds a known name without building a String.
	if (is_ascii(p_text)) {
		gdextension_interface::string_name_new_with_latin1_chars(_native_ptr(), p_text, false);
	} else {
		gdextension_interface::string_name_new_with_utf8_chars(_native_ptr(), p_text);
	}
}

StringName::StringName(const wchar_t *p_text) :
		StringName(String(p_text)) {
}

StringName::StringName(const char16_t *p_text) :
		StringName(String(p_text)) {
}

StringName::StringName(const char32_t *p_text) :
		StringName(String(p_text)) {
}

bool StringName::operator==(const char *p_text) const {
	return String(*this) == p_text;
}

bool StringName::operator==(const wchar_t *p_text) const {
	return String(*this) == p_text;
}

bool StringName::operator==(const char16_t *p_text) const {
	return String(*this) == p_text;
}

bool StringName::operator==(const char32_t *p_text) const {
	return String(*this) == p_text;
}

String StringName::operator+(const char *p_text) const {
	return String(*this) + p_text;
}

String StringName::operator%(const Variant &p_values) const {
	return String(*this) % p_values;
}

char32_t StringName::operator[](int64_t p_index) const {
	const String text(*this);
	return text[p_index];
}

String operator+(const char *p_text, const StringName &p_name) {
	return String(p_text) + String(p_name);
}

NodePath::NodePath(const char *p_text) :
		NodePath(String(p_text)) {
}

bool NodePath::operator==(const String &p_text) const {
	return String(*this) == p_text;
}

bool NodePath::operator==(const char *p_text) const {
	return String(*this) == p_text;
}

} // namespace godot
