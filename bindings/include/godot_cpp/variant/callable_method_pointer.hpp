// callable_mp and callable_mp_static: a Callable of a C++ method that no class has to bind. It knows its target by id, so that calling one whose
// object has been freed is an engine error like any other call on a freed object.

#ifndef GODOT_CPP_VARIANT_CALLABLE_METHOD_POINTER_HPP
#define GODOT_CPP_VARIANT_CALLABLE_METHOD_POINTER_HPP

#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/core/type_info.hpp>
#include <godot_cpp/variant/callable.hpp>
#include <godot_cpp/variant/callable_custom.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <cstring>
#include <type_traits>
#include <utility>

namespace godot {

namespace internal {

bool check_argument_count(int p_count, int p_expected, GDExtensionCallError &r_error);
bool check_argument_type(const Variant &p_value, GDExtensionVariantType p_expected, int p_index, GDExtensionCallError &r_error);

template <typename R, typename... P>
struct VariantInvoker {
	template <typename Function>
	static void call(const Function &p_function, const Variant **p_args, int p_count, Variant &r_return, GDExtensionCallError &r_error) {
		call_indexed(p_function, p_args, p_count, r_return, r_error, std::index_sequence_for<P...>());
	}

private:
	template <typename Function, size_t... INDEX>
	static void call_indexed(const Function &p_function, [[maybe_unused]] const Variant **p_args, int p_count, [[maybe_unused]] Variant &r_return,
			GDExtensionCallError &r_error, std::index_sequence<INDEX...>) {
		if (!check_argument_count(p_count, static_cast<int>(sizeof...(P)), r_error)) {
			return;
		}
		if (!(check_argument_type(*p_args[INDEX], GetTypeInfo<P>::VARIANT_TYPE, static_cast<int>(INDEX), r_error) && ...)) {
			return;
		}
		if constexpr (std::is_void_v<R>) {
			p_function(VariantCaster<P>::cast(*p_args[INDEX])...);
		} else {
			r_return = p_function(VariantCaster<P>::cast(*p_args[INDEX])...);
		}
	}
};

// Two of these are the same callable when they call the same method of the same object.
class MethodPointerCallable : public CallableCustom {
	ObjectID target;
	const char *text;
	int argument_count;

protected:
	MethodPointerCallable(ObjectID p_target, const char *p_text, int p_argument_count) : target(p_target), text(p_text), argument_count(p_argument_count) {}

	// The method pointer's own bytes; its first word alone tells most methods apart, and has no padding on any platform.
	virtual const void *method_bytes() const = 0;
	virtual size_t method_size() const = 0;

	bool has_live_target() const;

public:
	uint32_t hash() const override;
	String get_as_text() const override;
	bool is_valid() const override { return has_live_target(); }
	ObjectID get_object() const override { return target; }
	int get_argument_count(bool &r_is_valid) const override;

	static bool comes_before(const CallableCustom *p_a, const CallableCustom *p_b);
};

template <typename T, typename Method, typename R, typename... P>
class ObjectMethodCallable final : public MethodPointerCallable {
	T *instance;
	Method method;

	static bool is_same(const CallableCustom *p_a, const CallableCustom *p_b) {
		const ObjectMethodCallable *a = static_cast<const ObjectMethodCallable *>(p_a);
		const ObjectMethodCallable *b = static_cast<const ObjectMethodCallable *>(p_b);
		return a->get_object() == b->get_object() && a->method == b->method;
	}

protected:
	const void *method_bytes() const override { return &method; }
	size_t method_size() const override { return sizeof(method); }

public:
	ObjectMethodCallable(T *p_instance, Method p_method, const char *p_text) :
			MethodPointerCallable(p_instance ? ObjectID(p_instance->get_instance_id()) : ObjectID(), p_text, static_cast<int>(sizeof...(P))),
			instance(p_instance), method(p_method) {}

	bool is_valid() const override { return instance != nullptr && has_live_target(); }
	CompareEqualFunc get_compare_equal_func() const override { return &ObjectMethodCallable::is_same; }
	CompareLessFunc get_compare_less_func() const override { return &MethodPointerCallable::comes_before; }

	void call(const Variant **p_arguments, int p_argcount, Variant &r_return_value, GDExtensionCallError &r_call_error) const override {
		if (!is_valid()) {
			r_call_error.error = GDEXTENSION_CALL_ERROR_INSTANCE_IS_NULL;
			return;
		}
		VariantInvoker<R, P...>::call([this](auto &&...p_values) -> R { return (instance->*method)(std::forward<decltype(p_values)>(p_values)...); },
				p_arguments, p_argcount, r_return_value, r_call_error);
	}
};

template <typename R, typename... P>
class FunctionCallable final : public MethodPointerCallable {
	using Function = R (*)(P...);
	Function function;

	static bool is_same(const CallableCustom *p_a, const CallableCustom *p_b) {
		return static_cast<const FunctionCallable *>(p_a)->function == static_cast<const FunctionCallable *>(p_b)->function;
	}

protected:
	const void *method_bytes() const override { return &function; }
	size_t method_size() const override { return sizeof(function); }

public:
	FunctionCallable(Function p_function, const char *p_text) :
			MethodPointerCallable(ObjectID(), p_text, static_cast<int>(sizeof...(P))), function(p_function) {}

	CompareEqualFunc get_compare_equal_func() const override { return &FunctionCallable::is_same; }
	CompareLessFunc get_compare_less_func() const override { return &MethodPointerCallable::comes_before; }

	void call(const Variant **p_arguments, int p_argcount, Variant &r_return_value, GDExtensionCallError &r_call_error) const override {
		VariantInvoker<R, P...>::call(function, p_arguments, p_argcount, r_return_value, r_call_error);
	}
};

template <typename T, typename R, typename... P>
Callable make_method_callable(T *p_instance, R (T::*p_method)(P...), const char *p_text) {
	using Made = ObjectMethodCallable<T, R (T::*)(P...), R, P...>;
	return Callable(memnew(Made(p_instance, p_method, p_text)));
}

template <typename T, typename R, typename... P>
Callable make_method_callable(T *p_instance, R (T::*p_method)(P...) const, const char *p_text) {
	using Made = ObjectMethodCallable<T, R (T::*)(P...) const, R, P...>;
	return Callable(memnew(Made(p_instance, p_method, p_text)));
}

template <typename R, typename... P>
Callable make_function_callable(R (*p_function)(P...), const char *p_text) {
	using Made = FunctionCallable<R, P...>;
	return Callable(memnew(Made(p_function, p_text)));
}

} // namespace internal

#define callable_mp(m_instance, m_method) ::godot::internal::make_method_callable(m_instance, m_method, #m_method)
#define callable_mp_static(m_function) ::godot::internal::make_function_callable(m_function, #m_function)

} // namespace godot

#endif // GODOT_CPP_VARIANT_CALLABLE_METHOD_POINTER_HPP
