// Describes a property, an argument or a return value to the engine: name, type, and how the inspector edits it.

#ifndef GODOT_CPP_CORE_PROPERTY_INFO_HPP
#define GODOT_CPP_CORE_PROPERTY_INFO_HPP

#include <godot_cpp/classes/global_constants.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <gdextension_interface.h>

namespace godot {

struct PropertyInfo {
	Variant::Type type = Variant::NIL;
	StringName name;
	StringName class_name;
	uint32_t hint = PROPERTY_HINT_NONE;
	String hint_string;
	uint32_t usage = PROPERTY_USAGE_DEFAULT;

	PropertyInfo() {}

	PropertyInfo(Variant::Type p_type, const StringName &p_name, PropertyHint p_hint = PROPERTY_HINT_NONE, const String &p_hint_string = String(),
			uint32_t p_usage = PROPERTY_USAGE_DEFAULT, const StringName &p_class_name = StringName()) :
			type(p_type),
			name(p_name),
			// For resources the hint names the class.
			class_name(p_hint == PROPERTY_HINT_RESOURCE_TYPE ? StringName(p_hint_string) : p_class_name), hint(p_hint), hint_string(p_hint_string),
			usage(p_usage) {}

	PropertyInfo(GDExtensionVariantType p_type, const StringName &p_name, PropertyHint p_hint = PROPERTY_HINT_NONE, const String &p_hint_string = String(),
			uint32_t p_usage = PROPERTY_USAGE_DEFAULT, const StringName &p_class_name = StringName()) :
			PropertyInfo(static_cast<Variant::Type>(p_type), p_name, p_hint, p_hint_string, p_usage, p_class_name) {}

	// An object of this class.
	explicit PropertyInfo(const StringName &p_class_name) : type(Variant::OBJECT), class_name(p_class_name) {}

	explicit PropertyInfo(const GDExtensionPropertyInfo *p_info) :
			type(static_cast<Variant::Type>(p_info->type)), name(*static_cast<const StringName *>(p_info->name)),
			class_name(*static_cast<const StringName *>(p_info->class_name)), hint(p_info->hint),
			hint_string(*static_cast<const String *>(p_info->hint_string)), usage(p_info->usage) {}

	bool operator==(const PropertyInfo &p_other) const {
		return type == p_other.type && name == p_other.name && class_name == p_other.class_name && hint == p_other.hint && hint_string == p_other.hint_string &&
				usage == p_other.usage;
	}
	bool operator!=(const PropertyInfo &p_other) const { return !(*this == p_other); }
	bool operator<(const PropertyInfo &p_other) const { return name < p_other.name; }

	// Writes this over a description that the engine owns.
	void _update(GDExtensionPropertyInfo *r_info) const {
		r_info->type = static_cast<GDExtensionVariantType>(type);
		*static_cast<StringName *>(r_info->name) = name;
		*static_cast<StringName *>(r_info->class_name) = class_name;
		r_info->hint = hint;
		*static_cast<String *>(r_info->hint_string) = hint_string;
		r_info->usage = usage;
	}

	// Points into this: valid as long as this is.
	GDExtensionPropertyInfo _to_gdextension() const {
		return {
			static_cast<GDExtensionVariantType>(type),
			name._native_ptr(),
			class_name._native_ptr(),
			hint,
			hint_string._native_ptr(),
			usage,
		};
	}
};

} // namespace godot

#endif // GODOT_CPP_CORE_PROPERTY_INFO_HPP
