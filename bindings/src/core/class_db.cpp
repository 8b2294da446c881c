#include <godot_cpp/core/class_db.hpp>

#include "class_hooks.hpp"

#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>

#include <cstring>
#include <unordered_map>
#include <unordered_set>

namespace godot {

namespace internal {

struct VirtualMethod {
	StringName name;
	GDExtensionClassCallVirtual call;
	uint32_t hash;
};

// What this side has to remember of a registered class. Tables go by the identity of a name, which a StringName in the entry keeps alive.
struct ClassInfo {
	const ClassTag *tag;
	const ClassInfo *parent;
	GDExtensionInitializationLevel level;
	std::unordered_map<const void *, MethodBind *> methods;
	// Those of the class and of all above it: the engine asks once per object.
	std::unordered_map<const void *, VirtualMethod> virtuals;
	std::unordered_map<const void *, StringName> members;

	~ClassInfo() {
		for (const auto &[name, bind] : methods) {
			memdelete(bind);
		}
	}
};

} // namespace internal

namespace {

using internal::ClassInfo;
using internal::ClassTag;

struct Registry {
	std::unordered_map<const void *, ClassInfo *> by_name;
	std::vector<ClassInfo *> in_order;
};

// Made with the first class, gone with the last.
Registry *registry = nullptr;
GDExtensionInitializationLevel current_level = GDEXTENSION_INITIALIZATION_CORE;

ClassInfo *find_class(const StringName &p_name) {
	if (registry == nullptr) {
		return nullptr;
	}
	const auto found = registry->by_name.find(p_name.data_unique_pointer());
	return found != registry->by_name.end() ? found->second : nullptr;
}

// True for the first member of this kind and name; the kinds that have name spaces of their own differ by their prefix.
bool claim_member(const StringName &p_class, const char *p_kind, const StringName &p_name) {
	ClassInfo *info = find_class(p_class);
	ERR_FAIL_NULL_V_MSG(info, false, vformat("A %s \"%s\" was added to class \"%s\", which is not registered.", p_kind, p_name, p_class));
	const StringName key(vformat("%s %s", p_kind, p_name));
	const bool is_first = info->members.insert({ key.data_unique_pointer(), key }).second;
	ERR_FAIL_COND_V_MSG(!is_first, false, vformat("Class \"%s\" already has a %s \"%s\".", p_class, p_kind, p_name));
	return true;
}

GDExtensionClassCallVirtual get_virtual(void *p_class, GDExtensionConstStringNamePtr p_name, uint32_t p_hash) {
	ClassInfo *info = static_cast<ClassInfo *>(p_class);
	const auto found = info->virtuals.find(static_cast<const StringName *>(p_name)->data_unique_pointer());
	if (found == info->virtuals.end()) {
		return nullptr;
	}
	// Another signature under the same name: calling it would read the arguments wrongly.
	if (found->second.hash != p_hash) {
		ERR_PRINT_ONCE(vformat("The engine's virtual method %s has another signature than these bindings were generated for; class \"%s\" is not called.",
				found->second.name, info->tag->get_name()));
		return nullptr;
	}
	return found->second.call;
}

// Descriptions in the shape of the C interface, with the values that they point into.
struct PropertyArray {
	std::vector<PropertyInfo> values;
	std::vector<GDExtensionPropertyInfo> native;

	void finish() {
		for (const PropertyInfo &value : values) {
			native.push_back(value._to_gdextension());
		}
	}
};

} // namespace

namespace internal {

void bind_virtual_method(const ClassTag *p_tag, const char *p_name, GDExtensionClassCallVirtual p_call, uint32_t p_hash) {
	ClassInfo *info = find_class(p_tag->get_name());
	ERR_FAIL_NULL(info);
	const StringName name(p_name);
	info->virtuals[name.data_unique_pointer()] = { name, p_call, p_hash };
}

const char *constant_name(const char *p_qualified_name) {
	const char *name = p_qualified_name;
	for (const char *separator = std::strstr(name, "::"); separator != nullptr; separator = std::strstr(name, "::")) {
		name = separator + 2;
	}
	return name;
}

} // namespace internal

void ClassDB::register_extension_class(const internal::ClassRegistration &p_registration) {
	const ClassTag *tag = p_registration.tag;
	const StringName &name = tag->get_name();
	const ClassInfo *parent = nullptr;
	ERR_FAIL_COND_MSG(find_class(name) != nullptr, vformat("Class \"%s\" is registered already.", name));
	if (tag->parent->is_extension) {
		parent = find_class(tag->parent->get_name());
		ERR_FAIL_NULL_MSG(parent, vformat("Class \"%s\" has to be registered after its parent \"%s\".", name, tag->parent->get_name()));
	}

	if (registry == nullptr) {
		registry = new Registry();
	}
	ClassInfo *info = new ClassInfo{ tag, parent, current_level, {}, {}, {} };
	if (parent != nullptr) {
		info->virtuals = parent->virtuals;
	}
	registry->by_name[name.data_unique_pointer()] = info;
	registry->in_order.push_back(info);
	p_registration.register_virtuals();

	GDExtensionClassCreationInfo5 creation = {};
	creation.is_virtual = p_registration.is_virtual;
	creation.is_abstract = p_registration.is_abstract;
	creation.is_exposed = p_registration.is_exposed;
	creation.is_runtime = p_registration.is_runtime;
	internal::fill_hooks(tag, creation);
	// The engine asks each class of the chain for its own part.
	creation.get_property_list_func = tag->get_property_list != nullptr ? p_registration.get_property_list : nullptr;
	creation.create_instance_func = p_registration.create_instance;
	creation.recreate_instance_func = p_registration.recreate_instance;
	creation.get_virtual_func = &get_virtual;
	creation.class_userdata = info;
	gdextension_interface::classdb_register_extension_class5(internal::library, name._native_ptr(), tag->parent->get_name()._native_ptr(), &creation);

	// A class without one of its own inherits its parent's, which has run.
	if (tag->bind_methods != (parent != nullptr ? tag->parent->bind_methods : nullptr)) {
		tag->bind_methods();
	}
}

MethodBind *ClassDB::register_method(
		const StringName &p_class, MethodBind *p_bind, const MethodDefinition &p_definition, const Variant *p_defaults, size_t p_default_count) {
	ERR_FAIL_NULL_V(p_bind, nullptr);
	ClassInfo *info = find_class(p_class);
	const char *problem = nullptr;
	if (info == nullptr) {
		problem = "the class is not registered";
	} else if (info->methods.count(p_definition.name.data_unique_pointer()) != 0) {
		problem = "the class has a method of this name already";
	} else if (p_definition.args.size() > p_bind->get_argument_count()) {
		problem = "it names more arguments than the method has";
	} else if (p_default_count > p_bind->get_argument_count()) {
		problem = "it has more default values than arguments";
	}
	if (problem != nullptr) {
		memdelete(p_bind);
		ERR_FAIL_V_MSG(nullptr, vformat("Method %s::%s cannot be bound: %s.", p_class, p_definition.name, problem));
	}

	p_bind->set_name(p_definition.name);
	p_bind->set_instance_class(p_class);
	p_bind->set_argument_names(p_definition.args);
	p_bind->set_default_arguments(std::vector<Variant>(p_defaults, p_defaults + p_default_count));
	info->methods[p_bind->get_name().data_unique_pointer()] = p_bind;

	PropertyInfo returned = p_bind->get_argument_info(-1);
	GDExtensionPropertyInfo native_returned = returned._to_gdextension();
	PropertyArray arguments;
	std::vector<GDExtensionClassMethodArgumentMetadata> metadata;
	for (uint32_t i = 0; i < p_bind->get_argument_count(); i++) {
		arguments.values.push_back(p_bind->get_argument_info(static_cast<int>(i)));
		metadata.push_back(p_bind->get_argument_metadata(static_cast<int>(i)));
	}
	arguments.finish();
	std::vector<GDExtensionVariantPtr> defaults;
	for (const Variant &value : p_bind->get_default_arguments()) {
		defaults.push_back(value._native_ptr());
	}

	GDExtensionClassMethodInfo method = {};
	method.name = p_bind->get_name()._native_ptr();
	method.method_userdata = p_bind;
	method.call_func = &MethodBind::bind_call;
	method.ptrcall_func = &MethodBind::bind_ptrcall;
	method.method_flags = p_bind->get_flags();
	method.has_return_value = p_bind->has_return();
	method.return_value_info = &native_returned;
	method.return_value_metadata = p_bind->get_argument_metadata(-1);
	method.argument_count = p_bind->get_argument_count();
	method.arguments_info = arguments.native.data();
	method.arguments_metadata = metadata.data();
	method.default_argument_count = static_cast<uint32_t>(defaults.size());
	method.default_arguments = defaults.data();
	gdextension_interface::classdb_register_extension_class_method(internal::library, p_class._native_ptr(), &method);
	return p_bind;
}

MethodBind *ClassDB::get_method(const StringName &p_class, const StringName &p_method) {
	for (const ClassInfo *info = find_class(p_class); info != nullptr; info = info->parent) {
		const auto found = info->methods.find(p_method.data_unique_pointer());
		if (found != info->methods.end()) {
			return found->second;
		}
	}
	return nullptr;
}

void ClassDB::add_property(const StringName &p_class, const PropertyInfo &p_info, const StringName &p_setter, const StringName &p_getter, int p_index) {
	if (!claim_member(p_class, "property", p_info.name)) {
		return;
	}
	// An index is the first argument of both.
	const uint32_t extra = p_index >= 0 ? 1 : 0;
	if (!p_setter.is_empty()) {
		const MethodBind *setter = get_method(p_class, p_setter);
		ERR_FAIL_NULL_MSG(setter, vformat("Property %s::%s has the setter \"%s\", which is not bound.", p_class, p_info.name, p_setter));
		ERR_FAIL_COND_MSG(setter->get_argument_count() != 1 + extra,
				vformat("The setter \"%s\" of property %s::%s must take %d arguments.", p_setter, p_class, p_info.name, 1 + extra));
	}
	if (!p_getter.is_empty()) {
		const MethodBind *getter = get_method(p_class, p_getter);
		ERR_FAIL_NULL_MSG(getter, vformat("Property %s::%s has the getter \"%s\", which is not bound.", p_class, p_info.name, p_getter));
		ERR_FAIL_COND_MSG(getter->get_argument_count() != extra,
				vformat("The getter \"%s\" of property %s::%s must take %d arguments.", p_getter, p_class, p_info.name, extra));
	}
	const GDExtensionPropertyInfo info = p_info._to_gdextension();
	if (p_index >= 0) {
		gdextension_interface::classdb_register_extension_class_property_indexed(
				internal::library, p_class._native_ptr(), &info, p_setter._native_ptr(), p_getter._native_ptr(), p_index);
	} else {
		gdextension_interface::classdb_register_extension_class_property(
				internal::library, p_class._native_ptr(), &info, p_setter._native_ptr(), p_getter._native_ptr());
	}
}

void ClassDB::add_property_group(const StringName &p_class, const String &p_name, const String &p_prefix) {
	ERR_FAIL_NULL_MSG(find_class(p_class), vformat("Class \"%s\" is not registered.", p_class));
	gdextension_interface::classdb_register_extension_class_property_group(
			internal::library, p_class._native_ptr(), p_name._native_ptr(), p_prefix._native_ptr());
}

void ClassDB::add_property_subgroup(const StringName &p_class, const String &p_name, const String &p_prefix) {
	ERR_FAIL_NULL_MSG(find_class(p_class), vformat("Class \"%s\" is not registered.", p_class));
	gdextension_interface::classdb_register_extension_class_property_subgroup(
			internal::library, p_class._native_ptr(), p_name._native_ptr(), p_prefix._native_ptr());
}

void ClassDB::add_signal(const StringName &p_class, const MethodInfo &p_signal) {
	if (!claim_member(p_class, "signal", p_signal.name)) {
		return;
	}
	PropertyArray arguments;
	arguments.values = p_signal.arguments;
	arguments.finish();
	gdextension_interface::classdb_register_extension_class_signal(internal::library, p_class._native_ptr(), p_signal.name._native_ptr(),
			arguments.native.data(), static_cast<GDExtensionInt>(arguments.native.size()));
}

void ClassDB::bind_integer_constant(const StringName &p_class, const StringName &p_enum, const StringName &p_name, GDExtensionInt p_value, bool p_is_bitfield) {
	if (!claim_member(p_class, "constant", p_name)) {
		return;
	}
	gdextension_interface::classdb_register_extension_class_integer_constant(
			internal::library, p_class._native_ptr(), p_enum._native_ptr(), p_name._native_ptr(), p_value, p_is_bitfield);
}

void ClassDB::add_virtual_method(const StringName &p_class, const MethodInfo &p_method, const std::vector<StringName> &p_argument_names) {
	if (!claim_member(p_class, "virtual method", p_method.name)) {
		return;
	}
	PropertyArray arguments;
	arguments.values = p_method.arguments;
	for (size_t i = 0; i < arguments.values.size(); i++) {
		arguments.values[i].name = i < p_argument_names.size() ? p_argument_names[i] : StringName(vformat("arg%d", static_cast<int64_t>(i)));
	}
	arguments.finish();
	std::vector<GDExtensionClassMethodArgumentMetadata> metadata = p_method.arguments_metadata;
	metadata.resize(arguments.values.size(), GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE);

	GDExtensionClassVirtualMethodInfo method = {};
	method.name = p_method.name._native_ptr();
	method.method_flags = p_method.flags;
	method.return_value = p_method.return_val._to_gdextension();
	method.return_value_metadata = p_method.return_val_metadata;
	method.argument_count = static_cast<uint32_t>(arguments.native.size());
	method.arguments = arguments.native.data();
	method.arguments_metadata = metadata.data();
	gdextension_interface::classdb_register_extension_class_virtual_method(internal::library, p_class._native_ptr(), &method);
}

void ClassDB::initialize(GDExtensionInitializationLevel p_level) {
	current_level = p_level;
}

void ClassDB::deinitialize(GDExtensionInitializationLevel p_level) {
	if (registry == nullptr) {
		return;
	}
	std::vector<ClassInfo *> &classes = registry->in_order;
	for (size_t i = classes.size(); i > 0; i--) {
		ClassInfo *info = classes[i - 1];
		if (info->level != p_level) {
			continue;
		}
		const StringName &name = info->tag->get_name();
		gdextension_interface::classdb_unregister_extension_class(internal::library, name._native_ptr());
		registry->by_name.erase(name.data_unique_pointer());
		classes.erase(classes.begin() + static_cast<std::ptrdiff_t>(i - 1));
		delete info;
	}
	if (classes.empty()) {
		delete registry;
		registry = nullptr;
	}
}

} // namespace godot
