// PtrToArg<T>: how a value of type T is read from, and written to, the untyped pointers of a call through the C interface. Bound methods that the
// engine calls and virtual methods that the engine asks for go this way; calls into the engine have core/engine_ptrcall.hpp.

#ifndef GODOT_CPP_CORE_METHOD_PTRCALL_HPP
#define GODOT_CPP_CORE_METHOD_PTRCALL_HPP

#include <godot_cpp/core/builtin_type_traits.hpp>

#include <gdextension_interface.h>

#include <cstdint>
#include <type_traits>

namespace godot {

class Object;
class Wrapped;
template <class T>
class BitField;

namespace internal {

struct ClassTag;

template <class T>
const ClassTag *class_tag_of();

Object *get_object_instance_binding(GDExtensionObjectPtr p_engine_object);
GDExtensionObjectPtr get_owner(const Wrapped *p_object);
// As above, but null where the wrapper is of another class: what stands in for an instance in the editor has no C++ half of an extension class.
Object *get_binding_of_class(GDExtensionObjectPtr p_engine_object, const ClassTag *p_tag);

} // namespace internal

template <class T, class = void>
struct PtrToArg;

template <class T>
struct PtrToArg<T, std::enable_if_t<internal::is_number_v<T>>> {
	using EncodeT = std::conditional_t<std::is_same_v<T, bool>, GDExtensionBool, std::conditional_t<std::is_floating_point_v<T>, double, int64_t>>;
	static T convert(const void *p_argument) { return static_cast<T>(*static_cast<const EncodeT *>(p_argument)); }
	static void encode(T p_value, void *r_value) { *static_cast<EncodeT *>(r_value) = static_cast<EncodeT>(p_value); }
};

template <class T>
struct PtrToArg<T, std::enable_if_t<internal::BuiltinType<T>::is_builtin>> {
	using EncodeT = T;
	static const T &convert(const void *p_argument) { return *static_cast<const T *>(p_argument); }
	static void encode(const T &p_value, void *r_value) { *static_cast<T *>(r_value) = p_value; }
};

template <class T>
struct PtrToArg<BitField<T>> {
	using EncodeT = int64_t;
	static BitField<T> convert(const void *p_argument) { return BitField<T>(*static_cast<const int64_t *>(p_argument)); }
	static void encode(BitField<T> p_value, void *r_value) { *static_cast<int64_t *>(r_value) = p_value; }
};

// Objects travel as a pointer to the engine's pointer. Pointers to anything else are handed through untouched.
template <class T>
struct PtrToArg<T *> {
	static_assert(sizeof(T) > 0, "Include the header of the class that this signature names.");
	static constexpr bool is_object = std::is_base_of_v<Wrapped, T>;

	using EncodeT = std::conditional_t<is_object, GDExtensionObjectPtr, T *>;
	static T *convert(const void *p_argument) {
		if constexpr (is_object) {
			if (p_argument == nullptr) {
				return nullptr;
			}
			return static_cast<T *>(
					internal::get_binding_of_class(*static_cast<const GDExtensionObjectPtr *>(p_argument), internal::class_tag_of<std::remove_const_t<T>>()));
		} else {
			return *static_cast<T *const *>(p_argument);
		}
	}
	static void encode(T *p_value, void *r_value) {
		if constexpr (is_object) {
			*static_cast<GDExtensionObjectPtr *>(r_value) = internal::get_owner(p_value);
		} else {
			*static_cast<T **>(r_value) = p_value;
		}
	}
};

template <class T>
struct PtrToArg<const T &> : PtrToArg<T> {};

template <class T>
struct PtrToArg<T &> : PtrToArg<T> {};

} // namespace godot

#endif // GODOT_CPP_CORE_METHOD_PTRCALL_HPP
