// Our half of an engine object, and the macros that tie a C++ class to the engine: GDCLASS for classes of the extension, GDEXTENSION_CLASS for the
// generated wrappers of the engine's.
//
// An extension class's instance is made by memnew or by the engine and belongs to the engine's object. A wrapper of an engine object is made when the
// object is first seen and goes with it, or when the extension closes. Each class has one ClassTag; casts compare tags, so no run-time type
// information is needed.

#ifndef GODOT_CPP_CLASSES_WRAPPED_HPP
#define GODOT_CPP_CLASSES_WRAPPED_HPP

#include <godot_cpp/core/defs.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/core/property_info.hpp>
#include <godot_cpp/core/static_name.hpp>
#include <godot_cpp/templates/list.hpp>

#include <gdextension_interface.h>

#include <type_traits>

namespace godot {

class ClassDB;
class Object;
class Wrapped;

typedef void GodotObject;

namespace internal {

struct ClassInfo;

using SetHook = bool (*)(Wrapped *, const StringName &, const Variant &);
using GetHook = bool (*)(Wrapped *, const StringName &, Variant &);
using PropertyListHook = void (*)(Wrapped *, List<PropertyInfo> *);
using CanRevertHook = bool (*)(Wrapped *, const StringName &);
using ValidateHook = void (*)(Wrapped *, PropertyInfo &);
using NotificationHook = void (*)(Wrapped *, int);
using ToStringHook = String (*)(Wrapped *);

// A hook as a plain function: unlike a pointer to a member of Wrapped, g++ initialises it at compile time.
template <auto member>
struct HookFunction;

template <class T, class R, class... P, R (T::*member)(P...)>
struct HookFunction<member> {
	using Owner = T;
	static R call(Wrapped *p_instance, P... p_arguments) { return (static_cast<T *>(p_instance)->*member)(p_arguments...); }
};

template <class T, class R, class... P, R (T::*member)(P...) const>
struct HookFunction<member> {
	using Owner = T;
	static R call(Wrapped *p_instance, P... p_arguments) { return (static_cast<T *>(p_instance)->*member)(p_arguments...); }
};

// One for each class. Hooks are null where the class itself does not define them, so that only those that exist are ever asked.
struct ClassTag {
	const ClassTag *parent;
	mutable StaticName name;
	bool is_extension;
	void (*bind_methods)();
	SetHook set;
	GetHook get;
	PropertyListHook get_property_list;
	CanRevertHook property_can_revert;
	GetHook property_get_revert;
	ValidateHook validate_property;
	NotificationHook notification;
	ToStringHook to_string;

	const StringName &get_name() const { return name.get(); }

	bool is_or_inherits(const ClassTag *p_ancestor) const {
		for (const ClassTag *tag = this; tag != nullptr; tag = tag->parent) {
			if (tag == p_ancestor) {
				return true;
			}
		}
		return false;
	}
};

// Reaches into classes for their hooks and their registration; GDCLASS befriends it.
struct ClassAccess {
	// A hook that T inherits names the ancestor in its type.
	template <class Hook, class T, auto member>
	static constexpr Hook own_hook() {
		if constexpr (std::is_same_v<T, typename HookFunction<member>::Owner>) {
			return &HookFunction<member>::call;
		} else {
			return nullptr;
		}
	}

	template <class T>
	static constexpr ClassTag make_tag();

	template <class T>
	static void register_virtuals() {
		T::template register_virtuals<T, typename T::parent_type>();
	}

	template <class T>
	static T *make() {
		return new (memnew_tag) T;
	}
};

template <class T>
inline const ClassTag class_tag = ClassAccess::make_tag<T>();

template <class T>
const ClassTag *class_tag_of() {
	return &class_tag<T>;
}

extern GDExtensionClassLibraryPtr library;
extern void *token;

// The wrapper of an engine object: the one it has, or a new one of the nearest class that is wrapped. Null for null.
Object *get_object_instance_binding(GDExtensionObjectPtr p_engine_object);

void register_engine_class(const StringName &p_name, const GDExtensionInstanceBindingCallbacks *p_callbacks);
// Frees all wrappers that are left, when the extension closes: their objects may outlive it.
void release_engine_classes();

void free_engine_binding(void *p_token, void *p_instance, void *p_binding);
GDExtensionBool keep_engine_binding(void *p_token, void *p_binding, GDExtensionBool p_reference);

// One call per virtual method that a class overrides, while the class registers.
void bind_virtual_method(const ClassTag *p_tag, const char *p_name, GDExtensionClassCallVirtual p_call, uint32_t p_hash);

} // namespace internal

class Wrapped {
	friend struct internal::ClassAccess;
	friend void internal::release_engine_classes();
	friend void internal::free_engine_binding(void *p_token, void *p_instance, void *p_binding);
	friend bool internal::finish_wrapped_construction(Wrapped *p_object);

	// Wrappers of engine objects form a list, see release_engine_classes().
	Wrapped *previous_wrapper = nullptr;
	Wrapped *next_wrapper = nullptr;

	void list_wrapper();
	void unlist_wrapper();

protected:
	explicit Wrapped(const internal::ClassTag &p_engine_class);
	explicit Wrapped(GodotObject *p_owner);

	void _notification(int) {}
	bool _set(const StringName &, const Variant &) { return false; }
	bool _get(const StringName &, Variant &) const { return false; }
	void _get_property_list(List<PropertyInfo> *) const {}
	bool _property_can_revert(const StringName &) const { return false; }
	bool _property_get_revert(const StringName &, Variant &) const { return false; }
	void _validate_property(PropertyInfo &) const {}
	String _to_string() const { return String(); }
	static void _bind_methods() {}

public:
	GodotObject *_owner = nullptr;

	Wrapped(const Wrapped &) = delete;
	Wrapped &operator=(const Wrapped &) = delete;
	virtual ~Wrapped();

	virtual const internal::ClassTag *_get_class_tag() const = 0;

	_FORCE_INLINE_ bool _has_class_tag(const void *p_tag) const { return _get_class_tag()->is_or_inherits(static_cast<const internal::ClassTag *>(p_tag)); }

	static void *operator new(size_t p_size, internal::MemnewTag) noexcept { return Memory::alloc_static(p_size); }
	static void operator delete(void *p_memory) { Memory::free_static(p_memory); }
	static void operator delete(void *p_memory, internal::MemnewTag) noexcept { Memory::free_static(p_memory); }
};

namespace internal {

template <class T>
constexpr ClassTag ClassAccess::make_tag() {
	using Parent = typename T::parent_type;
	const ClassTag *parent = nullptr;
	if constexpr (!std::is_same_v<Parent, Wrapped>) {
		parent = &class_tag<Parent>;
	}
	if constexpr (T::_is_extension_class_static) {
		return {
			parent,
			StaticName(T::_class_name_text),
			true,
			&T::_bind_methods,
			own_hook<SetHook, T, &T::_set>(),
			own_hook<GetHook, T, &T::_get>(),
			own_hook<PropertyListHook, T, &T::_get_property_list>(),
			own_hook<CanRevertHook, T, &T::_property_can_revert>(),
			own_hook<GetHook, T, &T::_property_get_revert>(),
			own_hook<ValidateHook, T, &T::_validate_property>(),
			own_hook<NotificationHook, T, &T::_notification>(),
			own_hook<ToStringHook, T, &T::_to_string>(),
		};
	} else {
		return { parent, StaticName(T::_class_name_text), false, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr };
	}
}

} // namespace internal

#define GODOT_WRAPPED_CLASS_(m_class, m_name, m_inherits, m_is_extension)                                                                                      \
private:                                                                                                                                                       \
	friend class ::godot::ClassDB;                                                                                                                             \
	friend struct ::godot::internal::ClassAccess;                                                                                                              \
	static constexpr const char *_class_name_text = m_name;                                                                                                    \
	static constexpr bool _is_extension_class_static = m_is_extension;                                                                                         \
                                                                                                                                                               \
public:                                                                                                                                                        \
	typedef m_class self_type;                                                                                                                                 \
	typedef m_inherits parent_type;                                                                                                                            \
                                                                                                                                                               \
	const ::godot::internal::ClassTag *_get_class_tag() const override {                                                                                       \
		return ::godot::internal::class_tag_of<m_class>();                                                                                                     \
	}                                                                                                                                                          \
	static const ::godot::StringName &get_class_static() {                                                                                                     \
		return ::godot::internal::class_tag_of<m_class>()->get_name();                                                                                         \
	}                                                                                                                                                          \
	static const ::godot::StringName &get_parent_class_static() {                                                                                              \
		return ::godot::internal::class_tag_of<m_class>()->parent->get_name();                                                                                 \
	}

// Opens an extension class. What follows is private, as in any class.
#define GDCLASS(m_class, m_inherits)                                                                                                                           \
	GODOT_WRAPPED_CLASS_(m_class, #m_class, m_inherits, true)                                                                                                  \
                                                                                                                                                               \
private:

// Opens the wrapper of an engine class; m_alias_for is the engine's name for it.
#define GDEXTENSION_CLASS_ALIAS(m_class, m_alias_for, m_inherits)                                                                                              \
	GODOT_WRAPPED_CLASS_(m_class, #m_alias_for, m_inherits, false)                                                                                             \
	m_class() : m_class(*::godot::internal::class_tag_of<m_class>()) {}                                                                                        \
                                                                                                                                                               \
	static void *_gde_binding_create_callback(void *, void *p_instance) {                                                                                      \
		return static_cast<::godot::Wrapped *>(new (::godot::internal::memnew_tag) m_class(static_cast<::godot::GodotObject *>(p_instance)));                  \
	}                                                                                                                                                          \
	static constexpr GDExtensionInstanceBindingCallbacks _gde_binding_callbacks = {                                                                            \
		&_gde_binding_create_callback,                                                                                                                         \
		&::godot::internal::free_engine_binding,                                                                                                               \
		&::godot::internal::keep_engine_binding,                                                                                                               \
	};                                                                                                                                                         \
                                                                                                                                                               \
protected:                                                                                                                                                     \
	explicit m_class(const ::godot::internal::ClassTag &p_engine_class) : m_inherits(p_engine_class) {}                                                        \
	explicit m_class(::godot::GodotObject *p_owner) : m_inherits(p_owner) {}                                                                                   \
                                                                                                                                                               \
private:

#define GDEXTENSION_CLASS(m_class, m_inherits) GDEXTENSION_CLASS_ALIAS(m_class, m_class, m_inherits)

// Inside register_virtuals() of an engine class, for a virtual that m_class overrides.
#define BIND_VIRTUAL_METHOD(m_class, m_method, m_hash)                                                                                                         \
	::godot::internal::bind_virtual_method(                                                                                                                    \
			::godot::internal::class_tag_of<m_class>(), #m_method,                                                                                             \
			[](GDExtensionClassInstancePtr p_instance, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return) {                              \
				m_class *instance = static_cast<m_class *>(static_cast<::godot::Wrapped *>(p_instance));                                                       \
				::godot::call_with_ptr_args(instance, &m_class::m_method, p_arguments, r_return);                                                              \
			},                                                                                                                                                 \
			m_hash)

} // namespace godot

#endif // GODOT_CPP_CLASSES_WRAPPED_HPP
