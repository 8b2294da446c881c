#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/dictionary.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

namespace godot {

Array::Array(std::initializer_list<Variant> p_values) {
	resize(int64_t(p_values.size()));
	Variant *element = begin();
	if (!element) {
		return;
	}
	for (const Variant &value : p_values) {
		*element++ = value;
	}
}

Array Array::make_internal(const Variant **p_values, int p_count) {
	Array result;
	result.resize(p_count);
	Variant *elements = result.begin();
	for (int index = 0; elements && index < p_count; index++) {
		elements[index] = *p_values[index];
	}
	return result;
}

void Array::set_typed(uint32_t p_type, const StringName &p_class_name, const Variant &p_script) {
	gdextension_interface::array_set_typed(_native_ptr(), GDExtensionVariantType(p_type), p_class_name._native_ptr(), p_script._native_ptr());
}

const Variant &Array::operator[](int64_t p_index) const {
	if (void *element = gdextension_interface::array_operator_index_const(_native_ptr(), p_index)) {
		return *static_cast<const Variant *>(element);
	}
	internal::report_index_out_of_bounds(GDEXTENSION_VARIANT_TYPE_ARRAY, p_index, size());
	return internal::out_of_bounds_value<Variant>();
}

Variant &Array::operator[](int64_t p_index) {
	if (void *element = gdextension_interface::array_operator_index(_native_ptr(), p_index)) {
		return *static_cast<Variant *>(element);
	}
	internal::report_index_out_of_bounds(GDEXTENSION_VARIANT_TYPE_ARRAY, p_index, size());
	return internal::out_of_bounds_value<Variant>();
}

const Variant *Array::begin() const {
	return is_empty() ? nullptr : static_cast<const Variant *>(gdextension_interface::array_operator_index_const(_native_ptr(), 0));
}

const Variant *Array::end() const {
	const Variant *first = begin();
	return first ? first + size() : nullptr;
}

Variant *Array::begin() {
	return is_empty() ? nullptr : static_cast<Variant *>(gdextension_interface::array_operator_index(_native_ptr(), 0));
}

Variant *Array::end() {
	Variant *first = begin();
	return first ? first + size() : nullptr;
}

const Variant &Dictionary::operator[](const Variant &p_key) const {
	const void *value = gdextension_interface::dictionary_operator_index_const(_native_ptr(), p_key._native_ptr());
	return value ? *static_cast<const Variant *>(value) : internal::out_of_bounds_value<Variant>();
}

Variant &Dictionary::operator[](const Variant &p_key) {
	void *value = gdextension_interface::dictionary_operator_index(_native_ptr(), p_key._native_ptr());
	return value ? *static_cast<Variant *>(value) : internal::out_of_bounds_value<Variant>();
}

void Dictionary::set_typed(uint32_t p_key_type, const StringName &p_key_class_name, const Variant &p_key_script, uint32_t p_value_type,
		const StringName &p_value_class_name, const Variant &p_value_script) {
	gdextension_interface::dictionary_set_typed(_native_ptr(), GDExtensionVariantType(p_key_type), p_key_class_name._native_ptr(), p_key_script._native_ptr(),
			GDExtensionVariantType(p_value_type), p_value_class_name._native_ptr(), p_value_script._native_ptr());
}

} // namespace godot
