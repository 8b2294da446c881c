#include <godot_cpp/core/engine_ptrcall.hpp>

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/variant/string_name.hpp>

#include <cstdio>
#include <mutex>

namespace godot {
namespace internal {

namespace {

std::mutex singletons_mutex;
EngineSingleton *first_singleton = nullptr;

} // namespace

GDExtensionMethodBindPtr EngineMethod::look_up() {
	if (missing.load(std::memory_order_relaxed)) {
		return nullptr;
	}
	const StringName class_string(class_name);
	const StringName method_string(method_name);
	GDExtensionMethodBindPtr found = gdextension_interface::classdb_get_method_bind(class_string._native_ptr(), method_string._native_ptr(), hash);
	if (found != nullptr) {
		bind.store(found, std::memory_order_release);
		return found;
	}
	// Said once: a method that is called every frame must not flood the log.
	if (!missing.exchange(true)) {
		char message[256];
		snprintf(message, sizeof(message), "The engine has no method %s::%s with the signature these bindings were generated for.", class_name, method_name);
		gdextension_interface::print_error(message, "look_up", __FILE__, __LINE__, false);
	}
	return nullptr;
}

Object *EngineSingleton::look_up() {
	const StringName singleton_name(name);
	GDExtensionObjectPtr owner = gdextension_interface::global_get_singleton(singleton_name._native_ptr());
	ERR_FAIL_NULL_V_MSG(owner, nullptr, "The engine has no singleton of this name (or not yet).");
	Object *found = get_object_instance_binding(owner);
	ERR_FAIL_NULL_V(found, nullptr);
	const std::lock_guard<std::mutex> lock(singletons_mutex);
	if (object.exchange(found, std::memory_order_acq_rel) == nullptr) {
		next = first_singleton;
		first_singleton = this;
	}
	return found;
}

void EngineSingleton::forget_all() {
	const std::lock_guard<std::mutex> lock(singletons_mutex);
	while (first_singleton != nullptr) {
		EngineSingleton *singleton = first_singleton;
		first_singleton = singleton->next;
		singleton->next = nullptr;
		singleton->object.store(nullptr, std::memory_order_release);
	}
}

Variant engine_vararg_call(EngineMethod &p_method, GDExtensionObjectPtr p_owner, const Variant **p_arguments, GDExtensionInt p_count) {
	Variant result;
	GDExtensionMethodBindPtr bind = p_method.get();
	if (bind != nullptr) {
		GDExtensionCallError error;
		gdextension_interface::object_method_bind_call(bind, p_owner, reinterpret_cast<GDExtensionConstVariantPtr *>(p_arguments), p_count, &result, &error);
	}
	return result;
}

} // namespace internal
} // namespace godot
