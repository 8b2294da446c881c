// Virtual methods that scripts define. In the class: GDVIRTUAL1R(bool, _can_enter, Node *). In _bind_methods(): GDVIRTUAL_BIND(_can_enter, "body"). To
// call: GDVIRTUAL_CALL(_can_enter, body, allowed), which is true when a script has the method and it ran. The digit counts the arguments, R adds a
// return value, C makes it const.

#ifndef GODOT_CPP_CORE_GDVIRTUAL_HPP
#define GODOT_CPP_CORE_GDVIRTUAL_HPP

#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/core/static_name.hpp>

#include <vector>

namespace godot {
namespace internal {

bool has_script_virtual(GDExtensionConstObjectPtr p_owner, const StringName &p_name);
// False, having reported anything but the absence of the method, when the script's method did not run.
bool call_script_virtual(GDExtensionObjectPtr p_owner, const StringName &p_name, const Variant *p_arguments, int p_count, Variant &r_return);

template <class... P>
struct VirtualArguments {
	static constexpr int COUNT = sizeof...(P);

	static bool call(GDExtensionObjectPtr p_owner, const StringName &p_name, Variant &r_return, const Stored<P> &...p_arguments) {
		if (likely(!has_script_virtual(p_owner, p_name))) {
			return false;
		}
		const Variant values[sizeof...(P) + 1] = { make_variant(p_arguments)..., Variant() };
		return call_script_virtual(p_owner, p_name, values, COUNT, r_return);
	}

	static MethodInfo describe(const StringName &p_name, uint32_t p_flags) {
		MethodInfo info(p_name);
		info.flags = p_flags;
		info.arguments = { GetTypeInfo<Stored<P>>::get_class_info()... };
		info.arguments_metadata = { GetTypeInfo<Stored<P>>::METADATA... };
		return info;
	}
};

template <class R, class... P>
struct VirtualSignature {
	static constexpr int COUNT = sizeof...(P);

	static bool call(GDExtensionObjectPtr p_owner, const StringName &p_name, const Stored<P> &...p_arguments, R &r_return) {
		Variant result;
		if (!VirtualArguments<P...>::call(p_owner, p_name, result, p_arguments...)) {
			return false;
		}
		r_return = VariantCaster<R>::cast(result);
		return true;
	}

	static MethodInfo describe(const StringName &p_name, uint32_t p_flags) {
		MethodInfo info = VirtualArguments<P...>::describe(p_name, p_flags);
		info.return_val = GetTypeInfo<R>::get_class_info();
		info.return_val_metadata = GetTypeInfo<R>::METADATA;
		return info;
	}
};

template <class... P>
struct VirtualSignature<void, P...> {
	static constexpr int COUNT = sizeof...(P);

	static bool call(GDExtensionObjectPtr p_owner, const StringName &p_name, const Stored<P> &...p_arguments) {
		Variant result;
		return VirtualArguments<P...>::call(p_owner, p_name, result, p_arguments...);
	}

	static MethodInfo describe(const StringName &p_name, uint32_t p_flags) { return VirtualArguments<P...>::describe(p_name, p_flags); }
};

template <class... Names>
std::vector<StringName> argument_names(Names... p_names) {
	return std::vector<StringName>{ StringName(p_names)... };
}

} // namespace internal

// After the count come the return type and those of the arguments, which may hold commas of their own.
#define GODOT_GDVIRTUAL_(m_count, m_name, m_const, m_flags, ...)                                                                                               \
	static const ::godot::StringName &_gdvirtual_##m_name##_sn() {                                                                                             \
		static ::godot::internal::StaticName name(#m_name);                                                                                                    \
		return name.get();                                                                                                                                     \
	}                                                                                                                                                          \
	template <class... Args>                                                                                                                                   \
	bool _gdvirtual_##m_name##_call(Args &&...p_args) m_const {                                                                                                \
		return ::godot::internal::VirtualSignature<__VA_ARGS__>::call(_owner, _gdvirtual_##m_name##_sn(), static_cast<Args &&>(p_args)...);                    \
	}                                                                                                                                                          \
	bool _gdvirtual_##m_name##_overridden() const {                                                                                                            \
		return ::godot::internal::has_script_virtual(_owner, _gdvirtual_##m_name##_sn());                                                                      \
	}                                                                                                                                                          \
	static ::godot::MethodInfo _gdvirtual_##m_name##_get_method_info() {                                                                                       \
		static_assert(::godot::internal::VirtualSignature<__VA_ARGS__>::COUNT == m_count, "The digit of the macro counts the arguments.");                     \
		return ::godot::internal::VirtualSignature<__VA_ARGS__>::describe(                                                                                     \
				_gdvirtual_##m_name##_sn(), GDEXTENSION_METHOD_FLAGS_DEFAULT | GDEXTENSION_METHOD_FLAG_VIRTUAL | m_flags);                                     \
	}

#define GODOT_GDVIRTUAL_MUTABLE_(m_count, m_name, ...) GODOT_GDVIRTUAL_(m_count, m_name, , 0, __VA_ARGS__)
#define GODOT_GDVIRTUAL_CONST_(m_count, m_name, ...) GODOT_GDVIRTUAL_(m_count, m_name, const, GDEXTENSION_METHOD_FLAG_CONST, __VA_ARGS__)

#define GDVIRTUAL0(m_name) GODOT_GDVIRTUAL_MUTABLE_(0, m_name, void)
#define GDVIRTUAL0R(m_ret, m_name) GODOT_GDVIRTUAL_MUTABLE_(0, m_name, m_ret)
#define GDVIRTUAL0C(m_name) GODOT_GDVIRTUAL_CONST_(0, m_name, void)
#define GDVIRTUAL0RC(m_ret, m_name) GODOT_GDVIRTUAL_CONST_(0, m_name, m_ret)

#define GDVIRTUAL1(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(1, m_name, void, __VA_ARGS__)
#define GDVIRTUAL1R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(1, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL1C(m_name, ...) GODOT_GDVIRTUAL_CONST_(1, m_name, void, __VA_ARGS__)
#define GDVIRTUAL1RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(1, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL2(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(2, m_name, void, __VA_ARGS__)
#define GDVIRTUAL2R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(2, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL2C(m_name, ...) GODOT_GDVIRTUAL_CONST_(2, m_name, void, __VA_ARGS__)
#define GDVIRTUAL2RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(2, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL3(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(3, m_name, void, __VA_ARGS__)
#define GDVIRTUAL3R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(3, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL3C(m_name, ...) GODOT_GDVIRTUAL_CONST_(3, m_name, void, __VA_ARGS__)
#define GDVIRTUAL3RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(3, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL4(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(4, m_name, void, __VA_ARGS__)
#define GDVIRTUAL4R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(4, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL4C(m_name, ...) GODOT_GDVIRTUAL_CONST_(4, m_name, void, __VA_ARGS__)
#define GDVIRTUAL4RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(4, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL5(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(5, m_name, void, __VA_ARGS__)
#define GDVIRTUAL5R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(5, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL5C(m_name, ...) GODOT_GDVIRTUAL_CONST_(5, m_name, void, __VA_ARGS__)
#define GDVIRTUAL5RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(5, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL6(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(6, m_name, void, __VA_ARGS__)
#define GDVIRTUAL6R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(6, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL6C(m_name, ...) GODOT_GDVIRTUAL_CONST_(6, m_name, void, __VA_ARGS__)
#define GDVIRTUAL6RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(6, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL7(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(7, m_name, void, __VA_ARGS__)
#define GDVIRTUAL7R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(7, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL7C(m_name, ...) GODOT_GDVIRTUAL_CONST_(7, m_name, void, __VA_ARGS__)
#define GDVIRTUAL7RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(7, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL8(m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(8, m_name, void, __VA_ARGS__)
#define GDVIRTUAL8R(m_ret, m_name, ...) GODOT_GDVIRTUAL_MUTABLE_(8, m_name, m_ret, __VA_ARGS__)
#define GDVIRTUAL8C(m_name, ...) GODOT_GDVIRTUAL_CONST_(8, m_name, void, __VA_ARGS__)
#define GDVIRTUAL8RC(m_ret, m_name, ...) GODOT_GDVIRTUAL_CONST_(8, m_name, m_ret, __VA_ARGS__)

#define GDVIRTUAL_CALL(m_name, ...) _gdvirtual_##m_name##_call(__VA_ARGS__)
#define GDVIRTUAL_CALL_PTR(m_object, m_name, ...) (m_object)->_gdvirtual_##m_name##_call(__VA_ARGS__)
#define GDVIRTUAL_IS_OVERRIDDEN(m_name) _gdvirtual_##m_name##_overridden()
#define GDVIRTUAL_IS_OVERRIDDEN_PTR(m_object, m_name) (m_object)->_gdvirtual_##m_name##_overridden()
#define GDVIRTUAL_BIND(m_name, ...)                                                                                                                            \
	::godot::ClassDB::add_virtual_method(get_class_static(), _gdvirtual_##m_name##_get_method_info(), ::godot::internal::argument_names(__VA_ARGS__));

} // namespace godot

#endif // GODOT_CPP_CORE_GDVIRTUAL_HPP
