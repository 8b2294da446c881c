#include <godot_cpp/variant/callable_custom.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/core/memory.hpp>
#include <godot_cpp/godot.hpp>

namespace godot {

namespace {

const CallableCustom *from_userdata(void *p_userdata) {
	return static_cast<const CallableCustom *>(p_userdata);
}

void custom_call(void *p_userdata, const GDExtensionConstVariantPtr *p_args, GDExtensionInt p_argument_count, GDExtensionVariantPtr r_return,
		GDExtensionCallError *r_error) {
	GDExtensionCallError error = { GDEXTENSION_CALL_OK, 0, 0 };
	Variant result;
	const Variant **arguments = const_cast<const Variant **>(reinterpret_cast<const Variant *const *>(p_args));
	from_userdata(p_userdata)->call(arguments, static_cast<int>(p_argument_count), result, error);
	*static_cast<Variant *>(r_return) = std::move(result);
	*r_error = error;
}

GDExtensionBool custom_is_valid(void *p_userdata) {
	return from_userdata(p_userdata)->is_valid();
}

void custom_free(void *p_userdata) {
	memdelete(static_cast<CallableCustom *>(p_userdata));
}

uint32_t custom_hash(void *p_userdata) {
	return from_userdata(p_userdata)->hash();
}

GDExtensionBool custom_equal(void *p_userdata_a, void *p_userdata_b) {
	const CallableCustom *a = from_userdata(p_userdata_a);
	const CallableCustom *b = from_userdata(p_userdata_b);
	const CallableCustom::CompareEqualFunc equal = a->get_compare_equal_func();
	return equal == b->get_compare_equal_func() && (equal ? equal(a, b) : a == b);
}

GDExtensionBool custom_less_than(void *p_userdata_a, void *p_userdata_b) {
	const CallableCustom *a = from_userdata(p_userdata_a);
	const CallableCustom *b = from_userdata(p_userdata_b);
	const CallableCustom::CompareLessFunc less = a->get_compare_less_func();
	const CallableCustom::CompareLessFunc other_less = b->get_compare_less_func();
	if (less != other_less) {
		// Callables of different kinds need an order too, for sorted containers: any that stays the same will do.
		return reinterpret_cast<uintptr_t>(less) < reinterpret_cast<uintptr_t>(other_less);
	}
	return less ? less(a, b) : a < b;
}

void custom_to_string(void *p_userdata, GDExtensionBool *r_is_valid, GDExtensionStringPtr r_out) {
	*static_cast<String *>(r_out) = from_userdata(p_userdata)->get_as_text();
	*r_is_valid = 1;
}

GDExtensionInt custom_get_argument_count(void *p_userdata, GDExtensionBool *r_is_valid) {
	bool valid = false;
	const int count = from_userdata(p_userdata)->get_argument_count(valid);
	*r_is_valid = valid;
	return count;
}

} // namespace

bool CallableCustom::is_valid() const {
	const ObjectID id = get_object();
	return id.is_null() || gdextension_interface::object_get_instance_from_id(id) != nullptr;
}

int CallableCustom::get_argument_count(bool &r_is_valid) const {
	r_is_valid = false;
	return 0;
}

namespace internal {

void construct_custom_callable(GDExtensionUninitializedTypePtr r_callable, CallableCustom *p_custom) {
	if (!p_custom) {
		static const GDExtensionPtrConstructor construct_empty = gdextension_interface::variant_get_ptr_constructor(GDEXTENSION_VARIANT_TYPE_CALLABLE, 0);
		construct_empty(r_callable, nullptr);
		return;
	}
	GDExtensionCallableCustomInfo2 info = {};
	info.callable_userdata = p_custom;
	info.token = token;
	info.object_id = p_custom->get_object();
	info.call_func = custom_call;
	info.is_valid_func = custom_is_valid;
	info.free_func = custom_free;
	info.hash_func = custom_hash;
	info.equal_func = custom_equal;
	info.less_than_func = custom_less_than;
	info.to_string_func = custom_to_string;
	info.get_argument_count_func = custom_get_argument_count;
	gdextension_interface::callable_custom_create2(r_callable, &info);
}

CallableCustom *get_custom_callable(GDExtensionConstTypePtr p_callable) {
	return static_cast<CallableCustom *>(gdextension_interface::callable_custom_get_userdata(p_callable, token));
}

} // namespace internal

} // namespace godot
