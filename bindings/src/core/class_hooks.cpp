#include "class_hooks.hpp"

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/core/class_db.hpp>
#include <godot_cpp/core/memory.hpp>

#include <new>

namespace godot {
namespace internal {

namespace {

const StringName &to_name(GDExtensionConstStringNamePtr p_name) {
	return *static_cast<const StringName *>(p_name);
}

Wrapped *to_instance(GDExtensionClassInstancePtr p_instance) {
	return static_cast<Wrapped *>(p_instance);
}

// Calls p_ask for each class that has the hook, the most derived first, until one answers true.
template <class Hook, class Ask>
bool ask_derived_first(const Wrapped *p_instance, Hook ClassTag::*p_hook, const Ask &p_ask) {
	for (const ClassTag *tag = p_instance->_get_class_tag(); tag != nullptr && tag->is_extension; tag = tag->parent) {
		if (tag->*p_hook != nullptr && p_ask(tag->*p_hook)) {
			return true;
		}
	}
	return false;
}

// Called for every node in every frame: most classes have one hook at the most among all that they inherit, and are
// done after a single walk upward.
template <class Hook, class Tell>
void tell_base_first(const ClassTag *p_tag, Hook ClassTag::*p_hook, const Tell &p_tell) {
	while (p_tag != nullptr && p_tag->is_extension && p_tag->*p_hook == nullptr) {
		p_tag = p_tag->parent;
	}
	if (p_tag == nullptr || !p_tag->is_extension) {
		return;
	}
	tell_base_first(p_tag->parent, p_hook, p_tell);
	p_tell(p_tag->*p_hook);
}

GDExtensionBool set_property(GDExtensionClassInstancePtr p_instance, GDExtensionConstStringNamePtr p_name, GDExtensionConstVariantPtr p_value) {
	Wrapped *instance = to_instance(p_instance);
	const Variant &value = *static_cast<const Variant *>(p_value);
	return ask_derived_first(instance, &ClassTag::set, [&](auto p_hook) { return p_hook(instance, to_name(p_name), value); });
}

GDExtensionBool get_property(GDExtensionClassInstancePtr p_instance, GDExtensionConstStringNamePtr p_name, GDExtensionVariantPtr r_value) {
	Wrapped *instance = to_instance(p_instance);
	Variant &value = *static_cast<Variant *>(r_value);
	return ask_derived_first(instance, &ClassTag::get, [&](auto p_hook) { return p_hook(instance, to_name(p_name), value); });
}

GDExtensionBool property_can_revert(GDExtensionClassInstancePtr p_instance, GDExtensionConstStringNamePtr p_name) {
	Wrapped *instance = to_instance(p_instance);
	return ask_derived_first(instance, &ClassTag::property_can_revert, [&](auto p_hook) { return p_hook(instance, to_name(p_name)); });
}

GDExtensionBool property_get_revert(GDExtensionClassInstancePtr p_instance, GDExtensionConstStringNamePtr p_name, GDExtensionVariantPtr r_value) {
	Wrapped *instance = to_instance(p_instance);
	Variant &value = *static_cast<Variant *>(r_value);
	return ask_derived_first(instance, &ClassTag::property_get_revert, [&](auto p_hook) { return p_hook(instance, to_name(p_name), value); });
}

GDExtensionBool validate_property(GDExtensionClassInstancePtr p_instance, GDExtensionPropertyInfo *r_property) {
	Wrapped *instance = to_instance(p_instance);
	PropertyInfo info(r_property);
	tell_base_first(instance->_get_class_tag(), &ClassTag::validate_property, [&](auto p_hook) { p_hook(instance, info); });
	info._update(r_property);
	return true;
}

void notification(GDExtensionClassInstancePtr p_instance, int32_t p_what, GDExtensionBool p_reversed) {
	Wrapped *instance = to_instance(p_instance);
	const auto tell = [&](auto p_hook) {
		p_hook(instance, p_what);
		return false;
	};
	if (p_reversed) {
		ask_derived_first(instance, &ClassTag::notification, tell);
	} else {
		tell_base_first(instance->_get_class_tag(), &ClassTag::notification, tell);
	}
}

void to_string(GDExtensionClassInstancePtr p_instance, GDExtensionBool *r_is_valid, GDExtensionStringPtr r_text) {
	Wrapped *instance = to_instance(p_instance);
	*r_is_valid = ask_derived_first(instance, &ClassTag::to_string, [&](auto p_hook) {
		*static_cast<String *>(r_text) = p_hook(instance);
		return true;
	});
}

// The descriptions and, behind them in the same block, the values that they point into.
PropertyInfo *values_of(const GDExtensionPropertyInfo *p_list, uint32_t p_count) {
	return reinterpret_cast<PropertyInfo *>(const_cast<GDExtensionPropertyInfo *>(p_list + p_count));
}

void free_property_list(GDExtensionClassInstancePtr, const GDExtensionPropertyInfo *p_list, uint32_t p_count) {
	if (p_list == nullptr) {
		return;
	}
	PropertyInfo *values = values_of(p_list, p_count);
	for (uint32_t i = 0; i < p_count; i++) {
		values[i].~PropertyInfo();
	}
	Memory::free_static(const_cast<GDExtensionPropertyInfo *>(p_list));
}

void free_instance(void *, GDExtensionClassInstancePtr p_instance) {
	delete to_instance(p_instance);
}

template <class Hook>
bool is_hooked(const ClassTag *p_tag, Hook ClassTag::*p_hook) {
	for (const ClassTag *tag = p_tag; tag != nullptr && tag->is_extension; tag = tag->parent) {
		if (tag->*p_hook != nullptr) {
			return true;
		}
	}
	return false;
}

} // namespace

const GDExtensionPropertyInfo *make_property_list(const ClassTag *p_tag, GDExtensionClassInstancePtr p_instance, uint32_t *r_count) {
	static_assert(alignof(PropertyInfo) <= alignof(GDExtensionPropertyInfo));
	List<PropertyInfo> properties;
	p_tag->get_property_list(to_instance(p_instance), &properties);
	const uint32_t count = static_cast<uint32_t>(properties.size());
	*r_count = count;
	if (count == 0) {
		return nullptr;
	}
	void *block = Memory::alloc_static(count * (sizeof(GDExtensionPropertyInfo) + sizeof(PropertyInfo)));
	if (block == nullptr) {
		*r_count = 0;
		return nullptr;
	}
	GDExtensionPropertyInfo *list = static_cast<GDExtensionPropertyInfo *>(block);
	PropertyInfo *values = values_of(list, count);
	uint32_t index = 0;
	for (const PropertyInfo &property : properties) {
		::new (static_cast<void *>(&values[index])) PropertyInfo(property);
		list[index] = values[index]._to_gdextension();
		index++;
	}
	return list;
}

GDExtensionObjectPtr finish_engine_request(Wrapped *p_made, GDExtensionBool p_notify) {
	if (p_made == nullptr) {
		return nullptr;
	}
	if (p_made->_owner == nullptr) {
		delete p_made;
		return nullptr;
	}
	if (p_notify) {
		static_cast<Object *>(p_made)->notification(Object::NOTIFICATION_POSTINITIALIZE);
	}
	return p_made->_owner;
}

void fill_hooks(const ClassTag *p_tag, GDExtensionClassCreationInfo5 &r_info) {
	r_info.free_instance_func = &free_instance;
	r_info.free_property_list_func = &free_property_list;
	r_info.set_func = is_hooked(p_tag, &ClassTag::set) ? &set_property : nullptr;
	r_info.get_func = is_hooked(p_tag, &ClassTag::get) ? &get_property : nullptr;
	r_info.property_can_revert_func = is_hooked(p_tag, &ClassTag::property_can_revert) ? &property_can_revert : nullptr;
	r_info.property_get_revert_func = is_hooked(p_tag, &ClassTag::property_get_revert) ? &property_get_revert : nullptr;
	r_info.validate_property_func = is_hooked(p_tag, &ClassTag::validate_property) ? &validate_property : nullptr;
	r_info.notification_func = is_hooked(p_tag, &ClassTag::notification) ? &notification : nullptr;
	r_info.to_string_func = is_hooked(p_tag, &ClassTag::to_string) ? &to_string : nullptr;
}

} // namespace internal
} // namespace godot
