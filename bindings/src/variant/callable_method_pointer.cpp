#include <godot_cpp/variant/callable_method_pointer.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>

namespace godot {
namespace internal {

bool check_argument_count(int p_count, int p_expected, GDExtensionCallError &r_error) {
	if (likely(p_count == p_expected)) {
		r_error.error = GDEXTENSION_CALL_OK;
		return true;
	}
	r_error.error = p_count > p_expected ? GDEXTENSION_CALL_ERROR_TOO_MANY_ARGUMENTS : GDEXTENSION_CALL_ERROR_TOO_FEW_ARGUMENTS;
	r_error.argument = p_expected;
	r_error.expected = p_expected;
	return false;
}

bool check_argument_type(const Variant &p_value, GDExtensionVariantType p_expected, int p_index, GDExtensionCallError &r_error) {
	const Variant::Type expected = static_cast<Variant::Type>(p_expected);
	if (likely(expected == Variant::NIL || p_value.get_type() == expected || Variant::can_convert_strict(p_value.get_type(), expected))) {
		return true;
	}
	r_error.error = GDEXTENSION_CALL_ERROR_INVALID_ARGUMENT;
	r_error.argument = p_index;
	r_error.expected = p_expected;
	return false;
}

bool MethodPointerCallable::has_live_target() const {
	return target.is_null() || gdextension_interface::object_get_instance_from_id(target) != nullptr;
}

uint32_t MethodPointerCallable::hash() const {
	uintptr_t first_word = 0;
	std::memcpy(&first_word, method_bytes(), sizeof(first_word));
	uint64_t mixed = static_cast<uint64_t>(target) ^ (static_cast<uint64_t>(first_word) * 0x9e3779b97f4a7c15ull);
	mixed ^= mixed >> 32;
	mixed *= 0xd6e8feb86659fd93ull;
	return static_cast<uint32_t>(mixed ^ (mixed >> 32));
}

String MethodPointerCallable::get_as_text() const {
	return String(text);
}

int MethodPointerCallable::get_argument_count(bool &r_is_valid) const {
	r_is_valid = true;
	return argument_count;
}

bool MethodPointerCallable::comes_before(const CallableCustom *p_a, const CallableCustom *p_b) {
	const MethodPointerCallable *a = static_cast<const MethodPointerCallable *>(p_a);
	const MethodPointerCallable *b = static_cast<const MethodPointerCallable *>(p_b);
	if (a->target != b->target) {
		return a->target < b->target;
	}
	if (a->method_size() != b->method_size()) {
		return a->method_size() < b->method_size();
	}
	return std::memcmp(a->method_bytes(), b->method_bytes(), a->method_size()) < 0;
}

} // namespace internal
} // namespace godot
