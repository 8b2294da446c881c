#ifndef GODOT_CPP_VARIANT_PACKED_ARRAY_ACCESS_HPP
#define GODOT_CPP_VARIANT_PACKED_ARRAY_ACCESS_HPP

// Direct access to the elements of the packed arrays, which all derive from this: pointers, operator[], iteration,
// filling from a list. Writing through a shared array first makes it the caller's own.

#include <godot_cpp/variant/opaque_value.hpp>

#include <initializer_list>

namespace godot {
namespace internal {

// Null for an index outside.
const void *packed_array_element(GDExtensionVariantType p_type, const void *p_array, int64_t p_index);
void *packed_array_element_writable(GDExtensionVariantType p_type, void *p_array, int64_t p_index);

template <typename A, typename T, GDExtensionVariantType TYPE>
class PackedArrayAccess : public OpaqueValue<TYPE, 16> {
	const A &array() const { return static_cast<const A &>(*this); }
	A &array() { return static_cast<A &>(*this); }

protected:
	using OpaqueValue<TYPE, 16>::OpaqueValue;
	PackedArrayAccess() = default;

	void fill_from(std::initializer_list<T> p_values) {
		array().resize(int64_t(p_values.size()));
		if (T *element = ptrw()) {
			for (const T &value : p_values) {
				*element++ = value;
			}
		}
	}

public:
	const T *ptr() const { return array().is_empty() ? nullptr : static_cast<const T *>(packed_array_element(TYPE, this->_native_ptr(), 0)); }

	T *ptrw() { return array().is_empty() ? nullptr : static_cast<T *>(packed_array_element_writable(TYPE, this->_native_ptr(), 0)); }

	const T &operator[](int64_t p_index) const {
		const T *element = static_cast<const T *>(packed_array_element(TYPE, this->_native_ptr(), p_index));
		if (element) {
			return *element;
		}
		report_index_out_of_bounds(TYPE, p_index, array().size());
		return out_of_bounds_value<T>();
	}

	T &operator[](int64_t p_index) {
		T *element = static_cast<T *>(packed_array_element_writable(TYPE, this->_native_ptr(), p_index));
		if (element) {
			return *element;
		}
		report_index_out_of_bounds(TYPE, p_index, array().size());
		return out_of_bounds_value<T>();
	}

	using Iterator = T *;
	using ConstIterator = const T *;

	const T *begin() const { return ptr(); }
	const T *end() const {
		const T *first = ptr();
		return first ? first + array().size() : nullptr;
	}
	T *begin() { return ptrw(); }
	T *end() {
		T *first = ptrw();
		return first ? first + array().size() : nullptr;
	}
};

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_VARIANT_PACKED_ARRAY_ACCESS_HPP
