#include <godot_cpp/classes/wrapped.hpp>

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/classes/ref.hpp>
#include <godot_cpp/classes/ref_counted.hpp>
#include <godot_cpp/core/error_macros.hpp>
#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/core/object.hpp>

#include <mutex>
#include <unordered_map>

namespace godot {

namespace {

thread_local internal::ConstructionFrame *innermost_frame = nullptr;

std::mutex wrappers_mutex;
Wrapped *first_wrapper = nullptr;

// By the identity of the class name, which the name beside it keeps alive. An entry for a class that is not wrapped repeats its nearest wrapped
// ancestor's.
struct EngineClass {
	StringName name;
	const GDExtensionInstanceBindingCallbacks *callbacks;
};
std::mutex engine_classes_mutex;
std::unordered_map<const void *, EngineClass> *engine_classes = nullptr;

void *create_nearest_binding(void *p_token, void *p_instance);

constexpr GDExtensionInstanceBindingCallbacks nearest_class_callbacks = {
	&create_nearest_binding,
	&internal::free_engine_binding,
	&internal::keep_engine_binding,
};

// The instance itself is freed by its class, not with the binding.
void forget_extension_binding(void *, void *, void *) {}

constexpr GDExtensionInstanceBindingCallbacks extension_instance_callbacks = {
	nullptr,
	&forget_extension_binding,
	&internal::keep_engine_binding,
};

const GDExtensionInstanceBindingCallbacks *find_registered(const StringName &p_name) {
	const std::lock_guard<std::mutex> lock(engine_classes_mutex);
	if (engine_classes == nullptr) {
		return nullptr;
	}
	const auto found = engine_classes->find(p_name.data_unique_pointer());
	return found != engine_classes->end() ? found->second.callbacks : nullptr;
}

// Asks the engine without going through wrappers: this runs while one is being made.
StringName get_parent_class(const StringName &p_name) {
	static internal::StaticName class_db("ClassDB");
	static internal::StaticName method("get_parent_class");
	GDExtensionObjectPtr singleton = gdextension_interface::global_get_singleton(class_db.get()._native_ptr());
	ERR_FAIL_NULL_V(singleton, StringName());
	static const GDExtensionVariantFromTypeConstructorFunc from_object =
			gdextension_interface::get_variant_from_type_constructor(GDEXTENSION_VARIANT_TYPE_OBJECT);
	Variant receiver;
	from_object(&receiver, &singleton);
	const Variant name = p_name;
	const GDExtensionConstVariantPtr arguments[] = { &name };
	Variant parent;
	GDExtensionCallError error = {};
	gdextension_interface::variant_call(&receiver, method.get()._native_ptr(), arguments, 1, &parent, &error);
	return parent;
}

const GDExtensionInstanceBindingCallbacks *find_nearest(const StringName &p_name) {
	const GDExtensionInstanceBindingCallbacks *callbacks = find_registered(p_name);
	if (callbacks != nullptr) {
		return callbacks;
	}
	const StringName parent = get_parent_class(p_name);
	if (parent.is_empty()) {
		return nullptr;
	}
	callbacks = find_nearest(parent);
	if (callbacks != nullptr) {
		internal::register_engine_class(p_name, callbacks);
	}
	return callbacks;
}

void *create_nearest_binding(void *p_token, void *p_instance) {
	StringName name;
	if (!gdextension_interface::object_get_class_name(p_instance, internal::library, name._native_ptr())) {
		return nullptr;
	}
	const GDExtensionInstanceBindingCallbacks *callbacks = find_nearest(name);
	ERR_FAIL_NULL_V(callbacks, nullptr);
	return callbacks->create_callback(p_token, p_instance);
}

} // namespace

namespace internal {

ConstructionFrame::ConstructionFrame(const ClassTag *p_tag, void *p_existing_owner) : tag(p_tag), existing_owner(p_existing_owner), outer(innermost_frame) {
	innermost_frame = this;
}

ConstructionFrame::~ConstructionFrame() {
	// Still there when no memory was left and no constructor ran.
	if (innermost_frame == this) {
		innermost_frame = outer;
	}
}

bool finish_wrapped_construction(Wrapped *p_object) {
	if (p_object == nullptr) {
		return false;
	}
	if (p_object->_owner == nullptr) {
		delete p_object;
		return false;
	}
	static_cast<Object *>(p_object)->notification(Object::NOTIFICATION_POSTINITIALIZE);
	return true;
}

void destroy_wrapped(Wrapped *p_object) {
	gdextension_interface::object_destroy(p_object->_owner);
}

Object *get_object_instance_binding(GDExtensionObjectPtr p_engine_object) {
	if (p_engine_object == nullptr) {
		return nullptr;
	}
	void *binding = gdextension_interface::object_get_instance_binding(p_engine_object, token, &nearest_class_callbacks);
	return static_cast<Object *>(static_cast<Wrapped *>(binding));
}

Object *get_binding_of_class(GDExtensionObjectPtr p_engine_object, const ClassTag *p_tag) {
	Object *object = get_object_instance_binding(p_engine_object);
	return object != nullptr && object->_has_class_tag(p_tag) ? object : nullptr;
}

Object *get_object_of_class(const Variant &p_value, const ClassTag *p_tag) {
	Object *object = p_value.get_validated_object();
	return object != nullptr && object->_has_class_tag(p_tag) ? object : nullptr;
}

GDExtensionObjectPtr get_owner(const Wrapped *p_object) {
	return p_object != nullptr ? p_object->_owner : nullptr;
}

bool share_reference(Wrapped *p_object) {
	return static_cast<RefCounted *>(p_object)->init_ref();
}

void drop_reference(Wrapped *p_object) {
	if (static_cast<RefCounted *>(p_object)->unreference()) {
		destroy_wrapped(p_object);
	}
}

void register_engine_class(const StringName &p_name, const GDExtensionInstanceBindingCallbacks *p_callbacks) {
	const std::lock_guard<std::mutex> lock(engine_classes_mutex);
	if (engine_classes == nullptr) {
		engine_classes = new std::unordered_map<const void *, EngineClass>();
	}
	engine_classes->insert({ p_name.data_unique_pointer(), { p_name, p_callbacks } });
}

void release_engine_classes() {
	// One at a time and unlocked, as the engine calls back to free each.
	while (true) {
		Wrapped *wrapper = nullptr;
		{
			const std::lock_guard<std::mutex> lock(wrappers_mutex);
			wrapper = first_wrapper;
		}
		if (wrapper == nullptr) {
			break;
		}
		gdextension_interface::object_free_instance_binding(wrapper->_owner, token);
		bool still_there = false;
		{
			const std::lock_guard<std::mutex> lock(wrappers_mutex);
			still_there = first_wrapper == wrapper;
		}
		if (still_there) {
			delete wrapper;
		}
	}
	const std::lock_guard<std::mutex> lock(engine_classes_mutex);
	delete engine_classes;
	engine_classes = nullptr;
}

void free_engine_binding(void *, void *, void *p_binding) {
	delete static_cast<Wrapped *>(p_binding);
}

GDExtensionBool keep_engine_binding(void *, void *, GDExtensionBool) {
	// Bindings hold no references of their own, so an object whose count reaches zero may always go.
	return true;
}

} // namespace internal

Object *ObjectDB::get_instance(uint64_t p_id) {
	return p_id == 0 ? nullptr : internal::get_object_instance_binding(gdextension_interface::object_get_instance_from_id(p_id));
}

Wrapped::Wrapped(const internal::ClassTag &p_engine_class) {
	internal::ConstructionFrame *frame = innermost_frame;
	ERR_FAIL_NULL_MSG(frame, "Engine objects are made with memnew, never on the stack, as members or with new.");
	innermost_frame = frame->outer;

	if (frame->existing_owner != nullptr) {
		// After a hot reload: the engine's half lived on and gives its instance a new C++ half.
		_owner = frame->existing_owner;
		gdextension_interface::object_set_instance_binding(_owner, internal::token, this, &extension_instance_callbacks);
		return;
	}

	_owner = gdextension_interface::classdb_construct_object2(p_engine_class.get_name()._native_ptr());
	if (_owner == nullptr) {
		return;
	}
	// Before the constructors of the class itself run, so that the engine finds this object when they call it.
	if (frame->tag->is_extension) {
		gdextension_interface::object_set_instance(_owner, frame->tag->get_name()._native_ptr(), this);
		gdextension_interface::object_set_instance_binding(_owner, internal::token, this, &extension_instance_callbacks);
	} else {
		gdextension_interface::object_set_instance_binding(_owner, internal::token, this, &nearest_class_callbacks);
		list_wrapper();
	}
}

Wrapped::Wrapped(GodotObject *p_owner) : _owner(p_owner) {
	list_wrapper();
}

Wrapped::~Wrapped() {
	unlist_wrapper();
}

void Wrapped::list_wrapper() {
	const std::lock_guard<std::mutex> lock(wrappers_mutex);
	next_wrapper = first_wrapper;
	if (first_wrapper != nullptr) {
		first_wrapper->previous_wrapper = this;
	}
	first_wrapper = this;
}

void Wrapped::unlist_wrapper() {
	const std::lock_guard<std::mutex> lock(wrappers_mutex);
	if (previous_wrapper != nullptr) {
		previous_wrapper->next_wrapper = next_wrapper;
	} else if (first_wrapper == this) {
		first_wrapper = next_wrapper;
	}
	if (next_wrapper != nullptr) {
		next_wrapper->previous_wrapper = previous_wrapper;
	}
}

} // namespace godot
