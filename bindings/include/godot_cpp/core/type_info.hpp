// GetTypeInfo<T>: how a C++ type of a bound method's signature is described to the engine, and BitField, the type of engine flags.
// Specialisations for enumerations come from VARIANT_ENUM_CAST, for Ref from classes/ref.hpp, for typed containers from their own headers.

#ifndef GODOT_CPP_CORE_TYPE_INFO_HPP
#define GODOT_CPP_CORE_TYPE_INFO_HPP

#include <godot_cpp/core/builtin_type_traits.hpp>
#include <godot_cpp/core/property_info.hpp>

#include <type_traits>

namespace godot {

template <class T>
class BitField {
	uint64_t value = 0;

public:
	constexpr BitField() = default;
	constexpr BitField(T p_value) : value(static_cast<uint64_t>(p_value)) {}
	constexpr BitField(int64_t p_value) : value(static_cast<uint64_t>(p_value)) {}
	constexpr BitField(uint64_t p_value) : value(p_value) {}

	constexpr BitField &set_flag(T p_flag) {
		value |= static_cast<uint64_t>(p_flag);
		return *this;
	}
	constexpr bool has_flag(T p_flag) const { return (value & static_cast<uint64_t>(p_flag)) != 0; }
	constexpr bool is_empty() const { return value == 0; }
	constexpr void clear_flag(T p_flag) { value &= ~static_cast<uint64_t>(p_flag); }
	constexpr void clear() { value = 0; }
	constexpr BitField get_combined(BitField p_other) const { return BitField(value | p_other.value); }
	constexpr BitField get_shared(BitField p_other) const { return BitField(value & p_other.value); }
	constexpr BitField get_different(BitField p_other) const { return BitField(value ^ p_other.value); }

	constexpr operator int64_t() const { return static_cast<int64_t>(value); }
	constexpr BitField operator^(BitField p_other) const { return BitField(value ^ p_other.value); }
};

inline PropertyInfo make_property_info(Variant::Type p_type, const StringName &p_name, uint32_t p_hint = PROPERTY_HINT_NONE,
		const String &p_hint_string = String(), uint32_t p_usage = PROPERTY_USAGE_DEFAULT, const StringName &p_class_name = StringName()) {
	return PropertyInfo(p_type, p_name, static_cast<PropertyHint>(p_hint), p_hint_string, p_usage, p_class_name);
}

namespace internal {

struct ClassTag;

template <class T>
const ClassTag *class_tag_of();

PropertyInfo make_type_info(GDExtensionVariantType p_type);
PropertyInfo make_variant_info();
PropertyInfo make_object_info(const ClassTag *p_tag);
PropertyInfo make_resource_info(const ClassTag *p_tag);
// Takes the enumeration's C++ name: "godot::Node::ProcessMode" is known to the engine as "Node.ProcessMode".
PropertyInfo make_enum_info(const char *p_qualified_name, uint32_t p_usage);
// The last part of an enumeration's name in a description made by the above; empty for what is not one.
StringName get_enum_name(const PropertyInfo &p_info);

template <class T>
constexpr GDExtensionClassMethodArgumentMetadata number_metadata() {
	if constexpr (std::is_same_v<T, float>) {
		return GDEXTENSION_METHOD_ARGUMENT_METADATA_REAL_IS_FLOAT;
	} else if constexpr (std::is_floating_point_v<T>) {
		return GDEXTENSION_METHOD_ARGUMENT_METADATA_REAL_IS_DOUBLE;
	} else if constexpr (std::is_same_v<T, bool>) {
		return GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	} else if constexpr (std::is_same_v<T, char16_t>) {
		return GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_CHAR16;
	} else if constexpr (std::is_same_v<T, char32_t>) {
		return GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_CHAR32;
	} else if constexpr (sizeof(T) == 1) {
		return std::is_signed_v<T> ? GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_INT8 : GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_UINT8;
	} else if constexpr (sizeof(T) == 2) {
		return std::is_signed_v<T> ? GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_INT16 : GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_UINT16;
	} else if constexpr (sizeof(T) == 4) {
		return std::is_signed_v<T> ? GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_INT32 : GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_UINT32;
	} else {
		return std::is_signed_v<T> ? GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_INT64 : GDEXTENSION_METHOD_ARGUMENT_METADATA_INT_IS_UINT64;
	}
}

template <class T>
constexpr GDExtensionVariantType number_type() {
	if constexpr (std::is_same_v<T, bool>) {
		return GDEXTENSION_VARIANT_TYPE_BOOL;
	} else {
		return std::is_floating_point_v<T> ? GDEXTENSION_VARIANT_TYPE_FLOAT : GDEXTENSION_VARIANT_TYPE_INT;
	}
}

} // namespace internal

template <class T, class = void>
struct GetTypeInfo;

template <class T>
struct GetTypeInfo<T, std::enable_if_t<std::is_arithmetic_v<T>>> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = internal::number_type<T>();
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = internal::number_metadata<T>();
	static PropertyInfo get_class_info() { return internal::make_type_info(VARIANT_TYPE); }
};

template <class T>
struct GetTypeInfo<T, std::enable_if_t<internal::BuiltinType<T>::is_builtin>> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = internal::BuiltinType<T>::value;
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	static PropertyInfo get_class_info() {
		if constexpr (std::is_same_v<T, Variant>) {
			return internal::make_variant_info();
		} else {
			return internal::make_type_info(VARIANT_TYPE);
		}
	}
};

template <class T>
struct GetTypeInfo<T *> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = GDEXTENSION_VARIANT_TYPE_OBJECT;
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	static PropertyInfo get_class_info() { return internal::make_object_info(internal::class_tag_of<std::remove_const_t<T>>()); }
};

template <class T>
struct GetTypeInfo<const T &> : GetTypeInfo<T> {};

template <class T>
struct GetTypeInfo<T &> : GetTypeInfo<T> {};

// An enumeration whose name the engine is told, so that scripts and the documentation show it.
#define MAKE_ENUM_INFO(m_type, m_name, m_usage)                                                                                                                \
	template <>                                                                                                                                                \
	struct GetTypeInfo<m_type> {                                                                                                                               \
		static constexpr GDExtensionVariantType VARIANT_TYPE = GDEXTENSION_VARIANT_TYPE_INT;                                                                   \
		static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;                                          \
		static PropertyInfo get_class_info() { return internal::make_enum_info(m_name, PROPERTY_USAGE_DEFAULT | m_usage); }                                    \
	};

#define MAKE_ENUM_TYPE_INFO(m_enum) MAKE_ENUM_INFO(m_enum, #m_enum, PROPERTY_USAGE_CLASS_IS_ENUM)
#define MAKE_BITFIELD_TYPE_INFO(m_enum)                                                                                                                        \
	MAKE_ENUM_INFO(m_enum, #m_enum, PROPERTY_USAGE_CLASS_IS_BITFIELD)                                                                                          \
	MAKE_ENUM_INFO(BitField<m_enum>, #m_enum, PROPERTY_USAGE_CLASS_IS_BITFIELD)

} // namespace godot

#endif // GODOT_CPP_CORE_TYPE_INFO_HPP
