// MethodBind: a C++ function as the engine calls it, either with Variants, checked and converted here, or with typed pointers. ClassDB makes one for
// each bound method and owns it. One template instance serves all methods of a signature, whichever class they belong to.

#ifndef GODOT_CPP_CORE_METHOD_BIND_HPP
#define GODOT_CPP_CORE_METHOD_BIND_HPP

#include <godot_cpp/classes/wrapped.hpp>
#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/object.hpp>

#include <gdextension_interface.h>

#include <utility>
#include <vector>

namespace godot {

template <class T>
class Ref;

namespace internal {

// What the engine is told about an argument or a return value, and what a Variant has to be to pass for it.
struct ArgumentType {
	PropertyInfo (*get_info)();
	GDExtensionClassMethodArgumentMetadata metadata;
	GDExtensionVariantType type;
	const ClassTag *object_class;
};

template <class T>
struct ObjectClass {
	static constexpr const ClassTag *tag = nullptr;
};

template <class T>
struct ObjectClass<T *> {
	static constexpr const ClassTag *tag = &class_tag<std::remove_const_t<T>>;
};

template <class T>
struct ObjectClass<Ref<T>> {
	static constexpr const ClassTag *tag = &class_tag<T>;
};

template <class T>
constexpr ArgumentType describe_argument() {
	if constexpr (std::is_void_v<T>) {
		return { nullptr, GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE, GDEXTENSION_VARIANT_TYPE_NIL, nullptr };
	} else {
		using Info = GetTypeInfo<Stored<T>>;
		return { &Info::get_class_info, Info::METADATA, static_cast<GDExtensionVariantType>(Info::VARIANT_TYPE), ObjectClass<Stored<T>>::tag };
	}
}

// The return value first, then the arguments.
template <class R, class... P>
struct Signature {
	static constexpr ArgumentType types[sizeof...(P) + 1] = { describe_argument<R>(), describe_argument<P>()... };
};

} // namespace internal

class MethodBind {
public:
	static constexpr uint32_t MAX_ARGUMENTS = 16;

private:
	StringName name;
	StringName instance_class;
	std::vector<StringName> argument_names;
	std::vector<Variant> default_arguments;
	const internal::ArgumentType *types;
	uint32_t argument_count;
	uint32_t flags;

	bool accepts(uint32_t p_index, const Variant &p_value) const;

protected:
	MethodBind(const internal::ArgumentType *p_types, uint32_t p_argument_count, uint32_t p_flags);

	// The arguments are complete and of the right types.
	virtual void invoke(Wrapped *p_instance, const Variant *const *p_arguments, Variant &r_return) const = 0;

public:
	virtual ~MethodBind() {}

	const StringName &get_name() const { return name; }
	void set_name(const StringName &p_name) { name = p_name; }
	const StringName &get_instance_class() const { return instance_class; }
	void set_instance_class(const StringName &p_class) { instance_class = p_class; }
	uint32_t get_flags() const { return flags; }
	void set_flags(uint32_t p_flags) { flags = p_flags; }
	bool is_const() const { return (flags & GDEXTENSION_METHOD_FLAG_CONST) != 0; }
	bool is_static() const { return (flags & GDEXTENSION_METHOD_FLAG_STATIC) != 0; }
	bool is_vararg() const { return (flags & GDEXTENSION_METHOD_FLAG_VARARG) != 0; }

	uint32_t get_argument_count() const { return argument_count; }
	const std::vector<StringName> &get_argument_names() const { return argument_names; }
	void set_argument_names(const std::vector<StringName> &p_names) { argument_names = p_names; }
	const std::vector<Variant> &get_default_arguments() const { return default_arguments; }
	void set_default_arguments(const std::vector<Variant> &p_defaults) { default_arguments = p_defaults; }

	virtual bool has_return() const { return types[0].get_info != nullptr; }
	// -1 is the return value.
	virtual PropertyInfo get_argument_info(int p_index) const;
	virtual GDExtensionClassMethodArgumentMetadata get_argument_metadata(int p_index) const { return types[p_index + 1].metadata; }

	virtual void call(Wrapped *p_instance, const Variant *const *p_arguments, GDExtensionInt p_count, Variant &r_return, GDExtensionCallError &r_error) const;
	virtual void ptrcall(Wrapped *p_instance, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return) const = 0;

	// What the engine calls.
	static void bind_call(void *p_bind, GDExtensionClassInstancePtr p_instance, const GDExtensionConstVariantPtr *p_arguments, GDExtensionInt p_count,
			GDExtensionVariantPtr r_return, GDExtensionCallError *r_error);
	static void bind_ptrcall(void *p_bind, GDExtensionClassInstancePtr p_instance, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return);
};

// M is a pointer to a member function of Wrapped: one of any class converts to it, and calling it on an object of that class is well-defined.
template <class M, class R, class... P>
class MethodBindMember final : public MethodBind {
	static_assert(sizeof...(P) <= MAX_ARGUMENTS, "Too many arguments for a bound method.");

	M method;

	template <size_t... I>
	void invoke_indexed(Wrapped *p_instance, const Variant *const *p_arguments, Variant &r_return, std::index_sequence<I...>) const {
		(void)p_arguments;
		if constexpr (std::is_void_v<R>) {
			(void)r_return;
			(p_instance->*method)(VariantCaster<internal::Stored<P>>::cast(*p_arguments[I])...);
		} else {
			r_return = internal::make_variant((p_instance->*method)(VariantCaster<internal::Stored<P>>::cast(*p_arguments[I])...));
		}
	}

protected:
	void invoke(Wrapped *p_instance, const Variant *const *p_arguments, Variant &r_return) const override {
		invoke_indexed(p_instance, p_arguments, r_return, std::index_sequence_for<P...>());
	}

public:
	MethodBindMember(M p_method, uint32_t p_flags) : MethodBind(internal::Signature<R, P...>::types, sizeof...(P), p_flags), method(p_method) {}

	void ptrcall(Wrapped *p_instance, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return) const override {
		call_with_ptr_args(p_instance, method, p_arguments, r_return);
	}
};

template <class R, class... P>
class MethodBindStatic final : public MethodBind {
	static_assert(sizeof...(P) <= MAX_ARGUMENTS, "Too many arguments for a bound method.");

	R(*function)
	(P...);

	template <size_t... I>
	void invoke_indexed(const Variant *const *p_arguments, Variant &r_return, std::index_sequence<I...>) const {
		(void)p_arguments;
		if constexpr (std::is_void_v<R>) {
			(void)r_return;
			function(VariantCaster<internal::Stored<P>>::cast(*p_arguments[I])...);
		} else {
			r_return = internal::make_variant(function(VariantCaster<internal::Stored<P>>::cast(*p_arguments[I])...));
		}
	}

	template <size_t... I>
	void ptrcall_indexed(const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return, std::index_sequence<I...>) const {
		(void)p_arguments;
		if constexpr (std::is_void_v<R>) {
			(void)r_return;
			function(PtrToArg<internal::Stored<P>>::convert(p_arguments[I])...);
		} else {
			PtrToArg<internal::Stored<R>>::encode(function(PtrToArg<internal::Stored<P>>::convert(p_arguments[I])...), r_return);
		}
	}

protected:
	void invoke(Wrapped *, const Variant *const *p_arguments, Variant &r_return) const override {
		invoke_indexed(p_arguments, r_return, std::index_sequence_for<P...>());
	}

public:
	explicit MethodBindStatic(R (*p_function)(P...)) :
			MethodBind(internal::Signature<R, P...>::types, sizeof...(P), GDEXTENSION_METHOD_FLAGS_DEFAULT | GDEXTENSION_METHOD_FLAG_STATIC),
			function(p_function) {}

	void ptrcall(Wrapped *, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return) const override {
		ptrcall_indexed(p_arguments, r_return, std::index_sequence_for<P...>());
	}
};

// Receives the Variants of the call as they come. Its description is written by hand: a signature says nothing.
template <class R>
class MethodBindVararg final : public MethodBind {
public:
	using Method = R (Wrapped::*)(const Variant **, GDExtensionInt, GDExtensionCallError &);

private:
	Method method;
	MethodInfo info;
	bool return_nil_is_variant;

protected:
	void invoke(Wrapped *, const Variant *const *, Variant &) const override {}

public:
	MethodBindVararg(Method p_method, const MethodInfo &p_info, bool p_return_nil_is_variant, uint32_t p_flags) :
			MethodBind(internal::Signature<R>::types, static_cast<uint32_t>(p_info.arguments.size()), p_flags | GDEXTENSION_METHOD_FLAG_VARARG),
			method(p_method), info(p_info), return_nil_is_variant(p_return_nil_is_variant) {}

	PropertyInfo get_argument_info(int p_index) const override {
		if (p_index >= 0) {
			return info.arguments[static_cast<size_t>(p_index)];
		}
		PropertyInfo returned = info.return_val;
		if (returned.type == Variant::NIL && return_nil_is_variant) {
			returned.usage |= PROPERTY_USAGE_NIL_IS_VARIANT;
		}
		return returned;
	}

	GDExtensionClassMethodArgumentMetadata get_argument_metadata(int p_index) const override {
		if (p_index < 0) {
			return info.return_val_metadata;
		}
		const size_t index = static_cast<size_t>(p_index);
		return index < info.arguments_metadata.size() ? info.arguments_metadata[index] : GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	}

	void call(Wrapped *p_instance, const Variant *const *p_arguments, GDExtensionInt p_count, Variant &r_return, GDExtensionCallError &r_error) const override {
		const Variant **arguments = const_cast<const Variant **>(p_arguments);
		if constexpr (std::is_void_v<R>) {
			(void)r_return;
			(p_instance->*method)(arguments, p_count, r_error);
		} else {
			r_return = internal::make_variant((p_instance->*method)(arguments, p_count, r_error));
		}
	}

	// The engine makes no pointer calls to these.
	void ptrcall(Wrapped *, const GDExtensionConstTypePtr *, GDExtensionTypePtr) const override {}
};

template <class T, class R, class... P>
MethodBind *create_method_bind(R (T::*p_method)(P...)) {
	using Method = R (Wrapped::*)(P...);
	return memnew((MethodBindMember<Method, R, P...>)(static_cast<Method>(p_method), GDEXTENSION_METHOD_FLAGS_DEFAULT));
}

template <class T, class R, class... P>
MethodBind *create_method_bind(R (T::*p_method)(P...) const) {
	using Method = R (Wrapped::*)(P...) const;
	return memnew((MethodBindMember<Method, R, P...>)(static_cast<Method>(p_method), GDEXTENSION_METHOD_FLAGS_DEFAULT | GDEXTENSION_METHOD_FLAG_CONST));
}

template <class R, class... P>
MethodBind *create_static_method_bind(R (*p_function)(P...)) {
	return memnew((MethodBindStatic<R, P...>)(p_function));
}

template <class T, class R>
MethodBind *create_vararg_method_bind(R (T::*p_method)(const Variant **, GDExtensionInt, GDExtensionCallError &), const MethodInfo &p_info,
		bool p_return_nil_is_variant, uint32_t p_flags = GDEXTENSION_METHOD_FLAGS_DEFAULT) {
	return memnew(MethodBindVararg<R>(static_cast<typename MethodBindVararg<R>::Method>(p_method), p_info, p_return_nil_is_variant, p_flags));
}

} // namespace godot

#endif // GODOT_CPP_CORE_METHOD_BIND_HPP
