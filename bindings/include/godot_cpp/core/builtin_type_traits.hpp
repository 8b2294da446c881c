// Which Variant type stands for a C++ type. What the registration of methods and the pointer calls derive from a signature starts here.

#ifndef GODOT_CPP_CORE_BUILTIN_TYPE_TRAITS_HPP
#define GODOT_CPP_CORE_BUILTIN_TYPE_TRAITS_HPP

#include <gdextension_interface.h>

#include <godot_cpp/variant/builtin_types.hpp>

#include <type_traits>

namespace godot {

class Variant;

namespace internal {

template <class T>
struct BuiltinType {
	static constexpr bool is_builtin = false;
};

#define GODOT_BUILTIN_TYPE(m_type, m_enumerator)                                                                                                               \
	template <>                                                                                                                                                \
	struct BuiltinType<m_type> {                                                                                                                               \
		static constexpr bool is_builtin = true;                                                                                                               \
		static constexpr GDExtensionVariantType value = GDEXTENSION_VARIANT_TYPE_##m_enumerator;                                                               \
	};

GODOT_BUILTIN_TYPE(Variant, NIL)
GODOT_BUILTIN_TYPE(String, STRING)
GODOT_BUILTIN_TYPE(Vector2, VECTOR2)
GODOT_BUILTIN_TYPE(Vector2i, VECTOR2I)
GODOT_BUILTIN_TYPE(Rect2, RECT2)
GODOT_BUILTIN_TYPE(Rect2i, RECT2I)
GODOT_BUILTIN_TYPE(Vector3, VECTOR3)
GODOT_BUILTIN_TYPE(Vector3i, VECTOR3I)
GODOT_BUILTIN_TYPE(Transform2D, TRANSFORM2D)
GODOT_BUILTIN_TYPE(Vector4, VECTOR4)
GODOT_BUILTIN_TYPE(Vector4i, VECTOR4I)
GODOT_BUILTIN_TYPE(Plane, PLANE)
GODOT_BUILTIN_TYPE(Quaternion, QUATERNION)
GODOT_BUILTIN_TYPE(AABB, AABB)
GODOT_BUILTIN_TYPE(Basis, BASIS)
GODOT_BUILTIN_TYPE(Transform3D, TRANSFORM3D)
GODOT_BUILTIN_TYPE(Projection, PROJECTION)
GODOT_BUILTIN_TYPE(Color, COLOR)
GODOT_BUILTIN_TYPE(StringName, STRING_NAME)
GODOT_BUILTIN_TYPE(NodePath, NODE_PATH)
GODOT_BUILTIN_TYPE(RID, RID)
GODOT_BUILTIN_TYPE(Callable, CALLABLE)
GODOT_BUILTIN_TYPE(Signal, SIGNAL)
GODOT_BUILTIN_TYPE(Dictionary, DICTIONARY)
GODOT_BUILTIN_TYPE(Array, ARRAY)
GODOT_BUILTIN_TYPE(PackedByteArray, PACKED_BYTE_ARRAY)
GODOT_BUILTIN_TYPE(PackedInt32Array, PACKED_INT32_ARRAY)
GODOT_BUILTIN_TYPE(PackedInt64Array, PACKED_INT64_ARRAY)
GODOT_BUILTIN_TYPE(PackedFloat32Array, PACKED_FLOAT32_ARRAY)
GODOT_BUILTIN_TYPE(PackedFloat64Array, PACKED_FLOAT64_ARRAY)
GODOT_BUILTIN_TYPE(PackedStringArray, PACKED_STRING_ARRAY)
GODOT_BUILTIN_TYPE(PackedVector2Array, PACKED_VECTOR2_ARRAY)
GODOT_BUILTIN_TYPE(PackedVector3Array, PACKED_VECTOR3_ARRAY)
GODOT_BUILTIN_TYPE(PackedColorArray, PACKED_COLOR_ARRAY)
GODOT_BUILTIN_TYPE(PackedVector4Array, PACKED_VECTOR4_ARRAY)

#undef GODOT_BUILTIN_TYPE

// Numbers and enumerations, which the C interface widens.
template <class T>
inline constexpr bool is_number_v = std::is_arithmetic_v<T> || std::is_enum_v<T>;

// A parameter's type as it is stored: String for const String &.
template <class T>
using Stored = std::remove_cv_t<std::remove_reference_t<T>>;

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_CORE_BUILTIN_TYPE_TRAITS_HPP
