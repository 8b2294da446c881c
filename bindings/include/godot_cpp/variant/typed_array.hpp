// An Array that the engine keeps to one element type. Bound methods and properties that name it show scripts and the inspector that type; an
// array of another type is converted on the way in where the engine can, and refused with its error where it cannot.

#ifndef GODOT_CPP_VARIANT_TYPED_ARRAY_HPP
#define GODOT_CPP_VARIANT_TYPED_ARRAY_HPP

#include <godot_cpp/core/method_ptrcall.hpp>
#include <godot_cpp/core/property_info.hpp>
#include <godot_cpp/core/type_info.hpp>
#include <godot_cpp/variant/array.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <initializer_list>
#include <type_traits>

namespace godot {

class Object;

namespace internal {

// What a typed container is told of its elements. T is a class of objects, a built-in type, or Variant for no restriction.
template <typename T>
struct ElementType {
	static constexpr bool is_object() { return std::is_base_of_v<Object, T>; }

	static constexpr Variant::Type type() {
		if constexpr (std::is_same_v<T, Variant>) {
			return Variant::NIL;
		} else if constexpr (is_object()) {
			return Variant::OBJECT;
		} else {
			return static_cast<Variant::Type>(GetTypeInfo<T>::VARIANT_TYPE);
		}
	}

	static StringName class_name() {
		if constexpr (is_object()) {
			return T::get_class_static();
		} else {
			return StringName();
		}
	}

	// As hint strings of properties spell it.
	static String hint() {
		if constexpr (std::is_same_v<T, Variant>) {
			return String("Variant");
		} else if constexpr (is_object()) {
			return String(T::get_class_static());
		} else {
			return Variant::get_type_name(type());
		}
	}
};

} // namespace internal

template <typename T>
class TypedArray : public Array {
	using Element = internal::ElementType<T>;

	void set_element_type() {
		if constexpr (!std::is_same_v<T, Variant>) {
			set_typed(Element::type(), Element::class_name(), Variant());
		}
	}

public:
	TypedArray() { set_element_type(); }
	TypedArray(const TypedArray &) = default;
	TypedArray(TypedArray &&) = default;
	TypedArray &operator=(const TypedArray &) = default;
	TypedArray &operator=(TypedArray &&) = default;

	TypedArray(const Array &p_array) : TypedArray() {
		if (is_same_typed(p_array)) {
			Array::operator=(p_array);
		} else {
			assign(p_array);
		}
	}

	TypedArray(const Variant &p_value) : TypedArray(p_value.operator Array()) {}

	TypedArray(std::initializer_list<Variant> p_elements) : TypedArray() {
		for (const Variant &element : p_elements) {
			append(element);
		}
	}

	TypedArray &operator=(const Array &p_array) {
		*this = TypedArray(p_array);
		return *this;
	}
};

template <typename T>
struct PtrToArg<TypedArray<T>> {
	typedef Array EncodeT;
	static TypedArray<T> convert(const void *p_ptr) { return TypedArray<T>(*static_cast<const Array *>(p_ptr)); }
	static void encode(const TypedArray<T> &p_value, void *p_ptr) { *static_cast<Array *>(p_ptr) = p_value; }
};

template <typename T>
struct GetTypeInfo<TypedArray<T>> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = GDEXTENSION_VARIANT_TYPE_ARRAY;
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	static PropertyInfo get_class_info() { return PropertyInfo(Variant::ARRAY, StringName(), PROPERTY_HINT_ARRAY_TYPE, internal::ElementType<T>::hint()); }
};

} // namespace godot

#endif // GODOT_CPP_VARIANT_TYPED_ARRAY_HPP
