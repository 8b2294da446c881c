#include <godot_cpp/variant/packed_array_access.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>

namespace godot {
namespace internal {

const void *packed_array_element(GDExtensionVariantType p_type, const void *p_array, int64_t p_index) {
	switch (p_type) {
		case GDEXTENSION_VARIANT_TYPE_PACKED_BYTE_ARRAY:
			return gdextension_interface::packed_byte_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_INT32_ARRAY:
			return gdextension_interface::packed_int32_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_INT64_ARRAY:
			return gdextension_interface::packed_int64_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_FLOAT32_ARRAY:
			return gdextension_interface::packed_float32_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_FLOAT64_ARRAY:
			return gdextension_interface::packed_float64_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_STRING_ARRAY:
			return gdextension_interface::packed_string_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR2_ARRAY:
			return gdextension_interface::packed_vector2_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR3_ARRAY:
			return gdextension_interface::packed_vector3_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_COLOR_ARRAY:
			return gdextension_interface::packed_color_array_operator_index_const(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR4_ARRAY:
			return gdextension_interface::packed_vector4_array_operator_index_const(p_array, p_index);
		default:
			return nullptr;
	}
}

void *packed_array_element_writable(GDExtensionVariantType p_type, void *p_array, int64_t p_index) {
	switch (p_type) {
		case GDEXTENSION_VARIANT_TYPE_PACKED_BYTE_ARRAY:
			return gdextension_interface::packed_byte_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_INT32_ARRAY:
			return gdextension_interface::packed_int32_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_INT64_ARRAY:
			return gdextension_interface::packed_int64_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_FLOAT32_ARRAY:
			return gdextension_interface::packed_float32_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_FLOAT64_ARRAY:
			return gdextension_interface::packed_float64_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_STRING_ARRAY:
			return gdextension_interface::packed_string_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR2_ARRAY:
			return gdextension_interface::packed_vector2_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR3_ARRAY:
			return gdextension_interface::packed_vector3_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_COLOR_ARRAY:
			return gdextension_interface::packed_color_array_operator_index(p_array, p_index);
		case GDEXTENSION_VARIANT_TYPE_PACKED_VECTOR4_ARRAY:
			return gdextension_interface::packed_vector4_array_operator_index(p_array, p_index);
		default:
			return nullptr;
	}
}

} // namespace internal
} // namespace godot
