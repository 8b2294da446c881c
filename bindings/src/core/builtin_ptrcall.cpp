#include <godot_cpp/core/builtin_ptrcall.hpp>

#include <godot_cpp/core/gdextension_interface_loader.hpp>
#include <godot_cpp/variant/opaque_value.hpp>
#include <godot_cpp/variant/string.hpp>
#include <godot_cpp/variant/string_name.hpp>
#include <godot_cpp/variant/variant.hpp>

#include <algorithm>
#include <cstdio>

namespace godot {
namespace internal {

namespace {

struct TypeName {
	char text[64] = {};

	explicit TypeName(GDExtensionVariantType p_type) {
		if (!gdextension_interface::variant_get_type_name) {
			return;
		}
		String name;
		gdextension_interface::variant_get_type_name(p_type, name._native_ptr());
		const GDExtensionInt length = gdextension_interface::string_to_utf8_chars(name._native_ptr(), text, sizeof(text) - 1);
		text[std::min<GDExtensionInt>(length, sizeof(text) - 1)] = 0;
	}
};

// Written straight to the interface: the macros for errors build Strings, and Strings come through here.
void report_missing(const char *p_what) {
	if (gdextension_interface::print_error) {
		char message[256];
		snprintf(message, sizeof(message), "The engine has no %s; calls to it give a default value.", p_what);
		gdextension_interface::print_error(message, __FUNCTION__, __FILE__, __LINE__, false);
	}
}

struct Lifecycle {
	GDExtensionPtrConstructor construct = nullptr;
	GDExtensionPtrConstructor copy = nullptr;
	GDExtensionPtrDestructor destroy = nullptr;
};

// Filled once and not on first use: the check for that would be paid with every name that is copied.
Lifecycle lifecycles[GDEXTENSION_VARIANT_TYPE_VARIANT_MAX];

} // namespace

void init_opaque_values() {
	if (!gdextension_interface::variant_get_ptr_constructor || !gdextension_interface::variant_get_ptr_destructor) {
		return;
	}
	for (int index = GDEXTENSION_VARIANT_TYPE_STRING; index < GDEXTENSION_VARIANT_TYPE_VARIANT_MAX; index++) {
		const GDExtensionVariantType type = GDExtensionVariantType(index);
		lifecycles[index].construct = gdextension_interface::variant_get_ptr_constructor(type, 0);
		lifecycles[index].copy = gdextension_interface::variant_get_ptr_constructor(type, 1);
		lifecycles[index].destroy = gdextension_interface::variant_get_ptr_destructor(type);
	}
}

void construct_opaque(GDExtensionVariantType p_type, void *r_value) {
	if (const GDExtensionPtrConstructor construct = lifecycles[p_type].construct) {
		construct(r_value, nullptr);
	}
}

void copy_opaque(GDExtensionVariantType p_type, void *r_value, const void *p_from) {
	if (const GDExtensionPtrConstructor copy = lifecycles[p_type].copy) {
		copy(r_value, &p_from);
	}
}

void destroy_opaque(GDExtensionVariantType p_type, void *p_value) {
	if (const GDExtensionPtrDestructor destroy = lifecycles[p_type].destroy) {
		destroy(p_value);
	}
}

void report_index_out_of_bounds(GDExtensionVariantType p_type, int64_t p_index, int64_t p_size) {
	if (gdextension_interface::print_error) {
		char message[192];
		snprintf(message, sizeof(message), "Index %lld is out of bounds: the %s's size is %lld.", static_cast<long long>(p_index), TypeName(p_type).text,
				static_cast<long long>(p_size));
		gdextension_interface::print_error(message, __FUNCTION__, __FILE__, __LINE__, false);
	}
}

GDExtensionPtrConstructor find_builtin_constructor(GDExtensionVariantType p_type, int32_t p_index) {
	GDExtensionPtrConstructor found = nullptr;
	if (gdextension_interface::variant_get_ptr_constructor) {
		found = gdextension_interface::variant_get_ptr_constructor(p_type, p_index);
	}
	if (!found) {
		char what[128];
		snprintf(what, sizeof(what), "constructor %d of %s", int(p_index), TypeName(p_type).text);
		report_missing(what);
	}
	return found;
}

GDExtensionPtrBuiltInMethod find_builtin_method(GDExtensionVariantType p_type, const char *p_name, int64_t p_hash) {
	GDExtensionPtrBuiltInMethod found = nullptr;
	if (gdextension_interface::variant_get_ptr_builtin_method) {
		const StringName name(p_name);
		found = gdextension_interface::variant_get_ptr_builtin_method(p_type, name._native_ptr(), p_hash);
	}
	if (!found) {
		char what[192];
		snprintf(what, sizeof(what), "method %s::%s with hash %lld", TypeName(p_type).text, p_name, static_cast<long long>(p_hash));
		report_missing(what);
	}
	return found;
}

GDExtensionPtrOperatorEvaluator find_builtin_operator(GDExtensionVariantOperator p_operator, GDExtensionVariantType p_left, GDExtensionVariantType p_right) {
	GDExtensionPtrOperatorEvaluator found = nullptr;
	if (gdextension_interface::variant_get_ptr_operator_evaluator) {
		found = gdextension_interface::variant_get_ptr_operator_evaluator(p_operator, p_left, p_right);
	}
	if (!found) {
		char what[192];
		snprintf(what, sizeof(what), "operator %d between %s and %s", int(p_operator), TypeName(p_left).text, TypeName(p_right).text);
		report_missing(what);
	}
	return found;
}

GDExtensionPtrUtilityFunction find_utility_function(const char *p_name, int64_t p_hash) {
	GDExtensionPtrUtilityFunction found = nullptr;
	if (gdextension_interface::variant_get_ptr_utility_function) {
		const StringName name(p_name);
		found = gdextension_interface::variant_get_ptr_utility_function(name._native_ptr(), p_hash);
	}
	if (!found) {
		char what[128];
		snprintf(what, sizeof(what), "function %s with hash %lld", p_name, static_cast<long long>(p_hash));
		report_missing(what);
	}
	return found;
}

bool equals_variant(const Variant &p_value, const Variant &p_other) {
	Variant result;
	bool valid = false;
	Variant::evaluate(Variant::OP_EQUAL, p_value, p_other, result, valid);
	return valid && bool(result);
}

} // namespace internal
} // namespace godot
