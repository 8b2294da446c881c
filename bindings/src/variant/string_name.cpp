#include <godot_cpp/variant/string_name.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/node_path.hpp>
#include <godot_cpp/variant/string.hpp>

namespace godot {

// A static name would let the engine keep the caller's buffer, but this library can be closed, and reloaded, before the
// engine is done with its names: the text is always copied.
StringName::StringName(const char *p_text, bool) : OpaqueValue(internal::Unconstructed()) {
	if (p_text && p_text[0]) {
		gdextension_interface::string_name_new_with_latin1_chars(_native_ptr(), p_text, false);
	}
}

StringName::StringName(const wchar_t *p_text) : StringName(String(p_text)) {}

StringName::StringName(const char16_t *p_text) : StringName(String(p_text)) {}

StringName::StringName(const char32_t *p_text) : StringName(String(p_text)) {}

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

String StringName::operator%(const Variant &p_values) const {
	return String(*this) % p_values;
}

char32_t StringName::operator[](int64_t p_index) const {
	const String text(*this);
	return text[p_index];
}

NodePath::NodePath(const char *p_text) : NodePath(String(p_text)) {}

bool NodePath::operator==(const String &p_text) const {
	return String(*this) == p_text;
}

bool NodePath::operator==(const char *p_text) const {
	return String(*this) == p_text;
}

} // namespace godot
