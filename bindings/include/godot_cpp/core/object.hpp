// What goes with Object and has to be written by hand: casts, looking an object up by its id, and MethodInfo, the description of a signal or a method.

#ifndef GODOT_CPP_CORE_OBJECT_HPP
#define GODOT_CPP_CORE_OBJECT_HPP

#include <godot_cpp/classes/object.hpp>
#include <godot_cpp/core/object_id.hpp>
#include <godot_cpp/core/property_info.hpp>

#include <vector>

namespace godot {

template <class T>
T *Object::cast_to(Object *p_object) {
	static_assert(sizeof(T) > 0, "Include the header of the class that is cast to.");
	return p_object != nullptr && p_object->_has_class_tag(internal::class_tag_of<T>()) ? static_cast<T *>(p_object) : nullptr;
}

template <class T>
const T *Object::cast_to(const Object *p_object) {
	return cast_to<T>(const_cast<Object *>(p_object));
}

class ObjectDB {
public:
	// Null when no object has this id any more.
	static Object *get_instance(uint64_t p_id);
	static Object *get_instance(ObjectID p_id) { return get_instance(static_cast<uint64_t>(p_id)); }
};

struct MethodInfo {
	StringName name;
	PropertyInfo return_val;
	uint32_t flags = METHOD_FLAGS_DEFAULT;
	int id = 0;
	std::vector<PropertyInfo> arguments;
	std::vector<Variant> default_arguments;
	GDExtensionClassMethodArgumentMetadata return_val_metadata = GDEXTENSION_METHOD_ARGUMENT_METADATA_NONE;
	std::vector<GDExtensionClassMethodArgumentMetadata> arguments_metadata;

	MethodInfo() {}
	explicit MethodInfo(const StringName &p_name) : name(p_name) {}

	template <class... Args>
	MethodInfo(const StringName &p_name, const Args &...p_arguments) : name(p_name), arguments{ p_arguments... } {}

	template <class... Args>
	MethodInfo(Variant::Type p_return, const StringName &p_name, const Args &...p_arguments) :
			name(p_name), return_val(p_return, StringName()), arguments{ p_arguments... } {}

	template <class... Args>
	MethodInfo(const PropertyInfo &p_return, const StringName &p_name, const Args &...p_arguments) :
			name(p_name), return_val(p_return), arguments{ p_arguments... } {}

	bool operator==(const MethodInfo &p_other) const { return id == p_other.id; }
	bool operator<(const MethodInfo &p_other) const { return id == p_other.id ? name < p_other.name : id < p_other.id; }
};

} // namespace godot

#endif // GODOT_CPP_CORE_OBJECT_HPP
