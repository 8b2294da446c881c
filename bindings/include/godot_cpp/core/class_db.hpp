// ClassDB: how the extension tells the engine about its classes. A class registers in the initializer of a level (GDREGISTER_CLASS and its sisters), which
// runs its _bind_methods(); there it binds methods, properties, signals and constants. When the level ends its classes are taken back, last first.
// The engine's own ClassDB (class_exists, instantiate, ...) is reached through the same name.

#ifndef GODOT_CPP_CORE_CLASS_DB_HPP
#define GODOT_CPP_CORE_CLASS_DB_HPP

#include <godot_cpp/classes/class_db_singleton.hpp>
#include <godot_cpp/classes/wrapped.hpp>
#include <godot_cpp/core/method_bind.hpp>
#include <godot_cpp/core/object.hpp>

#include <gdextension_interface.h>

#include <type_traits>
#include <vector>

namespace godot {

// A method's name and those of its arguments: what D_METHOD makes.
struct MethodDefinition {
	StringName name;
	std::vector<StringName> args;

	MethodDefinition() {}
	MethodDefinition(const char *p_name) : name(p_name) {}
	MethodDefinition(const StringName &p_name) : name(p_name) {}
	MethodDefinition(const StringName &p_name, std::vector<StringName> &&p_args) : name(p_name), args(std::move(p_args)) {}
};

// Arguments by value, so that texts of different lengths share an instance.
template <class... Args>
MethodDefinition D_METHOD(StringName p_name, Args... p_args) {
	return MethodDefinition(p_name, std::vector<StringName>{ StringName(p_args)... });
}

#define DEFVAL(m_default) (m_default)

namespace internal {

struct ClassRegistration {
	const ClassTag *tag;
	bool is_virtual;
	bool is_abstract;
	bool is_exposed;
	bool is_runtime;
	GDExtensionClassCreateInstance2 create_instance;
	GDExtensionClassRecreateInstance recreate_instance;
	GDExtensionClassGetPropertyList get_property_list;
	void (*register_virtuals)();
};

const GDExtensionPropertyInfo *make_property_list(const ClassTag *p_tag, GDExtensionClassInstancePtr p_instance, uint32_t *r_count);
GDExtensionObjectPtr finish_engine_request(Wrapped *p_made, GDExtensionBool p_notify);

template <class T>
GDExtensionObjectPtr create_instance(void *, GDExtensionBool p_notify) {
	const ConstructionFrame frame(class_tag_of<T>(), nullptr);
	return finish_engine_request(ClassAccess::make<T>(), p_notify);
}

template <class T>
GDExtensionClassInstancePtr recreate_instance(void *, GDExtensionObjectPtr p_object) {
	const ConstructionFrame frame(class_tag_of<T>(), p_object);
	return static_cast<Wrapped *>(ClassAccess::make<T>());
}

template <class T>
const GDExtensionPropertyInfo *get_property_list(GDExtensionClassInstancePtr p_instance, uint32_t *r_count) {
	return make_property_list(class_tag_of<T>(), p_instance, r_count);
}

// The class that a member function was declared in.
template <class M>
struct MethodOwner;

template <class F, class T>
struct MethodOwner<F T::*> {
	using Type = T;
};

} // namespace internal

class ClassDB {
	static void register_extension_class(const internal::ClassRegistration &p_registration);
	static MethodBind *register_method(
			const StringName &p_class, MethodBind *p_bind, const MethodDefinition &p_definition, const Variant *p_defaults, size_t p_default_count);

	template <class T, bool is_abstract>
	static void register_class_of_kind(bool p_virtual, bool p_exposed, bool p_runtime) {
		static_assert(std::is_base_of_v<Object, T> && std::is_same_v<typename T::self_type, T>, "A registered class opens with GDCLASS.");
		internal::ClassRegistration registration = {};
		registration.tag = internal::class_tag_of<T>();
		registration.is_virtual = p_virtual;
		registration.is_abstract = is_abstract;
		registration.is_exposed = p_exposed;
		registration.is_runtime = p_runtime;
		if constexpr (!is_abstract) {
			static_assert(!std::is_abstract_v<T>, "Register a class with pure virtual functions as abstract.");
			registration.create_instance = &internal::create_instance<T>;
			registration.recreate_instance = &internal::recreate_instance<T>;
		}
		registration.get_property_list = &internal::get_property_list<T>;
		registration.register_virtuals = &internal::ClassAccess::register_virtuals<T>;
		register_extension_class(registration);
	}

public:
	ClassDB() = delete;

	template <class T>
	static void register_class(bool p_virtual = false) {
		register_class_of_kind<T, false>(p_virtual, true, false);
	}
	template <class T>
	static void register_abstract_class() {
		register_class_of_kind<T, true>(false, true, false);
	}
	// Left out of the editor's lists and the documentation.
	template <class T>
	static void register_internal_class() {
		register_class_of_kind<T, false>(false, false, false);
	}
	// Stands still in the editor: a placeholder takes its place there.
	template <class T>
	static void register_runtime_class() {
		register_class_of_kind<T, false>(false, true, true);
	}

	template <class M, class... Defaults>
	static MethodBind *bind_method(const MethodDefinition &p_definition, M p_method, const Defaults &...p_defaults) {
		const Variant defaults[sizeof...(Defaults) + 1] = { internal::make_variant(p_defaults)..., Variant() };
		return register_method(internal::MethodOwner<M>::Type::get_class_static(), create_method_bind(p_method), p_definition, defaults, sizeof...(Defaults));
	}

	template <class M, class... Defaults>
	static MethodBind *bind_static_method(const StringName &p_class, const MethodDefinition &p_definition, M p_function, const Defaults &...p_defaults) {
		const Variant defaults[sizeof...(Defaults) + 1] = { internal::make_variant(p_defaults)..., Variant() };
		return register_method(p_class, create_static_method_bind(p_function), p_definition, defaults, sizeof...(Defaults));
	}

	template <class M>
	static MethodBind *bind_vararg_method(uint32_t p_flags, const StringName &p_name, M p_method, const MethodInfo &p_info = MethodInfo(),
			const std::vector<Variant> &p_defaults = std::vector<Variant>(), bool p_return_nil_is_variant = true) {
		MethodDefinition definition(p_name);
		for (const PropertyInfo &argument : p_info.arguments) {
			definition.args.push_back(argument.name);
		}
		return register_method(internal::MethodOwner<M>::Type::get_class_static(),
				create_vararg_method_bind(p_method, p_info, p_return_nil_is_variant, p_flags), definition, p_defaults.data(), p_defaults.size());
	}

	static void add_property(const StringName &p_class, const PropertyInfo &p_info, const StringName &p_setter, const StringName &p_getter, int p_index = -1);
	static void add_property_group(const StringName &p_class, const String &p_name, const String &p_prefix);
	static void add_property_subgroup(const StringName &p_class, const String &p_name, const String &p_prefix);
	static void add_signal(const StringName &p_class, const MethodInfo &p_signal);
	static void bind_integer_constant(
			const StringName &p_class, const StringName &p_enum, const StringName &p_name, GDExtensionInt p_value, bool p_is_bitfield = false);
	// A method that scripts may define, see core/gdvirtual.hpp.
	static void add_virtual_method(
			const StringName &p_class, const MethodInfo &p_method, const std::vector<StringName> &p_argument_names = std::vector<StringName>());

	// Null when the class, or one that it inherits in this extension, has not bound it.
	static MethodBind *get_method(const StringName &p_class, const StringName &p_method);

	static void initialize(GDExtensionInitializationLevel p_level);
	static void deinitialize(GDExtensionInitializationLevel p_level);

	CLASSDB_SINGLETON_FORWARD_METHODS
};

namespace internal {

// The part of a constant's C++ name that scripts see.
const char *constant_name(const char *p_qualified_name);

template <class E>
StringName enum_name_of(E) {
	return get_enum_name(GetTypeInfo<E>::get_class_info());
}

} // namespace internal

#define BIND_CONSTANT(m_constant)                                                                                                                              \
	::godot::ClassDB::bind_integer_constant(                                                                                                                   \
			get_class_static(), ::godot::StringName(), ::godot::internal::constant_name(#m_constant), static_cast<GDExtensionInt>(m_constant));

#define BIND_ENUM_CONSTANT(m_constant)                                                                                                                         \
	::godot::ClassDB::bind_integer_constant(get_class_static(), ::godot::internal::enum_name_of(m_constant), ::godot::internal::constant_name(#m_constant),    \
			static_cast<GDExtensionInt>(m_constant));

#define BIND_BITFIELD_FLAG(m_constant)                                                                                                                         \
	::godot::ClassDB::bind_integer_constant(get_class_static(), ::godot::internal::enum_name_of(m_constant), ::godot::internal::constant_name(#m_constant),    \
			static_cast<GDExtensionInt>(m_constant), true);

#define ADD_SIGNAL(m_signal) ::godot::ClassDB::add_signal(get_class_static(), m_signal)
#define ADD_GROUP(m_name, m_prefix) ::godot::ClassDB::add_property_group(get_class_static(), m_name, m_prefix)
#define ADD_SUBGROUP(m_name, m_prefix) ::godot::ClassDB::add_property_subgroup(get_class_static(), m_name, m_prefix)
#define ADD_PROPERTY(m_property, m_setter, m_getter) ::godot::ClassDB::add_property(get_class_static(), m_property, m_setter, m_getter)
#define ADD_PROPERTYI(m_property, m_setter, m_getter, m_index) ::godot::ClassDB::add_property(get_class_static(), m_property, m_setter, m_getter, m_index)

#define GDREGISTER_CLASS(m_class) ::godot::ClassDB::register_class<m_class>();
#define GDREGISTER_VIRTUAL_CLASS(m_class) ::godot::ClassDB::register_class<m_class>(true);
#define GDREGISTER_ABSTRACT_CLASS(m_class) ::godot::ClassDB::register_abstract_class<m_class>();
#define GDREGISTER_INTERNAL_CLASS(m_class) ::godot::ClassDB::register_internal_class<m_class>();
#define GDREGISTER_RUNTIME_CLASS(m_class) ::godot::ClassDB::register_runtime_class<m_class>();

} // namespace godot

#ifdef CLASSDB_SINGLETON_VARIANT_CAST
CLASSDB_SINGLETON_VARIANT_CAST
#endif

#endif // GODOT_CPP_CORE_CLASS_DB_HPP
