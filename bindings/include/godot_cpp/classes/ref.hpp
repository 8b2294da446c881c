// Ref<T> shares the ownership of a RefCounted object: the object goes with the last Ref to it, in the engine and here alike.

#ifndef GODOT_CPP_CLASSES_REF_HPP
#define GODOT_CPP_CLASSES_REF_HPP

#include <godot_cpp/core/binder_common.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/core/object.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <type_traits>
#include <utility>

namespace godot {

class RefCounted;

namespace internal {

// The rules of RefCounted, free of its header. Sharing an object that nobody has counted yet takes over the count it was made with.
bool share_reference(Wrapped *p_object);
// Ends the object when this was the last reference.
void drop_reference(Wrapped *p_object);

} // namespace internal

template <class T>
class Ref {
	template <class U>
	friend class Ref;

	T *reference = nullptr;

	void share(T *p_object) {
		if (p_object == reference) {
			return;
		}
		// The new one first: it may hang on the old.
		T *old = reference;
		reference = p_object != nullptr && internal::share_reference(p_object) ? p_object : nullptr;
		if (old != nullptr) {
			internal::drop_reference(old);
		}
	}

	template <class U>
	static T *convert(U *p_object) {
		if constexpr (std::is_base_of_v<T, U>) {
			return p_object;
		} else {
			return Object::cast_to<T>(p_object);
		}
	}

public:
	Ref() {}
	Ref(std::nullptr_t) {}

	Ref(const Ref &p_other) { share(p_other.reference); }
	Ref(Ref &&p_other) noexcept : reference(std::exchange(p_other.reference, nullptr)) {}
	template <class U>
	Ref(const Ref<U> &p_other) {
		share(convert(p_other.reference));
	}
	Ref(T *p_object) { share(p_object); }
	Ref(const Variant &p_variant) { share(VariantCaster<T *>::cast(p_variant)); }

	~Ref() { unref(); }

	Ref &operator=(const Ref &p_other) {
		share(p_other.reference);
		return *this;
	}
	Ref &operator=(Ref &&p_other) noexcept {
		if (this != &p_other) {
			T *old = std::exchange(reference, std::exchange(p_other.reference, nullptr));
			if (old != nullptr) {
				internal::drop_reference(old);
			}
		}
		return *this;
	}
	template <class U>
	Ref &operator=(const Ref<U> &p_other) {
		share(convert(p_other.reference));
		return *this;
	}
	Ref &operator=(T *p_object) {
		share(p_object);
		return *this;
	}
	Ref &operator=(std::nullptr_t) {
		unref();
		return *this;
	}
	Ref &operator=(const Variant &p_variant) {
		share(VariantCaster<T *>::cast(p_variant));
		return *this;
	}

	_FORCE_INLINE_ T *operator->() const { return reference; }
	_FORCE_INLINE_ T *operator*() const { return reference; }
	_FORCE_INLINE_ T *ptr() const { return reference; }
	_FORCE_INLINE_ bool is_valid() const { return reference != nullptr; }
	_FORCE_INLINE_ bool is_null() const { return reference == nullptr; }

	operator Variant() const { return Variant(static_cast<const Object *>(reference)); }

	_FORCE_INLINE_ bool operator==(const T *p_object) const { return reference == p_object; }
	_FORCE_INLINE_ bool operator!=(const T *p_object) const { return reference != p_object; }
	_FORCE_INLINE_ bool operator==(const Ref &p_other) const { return reference == p_other.reference; }
	_FORCE_INLINE_ bool operator!=(const Ref &p_other) const { return reference != p_other.reference; }
	_FORCE_INLINE_ bool operator<(const Ref &p_other) const { return reference < p_other.reference; }

	template <class U>
	void reference_ptr(U *p_object) {
		share(convert(p_object));
	}

	void unref() {
		T *old = std::exchange(reference, nullptr);
		if (old != nullptr) {
			internal::drop_reference(old);
		}
	}

	void instantiate() { share(memnew(T)); }

	// Takes over a reference that the engine has counted already, as calls return them.
	static Ref _gde_internal_constructor(Object *p_counted) {
		Ref made;
		made.reference = static_cast<T *>(p_counted);
		return made;
	}
};

template <class T>
struct PtrToArg<Ref<T>> {
	using EncodeT = Ref<T>;
	static Ref<T> convert(const void *p_argument) {
		if (p_argument == nullptr) {
			return Ref<T>();
		}
		return Ref<T>(static_cast<T *>(internal::get_binding_of_class(gdextension_interface::ref_get_object(p_argument), internal::class_tag_of<T>())));
	}
	static void encode(const Ref<T> &p_value, void *r_value) { gdextension_interface::ref_set_object(r_value, internal::get_owner(p_value.ptr())); }
};

template <class T>
struct GetTypeInfo<Ref<T>> {
	static constexpr GDExtensionVariantType VARIANT_TYPE = GDEXTENSION_VARIANT_TYPE_OBJECT;
	static constexpr GDExtensionClassMethodArgumentMetadata METADATA = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	static PropertyInfo get_class_info() { return internal::make_resource_info(internal::class_tag_of<T>()); }
};

} // namespace godot

#endif // GODOT_CPP_CLASSES_REF_HPP
