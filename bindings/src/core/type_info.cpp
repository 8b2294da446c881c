#include <godot_cpp/core/type_info.hpp>

#include <godot_cpp/classes/wrapped.hpp>

#include <string>

namespace godot {
namespace internal {

PropertyInfo make_type_info(GDExtensionVariantType p_type) {
	return PropertyInfo(static_cast<Variant::Type>(p_type), StringName());
}

PropertyInfo make_variant_info() {
	return PropertyInfo(Variant::NIL, StringName(), PROPERTY_HINT_NONE, String(), PROPERTY_USAGE_DEFAULT | PROPERTY_USAGE_NIL_IS_VARIANT);
}

PropertyInfo make_object_info(const ClassTag *p_tag) {
	return PropertyInfo(p_tag->get_name());
}

PropertyInfo make_resource_info(const ClassTag *p_tag) {
	return PropertyInfo(Variant::OBJECT, StringName(), PROPERTY_HINT_RESOURCE_TYPE, String(p_tag->get_name()));
}

PropertyInfo make_enum_info(const char *p_qualified_name, uint32_t p_usage) {
	// The enumeration and the class around it; namespaces before them are ours alone.
	std::string name(p_qualified_name);
	size_t last = name.rfind("::");
	if (last != std::string::npos) {
		const size_t before = last == 0 ? std::string::npos : name.rfind("::", last - 1);
		const std::string scope = before == std::string::npos ? name.substr(0, last) : name.substr(before + 2, last - before - 2);
		const std::string enumeration = name.substr(last + 2);
		name = scope.empty() || scope == "godot" ? enumeration : scope + "." + enumeration;
	}
	return PropertyInfo(Variant::INT, StringName(), PROPERTY_HINT_NONE, String(), p_usage, StringName(name.c_str()));
}

StringName get_enum_name(const PropertyInfo &p_info) {
	if ((p_info.usage & (PROPERTY_USAGE_CLASS_IS_ENUM | PROPERTY_USAGE_CLASS_IS_BITFIELD)) == 0) {
		return StringName();
	}
	const String name = p_info.class_name;
	return StringName(name.substr(name.rfind(".") + 1));
}

} // namespace internal
} // namespace godot
