// What the binding of methods shares: turning Variants into typed arguments and back, calling a member function with either kind of argument, and the
// macros that make an enumeration known (VARIANT_ENUM_CAST, VARIANT_BITFIELD_CAST, put after the class at file scope).

#ifndef GODOT_CPP_CORE_BINDER_COMMON_HPP
#define GODOT_CPP_CORE_BINDER_COMMON_HPP

#include <godot_cpp/core/method_ptrcall.hpp>
#include <godot_cpp/core/type_info.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <type_traits>
#include <utility>

namespace godot {

#define VARIANT_ENUM_CAST(m_enum)                                                                                                                              \
	namespace godot {                                                                                                                                          \
	MAKE_ENUM_TYPE_INFO(m_enum)                                                                                                                                \
	}                                                                                                                                                          \
	static_assert(true)

#define VARIANT_BITFIELD_CAST(m_enum)                                                                                                                          \
	namespace godot {                                                                                                                                          \
	MAKE_BITFIELD_TYPE_INFO(m_enum)                                                                                                                            \
	}                                                                                                                                                          \
	static_assert(true)

namespace internal {

// Null also for an object that has been freed.
Object *get_object_of_class(const Variant &p_value, const ClassTag *p_tag);

} // namespace internal

template <class T, class = void>
struct VariantCaster {
	static T cast(const Variant &p_value) { return T(p_value); }
};

template <class T>
struct VariantCaster<T, std::enable_if_t<internal::is_number_v<T>>> {
	static T cast(const Variant &p_value) {
		if constexpr (std::is_same_v<T, bool>) {
			return p_value.operator bool();
		} else if constexpr (std::is_floating_point_v<T>) {
			return static_cast<T>(p_value.operator double());
		} else {
			return static_cast<T>(p_value.operator int64_t());
		}
	}
};

template <class T>
struct VariantCaster<T, std::enable_if_t<internal::BuiltinType<T>::is_builtin && !std::is_same_v<T, Variant>>> {
	static T cast(const Variant &p_value) { return p_value.operator T(); }
};

template <>
struct VariantCaster<Variant> {
	static const Variant &cast(const Variant &p_value) { return p_value; }
};

template <class T>
struct VariantCaster<BitField<T>> {
	static BitField<T> cast(const Variant &p_value) { return BitField<T>(p_value.operator int64_t()); }
};

template <class T>
struct VariantCaster<T *> {
	static T *cast(const Variant &p_value) {
		return static_cast<T *>(internal::get_object_of_class(p_value, internal::class_tag_of<std::remove_const_t<T>>()));
	}
};

template <class T>
struct VariantCaster<const T &> : VariantCaster<T> {};

template <class T>
struct VariantCaster<T &> : VariantCaster<T> {};

namespace internal {

template <class T>
Variant make_variant(const T &p_value) {
	if constexpr (std::is_enum_v<T>) {
		return Variant(static_cast<int64_t>(p_value));
	} else {
		return Variant(p_value);
	}
}

template <class T>
Variant make_variant(const BitField<T> &p_value) {
	return Variant(static_cast<int64_t>(p_value));
}

template <class R, class Instance, class Method, class... P, size_t... I>
void call_with_pointers(Instance *p_instance, Method p_method, const GDExtensionConstTypePtr *p_arguments, void *r_return, std::index_sequence<I...>) {
	(void)p_arguments;
	if constexpr (std::is_void_v<R>) {
		(void)r_return;
		(p_instance->*p_method)(PtrToArg<P>::convert(p_arguments[I])...);
	} else {
		PtrToArg<R>::encode((p_instance->*p_method)(PtrToArg<P>::convert(p_arguments[I])...), r_return);
	}
}

} // namespace internal

template <class T, class C, class R, class... P>
void call_with_ptr_args(T *p_instance, R (C::*p_method)(P...), const GDExtensionConstTypePtr *p_arguments, void *r_return) {
	internal::call_with_pointers<R, T, R (C::*)(P...), P...>(p_instance, p_method, p_arguments, r_return, std::index_sequence_for<P...>());
}

template <class T, class C, class R, class... P>
void call_with_ptr_args(T *p_instance, R (C::*p_method)(P...) const, const GDExtensionConstTypePtr *p_arguments, void *r_return) {
	internal::call_with_pointers<R, T, R (C::*)(P...) const, P...>(p_instance, p_method, p_arguments, r_return, std::index_sequence_for<P...>());
}

} // namespace godot

#endif // GODOT_CPP_CORE_BINDER_COMMON_HPP
