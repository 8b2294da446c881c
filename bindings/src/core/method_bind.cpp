#include <godot_cpp/core/method_bind.hpp>

#include <godot_cpp/core/error_macros.hpp>

namespace godot {

MethodBind::MethodBind(const internal::ArgumentType *p_types, uint32_t p_argument_count, uint32_t p_flags) :
		types(p_types), argument_count(p_argument_count), flags(p_flags) {}

PropertyInfo MethodBind::get_argument_info(int p_index) const {
	const internal::ArgumentType &type = types[p_index + 1];
	PropertyInfo info = type.get_info != nullptr ? type.get_info() : PropertyInfo();
	if (p_index >= 0) {
		const size_t index = static_cast<size_t>(p_index);
		info.name = index < argument_names.size() ? argument_names[index] : StringName(vformat("arg%d", p_index));
	}
	return info;
}

bool MethodBind::accepts(uint32_t p_index, const Variant &p_value) const {
	const internal::ArgumentType &wanted = types[p_index + 1];
	const Variant::Type wanted_type = static_cast<Variant::Type>(wanted.type);
	const Variant::Type type = p_value.get_type();
	if (wanted_type == Variant::NIL) {
		return true;
	}
	if (type != wanted_type) {
		return Variant::can_convert_strict(type, wanted_type);
	}
	if (wanted.object_class == nullptr) {
		return true;
	}
	// A freed object arrives as null; one of another class is the caller's mistake.
	const Object *object = p_value.get_validated_object();
	return object == nullptr || object->_has_class_tag(wanted.object_class);
}

void MethodBind::call(Wrapped *p_instance, const Variant *const *p_arguments, GDExtensionInt p_count, Variant &r_return, GDExtensionCallError &r_error) const {
	const GDExtensionInt count = argument_count;
	const GDExtensionInt first_default = count - static_cast<GDExtensionInt>(default_arguments.size());
	if (p_count > count) {
		r_error = { GDEXTENSION_CALL_ERROR_TOO_MANY_ARGUMENTS, 0, static_cast<int32_t>(count) };
		return;
	}
	if (p_count < first_default) {
		r_error = { GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS, 0, static_cast<int32_t>(first_default) };
		return;
	}
	const Variant *complete[MAX_ARGUMENTS];
	for (GDExtensionInt i = 0; i < count; i++) {
		complete[i] = i < p_count ? p_arguments[i] : &default_arguments[static_cast<size_t>(i - first_default)];
		if (unlikely(!accepts(static_cast<uint32_t>(i), *complete[i]))) {
			r_error = { GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT, static_cast<int32_t>(i), types[i + 1].type };
			return;
		}
	}
	invoke(p_instance, complete, r_return);
}

void MethodBind::bind_call(void *p_bind, GDExtensionClassInstancePtr p_instance, const GDExtensionConstVariantPtr *p_arguments, GDExtensionInt p_count,
		GDExtensionVariantPtr r_return, GDExtensionCallError *r_error) {
	const MethodBind *bind = static_cast<const MethodBind *>(p_bind);
	GDExtensionCallError error = { GDEXTENSION_CALL_OK, 0, 0 };
	Variant result;
	if (p_instance == nullptr && !bind->is_static()) {
		error.error = GDEXTENSION_CALL_ERROR_INSTANCE_IS_NULL;
	} else {
		bind->call(static_cast<Wrapped *>(p_instance), reinterpret_cast<const Variant *const *>(p_arguments), p_count, result, error);
	}
	if (r_return != nullptr) {
		*static_cast<Variant *>(r_return) = std::move(result);
	}
	if (r_error != nullptr) {
		*r_error = error;
	}
}

void MethodBind::bind_ptrcall(void *p_bind, GDExtensionClassInstancePtr p_instance, const GDExtensionConstTypePtr *p_arguments, GDExtensionTypePtr r_return) {
	const MethodBind *bind = static_cast<const MethodBind *>(p_bind);
	ERR_FAIL_COND_MSG(p_instance == nullptr && !bind->is_static(), "A method was called on an object that has no instance of its class.");
	bind->ptrcall(static_cast<Wrapped *>(p_instance), p_arguments, r_return);
}

} // namespace godot
