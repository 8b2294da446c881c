#ifndef GODOT_CPP_CORE_BUILTIN_PTRCALL_HPP
#define GODOT_CPP_CORE_BUILTIN_PTRCALL_HPP

// How builtin values (String, Array, Callable, ...) reach the engine: finding their constructors, operators, methods and
// the utility functions, and calling them with plain pointers. The generated wrappers call this, each keeping what it
// found in a static local of its own, so that a lookup happens once. What the engine does not have is reported by name
// when it is first asked for; calls to it then give a default value.

#include <gdextension_interface.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace godot {

class Variant;

namespace internal {

GDExtensionPtrConstructor find_builtin_constructor(GDExtensionVariantType p_type, int32_t p_index);
GDExtensionPtrBuiltInMethod find_builtin_method(GDExtensionVariantType p_type, const char *p_name, int64_t p_hash);
GDExtensionPtrOperatorEvaluator find_builtin_operator(GDExtensionVariantOperator p_operator, GDExtensionVariantType p_left, GDExtensionVariantType p_right);
GDExtensionPtrUtilityFunction find_utility_function(const char *p_name, int64_t p_hash);

// As scripts compare: a String and a StringName may be equal, types that cannot be compared are not.
bool equals_variant(const Variant &p_value, const Variant &p_other);

template <size_t N>
void construct_builtin(GDExtensionPtrConstructor p_constructor, void *r_base, const GDExtensionConstTypePtr (&p_arguments)[N]) {
	if (p_constructor) {
		p_constructor(r_base, p_arguments);
	}
}

template <typename R>
R call_builtin(GDExtensionPtrBuiltInMethod p_method, const void *p_base, const GDExtensionConstTypePtr *p_arguments, int32_t p_count) {
	void *base = const_cast<void *>(p_base);
	if constexpr (std::is_void_v<R>) {
		if (p_method) {
			p_method(base, p_arguments, nullptr, p_count);
		}
	} else {
		// The engine assigns to the result, so it has to be a valid value already.
		R result{};
		if (p_method) {
			p_method(base, p_arguments, &result, p_count);
		}
		return result;
	}
}

template <typename R, size_t N>
R call_builtin(GDExtensionPtrBuiltInMethod p_method, const void *p_base, const GDExtensionConstTypePtr (&p_arguments)[N]) {
	return call_builtin<R>(p_method, p_base, p_arguments, int32_t(N));
}

template <typename R>
R call_builtin(GDExtensionPtrBuiltInMethod p_method, const void *p_base) {
	return call_builtin<R>(p_method, p_base, nullptr, 0);
}

template <typename R>
R call_utility(GDExtensionPtrUtilityFunction p_function, const GDExtensionConstTypePtr *p_arguments, int32_t p_count) {
	if constexpr (std::is_void_v<R>) {
		if (p_function) {
			p_function(nullptr, p_arguments, p_count);
		}
	} else {
		R result{};
		if (p_function) {
			p_function(&result, p_arguments, p_count);
		}
		return result;
	}
}

template <typename R, size_t N>
R call_utility(GDExtensionPtrUtilityFunction p_function, const GDExtensionConstTypePtr (&p_arguments)[N]) {
	return call_utility<R>(p_function, p_arguments, int32_t(N));
}

template <typename R>
R call_utility(GDExtensionPtrUtilityFunction p_function) {
	return call_utility<R>(p_function, nullptr, 0);
}

template <typename R>
R evaluate_builtin(GDExtensionPtrOperatorEvaluator p_evaluator, const void *p_left, const void *p_right) {
	R result{};
	if (p_evaluator) {
		p_evaluator(p_left, p_right, &result);
	}
	return result;
}

} // namespace internal
} // namespace godot

#endif // GODOT_CPP_CORE_BUILTIN_PTRCALL_HPP
