#ifndef GODOT_CPP_CORE_ENGINE_PTRCALL_HPP
#define GODOT_CPP_CORE_ENGINE_PTRCALL_HPP

// How a wrapper method reaches the engine: a typed pointer call through a method handle that is looked up on first use.
// The generated class sources are its only callers; it also keeps the engine's singletons for them.

#include <godot_cpp/classes/ref.hpp>
#include <godot_cpp/classes/wrapped.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <atomic>
#include <type_traits>

namespace godot {

class Object;
template <class T>
class BitField;

namespace internal {

// Constant-initialized, so that a function-local static of it costs neither a guard nor an exit handler.
class EngineMethod {
	const char *class_name;
	const char *method_name;
	GDExtensionInt hash;
	std::atomic<GDExtensionMethodBindPtr> bind{ nullptr };
	std::atomic<bool> missing{ false };

	GDExtensionMethodBindPtr look_up();

public:
	constexpr EngineMethod(const char *p_class, const char *p_method, GDExtensionInt p_hash) : class_name(p_class), method_name(p_method), hash(p_hash) {}

	// Null where the engine has no such method; that was reported by the time it returns.
	GDExtensionMethodBindPtr get() {
		GDExtensionMethodBindPtr known = bind.load(std::memory_order_acquire);
		return known != nullptr ? known : look_up();
	}
};

// The wrapper of a singleton, remembered until the wrappers are given back as the extension closes.
class EngineSingleton {
	const char *name;
	std::atomic<Object *> object{ nullptr };
	EngineSingleton *next = nullptr;

	Object *look_up();

public:
	constexpr explicit EngineSingleton(const char *p_name) : name(p_name) {}

	Object *get() {
		Object *known = object.load(std::memory_order_acquire);
		return known != nullptr ? known : look_up();
	}

	static void forget_all();
};

// Arguments in the width that pointer calls expect. Opaque values and structs go by address, uncopied.
template <class T, class = void>
struct PtrcallArgument {
	const T &value;
	explicit PtrcallArgument(const T &p_value) : value(p_value) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T>
struct PtrcallArgument<T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>> {
	std::conditional_t<std::is_same_v<T, bool>, GDExtensionBool, int64_t> value;
	explicit PtrcallArgument(T p_value) : value(static_cast<decltype(value)>(p_value)) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T>
struct PtrcallArgument<T, std::enable_if_t<std::is_floating_point_v<T>>> {
	double value;
	explicit PtrcallArgument(T p_value) : value(p_value) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T>
struct PtrcallArgument<BitField<T>, void> {
	int64_t value;
	explicit PtrcallArgument(BitField<T> p_value) : value(static_cast<int64_t>(p_value)) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T>
struct PtrcallArgument<T *, void> {
	GDExtensionObjectPtr value;
	explicit PtrcallArgument(T *p_value) : value(p_value != nullptr ? p_value->_owner : nullptr) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T>
struct PtrcallArgument<Ref<T>, void> {
	GDExtensionObjectPtr value;
	explicit PtrcallArgument(const Ref<T> &p_value) : value(p_value.ptr() != nullptr ? p_value.ptr()->_owner : nullptr) {}
	GDExtensionConstTypePtr address() const { return &value; }
};

template <class T, class = void>
struct PtrcallReturn {
	T value{};
	GDExtensionTypePtr address() { return &value; }
	T take() { return static_cast<T &&>(value); }
};

template <class T>
struct PtrcallReturn<T, std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>> {
	std::conditional_t<std::is_same_v<T, bool>, GDExtensionBool, int64_t> value = 0;
	GDExtensionTypePtr address() { return &value; }
	T take() const { return static_cast<T>(value); }
};

template <class T>
struct PtrcallReturn<T, std::enable_if_t<std::is_floating_point_v<T>>> {
	double value = 0.0;
	GDExtensionTypePtr address() { return &value; }
	T take() const { return static_cast<T>(value); }
};

template <class T>
struct PtrcallReturn<BitField<T>, void> {
	int64_t value = 0;
	GDExtensionTypePtr address() { return &value; }
	BitField<T> take() const { return BitField<T>(static_cast<T>(value)); }
};

template <class T>
struct PtrcallReturn<T *, void> {
	GDExtensionObjectPtr value = nullptr;
	GDExtensionTypePtr address() { return &value; }
	T *take() const { return value != nullptr ? static_cast<T *>(get_object_instance_binding(value)) : nullptr; }
};

template <class T>
struct PtrcallReturn<Ref<T>, void> {
	GDExtensionObjectPtr value = nullptr;
	GDExtensionTypePtr address() { return &value; }
	// The engine filled in a reference of its own; it becomes the caller's.
	Ref<T> take() const { return value != nullptr ? Ref<T>::_gde_internal_constructor(get_object_instance_binding(value)) : Ref<T>(); }
};

template <class... Encoded>
inline void ptrcall(GDExtensionMethodBindPtr p_bind, GDExtensionObjectPtr p_owner, GDExtensionTypePtr r_return, const Encoded &...p_arguments) {
	const GDExtensionConstTypePtr addresses[sizeof...(Encoded) + 1] = { p_arguments.address()..., nullptr };
	gdextension_interface::object_method_bind_ptrcall(p_bind, p_owner, addresses, r_return);
}

// A missing method answers with its type's empty value.
template <class Return, class... Arguments>
inline Return engine_call(EngineMethod &p_method, GDExtensionObjectPtr p_owner, const Arguments &...p_arguments) {
	GDExtensionMethodBindPtr bind = p_method.get();
	if constexpr (std::is_void_v<Return>) {
		if (bind != nullptr) {
			ptrcall(bind, p_owner, nullptr, PtrcallArgument<Arguments>(p_arguments)...);
		}
	} else {
		PtrcallReturn<Return> result;
		if (bind != nullptr) {
			ptrcall(bind, p_owner, result.address(), PtrcallArgument<Arguments>(p_arguments)...);
		}
		return result.take();
	}
}

Variant engine_vararg_call(EngineMethod &p_method, GDExtensionObjectPtr p_owner, const Variant **p_arguments, GDExtensionInt p_count);

} // namespace internal

} // namespace godot

#endif // GODOT_CPP_CORE_ENGINE_PTRCALL_HPP
